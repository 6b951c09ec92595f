// luxsSin_32f_A24: sine of binary32 within 1 ulp.
// max error 0.801 ulp at x = -0x1.f399f8p+2 (luxvm accuracy).
//
// In double precision on lanes widened from single: x = k pi + r with
// k = rint(x/pi) from a single-precision product, r = x - k pi with pi in two
// parts; sin x = (-1)^k sin r, and sin r = r p(r^2) with p of degree 4
// fitted over [-pi/2, pi/2] for a binary32 result.  The sign of a zero
// follows the reduction: sin(-0.0) = -0.0.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_half_turn.h"
#include "trig/sincos_kernel.h"

namespace {

// |x| <= 10000.0 stays on the vector path: k has at most 12 bits and the
// first part of pi 35, so k * pi1 is exact.  Above, and NaN and the
// infinities, the lane goes to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;  // 10000.0

struct alignas(16) Table {
  lux::Row32 inv_pi;              // 1/pi, single
  lux::Row64 pi1;                 // -pi in two parts, double
  lux::Row64 pi2;                 //   pi = -pi1 + pi2
  lux::Row64 d1, d3, d5, d7, d9;  // sin r = r (d1 + d3 r^2 + ... + d9 r^8)
};

constexpr Table kTable = {
    lux::row32(0x3EA2F983),          // 0.318309873
    lux::row64(0xC00921FB54440000),  // -3.1415926535846666
    lux::row64(0x3D968C234C4C6629),  // 5.126688303189038e-12
    lux::row64(0x3FF000000089705F),  // 1.000000002
    lux::row64(0xBFC55554AE8BA1BD),  // -0.166666589
    lux::row64(0x3F8110EE64CD0933),  // 0.008333075
    lux::row64(0xBF29F75E2C166F94),  // -0.000198107
    lux::row64(0x3EC5E0A329A17541),  // 2.608e-06
};

struct SinHA {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;
  static constexpr int kPrefetchAhead = 32;

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    const __m128i k = _mm_cvtps_epi32(_mm_mul_ps(x, T.inv_pi.ps()));
    return lux::sincos::sin_of_half_turns_widened(x, _mm_cvtepi32_pd(k),
                                                  _mm_cvtepi32_pd(_mm_unpackhi_epi64(k, k)), k, T);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksSin_SC_HA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSin_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::sincos::run<SinHA>(src, dst, len);
}
