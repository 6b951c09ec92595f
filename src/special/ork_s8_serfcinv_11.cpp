// luxsErfcInv_32f_A11: erfcinv(x) on binary32 arrays within 2^13 ulp;
// max error 1.08e+03 ulp at x = 0x1.000006p-1 (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 1 in v.
// Rows: 384, 2 floats each, row = 0x7EF - (y's bits >> 19).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfcInv, Layout::kPlain, 1, 0x7EF, 19>;
using Table = lux::erfinv::Table32<384, 2>;

constexpr uint32_t kErfInvRows[384][2] = {
#include "special/serfinv_ep_rows.inc"
};

// sErfcInv_EP_Table: the rows hold -F(y), the ErfInv rows negated.
constexpr Table make_table() {
  Table t{};
  lux::erfinv::negate_rows(kErfInvRows, t.rows);
  lux::erfinv::set_constants(t, 0x3F840000, 0x0007FFFF);  // centre 1.03125
  return t;
}

constexpr Table sErfcInv_EP_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfcInv_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::erfinv::run32<Shape, 8, sErfcInv_SC>(sErfcInv_EP_Table, src, dst, len);
}
