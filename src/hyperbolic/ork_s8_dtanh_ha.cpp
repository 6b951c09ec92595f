// luxsTanh_64f_A53: tanh x on binary64 arrays, within 1 ulp; max error 0.751 ulp at x = -0x1.0023e87f80c32p-4
// (luxvm accuracy Tanh --points=200000).
//
// One polynomial of degree 10 about the midpoint c of each of 60 intervals
// of |x| (8 a binade from 1/8 to 20; [0, 1/8) as row 0; 1 from 20 on):
// tanh(c + v) = c0 + v (c1 + v q(v)), c0 as a head and tail.  c1 + v q(v) is
// carried as a two-word sum, its product with v is formed exactly by
// splitting both factors at 26 bits, and c0's head is added with its error
// kept, so that the result rounds once at the end.
#include "hyperbolic/tanh_kernel.h"

namespace {

struct alignas(16) Table {
  // {c0lo, c0hi, c1, c2..c10, -c, three unused words}.
  uint64_t dTanh_HA_Table[60][16];
  uint64_t clear;  // keeps the 26 leading significand bits
};

constexpr Table kC = {
    .dTanh_HA_Table =
        {
#include "hyperbolic/dtanh_ha_table.inc"
        },
    .clear = 0xFFFFFFFFF8000000,
};

struct Tier {
  // 8 rows a binade: the exponent and 3 fraction bits of the high word;
  // row 1 starts at 0.125, row 59 at 20.
  static constexpr lux::tanh::RowIndex kIndex = {0x7FFE0000, 0x3FBE0000, 0x760000, 17};
  static const double* row(int n) { return reinterpret_cast<const double*>(kC.dTanh_HA_Table[n]); }

  static __m128d magnitude(__m128d a, const double* r0, const double* r1) {
    const __m128d clear = _mm_set1_pd(__builtin_bit_cast(double, kC.clear));
    using lux::tanh::coef2;
    const __m128d v = _mm_add_pd(a, coef2(r0, r1, 12).even);
    // Words 3..11 hold c2..c10: Horner from the top, two words a load.
    const auto c9_10 = coef2(r0, r1, 10), c7_8 = coef2(r0, r1, 8), c5_6 = coef2(r0, r1, 6);
    const auto c3_4 = coef2(r0, r1, 4), c1_2 = coef2(r0, r1, 2), c0 = coef2(r0, r1, 0);
    __m128d p = _mm_add_pd(c9_10.even, _mm_mul_pd(v, c9_10.odd));
    p = _mm_add_pd(c7_8.odd, _mm_mul_pd(v, p));
    p = _mm_add_pd(c7_8.even, _mm_mul_pd(v, p));
    p = _mm_add_pd(c5_6.odd, _mm_mul_pd(v, p));
    p = _mm_add_pd(c5_6.even, _mm_mul_pd(v, p));
    p = _mm_add_pd(c3_4.odd, _mm_mul_pd(v, p));
    p = _mm_add_pd(c3_4.even, _mm_mul_pd(v, p));
    p = _mm_add_pd(c1_2.odd, _mm_mul_pd(v, p));
    const __m128d b = _mm_mul_pd(v, p);
    const __m128d c1 = c1_2.even;
    // s + e = c1 + b exactly.
    const __m128d s = _mm_add_pd(c1, b);
    const __m128d d = _mm_sub_pd(b, s);
    const __m128d e = _mm_sub_pd(_mm_add_pd(d, c1), _mm_sub_pd(_mm_add_pd(s, d), b));
    // (H + L) * (vH + vL) with H*vH exact.
    const __m128d h = _mm_and_pd(s, clear);
    const __m128d l = _mm_add_pd(e, _mm_sub_pd(s, h));
    const __m128d vh = _mm_and_pd(v, clear);
    const __m128d vl = _mm_sub_pd(v, vh);
    const __m128d hp = _mm_mul_pd(h, vh);
    const __m128d pl = _mm_add_pd(_mm_add_pd(_mm_mul_pd(l, vl), _mm_mul_pd(vl, h)), _mm_mul_pd(vh, l));
    // t + e2 = c0hi + hp exactly.
    const __m128d c0hi = c0.odd;
    const __m128d t = _mm_add_pd(c0hi, hp);
    const __m128d d2 = _mm_sub_pd(hp, t);
    const __m128d e2 = _mm_add_pd(_mm_sub_pd(hp, _mm_add_pd(t, d2)), _mm_add_pd(d2, c0hi));
    return _mm_add_pd(t, _mm_add_pd(_mm_add_pd(e2, pl), c0.even));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTanh_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::tanh::Kernel64<Tier>::run(src, dst, len);
}
