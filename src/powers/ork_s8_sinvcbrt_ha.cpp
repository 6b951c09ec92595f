// luxsInvCbrt_32f_A24: x^(-1/3), a degree-8 polynomial in binary64, narrowed.
// max error 0.862 ulp at x = 0x1.066afcp+3
#include "powers/cbrt_s_kernel.h"

LUXVM_EXPORT luxStatus luxsInvCbrt_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::cbrt32::run<lux::cbrt32::Func::kInvCbrt, 24>(src, dst, len);
}
