// luxsAtan_64f_A50: inverse tangent of binary64 within 8 ulp (the code of A53).
// max error (see luxvm accuracy).
#include "trig/datan.h"

LUXVM_EXPORT luxStatus luxsAtan_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::atan64::run<true>(src, dst, len);
}
