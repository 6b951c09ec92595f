// luxsInv_32f_A11: 1/x from the 12-bit reciprocal estimate, unrefined.
// max error 4.74e+03 ulp at x = 0x1.0d2fe6p-81 (native sweep; estimate-seeded tiers vary by processor)
#include "powers/recip_estimate32.h"

namespace {

// Lane test: w = (bits - 0x00800000) & 0x7FFFFFFF fails when, signed, it is
// above 0x7DFFEFFF; so magnitudes 2^-126 to 0x1.ffdffep+125 pass, and zero,
// denormals, infinities, NaNs and the 2^12 values just below 2^126 fail: the
// estimate of 1/x, within 1.5 * 2^-12, stays normal.
constexpr uint32_t kMinNormal = 0x00800000;
constexpr uint32_t kRangeWidth = 0x7DFFEFFF;

struct alignas(16) InvTable {
  lux::Row32 flMinNormal = lux::row32(kMinNormal);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flRangeWidth = lux::row32(kRangeWidth);
};
constexpr InvTable kTab{};

// _orksInv_11_scalar takes the same estimate on one lane.
struct Estimate {
  static __m128 vec(__m128 x) { return _mm_rcp_ps(x); }
  static __m128 one(__m128 x) { return _mm_rcp_ss(x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInv_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::recip::run_inv_estimate<kTab, Estimate>(src, dst, len);
}
