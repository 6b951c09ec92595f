// luxsMulByConj_32fc_A24: MulByConj on complex lanes, binary32 widened to the x87 unit at 53 bits (exact
// products), narrowed once; the same code as the other of A21 and A24. No warnings: zero divisors, infinities
// and NaNs go through the arithmetic.
#include "complex/cmul_drivers.h"

LUXVM_EXPORT luxStatus luxsMulByConj_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst,
                                              int len) {
  return lux::cplx::wide32<lux::cplx::Op::kMulByConj>(src1, src2, dst, len);
}
