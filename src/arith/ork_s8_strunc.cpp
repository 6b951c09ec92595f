// luxsTrunc_32f: integer part of x, toward zero, exact, on binary32 lanes.  Rounds by
// the shifter M = 2^23 under round toward zero.
//
// a = |x|; ((a + M) - M) OR sign(x): the shifter rounds |x| toward zero, and
// the sign comes back by OR, so -0.9 gives -0.
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

struct Trunc : lux::arith::ShifterLanes32<kTab> {
  static V vec(V x) {
    const V sign = _mm_and_ps(x, kTab.flSignMask.ps());
    const V a = _mm_andnot_ps(kTab.flSignMask.ps(), x);
    const V r = _mm_sub_ps(lux::opaque(_mm_add_ps(a, kTab.flShifter.ps())), kTab.flShifter.ps());
    return _mm_or_ps(r, sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTrunc_32f(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Trunc, lux::RoundTowardZeroGuard>(src, dst, len);
}
