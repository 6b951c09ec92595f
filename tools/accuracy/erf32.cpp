// Accuracy sweep of luxsErf_32f_*: MPFR's erf over log-uniform magnitudes
// down to the subnormals, the usual range, and every row boundary.
#include <mpfr.h>

#include "accuracy/erf_regions.h"

namespace {

const luxtk::AccuracyFamily kErf32 = {
    .family = "Erf",
    .bits = 32,
    .f1 = mpfr_erf,
    .regions =
        {
            luxtk::log_uniform_region("log-uniform |x| in [2^-149, 8]", 0x1p-149, 8.0, true),
            luxtk::uniform_region("uniform [-4.5, 4.5]", -4.5, 4.5),
            luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0x1p-5, 4.0, 16), 8),
            luxtk::splits_region("polynomial limits", {3.0, -3.0, 4.0, -4.0, 0x1p-126, 0x1p-149}, 16),
            luxtk::specials_region(),
        },
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kErf32);

}  // namespace
