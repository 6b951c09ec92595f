// Accuracy sweep of Ln on binary32: the whole positive finite range with the
// denormals, the neighbourhood of 1 where ln x is small and the sum must not
// cancel, and the places where the kernels change row, exponent or path
// (accuracy/log_regions.h).
#include "accuracy/log_regions.h"
#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kLn32 = {
    .family = "Ln",
    .bits = 32,
    .f1 = mpfr_log,
    .regions = logacc::log_regions(logacc::kBinary32),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kLn32);

}  // namespace
