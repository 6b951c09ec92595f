// luxsTan_32f_A21: tangent of binary32 arrays.
// max error 3.51 ulp at x = 0x1.ac5a34p+12 (luxvm accuracy).
//
// x = n pi/2 + r with |r| <= pi/4, in single precision; tan r = r (1 + N3
// r^2) / (1 + D2 r^2 + D4 r^4), and tan x = tan r for even n and -1/tan r
// for odd n: the quotient is taken the other way up.  No table.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/tan_frame.h"

namespace {

using lux::Row32;
using lux::row32;

// |x| <= 10000.0 stays on the vector path: n has at most 13 bits and the
// first two parts of pi/2 at most 12, so n times them is exact.  Above it,
// NaN and the infinities go to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;

struct alignas(16) Table {
  Row32 two_over_pi;
  Row32 shifter;         // 1.5 2^23: rounds to an integer
  Row32 p1, p2, p3, p4;  // pi/2 in four parts
  Row32 n3, d4, d2, one;
};

constexpr Table kTable = {
    row32(0x3F22F983),  // 0.636619747
    row32(0x4B400000),  // 12582912
    row32(0x3FC90000),  // 1.5703125
    row32(0x39FDA000),  // 0.000483826
    row32(0x33A22000),  // 7.54953e-08
    row32(0x2C34611A),  // 2.56334e-12
    row32(0xBDC433B8),  // -0.0958017707
    row32(0x3C1F3375),  // 0.00971685816
    row32(0xBEDBB7AF),  // -0.42913577
    row32(0x3F800000),  // 1.0
};

struct TanLA {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;
  static constexpr int kGrid = 4;

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    const __m128 q = lux::tan::quotient_signed(
        x, T,
        [&](__m128 v, __m128 n) { return lux::sincos::subtract_multiples(v, n, T.p1, T.p2, T.p3, T.p4); },
        [&](__m128 z, __m128 s) { return _mm_add_ps(_mm_mul_ps(_mm_mul_ps(T.n3.ps(), z), s), s); },
        [](__m128 top, __m128 bottom) { return _mm_div_ps(top, bottom); });
    // tan(-0) = -0: the numerator's (-0)(-0) would give +0, so an exact
    // zero puts its own sign back.
    return _mm_or_ps(q, _mm_and_ps(_mm_cmpeq_ps(x, _mm_setzero_ps()), x));
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksTan_SC_LA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTan_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::tan::run<TanLA>(src, dst, len);
}
