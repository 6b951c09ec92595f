// luxsErf_64f_A26: erf(x) on binary64 arrays, within 2^27 ulp.
// max error 1.4e+06 ulp at x = 0x1.ffffffffffff6p-4 (luxvm accuracy Erf --points=4000).
//
// 24 rows keyed by the high word, 4 a binade from 0.125 to 6: on each, erf is
// a degree 7 polynomial in t = |x| - b (b the interval's midpoint), every
// coefficient fitted, by plain Horner; the sign is ORed back.  Row 0 is the
// odd fit on |x| < 0.125, row 23 (|x| >= 6) the constant 1.  Infinities give
// +-1, NaNs themselves.
#include "special/erf_poly.h"

namespace {

// {c0..c7, 0 x 6, b, a} a row.
alignas(16) constexpr uint64_t dErf_EP_Table[24][16] = {
#include "special/erf_d26_table.inc"
};

constexpr lux::erf::DErfRows<7> kRows{dErf_EP_Table};

}  // namespace

LUXVM_EXPORT luxStatus luxsErf_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::erf::run_derf(kRows, src, dst, len);
}
