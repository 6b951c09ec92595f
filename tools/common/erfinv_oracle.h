// The inverse error functions and the inverse normal distribution as MPFR
// one-argument functions for the accuracy sweeps: erfinv, erfcinv and
// Phi^-1 of tools/common/erfinv_mp.h at the oracle's precision, with the
// poles and the NaNs of their domains' ends.
#pragma once

#include <mpfr.h>

namespace luxtk {

int mpfr_erfinv(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd);
int mpfr_erfcinv(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd);
int mpfr_cdfnorminv(mpfr_ptr z, mpfr_srcptr x, mpfr_rnd_t rnd);

}  // namespace luxtk
