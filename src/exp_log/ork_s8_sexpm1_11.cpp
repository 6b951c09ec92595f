// luxsExpm1_32f_A11: e^x - 1 on binary32 arrays; the three binary32 tiers are
// the same code.
// max error 0.5 ulp at x = -0x1.99cc2ap-1 (luxvm accuracy).
//
// A block of 8 lanes runs in vector code, widened to binary64, when all of
// them lie in 2^-8 <= |x| <= 88.72283172607422; any other block goes lane by
// lane through the binary64 scalar routine, narrowed once.
#include "exp_log/expm1_kernels.h"

LUXVM_EXPORT luxStatus luxsExpm1_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::genframe::run<Expm1Kernel32>(src, dst, len);
}
