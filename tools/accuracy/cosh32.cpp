// Accuracy sweep of Cosh on binary32: every finite magnitude, the usual
// range, the top zone and overflow, and every lane-test edge with neighbours.
#include <mpfr.h>

#include <cfloat>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kCosh32 = {
    .family = "Cosh",
    .bits = 32,
    .f1 = mpfr_cosh,
    .regions =
        {
            log_uniform_region("all finite |x|", 0x1p-149, FLT_MAX, true),
            uniform_region("uniform [-20, 20]", -20.0, 20.0),
            uniform_region("near overflow [85, 89.416]", 85.0, 89.41598510742188),
            splits_region("lane-test edges",
                          {
                              16.0,               // M cut to zero
                              88.0242691040039,   // A24 top zone
                              89.41056060791016,  // A21, A11 top zone
                              89.41598510742188,
                              -89.41598510742188,  // last finite
                              0x1p-12,
                          },
                          8),
        },
    .bound = nullptr,
};

const luxtk::AccuracyRegistrar kRegister(&kCosh32);

}  // namespace
