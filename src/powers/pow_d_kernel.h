// The binary64 a^b kernels (Pow and Powx, tiers A26, A50, A53): a^b = 2^(b log2 a).
//
// log2 a is carried in two doubles.  With a = 2^k z, z in [1, 2), and
// i = round(K (z - 1)), t = z R[i] lies within 1/(2K) of R[0] (R[i] is log2(e)/(1 + i/K)
// cut to 23 bits, R[0] the high part of log2 e), so s = t - R[0] is exact and
// log2 z = L[i] + log2(1 + (s + e)/R[0]), L[i] = log2(R[0]/R[i]) of the stored R: no
// rounding error of R enters.  e is the rounding error of t, exact because zh R and
// zl R are exact products (26 + 23 and 27 + 23 bits).  The polynomial P(u) is
// log2(1 + u/R[0]) - u, its coefficients scaled by log2 e so that no product by 1/ln 2
// is needed.  From K/2 on L is one lower and k one higher, which keeps k + L small
// for a just below a power of two.
//
// The product y = b log2 a is split Dekker-fashion (A50, A53) so that it keeps its
// accuracy up to |y| ~ 1075, rounded to n/128 by the shifter 1.5*2^45, and
// 2^y = 2^(n>>7) T[n&127] 2^r with a degree-5 (A53, A50) or 2 (A26) polynomial.
//
// Each unit instantiates these templates with its own constant table.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/pow_special.h"

