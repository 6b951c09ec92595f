// Accuracy sweep of luxsSin_64f_*: MPFR's sine against every tier, over the
// regions in sincos_regions.h (sin x = x down to the subnormals).
#include "accuracy/sincos_regions.h"

namespace {

const luxtk::AccuracyFamily kSin64 = luxtk::sincos::family("Sin", 64, mpfr_sin, luxtk::sincos::regions64());
const luxtk::AccuracyRegistrar kRegister(&kSin64);

}  // namespace
