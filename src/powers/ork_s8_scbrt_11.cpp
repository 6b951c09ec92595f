// luxsCbrt_32f_A11: cbrt(x), a cubic in the significand times the exponent's third.
// max error 1.3e+03 ulp at x = 0x1.d665acp-1
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsCbrt_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kCbrt, 11>(src, dst, len);
}
