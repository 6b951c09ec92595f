// Accuracy sweep of Sinh on binary32: every finite magnitude, the usual
// range, tiny |x| where e^a/2 - e^-a/2 cancels, the top zone and overflow,
// and every lane-test edge with neighbours.
#include <mpfr.h>

#include <cfloat>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kSinh32 = {
    .family = "Sinh",
    .bits = 32,
    .f1 = mpfr_sinh,
    .regions =
        {
            log_uniform_region("all finite |x|", 0x1p-149, FLT_MAX, true),
            uniform_region("uniform [-20, 20]", -20.0, 20.0),
            log_uniform_region("tiny |x| in [2^-20, 0.3]", 0x1p-20, 0.3, true),
            uniform_region("near overflow [85, 89.416]", 85.0, 89.41598510742188),
            splits_region("lane-test edges",
                          {
                              0.2160000056028366, -0.2160000056028366,  // A21 polynomial below
                              16.0,                                     // M cut to zero
                              89.41056060791016,                        // top zone
                              89.41598510742188, -89.41598510742188,    // last finite
                              0.0054152,                                // N = 1
                          },
                          8),
            splits_region("tiny |x|", {0x1p-149, 0x1p-126, 0x1p-24, 0x1p-12}, 4),
        },
    .bound = nullptr,
};

const luxtk::AccuracyRegistrar kRegister(&kSinh32);

}  // namespace
