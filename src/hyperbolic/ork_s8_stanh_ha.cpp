// luxsTanh_32f_A24: tanh x on binary32 arrays, within 1 ulp; max error 0.512 ulp at x = -0x1.0b5a5p+2 (luxvm
// accuracy Tanh --points=200000).
//
// A polynomial of degree 6 in |x| on each of 27 intervals (4 a binade from 1/8 to
// 8, then [8, 10); [0, 1/8) as row 0, through the origin; 1 from 10 on).
// Horner in doubles on |x|, one rounding to float at the end.
#include "hyperbolic/tanh_kernel.h"

namespace {

struct alignas(16) Table {
  uint64_t sTanh_HA_Table[27][8];
};

constexpr Table kC = {
    .sTanh_HA_Table =
        {
#include "hyperbolic/stanh_ha_table.inc"
        },
};

struct Tier {
  static constexpr lux::tanh::RowIndex kIndex = {0x7FE00000, 0x3DE00000, 0x3400000, 21};
  static const double* row(int n) { return reinterpret_cast<const double*>(kC.sTanh_HA_Table[n]); }

  static __m128d magnitude(__m128d a, const double* r0, const double* r1) {
    return lux::tanh::horner<6>(a, r0, r1);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTanh_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::tanh::Kernel32<Tier>::run(src, dst, len);
}
