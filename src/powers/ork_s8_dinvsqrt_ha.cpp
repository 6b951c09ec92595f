// luxsInvSqrt_64f_A53: 1/sqrt(x) from the 12-bit seed c and a degree-5
// polynomial in e = x*c^2 - 1:  1/sqrt(x) = c*(1 + e)^(-1/2) = (p(e)*e)*c + c.
// e is formed from x = xh + xl (xh: the high word) as (xh*c^2 - 1) + xl*c^2,
// c^2 being exact, so that its error stays far below the final rounding.
// max error 0.5 ulp at x = 0x1.4fd2ddc5be591p+0
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_seed64.h"

namespace {

struct alignas(16) InvSqrtTable {
  LUX_SQRT_SEED64_ROWS
  LUX_SQRT_TEST64_ROWS
  lux::Row64 dbOne = lux::row64(0x3FF0000000000000);
  // Taylor coefficients of (1 + e)^(-1/2) - 1 over e, innermost first.
  lux::Row64 dbE5 = lux::row64(0xBFCF800000000000);     // -63/256
  lux::Row64 dbE4 = lux::row64(0x3FD1800000000000);     // 35/128
  lux::Row64 dbE3 = lux::row64(0xBFD4000000000000);     // -5/16
  lux::Row64 dbE2 = lux::row64(0x3FD8000000000000);     // 3/8
  lux::Row64 dbE1 = lux::row64(0xBFE0000000000000);     // -1/2
  lux::Row64 dbTwo54 = lux::row64(0x4350000000000000);  // denormal scale 2^54
  lux::Row64 dbTwo27 = lux::row64(0x41A0000000000000);  // and back, 2^27
  lux::Row64 dbHighWordMask = lux::row64(0xFFFFFFFF00000000);
  lux::Row64 dbZero = lux::row64(0);
  lux::Row64 dbInf = lux::row64(0x7FF0000000000000);
  lux::Row64 dbSignMask = lux::row64(0x8000000000000000);
  lux::Row64 dbDefaultNaN = lux::row64(0xFFF8000000000000);
};
constexpr InvSqrtTable kTab{};

struct InvSqrt {
  static constexpr const InvSqrtTable& tab = kTab;
  static constexpr bool kInverse = true;
  static constexpr bool kZeroOnVectorPath = false;
  // 1/sqrt(x) takes x only through the seed and the residual: xf is unused.
  static __m128d root(__m128d x, __m128d) {
    const __m128d c = lux::rsqrt_seed(x, kTab);
    const __m128d c2 = _mm_mul_pd(c, c);
    const __m128d xh = _mm_and_pd(x, kTab.dbHighWordMask.pd());
    const __m128d xl = _mm_sub_pd(x, xh);
    const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(xh, c2), kTab.dbOne.pd()), _mm_mul_pd(xl, c2));
    __m128d p = _mm_add_pd(_mm_mul_pd(kTab.dbE5.pd(), e), kTab.dbE4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE1.pd());
    return _mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, e), c), c);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInvSqrt_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_seed64<InvSqrt>(src, dst, len);
}
