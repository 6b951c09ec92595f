// Accuracy sweep of Asin on binary64: MPFR's asin over the regions of
// invtrig_regions.h.
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAsin64 = {
    .family = "Asin",
    .bits = 64,
    .f1 = mpfr_asin,
    .regions = luxtk::invtrig::asincos_regions(64),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAsin64);

}  // namespace
