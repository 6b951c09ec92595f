// luxsErfc_64f_A26: erfc(x) on binary64 arrays, tier A26, within 2^27 ulp (the same kernel as A50).
// max error 2.74 ulp at x = 0x1.22a04d53c9519p+4 (luxvm accuracy Erfc --points=4000).
//
// The kernel is special/erfc_d50.h: exp(-x^2) times the scaled complement
// G(|x|) = exp(x^2) erfc(|x|) on 28 rows, reflected for negative x.
#include "special/erfc_d50.h"

namespace {

using lux::row64;

constexpr lux::erf::ErfcLaTable kTable = {
    LUX_ERFC_LA_CONSTANTS,
    .dErfc_LA_Pow2 =
        {
#include "special/erf_exp2_128_table.inc"
        },
    .dErfc_LA_Table =
        {
#include "special/erfc_d50_table.inc"
        },
};

}  // namespace

LUXVM_EXPORT luxStatus luxsErfc_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::erf::ErfcLa<kTable>::run(src, dst, len);
}
