// luxsPow2o3_64f_A26: x^(2/3), the cube root of the A26 Cbrt, squared.
// max error 5.56 ulp at x = -0x0.2be0905b45ddfp-1022
#include "powers/cbrt_d_units.h"

LUXVM_EXPORT luxStatus luxsPow2o3_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_cbrt64<lux::cbrt64::Pow2o3Fast>(src, dst, len);
}
