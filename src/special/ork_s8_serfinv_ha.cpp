// luxsErfInv_32f_A24: erfinv(x) on binary32 arrays within 1 ulp;
// max error 0.501 ulp at x = -0x1.969ebp-1 (luxvm accuracy --points=10000).
//
// The row scheme of special/erfinv_lanes.h, compensated: c0 and c1 of each
// row in two parts, the product with the argument split into cleared halves.
// Rows: 192, 8 floats each, row = 0x3F7 - (y's bits >> 20).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfInv, Layout::kCompensated, 5, 0x3F7, 20>;
using Table = lux::erfinv::Table32<192, 8>;

// sErfInv_HA_Table: the rows hold F(y) = erfinv(1 - y)/(1 - y).
constexpr Table make_table() {
  Table t{.rows = {
#include "special/serfinv_ha_rows.inc"
          }};
  lux::erfinv::set_constants(t, 0x3F880000, 0x000FFFFF);  // centre 1.0625
  return t;
}

constexpr Table sErfInv_HA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfInv_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::erfinv::run32<Shape, 8, lux::erfinv::erfinv_lane32>(sErfInv_HA_Table, src, dst, len);
}
