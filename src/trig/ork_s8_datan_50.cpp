// luxsAtan_64f_A50: inverse tangent of binary64 within 8 ulp (the code of A53).
// max error 0.772 ulp at x = 0x1.600000000000ep-1 (luxvm accuracy).
#include "trig/datan.h"

LUXVM_EXPORT luxStatus luxsAtan_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::atan64::run<true>(src, dst, len);
}
