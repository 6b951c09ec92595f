// luxsRound_64f: integer nearest to x, halves away from zero, exact, on binary64 lanes.  Rounds by
// the shifter M = 2^52 under round to nearest.
//
// a = |x|; r = (a + M) - M rounds |x| to nearest, ties to even; d = a - r is
// exact.  The only wrong case is a half rounded down to even, which leaves
// d = +0.5 exactly (a half rounded up leaves -0.5 and is already right): such
// lanes get 1.0 added, the others +0, which changes nothing as r >= +0.  The
// sign comes back by OR.
#include "arith/shifter_rounding.h"

namespace {

// Vector path: exponent field of the high word not above 0x432: |x| < 2^52.
constexpr uint32_t kVectorPathMask = 0x7FF00000;
constexpr uint32_t kVectorPathBound = 0x43200000;

struct alignas(16) Table {
  lux::Row64 dbShifter;   // 2^52
  lux::Row64 dbSignMask;  // the sign bit
  lux::Row64 dbHalf;      // 0.5; d is tested on its high word
  lux::Row64 dbOne;       // 1.0
  lux::Row32 iPathMask;   // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .dbShifter = lux::row64(0x4330000000000000),
    .dbSignMask = lux::row64(0x8000000000000000),
    .dbHalf = lux::row64(0x3FE0000000000000),
    .dbOne = lux::row64(0x3FF0000000000000),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct Round : lux::arith::ShifterLanes64<kTab> {
  static V vec(V x) {
    const V sign = _mm_and_pd(x, kTab.dbSignMask.pd());
    const V a = _mm_andnot_pd(kTab.dbSignMask.pd(), x);
    const V r = _mm_sub_pd(lux::opaque(_mm_add_pd(a, kTab.dbShifter.pd())), kTab.dbShifter.pd());
    const V d = _mm_sub_pd(a, r);
    const V up =
        _mm_and_pd(_mm_castsi128_pd(_mm_shuffle_epi32(_mm_cmpeq_epi32(_mm_castpd_si128(d), kTab.dbHalf.pi()),
                                                      _MM_SHUFFLE(3, 3, 1, 1))),
                   kTab.dbOne.pd());
    return _mm_or_pd(_mm_add_pd(r, up), sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsRound_64f(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Round, lux::RoundNearestGuard>(src, dst, len);
}
