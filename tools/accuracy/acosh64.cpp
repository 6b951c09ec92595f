// Accuracy sweep of Acosh on binary64: MPFR's acosh against every tier, over
// the regions in accuracy/invhyp_regions.h.
#include "accuracy/invhyp_regions.h"

namespace {

const luxtk::AccuracyFamily kAcosh64 = {
    .family = "Acosh",
    .bits = 64,
    .f1 = mpfr_acosh,
    .regions = invhypacc::acosh_regions(64),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kAcosh64);

}  // namespace
