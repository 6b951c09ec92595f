// luxsTrunc_64f: integer part of x, toward zero, exact, on binary64 lanes.  Rounds by
// the shifter M = 2^52 under round toward zero.
//
// a = |x|; ((a + M) - M) OR sign(x): the shifter rounds |x| toward zero, and
// the sign comes back by OR, so -0.9 gives -0.
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

struct Trunc : lux::arith::ShifterLanes64<kTab> {
  static V vec(V x) {
    const V sign = _mm_and_pd(x, kTab.dbSignMask.pd());
    const V a = _mm_andnot_pd(kTab.dbSignMask.pd(), x);
    const V r = _mm_sub_pd(lux::opaque(_mm_add_pd(a, kTab.dbShifter.pd())), kTab.dbShifter.pd());
    return _mm_or_pd(r, sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTrunc_64f(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Trunc, lux::RoundTowardZeroGuard>(src, dst, len);
}
