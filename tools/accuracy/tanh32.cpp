// Accuracy sweep of Tanh on binary32: every finite magnitude, the usual
// range, tiny |x|, the approach to saturation, and the interval edges of
// the three tables with neighbours.
#include <mpfr.h>

#include <cfloat>
#include <vector>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

// Left ends of the intervals: 16 a binade from 1/32 to 8 (A21, A11; A24
// splits at every fourth from 1/8), then 8 to 10 in halves.
std::vector<double> interval_edges() {
  std::vector<double> e;
  for (double b = 0.03125; b < 8; b *= 2)
    for (int m = 0; m < 16; ++m) e.push_back(b * (1 + m / 16.0));
  e.insert(e.end(), {8.0, 8.5, 9.0, 9.5, 10.0, -10.0, -0.03125});
  return e;
}

const luxtk::AccuracyFamily kTanh32 = {
    .family = "Tanh",
    .bits = 32,
    .f1 = mpfr_tanh,
    .regions =
        {
            log_uniform_region("all finite |x|", 0x1p-149, FLT_MAX, true),
            uniform_region("uniform [-5, 5]", -5.0, 5.0),
            log_uniform_region("tiny |x| in [2^-20, 0.125]", 0x1p-20, 0.125, true),
            uniform_region("saturation [4, 12]", 4.0, 12.0),
            splits_region("interval edges", interval_edges(), 2),
            splits_region("tiny |x|", {0x1p-149, 0x1p-126, 0x1p-12}, 4),
        },
    .bound = nullptr,
};

const luxtk::AccuracyRegistrar kRegister(&kTanh32);

}  // namespace
