// luxsSinCos_32f_A11: sine and cosine of binary32 arrays.
// max error 232 ulp at x = 0x1.06b782p+3 (luxvm accuracy).
//
// x = n pi/2 + r, |r| <= pi/4, in single precision; S ~ sin r and C ~ cos r
// by minimax polynomials of degree 5 and 4 on the same r, swapped and signed
// by the quadrant.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_pair_frame.h"

namespace {

using lux::Row32;
using lux::row32;

// |x| <= 10000.0 stays on the vector path: n has at most 13 bits and the
// first two parts of pi/2 at most 12, so n times them is exact.  Above it,
// NaN and the infinities go to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;

struct alignas(16) Table {
  Row32 two_over_pi;
  Row32 shifter;  // 1.5 2^23
  Row32 p1, p2, p3;
  Row32 s2, s1, c2, c1, one;
};

constexpr Table kTable = {
    row32(0x3F22F983),  // 0.636619747
    row32(0x4B400000),  // 12582912
    row32(0x3FC90000),  // 1.5703125
    row32(0x39FDA000),  // 0.000483826
    row32(0x33A22169),  // 7.54979013e-08
    row32(0x3C05BF49),  // 0.00816328172
    row32(0xBE2AA214),  // -0.166633904
    row32(0x3D25B7C3),  // 0.040458452
    row32(0xBEFFE09E),  // -0.499760568
    row32(0x3F800000),  // 1.0
};

struct SinCosEP {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  static void eval(__m128 x, __m128& s, __m128& c) {
    const Table& T = kTable;
    const __m128 t = _mm_add_ps(_mm_mul_ps(x, T.two_over_pi.ps()), T.shifter.ps());
    const __m128 n = _mm_sub_ps(t, T.shifter.ps());
    const __m128 r = lux::sincos::subtract_multiples(x, n, T.p1, T.p2, T.p3);
    const __m128 z = _mm_mul_ps(r, r);
    const __m128 S = _mm_mul_ps(lux::sincos::horner(z, T.s2, T.s1, T.one), r);
    const __m128 C = lux::sincos::horner(z, T.c2, T.c1, T.one);
    lux::sincos::quadrant(lux::as_int(t), S, C, s, c);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst1, lux32f* dst2, luxStatus* status) {
    orksSinCos_SC_A11(i, src, dst1, dst2, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinCos_32f_A11(const lux32f* src, lux32f* dst1, lux32f* dst2, int len) {
  return lux::sincos::run_pair<SinCosEP>(src, dst1, dst2, len);
}
