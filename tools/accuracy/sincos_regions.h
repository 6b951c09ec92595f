// The regions of the sine and cosine sweeps, one list per width: tiny to
// moderate magnitudes log-uniformly down to the subnormals; the usual range
// and the whole vector path uniformly; huge arguments, which go through the
// scalar routine and its exact reduction, log-uniformly up to the largest
// finite; the range limits and the points where the scalar routine changes
// its method (exact reduction from 2^17; 2^-252 where the binary64 core
// returns x or 1 itself), each with its neighbours.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "common/oracle.h"

namespace luxtk::sincos {

// binary32: the A11 vector path ends at 4000, the A21 and A24 ones at 10000.
inline std::vector<Region> regions32(std::string a11_path_name) {
  return {
      log_uniform_region("small |x| (2^-149 to 1)", 0x1p-149, 1.0, true),
      uniform_region("moderate |x| < 10", -10.0, 10.0),
      uniform_region(std::move(a11_path_name), -4000.0, 4000.0),
      uniform_region("|x| <= 10000 (vector path)", -10000.0, 10000.0),
      log_uniform_region("huge |x| (10000 to max)", 10000.0, 0x1.fffffep127, true),
      splits_region("limits and neighbours", {4000.0, -4000.0, 10000.0, -10000.0, 131072.0, 0x1p-126}, 4),
      specials_region(),
  };
}

// binary64: every tier's vector path ends at 90112.
inline std::vector<Region> regions64() {
  return {
      log_uniform_region("small |x| (2^-1074 to 1)", 0x1p-1074, 1.0, true),
      uniform_region("moderate |x| < 10", -10.0, 10.0),
      uniform_region("|x| < 90112 (vector path)", -90112.0, 90112.0),
      log_uniform_region("huge |x| (90112 to max)", 90112.0, 0x1.fffffffffffffp1023, true),
      splits_region("limits and neighbours", {90112.0, -90112.0, 131072.0, 0x1p-252, 0x1p-1022}, 4),
      specials_region(),
  };
}

inline AccuracyFamily family(std::string name, int bits, MpfrUnary f1, std::vector<Region> regions) {
  AccuracyFamily f;
  f.family = std::move(name);
  f.bits = bits;
  f.f1 = f1;
  f.regions = std::move(regions);
  return f;
}

}  // namespace luxtk::sincos
