// luxsCdfNormInv_32f_A21: Phi^-1(x), the inverse of the standard normal distribution,
// on binary32 arrays within 8 ulp; max error 3.54 ulp at x = 0x1.3c4c88p-2
// (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 3 in v.
// Rows: 192, 4 floats each, row = 0x3F7 - (y's bits >> 20).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kCdfNormInv, Layout::kPlain, 3, 0x3F7, 20>;
using Table = lux::erfinv::Table32<192, 4>;

// sCdfNormInv_LA_Table: the rows hold sqrt(2)*F(y).
constexpr Table make_table() {
  Table t{.rows = {
#include "special/scdfnorminv_la_rows.inc"
          }};
  lux::erfinv::set_constants(t, 0x3F880000, 0x000FFFFF);  // centre 1.0625
  return t;
}

constexpr Table sCdfNormInv_LA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNormInv_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::erfinv::run32<Shape, 8, sCdfNormInv_SC>(sCdfNormInv_LA_Table, src, dst, len);
}
