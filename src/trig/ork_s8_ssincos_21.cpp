// luxsSinCos_32f_A21: sine and cosine of binary32 arrays.
// max error 2.79 ulp at x = 0x1.3734cap+11 (luxvm accuracy).
//
// x = n pi/2 + r, |r| <= pi/4, in single precision with pi/2 in four parts;
// S ~ sin r and C ~ cos r by minimax polynomials of degree 7 and 8 on the
// same r, swapped and signed by the quadrant.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_pair_frame.h"

namespace {

using lux::Row32;
using lux::row32;

// |x| <= 10000.0 stays on the vector path: n has at most 13 bits and the
// first three parts of pi/2 at most 12, so n times them is exact.  Above
// it, NaN and the infinities go to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;

struct alignas(16) Table {
  Row32 two_over_pi;
  Row32 shifter;  // 1.5 2^23
  Row32 p1, p2, p3, p4;
  Row32 s3, s2, s1, c4, c3, c2, c1, one;
};

constexpr Table kTable = {
    row32(0x3F22F983),  // 0.636619747
    row32(0x4B400000),  // 12582912
    row32(0x3FC90000),  // 1.5703125
    row32(0x39FDA000),  // 0.000483826
    row32(0x33A22000),  // 7.54953e-08
    row32(0x2C34611A),  // 2.56334e-12
    row32(0xB94CA1F0),  // -0.000195152825
    row32(0x3C08839D),  // 0.0083321603
    row32(0xBE2AAAA3),  // -0.166666552
    row32(0x37CCF5CE),  // 2.44331568e-05
    row32(0xBAB6061A),  // -0.00138873165
    row32(0x3D2AAAA5),  // 0.0416666456
    row32(0xBF000000),  // -0.5
    row32(0x3F800000),  // 1.0
};

struct SinCosLA {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  static void eval(__m128 x, __m128& s, __m128& c) {
    const Table& T = kTable;
    const __m128 t = _mm_add_ps(_mm_mul_ps(x, T.two_over_pi.ps()), T.shifter.ps());
    const __m128 n = _mm_sub_ps(t, T.shifter.ps());
    const __m128 r = lux::sincos::subtract_multiples(x, n, T.p1, T.p2, T.p3, T.p4);
    const __m128 z = _mm_mul_ps(r, r);
    const __m128 S = _mm_mul_ps(lux::sincos::horner(z, T.s3, T.s2, T.s1, T.one), r);
    const __m128 C = lux::sincos::horner(z, T.c4, T.c3, T.c2, T.c1, T.one);
    lux::sincos::quadrant(lux::as_int(t), S, C, s, c);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst1, lux32f* dst2, luxStatus* status) {
    orksSinCos_SC_LA(i, src, dst1, dst2, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinCos_32f_A21(const lux32f* src, lux32f* dst1, lux32f* dst2, int len) {
  return lux::sincos::run_pair<SinCosLA>(src, dst1, dst2, len);
}
