// Accuracy sweep of Sqrt on binary32: sqrt(x) against MPFR.
#include <cmath>

#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kSqrt32 = {
    "Sqrt",
    32,
    mpfr_sqrt,
    nullptr,
    {
        luxtk::uniform_region("usual [0.25, 4]", 0.25, 4.0),
        luxtk::log_uniform_region("all positive", 0x1p-126, 0x1.fffffep+127, false),
        // Denormals take the scaled path of the lane routine.
        luxtk::log_uniform_region("denormal", 0x1p-149, 0x1p-126, false),
        // Both parities of the exponent, the ends of the seed's [1, 4).
        luxtk::splits_region("edges", {1.0, 2.0, 4.0, 0.5, 0x1p-126, 0x1.fffffep+127, 0x1p-149}, 16),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kSqrt32);

}  // namespace
