// Accuracy sweep of Pow3o2 on binary32: x^(3/2) against MPFR.
#include "common/oracle.h"

namespace {

// x*sqrt(x) at the oracle's precision (NaN below zero).
int mpfr_pow3o2(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
  mpfr_t s;
  mpfr_init2(s, luxtk::kOraclePrecision + 32);
  mpfr_sqrt(s, x, MPFR_RNDN);
  const int t = mpfr_mul(r, s, x, rnd);
  mpfr_clear(s);
  return t;
}

const luxtk::AccuracyFamily kPow3o232 = {
    "Pow3o2",
    32,
    mpfr_pow3o2,
    nullptr,
    {
        luxtk::uniform_region("usual [0, 10]", 0.0, 10.0),
        luxtk::log_uniform_region("all positive", 0x1p-126, 0x1.fffffep+127, false),
        luxtk::log_uniform_region("denormal", 0x1p-149, 0x1p-126, false),
        // Both parities of the exponent (the seed's [1, 4)), the overflow
        // threshold and the ends of the normal range.
        luxtk::splits_region("edges",
                             {1.0, 2.0, 4.0, 0.5, 0x1.555556p+85, 0x1p-126, 0x1.fffffep+127, 0x1p-149}, 16),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kPow3o232);

}  // namespace
