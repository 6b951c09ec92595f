// Accuracy sweep of Tan on binary64 (tools/accuracy/tan_regions.h): the
// vector paths end at 128000, the scalar routine reduces exactly from 12800.
#include "accuracy/tan_regions.h"

namespace {

const luxtk::AccuracyFamily kTan64 = {
    .family = "Tan",
    .bits = 64,
    .f1 = mpfr_tan,
    .regions =
        {
            luxtk::log_uniform_region("small |x| (2^-1074 to 1)", 0x1p-1074, 1.0, true),
            luxtk::uniform_region("moderate |x| < 10", -10.0, 10.0),
            luxtk::uniform_region("|x| <= 128000 (vector path)", -128000.0, 128000.0),
            luxtk::log_uniform_region("huge |x| (128000 to max)", 128000.0, 0x1.fffffffffffffp1023, true),
            luxtk::tanacc::near_poles_region("next to odd multiples of pi/2 up to 128000", 81487.0),
            luxtk::tanacc::near_poles_region("next to odd multiples of pi/2 beyond", 1e300),
            luxtk::splits_region("limits and neighbours", {128000.0, -128000.0, 12800.0, 0x1p-1022}, 8),
            luxtk::specials_region(),
        },
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kTan64);

}  // namespace
