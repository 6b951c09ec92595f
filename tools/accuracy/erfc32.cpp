// Accuracy sweep of luxsErfc_32f_*: MPFR's erfc over the centre, both
// tails down to the underflow threshold and past it, every row boundary,
// and the thresholds of the lane tests with their neighbours.
#include <mpfr.h>

#include "accuracy/erf_regions.h"

namespace {

const luxtk::AccuracyFamily kErfc32 =
    {
        .family = "Erfc",
        .bits = 32,
        .f1 = luxtk::erf::mpfr_erfc_fast,
        .regions =
            {
                luxtk::erf::thinned(luxtk::uniform_region("centre [-1, 1]", -1.0, 1.0), 20),
                luxtk::erf::thinned(
                    luxtk::log_uniform_region("log-uniform |x| in [2^-149, 2]", 0x1p-149, 2.0, true), 20),
                luxtk::erf::thinned(luxtk::uniform_region("right tail [1, 9.19]", 1.0, 9.194549560546875),
                                    20),
                luxtk::erf::thinned(
                    luxtk::uniform_region("subnormal results [9.19, 10.1]", 9.194549560546875, 10.1), 20),
                luxtk::erf::thinned(luxtk::uniform_region("left tail [-4, -1]", -4.0, -1.0), 20),
                luxtk::splits_region("row boundaries", luxtk::erf::row_boundaries(0x1p-6, 10.5, 16, true), 2),
                luxtk::splits_region(
                    "lane-test thresholds",
                    {9.194549560546875, 10.054195404052734, -3.8325066566467285, 0x1p-27, 5.0}, 8),
                luxtk::specials_region(),
            },
        .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kErfc32);

}  // namespace
