// The arithmetic of luxsAsinh_32f_A24 and luxsAcosh_32f_A24, written once;
// each unit includes this file and carries its own copy of the table.
//
// Vector path (every lane of a block from 4.0, finite): the logarithm of
// w = sqrt(x^2 +- 1) + |x| in floats, without a table.  From 1e19 on, where
// x^2 would overflow, w = |x| and ln 2 is added last.  w = 2^e * m with m in
// [sqrt(2)/2, sqrt(2)), z = m - 1, s = z/(2 + z) from the 12-bit reciprocal
// estimate with one Newton step, and ln(1 + z) = z - s (z - R(s)), R of
// degree 3 in s^2; e ln 2 is added in two words, the low one first.
//
// Scalar path (every lane of a block that holds one lane below 4.0 or not
// finite, and the tail): below 4.0 the logarithm runs in doubles on a table
// of cubics: row i (the top 8 fraction bits of m) is a cubic in m for ln m
// on its interval, so the float result keeps its accuracy down to w near 1.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::as_int;
using lux::as_ps;
using lux::row32;
using lux::Row32;
using lux::row64;
using lux::Row64;
using lux::invhyp::select;

// Vector path: bits from 0x40800000 (4.0) below 0x7F800000.
constexpr uint32_t kVectorFrom = 0x40800000;
constexpr uint32_t kVectorSpan = 0x7F800000 - kVectorFrom;

struct CubicRow {
  uint64_t k0, k1, k2, k3;
};

struct alignas(16) InvHypHaTable {
  Row32 abs_mask, sign_mask, one, two, huge_above, ln2;
  Row32 r1, r2, r3;
  Row32 ln2_hi, ln2_lo;
  Row64 db_one, db_ln2;
  CubicRow rows[256];  // row i: ln m on m in [1 + i/256, 1 + (i+1)/256)
};

constexpr InvHypHaTable kTable = {
    .abs_mask = row32(0x7FFFFFFF),
    .sign_mask = row32(0x80000000),
    .one = row32(0x3F800000),
    .two = row32(0x40000000),
    .huge_above = row32(0x5F0AC723),  // 1e19
    .ln2 = row32(0x3F317218),         // 0.693147182
    // (ln(1 + z) - 2s)/s ~ R(s), s = z/(2 + z).
    .r1 = row32(0x3F2AAABD),      // 0.6666677594184875
    .r2 = row32(0x3ECCAF68),      // 0.39977574348449707
    .r3 = row32(0x3E98F06F),      // 0.29870936274528503
    .ln2_hi = row32(0x3F310000),  // 0.69140625
    .ln2_lo = row32(0x3AE42FF0),  // 0.0017409306019544601
    .db_one = row64(0x3FF0000000000000),
    .db_ln2 = row64(0x3FE62E42FEFA39EF),  // 0.6931471805599453
    .rows =
        {
#include "hyperbolic/invhyp_ln_cubic_table.inc"
        },
};

// ln(w) of a positive normal w in floats; huge_b is ln 2 where w stands for
// 2|x|, else 0.
inline __m128 ln_float(const InvHypHaTable& t, __m128 w, __m128 huge_b) {
  const lux::invhyp::SplitF sp = lux::invhyp::split_sqrt2(w, 0x004AFB10);
  const __m128 z = _mm_sub_ps(sp.m, t.one.ps());
  const __m128 dn = _mm_add_ps(t.two.ps(), z);
  const __m128 g = _mm_rcp_ps(dn);
  const __m128 s = _mm_mul_ps(_mm_mul_ps(g, z), _mm_sub_ps(t.two.ps(), _mm_mul_ps(dn, g)));
  const __m128 s2 = _mm_mul_ps(s, s);
  const __m128 s4 = _mm_mul_ps(s2, s2);
  const __m128 r =
      _mm_add_ps(_mm_mul_ps(s2, _mm_add_ps(_mm_mul_ps(t.r3.ps(), s4), t.r1.ps())), _mm_mul_ps(s4, t.r2.ps()));
  __m128 res = _mm_mul_ps(s, _mm_sub_ps(r, z));
  res = _mm_add_ps(res, _mm_mul_ps(t.ln2_lo.ps(), sp.e));
  res = _mm_add_ps(res, z);
  res = _mm_add_ps(res, _mm_mul_ps(t.ln2_hi.ps(), sp.e));
  return _mm_add_ps(res, huge_b);
}

// Four lanes of the vector path; Minus: sqrt(x^2 - 1) (Acosh, no sign).
template <bool Minus>
inline __m128 invhyp_quad(const InvHypHaTable& t, __m128 x) {
  const __m128 a = _mm_and_ps(x, t.abs_mask.ps());
  const __m128 huge = as_ps(_mm_cmpgt_epi32(as_int(a), t.huge_above.pi()));
  const __m128 as = select(huge, t.two.ps(), a);  // keeps a^2 from overflowing
  const __m128 sq =
      Minus ? _mm_sub_ps(_mm_mul_ps(as, as), t.one.ps()) : _mm_add_ps(_mm_mul_ps(as, as), t.one.ps());
  const __m128 w = select(huge, a, _mm_add_ps(_mm_sqrt_ps(sq), as));
  const __m128 res = ln_float(t, w, _mm_and_ps(huge, t.ln2.ps()));
  return Minus ? res : _mm_or_ps(res, _mm_and_ps(x, t.sign_mask.ps()));
}

// The double path of the scalar routine: ln of w = sqrt(a^2 +- 1) + a for
// a float a in [1, 4], rounded once to float, with `sign` ORed in.
template <bool Minus>
inline void cubic_path(const InvHypHaTable& t, const float* x, float* out, uint32_t sign) {
  const __m128d a = _mm_and_pd(_mm_cvtss_sd(_mm_setzero_pd(), _mm_and_ps(_mm_load_ss(x), t.abs_mask.ps())),
                               _mm_castsi128_pd(_mm_set1_epi64x(0x7FFFFFFFFFFFFFFFll)));
  const __m128d sq =
      Minus ? _mm_sub_sd(_mm_mul_sd(a, a), t.db_one.pd()) : _mm_add_sd(_mm_mul_sd(a, a), t.db_one.pd());
  const __m128d w = _mm_add_sd(_mm_sqrt_sd(sq, sq), a);
  const uint32_t hi = uint32_t(_mm_cvtsi128_si32(_mm_srli_epi64(_mm_castpd_si128(w), 32)));
  const CubicRow& row = t.rows[(hi >> 12) & 0xFF];
  const __m128d e = _mm_cvtsi32_sd(_mm_setzero_pd(), int(hi >> 20) - 1023);
  const __m128d m = lux::invhyp::mantissa_pd(w);
  __m128d c = _mm_add_sd(_mm_mul_sd(lux::invhyp::as_sd(row.k3), m), lux::invhyp::as_sd(row.k2));
  c = _mm_add_sd(_mm_mul_sd(c, m), lux::invhyp::as_sd(row.k1));
  c = _mm_add_sd(_mm_mul_sd(c, m), lux::invhyp::as_sd(row.k0));
  const __m128 r = _mm_cvtsd_ss(_mm_setzero_ps(), _mm_add_sd(_mm_mul_sd(e, t.db_ln2.pd()), c));
  lux::store1(out, _mm_or_ps(r, as_ps(_mm_cvtsi32_si128(int(sign)))));
}

inline bool vector_lanes(__m128i b0, __m128i b1) {
  return lux::invhyp::all_within(b0, kVectorFrom, kVectorSpan) &&
         lux::invhyp::all_within(b1, kVectorFrom, kVectorSpan);
}

}  // namespace
