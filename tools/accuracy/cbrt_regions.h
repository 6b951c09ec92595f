// The sweep regions of the cube-root family (Cbrt, InvCbrt, Pow2o3) and the
// oracles that MPFR lacks, shared by both widths.
#pragma once

#include <cmath>
#include <vector>

#include "common/oracle.h"

namespace luxtk {

// x^(-1/3) and x^(2/3), odd and even, from MPFR's cube root at the oracle's
// precision.
inline int mpfr_inv_cbrt(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
  mpfr_t c;
  mpfr_init2(c, kOraclePrecision + 32);
  mpfr_cbrt(c, x, MPFR_RNDN);
  const int t = mpfr_ui_div(r, 1, c, rnd);
  mpfr_clear(c);
  return t;
}
inline int mpfr_pow2o3(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
  mpfr_t c;
  mpfr_init2(c, kOraclePrecision + 32);
  mpfr_cbrt(c, x, MPFR_RNDN);
  const int t = mpfr_sqr(r, c, rnd);
  mpfr_clear(c);
  return t;
}

// Log-uniform over the whole line of the width, denormals apart, both signs;
// the split points are the exponent's three remainders, the ends of the 32
// table intervals of [1, 2) and the ends of the normal range.
inline std::vector<Region> cbrt_regions(int bits) {
  const double tiny = bits == 64 ? 0x1p-1022 : 0x1p-126;
  const double huge = bits == 64 ? 0x1.fffffffffffffp+1023 : 0x1.fffffep+127;
  const double denorm = bits == 64 ? 0x1p-1074 : 0x1p-149;
  std::vector<double> splits = {tiny, huge, denorm, 2.0, 4.0, 8.0, 0.5, -1.0, -2.0};
  for (int i = 0; i <= 32; i += 3) splits.push_back(1.0 + i / 32.0);
  return {
      uniform_region("usual [-10, 10]", -10.0, 10.0),
      log_uniform_region("all normal", tiny, huge, true),
      log_uniform_region("denormal", denorm, tiny, true),
      splits_region("edges", splits, 8),
  };
}

}  // namespace luxtk
