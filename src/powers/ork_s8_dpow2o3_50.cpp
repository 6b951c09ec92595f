// luxsPow2o3_64f_A50: x^(2/3), the arithmetic of the A53 tier, bit for bit.
// max error 0.522 ulp at x = 0x1.17d53dbd9fe8ap+139
#include "powers/cbrt_d_units.h"

LUXVM_EXPORT luxStatus luxsPow2o3_64f_A50(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_cbrt64<lux::cbrt64::Pow2o3Ha>(src, dst, len);
}
