// Accuracy sweep of Atan on binary64: MPFR's atan over the regions of
// invtrig_regions.h, with the class limits 7/16, 11/16, 19/16 and 39/16.
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAtan64 = {
    .family = "Atan",
    .bits = 64,
    .f1 = mpfr_atan,
    .regions = luxtk::invtrig::atan_regions(64, {7.0 / 16, 11.0 / 16, 19.0 / 16, 39.0 / 16}),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAtan64);

}  // namespace
