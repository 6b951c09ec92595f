// luxsCdfNorm_64f_A26: the standard normal distribution function Phi(x) on
// binary64 arrays, within 2^27 ulp.
// max error 2.59e+07 ulp at x = -0x1.34a6a48b90b86p+4 (luxvm accuracy CdfNorm --points=4000).
//
// Phi(-a) = R(a) * exp(-a^2/2), a = |x|, Phi(x) = 1 - Phi(-x) for x >= 0,
// with R(a) = Phi(-a) exp(a^2/2) of degree 6 in v = a - c on 30 rows from
// the high word, all coefficients fitted (special/cdfnorm_ep.h).  The scale
// is a plain exponent field: below x = -37.5194, where Phi falls under
// 2^-1022, the product is dropped and the result is +0, without a report;
// above 8.29236 the result is 1; a NaN flows through.
#include "special/cdfnorm_ep.h"

namespace {

using lux::row64;
namespace le = lux::erf;

// {c, c0..c6} a row.
alignas(16) constexpr uint64_t dCdfNorm_EP_Table[30][8] = {
#include "special/cdfnorm_d26_table.inc"
};
alignas(16) constexpr uint64_t dCdfNorm_EP_Pow2[129] = {
#include "special/erf_exp2_129_table.inc"
};

constexpr le::CdfEpRows<6, 8> kRows{
    dCdfNorm_EP_Table,         dCdfNorm_EP_Pow2, 0x7FFC0000, 0x3FCC0000, 18, 29,
    row64(0xC042C27B05BF1A0A),   // -37.51937934714449
    row64(0x402095B059D67C4C)};  // 8.292361075813595

struct Body {
  using Four = le::D4;
  static void compute(const double* p, int n, Four& y) {
    __m128d a, b;
    le::load_d(p, n, a, b);
    y.a = kRows.pair(a, le::high_word(a, 0), le::high_word(a, 1));
    if (n == 4) y.b = kRows.pair(b, le::high_word(b, 0), le::high_word(b, 1));
  }
  static unsigned underflow(const double*, int) { return 0; }
  static void store(double* p, int n, const Four& y) { le::store_d(p, n, y); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNorm_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::erf::run_cdfnorm<lux64f, Body>(src, dst, len);
}
