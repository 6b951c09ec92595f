// luxsLog1p_64f_A26: ln(1 + x) on binary64 arrays; the three binary64 tiers
// are the same code, at the accuracy of the best.
// max error 0.505 ulp at x = 0x1.3243db5ff8b6ep+50 (luxvm accuracy).
//
// A block of 4 lanes runs in vector code when all of them lie in 2 <= x <
// 2^55; any other block goes lane by lane through the scalar routine.
#include "exp_log/log1p_kernels.h"

LUXVM_EXPORT luxStatus luxsLog1p_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::genframe::run<Log1pKernel64>(src, dst, len);
}
