// Accuracy sweep of Atanh on binary32: MPFR's atanh against every tier, over
// the regions in accuracy/invhyp_regions.h.
#include "accuracy/invhyp_regions.h"

namespace {

const luxtk::AccuracyFamily kAtanh32 = {
    .family = "Atanh",
    .bits = 32,
    .f1 = mpfr_atanh,
    .regions = invhypacc::atanh_regions(32),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kAtanh32);

}  // namespace
