// luxsPow2o3_32f_A24: x^(2/3), a degree-8 cube root and its square in binary64.
// max error 0.62 ulp at x = -0x1.657766p+73
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsPow2o3_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kPow2o3, 24>(src, dst, len);
}
