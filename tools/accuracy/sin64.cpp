// Accuracy sweep of luxsSin_64f_*: MPFR's sine against every tier.
//
// Regions: tiny to moderate magnitudes log-uniformly (sin x = x down to the
// subnormals); the usual range and the whole vector path (|x| < 90112.0)
// uniformly; huge arguments, which go through the scalar routine and its
// exact reduction, log-uniformly up to the largest finite; the range limit
// and the points where the scalar routine changes its method, each with its
// neighbours.
#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kSin64 = [] {
  luxtk::AccuracyFamily f;
  f.family = "Sin";
  f.bits = 64;
  f.f1 = mpfr_sin;
  f.regions = {
      luxtk::log_uniform_region("small |x| (2^-1074 to 1)", 0x1p-1074, 1.0, true),
      luxtk::uniform_region("moderate |x| < 10", -10.0, 10.0),
      luxtk::uniform_region("|x| < 90112 (vector path)", -90112.0, 90112.0),
      luxtk::log_uniform_region("huge |x| (90112 to max)", 90112.0, 0x1.fffffffffffffp1023, true),
      luxtk::splits_region("limits and neighbours", {90112.0, -90112.0, 131072.0, 0x1p-252, 0x1p-1022}, 4),
      luxtk::specials_region(),
  };
  return f;
}();
const luxtk::AccuracyRegistrar kRegister(&kSin64);

}  // namespace
