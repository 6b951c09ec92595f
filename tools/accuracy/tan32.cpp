// Accuracy sweep of Tan on binary32 (tools/accuracy/tan_regions.h): the
// vector path ends at 10000, the scalar routine reduces exactly from 12800.
#include "accuracy/tan_regions.h"

namespace {

const luxtk::AccuracyFamily kTan32 = {
    .family = "Tan",
    .bits = 32,
    .f1 = mpfr_tan,
    .regions =
        {
            luxtk::log_uniform_region("small |x| (2^-149 to 1)", 0x1p-149, 1.0, true),
            luxtk::uniform_region("moderate |x| < 10", -10.0, 10.0),
            luxtk::uniform_region("|x| <= 10000 (vector path)", -10000.0, 10000.0),
            luxtk::log_uniform_region("huge |x| (10000 to max)", 10000.0, 0x1.fffffep127, true),
            luxtk::tanacc::near_poles_region("next to odd multiples of pi/2 up to 10000", 6366.0),
            luxtk::tanacc::near_poles_region("next to odd multiples of pi/2 beyond", 1e30),
            luxtk::splits_region("limits and neighbours", {10000.0, -10000.0, 12800.0, 0x1p-126}, 8),
            luxtk::specials_region(),
        },
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kTan32);

}  // namespace
