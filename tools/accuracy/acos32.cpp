// Accuracy sweep of Acos on binary32: MPFR's acos over the regions of
// invtrig_regions.h.
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAcos32 = {
    .family = "Acos",
    .bits = 32,
    .f1 = mpfr_acos,
    .regions = luxtk::invtrig::asincos_regions(32),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAcos32);

}  // namespace
