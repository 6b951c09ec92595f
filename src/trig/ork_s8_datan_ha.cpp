// luxsAtan_64f_A53: inverse tangent of binary64 within 1 ulp.
// max error (see luxvm accuracy).
#include "trig/datan.h"

LUXVM_EXPORT luxStatus luxsAtan_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::atan64::run<true>(src, dst, len);
}
