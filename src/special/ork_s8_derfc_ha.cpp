// luxsErfc_64f_A53: erfc(x) on binary64 arrays, within 1 ulp.
// max error 0.753 ulp at x = 0x1.a8b15c005bf2p+4 (luxvm accuracy Erfc --points=4000).
//
// erfc(|x|) = exp(-x^2) * G(|x|), G(y) = exp(y^2) erfc(y) smooth and slowly
// varying, and erfc(-|x|) = 2 - erfc(|x|).
//   -x^2 = aH + low2 exactly enough: |x| split into 26-bit halves, the
//   square's head cleared to 26 bits;
//   exp(-x^2) = 2^(N/128) * e^r with r = -x^2 - N*ln 2/128 (ln 2/128 in two
//   words), e^r - 1 by its degree-5 Taylor polynomial (|r| <= ln 2/256:
//   error below 2^-67), 2^(j/128) in two words T0 + T1;
//   G on 28 rows from the high word (left ends A = 0, 0.25, ..., 24): degree
//   13 in t = |x| - A with G(A) and G'(A) in two words each, the leading two
//   Horner steps carried in two words.
// The product H + Lw of G and the exponential is scaled by 2^k (built from
// an exponent field biased by 154 and a factor 2^-154, so that it falls
// gradually into the subnormal range) and added to Base (2 for negative x)
// with the rounding error of that sum put back.  From x = 26.54, where the
// result is subnormal, (H + Lw)*2^k is rounded once instead.
#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace {

using lux::row64;
using lux::Row64;
namespace le = lux::erf;

// Fast path: |x| < 26.54 (high word), results normal, no selection.
constexpr uint32_t kFastBelow = 0x403A8B12;
// |x| above 27.226 (erfc rounds to 0) or below 2^-55 (erfc rounds to 1):
// computed as x = +0 in the selecting path.
constexpr uint32_t kZeroAbove = 0x403B39DC, kOneBelow = 0x3C800000;
// Underflow: x > 26.543258454250978 and finite.
constexpr int64_t kUnderflowAbove = 0x403A8B12FC6E4891, kPlusInf = 0x7FF0000000000000;
// Interval key: 4 rows a binade from 0.25; below and above, row 0.
constexpr uint32_t kKeyMask = 0x7FFC0000, kKeyBase = 0x3FCC0000, kLastRow = 27;
constexpr int kKeyShift = 18;

struct alignas(16) ErfcHaTable {
  Row64 dbAbsMask, dbSignMask, dbClear27, dbTwo, dbZero;
  Row64 dbInvL;     // 128/ln 2
  Row64 dbShifter;  // 1.5*2^52
  Row64 dbNegShifter;
  Row64 dbL1, dbL2;                             // ln 2/128 = L1 + L2, L1 with 32 trailing zero bits
  Row64 dbP[5];                                 // 1, 1/2, 1/6, 1/24, 1/120
  Row64 dbExpMask;                              // top 12 bits after the shift
  Row64 dbBias154;                              // exponent field 0x499 = 1023 + 154
  Row64 dbTwoM154;                              // 2^-154
  Row64 dbA[28];                                // left ends of the rows
  alignas(16) uint64_t dErfc_HA_Pow2[128][2];   // {T0, T1}
  alignas(16) uint64_t dErfc_HA_Table[28][16];  // {c0lo, c0hi, c1lo, c1hi, c2..c13}
};

constexpr ErfcHaTable kT = {
    .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF),
    .dbSignMask = row64(0x8000000000000000),
    .dbClear27 = row64(0xFFFFFFFFF8000000),
    .dbTwo = row64(0x4000000000000000),
    .dbZero = row64(0),
    .dbInvL = row64(0x40671547652B82FE),        // 184.66496523378731
    .dbShifter = row64(0x4338000000000000),     // 6755399441055744
    .dbNegShifter = row64(0xC338000000000000),  // -6755399441055744
    .dbL1 = row64(0x3F762E4300000000),          // 0.005415212363004684
    .dbL2 = row64(0xBDB05C610CA86C39),          // -1.4876333768688658e-11
    .dbP = {row64(0x3FF0000000000000), row64(0x3FE0000000000000), row64(0x3FC5555555555555),
            row64(0x3FA5555555555555), row64(0x3F81111111111111)},
    .dbExpMask = row64(0xFFF0000000000000),
    .dbBias154 = row64(0x4990000000000000),
    .dbTwoM154 = row64(0x3650000000000000),
    .dbA = {row64(0x0000000000000000), row64(0x3FD0000000000000), row64(0x3FD4000000000000),
            row64(0x3FD8000000000000), row64(0x3FDC000000000000), row64(0x3FE0000000000000),
            row64(0x3FE4000000000000), row64(0x3FE8000000000000), row64(0x3FEC000000000000),
            row64(0x3FF0000000000000), row64(0x3FF4000000000000), row64(0x3FF8000000000000),
            row64(0x3FFC000000000000), row64(0x4000000000000000), row64(0x4004000000000000),
            row64(0x4008000000000000), row64(0x400C000000000000), row64(0x4010000000000000),
            row64(0x4014000000000000), row64(0x4018000000000000), row64(0x401C000000000000),
            row64(0x4020000000000000), row64(0x4024000000000000), row64(0x4028000000000000),
            row64(0x402C000000000000), row64(0x4030000000000000), row64(0x4034000000000000),
            row64(0x4038000000000000)},
    .dErfc_HA_Pow2 =
        {
#include "special/erf_exp2_pairs_table.inc"
        },
    .dErfc_HA_Table =
        {
#include "special/erfc_d53_table.inc"
        },
};

