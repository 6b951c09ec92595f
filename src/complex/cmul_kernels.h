// Complex products and quotients: a = p + iq, b = c + id.
//
//   Mul        (pc - qd) + i(pd + qc)
//   MulByConj  (pc + qd) + i(qc - pd)      = Mul(a, conj b), the negation exact
//   Div        ((pc + qd) + i(qc - pd)) / (c^2 + d^2)
//
// No special-value logic: infinities and NaNs go through the arithmetic and
// no call warns.  The tiers differ only in the arithmetic:
//   - the lowest tiers are the formula in the component format;
//   - binary32 A21/A24 widen to the x87 unit at 53 bits, where the products
//     are exact, and narrow once;
//   - binary64 A50/A53 compute each two-term sum from exact products with a
//     compensated addition (form A, SSE, for components between 2^-484 and
//     2^511), the same in x87 extended with Veltkamp splits (form B, any
//     other finite nonzero components), or the formula in extended (form C,
//     a zero, infinite or NaN component).
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::cplx {

enum class Op { kMul, kMulByConj, kDiv };

// ---------------------------------------------------------------------------
// The formula in the component format, two binary32 lanes or one binary64
// lane in a vector, (re, im) pairs.

// a b with b's parts duplicated and an alternating subtract-add:
// (p c - q d, q c + p d).
inline __m128 mul_ps(__m128 a, __m128 b) {
  const __m128 c = _mm_moveldup_ps(b), d = _mm_movehdup_ps(b);
  const __m128 swapped = _mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1));
  return _mm_addsub_ps(_mm_mul_ps(a, c), _mm_mul_ps(swapped, d));
}
inline __m128d mul_pd(__m128d a, __m128d b) {
  const __m128d c = _mm_movedup_pd(b), d = _mm_unpackhi_pd(b, b);
  const __m128d swapped = _mm_shuffle_pd(a, a, 1);
  return _mm_addsub_pd(_mm_mul_pd(a, c), _mm_mul_pd(swapped, d));
}

// 1/(c c + d d) lane by lane.
inline __m128 recip_norm_ps(__m128 c, __m128 d) {
  return _mm_div_ps(_mm_set1_ps(1.0f), _mm_add_ps(_mm_mul_ps(c, c), _mm_mul_ps(d, d)));
}
inline __m128d recip_norm_pd(__m128d c, __m128d d) {
  return _mm_div_pd(_mm_set1_pd(1.0), _mm_add_pd(_mm_mul_pd(c, c), _mm_mul_pd(d, d)));
}

// ---------------------------------------------------------------------------
// x87 forms.  `ld` parts; the caller's guard sets the precision (53 for the
// widened binary32 tiers, 64 for forms B and C).

using ld = long double;

struct LdPair {
  ld re, im;
};

// The formula (form C, and the widened binary32 tiers).
template <Op K>
inline LdPair formula_x87(ld p, ld q, ld c, ld d) {
  if constexpr (K == Op::kMul) return {p * c - q * d, p * d + q * c};
  if constexpr (K == Op::kMulByConj) return {p * c + q * d, q * c - p * d};
  const ld r = 1.0L / (c * c + d * d);
  return {(p * c + q * d) * r, (q * c - p * d) * r};
}

// ---------------------------------------------------------------------------
// The high tier of binary64, form A: exact products by 26-bit splits,
// compensated sums.  Two lanes in a vector.

struct HighTab {
  uint64_t high26_mask[2];  // dbHigh26Mask: keeps the top 26 significand bits
  uint64_t abs_mask[2];     // dbAbsMask
  uint64_t one[2];          // dbOne
  uint64_t neg_one[2];      // dbNegOne
};
alignas(16) inline constexpr HighTab kHigh = {
    .high26_mask = {0xFFFFFFFFF8000000ull, 0xFFFFFFFFF8000000ull},
    .abs_mask = {0x7FFFFFFFFFFFFFFFull, 0x7FFFFFFFFFFFFFFFull},
    .one = {0x3FF0000000000000ull, 0x3FF0000000000000ull},
    .neg_one = {0xBFF0000000000000ull, 0xBFF0000000000000ull},
};
inline __m128d row(const uint64_t (&r)[2]) { return _mm_load_pd(reinterpret_cast<const double*>(r)); }

