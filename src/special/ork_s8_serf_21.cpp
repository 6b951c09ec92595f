// luxsErf_32f_A21: erf(x) on binary32 arrays, within 8 ulp.
// max error 1.47 ulp at x = 0x1.0ffff6p+1 (luxvm accuracy Erf --points=4000).
//
// In double: 114 rows keyed by the float pattern, 16 a binade from 1/32 to
// 4; on each, erf is a cubic in |x| itself, by Horner; the sign is ORed back
// and the double rounded once to binary32.  |x| above 4 is replaced by 0
// before the polynomial, whose row 113 is the constant 1.  Infinities give
// +-1, NaNs the input widened and narrowed.
#include "special/erf_poly.h"

namespace {

// {c0..c3} a row.
alignas(16) constexpr uint64_t sErf_LA_Table[114][4] = {
#include "special/erf_s21_table.inc"
};

// Key: 16 rows a binade, row 0 below 1/32 (pattern 0x3CF80000 is 0.0302734375).
constexpr lux::erf::SErfRows<3, 4, true> kRows{sErf_LA_Table, 0x7FF80000, 0x3CF80000, 19, 113};

}  // namespace

LUXVM_EXPORT luxStatus luxsErf_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::erf::run_serf(kRows, src, dst, len);
}
