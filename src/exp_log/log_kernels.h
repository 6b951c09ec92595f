// Mechanism shared by the real logarithm units (Ln, Log10): the argument
// splits that a tier runs on its own table, the block tests, the scalar
// routines and the export bodies.  Every unit keeps its own table, its
// polynomial and its final sum; the pieces here read only the table fields
// whose names they share (`one`, `frac_mask`, `normal_bias`, `rows`, ...), so
// a Ln and a Log10 unit of one tier run the same steps on different numbers.
//
// A `Unit` names what differs:
//   using Table = ...;                   the unit's constant table
//   using Row = ...;                     one row of Table::rows (tiers with rows)
//   static constexpr uint32_t kNormal*;  the lane routine's positive-normal test
//   static __m128d pair(t, x) / __m128 quad(t, x)   the vector path
//   static void x87(t, x, out)           the FYL2X fallback, where the tier has one
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_frame.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::logs {

// ---------------------------------------------------------------------------
// Statuses of a lane that took FYL2X: zero is a singularity; negatives and
// -Inf (and, in binary64, the NaNs whose high word is 0xFFF00000) a domain
// error.  The stored value is whatever FYL2X gave.

inline void warn_x87_lane(CallState<lux64f>& call, int i, uint32_t hi, uint32_t lo) {
  if (((hi & 0x7FFFFFFF) | lo) == 0)
    call.warn(luxWarnSingularity, i);
  else if (hi - 0x80000000u <= 0x7FF00000u)  // negatives, -Inf, NaNs with high word 0xFFF00000
    call.warn(luxWarnDomain, i);
}

inline void warn_x87_lane(CallState<lux32f>& call, int i, uint32_t b) {
  if ((b & 0x7FFFFFFF) == 0)
    call.warn(luxWarnSingularity, i);
  else if (b - 0x80000000u <= 0x7F800000u)  // negatives and -Inf
    call.warn(luxWarnDomain, i);
}

// High words of the four binary64 lanes of a block.
inline __m128i high_words4(__m128d x0, __m128d x1) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(x0), _mm_castpd_ps(x1), _MM_SHUFFLE(3, 1, 3, 1)));
}

// ---------------------------------------------------------------------------
// Binary64, tiers A26 and A50.  x = 2^e * m, m in [1, 2), e the plain
// exponent; c = 1 + i/256 is m rounded to eight fraction bits (ties up, by
// ORing sticky bits under a 2^44 rounder), d = m - c is exact and r = d*rcp.

template <class Row>
struct DLaSplit {
  const Row& row0;
  const Row& row1;
  __m128d e, r;
  __m128d log_hi() const { return gather2(&row0.log_hi, &row1.log_hi); }
  __m128d log_lo() const { return gather2(&row0.log_lo, &row1.log_lo); }
};

// Row index: top nine fraction bits, rounded half up to eight (0..256).
inline uint32_t d_la_row(uint32_t hi) { return (((hi >> 11) & 0x1FF) + 1) >> 1; }

template <class Row, class Table>
inline DLaSplit<Row> d_la_split(const Table& t, __m128d x) {
  const __m128i hi = high_words(x);
  const Row& row0 = t.rows[d_la_row(word<0>(hi))];
  const Row& row1 = t.rows[d_la_row(word<1>(hi))];
  const __m128d e = _mm_cvtepi32_pd(_mm_sub_epi32(_mm_srli_epi32(hi, 20), _mm_set1_epi32(1023)));
  const __m128d m = _mm_or_pd(_mm_and_pd(x, t.frac_mask.pd()), t.one.pd());
  const __m128d c = _mm_sub_pd(_mm_add_pd(_mm_or_pd(m, t.tie_up.pd()), t.rounder.pd()), t.rounder.pd());
  const __m128d d = _mm_sub_pd(m, c);  // exact
  const __m128d r = _mm_mul_pd(d, gather2(&row0.rcp, &row1.rcp));
  return {row0, row1, e, r};
}

template <class Unit>
struct DLaKernel {
  const lux64f* src;
  lux64f* dst;
  CallState<lux64f>& call;
  const typename Unit::Table& t;

  // Four lanes, tested before anything is computed.
  bool block(int i) {
    const __m128d x0 = load2(src + i), x1 = load2(src + i + 2);
    const __m128i hi = high_words4(x0, x1);
    // Unsigned hi - bias < span, as a signed compare after flipping the sign bits.
    const __m128i flip = _mm_set1_epi32(int32_t(0x80000000));
    const __m128i ok = _mm_cmplt_epi32(_mm_xor_si128(_mm_sub_epi32(hi, t.normal_bias.pi()), flip),
                                       _mm_xor_si128(t.normal_span.pi(), flip));
    if (_mm_movemask_ps(_mm_castsi128_ps(ok)) != 0xF) return false;
    store2(dst + i, Unit::pair(t, x0));
    store2(dst + i + 2, Unit::pair(t, x1));
    return true;
  }

