// luxsAsinh_64f_A50: inverse hyperbolic sine of binary64 lanes, tier A50 (bound 8 ulp).
// max error 2.18 ulp at x = 0x1.853823f55f018p-1 (luxvm accuracy, 800660 points)
//
// The kernel and its table stand in hyperbolic/dasinh_la.h, which this unit
// and luxsAsinh_64f_A26 each include: the two tiers are one kernel.
#include "hyperbolic/dasinh_la.h"

LUXVM_EXPORT luxStatus luxsAsinh_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return asinh_la(src, dst, len);
}
