// luxsAsin_64f_A50: inverse sine of binary64 (the code of dasincos_la.h).
// max error 2.13 ulp at x = -0x1.02235d849a05cp-1 (luxvm accuracy).
#include "trig/dasincos_la.h"

LUXVM_EXPORT luxStatus luxsAsin_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::asincos::run<lux::asincos::la64::Asin>(src, dst, len);
}
