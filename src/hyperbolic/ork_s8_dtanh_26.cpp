// luxsTanh_64f_A26: tanh x on binary64 arrays, within 2^27 ulp; max error 1.36 ulp at x = -0x1.00afc2a38e4p-1
// (luxvm accuracy Tanh --points=200000).
//
// One polynomial of degree 13 about the midpoint c of each of 31 intervals
// of |x| (4 a binade from 1/8 to 16, then [16, 20); [0, 1/8) as row 0; the
// constant 1 from 20 on, where g = 0 makes v = 0): tanh(|x|) = c0 + v (c1 +
// ... + v c13), v = |x| g - c, by Horner.  The same code and an equal table
// as luxsTanh_64f_A50.
#include "hyperbolic/tanh_kernel.h"

namespace {

struct alignas(16) Table {
  uint64_t dTanh_LA_Table[31][16];  // {c0..c13, c, g}
};

constexpr Table kC = {
    .dTanh_LA_Table =
        {
#include "hyperbolic/dtanh_la_table.inc"
        },
};

struct Tier {
  // 4 rows a binade: the exponent and 2 fraction bits of the high word.
  static constexpr lux::tanh::RowIndex kIndex = {0x7FFC0000, 0x3FBC0000, 0x780000, 18};
  static const double* row(int n) { return reinterpret_cast<const double*>(kC.dTanh_LA_Table[n]); }

  static __m128d magnitude(__m128d a, const double* r0, const double* r1) {
    const lux::tanh::CoefPair cg = lux::tanh::coef2(r0, r1, 14);  // (c, g)
    const __m128d v = _mm_sub_pd(_mm_mul_pd(a, cg.odd), cg.even);
    return lux::tanh::horner<13>(v, r0, r1);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTanh_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::tanh::Kernel64<Tier>::run(src, dst, len);
}
