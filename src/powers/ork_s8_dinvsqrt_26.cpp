// luxsInvSqrt_64f_A26 and luxsInvSqrt_64f_A50 (the same code): 1/sqrt(x)
// from the 12-bit seed c and a degree-4 polynomial in e = x*c^2 - 1:
//   1/sqrt(x) = c*(1 + e)^(-1/2) = (p(e)*e)*c + c.
// max error 0.987 ulp at x = 0x0.41c66cde2ff03p-1022 (native sweep; estimate-seeded tiers vary by processor)
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
  lux::Row64 dbE4 = lux::row64(0x3FD1800000000000);     // 35/128
  lux::Row64 dbE3 = lux::row64(0xBFD4000000000000);     // -5/16
  lux::Row64 dbE2 = lux::row64(0x3FD8000000000000);     // 3/8
  lux::Row64 dbE1 = lux::row64(0xBFE0000000000000);     // -1/2
  lux::Row64 dbTwo54 = lux::row64(0x4350000000000000);  // denormal scale 2^54
  lux::Row64 dbTwo27 = lux::row64(0x41A0000000000000);  // and back, 2^27
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
    const __m128d e = _mm_sub_pd(_mm_mul_pd(x, _mm_mul_pd(c, c)), kTab.dbOne.pd());
    __m128d p = _mm_add_pd(_mm_mul_pd(kTab.dbE4.pd(), e), kTab.dbE3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE1.pd());
    return _mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, e), c), c);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInvSqrt_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_seed64<InvSqrt>(src, dst, len);
}

// Tier A50 is tier A26, bit for bit.
extern "C" __attribute__((visibility("default"), alias("luxsInvSqrt_64f_A26"))) luxStatus luxsInvSqrt_64f_A50(
    const lux64f* src, lux64f* dst, int len);
