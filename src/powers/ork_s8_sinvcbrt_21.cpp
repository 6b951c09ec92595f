// luxsInvCbrt_32f_A21: x^(-1/3), the A11 quartic and one Newton step.
// max error 1.19 ulp at x = 0x1.043fdap+3
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsInvCbrt_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kInvCbrt, 21>(src, dst, len);
}
