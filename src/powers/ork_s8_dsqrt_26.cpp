// luxsSqrt_64f_A26: sqrt(x) from the 12-bit seed c ~ 1/sqrt(x) and a
// degree-2 polynomial in e = x*c^2 - 1:  sqrt(x) = x*c*(1 + e)^(-1/2).
// max error 3.61e+05 ulp at x = 0x1.df2fad33eb4ecp+1 (native sweep; estimate-seeded tiers vary by processor)
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_seed64.h"

namespace {

struct alignas(16) SqrtTable {
  LUX_SQRT_SEED64_ROWS
  LUX_SQRT_TEST64_ROWS
  lux::Row64 dbOne = lux::row64(0x3FF0000000000000);
  // Taylor coefficients of (1 + e)^(-1/2) - 1 over e, innermost first.
  lux::Row64 dbE2 = lux::row64(0x3FD8000000000000);     // 3/8
  lux::Row64 dbE1 = lux::row64(0xBFE0000000000000);     // -1/2
  lux::Row64 dbTwo54 = lux::row64(0x4350000000000000);  // denormal scale 2^54
  lux::Row64 dbTwo27 = lux::row64(0x41A0000000000000);  // and back, 2^27
  lux::Row64 dbDefaultNaN = lux::row64(0xFFF8000000000000);
};
constexpr SqrtTable kTab{};

struct Sqrt {
  static constexpr const SqrtTable& tab = kTab;
  static constexpr bool kInverse = false;
  static constexpr bool kZeroOnVectorPath = false;
  // c and e from xs, the final product with xf (xs = xf but for denormals).
  static __m128d root(__m128d xs, __m128d xf) {
    const __m128d c = lux::rsqrt_seed(xs, kTab);
    const __m128d e = _mm_sub_pd(_mm_mul_pd(xs, _mm_mul_pd(c, c)), kTab.dbOne.pd());
    const __m128d p = _mm_add_pd(_mm_mul_pd(kTab.dbE2.pd(), e), kTab.dbE1.pd());
    return _mm_mul_pd(_mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, e), c), c), xf);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqrt_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_seed64<Sqrt>(src, dst, len);
}
