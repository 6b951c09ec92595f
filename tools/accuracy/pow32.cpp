// Accuracy sweep of Pow on binary32: the regions of pow_regions.h.
#include "accuracy/pow_regions.h"

namespace {

const luxtk::AccuracyFamily kPow32 = {
    .family = "Pow",
    .bits = 32,
    .f2 = mpfr_pow,
    .regions =
        powacc::pow_regions({0x1p-149, 0x1p-126, 0x1p127, 0x1p-23, -152, 129, 120, 128.5, -151, -120, 40}),
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kPow32);

}  // namespace
