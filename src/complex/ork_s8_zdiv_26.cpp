// luxsDiv_64fc_A26: Div on complex lanes, binary64, the formula.
// No warnings: zero divisors, infinities and NaNs go through the arithmetic.
#include "complex/cmul_drivers.h"

LUXVM_EXPORT luxStatus luxsDiv_64fc_A26(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len) {
  return lux::cplx::low64<lux::cplx::Op::kDiv>(src1, src2, dst, len);
}
