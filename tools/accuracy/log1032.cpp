// Accuracy sweep of Log10 on binary32: the whole positive finite range with the
// denormals, the neighbourhood of 1 where log10 x is small and the sum must not
// cancel, and the places where the kernels change row, exponent or path
// (accuracy/log_regions.h).
#include "accuracy/log_regions.h"
#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kLog1032 = {
    .family = "Log10",
    .bits = 32,
    .f1 = mpfr_log10,
    .regions = logacc::log_regions(logacc::kBinary32),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kLog1032);

}  // namespace
