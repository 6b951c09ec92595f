// The regions of the Asinh, Acosh and Atanh accuracy sweeps, for either
// width: the whole domain log-uniformly, the tiny arguments where the series
// must keep full relative accuracy (Asinh, Atanh), the neighbourhood of 1
// where the logarithm's argument approaches 1 (Acosh) or blows up (Atanh),
// the huge arguments that skip the square, and every place where a kernel
// changes path, form or row, with its neighbours.
#pragma once

#include <cfloat>
#include <vector>

#include "common/oracle.h"

namespace invhypacc {

// 1 + s*t with t log-uniform in [one_ulp, 2^-3] (s = +1 or -1).
inline luxtk::Region beside_one(const char* name, double sign) {
  return {name, [sign](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            const double ulp = bits == 32 ? 0x1p-24 : 0x1p-53;
            for (long i = 0; i < n; ++i) {
              const double v = 1.0 + sign * rng.log_uniform(ulp, 0x1p-3, false);
              a.push_back(bits == 32 ? double(float(v)) : v);
            }
          }};
}

inline double max_of(int bits) { return bits == 32 ? double(FLT_MAX) : DBL_MAX; }
inline double min_of(int bits) { return bits == 32 ? 0x1p-149 : 0x1p-1074; }

// Points are given with both signs where the function is odd.
inline std::vector<double> both_signs(std::vector<double> p) {
  const size_t n = p.size();
  for (size_t i = 0; i < n; ++i) p.push_back(-p[i]);
  return p;
}

inline std::vector<luxtk::Region> asinh_regions(int bits) {
  return {
      luxtk::log_uniform_region("all finite", min_of(bits), max_of(bits), true),
      luxtk::log_uniform_region("tiny |x| < 2^-5", 0x1p-40, 0x1p-5, true),
      luxtk::uniform_region("[-4, 4]", -4.0, 4.0),
      luxtk::log_uniform_region("huge |x| > 2^60", 0x1p60, max_of(bits), true),
      luxtk::splits_region("splits",
                           both_signs({
                               0x1p-27,               // binary32 top tier: x itself below
                               0x1p-9,                // binary64 top tier: series below
                               0.5625,                // binary64 A50/A26: vector path from here
                               1.0,                   // binary32 A21: series up to here
                               0x1.333334p+0,         // binary32 A11: series up to 1.2
                               4.0,                   // binary32 top tier: vector path from here
                               0x1.158e46p+63,        // 1e19, binary32 top tier: w = |x| above
                               0x1.fffffcp+63,        // binary32 A21/A11: square overflows from here
                               0x1.bc16d674ec8p+510,  // 1e154, binary64 A50/A26
                               max_of(bits),
                           }),
                           16),
  };
}

inline std::vector<luxtk::Region> acosh_regions(int bits) {
  return {
      luxtk::log_uniform_region("[1, max]", 1.0, max_of(bits), false),
      beside_one("1 + tiny", 1.0),
      luxtk::uniform_region("[1, 4]", 1.0, 4.0),
      luxtk::log_uniform_region("huge x > 2^60", 0x1p60, max_of(bits), false),
      luxtk::splits_region("splits",
                           {
                               1.0,
                               1.00048828125,         // binary64 top tier: series below
                               0x1.214855da27286p+0,  // 1.13001, binary64 A50/A26 near form below
                               1.5,                   // binary32 A21/A11 near form below
                               4.0,                   // binary32 top tier
                               0x1.158e46p+63,        // 1e19
                               0x1.fffffcp+63,
                               0x1p512,  // binary64 A50/A26: x^2 overflows from here
                               max_of(bits),
                           },
                           16),
  };
}

inline std::vector<luxtk::Region> atanh_regions(int bits) {
  return {
      luxtk::log_uniform_region("|x| in (0, 1)", min_of(bits), 1.0 - (bits == 32 ? 0x1p-24 : 0x1p-53), true),
      luxtk::log_uniform_region("tiny |x| < 2^-5", 0x1p-40, 0x1p-5, true),
      luxtk::uniform_region("(-1, 1)", -1.0, 1.0),
      beside_one("1 - tiny", -1.0),
      luxtk::splits_region("splits",
                           both_signs({
                               0x1p-8,  // binary64 top tier: series below
                               0.5,     // near form while x^2 < 1/4
                               0.6,     // binary32 top tier: shift to 0.6875 above
                               0.6875,
                               0.75,  // binary32 top tier: logarithm form from here
                               1.0,
                           }),
                           16),
  };
}

}  // namespace invhypacc
