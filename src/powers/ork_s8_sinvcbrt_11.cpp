// luxsInvCbrt_32f_A11: x^(-1/3), a quartic in the significand times the exponent's third.
// max error 686 ulp at x = 0x1.142afap+3
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsInvCbrt_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kInvCbrt, 11>(src, dst, len);
}
