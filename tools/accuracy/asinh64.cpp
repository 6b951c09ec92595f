// Accuracy sweep of Asinh on binary64: MPFR's asinh against every tier, over
// the regions in accuracy/invhyp_regions.h.
#include "accuracy/invhyp_regions.h"

namespace {

const luxtk::AccuracyFamily kAsinh64 = {
    .family = "Asinh",
    .bits = 64,
    .f1 = mpfr_asinh,
    .regions = invhypacc::asinh_regions(64),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kAsinh64);

}  // namespace
