// luxsFloor_32f: largest integer not above x, exact, on binary32 lanes.  Rounds by
// the shifter M = 2^23 under round down.
//
// g = x OR (every bit but the sign): all ones for a negative x, every bit but
// the sign for a positive one.  m = (-M) AND g is M with the sign of x, and
// ((x + m) - m) AND g clears the sign of the -0 that (M - M) gives under
// round-down for a positive x below 1.
#include "arith/shifter_rounding.h"

namespace {

// Vector path: magnitude bits not above those of 2^23: |x| <= 2^23.
constexpr uint32_t kVectorPathMask = 0x7FFFFFFF;
constexpr uint32_t kVectorPathBound = 0x4B000000;

struct alignas(16) Table {
  lux::Row32 flMinusShifter;   // -2^23
  lux::Row32 flMagnitudeMask;  // every bit but the sign
  lux::Row32 iPathMask;        // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .flMinusShifter = lux::row32(0xCB000000),
    .flMagnitudeMask = lux::row32(0x7FFFFFFF),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct Floor : lux::arith::ShifterLanes32<kTab> {
  static V vec(V x) {
    const V g = _mm_or_ps(x, kTab.flMagnitudeMask.ps());
    const V m = _mm_and_ps(kTab.flMinusShifter.ps(), g);
    const V r = _mm_sub_ps(lux::opaque(_mm_add_ps(x, m)), m);
    return _mm_and_ps(r, g);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsFloor_32f(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Floor, lux::RoundDownGuard>(src, dst, len);
}
