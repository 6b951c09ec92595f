// luxsAtanh_64f_A50: inverse hyperbolic tangent of binary64 lanes, tier A50 (bound 8 ulp).
// max error (measured below)
//
// The kernel and its table stand in hyperbolic/datanh_la.h, which this unit
// and luxsAtanh_64f_A26 each include: the two tiers are one kernel.
#include "hyperbolic/datanh_la.h"

LUXVM_EXPORT luxStatus luxsAtanh_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return atanh_la(src, dst, len);
}
