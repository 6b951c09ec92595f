// luxsPow3o2_64f_A26: x^(3/2), the cube of a root from the 12-bit seed and a degree-3 polynomial.
// max error 6.04 ulp at x = 0x1.fc857e5862555p-13
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run64<26>(src, dst, len);
}
