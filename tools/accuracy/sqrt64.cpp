// Accuracy sweep of Sqrt on binary64: sqrt(x) against MPFR.
#include <cmath>

#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kSqrt64 = {
    "Sqrt",
    64,
    mpfr_sqrt,
    nullptr,
    {
        luxtk::uniform_region("usual [0.25, 4]", 0.25, 4.0),
        luxtk::log_uniform_region("all positive", 0x1p-1022, 0x1.fffffffffffffp+1023, false),
        // Denormals take the scaled path of the lane routine.
        luxtk::log_uniform_region("denormal", 0x1p-1074, 0x1p-1022, false),
        // Both parities of the exponent, the ends of the seed's [1, 4).
        luxtk::splits_region("edges", {1.0, 2.0, 4.0, 0.5, 0x1p-1022, 0x1.fffffffffffffp+1023, 0x1p-1074},
                             16),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kSqrt64);

}  // namespace
