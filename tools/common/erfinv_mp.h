// The inverse error functions in MPFR, which has erf and erfc but no
// inverses: erfcinv by Newton's method on ln erfc, erfinv by Newton's method
// on erf near 0 and through erfcinv elsewhere.  Header-only, so that the
// table generators (MPFR alone) and the oracle share one home.
//
// Convergence.  For q < 1 the root of f(z) = ln erfc(z) - ln q is sought from
// z0 = sqrt(-ln q): erfc(z) < exp(-z^2) puts z0 right of the root, and f is
// concave and decreasing, so every Newton step stays right of the root and
// the steps shrink monotonically.  Near 0, erf(z) = a is solved from
// z0 = a*sqrt(pi)/2, left of the root (erf(z) < 2z/sqrt(pi)); erf is
// increasing and concave on z > 0, so the steps climb monotonically to it.
// Iterations run at the working precision until a step changes fewer than
// the last 8 bits.  Started from a converged lower-precision root, the
// steps may land on either side, but each one squares the relative error.
#pragma once

#include <mpfr.h>

namespace luxmp {

// Working values of one solve, cleared on exit.
struct Scratch {
  mpfr_t a, b, c, d;
  explicit Scratch(mpfr_prec_t p) { mpfr_inits2(p, a, b, c, d, (mpfr_ptr)0); }
  ~Scratch() { mpfr_clears(a, b, c, d, (mpfr_ptr)0); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
};

// True when the step `dz` is below z * 2^-(prec - 8) (or z is 0).
inline bool step_is_done(mpfr_srcptr dz, mpfr_srcptr z) {
  if (mpfr_zero_p(dz) || mpfr_zero_p(z)) return true;
  return mpfr_get_exp(dz) < mpfr_get_exp(z) - mpfr_exp_t(mpfr_get_prec(z)) + 8;
}

// Precision of the first pass: above it, a solve first converges at this
// precision and then refines at the full one, which doubles the correct
// bits with each step.
inline constexpr mpfr_prec_t kFirstPass = 80;

// z = erfinv(a) for 0 < a <= 1/2, at z's precision.
inline void erfinv_small(mpfr_ptr z, mpfr_srcptr a) {
  const mpfr_prec_t p = mpfr_get_prec(z);
  Scratch s(p + 16);
  mpfr_const_pi(s.a, MPFR_RNDN);
  mpfr_sqrt(s.a, s.a, MPFR_RNDN);
  mpfr_div_2ui(s.a, s.a, 1, MPFR_RNDN);  // sqrt(pi)/2
  mpfr_t w;
  mpfr_init2(w, p + 16);
  if (p > 2 * kFirstPass) {
    mpfr_t w0;
    mpfr_init2(w0, kFirstPass);
    erfinv_small(w0, a);
    mpfr_set(w, w0, MPFR_RNDN);
    mpfr_clear(w0);
  } else {
    mpfr_mul(w, a, s.a, MPFR_RNDN);
  }
  for (int it = 0; it < 200; ++it) {
    // dz = (erf(w) - a) * sqrt(pi)/2 * exp(w^2)
    mpfr_erf(s.b, w, MPFR_RNDN);
    mpfr_sub(s.b, s.b, a, MPFR_RNDN);
    mpfr_sqr(s.c, w, MPFR_RNDN);
    mpfr_exp(s.c, s.c, MPFR_RNDN);
    mpfr_mul(s.b, s.b, s.c, MPFR_RNDN);
    mpfr_mul(s.b, s.b, s.a, MPFR_RNDN);
    mpfr_sub(w, w, s.b, MPFR_RNDN);
    if (step_is_done(s.b, w)) break;
  }
  mpfr_set(z, w, MPFR_RNDN);
  mpfr_clear(w);
}

// z = erfcinv(q) for 0 < q < 1/2, at z's precision.
inline void erfcinv_small(mpfr_ptr z, mpfr_srcptr q) {
  const mpfr_prec_t p = mpfr_get_prec(z);
  Scratch s(p + 16);
  mpfr_t w, lq;
  mpfr_inits2(p + 16, w, lq, (mpfr_ptr)0);
  mpfr_log(lq, q, MPFR_RNDN);
  if (p > 2 * kFirstPass) {
    mpfr_t w0;
    mpfr_init2(w0, kFirstPass);
    erfcinv_small(w0, q);
    mpfr_set(w, w0, MPFR_RNDN);
    mpfr_clear(w0);
  } else {
    mpfr_neg(w, lq, MPFR_RNDN);
    mpfr_sqrt(w, w, MPFR_RNDN);
  }
  mpfr_const_pi(s.a, MPFR_RNDN);
  mpfr_sqrt(s.a, s.a, MPFR_RNDN);
  mpfr_div_2ui(s.a, s.a, 1, MPFR_RNDN);  // sqrt(pi)/2
  for (int it = 0; it < 400; ++it) {
    // f = ln erfc(w) - ln q, f' = -exp(-w^2) / (sqrt(pi)/2 * erfc(w));
    // dz = f / f' = -(ln erfc(w) - ln q) * sqrt(pi)/2 * erfc(w) * exp(w^2).
    mpfr_erfc(s.b, w, MPFR_RNDN);
    mpfr_log(s.c, s.b, MPFR_RNDN);
    mpfr_sub(s.c, s.c, lq, MPFR_RNDN);
    mpfr_sqr(s.d, w, MPFR_RNDN);
    mpfr_exp(s.d, s.d, MPFR_RNDN);
    mpfr_mul(s.b, s.b, s.d, MPFR_RNDN);
    mpfr_mul(s.b, s.b, s.a, MPFR_RNDN);
    mpfr_mul(s.b, s.b, s.c, MPFR_RNDN);
    mpfr_add(w, w, s.b, MPFR_RNDN);  // w - f/f'
    if (step_is_done(s.b, w)) break;
  }
  mpfr_set(z, w, MPFR_RNDN);
  mpfr_clears(w, lq, (mpfr_ptr)0);
}

// z = erfcinv(q) for 0 < q < 2 (z's precision); q is read exactly.
inline void erfcinv(mpfr_ptr z, mpfr_srcptr q) {
  const mpfr_prec_t p = mpfr_get_prec(z);
  mpfr_t r;
  // Exact 1 - q and 2 - q for q of up to p bits and exponent >= -1100.
  mpfr_init2(r, mpfr_get_prec(q) + 1200);
  if (mpfr_cmp_ui(q, 1) > 0) {
    mpfr_ui_sub(r, 2, q, MPFR_RNDN);
    erfcinv(z, r);
    mpfr_neg(z, z, MPFR_RNDN);
  } else if (mpfr_cmp_d(q, 0.5) >= 0) {
    mpfr_ui_sub(r, 1, q, MPFR_RNDN);
    if (mpfr_zero_p(r)) {
      mpfr_set_zero(z, 1);
    } else {
      mpfr_t t;
      mpfr_init2(t, p);
      erfinv_small(t, r);
      mpfr_set(z, t, MPFR_RNDN);
      mpfr_clear(t);
    }
  } else {
    erfcinv_small(z, q);
  }
  mpfr_clear(r);
}

// z = erfinv(x) for -1 < x < 1 (z's precision); x is read exactly.
inline void erfinv(mpfr_ptr z, mpfr_srcptr x) {
  const bool neg = mpfr_signbit(x);
  mpfr_t a;
  mpfr_init2(a, mpfr_get_prec(x) + 1200);
  mpfr_abs(a, x, MPFR_RNDN);
  if (mpfr_zero_p(a)) {
    mpfr_set(z, x, MPFR_RNDN);
  } else if (mpfr_cmp_d(a, 0.5) <= 0) {
    erfinv_small(z, a);
  } else {
    mpfr_ui_sub(a, 1, a, MPFR_RNDN);  // exact
    erfcinv_small(z, a);
  }
  if (neg) mpfr_neg(z, z, MPFR_RNDN);
  mpfr_clear(a);
}

// z = Phi^-1(p) = -sqrt(2) * erfcinv(2p) for 0 < p < 1.
inline void cdfnorminv(mpfr_ptr z, mpfr_srcptr p) {
  mpfr_t q, r;
  mpfr_init2(q, mpfr_get_prec(p) + 1);
  mpfr_init2(r, mpfr_get_prec(z) + 8);
  mpfr_mul_2ui(q, p, 1, MPFR_RNDN);  // exact
  erfcinv(r, q);
  mpfr_t s2;
  mpfr_init2(s2, mpfr_get_prec(z) + 8);
  mpfr_sqrt_ui(s2, 2, MPFR_RNDN);
  mpfr_mul(r, r, s2, MPFR_RNDN);
  mpfr_neg(z, r, MPFR_RNDN);
  mpfr_clears(q, r, s2, (mpfr_ptr)0);
}

}  // namespace luxmp
