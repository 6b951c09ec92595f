// luxsCeil_64f: smallest integer not below x, exact, on binary64 lanes.  Rounds by
// the shifter M = 2^52 under round up.
//
// m = M with the sign of x; ((x + m) - m) OR sign(x).  A negative x above -1
// gives (-M + M) = +0 under round-up, which the OR turns into -0.
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

struct Ceil : lux::arith::ShifterLanes64<kTab> {
  static V vec(V x) {
    const V sign = _mm_and_pd(x, kTab.dbSignMask.pd());
    const V m = _mm_or_pd(kTab.dbShifter.pd(), sign);
    const V r = _mm_sub_pd(lux::opaque(_mm_add_pd(x, m)), m);
    return _mm_or_pd(r, sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCeil_64f(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Ceil, lux::RoundUpGuard>(src, dst, len);
}
