// Accuracy sweep of luxsCdfNorm_64f_*: Phi(x) = erfc(-x/sqrt 2)/2 in MPFR
// over the centre, the left tail down to -37.519 (below it A26 flushes its
// would-be subnormal results to +0 by design; tests/cdfnorm_test.cpp sweeps
// A53 and A50 through the subnormal results down to -38.4854), the right
// tail up to where Phi rounds to 1, every row boundary, and the thresholds.
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
                luxtk::erf::thinned(luxtk::uniform_region("right tail [2, 8.3]", 2.0, 8.3), 20),
                luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0.25, 37.5, 4, true), 4),
                luxtk::splits_region("thresholds", {-37.519379347144, 8.292361075813595, 0x1p-54, -0x1p-54},
                                     8),
                luxtk::specials_region(),
            },
        .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kCdfNorm64);

}  // namespace
