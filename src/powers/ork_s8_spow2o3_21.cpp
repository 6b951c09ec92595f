// luxsPow2o3_32f_A21: x^(2/3), the A21 cube root squared.
// max error 4.48 ulp at x = 0x1.f5a464p+2
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsPow2o3_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kPow2o3, 21>(src, dst, len);
}
