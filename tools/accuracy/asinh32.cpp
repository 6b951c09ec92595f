// Accuracy sweep of Asinh on binary32: MPFR's asinh against every tier, over
// the regions in accuracy/invhyp_regions.h.
#include "accuracy/invhyp_regions.h"

namespace {

const luxtk::AccuracyFamily kAsinh32 = {
    .family = "Asinh",
    .bits = 32,
    .f1 = mpfr_asinh,
    .regions = invhypacc::asinh_regions(32),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kAsinh32);

}  // namespace