  // One lane.  Positive normal numbers take the vector steps; every other
  // lane takes the unit's FYL2X at the x87's current precision, rounded to
  // binary64 by the store.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    const uint32_t hi = word<1>(as_int(x)), lo = word<0>(as_int(x));
    if (hi - Unit::kNormalBias < Unit::kNormalSpan) {
      store1(dst + i, Unit::pair(t, x));
      return;
    }
    Unit::x87(t, src + i, dst + i);
    warn_x87_lane(call, i, hi, lo);
  }

  // After a failed block, lanes go through the scalar routine only until the
  // remaining count is a multiple of 4; the tail too.
  static luxStatus run(const typename Unit::Table& t, const lux64f* src, lux64f* dst, int len) {
    return run_export<DLaKernel, 4, BlockLoop::kResume>(t, src, dst, len);
  }
};

// ---------------------------------------------------------------------------
// Binary64, tier A53.  Row i (top ten fraction bits rounded to nine) holds
// rcp and -log(rcp) in two words; m is split so that m_hi*rcp - center is
// exact.  The unit gives the center (1 for Ln, K for Log10) and the two words
// of its logarithm of 2; it evaluates its polynomial u(r) itself, and the sum
// runs u + C + w + B, from the smallest term to the largest.  Near 1, where
// the logarithm terms C are zero, r's low part joins the leading sum B.

// Row index: top ten fraction bits of the high word, rounded half up to nine.
inline uint32_t d_ha_row(uint32_t hi) { return (((hi & 0x000FFC00) + 0x00000400) & 0x001FF800) >> 11; }

struct DHaSplit {
  __m128d r, b, c, w;
};

template <class Row, class Table>
inline DHaSplit d_ha_split(const Table& t, __m128d x, __m128d center, __m128d log2_hi, __m128d log2_lo) {
  const __m128i hi = high_words(x);
  const Row& r0 = t.rows[d_ha_row(word<0>(hi))];
  const Row& r1 = t.rows[d_ha_row(word<1>(hi))];
  // e = (hi32 - exp_offset) >> 20, to a double through the high word of 1.5*2^20.
  const __m128i e = _mm_srai_epi32(_mm_sub_epi32(hi, t.exp_offset.pi()), 20);
  const __m128d ef = _mm_sub_pd(
      as_pd(_mm_add_epi32(_mm_unpacklo_epi32(_mm_setzero_si128(), e), t.magic.pi())), t.magic.pd());
  const __m128d m = _mm_or_pd(_mm_and_pd(x, t.frac_mask.pd()), t.one.pd());
  const __m128d mh = _mm_and_pd(m, t.high_mask.pd());
  const __m128d ml = _mm_sub_pd(m, mh);
  const __m128d rcp = gather2(&r0.rcp, &r1.rcp);
  const __m128d log_hi = gather2(&r0.log_hi, &r1.log_hi);
  const __m128d log_lo = gather2(&r0.log_lo, &r1.log_lo);
  const __m128d rh = _mm_sub_pd(_mm_mul_pd(mh, rcp), center);  // exact
  const __m128d rl = _mm_mul_pd(ml, rcp);
  const __m128d r = _mm_add_pd(rl, rh);
  const __m128d a = _mm_add_pd(_mm_mul_pd(ef, log2_hi), log_hi);
  __m128d b = _mm_add_pd(rh, a);
  const __m128d c = _mm_add_pd(_mm_mul_pd(ef, log2_lo), log_lo);
  // Near 1, C = 0: fold rl into the leading sum, and add no separate w.
  const __m128d near = _mm_cmpeq_pd(c, _mm_setzero_pd());
  b = _mm_or_pd(_mm_and_pd(near, _mm_add_pd(b, rl)), _mm_andnot_pd(near, b));
  const __m128d w = _mm_andnot_pd(near, rl);
  return {r, b, c, w};
}

// The sum of a pair; Scaled (a denormal times 2^52) takes the table's
// 52*log(2) off before the leading term.
template <bool Scaled, class Table>
inline __m128d d_ha_sum(const Table& t, const DHaSplit& s, __m128d u) {
  __m128d sum = _mm_add_pd(_mm_add_pd(u, s.c), s.w);
  if constexpr (Scaled) sum = _mm_sub_pd(sum, t.denorm_offset.pd());
  return _mm_add_pd(sum, s.b);
}

template <class Unit>
struct DHaKernel {
  const lux64f* src;
  lux64f* dst;
  CallState<lux64f>& call;
  const typename Unit::Table& t;

