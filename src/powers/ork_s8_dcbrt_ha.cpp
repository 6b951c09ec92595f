// luxsCbrt_64f_A53: cbrt(x), table and degree-7 Taylor polynomial, T + TL.
// max error 0.513 ulp at x = 0x0.00001981d412fp-1022
#include "powers/cbrt_d_units.h"

LUXVM_EXPORT luxStatus luxsCbrt_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_cbrt64<lux::cbrt64::CbrtHa>(src, dst, len);
}
