// luxsAtan2_64f_A50: two-argument inverse tangent of binary64 within 8 ulp
// (the code and constants of the A53 kernel, datan2.h).
// max error 0.746 ulp at y = 0x1.36c8925e435adp-2, x = -0x1.88cbcbe4ea9a4p-3 (luxvm accuracy).
#include "trig/datan2.h"

LUXVM_EXPORT luxStatus luxsAtan2_64f_A50(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  return lux::atan2_64::run(src1, src2, dst, len, lux::atan2_64::pass<true>, lux::atan2_64::lane<true>);
}
