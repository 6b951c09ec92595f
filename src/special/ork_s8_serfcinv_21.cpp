// luxsErfcInv_32f_A21: erfcinv(x) on binary32 arrays within 8 ulp;
// max error 3.77 ulp at x = 0x1.04c96ap-2 (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 3 in v.
// Rows: 192, 4 floats each, row = 0x3F7 - (y's bits >> 20).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfcInv, Layout::kPlain, 3, 0x3F7, 20>;
using Table = lux::erfinv::Table32<192, 4>;

constexpr uint32_t kErfInvRows[192][4] = {
#include "special/serfinv_la_rows.inc"
};

// sErfcInv_LA_Table: the rows hold -F(y), the ErfInv rows negated.
constexpr Table make_table() {
  Table t{};
  lux::erfinv::negate_rows(kErfInvRows, t.rows);
  lux::erfinv::set_constants(t, 0x3F880000, 0x000FFFFF);  // centre 1.0625
  return t;
}

constexpr Table sErfcInv_LA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfcInv_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::erfinv::run32<Shape, 8, sErfcInv_SC>(sErfcInv_LA_Table, src, dst, len);
}
