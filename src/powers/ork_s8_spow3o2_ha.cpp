// luxsPow3o2_32f_A24: x^(3/2) as z^2*(c + u) in exact head products, the power of two applied last.
// max error 0.752 ulp at x = 0x1.f820a6p+1
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run32<24>(src, dst, len);
}