namespace lux::pow {

enum class DTier { kA26, kA50, kA53 };

// Layout of a unit's constant table; K is 1024 (A53, A50) or 64 (A26).
template <int K>
struct alignas(16) DPowTable {
  Row64 dbR0;     // R[0]
  Row64 dbDelta;  // (log2(e) - R[0]) / R[0]
  Row64 dbC2{}, dbC3{}, dbC4{}, dbC5{}, dbC6{}, dbC7{}, dbC8{};
  Row64 dbLn2{}, dbE2{}, dbE3{}, dbE4{}, dbE5{};
  Row64 dbShifter;   // 1.5*2^45: rounds to a multiple of 1/128
  Row64 dbKShifter;  // 1.5*2^20: an integer added to its high word
  Row64 dbOne;
  Row64 dbFracMask;   // significand field
  Row64 dbSplitMask;  // clears the low 27 bits
  Row64 dbExpMask;    // sign and exponent field
  Row64 dbTwo52;      // scales a denormal a into the normal range
  Row64 dbTwoM111;    // 2^-111, the factor of the gradual underflow path
  uint64_t R[K + 1];
  alignas(16) uint64_t L[K + 1][2];
  alignas(16) uint64_t T[128][2];
};

// Lane tests, on the high words.
// a is a positive normal: hi(a) - 0x80100000 (signed) at most 0xFFDFFFFF.
inline constexpr int32_t kPositiveNormalBias = int32_t(0x80100000u);
inline constexpr int32_t kPositiveNormalLimit = int32_t(0xFFDFFFFFu);
// b finite and nonzero: 0 < |hi(b)| <= 0x7FEFFFFF (a denormal b with a zero high
// word takes the call-out, which handles it).
inline constexpr int32_t kFiniteLimit = 0x7FEFFFFF;
// Exponent fields of W0 and b add to at most 1023 + 1023 + 11: |b log2 a| < 2^12.
inline constexpr int32_t kExponentSumLimit = 0x809;
// n = round(128 y) inside (-964*128, 1023*128): 2^(n>>7) is a normal scale.
inline constexpr int32_t kNMax = 0x1FF80 - 1;
inline constexpr int32_t kNMin = -123392 + 1;
// Exponent cases of the call-out.
inline constexpr int kInfFrom = 1025, kHalfScaleFrom = 1023, kNormalFrom = -963, kZeroBelow = -1075;
// Test value of the gradual underflow path: below this high word the result
// lies in the denormal range or at its edge.
inline constexpr uint32_t kDenormalEdge = 0x00100001;

template <int K>
inline constexpr uint32_t kKOffset = K == 1024 ? 0x3FE7FE00u : 0x3FE7E000u;

// Index i = round(K (z - 1)) from the high word: 0..K.
template <int K>
inline __m128i table_index(__m128i hw) {
  if constexpr (K == 1024)
    return _mm_srli_epi32(_mm_add_epi32(_mm_and_si128(hw, _mm_set1_epi32(0xFFE00)), _mm_set1_epi32(0x200)),
                          10);
  else
    return _mm_srli_epi32(_mm_add_epi32(_mm_and_si128(hw, _mm_set1_epi32(0xFE000)), _mm_set1_epi32(0x2000)),
                          14);
}

inline __m128d gather(const uint64_t* t, int i0, int i1) {
  return _mm_loadh_pd(_mm_load_sd(reinterpret_cast<const double*>(t + i0)),
                      reinterpret_cast<const double*>(t + i1));
}
// Two-word entries: high parts of both lanes, low parts of both lanes.
inline void gather2(const uint64_t (*t)[2], int i0, int i1, __m128d& hi, __m128d& lo) {
  const __m128d p0 = _mm_load_pd(reinterpret_cast<const double*>(t[i0]));
  const __m128d p1 = _mm_load_pd(reinterpret_cast<const double*>(t[i1]));
  hi = _mm_unpacklo_pd(p0, p1);
  lo = _mm_unpackhi_pd(p0, p1);
}

// log2 a = w2 + lo; w0 is the first partial sum, whose exponent the lane test uses.
struct Log2 {
  __m128d w0, w2, lo;
};

// kadj is added to the exponent k (-52 for a denormal a scaled by 2^52).
template <DTier T, int K>
inline Log2 log2_pair(const DPowTable<K>& tb, __m128d a, int kadj) {
  const __m128i hw = as_int(a);
  const __m128i idx = table_index<K>(hw);
  const int i0 = _mm_extract_epi16(idx, 2), i1 = _mm_extract_epi16(idx, 6);
  // k on the high words, made a double by adding it to the high word of 1.5*2^20.
  const __m128i k = _mm_add_epi32(_mm_srai_epi32(_mm_sub_epi32(hw, _mm_set1_epi32(int32_t(kKOffset<K>))), 20),
                                  _mm_set1_epi32(kadj));
  const __m128i kb = _mm_and_si128(_mm_add_epi32(k, _mm_set1_epi32(0x41380000)), _mm_set_epi32(-1, 0, -1, 0));
  const __m128d kd = _mm_sub_pd(as_pd(kb), tb.dbKShifter.pd());
  const __m128d z = _mm_or_pd(_mm_and_pd(a, tb.dbFracMask.pd()), tb.dbOne.pd());
  const __m128d r = gather(tb.R, i0, i1);
  __m128d lhi, llo;
  gather2(tb.L, i0, i1, lhi, llo);
  // t = z R and its rounding error e, from exact partial products.
  const __m128d t = _mm_mul_pd(z, r);
  const __m128d zh = _mm_and_pd(z, tb.dbSplitMask.pd());
  const __m128d zl = _mm_sub_pd(z, zh);
  const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(zh, r), t), _mm_mul_pd(zl, r));
  const __m128d s = _mm_sub_pd(t, tb.dbR0.pd());
  // Compensated sum of k + L + s + e.
  const __m128d kl = _mm_add_pd(kd, lhi);
  const __m128d w0 = _mm_add_pd(kl, s);
  const __m128d err0 = _mm_add_pd(_mm_sub_pd(kl, w0), s);
  const __m128d w1 = _mm_add_pd(w0, e);
  const __m128d err1 = _mm_add_pd(_mm_sub_pd(w0, w1), e);
  const __m128d u = _mm_add_pd(s, e);
  __m128d p;
  if constexpr (T == DTier::kA50) {
    p = _mm_add_pd(_mm_mul_pd(u, tb.dbC8.pd()), tb.dbC7.pd());
    p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC6.pd());
    p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC5.pd());
    p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC4.pd());
  } else if constexpr (T == DTier::kA53) {
    p = _mm_add_pd(_mm_mul_pd(u, tb.dbC7.pd()), tb.dbC6.pd());
    p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC5.pd());
    p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC4.pd());
  } else {
    p = _mm_add_pd(_mm_mul_pd(u, tb.dbC5.pd()), tb.dbC4.pd());
  }
  p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC3.pd());
  p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbC2.pd());
  p = _mm_add_pd(_mm_mul_pd(u, p), tb.dbDelta.pd());
  p = _mm_mul_pd(u, p);
  __m128d lo = _mm_add_pd(_mm_add_pd(_mm_add_pd(err0, err1), llo), p);
  const __m128d w2 = _mm_add_pd(w1, lo);
  lo = _mm_add_pd(_mm_sub_pd(w1, w2), lo);
  return {w0, w2, lo};
}

