// luxsErfcInv_64f_A50: erfcinv(x) on binary64 arrays within 8 ulp;
// max error 2 ulp at x = 0x1.456c6d703544bp-3 (luxvm accuracy sweep of the family test).
//
// The row scheme of special/erfinv_lanes.h, plain Horner of degree 11 in v.
// Rows: 212, 12 doubles each, row = 0xFFB - (y's high word >> 18).
#include "special/erfinv_lanes.h"
#include "special/erfinv_scalar.h"

namespace {

using lux::erfinv::Func;
using lux::erfinv::Layout;
using Shape = lux::erfinv::Shape<Func::kErfcInv, Layout::kPlain, 11, 0xFFB, 18>;
using Table = lux::erfinv::Table64<212, 12>;

constexpr uint64_t kErfInvRows[212][12] = {
#include "special/derfinv_la_rows.inc"
};

// dErfcInv_LA_Table: the rows hold -F(y), the ErfInv rows negated.
constexpr Table make_table() {
  Table t{};
  lux::erfinv::negate_rows(kErfInvRows, t.rows);
  lux::erfinv::set_constants(t, 0x3FF2000000000000, 0x0003FFFFFFFFFFFF);  // centre 1.125
  return t;
}

constexpr Table dErfcInv_LA_Table = make_table();

}  // namespace

LUXVM_EXPORT luxStatus luxsErfcInv_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::erfinv::run64<Shape, 4, dErfcInv_SC>(dErfcInv_LA_Table, src, dst, len);
}
