// luxsErfc_32f_A21: erfc(x) on binary32 arrays, within 8 ulp.
// max error 1.91 ulp at x = 0x1.0d3114p+3 (luxvm accuracy Erfc --points=4000).
//
// In double (special/erfc_s.h): exp(-x^2) times G(|x|) = exp(x^2) erfc(|x|),
// G on 150 rows from the float pattern, 16 a binade from 1/64 (row 0 below),
// each a cubic in |x| itself; Base 2 for negative x; one rounding to
// binary32.
#include "special/erfc_s.h"

namespace {

// {c0..c3} a row.
alignas(16) constexpr uint64_t sErfc_LA_Table[150][4] = {
#include "special/erfc_s21_table.inc"
};
alignas(16) constexpr uint64_t sErfc_LA_Pow2[128] = {
#include "special/erf_exp2_128_table.inc"
};

// Key: 16 rows a binade, base 0x3C780000 (0.01513671875); from row 150 on, row 0.
constexpr lux::erf::ErfcS<3, 4, false, 0x7FF80000, 0x3C780000, 19, 149> kKernel{sErfc_LA_Table,
                                                                                sErfc_LA_Pow2};

}  // namespace

LUXVM_EXPORT luxStatus luxsErfc_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return kKernel.run(src, dst, len);
}
