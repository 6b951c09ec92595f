// Accuracy sweep of Sinh on binary64: every finite magnitude, the usual
// range, tiny |x| where e^a/2 - e^-a/2 cancels, the zone beyond 708.40 up to
// overflow, and every lane-test edge of the three kernels with neighbours.
#include <mpfr.h>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kSinh64 = {
    .family = "Sinh",
    .bits = 64,
    .f1 = mpfr_sinh,
    .regions =
        {
            log_uniform_region("log-uniform |x| in [2^-1074, DBL_MAX]", 0x1p-1074, 0x1.fffffffffffffp+1023,
                               true),
            uniform_region("uniform [-40, 40]", -40.0, 40.0),
            log_uniform_region("tiny |x| in [2^-30, 0.3]", 0x1p-30, 0.3, true),
            uniform_region("near overflow [705, 710.476]", 705.0, 710.475860073944),
            splits_region("lane-test edges",
                          {
                              0.034999996423721313, -0.034999996423721313,  // x87 polynomial below
                              0.2474665641784668,                           // order of the last sum
                              0.125, -0.125,                                // A50, A26 near-zero path below
                              0.03125, 0.0625, 0.09375,                     // rows of the near-zero table
                              708.39892578125,                              // A50, A26 top zone
                              708.4018337446123,                            // A53: M's exponent ends
                              710.4704448615958,                            // A53: split scale
                              710.475860073944, -710.475860073944,          // overflow
                          },
                          16),
            splits_region("tiny |x|", {0x1p-1074, 0x1p-1022, 0x1p-54, 0x1p-27, -0x1p-27}, 8),
        },
    .bound = nullptr,  // the tier bounds: A53 1 ulp, A50 8, A26 2^27
};

const luxtk::AccuracyRegistrar kRegister(&kSinh64);

}  // namespace
