// Accuracy sweep of Acos on binary64: MPFR's acos over the regions of
// invtrig_regions.h.
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAcos64 = {
    .family = "Acos",
    .bits = 64,
    .f1 = mpfr_acos,
    .regions = luxtk::invtrig::asincos_regions(64),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAcos64);

}  // namespace
