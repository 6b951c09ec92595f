// Accuracy sweep of luxsCos_64f_*: MPFR's cosine against every tier, over the
// regions in sincos_regions.h (cos x = 1 - x^2/2 down to the subnormals).
#include "accuracy/sincos_regions.h"

namespace {

const luxtk::AccuracyFamily kCos64 = luxtk::sincos::family("Cos", 64, mpfr_cos, luxtk::sincos::regions64());
const luxtk::AccuracyRegistrar kRegister(&kCos64);

}  // namespace
