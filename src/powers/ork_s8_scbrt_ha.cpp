// luxsCbrt_32f_A24: cbrt(x), a degree-7 polynomial in binary64, narrowed, times the exponent's third.
// max error 0.903 ulp at x = -0x1.f60892p+2
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsCbrt_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kCbrt, 24>(src, dst, len);
}
