// luxsErfcInv_64f_A53: erfcinv(x) on binary64 arrays within 1 ulp;
// max error 0.501 ulp at x = 0x1.ffffff748dd96p-1 (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, compensated: c0 and c1 of each
// row in two parts, the product with the argument split into cleared halves.
// Rows: 212, 17 doubles each, row = 0xFFB - (y's high word >> 18).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfcInv, Layout::kCompensated, 14, 0xFFB, 18>;
using Table = lux::erfinv::Table64<212, 17>;

constexpr uint64_t kErfInvRows[212][17] = {
#include "special/derfinv_ha_rows.inc"
};

// dErfcInv_HA_Table: the rows hold -F(y), the ErfInv rows negated.
constexpr Table make_table() {
  Table t{};
  lux::erfinv::negate_rows(kErfInvRows, t.rows);
  lux::erfinv::set_constants(t, 0x3FF2000000000000, 0x0003FFFFFFFFFFFF);  // centre 1.125
  return t;
}

constexpr Table dErfcInv_HA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfcInv_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::erfinv::run64<Shape, 4, dErfcInv_SC>(dErfcInv_HA_Table, src, dst, len);
}
