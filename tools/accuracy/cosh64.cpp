// Accuracy sweep of Cosh on binary64: every finite magnitude, the usual
// range, the zone beyond 708.40 up to overflow, and every lane-test edge with
// neighbours.
#include <mpfr.h>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kCosh64 = {
    .family = "Cosh",
    .bits = 64,
    .f1 = mpfr_cosh,
    .regions =
        {
            log_uniform_region("log-uniform |x| in [2^-1074, DBL_MAX]", 0x1p-1074, 0x1.fffffffffffffp+1023,
                               true),
            uniform_region("uniform [-40, 40]", -40.0, 40.0),
            uniform_region("near overflow [705, 710.476]", 705.0, 710.475860073944),
            splits_region("lane-test edges",
                          {
                              708.39892578125,                      // A50, A26 top zone
                              708.4018337446123,                    // A53: M's exponent ends
                              710.4704448615958,                    // A53: split scale
                              710.475860073944, -710.475860073944,  // overflow
                              0x1p-27, 0x1p-54,                     //
                          },
                          16),
        },
    .bound = nullptr,  // the tier bounds: A53 1 ulp, A50 8, A26 2^27
};

const luxtk::AccuracyRegistrar kRegister(&kCosh64);

}  // namespace
