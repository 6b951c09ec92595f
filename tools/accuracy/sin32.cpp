// Accuracy sweep of luxsSin_32f_*: MPFR's sine against every tier.
//
// Regions: tiny to moderate magnitudes log-uniformly (sin x = x down to the
// subnormals); the usual range and the whole vector path (|x| <= 4000.0 in
// A11, 10000.0 in A21 and A24) uniformly; huge arguments, which go through
// the scalar routine and its exact reduction, log-uniformly up to the largest
// finite; the range limits and the points where the scalar routine changes
// its method, each with its neighbours.
//
// Over every float of the A11 vector path (|x| <= 4000) the sine's worst
// error is 2551 ulp at 0x1.e7edbcp+11, from the polynomial's 1.5e-4 at the
// ends of [-pi/2, pi/2]; the reduction is exact enough that the floats
// nearest to multiples of pi keep their relative accuracy.
#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kSin32 = [] {
  luxtk::AccuracyFamily f;
  f.family = "Sin";
  f.bits = 32;
  f.f1 = mpfr_sin;
  f.regions = {
      luxtk::log_uniform_region("small |x| (2^-149 to 1)", 0x1p-149, 1.0, true),
      luxtk::uniform_region("moderate |x| < 10", -10.0, 10.0),
      luxtk::uniform_region("|x| <= 4000 (A11 vector path)", -4000.0, 4000.0),
      luxtk::uniform_region("|x| <= 10000 (vector path)", -10000.0, 10000.0),
      luxtk::log_uniform_region("huge |x| (10000 to max)", 10000.0, 0x1.fffffep127, true),
      luxtk::splits_region("limits and neighbours", {4000.0, -4000.0, 10000.0, -10000.0, 131072.0, 0x1p-126},
                           4),
      luxtk::specials_region(),
  };
  return f;
}();
const luxtk::AccuracyRegistrar kRegister(&kSin32);

}  // namespace
