// Accuracy sweep of Atan2 on binary64: MPFR's atan2 over the regions of
// invtrig_regions.h (every quadrant, the class ratios, tiny and huge ratios,
// subnormal and special arguments).
#include "accuracy/invtrig_regions.h"

namespace {

const luxtk::AccuracyFamily kAtan264 = {
    .family = "Atan2",
    .bits = 64,
    .f2 = mpfr_atan2,
    .regions = luxtk::invtrig::atan2_regions(64),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kAtan264);

}  // namespace
