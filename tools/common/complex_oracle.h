// GNU MPC as the oracle of complex functions: the error of a complex result
// is the larger of its two components' errors, each in ulps of the format at
// the exact component (as ulp_error measures real results).
#pragma once

#include <mpc.h>

#include "oracle.h"

namespace luxtk {

using MpcUnary = int (*)(mpc_ptr, mpc_srcptr, mpc_rnd_t);
using MpcBinary = int (*)(mpc_ptr, mpc_srcptr, mpc_srcptr, mpc_rnd_t);

double complex_ulp_error(double got_re, double got_im, mpc_srcptr exact, int bits);

// Exact value of f at (re, im) with the oracle's precision, into `out`
// (initialised by the caller with kOraclePrecision).
void complex_exact(MpcUnary f, double re, double im, mpc_ptr out);
void complex_exact(MpcBinary f, double are, double aim, double bre, double bim, mpc_ptr out);

}  // namespace luxtk
