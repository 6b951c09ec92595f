// luxsPow3o2_32f_A11: x^(3/2), the cube of a root from rsqrtps and one Newton step.
// max error TBD
#include "powers/pow3o2_kernel.h"

LUXVM_EXPORT luxStatus luxsPow3o2_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow3o2::run32<11>(src, dst, len);
}
