// Accuracy sweep of Pow on binary64: the regions of pow_regions.h.
#include "accuracy/pow_regions.h"

namespace {

const luxtk::AccuracyFamily kPow64 = {
    .family = "Pow",
    .bits = 64,
    .f2 = mpfr_pow,
    .regions = powacc::pow_regions(
        {0x1p-1074, 0x1p-1022, 0x1p1023, 0x1p-52, -1080, 1025, 1015, 1024.5, -1076, -1015, 340}),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kPow64);

}  // namespace
