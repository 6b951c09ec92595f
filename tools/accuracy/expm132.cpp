// Accuracy sweep of Expm1 on binary32 (tools/accuracy/expm1_log1p_regions.h).
#include "accuracy/expm1_log1p_regions.h"

namespace {

const luxtk::AccuracyFamily kExpm132 = {
    .family = "Expm1",
    .bits = 32,
    .f1 = mpfr_expm1,
    .regions = luxtk::expm1_log1p::expm1_regions("log-uniform |x| in [0x1p-149, 88.72]", 0x1p-149,
                                                 "uniform [-50, 88.72]", 88.72, 88.72283172607422),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kExpm132);

}  // namespace