// Form A's range test on the high words: |component| from 2^-484 to below
// 2^511, where no product, split part or error term overflows or underflows.
inline constexpr uint32_t kFormASub = 0xA1B00000u;          // flSub
inline constexpr int32_t kFormACmp = int32_t(0xBE300000u);  // flCmp

// A divisor's components stop one binade lower, below 2^510: from there
// 1/(c^2 + d^2) would be subnormal and lose the bits the quotient needs.
inline constexpr int32_t kFormACmpDivisor = int32_t(0xBE200000u);

inline bool form_a_word(uint64_t bits, int32_t cmp = kFormACmp) {
  const uint32_t hw = uint32_t(bits >> 32) & 0x7FFFFFFFu;
  return int32_t(hw - kFormASub) <= cmp;
}
// All four components of a lane (a's two, then b's) qualify for form A.
template <Op K>
inline bool form_a_lane(const uint64_t* w) {
  constexpr int32_t divisor_cmp = K == Op::kDiv ? kFormACmpDivisor : kFormACmp;
  return form_a_word(w[0]) && form_a_word(w[1]) && form_a_word(w[2], divisor_cmp) &&
         form_a_word(w[3], divisor_cmp);
}

inline __m128d split_high(__m128d v) { return _mm_and_pd(v, row(kHigh.high26_mask)); }

// Veltkamp's split by 2^27 + 1: a head and a signed tail of 26 bits each,
// so that every partial product of two split factors is exact.  (A mask
// leaves a 27-bit tail, whose square can round: in a sum that cancels to
// the products' last bits that rounding is a whole ulp of the result.)
inline __m128d veltkamp_high(__m128d x) {
  const __m128d t = _mm_mul_pd(x, _mm_set1_pd(134217729.0));
  return _mm_sub_pd(t, _mm_sub_pd(t, x));
}

// The exact error of the rounded product big = u v: big + e = u v.
inline __m128d product_error(__m128d u, __m128d v, __m128d big) {
  const __m128d uh = veltkamp_high(u), ul = _mm_sub_pd(u, uh);
  const __m128d vh = veltkamp_high(v), vl = _mm_sub_pd(v, vh);
  __m128d e = _mm_sub_pd(_mm_mul_pd(uh, vh), big);
  e = _mm_add_pd(e, _mm_mul_pd(uh, vl));
  e = _mm_add_pd(e, _mm_mul_pd(ul, vh));
  return _mm_add_pd(e, _mm_mul_pd(ul, vl));
}

// u1 v1 + u2 v2 as a head s and a tail: the larger product first (chosen per
// lane by masks), its error, the other's, and the error of the sum.
struct TwoTerm {
  __m128d head, tail;
};
inline TwoTerm two_term_sum(__m128d u1, __m128d v1, __m128d u2, __m128d v2) {
  const __m128d t1 = _mm_mul_pd(u1, v1), t2 = _mm_mul_pd(u2, v2);
  const __m128d abs = row(kHigh.abs_mask);
  const __m128d first_big = _mm_cmpge_pd(_mm_and_pd(t1, abs), _mm_and_pd(t2, abs));
  const auto pick = [first_big](__m128d a, __m128d b) {
    return _mm_or_pd(_mm_and_pd(first_big, a), _mm_andnot_pd(first_big, b));
  };
  const __m128d big = pick(t1, t2), small = pick(t2, t1);
  const __m128d bu = pick(u1, u2), bv = pick(v1, v2), su = pick(u2, u1), sv = pick(v2, v1);
  const __m128d e_big = product_error(bu, bv, big);
  const __m128d e_small = product_error(su, sv, small);
  const __m128d s = _mm_add_pd(big, small);
  const __m128d e_sum = _mm_add_pd(_mm_sub_pd(big, s), small);
  return {s, _mm_add_pd(_mm_add_pd(e_small, e_big), e_sum)};
}

