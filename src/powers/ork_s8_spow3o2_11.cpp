// luxsPow3o2_32f_A11: x^(3/2), the cube of a root from rsqrtps and one Newton step.
// max error 7.38 ulp at x = 0x1.f02a38p+1
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run32<11>(src, dst, len);
}
