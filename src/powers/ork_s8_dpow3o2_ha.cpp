// luxsPow3o2_64f_A53: x^(3/2) as z^2*(c + u) in exact head products, the power of two applied last.
// max error 0.595 ulp at x = 0x1.d0d0f74bb76a4p-683
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run64<53>(src, dst, len);
}
