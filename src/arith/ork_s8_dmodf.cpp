// luxsModf_64f: integer part toward zero and fraction of x, exact, on binary64 lanes.  Rounds by
// the shifter M = 2^52 under round toward zero.
//
// a = |x|; t = (a + M) - M, truncated; integer part t OR sign(x), fraction
// (a - t) OR sign(x).  a - t is exact, and an exact zero is +0 under
// round-toward-zero, so both parts carry the sign of x.
#include "arith/shifter_rounding.h"

namespace {

// Vector path: exponent field of the high word not above 0x432: |x| < 2^52.
constexpr uint32_t kVectorPathMask = 0x7FF00000;
constexpr uint32_t kVectorPathBound = 0x43200000;

struct alignas(16) Table {
  lux::Row64 dbShifter;   // 2^52
  lux::Row64 dbSignMask;  // the sign bit
  lux::Row32 iPathMask;   // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .dbShifter = lux::row64(0x4330000000000000),
    .dbSignMask = lux::row64(0x8000000000000000),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct Modf : lux::arith::ShifterLanes64<kTab> {
  static void vec(V x, V* whole, V* frac) {
    const V sign = _mm_and_pd(x, kTab.dbSignMask.pd());
    const V a = _mm_andnot_pd(kTab.dbSignMask.pd(), x);
    const V t = _mm_sub_pd(lux::opaque(_mm_add_pd(a, kTab.dbShifter.pd())), kTab.dbShifter.pd());
    *whole = _mm_or_pd(t, sign);
    *frac = _mm_or_pd(_mm_sub_pd(a, t), sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsModf_64f(const lux64f* src, lux64f* dst1, lux64f* dst2, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst1, dst2)) return e;
  return lux::arith::run_modf<Modf, lux::RoundTowardZeroGuard>(src, dst1, dst2, len);
}
