// Sweep regions of ErfInv, ErfcInv and CdfNormInv, shared by the binary32 and
// binary64 descriptions: the centre, the arguments near each pole down to
// the last representable distance, the reach of the rows (2^-53 and 2^-24
// and their halves for CdfNormInv) with the tail below it down to the least
// denormal, the row boundaries, and the special values.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "common/erfinv_oracle.h"
#include "common/oracle.h"

namespace luxtk::erfinv_regions {

// x = anchor + sign*d, d log-uniform in [lo, hi], rounded to the format.
inline Region near_region(std::string name, double anchor, double sign, double lo, double hi) {
  return {std::move(name), [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            for (long i = 0; i < n; ++i) {
              const double x = anchor + sign * rng.log_uniform(lo, hi, false);
              a.push_back(bits == 32 ? double(float(x)) : x);
            }
          }};
}

// Boundaries of the rows: y = 2^-k and 2^-k * 1.5 for y from 1/2 down a few
// binades and at the rows' end, mapped to the argument by `map`.
inline std::vector<double> row_edges(int bits, double (*map)(double)) {
  std::vector<double> out;
  const int last = bits == 64 ? 53 : 24;
  for (int k = 1; k <= last; k += (k < 4 || k > last - 3) ? 1 : 7)
    for (double j : {1.0, 1.5}) out.push_back(map(std::ldexp(j, -k)));
  return out;
}

inline double erfinv_arg(double y) { return 1.0 - y; }
inline double erfcinv_arg(double y) { return y; }
inline double cdfnorminv_arg(double y) { return y / 2; }

inline std::vector<Region> erfinv(int bits) {
  const double reach = bits == 64 ? 0x1p-53 : 0x1p-24;
  const double eps = bits == 64 ? 0x1p-53 : 0x1p-24;
  return {
      uniform_region("centre [-0.9, 0.9]", -0.9, 0.9),
      log_uniform_region("|x| in [2^-30, 1)", 0x1p-30, 1.0 - eps, true),
      near_region("near 1: 1 - d, d in [2^-53/2^-24, 1/2]", 1.0, -1.0, eps, 0.5),
      near_region("near -1", -1.0, 1.0, eps, 0.5),
      log_uniform_region("scaled path, |x| < reach", bits == 64 ? 0x1p-1074 : 0x1p-149, reach, true),
      splits_region("row boundaries", row_edges(bits, erfinv_arg), 1),
      splits_region("edges", {1.0, -1.0, reach, -reach, 0.5, 0x1p-1022, 0x1p-126, 0.0}, 3),
      specials_region(),
  };
}

inline std::vector<Region> erfcinv(int bits) {
  const double reach = bits == 64 ? 0x1p-53 : 0x1p-24;
  const double eps = bits == 64 ? 0x1p-52 : 0x1p-23;
  return {
      uniform_region("centre [0.1, 1.9]", 0.1, 1.9),
      near_region("near 1 (1 +- d)", 1.0, 1.0, eps, 0.5),
      near_region("near 1 from below", 1.0, -1.0, eps / 2, 0.5),
      near_region("near 2 (2 - d)", 2.0, -1.0, eps, 0.5),
      log_uniform_region("rows near 0, [reach, 1/2]", reach, 0.5, false),
      log_uniform_region("tail, [least denormal, reach)", bits == 64 ? 0x1p-1074 : 0x1p-149, reach, false),
      log_uniform_region("tail of binary32 args in double", 0x1p-149, 0x1p-24, false),
      splits_region("row boundaries", row_edges(bits, erfcinv_arg), 1),
      splits_region("edges", {0.0, 1.0, 2.0, reach, 0.5, 1.5, 0x1p-1022, 0x1p-126, 0x1p-1074}, 3),
      specials_region(),
  };
}

inline std::vector<Region> cdfnorminv(int bits) {
  const double reach = bits == 64 ? 0x1p-54 : 0x1p-25;
  const double eps = bits == 64 ? 0x1p-53 : 0x1p-24;
  return {
      uniform_region("centre [0.05, 0.95]", 0.05, 0.95),
      near_region("near 1/2 from above", 0.5, 1.0, eps / 2, 0.25),
      near_region("near 1/2 from below", 0.5, -1.0, eps / 4, 0.25),
      near_region("near 1 (1 - d)", 1.0, -1.0, eps, 0.5),
      log_uniform_region("rows near 0, [reach, 1/2]", reach, 0.5, false),
      log_uniform_region("tail, [least denormal, reach)", bits == 64 ? 0x1p-1074 : 0x1p-149, reach, false),
      splits_region("row boundaries", row_edges(bits, cdfnorminv_arg), 1),
      splits_region("edges", {0.0, 0.5, 1.0, reach, 0.25, 0.75, 0x1p-1022, 0x1p-126, 0x1p-1074}, 3),
      specials_region(),
  };
}

}  // namespace luxtk::erfinv_regions
