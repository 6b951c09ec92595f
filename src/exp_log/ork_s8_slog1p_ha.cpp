// luxsLog1p_32f_A24: ln(1 + x) on binary32 arrays; the three binary32 tiers
// are the same code, at the accuracy of the best.
// max error 0.5 ulp at x = 0x1.336058p-2 (luxvm accuracy).
//
// A block of 8 lanes runs in vector code, widened to binary64, when all of
// them lie in 2 <= x < 2^55; any other block goes lane by lane through the
// binary64 scalar routine, narrowed once.
#include "exp_log/log1p_kernels.h"

LUXVM_EXPORT luxStatus luxsLog1p_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::genframe::run<Log1pKernel32>(src, dst, len);
}