// y = b log2 a as v (rounded to n/128 by the shifter) plus the reduced r.
struct Product {
  __m128d v, x1;  // r = x1 + (v - n/128); x1 is 0 at A26
  __m128d sum;    // v + shifter: n in the low words
  __m128d r;
};

template <DTier T, int K>
inline Product product_pair(const DPowTable<K>& tb, const Log2& l, __m128d b) {
  Product p;
  if constexpr (T == DTier::kA26) {
    p.v = _mm_mul_pd(l.w2, b);
    p.x1 = _mm_setzero_pd();
  } else {
    const __m128d wh = _mm_and_pd(l.w2, tb.dbSplitMask.pd());
    const __m128d wl = _mm_sub_pd(l.w2, wh);
    const __m128d bh = _mm_and_pd(b, tb.dbSplitMask.pd());
    const __m128d bl = _mm_sub_pd(b, bh);
    p.v = _mm_mul_pd(bh, wh);  // exact: 26 x 26 bits
    const __m128d rest = _mm_add_pd(_mm_add_pd(_mm_mul_pd(wl, bl), _mm_mul_pd(wl, bh)), _mm_mul_pd(bl, wh));
    p.x1 = _mm_add_pd(rest, _mm_mul_pd(l.lo, b));
  }
  p.sum = _mm_add_pd(p.v, tb.dbShifter.pd());
  const __m128d nf = _mm_sub_pd(p.sum, tb.dbShifter.pd());
  const __m128d d = _mm_sub_pd(p.v, nf);  // exact
  p.r = T == DTier::kA26 ? d : _mm_add_pd(p.x1, d);
  return p;
}

// 2^(j/128) 2^r without the scale 2^e, by tier.
template <DTier T, int K>
inline __m128d exp_pair(const DPowTable<K>& tb, __m128d r, int j0, int j1) {
  __m128d th, tl;
  gather2(tb.T, j0, j1, th, tl);
  if constexpr (T == DTier::kA26) {
    const __m128d p =
        _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(tb.dbE2.pd(), r), tb.dbLn2.pd()), r), tb.dbOne.pd());
    return _mm_mul_pd(p, th);
  } else if constexpr (T == DTier::kA50) {
    __m128d p = _mm_add_pd(_mm_mul_pd(tb.dbE5.pd(), r), tb.dbE4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, r), tb.dbE3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, r), tb.dbE2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, r), tb.dbLn2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, r), tb.dbOne.pd());
    return _mm_mul_pd(p, th);
  } else {
    // Small terms first: (((e5 r + e4) r^4 T + Tl) + (e3 r + e2) r^2 T + (ln2 r) T) + T.
    __m128d hi = _mm_add_pd(_mm_mul_pd(tb.dbE5.pd(), r), tb.dbE4.pd());
    hi = _mm_mul_pd(_mm_mul_pd(_mm_mul_pd(_mm_mul_pd(_mm_mul_pd(hi, r), r), r), r), th);
    __m128d mid = _mm_add_pd(_mm_mul_pd(tb.dbE3.pd(), r), tb.dbE2.pd());
    mid = _mm_mul_pd(_mm_mul_pd(_mm_mul_pd(mid, r), r), th);
    const __m128d lin = _mm_mul_pd(_mm_mul_pd(tb.dbLn2.pd(), r), th);
    return _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(hi, tl), mid), lin), th);
  }
}

