// luxsPow3o2_64f_A50: x^(3/2), a two-word root from the 12-bit seed and a degree-4 polynomial, times x.
// max error 1.24 ulp at x = 0x1.95e39f65e0a8ep+2
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_64f_A50(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run64<50>(src, dst, len);
}