// u1 v1 + u2 v2 as a normalised head and tail good to about 2^-100 of the
// sum, however much its terms cancel: the four exact parts (two rounded
// products and their errors) gathered by error-free additions.
inline __m128d sum_error(__m128d a, __m128d b, __m128d s) {
  const __m128d bb = _mm_sub_pd(s, a);
  return _mm_add_pd(_mm_sub_pd(a, _mm_sub_pd(s, bb)), _mm_sub_pd(b, bb));
}
inline TwoTerm exact_two_term_sum(__m128d u1, __m128d v1, __m128d u2, __m128d v2) {
  const __m128d t1 = _mm_mul_pd(u1, v1), t2 = _mm_mul_pd(u2, v2);
  const __m128d e1 = product_error(u1, v1, t1), e2 = product_error(u2, v2, t2);
  const __m128d s = _mm_add_pd(t1, t2), es = sum_error(t1, t2, s);
  const __m128d a1 = _mm_add_pd(s, e1), b1 = sum_error(s, e1, a1);
  const __m128d a2 = _mm_add_pd(a1, e2), b2 = sum_error(a1, e2, a2);
  const __m128d low = _mm_add_pd(_mm_add_pd(b1, b2), es);
  const __m128d head = _mm_add_pd(a2, low);
  return {head, _mm_sub_pd(low, _mm_sub_pd(head, a2))};
}

// Form A on two lanes whose parts stand as vectors (p0, p1), (q0, q1), ...
template <Op K>
inline void form_a(__m128d p, __m128d q, __m128d c, __m128d d, __m128d* re, __m128d* im) {
  const __m128d neg = row(kHigh.neg_one);
  if constexpr (K == Op::kMul || K == Op::kMulByConj) {
    // MulByConj is Mul with d negated; the negation is exact.
    if constexpr (K == Op::kMulByConj) d = _mm_mul_pd(d, neg);
    const TwoTerm r = two_term_sum(p, c, _mm_mul_pd(q, neg), d);
    const TwoTerm i = two_term_sum(p, d, q, c);
    *re = _mm_add_pd(r.head, r.tail);
    *im = _mm_add_pd(i.head, i.tail);
  } else {
    const __m128d abs = row(kHigh.abs_mask), one = row(kHigh.one);
    const __m128d ac = _mm_and_pd(c, abs), ad = _mm_and_pd(d, abs);
    const __m128d M = _mm_max_pd(ac, ad), m = _mm_min_pd(ac, ad);
    const __m128d Mh = split_high(M), mh = split_high(m);
    const __m128d Mh2 = _mm_mul_pd(Mh, Mh), mh2 = _mm_mul_pd(mh, mh);
    const __m128d S = _mm_add_pd(Mh2, mh2);
    __m128d E = _mm_sub_pd(mh2, _mm_sub_pd(S, Mh2));
    E = _mm_add_pd(E, _mm_mul_pd(_mm_sub_pd(M, Mh), _mm_add_pd(M, Mh)));
    E = _mm_add_pd(E, _mm_mul_pd(_mm_sub_pd(m, mh), _mm_add_pd(m, mh)));
    // 1/(S + E) = r + r1.  The residual 1 - S r is formed from the 26-bit
    // halves of S and r, whose products are exact: with one rounded product
    // the correction would be no better than r itself.
    const __m128d r = _mm_div_pd(one, S);
    const __m128d rh = split_high(r), rl = _mm_sub_pd(r, rh);
    const __m128d Sh = split_high(S), Sl = _mm_sub_pd(S, Sh);
    __m128d t = _mm_sub_pd(one, _mm_mul_pd(Sh, rh));
    t = _mm_sub_pd(t, _mm_mul_pd(Sh, rl));
    t = _mm_sub_pd(t, _mm_mul_pd(Sl, rh));
    t = _mm_sub_pd(t, _mm_mul_pd(Sl, rl));
    t = _mm_sub_pd(t, _mm_mul_pd(E, r));
    const __m128d r1 = _mm_mul_pd(_mm_mul_pd(_mm_add_pd(one, t), t), r);
    // The numerators exactly enough that a part cancelling to a few of its
    // terms' ulps still comes out to its last bits.
    const TwoTerm nre = exact_two_term_sum(p, c, q, d);
    const TwoTerm nim = exact_two_term_sum(q, c, _mm_mul_pd(p, neg), d);
    // (Nh + NL)(r + r1) with the leading product rh Nh exact: the result
    // rounds once, in the last addition.
    const auto quotient = [r, rh, rl, r1](const TwoTerm& n) {
      const __m128d Nh = split_high(n.head);
      const __m128d NL = _mm_add_pd(_mm_sub_pd(n.head, Nh), n.tail);
      const __m128d small = _mm_add_pd(_mm_add_pd(_mm_mul_pd(rl, Nh), _mm_mul_pd(r, NL)),
                                       _mm_add_pd(_mm_mul_pd(Nh, r1), _mm_mul_pd(NL, r1)));
      return _mm_add_pd(_mm_mul_pd(rh, Nh), small);
    };
    *re = quotient(nre);
    *im = quotient(nim);
  }
}

