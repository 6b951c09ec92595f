// Pieces the error-function and normal-distribution sweeps share: the
// boundaries of rows keyed by binade subdivisions, and the normal
// distribution function in MPFR.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <vector>

#include "common/oracle.h"

namespace luxtk::erf {

// Every boundary of `per_binade` equal rows a binade from `from` (a power of
// two) while below `to`, with its negative too if asked.
inline std::vector<double> row_boundaries(double from, double to, int per_binade, bool both_signs = false) {
  std::vector<double> out;
  for (double b = from; b < to; b *= 2)
    for (int k = 0; k < per_binade; ++k) {
      const double v = b * (1.0 + double(k) / per_binade);
      if (v >= to) continue;
      out.push_back(v);
      if (both_signs) out.push_back(-v);
    }
  return out;
}

// The region with 1/divisor of the points (at least 100): MPFR's erfc takes
// up to 3 ms a value in the tails, where a full sweep would take minutes.
inline Region thinned(Region r, long divisor) {
  auto draw = r.draw;
  r.draw = [draw, divisor](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
    draw(rng, bits, n / divisor > 100 ? n / divisor : 100, a, b);
  };
  return r;
}

// erfc(x) with 64 guard bits, avoiding MPFR's erfc where it goes through
// erf and proves its rounding slowly (minutes where the result lies within
// 2^-1000 of 1 or 2): for |x| < 2^-200 as 1 - 2x/sqrt(pi) (the next term is
// 2^-400 relative), for x < 0 as 2 - erfc(-x).
inline int mpfr_erfc_fast(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
  if (!mpfr_regular_p(x)) return mpfr_erfc(r, x, rnd);
  const bool tiny = mpfr_get_exp(x) < -200;
  if (!tiny && mpfr_sgn(x) > 0) return mpfr_erfc(r, x, rnd);
  mpfr_t t, k;
  mpfr_inits2(mpfr_get_prec(r) + 64, t, k, (mpfr_ptr)0);
  if (tiny) {
    mpfr_const_pi(k, MPFR_RNDN);
    mpfr_sqrt(k, k, MPFR_RNDN);
    mpfr_div(t, x, k, MPFR_RNDN);
    mpfr_mul_2ui(t, t, 1, MPFR_RNDN);
    mpfr_ui_sub(t, 1, t, MPFR_RNDN);
  } else {
    mpfr_neg(t, x, MPFR_RNDN);
    mpfr_erfc(t, t, MPFR_RNDN);
    mpfr_ui_sub(t, 2, t, MPFR_RNDN);
  }
  const int inex = mpfr_set(r, t, rnd);
  mpfr_clears(t, k, (mpfr_ptr)0);
  return inex;
}

// Phi(x) = erfc(-x/sqrt 2)/2, with guard bits beyond the result's precision.
inline int mpfr_cdfnorm(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
  mpfr_t s, t;
  const mpfr_prec_t p = mpfr_get_prec(r) + 64;
  mpfr_inits2(p, s, t, (mpfr_ptr)0);
  mpfr_sqrt_ui(s, 2, MPFR_RNDN);
  mpfr_div(t, x, s, MPFR_RNDN);
  mpfr_neg(t, t, MPFR_RNDN);
  mpfr_erfc_fast(t, t, MPFR_RNDN);
  const int inex = mpfr_div_2ui(r, t, 1, rnd);
  mpfr_clears(s, t, (mpfr_ptr)0);
  return inex;
}

}  // namespace luxtk::erf
