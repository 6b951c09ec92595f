// luxsMul_32fc_A11: Mul on complex lanes, binary32, the formula.
// No warnings: zero divisors, infinities and NaNs go through the arithmetic.
#include "complex/cmul_drivers.h"

LUXVM_EXPORT luxStatus luxsMul_32fc_A11(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len) {
  return lux::cplx::low32<lux::cplx::Op::kMul>(src1, src2, dst, len);
}
