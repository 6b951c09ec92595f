// luxsRint_32f: integer nearest to x in the caller's rounding mode, exact, on binary32 lanes.  Rounds by
// the shifter M = 2^23 under the caller's rounding.
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

using Rint = lux::arith::RoundInCallerMode32<kTab>;

}  // namespace

LUXVM_EXPORT luxStatus luxsRint_32f(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Rint, lux::arith::CallerMode>(src, dst, len);
}
