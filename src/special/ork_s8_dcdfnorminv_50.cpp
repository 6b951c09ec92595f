// luxsCdfNormInv_64f_A50: Phi^-1(x), the inverse of the standard normal distribution,
// on binary64 arrays within 8 ulp; max error 2.16 ulp at x = 0x1.4be0833711a3fp-44
// (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 11 in v.
// Rows: 212, 12 doubles each, row = 0xFFB - (y's high word >> 18).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kCdfNormInv, Layout::kPlain, 11, 0xFFB, 18>;
using Table = lux::erfinv::Table64<212, 12>;

// dCdfNormInv_LA_Table: the rows hold sqrt(2)*F(y).
constexpr Table make_table() {
  Table t{.rows = {
#include "special/dcdfnorminv_la_rows.inc"
          }};
  lux::erfinv::set_constants(t, 0x3FF2000000000000, 0x0003FFFFFFFFFFFF);  // centre 1.125
  return t;
}

constexpr Table dCdfNormInv_LA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNormInv_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::erfinv::run64<Shape, 4, dCdfNormInv_SC>(dCdfNormInv_LA_Table, src, dst, len);
}
