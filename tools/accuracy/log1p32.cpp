// Accuracy sweep of Log1p on binary32: random magnitudes over the whole domain
// above -1, the neighbourhood of 0 where ln(1 + x) cancels, the approach to
// -1, and every zone and range split with neighbours.  Every tier has the
// accuracy of the best one: 1 ulp.
#include <mpfr.h>

#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kLog1p32 = {
    .family = "Log1p",
    .bits = 32,
    .f1 = mpfr_log1p,
    .regions =
        {
            luxtk::log_uniform_region("log-uniform x in [0x1p-149, max]", 0x1p-149, 0x1.fffffep+127, false),
            luxtk::log_uniform_region("near 0: log-uniform |x| in [2^-60, 0.1]", 0x1p-60, 0.1, true),
            luxtk::uniform_region("uniform [-1, 2]", -1.0, 2.0),
            luxtk::uniform_region("near -1: uniform [-1, -0.99]", -1.0, -0.99),
            luxtk::uniform_region("vector bodies: uniform [2, 100]", 2.0, 100.0),
            luxtk::splits_region("thresholds",
                                 {
                                     0x1p-57, 0x1p-13, 0x1p-6,  // polynomial zones
                                     0.0712890625,              // logarithm path
                                     -0.0712890625,             //
                                     -1.0,                      // singularity
                                     2.0,                       // vector bodies
                                     0x1p55,                    // the 1 stops counting
                                     0.5, -0.5,                 // binade of 1 + x changes
                                 },
                                 16),
            luxtk::specials_region(),
        },
    .bound = [](const luxtk::CensusEntry&) { return 1.0; },
};
const luxtk::AccuracyRegistrar kRegistered(&kLog1p32);

}  // namespace
