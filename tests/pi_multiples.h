// The hardest arguments of a reduction by pi/2: per binary exponent, the
// value with a p-bit significand closest to a multiple of pi/2.  Shared by
// reduce_test and trigcore_test.
//
// For x = M 2^(E-p+1), M in [2^(p-1), 2^p), x 2/pi is M beta with
// beta = 2^(E-p+1) 2/pi, and only alpha = frac(beta) matters.  The M that make
// |M alpha - round(M alpha)| small are found among the continued-fraction
// convergents q_k of alpha: the largest semiconvergent q_(k-1) + t q_k and the
// smallest multiple c q_k that fall into the significand range.
#pragma once

#include <mpfr.h>

#include <cstdint>
#include <vector>

namespace luxtest {

// mpfr_set_ui takes an unsigned long, which has 32 bits on i386.
inline void mpfr_set_u64(mpfr_ptr r, uint64_t v) {
  mpfr_set_ui(r, (unsigned long)(v >> 32), MPFR_RNDN);
  mpfr_mul_2ui(r, r, 32, MPFR_RNDN);
  mpfr_add_ui(r, r, (unsigned long)(v & 0xFFFFFFFFu), MPFR_RNDN);
}

struct NearMultiple {
  int exponent;      // E: x in [2^E, 2^(E+1))
  uint64_t M;        // the significand as an integer, x = M 2^(E-p+1)
  double log2_dist;  // log2 of |x 2/pi - nearest integer|
};

inline std::vector<NearMultiple> nearest_multiples_of_pio2(int p, int e_lo, int e_hi, int e_step) {
  std::vector<NearMultiple> found;
  const mpfr_prec_t work = 400;
  mpfr_t beta, alpha, x, t, dist, best;
  mpfr_inits2(work, alpha, x, t, dist, best, (mpfr_ptr) nullptr);
  // Significands M in [lo, top]; products that overflow are out of range.
  const uint64_t lo = uint64_t(1) << (p - 1), top = p == 64 ? ~uint64_t(0) : (uint64_t(1) << p) - 1;
  for (int E = e_lo; E <= e_hi; E += e_step) {
    mpfr_init2(beta, work + (E > 0 ? E : 0));
    mpfr_const_pi(beta, MPFR_RNDN);
    mpfr_ui_div(beta, 2, beta, MPFR_RNDN);
    mpfr_mul_2si(beta, beta, E - p + 1, MPFR_RNDN);
    mpfr_frac(alpha, beta, MPFR_RNDN);
    mpfr_clear(beta);

    std::vector<uint64_t> cands;
    // Continued fraction of alpha: q_(-1) = 0, q_0 = 1.
    uint64_t qm = 0, q = 1;
    mpfr_set(x, alpha, MPFR_RNDN);
    for (int it = 0; it < 200; ++it) {
      if (mpfr_zero_p(x)) break;
      mpfr_ui_div(x, 1, x, MPFR_RNDN);
      mpfr_floor(t, x);
      mpfr_sub(x, x, t, MPFR_RNDN);
      if (mpfr_cmp_d(t, 0x1p63) >= 0) break;
      const uint64_t a = uint64_t(mpfr_get_d(t, MPFR_RNDN));
      // Largest semiconvergent qm + s q (s <= a) up to top, if it reaches lo.
      uint64_t s = (top - qm) / q;
      if (s > a) s = a;
      if (qm + s * q >= lo) cands.push_back(qm + s * q);
      // Smallest multiple of q in range.
      const uint64_t c = lo / q + (lo % q != 0);
      uint64_t cq;
      if (!__builtin_mul_overflow(c, q, &cq) && cq <= top) cands.push_back(cq);
      uint64_t qn;
      if (__builtin_mul_overflow(a, q, &qn) || __builtin_add_overflow(qn, qm, &qn) || qn > top) break;
      qm = q;
      q = qn;
    }
    uint64_t bestM = 0;
    mpfr_set_inf(best, 1);
    for (const uint64_t M : cands) {
      mpfr_set_u64(t, M);
      mpfr_mul(dist, alpha, t, MPFR_RNDN);
      mpfr_round(t, dist);
      mpfr_sub(dist, dist, t, MPFR_RNDN);
      mpfr_abs(dist, dist, MPFR_RNDN);
      if (mpfr_cmp(dist, best) < 0) {
        mpfr_set(best, dist, MPFR_RNDN);
        bestM = M;
      }
    }
    if (bestM != 0) {
      long ex;
      const double m = mpfr_get_d_2exp(&ex, best, MPFR_RNDN);
      found.push_back({E, bestM, mpfr_zero_p(best) ? -1e9 : double(ex) + __builtin_log2(m)});
    }
  }
  mpfr_clears(alpha, x, t, dist, best, (mpfr_ptr) nullptr);
  return found;
}

}  // namespace luxtest
