// The regions of the Expm1 and Log1p sweeps, one list per width: random
// magnitudes over the domain, the neighbourhood of 0 where the functions
// cancel, and every threshold of the scalar routine and of the vector
// bodies with its neighbours.
#pragma once

#include <vector>

#include "common/oracle.h"

namespace luxtk::expm1_log1p {

// tiny: the smallest subnormal; max_arg: the largest argument of interest
// (e^x - 1 finite); last_finite: the last x whose e^x - 1 is finite.
inline std::vector<Region> expm1_regions(const char* wide_name, double tiny, const char* range_name,
                                         double max_arg, double last_finite) {
  return {
      log_uniform_region(wide_name, tiny, max_arg, true),
      log_uniform_region("near 0: log-uniform |x| in [2^-60, 0.3]", 0x1p-60, 0.3, true),
      uniform_region("uniform [-1, 1]", -1.0, 1.0),
      uniform_region(range_name, -50.0, max_arg),
      splits_region("thresholds",
                    {
                        0x1p-57,             // polynomial from here
                        0x1p-8,              // reduction from here; binary32 vector bodies
                        0.2999999523162842,  // binary64 vector bodies from here
                        36.44183349609375,   // the middle range of the main path
                        40.2025146484375,    // high path above
                        43.054229736328125,  //
                        86.64337158203125,   // upper path, or -1 below the negative one
                        88.72283172607422,   // last binary32 with a finite result
                        last_finite,
                    },
                    16),
      specials_region(),
  };
}

// tiny: the smallest subnormal; max: the largest finite.
inline std::vector<Region> log1p_regions(const char* wide_name, double tiny, double max) {
  return {
      log_uniform_region(wide_name, tiny, max, false),
      log_uniform_region("near 0: log-uniform |x| in [2^-60, 0.1]", 0x1p-60, 0.1, true),
      uniform_region("uniform [-1, 2]", -1.0, 2.0),
      uniform_region("near -1: uniform [-1, -0.99]", -1.0, -0.99),
      uniform_region("vector bodies: uniform [2, 100]", 2.0, 100.0),
      splits_region("thresholds",
                    {
                        0x1p-57, 0x1p-13, 0x1p-6,  // polynomial zones
                        0.0712890625,              // logarithm path
                        -0.0712890625,             //
                        -1.0,                      // singularity
                        2.0,                       // vector bodies
                        0x1p55,                    // the 1 stops counting
                        0.5, -0.5,                 // binade of 1 + x changes
                    },
                    16),
      specials_region(),
  };
}

}  // namespace luxtk::expm1_log1p
