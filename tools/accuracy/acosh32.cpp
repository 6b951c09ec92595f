// Accuracy sweep of Acosh on binary32: MPFR's acosh against every tier, over
// the regions in accuracy/invhyp_regions.h.
#include "accuracy/invhyp_regions.h"

namespace {

const luxtk::AccuracyFamily kAcosh32 = {
    .family = "Acosh",
    .bits = 32,
    .f1 = mpfr_acosh,
    .regions = invhypacc::acosh_regions(32),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kAcosh32);

}  // namespace
