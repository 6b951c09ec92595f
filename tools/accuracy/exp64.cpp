// Accuracy sweep of Exp on binary64: random magnitudes over the whole finite
// domain, the usual range, and every threshold of the kernels with its
// neighbours.
#include <mpfr.h>

#include "common/oracle.h"

namespace {

using luxtk::AccuracyFamily;

const AccuracyFamily kExp64 = {
    .family = "Exp",
    .bits = 64,
    .f1 = mpfr_exp,
    .regions =
        {
            luxtk::log_uniform_region("log-uniform |x| in [2^-1074, DBL_MAX]", 0x1p-1074,
                                      0x1.fffffffffffffp+1023, true),
            luxtk::uniform_region("uniform [-708.4, 709.78]", -708.4, 709.78),
            luxtk::uniform_region("uniform [-1, 1]", -1.0, 1.0),
            luxtk::uniform_region("denormal results", -745.2, -708.39),
            luxtk::uniform_region("top binade", 709.0, 709.79),
            luxtk::splits_region("thresholds",
                                 {
                                     708.39599609375,     // main-path bound, high word 0x4086232B
                                     -708.39599609375,    //
                                     -708.3964185322642,  // first double below ln 2^-1022
                                     -745.1332191019412,  // ln 2^-1075: results round to zero below
                                     709.7772976810359,   // N reaches 1024*64
                                     709.78000528721,     // N reaches 1024*128
                                     709.7827128933841,   // first double above ln DBL_MAX
                                 },
                                 64),
            luxtk::splits_region("tiny |x|", {0x1p-1074, 0x1p-1022, 0x1p-54, -0x1p-54, 0x1p-27, -0x1p-27},
                                 16),
        },
    .bound = nullptr,  // the tier bounds: A53 1 ulp, A50 8, A26 2^27
};

const luxtk::AccuracyRegistrar kRegister(&kExp64);

}  // namespace
