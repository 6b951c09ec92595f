// luxsErf_64f_A50: erf(x) on binary64 arrays, within 8 ulp.
// max error 1.32 ulp at x = 0x1.c403dea444ap-6 (luxvm accuracy Erf --points=4000).
//
// 24 rows keyed by the high word, 4 a binade from 0.125 to 6: on each, erf is
// a degree 13 polynomial in t = |x| - b (b the interval's midpoint, c0 =
// RN(erf(b))), evaluated by plain Horner; the sign is ORed back.  Row 0 is
// the odd fit on |x| < 0.125 (it also gives subnormal results directly), row
// 23 (|x| >= 6, a = 0) the constant 1.  Infinities give +-1, NaNs themselves.
#include "special/erf_poly.h"

namespace {

// {c0..c13, b, a} a row.
alignas(16) constexpr uint64_t dErf_LA_Table[24][16] = {
#include "special/erf_d50_table.inc"
};

constexpr lux::erf::DErfRows<13> kRows{dErf_LA_Table};

}  // namespace

LUXVM_EXPORT luxStatus luxsErf_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::erf::run_derf(kRows, src, dst, len);
}
