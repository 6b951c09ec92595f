// Accuracy sweep of Atan on binary32: MPFR's atan over the regions of
// invtrig_regions.h, with the class limits of the tiers (0.4375, 0.72, 2.29
// at A24; 1 at A21 and A11).
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAtan32 = {
    .family = "Atan",
    .bits = 32,
    .f1 = mpfr_atan,
    .regions = luxtk::invtrig::atan_regions(32, {0.4375, 0.72, 2.29}),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAtan32);

}  // namespace
