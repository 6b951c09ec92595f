// luxsErfc_32f_A24: erfc(x) on binary32 arrays, within 1 ulp.
// max error 0.519 ulp at x = 0x1.01c53p+3 (luxvm accuracy Erfc --points=4000).
//
// In double (special/erfc_s.h): exp(-x^2) times G(|x|) = exp(x^2) erfc(|x|),
// G on 23 rows from the float pattern, 4 a binade from 0.25 (row 0 below),
// each a degree 6 polynomial in |x| - centre (the row's left end); Base 2
// for negative x; one rounding to binary32.
#include "special/erfc_s.h"

namespace {

// {c0..c6, centre} a row.
alignas(16) constexpr uint64_t sErfc_HA_Table[23][8] = {
#include "special/erfc_s24_table.inc"
};
alignas(16) constexpr uint64_t sErfc_HA_Pow2[128] = {
#include "special/erf_exp2_128_table.inc"
};

// Key: 4 rows a binade, base 0x3E600000 (0.21875); from row 23 on, row 0.
constexpr lux::erf::ErfcS<6, 8, true, 0x7FE00000, 0x3E600000, 21, 22> kKernel{sErfc_HA_Table, sErfc_HA_Pow2};

}  // namespace

LUXVM_EXPORT luxStatus luxsErfc_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return kKernel.run(src, dst, len);
}
