// The regions of the tangent sweeps: small, moderate and huge magnitudes, the
// whole vector path uniformly, the range limits and the start of the exact
// reduction with neighbours, and arguments next to odd multiples of pi/2,
// where the result is large and every bit of the reduced argument counts.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <string>
#include <vector>

#include "common/oracle.h"

namespace luxtk::tanacc {

// The representable numbers of the format nearest to odd multiples
// (2m + 1) pi/2 with 2m + 1 log-uniform up to `max_multiple`, and a few steps
// to either side; both signs.
inline Region near_poles_region(std::string name, double max_multiple) {
  return {std::move(name),
          [max_multiple](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            mpfr_t v;
            mpfr_init2(v, 256);
            for (long i = 0; i < n; ++i) {
              const double m = std::floor(rng.log_uniform(1.0, max_multiple, false) / 2.0);
              mpfr_const_pi(v, MPFR_RNDN);
              mpfr_mul_d(v, v, 2.0 * m + 1.0, MPFR_RNDN);
              mpfr_div_2ui(v, v, 1, MPFR_RNDN);
              const int steps = int(rng.next() % 9) - 4;
              double x;
              if (bits == 32) {
                float f = mpfr_get_flt(v, MPFR_RNDN);
                for (int s = 0; s < std::abs(steps); ++s) f = std::nextafter(f, steps > 0 ? 1e30f : -1e30f);
                x = f;
              } else {
                x = mpfr_get_d(v, MPFR_RNDN);
                for (int s = 0; s < std::abs(steps); ++s) x = std::nextafter(x, steps > 0 ? 1e300 : -1e300);
              }
              a.push_back((rng.next() & 1) ? -x : x);
            }
            mpfr_clear(v);
          }};
}

// limit: the end of the vector paths; max_multiple: the last multiple of
// pi/2 below it; max: the largest finite; tiny: the smallest subnormal.
inline std::vector<Region> regions(double tiny, double limit, double max_multiple, double max,
                                   const std::vector<std::string>& names) {
  return {
      log_uniform_region(names[0], tiny, 1.0, true),
      uniform_region("moderate |x| < 10", -10.0, 10.0),
      uniform_region(names[1], -limit, limit),
      log_uniform_region(names[2], limit, max, true),
      near_poles_region(names[3], max_multiple),
      near_poles_region("next to odd multiples of pi/2 beyond", 1e30),
      splits_region("limits and neighbours",
                    {limit, -limit, 12800.0, tiny == 0x1p-149 ? 0x1p-126 : 0x1p-1022}, 8),
      specials_region(),
  };
}

}  // namespace luxtk::tanacc
