// luxsCdfNormInv_64f_A26: Phi^-1(x), the inverse of the standard normal distribution,
// on binary64 arrays within 2^27 ulp; max error 4.51e+07 ulp at x = 0x1.0000000000002p-2
// (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 3 in v.
// Rows: 848, 4 doubles each, row = 0x3FEF - (y's high word >> 16).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kCdfNormInv, Layout::kPlain, 3, 0x3FEF, 16>;
using Table = lux::erfinv::Table64<848, 4>;

// dCdfNormInv_EP_Table: the rows hold sqrt(2)*F(y).
constexpr Table make_table() {
  Table t{.rows = {
#include "special/dcdfnorminv_ep_rows.inc"
          }};
  lux::erfinv::set_constants(t, 0x3FF0800000000000, 0x0000FFFFFFFFFFFF);  // centre 1.03125
  return t;
}

constexpr Table dCdfNormInv_EP_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNormInv_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::erfinv::run64<Shape, 4, dCdfNormInv_SC>(dCdfNormInv_EP_Table, src, dst, len);
}
