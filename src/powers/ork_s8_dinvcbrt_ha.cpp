// luxsInvCbrt_64f_A53: x^(-1/3), table T + TL and degree-7 Taylor polynomial.
// max error 0.535 ulp at x = -0x1.07f9274d6b90cp-167
#include "powers/cbrt_d_units.h"

LUXVM_EXPORT luxStatus luxsInvCbrt_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_cbrt64<lux::cbrt64::InvCbrt>(src, dst, len);
}
