// luxsTan_32f_A11: tangent of binary32 arrays.
// max error 4.82e+03 ulp at x = -0x1.0ea234p+13 (luxvm accuracy).
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
  Row32 shifter;     // 1.5 2^23: rounds to an integer
  Row32 p1, p2, p3;  // pi/2 in three parts
  Row32 n3, d4, d2, one;
};

constexpr Table kTable = {
    row32(0x3F22F983),  // 0.636619747
    row32(0x4B400000),  // 12582912
    row32(0x3FC90000),  // 1.5703125
    row32(0x39FDA000),  // 0.000483826
    row32(0x33A22169),  // 7.54979013e-08
    row32(0xBDC433B8),  // -0.0958017707
    row32(0x3C1F3375),  // 0.00971685816
    row32(0xBEDBB7AF),  // -0.42913577
    row32(0x3F800000),  // 1.0
};

struct TanEP {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;
  static constexpr int kGrid = 8;  // blocks of 4 below len & ~7, the rest lane by lane

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    return lux::tan::quotient_signed(
        x, T, [&](__m128 v, __m128 n) { return lux::sincos::subtract_multiples(v, n, T.p1, T.p2, T.p3); },
        [&](__m128 z, __m128 s) { return _mm_mul_ps(_mm_add_ps(_mm_mul_ps(T.n3.ps(), z), T.one.ps()), s); },
        // The 12-bit estimate of the reciprocal, unrefined.
        [](__m128 top, __m128 bottom) { return _mm_mul_ps(top, _mm_rcp_ps(bottom)); });
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksTan_SC_A11(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTan_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::tan::run<TanEP>(src, dst, len);
}
