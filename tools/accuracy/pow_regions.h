// The regions of the Pow accuracy sweeps, for either width.  The hard region
// is a base near 1 with an exponent large enough to carry the result across
// the whole range: there the error of log2 a is multiplied by |b| (up to
// ~2^30 in binary32, ~2^60 in binary64).  Most regions therefore choose the
// result's exponent y first and set b = y / log2 a.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "common/oracle.h"

namespace powacc {

inline double width(double v, int bits) { return bits == 32 ? double(float(v)) : v; }

// a from `pick_a`, b = y / log2 a with y uniform in [ylo, yhi].
template <class A>
luxtk::Region by_result(std::string name, A pick_a, double ylo, double yhi) {
  return {std::move(name),
          [=](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
            for (long i = 0; i < n; ++i) {
              const double x = width(pick_a(rng), bits);
              a.push_back(x);
              b.push_back(width(rng.uniform(ylo, yhi) / std::log2(std::fabs(x)), bits));
            }
          }};
}

// Bases just below the largest finite k-th root (some equal to it): a^k is
// finite and next to the overflow threshold, where b log2 a lies within
// rounding of the largest exponent.
inline luxtk::Region top_bases(double k) {
  return {"", [=](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            const double top = bits == 32 ? 0x1.fffffep127 : 0x1.fffffffffffffp1023;
            const double root = std::pow(top, 1.0 / k);
            for (long i = 0; i < n; ++i)
              a.push_back(width(root * (1.0 - rng.log_uniform(0x1p-60, 0x1p-16, false)), bits));
          }};
}

// What a width needs: the base ranges (smallest subnormal, smallest normal,
// largest binade, one ulp of 1), the result exponents swept overall, near
// overflow and in the denormal range, and the largest integer exponent of a
// negative base (results stay mostly finite).
struct Format {
  double min_sub, min_normal, max_binade, ulp_one;
  double ylo, yhi, over_lo, over_hi, den_lo, den_hi;
  double ints;
};

inline std::vector<luxtk::Region> pow_regions(Format f) {
  return {
      luxtk::pair_region("a in [2^-8,2^8], |b| in [2^-8,2^6]",
                         luxtk::log_uniform_region("", 0x1p-8, 0x1p8, false),
                         luxtk::log_uniform_region("", 0x1p-8, 0x1p6, true)),
      by_result(
          "a over the normal range, any result",
          [=](luxtk::Rng& r) { return r.log_uniform(f.min_normal, f.max_binade, false); }, f.ylo, f.yhi),
      by_result(
          "a near 1, large b", [=](luxtk::Rng& r) { return 1.0 + r.log_uniform(f.ulp_one, 0x1p-3, true); },
          f.ylo, f.yhi),
      by_result(
          "a denormal", [=](luxtk::Rng& r) { return r.log_uniform(f.min_sub, f.min_normal, false); }, f.ylo,
          f.yhi),
      by_result(
          "results near overflow", [](luxtk::Rng& r) { return r.log_uniform(0.25, 4.0, false); }, f.over_lo,
          f.over_hi),
      by_result(
          "results denormal", [](luxtk::Rng& r) { return r.log_uniform(0.25, 4.0, false); }, f.den_lo,
          f.den_hi),
      {"bases next to the largest finite k-th root, b = k in {1, 2, 3, 0.5}",
       [](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
         std::vector<double> unused;
         for (const double k : {1.0, 2.0, 3.0, 0.5}) {
           const size_t start = a.size();
           top_bases(k).draw(rng, bits, n / 4, a, unused);
           b.insert(b.end(), a.size() - start, k);
         }
       }},
      {"negative a, integer b",
       [=](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
         for (long i = 0; i < n; ++i) {
           a.push_back(-width(rng.log_uniform(0.5, 8.0, false), bits));
           b.push_back(std::nearbyint(rng.uniform(-f.ints, f.ints)));
         }
       }},
  };
}

}  // namespace powacc
