// luxsCeil_32f: smallest integer not below x, exact, on binary32 lanes.  Rounds by
// the shifter M = 2^23 under round up.
//
// m = M with the sign of x; ((x + m) - m) OR sign(x).  A negative x above -1
// gives (-M + M) = +0 under round-up, which the OR turns into -0.
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

struct Ceil : lux::arith::ShifterLanes32<kTab> {
  static V vec(V x) {
    const V sign = _mm_and_ps(x, kTab.flSignMask.ps());
    const V m = _mm_or_ps(kTab.flShifter.ps(), sign);
    const V r = _mm_sub_ps(lux::opaque(_mm_add_ps(x, m)), m);
    return _mm_or_ps(r, sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCeil_32f(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Ceil, lux::RoundUpGuard>(src, dst, len);
}
