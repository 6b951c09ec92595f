// luxsRint_64f: integer nearest to x in the caller's rounding mode, exact, on binary64 lanes.  Rounds by
// the shifter M = 2^52 under the caller's rounding.
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

using Rint = lux::arith::RoundInCallerMode64<kTab>;

}  // namespace

LUXVM_EXPORT luxStatus luxsRint_64f(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::arith::run_rounding<Rint, lux::arith::CallerMode>(src, dst, len);
}
