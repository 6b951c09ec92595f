// luxsTan_64f_A50: tangent of binary64 arrays.
// max error 3.51 ulp at x = 0x1.1d9983936826cp+16 (luxvm accuracy).
//
// x = n pi/2 + r with |r| <= pi/4; tan r is a rational function of r,
// numerator odd and denominator even, and tan x = tan r for even n and
// -1/tan r for odd n: the quotient is taken the other way up.  No table.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/tan_frame.h"

namespace {

using lux::Row64;
using lux::row64;

// |x| <= 128000.0 and a little beyond (high word not above 0x40FF4000)
// stays on the vector path: n < 2^17, so n times the first two parts of
// pi/2 is exact.  Above it, NaN and the infinities go to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x40FF4000;

struct alignas(16) Table {
  Row64 two_over_pi;
  Row64 shifter;         // 2^52: |x| 2/pi + 2^52 rounds to an integer
  Row64 p1, p2, p3, p4;  // pi/2 in four parts
  Row64 n6, n4, n2, n0;  // numerator / r, in z = r^2
  Row64 d6, d4, d2, d0;  // denominator
  Row64 sign;
};

constexpr Table kTable = {
    row64(0x3FE45F306DC9C883),  // 0.6366197723675814
    row64(0x4330000000000000),  // 2^52
    row64(0x3FF921FB40000000),  // 1.5707963109016418
    row64(0x3E74442D00000000),  // 1.5893254712295857e-08
    row64(0x3CF8469880000000),  // 6.123233932053594e-17
    row64(0x3B78CC51701B839A),  // 3.2776093904912012e-22
    row64(0xBEDF637DEA7C0B2C),  // -7.483634966612065e-06
    row64(0x3F66FC6FE2982A7B),  // 0.002805918241169989
    row64(0xBFC06B97BF03648A),  // -0.12828347040957438
    row64(0x3FF0000000000000),  // 1.0
    row64(0xBF2B525B10D0A168),  // -0.00020844804422038708
    row64(0x3F97E7B68D9A55F3),  // 0.02334485282206873
    row64(0xBFDD8B2134D70767),  // -0.46161680374290487
    row64(0x3FF0000000000000),  // 1.0
    row64(0x8000000000000000),
};

struct TanLA {
  using Elem = lux64f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;
  static constexpr int kGrid = 2;

  static __m128d eval(__m128d x) {
    const Table& T = kTable;
    return lux::tan::quotient_on_abs(
        x, T,
        [&](__m128d ax, __m128d n) { return lux::sincos::subtract_multiples(ax, n, T.p1, T.p2, T.p3, T.p4); },
        [&](__m128d r, __m128d& num, __m128d& den) {
          const __m128d z = _mm_mul_pd(r, r);
          num = _mm_mul_pd(lux::sincos::horner(z, T.n6, T.n4, T.n2, T.n0), r);
          den = lux::sincos::horner(z, T.d6, T.d4, T.d2, T.d0);
        });
  }

  static void call_out(int i, const lux64f* src, lux64f* dst, luxStatus* status) {
    orkdTan_SC_LA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTan_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::tan::run<TanLA>(src, dst, len);
}