  // Four lanes: both pairs pass the test before anything is computed.
  bool block(int i) {
    const __m128d x0 = load2(src + i), x1 = load2(src + i + 2);
    const __m128i hi = high_words4(x0, x1);
    const __m128i ok = _mm_cmplt_epi32(_mm_sub_epi32(hi, t.normal_bias.pi()), t.normal_limit.pi());
    if (_mm_movemask_ps(_mm_castsi128_ps(ok)) != 0xF) return false;
    store2(dst + i, Unit::template pair<false>(t, x0));
    store2(dst + i + 2, Unit::template pair<false>(t, x1));
    return true;
  }

  // One lane, the vector steps for positive normal numbers; no x87.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    const uint32_t hi = word<1>(as_int(x)), lo = word<0>(as_int(x));
    const uint32_t ahi = hi & 0x7FFFFFFF;
    if (int32_t(hi - Unit::kNormalBias) < int32_t(Unit::kNormalLimit)) {
      store1(dst + i, Unit::template pair<false>(t, x));
    } else if (ahi > 0x7FF00000 || (ahi == 0x7FF00000 && lo != 0)) {
      // NaN: stored as it came; the product raises invalid for a signalling one.
      store1(dst + i, x);
      keep(_mm_mul_sd(opaque(x), t.one.pd()));
    } else if (hi == 0x7FF00000) {
      store1(dst + i, t.pos_inf.pd());
    } else if ((ahi | lo) == 0) {
      store1(dst + i, t.neg_inf.pd());
      call.warn(luxWarnSingularity, i);
    } else if (hi & 0x80000000) {
      store1(dst + i, t.domain_nan.pd());
      call.warn(luxWarnDomain, i);
    } else {
      // Positive denormal: x*2^52 is normal and exact; 52*log(2) comes off last.
      store1(dst + i, Unit::template pair<true>(t, _mm_mul_pd(x, t.denorm_scale.pd())));
    }
  }
  void tail(int i) { lane(i); }

  // A failed block runs its four lanes through the scalar routine; so does the tail.
  static luxStatus run(const typename Unit::Table& t, const lux64f* src, lux64f* dst, int len) {
    return run_export<DHaKernel, 4, BlockLoop::kRedo>(t, src, dst, len);
  }
};

// ---------------------------------------------------------------------------
// Binary32, tier A11: no table.  x = 2^n * y with y in [sqrt(2)/2, sqrt(2)):
// the fraction bits decide, by one integer add, whether m = 1.f lies at or
// above sqrt 2, and then y = m/2 and n one more.  z = y - 1 goes into the
// unit's degree-5 polynomial without constant term, and n*log(2) is added
// last.  The arithmetic is the same for every base; only the numbers differ.

template <class Table>
inline __m128 s_poly_quad(const Table& t, __m128 x) {
  const __m128i xb = as_int(x);
  const __m128i f = _mm_and_si128(xb, t.frac_mask.pi());
  const __m128i ex = _mm_and_si128(xb, t.exp_mask.pi());
  const __m128i s = _mm_and_si128(_mm_add_epi32(f, t.sqrt2_carry.pi()), t.one_exp.pi());
  const __m128i ex2 = _mm_add_epi32(ex, s);
  const __m128 z = _mm_sub_ps(as_ps(_mm_or_si128(f, _mm_xor_si128(s, t.half_flip.pi()))), t.half_flip.ps());
  const __m128 n =
      _mm_sub_ps(as_ps(_mm_or_si128(_mm_srli_epi32(ex2, 23), t.int_magic.pi())), t.int_bias.ps());
  __m128 p = _mm_add_ps(_mm_mul_ps(t.a5.ps(), z), t.a4.ps());
  p = _mm_add_ps(_mm_mul_ps(p, z), t.a3.ps());
  p = _mm_add_ps(_mm_mul_ps(p, z), t.a2.ps());
  p = _mm_add_ps(_mm_mul_ps(p, z), t.a1.ps());
  const __m128 q = _mm_mul_ps(p, z);
  return _mm_add_ps(q, _mm_mul_ps(n, t.log2.ps()));
}

// A block with any lane that is not a positive normal number is computed
// lane by lane on the x87, its good lanes too; a tail lane takes the x87
// only when it fails its own test.
template <class Unit>
struct SPolyKernel {
  const lux32f* src;
  lux32f* dst;
  CallState<lux32f>& call;
  const typename Unit::Table& t;

  // Mask of the lanes that fail the test.
  int failing(__m128 x) const {
    const __m128i d = _mm_sub_epi32(as_int(x), t.normal_bias.pi());
    return _mm_movemask_ps(as_ps(_mm_cmpgt_epi32(d, t.normal_limit.pi())));
  }

