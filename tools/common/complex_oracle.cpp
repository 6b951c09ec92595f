#include "complex_oracle.h"

#include <algorithm>

namespace luxtk {

double complex_ulp_error(double got_re, double got_im, mpc_srcptr exact, int bits) {
  return std::max(ulp_error(got_re, mpc_realref(exact), bits), ulp_error(got_im, mpc_imagref(exact), bits));
}

void complex_exact(MpcUnary f, double re, double im, mpc_ptr out) {
  mpc_t z;
  mpc_init2(z, kOraclePrecision);
  mpc_set_d_d(z, re, im, MPC_RNDNN);
  f(out, z, MPC_RNDNN);
  mpc_clear(z);
}

void complex_exact(MpcBinary f, double are, double aim, double bre, double bim, mpc_ptr out) {
  mpc_t a, b;
  mpc_init2(a, kOraclePrecision);
  mpc_init2(b, kOraclePrecision);
  mpc_set_d_d(a, are, aim, MPC_RNDNN);
  mpc_set_d_d(b, bre, bim, MPC_RNDNN);
  f(out, a, b, MPC_RNDNN);
  mpc_clear(a);
  mpc_clear(b);
}

}  // namespace luxtk