// 2^e from n in the low words of the shifter sum: n << 45 puts e = n >> 7 in the
// exponent field (j lands below it and is masked away).
inline __m128d scale_from_sum(__m128d sum, __m128d exp_mask) {
  const __m128i s = _mm_slli_epi64(as_int(sum), 45);
  return _mm_and_pd(as_pd(_mm_add_epi32(s, _mm_set_epi32(0x3FF00000, 0, 0x3FF00000, 0))), exp_mask);
}

inline __m128d pow2_scale(int e) { return as_pd(_mm_set_epi32(0, 0, (e + 1023) << 20, 0)); }

// Vector path on two lanes: the result and whether both lanes pass the tests.
// kTestB: b is per lane (Pow); Powx checks its fixed x once before the loop.
template <DTier T, int K, bool kTestB>
inline bool pair(const DPowTable<K>& tb, __m128d a, __m128d b, __m128d& out) {
  const __m128i hw = as_int(a);
  __m128i bad_hi = _mm_cmpgt_epi32(_mm_sub_epi32(hw, _mm_set1_epi32(kPositiveNormalBias)),
                                   _mm_set1_epi32(kPositiveNormalLimit));
  const __m128i hb = _mm_and_si128(as_int(b), _mm_set1_epi32(0x7FFFFFFF));
  if constexpr (kTestB)
    bad_hi = _mm_or_si128(bad_hi, _mm_or_si128(_mm_cmpeq_epi32(hb, _mm_setzero_si128()),
                                               _mm_cmpgt_epi32(hb, _mm_set1_epi32(kFiniteLimit))));
  const Log2 l = log2_pair<T, K>(tb, a, 0);
  const __m128i ew = _mm_srli_epi32(_mm_and_si128(as_int(l.w0), _mm_set1_epi32(0x7FF00000)), 20);
  const __m128i eb = _mm_srli_epi32(hb, 20);
  bad_hi = _mm_or_si128(bad_hi, _mm_cmpgt_epi32(_mm_add_epi32(ew, eb), _mm_set1_epi32(kExponentSumLimit)));
  const Product p = product_pair<T, K>(tb, l, b);
  const __m128i n = as_int(p.sum);
  const __m128i bad_lo =
      _mm_or_si128(_mm_cmpgt_epi32(n, _mm_set1_epi32(kNMax)), _mm_cmplt_epi32(n, _mm_set1_epi32(kNMin)));
  const int j0 = _mm_extract_epi16(n, 0) & 127, j1 = _mm_extract_epi16(n, 4) & 127;
  out = _mm_mul_pd(exp_pair<T, K>(tb, p.r, j0, j1), scale_from_sum(p.sum, tb.dbExpMask.pd()));
  const int fails =
      (_mm_movemask_ps(_mm_castsi128_ps(bad_hi)) & 0xA) | (_mm_movemask_ps(_mm_castsi128_ps(bad_lo)) & 0x5);
  return fails == 0;
}

inline double lane0(__m128d v) { return _mm_cvtsd_f64(v); }
inline uint64_t bits_of(double d) { return __builtin_bit_cast(uint64_t, d); }
inline double from_bits(uint64_t u) { return __builtin_bit_cast(double, u); }

