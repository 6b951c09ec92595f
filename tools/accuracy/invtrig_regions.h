// The regions of the inverse sine, cosine and tangent sweeps.  Asin and Acos:
// tiny to moderate magnitudes log-uniformly, the whole domain uniformly, the
// approach to +-1 (1 - d with d log-uniform down to the last ulp below 1),
// the class split at 1/2 and the ends with their neighbours, and |x| > 1.
// Atan: the same small magnitudes, the class limits with neighbours, and
// large |x| up to the largest finite.  Atan2: every quadrant at ratios
// log-uniform over the whole range, ratios near the class splits, tiny and
// huge ratios whose quotient leaves the format, and the special values.
#pragma once

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "common/oracle.h"

namespace luxtk::invtrig {

inline double largest(int bits) { return bits == 32 ? 0x1.fffffep127 : 0x1.fffffffffffffp1023; }
inline double least(int bits) { return bits == 32 ? 0x1p-149 : 0x1p-1074; }
inline double round_to(double v, int bits) { return bits == 32 ? double(float(v)) : v; }

// x = +-(1 - d), d log-uniform in [ulp below 1, 1/2].
inline Region near_one_region(std::string name) {
  return {
      std::move(name), [](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
        const double lo = bits == 32 ? 0x1p-24 : 0x1p-53;
        for (long i = 0; i < n; ++i)
          a.push_back(round_to(1.0 - rng.log_uniform(lo, 0.5, true), bits) * (rng.next() & 1 ? -1.0 : 1.0));
      }};
}

inline std::vector<Region> asincos_regions(int bits) {
  return {
      log_uniform_region("small |x| (least to 1/2)", least(bits), 0.5, true),
      uniform_region("|x| <= 1", -1.0, 1.0),
      near_one_region("near +-1"),
      splits_region("splits and ends", {0.5, -0.5, 1.0, -1.0, 0.25, -0.25, 0x1p-12, 0x1p-26}, 16),
      log_uniform_region("|x| > 1 (domain error)", 1.0, largest(bits), true),
      specials_region(),
  };
}

inline std::vector<Region> atan_regions(int bits, std::vector<double> limits) {
  std::vector<double> splits = {1.0, -1.0, 0x1p-12, 0x1p-26, 0x1p24, 0x1p54};
  for (double l : limits) {
    splits.push_back(l);
    splits.push_back(-l);
  }
  return {
      log_uniform_region("small |x| (least to 1)", least(bits), 1.0, true),
      uniform_region("|x| <= 4", -4.0, 4.0),
      log_uniform_region("large |x| (1 to max)", 1.0, largest(bits), true),
      splits_region("class limits and neighbours", splits, 16),
      specials_region(),
  };
}

// Pairs (y, x) with |y| and |x| log-uniform in [lo, hi], signs at random:
// every quadrant.
inline Region quadrant_region(std::string name, double lo, double hi) {
  return pair_region(std::move(name), log_uniform_region("y", lo, hi, true),
                     log_uniform_region("x", lo, hi, true));
}

// y = x * ratio * (1 +- small), x log-uniform in [2^-60, 2^60], both signs
// of each: the ratios near the class splits.
inline Region ratio_region(std::string name, std::vector<double> ratios) {
  return {std::move(name),
          [ratios](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
            for (long i = 0; i < n; ++i) {
              const double x = rng.log_uniform(0x1p-60, 0x1p60, true);
              const double q = ratios[rng.next() % ratios.size()] * (1.0 + rng.uniform(-0x1p-6, 0x1p-6));
              a.push_back(round_to(x * q * (rng.next() & 1 ? -1.0 : 1.0), bits));
              b.push_back(round_to(x, bits));
            }
          }};
}

inline std::vector<Region> atan2_regions(int bits) {
  const double big = largest(bits), tiny = least(bits);
  const double norm = bits == 32 ? 0x1p-126 : 0x1p-1022;
  return {
      quadrant_region("every quadrant, normal", norm, big),
      quadrant_region("every quadrant, |y|, |x| in [1/16, 16]", 1.0 / 16, 16.0),
      ratio_region("ratios near the class splits",
                   {0.375, 0.4375, 0.6875, 0.72, 1.0, 1.1875, 1.75, 2.4375, 2.6875}),
      pair_region("tiny ratio |y/x| (y tiny, x huge)", log_uniform_region("y", tiny, 1.0, true),
                  log_uniform_region("x", big / 16, big, true)),
      pair_region("huge ratio |y/x| (y huge, x tiny)", log_uniform_region("y", big / 16, big, true),
                  log_uniform_region("x", tiny, 1.0, true)),
      pair_region("subnormal arguments", log_uniform_region("y", tiny, norm, true),
                  log_uniform_region("x", tiny, 4.0, true)),
      pair_region("specials against specials", specials_region(), specials_region()),
  };
}

}  // namespace luxtk::invtrig
