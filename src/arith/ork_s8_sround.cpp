// luxsRound_32f: integer nearest to x, halves away from zero, exact, on binary32 lanes.  Rounds by
// the shifter M = 2^23 under round to nearest.
//
// a = |x|; r = (a + M) - M rounds |x| to nearest, ties to even; d = a - r is
// exact.  The only wrong case is a half rounded down to even, which leaves
// d = +0.5 exactly (a half rounded up leaves -0.5 and is already right): such
// lanes get 1.0 added, the others +0, which changes nothing as r >= +0.  The
// sign comes back by OR.
#include "arith/shifter_rounding.h"

namespace {

// Vector path: magnitude bits not above those of 2^23: |x| <= 2^23.
constexpr uint32_t kVectorPathMask = 0x7FFFFFFF;
constexpr uint32_t kVectorPathBound = 0x4B000000;

struct alignas(16) Table {
  lux::Row32 flShifter;   // 2^23
  lux::Row32 flSignMask;  // the sign bit
  lux::Row32 flHalf;      // 0.5; d is tested on its word
  lux::Row32 flOne;       // 1.0
  lux::Row32 iPathMask;   // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .flShifter = lux::row32(0x4B000000),
    .flSignMask = lux::row32(0x80000000),
    .flHalf = lux::row32(0x3F000000),
    .flOne = lux::row32(0x3F800000),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct Round : lux::arith::ShifterLanes32<kTab> {
  static V vec(V x) {
    const V sign = _mm_and_ps(x, kTab.flSignMask.ps());
    const V a = _mm_andnot_ps(kTab.flSignMask.ps(), x);
    const V r = _mm_sub_ps(lux::opaque(_mm_add_ps(a, kTab.flShifter.ps())), kTab.flShifter.ps());
    const V d = _mm_sub_ps(a, r);
    const V up =
        _mm_and_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(_mm_castps_si128(d), kTab.flHalf.pi())), kTab.flOne.ps());
    return _mm_or_ps(_mm_add_ps(r, up), sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsRound_32f(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Round, lux::RoundNearestGuard>(src, dst, len);
}
