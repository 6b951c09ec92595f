// Accuracy sweep of Log1p on binary64 (tools/accuracy/expm1_log1p_regions.h).
// Every tier has the accuracy of the best one: 1 ulp.
#include "accuracy/expm1_log1p_regions.h"

namespace {

const luxtk::AccuracyFamily kLog1p64 = {
    .family = "Log1p",
    .bits = 64,
    .f1 = mpfr_log1p,
    .regions = luxtk::expm1_log1p::log1p_regions("log-uniform x in [0x1p-1074, max]", 0x1p-1074,
                                                 0x1.fffffffffffffp+1023),
    .bound = [](const luxtk::CensusEntry&) { return 1.0; },
};
const luxtk::AccuracyRegistrar kRegistered(&kLog1p64);

}  // namespace
