// luxsHypot_64f_A53: sqrt(x^2 + y^2), squares as a two-word sum, root from a
// 12-bit seed and a degree-5 polynomial.
// max error 0.747 ulp at a = 0x0.0000befa769abp-1022, b = -0x0.a4ac976613631p-1022
// (native sweep; estimate-seeded tiers vary by processor)
#include "powers/hypot_kernel.h"

LUXVM_EXPORT luxStatus luxsHypot_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  return lux::hypot::run64(src1, src2, dst, len);
}
