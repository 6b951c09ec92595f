// luxsPow2o3_32f_A11: x^(2/3), the A11 cube root squared.
// max error 2.55e+03 ulp at x = -0x1.6a03c2p+1
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsPow2o3_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kPow2o3, 11>(src, dst, len);
}
