// luxsDiv_64fc_A50: Div on complex lanes, binary64, each part from exact products and a compensated sum; the
// same code as the other of A50 and A53. No warnings: zero divisors, infinities and NaNs go through the
// arithmetic.
#include "complex/cmul_drivers.h"

LUXVM_EXPORT luxStatus luxsDiv_64fc_A50(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len) {
  return lux::cplx::high64<lux::cplx::Op::kDiv>(src1, src2, dst, len);
}
