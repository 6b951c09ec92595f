// luxsHypot_32f_A21: sqrt(x^2 + y^2), the arithmetic of the A24 tier, bit for bit.
// max error 0.573 ulp at a = -0x1.d767a8p+0, b = 0x1.3f0162p+3 (native sweep; estimate-seeded tiers vary by
// processor)
#include "powers/hypot_kernel.h"

LUXVM_EXPORT luxStatus luxsHypot_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  return lux::hypot::run32(src1, src2, dst, len);
}
