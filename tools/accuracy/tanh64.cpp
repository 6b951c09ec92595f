// Accuracy sweep of Tanh on binary64: every finite magnitude, the usual
// range, tiny |x| (row 0, where tanh x ~ x), the approach to saturation, and
// the interval edges of both tables with neighbours.
#include <mpfr.h>

#include <vector>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

// Left ends of the intervals: 8 a binade from 1/8 to 16 (the A50 and A26
// table splits at every other one), 16 to 20 in steps of 2 (A53) and 4.
std::vector<double> interval_edges() {
  std::vector<double> e;
  for (double b = 0.125; b < 16; b *= 2)
    for (int m = 0; m < 8; ++m) e.push_back(b * (1 + m / 8.0));
  e.insert(e.end(), {16.0, 18.0, 20.0, -20.0, -0.125});
  return e;
}

const luxtk::AccuracyFamily kTanh64 = {
    .family = "Tanh",
    .bits = 64,
    .f1 = mpfr_tanh,
    .regions =
        {
            log_uniform_region("log-uniform |x| in [2^-1074, DBL_MAX]", 0x1p-1074, 0x1.fffffffffffffp+1023,
                               true),
            uniform_region("uniform [-5, 5]", -5.0, 5.0),
            log_uniform_region("tiny |x| in [2^-30, 0.125]", 0x1p-30, 0.125, true),
            uniform_region("saturation [5, 22]", 5.0, 22.0),
            splits_region("interval edges", interval_edges(), 3),
            splits_region("tiny |x|", {0x1p-1074, 0x1p-1022, 0x1p-27, -0x1p-27}, 8),
        },
    .bound = nullptr,  // the tier bounds: A53 1 ulp, A50 8, A26 2^27
};

const luxtk::AccuracyRegistrar kRegister(&kTanh64);

}  // namespace
