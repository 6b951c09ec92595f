// luxsCbrt_64f_A26: cbrt(x), table (high part only) and a degree-5 fit.
// max error 2 ulp at x = 0x1.10514e0bc2694p-425
#include "powers/cbrt_d_units.h"

LUXVM_EXPORT luxStatus luxsCbrt_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_cbrt64<lux::cbrt64::CbrtFast>(src, dst, len);
}
