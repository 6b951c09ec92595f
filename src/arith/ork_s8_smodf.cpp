// luxsModf_32f: integer part toward zero and fraction of x, exact, on binary32 lanes.  Rounds by
// the shifter M = 2^23 under round toward zero.
//
// a = |x|; t = (a + M) - M, truncated; integer part t OR sign(x), fraction
// (a - t) OR sign(x).  a - t is exact, and an exact zero is +0 under
// round-toward-zero, so both parts carry the sign of x.
#include "arith/shifter_rounding.h"

namespace {

// Vector path: magnitude bits not above those of 2^23: |x| <= 2^23.
constexpr uint32_t kVectorPathMask = 0x7FFFFFFF;
constexpr uint32_t kVectorPathBound = 0x4B000000;

struct alignas(16) Table {
  lux::Row32 flShifter;   // 2^23
  lux::Row32 flSignMask;  // the sign bit
  lux::Row32 iPathMask;   // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .flShifter = lux::row32(0x4B000000),
    .flSignMask = lux::row32(0x80000000),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct Modf : lux::arith::ShifterLanes32<kTab> {
  static void vec(V x, V* whole, V* frac) {
    const V sign = _mm_and_ps(x, kTab.flSignMask.ps());
    const V a = _mm_andnot_ps(kTab.flSignMask.ps(), x);
    const V t = _mm_sub_ps(lux::opaque(_mm_add_ps(a, kTab.flShifter.ps())), kTab.flShifter.ps());
    *whole = _mm_or_ps(t, sign);
    *frac = _mm_or_ps(_mm_sub_ps(a, t), sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsModf_32f(const lux32f* src, lux32f* dst1, lux32f* dst2, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst1, dst2)) return e;
  return lux::arith::run_modf<Modf, lux::RoundTowardZeroGuard>(src, dst1, dst2, len);
}
