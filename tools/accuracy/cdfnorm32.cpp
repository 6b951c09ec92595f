// Accuracy sweep of luxsCdfNorm_32f_*: Phi(x) = erfc(-x/sqrt 2)/2 in MPFR
// over the centre, the left tail down to the zero threshold, the right tail
// up to where Phi rounds to 1, every row boundary and the thresholds.
#include "accuracy/erf_regions.h"

namespace {

const luxtk::AccuracyFamily kCdfNorm32 =
    {
        .family = "CdfNorm",
        .bits = 32,
        .f1 = luxtk::erf::mpfr_cdfnorm,
        .regions =
            {
                luxtk::erf::thinned(luxtk::uniform_region("centre [-2, 2]", -2.0, 2.0), 20),
                luxtk::erf::thinned(
                    luxtk::log_uniform_region("log-uniform |x| in [2^-149, 2]", 0x1p-149, 2.0, true), 20),
                luxtk::erf::thinned(luxtk::uniform_region("left tail [-14.2, -2]", -14.170185089111328, -2.0),
                                    20),
                luxtk::erf::thinned(luxtk::uniform_region("right tail [2, 5.5]", 2.0, 5.5), 20),
                luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0x1p-6, 15.0, 16, true), 2),
                luxtk::splits_region("thresholds", {-14.170185089111328, 5.41998291015625, -13.0, 0x1p-25},
                                     8),
                luxtk::specials_region(),
            },
        .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kCdfNorm32);

}  // namespace