inline uint32_t row_of(uint32_t hi) { return le::row_index(hi, kKeyMask, kKeyBase, kKeyShift, kLastRow, 0); }

struct Candidates {
  __m128d r1, r0;
};

// Steps for a pair whose lanes are all finite (the caller replaces the
// others): the two-sum form r1 and the single-rounding form r0.
inline Candidates pair(__m128d x) {
  const __m128d clear = kT.dbClear27.pd();
  const __m128d sgn = _mm_and_pd(x, kT.dbSignMask.pd());
  // Base 2 for a set sign bit (-0 included).
  const __m128d neg = le::wide_mask(_mm_cmplt_epi32(le::high_pair(x), _mm_setzero_si128()));
  const __m128d base = _mm_and_pd(neg, kT.dbTwo.pd());
  const __m128d ax = _mm_and_pd(x, kT.dbAbsMask.pd());
  const __m128d xH = _mm_and_pd(ax, clear);
  const __m128d xL = _mm_sub_pd(ax, xH);
  const __m128d nxH = _mm_xor_pd(xH, kT.dbSignMask.pd());
  const __m128d a = _mm_mul_pd(nxH, xH);
  const __m128d low = _mm_sub_pd(_mm_mul_pd(_mm_mul_pd(nxH, xL), kT.dbTwo.pd()), _mm_mul_pd(xL, xL));
  const __m128d aH = _mm_and_pd(a, clear);
  const __m128d low2 = _mm_add_pd(_mm_sub_pd(a, aH), low);
  // Reduction.
  const __m128d v = _mm_add_pd(_mm_mul_pd(aH, kT.dbInvL.pd()), kT.dbShifter.pd());
  const __m128d Nd = _mm_add_pd(v, kT.dbNegShifter.pd());
  const int j0 = _mm_cvtsi128_si32(lux::as_int(v)) & 127;
  const int j1 = _mm_cvtsi128_si32(_mm_srli_si128(lux::as_int(v), 8)) & 127;
  const __m128i field = _mm_and_si128(_mm_slli_epi64(lux::as_int(v), 45), kT.dbExpMask.pi());
  const __m128d M =
      _mm_mul_pd(_mm_or_pd(lux::as_pd(_mm_add_epi64(field, kT.dbBias154.pi())), sgn), kT.dbTwoM154.pd());
  const __m128d r = _mm_add_pd(
      _mm_sub_pd(_mm_sub_pd(aH, _mm_mul_pd(kT.dbL1.pd(), Nd)), _mm_mul_pd(kT.dbL2.pd(), Nd)), low2);
  __m128d p = kT.dbP[4].pd();
  for (int k = 3; k >= 0; --k) p = _mm_add_pd(kT.dbP[k].pd(), _mm_mul_pd(r, p));
  p = _mm_mul_pd(r, p);
  const double* t0 = reinterpret_cast<const double*>(kT.dErfc_HA_Pow2[j0]);
  const double* t1 = reinterpret_cast<const double*>(kT.dErfc_HA_Pow2[j1]);
  const __m128d T0 = le::gather(t0, t1, 0), T1 = le::gather(t0, t1, 1);
  const __m128d EL = _mm_add_pd(_mm_mul_pd(p, _mm_add_pd(T0, T1)), T1);
  // G on the row.
  const uint32_t i0 = row_of(le::high_word(x, 0)), i1 = row_of(le::high_word(x, 1));
  const double* g0 = reinterpret_cast<const double*>(kT.dErfc_HA_Table[i0]);
  const double* g1 = reinterpret_cast<const double*>(kT.dErfc_HA_Table[i1]);
  const __m128d A = _mm_loadh_pd(_mm_load_sd(reinterpret_cast<const double*>(&kT.dbA[i0])),
                                 reinterpret_cast<const double*>(&kT.dbA[i1]));
  const __m128d t = _mm_sub_pd(ax, A);
  __m128d q = le::gather(g0, g1, 15);
  for (int k = 14; k >= 4; --k) q = _mm_add_pd(le::gather(g0, g1, k), _mm_mul_pd(t, q));
  q = _mm_mul_pd(t, q);
  __m128d s, e;
  le::two_sum(le::gather(g0, g1, 3), q, s, e);
  const __m128d sH = _mm_and_pd(s, clear);
  const __m128d L = _mm_add_pd(_mm_add_pd(e, le::gather(g0, g1, 2)), _mm_sub_pd(s, sH));
  const __m128d tH = _mm_and_pd(t, clear);
  const __m128d tL = _mm_sub_pd(t, tH);
  const __m128d P = _mm_mul_pd(sH, tH);
  const __m128d R = _mm_add_pd(_mm_add_pd(_mm_mul_pd(L, tL), _mm_mul_pd(tL, sH)), _mm_mul_pd(tH, L));
  __m128d w, f;
  le::two_sum(le::gather(g0, g1, 1), P, w, f);
  const __m128d GL0 = _mm_add_pd(_mm_add_pd(f, R), le::gather(g0, g1, 0));
  const __m128d GH = _mm_and_pd(w, clear);
  const __m128d GL = _mm_add_pd(GL0, _mm_sub_pd(w, GH));
  // Product with the exponential, scaled, and added to Base.
  const __m128d H = _mm_mul_pd(GH, T0);
  const __m128d Lw = _mm_add_pd(_mm_add_pd(_mm_mul_pd(GL, EL), _mm_mul_pd(GH, EL)), _mm_mul_pd(GL, T0));
  const __m128d HM = _mm_mul_pd(H, M);
  const __m128d S = _mm_add_pd(base, HM);
  const __m128d r1 = _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_sub_pd(base, S), HM), _mm_mul_pd(Lw, M)), S);
  const __m128d r0 = _mm_mul_pd(_mm_add_pd(H, Lw), M);
  return {r1, r0};
}

