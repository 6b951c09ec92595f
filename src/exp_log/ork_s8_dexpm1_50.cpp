// luxsExpm1_64f_A50: e^x - 1 on binary64 arrays.
// max error 2 ulp at x = 0x1.3be1f70bd7a9cp-2 (luxvm accuracy).
//
// A block of 4 lanes runs in vector code when all of them lie in 0.3 <= |x|
// < 709.78 (where the scale 2^k has an exponent field); any other block goes
// lane by lane through the scalar routine, which handles every argument.
#include "exp_log/expm1_kernels.h"

LUXVM_EXPORT luxStatus luxsExpm1_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::genframe::run<Expm1Kernel64>(src, dst, len);
}
