// luxsTanh_32f_A21: tanh x on binary32 arrays, within 8 ulp; max error 1.02 ulp at x = 0x1.024088p+1 (luxvm
// accuracy Tanh --points=200000).
//
// A polynomial of degree 3 in |x| on each of 134 intervals (16 a binade from
// 1/32 to 8, then [8, 10) in four; [0, 1/32) as row 0, through the origin; 1
// from 10 on).
// Horner in doubles on |x|, one rounding to float at the end.
#include "hyperbolic/tanh_kernel.h"

namespace {

struct alignas(16) Table {
  uint64_t sTanh_LA_Table[134][4];
};

constexpr Table kC = {
    .sTanh_LA_Table =
        {
#include "hyperbolic/stanh_21_table.inc"
        },
};

struct Tier {
  static constexpr lux::tanh::RowIndex kIndex = {0x7FF80000, 0x3CF80000, 0x4280000, 19};
  static const double* row(int n) { return reinterpret_cast<const double*>(kC.sTanh_LA_Table[n]); }

  static __m128d magnitude(__m128d a, const double* r0, const double* r1) {
    // Beyond 10 the last row is the constant 1: |x| is replaced by 0, and
    // not(10 < |x|) keeps a NaN in the arithmetic.
    a = _mm_and_pd(a, _mm_cmpnlt_pd(_mm_set1_pd(10.0), a));
    return lux::tanh::horner<3>(a, r0, r1);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTanh_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::tanh::Kernel32<Tier>::run(src, dst, len);
}
