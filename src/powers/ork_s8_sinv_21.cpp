// luxsInv_32f_A21: 1/x from the 12-bit reciprocal estimate and one Newton
// step, r1 = r * (2 - x * r), which squares the estimate's relative error.
// max error 2.65 ulp at x = -0x1.31ef7cp-50 (native sweep; estimate-seeded tiers vary by processor)
#include "powers/recip_estimate32.h"

namespace {

// Lane test: w = (bits - 0x00800000) & 0x7FFFFFFF fails when, signed, it is
// above 0x7DFFEFFF; so magnitudes 2^-126 to 0x1.ffdffep+125 pass, and zero,
// denormals, infinities, NaNs and the 2^12 values just below 2^126 fail: the
// estimate of 1/x, within 1.5 * 2^-12, stays normal. x * r stays near 1.
constexpr uint32_t kMinNormal = 0x00800000;
constexpr uint32_t kRangeWidth = 0x7DFFEFFF;

struct alignas(16) InvTable {
  lux::Row32 flMinNormal = lux::row32(kMinNormal);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flRangeWidth = lux::row32(kRangeWidth);
  lux::Row32 flTwo = lux::row32(0x40000000);  // 2.0
};
constexpr InvTable kTab{};

// _orksInv_21_scalar runs the vector arithmetic on one lane.
struct Newton {
  static __m128 vec(__m128 x) {
    const __m128 r = _mm_rcp_ps(x);
    return _mm_mul_ps(r, _mm_sub_ps(kTab.flTwo.ps(), _mm_mul_ps(x, r)));
  }
  static __m128 one(__m128 x) {
    const __m128 r = _mm_rcp_ss(x);
    return _mm_mul_ss(r, _mm_sub_ss(kTab.flTwo.ps(), _mm_mul_ss(x, r)));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInv_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::recip::run_inv_estimate<kTab, Newton>(src, dst, len);
}
