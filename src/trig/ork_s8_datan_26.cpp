// luxsAtan_64f_A26: inverse tangent of binary64 to about 26 bits (short polynomial, no tail).
// max error 9.65e+06 ulp at x = -0x1.bc62389f973cp-3 (luxvm accuracy).
#include "trig/datan.h"

LUXVM_EXPORT luxStatus luxsAtan_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::atan64::run<false>(src, dst, len);
}