// The call-out: one lane, through the special table or the vector arithmetic on
// lane 0, with the exponent cases the vector path leaves out.  Writes the result
// bits; returns the lane's status.
template <DTier T, int K>
inline luxStatus pow_lane(const DPowTable<K>& tb, uint64_t ab, uint64_t bb, uint64_t* dst) {
  constexpr uint64_t kSign = 0x8000000000000000ull, kInf = 0x7FF0000000000000ull;
  const uint64_t abs_a = ab & ~kSign, abs_b = bb & ~kSign;
  if (abs_b == 0 || abs_b >= kInf || abs_a == 0 || abs_a >= kInf) {
    const SpecialResult<uint64_t> s = special_pow(ab, bb);
    *dst = s.bits;
    return s.status;
  }
  __m128d g = tb.dbOne.pd();
  if (ab & kSign) {
    const int c = test_int(bb);
    if (c == kNotInteger) {
      const SpecialResult<uint64_t> s = special_pow(ab, bb);
      *dst = s.bits;
      return s.status;
    }
    if (c == kOddInteger) g = _mm_xor_pd(g, as_pd(_mm_set_epi32(0, 0, int32_t(0x80000000u), 0)));
  }
  __m128d a = as_pd(_mm_set_epi64x(0, int64_t(abs_a)));
  int kadj = 0;
  if (abs_a < 0x0010000000000000ull) {
    a = _mm_mul_sd(a, tb.dbTwo52.pd());
    kadj = -52;
  }
  const __m128d b = as_pd(_mm_set_epi64x(0, int64_t(bb)));
  const Log2 l = log2_pair<T, K>(tb, a, kadj);
  const uint64_t w0 = bits_of(lane0(l.w0));
  const int ew = int((w0 >> 52) & 0x7FF), eb = int(abs_b >> 52);
  const uint64_t gsign = bits_of(lane0(g)) & kSign;
  if (ew + eb > kExponentSumLimit) {
    // |b log2 a| >= 2^12: the result is 0 or infinite, by the signs.
    *dst = gsign | (((w0 ^ bb) & kSign) ? 0 : kInf);
    return luxOk;
  }
  Product p = product_pair<T, K>(tb, l, b);
  int n = _mm_cvtsi128_si32(as_int(p.sum));
  if constexpr (T == DTier::kA26) {
    // One rounded product w2 b leaves out b lo, and at the top of the range
    // that decides the binade: log2 DBL_MAX = 1024 - 1.6e-16 rounds to w2 =
    // 1024, so DBL_MAX^1 and (0x1.fffffffffffffp+511)^2 would come out as
    // 2^1024, infinite, where the exact results are finite.  Lanes that reach
    // the last two binades redo the product in split form with b lo.
    if ((n >> 7) >= kHalfScaleFrom) {
      p = product_pair<DTier::kA50, K>(tb, l, b);
      n = _mm_cvtsi128_si32(as_int(p.sum));
    }
  }
  const int e = n >> 7, j = n & 127;
  __m128d res;
  if (e >= kInfFrom) {
    *dst = gsign | kInf;
    return luxOk;
  } else if (e >= kHalfScaleFrom) {
    res = _mm_mul_sd(_mm_mul_sd(exp_pair<T, K>(tb, p.r, j, j), pow2_scale(e - 1)), _mm_add_sd(g, g));
  } else if (e >= kNormalFrom) {
    res = _mm_mul_sd(_mm_mul_sd(exp_pair<T, K>(tb, p.r, j, j), pow2_scale(e)), g);
  } else if (e >= kZeroBelow) {
    // Gradual underflow: work at 2^(e+111), normal, and let one final product by
    // g 2^-111 round onto the denormal grid.
    const __m128d s1 = pow2_scale(e + 111);
    const __m128d g111 = _mm_mul_sd(g, tb.dbTwoM111.pd());
    if constexpr (T != DTier::kA53) {
      res = _mm_mul_sd(_mm_mul_sd(exp_pair<T, K>(tb, p.r, j, j), s1), g111);
    } else {
      const double r = lane0(p.r);
      const double x2 = lane0(_mm_sub_sd(p.v, _mm_sub_sd(p.sum, tb.dbShifter.pd())));
      const double x1 = lane0(p.x1);
      const double bv = r - x2;
      const double rl = (x1 - bv) + (x2 - (r - bv));  // rounding error of r = x1 + x2
      const double t = from_bits(tb.T[j][0]), tl = from_bits(tb.T[j][1]);
      const double e2 = lane0(tb.dbE2.pd()), e3 = lane0(tb.dbE3.pd()), e4 = lane0(tb.dbE4.pd()),
                   e5 = lane0(tb.dbE5.pd()), ln2 = lane0(tb.dbLn2.pd());
      const double big = lane0(tb.dbE5.pd()) * r + e4;
      const double pp = (((big * r * r * r * r * t + tl) + (e3 * r + e2) * r * r * t) + ln2 * r * t);
      const double sc = from_bits(bits_of(lane0(s1)));
      const double gg = lane0(g111);
      const double test = t * sc * gg;
      if ((bits_of(test) >> 32 & 0x7FFFFFFF) < kDenormalEdge) {
        // Denormal result: the high parts are exact at 2^(e+111); the sum rounds
        // once to 53 bits and the product by g 2^-111 once onto the grid.
        const double th = from_bits(bits_of(t) & 0xFFFF000000000000ull);
        const double ph = from_bits(bits_of(pp) & 0xFFFFFFFF00000000ull);
        const double rest = ((t - th) + (pp - ph)) + ph;
        res = _mm_set_sd((th * sc + rest * sc) * gg);
      } else {
        // Normal result near the edge: the sum of P and T redone in split form.
        const double poly = ln2 + (e2 + (e3 + (e5 * r + e4) * r) * r) * r;
        const double q = r * poly;
        const double qh = from_bits(bits_of(q) & 0xFFFFFFFFFF000000ull);
        const double ql = (poly * rl) + (q - qh);
        const double th = from_bits(bits_of(t) & 0xFFFFFFFF00000000ull);
        const double tt = t - th;
        const double sum = ((((q * tl + tt * ql) + ql * th) + tl) + tt * qh + th * qh) + t;
        res = _mm_set_sd(sum * (sc * gg));
      }
    }
  } else {
    *dst = gsign;
    return luxOk;
  }
  _mm_store_sd(reinterpret_cast<double*>(dst), res);
  return luxOk;
}

