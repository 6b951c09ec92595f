// luxsErfInv_64f_A50: erfinv(x) on binary64 arrays within 8 ulp;
// max error 2.07 ulp at x = 0x1.7b53367ec771fp-1 (luxvm accuracy --points=10000).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 11 in v.
// Rows: 212, 12 doubles each, row = 0xFFB - (y's high word >> 18).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfInv, Layout::kPlain, 11, 0xFFB, 18>;
using Table = lux::erfinv::Table64<212, 12>;

// dErfInv_LA_Table: the rows hold F(y) = erfinv(1 - y)/(1 - y).
constexpr Table make_table() {
  Table t{.rows = {
#include "special/derfinv_la_rows.inc"
          }};
  lux::erfinv::set_constants(t, 0x3FF2000000000000, 0x0003FFFFFFFFFFFF);  // centre 1.125
  return t;
}

constexpr Table dErfInv_LA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfInv_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::erfinv::run64<Shape, 4, lux::erfinv::erfinv_lane64>(dErfInv_LA_Table, src, dst, len);
}
