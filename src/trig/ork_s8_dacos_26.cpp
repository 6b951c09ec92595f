// luxsAcos_64f_A26: inverse cosine of binary64 (the code of dasincos_la.h).
// max error 3.17 ulp at x = 0x1.2459d991baf78p-1 (luxvm accuracy).
#include "trig/dasincos_la.h"

LUXVM_EXPORT luxStatus luxsAcos_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::asincos::run<lux::asincos::la64::Acos>(src, dst, len);
}
