// luxsTanh_32f_A11: tanh x on binary32 arrays, within 2^13 ulp; max error 2.74e+03 ulp at x = -0x1.ffffeap-15
// (luxvm accuracy Tanh --points=200000).
//
// A straight line on each of 134 intervals (16 a binade from 1/32 to 8, then
// [8, 10) in four; [0, 1/32) as row 0, through the origin; 1 from 10 on).
// Horner in doubles on |x|, one rounding to float at the end.
#include "hyperbolic/tanh_kernel.h"

namespace {

struct alignas(16) Table {
  uint64_t sTanh_EP_Table[134][2];
};

constexpr Table kC = {
    .sTanh_EP_Table =
        {
#include "hyperbolic/stanh_11_table.inc"
        },
};

struct Tier {
  static constexpr lux::tanh::RowIndex kIndex = {0x7FF80000, 0x3CF80000, 0x4280000, 19};
  static const double* row(int n) { return reinterpret_cast<const double*>(kC.sTanh_EP_Table[n]); }

  static __m128d magnitude(__m128d a, const double* r0, const double* r1) {
    // Beyond 10 the last row is the constant 1: |x| is replaced by 0, and
    // not(10 < |x|) keeps a NaN in the arithmetic.
    a = _mm_and_pd(a, _mm_cmpnlt_pd(_mm_set1_pd(10.0), a));
    return lux::tanh::horner<1>(a, r0, r1);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTanh_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::tanh::Kernel32<Tier>::run(src, dst, len);
}
