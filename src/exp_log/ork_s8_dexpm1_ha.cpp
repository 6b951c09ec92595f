// luxsExpm1_64f_A53: e^x - 1 on binary64 arrays, every lane through the
// scalar routine.
// max error TBD
#include "exp_log/expm1_kernels.h"

LUXVM_EXPORT luxStatus luxsExpm1_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::genframe::run_scalar<Expm1Kernel64>(src, dst, len);
}
