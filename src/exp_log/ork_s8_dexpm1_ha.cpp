// luxsExpm1_64f_A53: e^x - 1 on binary64 arrays, every lane through the
// scalar routine.
// max error 0.511 ulp at x = 0x1.44002c688686ap+5 (luxvm accuracy).
#include "exp_log/expm1_kernels.h"

LUXVM_EXPORT luxStatus luxsExpm1_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::genframe::run_scalar<Expm1Kernel64>(src, dst, len);
}
