// The regions of the Ln and Log10 accuracy sweeps, for either width: the
// whole positive finite range with the denormals, the neighbourhood of 1
// where the logarithm is small and the sum must not cancel, and the places
// where the kernels change row, exponent or path.  The two families share
// their kernels' structure, so they are swept over the same places.
#pragma once

#include <cfloat>
#include <vector>

#include "common/oracle.h"

namespace logacc {

// x = 1 + t and 1 - t with |t| log-uniform in [tiny, 2^-7] (tiny one ulp of
// 1: 2^-24 or 2^-53): the results closest to zero, where relative accuracy is
// hardest to keep.
inline luxtk::Region around_one(double tiny) {
  return {"1 +- tiny",
          [tiny](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            for (long i = 0; i < n; ++i) {
              const double t = rng.log_uniform(tiny, 0x1p-7, true);
              a.push_back(bits == 32 ? double(float(1.0 + t)) : 1.0 + t);
            }
          }};
}

struct Width {
  double min_denormal, min_normal, max, one_ulp;
};
constexpr Width kBinary32 = {0x1p-149, 0x1p-126, FLT_MAX, 0x1p-24};
constexpr Width kBinary64 = {0x1p-1074, 0x1p-1022, DBL_MAX, 0x1p-53};

inline std::vector<luxtk::Region> log_regions(const Width& w) {
  return {
      luxtk::log_uniform_region("all positive", w.min_denormal, w.max, false),
      luxtk::log_uniform_region("denormal", w.min_denormal, w.min_normal, false),
      luxtk::uniform_region("[0.5, 2]", 0.5, 2.0),
      luxtk::uniform_region("1 +- 2^-8", 1.0 - 0x1p-8, 1.0 + 0x1p-8),
      around_one(w.one_ulp),
      luxtk::splits_region("splits",
                           {
                               1.0,  // row 0 / 512, e = 0
                               0x1.7fcp+0,
                               0x1.7fp+0,  // where e steps (Ln A53, Log10 A24)
                               0x1.ffp+0,
                               0x1.ff8p+0,  // last rows before 2
                               0x1.01p+0,
                               0x1.008p+0,  // first row steps
                               0x1.fcp-1,
                               0x1.04p+0,      // near-one window of A24
                               0x1.6a09e6p+0,  // sqrt 2, A11's range split
                               w.min_normal,   // smallest normal
                               2.0,
                               0.5,
                               10.0,
                               w.max,
                           },
                           16),
  };
}

}  // namespace logacc
