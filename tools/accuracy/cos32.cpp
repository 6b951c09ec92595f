// Accuracy sweep of luxsCos_32f_*: MPFR's cosine against every tier.
//
// Regions: tiny to moderate magnitudes log-uniformly (cos x = 1 - x^2/2 down
// to the subnormals); the usual range and the whole vector path
// (|x| <= 10000.0) uniformly; huge arguments, which go through
// the scalar routine and its exact reduction, log-uniformly up to the largest
// finite; the range limits and the points where the scalar routine changes
// its method, each with its neighbours.
//
// The A11 cosine's polynomial leaves about 1.5e-4 at the ends of its interval
// [-pi/2, pi/2], where the result is near +-1: some 2560 ulp, within the
// tier's 2^13 (an exhaustive run over the floats of its vector path gives
// 2564 ulp at 0x1.2fc0b6p+13).  cos(+-0) is one of these points: the multiple
// of pi rounds to 0 and the polynomial runs at r = pi/2, giving 0x3F7FF60F.
#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kCos32 = [] {
  luxtk::AccuracyFamily f;
  f.family = "Cos";
  f.bits = 32;
  f.f1 = mpfr_cos;
  f.regions = {
      luxtk::log_uniform_region("small |x| (2^-149 to 1)", 0x1p-149, 1.0, true),
      luxtk::uniform_region("moderate |x| < 10", -10.0, 10.0),
      luxtk::uniform_region("|x| <= 4000", -4000.0, 4000.0),
      luxtk::uniform_region("|x| <= 10000 (vector path)", -10000.0, 10000.0),
      luxtk::log_uniform_region("huge |x| (10000 to max)", 10000.0, 0x1.fffffep127, true),
      luxtk::splits_region("limits and neighbours", {4000.0, -4000.0, 10000.0, -10000.0, 131072.0, 0x1p-126},
                           4),
      luxtk::specials_region(),
  };
  return f;
}();
const luxtk::AccuracyRegistrar kRegister(&kCos32);

}  // namespace
