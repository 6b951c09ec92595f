// Accuracy sweep of Tan on binary64 (tools/accuracy/tan_regions.h): the
// vector paths end at 128000, the scalar routine reduces exactly from 12800.
#include "accuracy/tan_regions.h"

namespace {

const luxtk::AccuracyFamily kTan64 = {
    .family = "Tan",
    .bits = 64,
    .f1 = mpfr_tan,
    .regions =
        luxtk::tanacc::regions(0x1p-1074, 128000.0, 81487.0, 0x1.fffffffffffffp1023,
                               {"small |x| (2^-1074 to 1)", "|x| <= 128000 (vector path)",
                                "huge |x| (128000 to max)", "next to odd multiples of pi/2 up to 128000"}),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kTan64);

}  // namespace
