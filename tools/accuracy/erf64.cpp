// Accuracy sweep of luxsErf_64f_*: MPFR's erf over log-uniform magnitudes
// down to the subnormals, the usual range, every row boundary of the
// interval keys, and the thresholds of the tiny-argument path.
#include <mpfr.h>

#include "accuracy/erf_regions.h"

namespace {

const luxtk::AccuracyFamily kErf64 = {
    .family = "Erf",
    .bits = 64,
    .f1 = mpfr_erf,
    .regions =
        {
            luxtk::log_uniform_region("log-uniform |x| in [2^-1074, 8]", 0x1p-1074, 8.0, true),
            luxtk::uniform_region("uniform [-6.5, 6.5]", -6.5, 6.5),
            luxtk::uniform_region("uniform [-0.25, 0.25]", -0.25, 0.25),
            luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0.125, 6.0, 8), 16),
            luxtk::splits_region("tiny-path and last-row thresholds",
                                 {0x1p-1074, 0x1p-1034, 0x1p-1022, 0x1p-1015, 5.921587195794508, 6.0, 4.0},
                                 16),
            luxtk::specials_region(),
        },
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kErf64);

}  // namespace
