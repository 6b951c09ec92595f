// luxsErf_32f_A24: erf(x) on binary32 arrays, within 1 ulp.
// max error 0.509 ulp at x = 0x1.0988dp+1 (luxvm accuracy Erf --points=4000).
//
// In double: 22 rows keyed by the float pattern, 4 a binade from 0.125 to
// 4; on each, erf is a degree 6 polynomial in |x| itself (fitted to the
// relative error), by Horner; the sign is ORed back and the double rounded
// once to binary32.  Row 0 is the fit on |x| < 0.125, row 21 (|x| >= 4) the
// constant 1.  Infinities give +-1, NaNs the input widened and narrowed.
#include "special/erf_poly.h"

namespace {

// {c0..c6, 0} a row.
alignas(16) constexpr uint64_t sErf_HA_Table[22][8] = {
#include "special/erf_s24_table.inc"
};

// Key: 4 rows a binade, row 0 below 0.125 (pattern 0x3DE00000 is 0.109375).
constexpr lux::erf::SErfRows<6, 8, false> kRows{sErf_HA_Table, 0x7FE00000, 0x3DE00000, 21, 21};

}  // namespace

LUXVM_EXPORT luxStatus luxsErf_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::erf::run_serf(kRows, src, dst, len);
}
