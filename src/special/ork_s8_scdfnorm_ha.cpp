// luxsCdfNorm_32f_A24: the standard normal distribution function Phi(x) on
// binary32 arrays, within 1 ulp.
// max error 0.504 ulp at x = -0x1.7p+3 (luxvm accuracy CdfNorm --points=4000).
//
// In double on the widened lanes (special/cdfnorm_ep.h): Phi(-a) =
// R(a) * exp(-a^2/2), R of degree 6 in v = |x| - c on 25 rows from the float
// pattern (the first 25 rows of the binary64 A26 table), Phi(x) = 1 - Phi(-x)
// for x >= 0, one rounding to binary32.  Below x = -14.170185 the result is
// +0 with an underflow report, above 5.4199829 it is 1.
#include "special/cdfnorm_ep.h"

namespace {

using lux::row64;
namespace le = lux::erf;

// {c, c0..c6} a row.
alignas(16) constexpr uint64_t sCdfNorm_HA_Table[25][8] = {
#include "special/cdfnorm_s24_table.inc"
};
alignas(16) constexpr uint64_t sCdfNorm_HA_Pow2[129] = {
#include "special/erf_exp2_129_table.inc"
};

using Rows = le::CdfEpRows<6, 8>;
constexpr Rows kRows{sCdfNorm_HA_Table,
                     sCdfNorm_HA_Pow2,
                     0x7FE00000,
                     0x3E600000,
                     21,
                     24,
                     row64(le::kCdfFloatZeroBelow),
                     row64(le::kCdfFloatOneAbove)};

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNorm_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::erf::run_cdfnorm<lux32f, le::CdfFloatBody<Rows, kRows>>(src, dst, len);
}
