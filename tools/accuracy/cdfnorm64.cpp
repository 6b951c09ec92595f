// Accuracy sweep of luxsCdfNorm_64f_*: Phi(x) = erfc(-x/sqrt 2)/2 in MPFR
// over the centre, the left tail down to the zero thresholds and through
// the subnormal results, the right tail up to where Phi rounds to 1, every
// row boundary, and the thresholds with their neighbours.
#include "accuracy/erf_regions.h"

namespace {

const luxtk::AccuracyFamily kCdfNorm64 =
    {
        .family = "CdfNorm",
        .bits = 64,
        .f1 = luxtk::erf::mpfr_cdfnorm,
        .regions =
            {
                luxtk::erf::thinned(luxtk::uniform_region("centre [-2, 2]", -2.0, 2.0), 20),
                luxtk::erf::thinned(
                    luxtk::log_uniform_region("log-uniform |x| in [2^-1074, 2]", 0x1p-1074, 2.0, true), 20),
                luxtk::erf::thinned(luxtk::uniform_region("left tail [-37.5, -2]", -37.519379347144, -2.0),
                                    20),
                luxtk::erf::thinned(
                    luxtk::uniform_region("subnormal results [-38.49, -37.5]", -38.49, -37.519379347144), 20),
                luxtk::erf::thinned(luxtk::uniform_region("right tail [2, 8.3]", 2.0, 8.3), 20),
                luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0.25, 40.0, 4, true), 16),
                luxtk::splits_region(
                    "thresholds",
                    {-38.485408335567335, -37.51937934714449, 8.292361075813595, 0x1p-54, -0x1p-54}, 32),
                luxtk::specials_region(),
            },
        .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kCdfNorm64);

}  // namespace
