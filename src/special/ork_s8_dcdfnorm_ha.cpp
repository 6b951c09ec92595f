// luxsCdfNorm_64f_A53: the standard normal distribution function Phi(x) on
// binary64 arrays, within 1 ulp.
// max error 0.529 ulp at x = -0x1.3fffffffffffbp+3 (luxvm accuracy CdfNorm --points=4000).
//
// Phi(-a) = R(a) * exp(-a^2/2), a = |x|, R(a) = Phi(-a) exp(a^2/2) (R(0) =
// 1/2, R(32) = 0.0124...), and Phi(x) = 1 - Phi(-x) for x >= 0:
//   -a^2/2 = Yh + Yl exactly enough (26-bit halves);
//   exp(-a^2/2) = 2^k * (Thi + El), Thi + Tlo = 2^(j/128) to 1e-24,
//   e^r - 1 to degree 5 on |r| <= ln 2/256 (2^-67);
//   R on 30 rows from the high word (left ends 0, 0.25, ..., 32): degree 13
//   in v = a - c, R(c) and R'(c) in two words, the last two Horner steps in
//   two words, so R = tH + tL to about 2^-70;
//   the product (tH*Thi + the rest) * 2^k, and base - product with its
//   rounding error put back (base = 1 for x >= 0, else 0).
// 2^k is built as 2^(k+154) * 2^-154 so that results fall gradually into
// the subnormals (x down to -38.4854).  Below that x gives +0 with an
// underflow report, above 8.29236 gives 1; a NaN flows through.
#include "special/cdfnorm.h"

namespace {

using lux::row64;
using lux::Row64;
namespace le = lux::erf;

constexpr uint64_t kZeroBelowBits = 0xC0433E21DC3F3BD7;  // -38.485408335567335

struct alignas(16) CdfNormHaTable {
  Row64 dbZeroBelow, dbOneAbove;
  alignas(16) uint64_t Pow2[129][2];  // {Thi, Tlo}
  // {c, c0lo, c0hi, c1lo, c1hi, c2..c13}
  alignas(16) uint64_t dCdfNorm_HA_Table[30][17];
};

constexpr CdfNormHaTable kT = {
    .dbZeroBelow = row64(kZeroBelowBits),
    .dbOneAbove = row64(0x402095B059D67C4C),  // 8.292361075813595: Phi rounds to 1 above
    .Pow2 =
        {
#include "special/erf_exp2_pairs_rn_table.inc"
        },
    .dCdfNorm_HA_Table =
        {
#include "special/cdfnorm_d53_table.inc"
        },
};

inline const double* row_of(uint32_t hi) {
  return reinterpret_cast<const double*>(
      kT.dCdfNorm_HA_Table[le::row_index(hi, 0x7FFC0000, 0x3FCC0000, 18, 29, 0)]);
}

inline __m128d pair(__m128d x_in) {
  const __m128d clear = le::kCdf.dbClear27.pd();
  const le::TwoWordExp s_ = le::two_word_exp(x_in, kT.dbZeroBelow, kT.dbOneAbove);
  const __m128d drop = s_.drop, x = s_.x, a = s_.a, sc = s_.sc, e = s_.e;
  const double* p0 = reinterpret_cast<const double*>(kT.Pow2[s_.j0]);
  const double* p1 = reinterpret_cast<const double*>(kT.Pow2[s_.j1]);
  const __m128d Thi = le::gather(p0, p1, 0), Tlo = le::gather(p0, p1, 1);
  const __m128d El = _mm_add_pd(_mm_mul_pd(_mm_add_pd(Thi, Tlo), e), Tlo);
  // R(a) on the row.
  const double* g0 = row_of(le::high_word(x, 0));
  const double* g1 = row_of(le::high_word(x, 1));
  const __m128d v = _mm_sub_pd(a, le::gather(g0, g1, 0));
  __m128d B = le::gather(g0, g1, 16);
  for (int k = 15; k >= 5; --k) B = _mm_add_pd(le::gather(g0, g1, k), _mm_mul_pd(v, B));
  B = _mm_mul_pd(v, B);
  const __m128d c1hi = le::gather(g0, g1, 4), c0hi = le::gather(g0, g1, 2);
  const __m128d s = _mm_add_pd(c1hi, B);
  __m128d e1 = _mm_add_pd(_mm_add_pd(c1hi, _mm_sub_pd(B, s)), _mm_sub_pd(B, _mm_sub_pd(s, c1hi)));
  e1 = _mm_add_pd(e1, le::gather(g0, g1, 3));
  const __m128d sH = _mm_and_pd(s, clear);
  const __m128d sL = _mm_add_pd(_mm_sub_pd(s, sH), e1);
  const __m128d vH = _mm_and_pd(v, clear);
  const __m128d vL = _mm_sub_pd(v, vH);
  const __m128d m = _mm_mul_pd(sH, vH);
  const __m128d ml = _mm_add_pd(_mm_mul_pd(sL, vH), _mm_add_pd(_mm_mul_pd(vL, sH), _mm_mul_pd(sL, vL)));
  const __m128d t = _mm_add_pd(c0hi, m);
  __m128d e2 = _mm_add_pd(_mm_add_pd(c0hi, _mm_sub_pd(m, t)), _mm_sub_pd(m, _mm_sub_pd(t, c0hi)));
  e2 = _mm_add_pd(_mm_add_pd(e2, ml), le::gather(g0, g1, 1));
  const __m128d tH = _mm_and_pd(t, clear);
  const __m128d tL = _mm_add_pd(_mm_sub_pd(t, tH), e2);
  // The product, dropped where the thresholds say, and base minus it.
  const __m128d hiP = _mm_andnot_pd(drop, _mm_mul_pd(_mm_mul_pd(tH, Thi), sc));
  const __m128d loP = _mm_andnot_pd(
      drop,
      _mm_mul_pd(_mm_add_pd(_mm_mul_pd(tL, Thi), _mm_add_pd(_mm_mul_pd(El, tH), _mm_mul_pd(tL, El))), sc));
  const __m128d base = le::base_of(x_in);
  const __m128d W = _mm_sub_pd(base, hiP);
  return le::nan_is_its_own(x_in, _mm_add_pd(W, _mm_sub_pd(_mm_sub_pd(_mm_sub_pd(base, W), hiP), loP)));
}

struct Body {
  using Four = le::D4;
  static void compute(const double* p, int n, Four& y) {
    __m128d a, b;
    le::load_d(p, n, a, b);
    y.a = pair(a);
    if (n == 4) y.b = pair(b);
  }
  static unsigned underflow(const double* p, int n) { return le::underflow_d(p, n, kZeroBelowBits); }
  static void store(double* p, int n, const Four& y) { le::store_d(p, n, y); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCdfNorm_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::erf::run_cdfnorm<lux64f, Body>(src, dst, len);
}
