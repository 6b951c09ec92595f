// Accuracy sweep of Log1p on binary32 (tools/accuracy/expm1_log1p_regions.h).
// Every tier has the accuracy of the best one: 1 ulp.
#include "accuracy/expm1_log1p_regions.h"

namespace {

const luxtk::AccuracyFamily kLog1p32 = {
    .family = "Log1p",
    .bits = 32,
    .f1 = mpfr_log1p,
    .regions =
        luxtk::expm1_log1p::log1p_regions("log-uniform x in [0x1p-149, max]", 0x1p-149, 0x1.fffffep+127),
    .bound = [](const luxtk::CensusEntry&) { return 1.0; },
};
const luxtk::AccuracyRegistrar kRegistered(&kLog1p32);

}  // namespace
