// luxsAcosh_64f_A50: inverse hyperbolic cosine of binary64 lanes, tier A50 (bound 8 ulp).
// max error 3.42 ulp at x = 0x1.6cf6a9c5ed25cp+0 (luxvm accuracy, 800297 points)
//
// The kernel and its table stand in hyperbolic/dacosh_la.h, which this unit
// and luxsAcosh_64f_A26 each include: the two tiers are one kernel.
#include "hyperbolic/dacosh_la.h"

LUXVM_EXPORT luxStatus luxsAcosh_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return acosh_la(src, dst, len);
}
