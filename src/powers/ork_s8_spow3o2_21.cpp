// luxsPow3o2_32f_A21: x^(3/2), a two-word root from rsqrtps and a degree-2 polynomial, times x.
// max error 1.37 ulp at x = 0x1.360178p+3
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run32<21>(src, dst, len);
}
