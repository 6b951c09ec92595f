// luxsErfInv_32f_A11: erfinv(x) on binary32 arrays within 2^13 ulp;
// max error 1.08e+03 ulp at x = 0x1p-1 (luxvm accuracy --points=10000).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 1 in v.
// Rows: 384, 2 floats each, row = 0x7EF - (y's bits >> 19).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfInv, Layout::kPlain, 1, 0x7EF, 19>;
using Table = lux::erfinv::Table32<384, 2>;

// sErfInv_EP_Table: the rows hold F(y) = erfinv(1 - y)/(1 - y).
constexpr Table make_table() {
  Table t{.rows = {
#include "special/serfinv_ep_rows.inc"
          }};
  lux::erfinv::set_constants(t, 0x3F840000, 0x0007FFFF);  // centre 1.03125
  return t;
}

constexpr Table sErfInv_EP_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfInv_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::erfinv::run32<Shape, 8, lux::erfinv::erfinv_lane32>(sErfInv_EP_Table, src, dst, len);
}
