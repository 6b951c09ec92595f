// luxsCbrt_32f_A21: cbrt(x), a degree-7 polynomial in z - 1 times the exponent's third.
// max error 2.06 ulp at x = 0x1.f5a464p+2
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsCbrt_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kCbrt, 21>(src, dst, len);
}
