// Accuracy sweep of Asin on binary32: MPFR's asin over the regions of
// invtrig_regions.h.
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAsin32 = {
    .family = "Asin",
    .bits = 32,
    .f1 = mpfr_asin,
    .regions = luxtk::invtrig::asincos_regions(32),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAsin32);

}  // namespace
