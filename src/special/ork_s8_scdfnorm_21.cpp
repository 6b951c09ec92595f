// luxsCdfNorm_32f_A21: the standard normal distribution function Phi(x) on
// binary32 arrays, within 8 ulp.
// max error 1.48 ulp at x = -0x1.0ffff2p+3 (luxvm accuracy CdfNorm --points=4000).
//
// In double on the widened lanes (special/cdfnorm_ep.h): Phi(-a) =
// R(a) * exp(-a^2/2), R a cubic in v = |x| - c on 159 rows from the float
// pattern, 16 a binade from 1/64 to 15, Phi(x) = 1 - Phi(-x) for x >= 0, one
// rounding to binary32.  Below x = -14.170185 the result is +0 with an
// underflow report, above 5.4199829 it is 1.
#include "special/cdfnorm_ep.h"

namespace {

using lux::row64;
namespace le = lux::erf;

// {c, c0..c3} a row.
alignas(16) constexpr uint64_t sCdfNorm_LA_Table[159][5] = {
#include "special/cdfnorm_s21_table.inc"
};
alignas(16) constexpr uint64_t sCdfNorm_LA_Pow2[129] = {
#include "special/erf_exp2_129_table.inc"
};

using Rows = le::CdfEpRows<3, 5>;
constexpr Rows kRows{sCdfNorm_LA_Table,
                     sCdfNorm_LA_Pow2,
                     0x7FF80000,
                     0x3C780000,
                     19,
                     158,
                     row64(le::kCdfFloatZeroBelow),
                     row64(le::kCdfFloatOneAbove)};

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNorm_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::erf::run_cdfnorm<lux32f, le::CdfFloatBody<Rows, kRows>>(src, dst, len);
}
