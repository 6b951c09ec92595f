// luxsAtan2_64f_A53: two-argument inverse tangent of binary64 within 1 ulp.
// max error 0.746 ulp at y = 0x1.36c8925e435adp-2, x = -0x1.88cbcbe4ea9a4p-3 (luxvm accuracy).
//
// The kernel of datan2.h at full accuracy, also exported to the other units
// as the internal routines of atan2_kernels.h.
#include "trig/atan2_kernels.h"
#include "trig/datan2.h"

extern "C" bool _orkdAtan2_HA_Pass(const lux64f* y, const lux64f* x, lux64f* dst) {
  return lux::atan2_64::pass<true>(y, x, dst);
}

extern "C" void _orkdAtan2_HA_Lane(const lux64f* y, const lux64f* x, lux64f* dst) {
  lux::atan2_64::lane<true>(y, x, dst);
}

LUXVM_EXPORT luxStatus luxsAtan2_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  return lux::atan2_64::run(src1, src2, dst, len, _orkdAtan2_HA_Pass, _orkdAtan2_HA_Lane);
}
