// Accuracy sweep of Tan on binary32 (tools/accuracy/tan_regions.h): the
// vector path ends at 10000, the scalar routine reduces exactly from 12800.
#include "accuracy/tan_regions.h"

namespace {

const luxtk::AccuracyFamily kTan32 = {
    .family = "Tan",
    .bits = 32,
    .f1 = mpfr_tan,
    .regions =
        luxtk::tanacc::regions(0x1p-149, 10000.0, 6366.0, 0x1.fffffep127,
                               {"small |x| (2^-149 to 1)", "|x| <= 10000 (vector path)",
                                "huge |x| (10000 to max)", "next to odd multiples of pi/2 up to 10000"}),
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kTan32);

}  // namespace
