// Accuracy sweep of Expm1 on binary64 (tools/accuracy/expm1_log1p_regions.h).
#include "accuracy/expm1_log1p_regions.h"

namespace {

const luxtk::AccuracyFamily kExpm164 = {
    .family = "Expm1",
    .bits = 64,
    .f1 = mpfr_expm1,
    .regions = luxtk::expm1_log1p::expm1_regions("log-uniform |x| in [0x1p-1074, 709.78]", 0x1p-1074,
                                                 "uniform [-50, 709.78]", 709.78, 709.782712893384),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kExpm164);

}  // namespace
