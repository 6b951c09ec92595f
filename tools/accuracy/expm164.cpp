// Accuracy sweep of Expm1 on binary64: random magnitudes over the finite domain
// of both signs, the neighbourhood of 0 where e^x - 1 cancels, and every
// threshold of the scalar routine and of the vector bodies with neighbours.
#include <mpfr.h>

#include "common/oracle.h"

namespace {

const luxtk::AccuracyFamily kExpm164 = {
    .family = "Expm1",
    .bits = 64,
    .f1 = mpfr_expm1,
    .regions =
        {
            luxtk::log_uniform_region("log-uniform |x| in [0x1p-1074, 709.78]", 0x1p-1074, 709.78, true),
            luxtk::log_uniform_region("near 0: log-uniform |x| in [2^-60, 0.3]", 0x1p-60, 0.3, true),
            luxtk::uniform_region("uniform [-1, 1]", -1.0, 1.0),
            luxtk::uniform_region("uniform [-50, 709.78]", -50.0, 709.78),
            luxtk::splits_region("thresholds",
                                 {
                                     0x1p-57,             // polynomial from here
                                     0x1p-8,              // reduction from here; binary32 vector bodies
                                     0.2999999523162842,  // binary64 vector bodies from here
                                     36.44183349609375,   // the middle range of the main path
                                     40.2025146484375,    // high path above
                                     43.054229736328125,  //
                                     86.64337158203125,   // upper path, or -1 below the negative one
                                     88.72283172607422,   // last binary32 with a finite result
                                     709.782712893384,    // last finite result
                                 },
                                 16),
            luxtk::specials_region(),
        },
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kExpm164);

}  // namespace
