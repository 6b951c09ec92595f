// Accuracy sweep of Atanh on binary64: MPFR's atanh against every tier, over
// the regions in accuracy/invhyp_regions.h.
#include "accuracy/invhyp_regions.h"

namespace {

const luxtk::AccuracyFamily kAtanh64 = {
    .family = "Atanh",
    .bits = 64,
    .f1 = mpfr_atanh,
    .regions = invhypacc::atanh_regions(64),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kAtanh64);

}  // namespace