inline __m128d fast_pair(__m128d x) { return pair(x).r1; }

// Every lane by its class.
inline __m128d select_pair(__m128d x) {
  const __m128i h = le::high_pair(x);
  const __m128i habs = _mm_and_si128(h, _mm_set1_epi32(0x7FFFFFFF));
  const __m128d outside = le::wide_mask(_mm_or_si128(_mm_cmpgt_epi32(habs, _mm_set1_epi32(kZeroAbove)),
                                                     _mm_cmplt_epi32(habs, _mm_set1_epi32(kOneBelow))));
  const Candidates c = pair(_mm_andnot_pd(outside, x));
  const __m128d deep = le::wide_mask(_mm_cmpgt_epi32(h, _mm_set1_epi32(kFastBelow - 1)));
  __m128d y = le::select(deep, c.r0, c.r1);
  // Unsigned ranges of the high word, by an offset signed compare.
  const __m128i flip = _mm_set1_epi32(int32_t(0x80000000));
  const __m128i hu = _mm_xor_si128(h, flip);
  const auto in_range = [&](uint32_t lo, uint32_t hi) {
    const __m128i ge = _mm_cmpgt_epi32(hu, _mm_set1_epi32(int32_t((lo - 1) ^ 0x80000000u)));
    const __m128i le_ = _mm_cmplt_epi32(hu, _mm_set1_epi32(int32_t((hi + 1) ^ 0x80000000u)));
    return le::wide_mask(_mm_and_si128(ge, le_));
  };
  y = _mm_andnot_pd(in_range(kZeroAbove + 1, 0x7FF00000), y);
  y = le::select(in_range(0x80000000u | kZeroAbove, 0xFFF00000u), kT.dbTwo.pd(), y);
  const __m128d nan = _mm_cmpunord_pd(x, x);
  return le::select(nan, _mm_mul_pd(x, x), y);
}

inline bool all_fast(__m128d a, __m128d b) {
  const __m128i h =
      _mm_and_si128(_mm_unpacklo_epi64(le::high_pair(a), le::high_pair(b)), _mm_set1_epi32(0x7FFFFFFF));
  return _mm_movemask_epi8(_mm_cmpgt_epi32(h, _mm_set1_epi32(kFastBelow - 1))) == 0;
}

inline bool underflows(uint64_t bits) { return int64_t(bits) > kUnderflowAbove && int64_t(bits) < kPlusInf; }

struct ErfcKernel {
  const double* src;
  double* dst;
  lux::CallState<lux64f>& call;
  unsigned block(int i) {
    const __m128d a = lux::load2(src + i), b = lux::load2(src + i + 2);
    if (__builtin_expect(all_fast(a, b), 1)) {
      lux::store2(dst + i, fast_pair(a));
      lux::store2(dst + i + 2, fast_pair(b));
      return 0;
    }
    const unsigned mask =
        unsigned(underflows(le::lane_bits(a, 0))) | unsigned(underflows(le::lane_bits(a, 1))) << 1 |
        unsigned(underflows(le::lane_bits(b, 0))) << 2 | unsigned(underflows(le::lane_bits(b, 1))) << 3;
    lux::store2(dst + i, select_pair(a));
    lux::store2(dst + i + 2, select_pair(b));
    return mask;
  }
  unsigned tail(int i) {
    const __m128d x = lux::load1(src + i);
    const bool u = underflows(le::lane_bits(x, 0));
    lux::store1(dst + i, select_pair(x));
    return u;
  }
  void offend(int i) { call.warn(luxWarnUnderflow, i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsErfc_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  ErfcKernel k{src, dst, call};
  lux::run_masked<4>(len, k);
  return call.status();
}
