// luxsErfcInv_64f_A26: erfcinv(x) on binary64 arrays within 2^27 ulp;
// max error 6.38e+07 ulp at x = 0x1.0000000000003p-1 (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 3 in v.
// Rows: 848, 4 doubles each, row = 0x3FEF - (y's high word >> 16).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfcInv, Layout::kPlain, 3, 0x3FEF, 16>;
using Table = lux::erfinv::Table64<848, 4>;

constexpr uint64_t kErfInvRows[848][4] = {
#include "special/derfinv_ep_rows.inc"
};

// dErfcInv_EP_Table: the rows hold -F(y), the ErfInv rows negated.
constexpr Table make_table() {
  Table t{};
  lux::erfinv::negate_rows(kErfInvRows, t.rows);
  lux::erfinv::set_constants(t, 0x3FF0800000000000, 0x0000FFFFFFFFFFFF);  // centre 1.03125
  return t;
}

constexpr Table dErfcInv_EP_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfcInv_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::erfinv::run64<Shape, 4, dErfcInv_SC>(dErfcInv_EP_Table, src, dst, len);
}