// Form B: the same steps in x87 extended, factors split by Veltkamp with
// 2^33 + 1 (32-bit halves, exact products), sums as two-sum pairs.
inline ld veltkamp_high_x87(ld x) {
  const ld s = x * 8589934593.0L;  // _LD_CONSTS, 2^33 + 1
  return s - (s - x);
}
struct LdSum {
  ld head, tail;
};
inline LdSum exact_product(ld u, ld v) {
  const ld big = u * v;
  const ld uh = veltkamp_high_x87(u), ul = u - uh;
  const ld vh = veltkamp_high_x87(v), vl = v - vh;
  return {big, (((uh * vh - big) + uh * vl) + ul * vh) + ul * vl};
}
inline LdSum two_sum(ld a, ld b) {
  const ld s = a + b;
  const ld bb = s - a;
  return {s, (a - (s - bb)) + (b - bb)};
}
// u1 v1 + u2 v2 collapsed into one extended value.
inline ld two_term_x87(ld u1, ld v1, ld u2, ld v2) {
  const LdSum a = exact_product(u1, v1), b = exact_product(u2, v2);
  const LdSum s = two_sum(a.head, b.head);
  return s.head + ((b.tail + a.tail) + s.tail);
}
template <Op K>
inline LdPair form_b(ld p, ld q, ld c, ld d) {
  if constexpr (K == Op::kMulByConj) d = -d;
  if constexpr (K != Op::kDiv) return {two_term_x87(p, c, -q, d), two_term_x87(p, d, q, c)};
  const ld r = 1.0L / (c * c + d * d);
  return {two_term_x87(p, c, q, d) * r, two_term_x87(q, c, -p, d) * r};
}

// One lane of the high tier: form A alone in both halves of a vector, form B
// for finite nonzero components, form C otherwise.  Stored as binary64.
template <Op K>
inline void high_lane(const double* a, const double* b, double* out) {
  const double p = a[0], q = a[1], c = b[0], d = b[1];
  uint64_t w[4];
  __builtin_memcpy(&w[0], &a[0], 16);
  __builtin_memcpy(&w[2], &b[0], 16);
  if (form_a_lane<K>(w)) {
    __m128d re, im;
    form_a<K>(_mm_set1_pd(p), _mm_set1_pd(q), _mm_set1_pd(c), _mm_set1_pd(d), &re, &im);
    _mm_storel_pd(out, re);
    _mm_storel_pd(out + 1, im);
    return;
  }
  bool regular = true;
  for (const uint64_t x : w)
    regular = regular && (x & 0x7FFFFFFFFFFFFFFFull) != 0 && ((x >> 52) & 0x7FF) != 0x7FF;
  const LdPair r = regular ? form_b<K>(p, q, c, d) : formula_x87<K>(p, q, c, d);
  // Stored through memory: an extended value rounds once to binary64.
  volatile double re = double(r.re), im = double(r.im);
  out[0] = re;
  out[1] = im;
}

}  // namespace lux::cplx
