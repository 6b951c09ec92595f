// luxsFloor_64f: largest integer not above x, exact, on binary64 lanes.  Rounds by
// the shifter M = 2^52 under round down.
//
// g = x OR (every bit but the sign): all ones for a negative x, every bit but
// the sign for a positive one.  m = (-M) AND g is M with the sign of x, and
// ((x + m) - m) AND g clears the sign of the -0 that (M - M) gives under
// round-down for a positive x below 1.
#include "arith/shifter_rounding.h"

namespace {

// Vector path: exponent field of the high word not above 0x432: |x| < 2^52.
constexpr uint32_t kVectorPathMask = 0x7FF00000;
constexpr uint32_t kVectorPathBound = 0x43200000;

struct alignas(16) Table {
  lux::Row64 dbMinusShifter;   // -2^52
  lux::Row64 dbMagnitudeMask;  // every bit but the sign
  lux::Row32 iPathMask;        // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .dbMinusShifter = lux::row64(0xC330000000000000),
    .dbMagnitudeMask = lux::row64(0x7FFFFFFFFFFFFFFF),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct Floor : lux::arith::ShifterLanes64<kTab> {
  static V vec(V x) {
    const V g = _mm_or_pd(x, kTab.dbMagnitudeMask.pd());
    const V m = _mm_and_pd(kTab.dbMinusShifter.pd(), g);
    const V r = _mm_sub_pd(lux::opaque(_mm_add_pd(x, m)), m);
    return _mm_and_pd(r, g);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsFloor_64f(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Floor, lux::RoundDownGuard>(src, dst, len);
}
