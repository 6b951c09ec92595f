// Accuracy sweep of luxsErfc_64f_*: MPFR's erfc over the centre, both
// tails down to the underflow threshold and past it, every row boundary,
// and the thresholds of the lane tests with their neighbours.
#include <mpfr.h>

#include "accuracy/erf_regions.h"

namespace {

const luxtk::AccuracyFamily kErfc64 =
    {
        .family = "Erfc",
        .bits = 64,
        .f1 = luxtk::erf::mpfr_erfc_fast,
        .regions =
            {
                luxtk::erf::thinned(luxtk::uniform_region("centre [-1, 1]", -1.0, 1.0), 20),
                luxtk::erf::thinned(
                    luxtk::log_uniform_region("log-uniform |x| in [2^-1074, 2]", 0x1p-1074, 2.0, true), 20),
                luxtk::erf::thinned(luxtk::uniform_region("right tail [1, 26.54]", 1.0, 26.543258454250978),
                                    20),
                luxtk::erf::thinned(
                    luxtk::uniform_region("subnormal results [26.54, 27.3]", 26.543258454250978, 27.3), 20),
                luxtk::erf::thinned(luxtk::uniform_region("left tail [-6, -1]", -6.0, -1.0), 20),
                luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0.25, 28.0, 4, true), 4),
                luxtk::splits_region("lane-test thresholds",
                                     {26.543258454250978, 26.54330063, 27.226017111108366, 27.2260284,
                                      0x1p-55, -0x1p-55, -26.5433, -27.2261},
                                     8),
                luxtk::specials_region(),
            },
        .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kErfc64);

}  // namespace
