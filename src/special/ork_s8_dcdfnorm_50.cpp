// luxsCdfNorm_64f_A50: the standard normal distribution function Phi(x) on
// binary64 arrays, within 8 ulp.
// max error 2.53 ulp at x = -0x1.3fffffffffffbp+4 (luxvm accuracy CdfNorm --points=4000).
//
// Phi(-a) = R(a) * exp(-a^2/2), a = |x|, R(a) = Phi(-a) exp(a^2/2), and
// Phi(x) = 1 - Phi(-x) for x >= 0.  The exponential as in A53 (exact half
// square, ln 2/128 in two words, e^r - 1 to degree 5) with one table word
// T = RN(2^(j/128)): E = T*(e^r - 1) + T; R by plain Horner of degree 12 in
// v = a - c on 30 rows from the high word (R(c), R'(c) rounded, the rest
// fitted); result = base - (E*R)*(+-2^k), 2^k reaching the subnormals
// gradually.  Below x = -38.4854 the result is +0 with an underflow report,
// above 8.29236 it is 1; a NaN flows through.
#include "special/cdfnorm.h"

namespace {

using lux::row64;
using lux::Row64;
namespace le = lux::erf;

constexpr uint64_t kZeroBelowBits = 0xC0433E21DC3F3BD7;  // -38.485408335567335

struct alignas(16) CdfNormLaTable {
  Row64 dbZeroBelow, dbOneAbove;
  alignas(16) uint64_t Pow2[129];                  // RN(2^(j/128))
  alignas(16) uint64_t dCdfNorm_LA_Table[30][14];  // {c, c0..c12}
};

constexpr CdfNormLaTable kT = {
    .dbZeroBelow = row64(kZeroBelowBits),
    .dbOneAbove = row64(0x402095B059D67C4C),  // 8.292361075813595
    .Pow2 =
        {
#include "special/erf_exp2_129_table.inc"
        },
    .dCdfNorm_LA_Table =
        {
#include "special/cdfnorm_d50_table.inc"
        },
};

inline const double* row_of(uint32_t hi) {
  return reinterpret_cast<const double*>(
      kT.dCdfNorm_LA_Table[le::row_index(hi, 0x7FFC0000, 0x3FCC0000, 18, 29, 0)]);
}

inline __m128d pair(__m128d x_in) {
  const le::TwoWordExp s_ = le::two_word_exp(x_in, kT.dbZeroBelow, kT.dbOneAbove);
  const __m128d drop = s_.drop, x = s_.x, a = s_.a, sc = s_.sc, e = s_.e;
  const double* pw = reinterpret_cast<const double*>(kT.Pow2);
  const __m128d T = le::gather(pw + s_.j0, pw + s_.j1, 0);
  const __m128d E = _mm_add_pd(_mm_mul_pd(T, e), T);
  const double* g0 = row_of(le::high_word(x, 0));
  const double* g1 = row_of(le::high_word(x, 1));
  const __m128d v = _mm_sub_pd(a, le::gather(g0, g1, 0));
  __m128d R = le::gather(g0, g1, 13);
  for (int k = 12; k >= 1; --k) R = _mm_add_pd(le::gather(g0, g1, k), _mm_mul_pd(v, R));
  const __m128d P = _mm_andnot_pd(drop, _mm_mul_pd(_mm_mul_pd(E, R), sc));
  return _mm_sub_pd(le::base_of(x_in), P);
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

LUXVM_EXPORT luxStatus luxsCdfNorm_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::erf::run_cdfnorm<lux64f, Body>(src, dst, len);
}