// Frame kind F4 over blocks of 4 lanes (two pairs); the tail takes the call-out.
// Pow: b from src2.  Powx: b is the fixed x (kFixed), tested once by the export.
template <DTier T, int K, bool kFixed>
struct DPowKernel {
  const DPowTable<K>& tb;
  const double* a;
  const double* b;  // Pow: src2; Powx: the fixed x, one element in memory
  double* dst;
  CallState<lux64f>& call;

  bool block(int i) {
    const __m128d b0 = kFixed ? _mm_loaddup_pd(b) : load2(b + i);
    const __m128d b1 = kFixed ? b0 : load2(b + i + 2);
    __m128d r0, r1;
    const bool ok0 = pair<T, K, !kFixed>(tb, load2(a + i), b0, r0);
    const bool ok1 = pair<T, K, !kFixed>(tb, load2(a + i + 2), b1, r1);
    if (!(ok0 & ok1)) return false;
    store2(dst + i, r0);
    store2(dst + i + 2, r1);
    return true;
  }
  void lane(int i) {
    const uint64_t ab = *reinterpret_cast<const uint64_t*>(a + i);
    const uint64_t bb = *reinterpret_cast<const uint64_t*>(kFixed ? b : b + i);
    const luxStatus s = pow_lane<T, K>(tb, ab, bb, reinterpret_cast<uint64_t*>(dst + i));
    if (s != luxOk) call.warn(s, i);
  }
  void tail(int i) { lane(i); }
};

