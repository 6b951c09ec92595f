// The inverse functions at 128 bits (far beyond the 2^-70 an ulp error needs), then
// rounded once to z's precision.
#include "common/erfinv_oracle.h"

#include "common/erfinv_mp.h"
#include "common/oracle.h"

namespace luxtk {
namespace {

using Solve = void (*)(mpfr_ptr, mpfr_srcptr);

// Domain [lo, hi] with poles at the ends, the pole signs given.
int inverse(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd, Solve solve, long lo, long hi, int sign_lo,
            int sign_hi, bool half_scale) {
  if (mpfr_nan_p(x)) {
    mpfr_set_nan(z);
    return 0;
  }
  // half_scale: the domain is [lo/2, hi/2] (CdfNormInv on [0, 1]).
  mpfr_t t;
  mpfr_init2(t, mpfr_get_prec(x) + 2);
  mpfr_set(t, x, MPFR_RNDN);
  if (half_scale) mpfr_mul_2ui(t, t, 1, MPFR_RNDN);
  const int clo = mpfr_cmp_si(t, lo), chi = mpfr_cmp_si(t, hi);
  mpfr_clear(t);
  if (clo < 0 || chi > 0) {
    mpfr_set_nan(z);
    return 0;
  }
  if (clo == 0 || chi == 0) {
    mpfr_set_inf(z, clo == 0 ? sign_lo : sign_hi);
    return 0;
  }
  mpfr_t w;
  mpfr_init2(w, 128);  // ample for errors in ulps of binary64
  solve(w, x);
  const int r = mpfr_set(z, w, rnd);
  mpfr_clear(w);
  return r;
}

}  // namespace

int mpfr_erfinv(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd) {
  return inverse(z, x, rnd, luxmp::erfinv, -1, 1, -1, 1, false);
}
int mpfr_erfcinv(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd) {
  return inverse(z, x, rnd, luxmp::erfcinv, 0, 2, 1, -1, false);
}
int mpfr_cdfnorminv(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd) {
  return inverse(z, x, rnd, luxmp::cdfnorminv, 0, 2, -1, 1, true);
}

}  // namespace luxtk
