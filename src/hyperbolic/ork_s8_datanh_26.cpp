// luxsAtanh_64f_A26: inverse hyperbolic tangent of binary64 lanes, tier A26 (bound 2^27 ulp).
// max error 3.28 ulp at x = -0x1.32b6da1629cf4p-1 (luxvm accuracy, 800396 points)
//
// The kernel and its table stand in hyperbolic/datanh_la.h, which this unit
// and luxsAtanh_64f_A50 each include: the two tiers are one kernel.
#include "hyperbolic/datanh_la.h"

LUXVM_EXPORT luxStatus luxsAtanh_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return atanh_la(src, dst, len);
}