// The shortcuts of Powx with x = 2, 3 or 4: the lanes' own IEEE products, so a
// NaN stays a NaN and -0 squares to +0; no call-out, no status.
inline void square(const double* a, double* dst, int len) {
  int i = 0;
  for (; i + 4 <= len; i += 4) {
    const __m128d x0 = load2(a + i), x1 = load2(a + i + 2);
    store2(dst + i, _mm_mul_pd(x0, x0));
    store2(dst + i + 2, _mm_mul_pd(x1, x1));
  }
  for (; i < len; ++i) {
    const __m128d x = load1(a + i);
    store1(dst + i, _mm_mul_sd(x, x));
  }
}
inline void cube(const double* a, double* dst, int len) {
  int i = 0;
  for (; i + 4 <= len; i += 4) {
    const __m128d x0 = load2(a + i), x1 = load2(a + i + 2);
    store2(dst + i, _mm_mul_pd(_mm_mul_pd(x0, x0), x0));
    store2(dst + i + 2, _mm_mul_pd(_mm_mul_pd(x1, x1), x1));
  }
  for (; i < len; ++i) {
    const __m128d x = load1(a + i);
    store1(dst + i, _mm_mul_sd(_mm_mul_sd(x, x), x));
  }
}
inline void fourth(const double* a, double* dst, int len) {
  int i = 0;
  for (; i + 4 <= len; i += 4) {
    const __m128d x0 = load2(a + i), x1 = load2(a + i + 2);
    const __m128d s0 = _mm_mul_pd(x0, x0), s1 = _mm_mul_pd(x1, x1);
    store2(dst + i, _mm_mul_pd(s0, s0));
    store2(dst + i + 2, _mm_mul_pd(s1, s1));
  }
  for (; i < len; ++i) {
    const __m128d x = load1(a + i);
    const __m128d s = _mm_mul_sd(x, x);
    store1(dst + i, _mm_mul_sd(s, s));
  }
}

// The body of a Pow export.
template <DTier T, int K>
inline luxStatus run_pow(const DPowTable<K>& tb, const lux64f* src1, const lux64f* src2, lux64f* dst,
                         int len) {
  X87Guard53 x87;
  RoundNearestGuard sse;
  CallState<lux64f> call(src1, src2, dst, dst);
  DPowKernel<T, K, false> k{tb, src1, src2, dst, call};
  run_block_redo<4>(len, k);
  return call.status();
}

// The body of a Powx export; kProducts: the tier multiplies for x = 3 and 4 too.
template <DTier T, int K, bool kProducts>
inline luxStatus run_powx(const DPowTable<K>& tb, const lux64f* src, const lux64f* x, lux64f* dst, int len) {
  X87Guard53 x87;
  RoundNearestGuard sse;
  CallState<lux64f> call(src, src, dst, dst);
  // x is read as bits and kept in memory: a signalling NaN must reach the special
  // table unchanged.
  const uint64_t xb = *reinterpret_cast<const uint64_t*>(x);
  alignas(16) uint64_t xm[2] = {xb, xb};
  if (xb == 0x4000000000000000ull) {
    square(src, dst, len);
  } else if (kProducts && xb == 0x4008000000000000ull) {
    cube(src, dst, len);
  } else if (kProducts && xb == 0x4010000000000000ull) {
    fourth(src, dst, len);
  } else {
    DPowKernel<T, K, true> k{tb, src, reinterpret_cast<const double*>(xm), dst, call};
    const uint64_t mag = xb & 0x7FFFFFFFFFFFFFFFull;
    if (mag == 0 || mag >= 0x7FF0000000000000ull) {
      for (int i = 0; i < len; ++i) k.lane(i);  // ±0, ±Inf, NaN: every lane by the lane routine
    } else {
      run_block_redo<4>(len, k);
    }
  }
  return call.status();
}

}  // namespace lux::pow