  // Eight lanes, tested before anything is computed.
  bool block(int i) {
    const __m128 x0 = load4(src + i), x1 = load4(src + i + 4);
    if ((failing(x0) | failing(x1)) != 0) return false;
    store4(dst + i, s_poly_quad(t, x0));
    store4(dst + i + 4, s_poly_quad(t, x1));
    return true;
  }

  // The lane routine, on the x87 only.
  void lane(int i) {
    const uint32_t b = word<0>(as_int(_mm_load_ss(src + i)));
    Unit::x87(t, src + i, dst + i);
    warn_x87_lane(call, i, b);
  }

  // A tail lane takes the polynomial when it passes its own test.
  void tail(int i) {
    const __m128 x = _mm_load1_ps(src + i);
    if (failing(x) == 0)
      store1(dst + i, s_poly_quad(t, x));
    else
      lane(i);
  }

  static luxStatus run(const typename Unit::Table& t, const lux32f* src, lux32f* dst, int len) {
    return run_export<SPolyKernel, 8, BlockLoop::kRedo>(t, src, dst, len);
  }
};

// ---------------------------------------------------------------------------
// Binary32, tier A21.  x = 2^e * m, m in [1, 2), e the plain exponent;
// c = 1 + i/64 is m rounded to six fraction bits (ties up, by an integer add
// and mask), d = m - c is exact and r = d*rcp, one rounding from d/c.

template <class Row>
struct SLaSplit {
  const Row& row0;
  const Row& row1;
  const Row& row2;
  const Row& row3;
  __m128 e, r;
  __m128 log_hi() const { return gather4(&row0.log_hi, &row1.log_hi, &row2.log_hi, &row3.log_hi); }
  __m128 log_lo() const { return gather4(&row0.log_lo, &row1.log_lo, &row2.log_lo, &row3.log_lo); }
};

template <class Row, class Table>
inline SLaSplit<Row> s_la_split(const Table& t, __m128 x) {
  const __m128i xb = as_int(x);
  // Row: top seven fraction bits rounded half up to six (0..64).
  const __m128i i = _mm_srli_epi32(
      _mm_add_epi32(_mm_and_si128(_mm_srli_epi32(xb, 16), t.row_mask.pi()), t.row_half.pi()), 1);
  const Row& row0 = t.rows[word<0>(i)];
  const Row& row1 = t.rows[word<1>(i)];
  const Row& row2 = t.rows[word<2>(i)];
  const Row& row3 = t.rows[word<3>(i)];
  const __m128 e = _mm_cvtepi32_ps(_mm_sub_epi32(_mm_srli_epi32(xb, 23), t.exp_bias.pi()));
  const __m128i mb = _mm_or_si128(_mm_and_si128(xb, t.frac_mask.pi()), t.one.pi());
  const __m128 c = as_ps(_mm_and_si128(_mm_add_epi32(mb, t.round_add.pi()), t.round_mask.pi()));
  const __m128 d = _mm_sub_ps(as_ps(mb), c);  // exact
  const __m128 r = _mm_mul_ps(d, gather4(&row0.rcp, &row1.rcp, &row2.rcp, &row3.rcp));
  return {row0, row1, row2, row3, e, r};
}

template <class Unit>
struct SLaKernel {
  const lux32f* src;
  lux32f* dst;
  CallState<lux32f>& call;
  const typename Unit::Table& t;

  // Four lanes, tested before anything is computed.
  bool block(int i) {
    const __m128 x = load4(src + i);
    const __m128i d = _mm_sub_epi32(as_int(x), t.normal_bias.pi());
    if (_mm_movemask_ps(as_ps(_mm_cmpgt_epi32(d, t.normal_limit.pi()))) != 0) return false;
    store4(dst + i, Unit::quad(t, x));
    return true;
  }

  // One lane.  Positive normal numbers take the vector steps; every other
  // lane, positive denormals too, takes the unit's FYL2X, rounded to binary32
  // by the store.
  void lane(int i) {
    const __m128 x = _mm_load1_ps(src + i);
    const uint32_t b = word<0>(as_int(x));
    if (int32_t(b - Unit::kNormalBias) <= int32_t(Unit::kNormalLimit)) {
      store1(dst + i, Unit::quad(t, x));
      return;
    }
    Unit::x87(t, src + i, dst + i);
    warn_x87_lane(call, i, b);
  }

  // After a failed block, lanes go through the scalar routine until the
  // remaining count is a multiple of 4; the tail too.
  static luxStatus run(const typename Unit::Table& t, const lux32f* src, lux32f* dst, int len) {
    return run_export<SLaKernel, 4, BlockLoop::kResume>(t, src, dst, len);
  }
};

}  // namespace lux::logs
