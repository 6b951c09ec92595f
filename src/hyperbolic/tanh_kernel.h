// The mechanics of the Tanh kernels: the row index read off each lane's bit
// pattern, the gathering of two lanes' coefficients, the selection of the
// special lanes, and the block loop.  The arithmetic and the tables stay in
// the units.
//
// tanh is odd: only a = |x| enters the arithmetic and x's sign is ORed into
// the magnitude.  A block holding an infinity or a NaN runs its arithmetic
// with those lanes set to 0 (so that they raise no flag) and then gives them
// their value: 1.0 with x's sign for an infinity, x for a NaN (binary64:
// all its bits; binary32: quieted).  No lane warns.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::tanh {

// Row numbers of four lanes from their 32-bit words (the high words of
// binary64 lanes): W = (word & mask) - base, W < 0 becomes 0 and W above
// clamp becomes clamp, row = W >> shift.
struct RowIndex {
  uint32_t mask, base, clamp;
  int shift;
};

inline __m128i row_numbers(__m128i words, const RowIndex& ix) {
  __m128i w =
      _mm_sub_epi32(_mm_and_si128(words, _mm_set1_epi32(int32_t(ix.mask))), _mm_set1_epi32(int32_t(ix.base)));
  w = _mm_andnot_si128(_mm_srai_epi32(w, 31), w);  // signed: below 0 becomes 0
  const __m128i clamp = _mm_set1_epi32(int32_t(ix.clamp));
  const __m128i over = _mm_cmpgt_epi32(w, clamp);  // now non-negative: unsigned = signed
  w = _mm_or_si128(_mm_and_si128(over, clamp), _mm_andnot_si128(over, w));
  return _mm_srl_epi32(w, _mm_cvtsi32_si128(ix.shift));
}

inline int lane_of(__m128i v, int lane) {
  switch (lane) {
    case 0:
      return _mm_cvtsi128_si32(v);
    case 1:
      return _mm_cvtsi128_si32(_mm_shuffle_epi32(v, _MM_SHUFFLE(1, 1, 1, 1)));
    case 2:
      return _mm_cvtsi128_si32(_mm_shuffle_epi32(v, _MM_SHUFFLE(2, 2, 2, 2)));
    default:
      return _mm_cvtsi128_si32(_mm_shuffle_epi32(v, _MM_SHUFFLE(3, 3, 3, 3)));
  }
}

// Coefficient k of two rows, one per lane.
inline __m128d coef(const double* r0, const double* r1, int k) {
  return _mm_unpacklo_pd(_mm_load_sd(r0 + k), _mm_load_sd(r1 + k));
}

// The block loop of a binary64 tier.  `Tier` gives
//   static __m128d magnitude(__m128d a, const double* row0, const double* row1)
//   static const double* row(int n)
//   static constexpr RowIndex kIndex
template <class Tier>
struct Kernel64 {
  const double* src;
  double* dst;

  static constexpr uint64_t kAbs = 0x7FFFFFFFFFFFFFFF;

  // Two lanes: a and its high words, the arithmetic, the sign.
  static __m128d pair(__m128d x, __m128i rows, int first) {
    const __m128d abs = as_pd(_mm_set1_epi64x(int64_t(kAbs)));
    const __m128d a = _mm_and_pd(x, abs);
    const __m128d m =
        Tier::magnitude(a, Tier::row(lane_of(rows, first)), Tier::row(lane_of(rows, first + 1)));
    return _mm_or_pd(m, _mm_andnot_pd(abs, x));
  }

  // Lanes that are infinite or NaN: all ones in their 64 bits.
  static __m128d special(__m128d x) {
    const __m128i hi =
        _mm_and_si128(_mm_shuffle_epi32(as_int(x), _MM_SHUFFLE(3, 3, 1, 1)), _mm_set1_epi32(0x7FFFFFFF));
    return as_pd(_mm_cmpgt_epi32(hi, _mm_set1_epi32(0x7FEFFFFF)));
  }

  // The selection for the special lanes of a pair: an infinity (zero low
  // word, exponent all ones, fraction zero) gives 1.0 with x's sign, a NaN x.
  static __m128d select(__m128d x, __m128d v, __m128d special_lanes) {
    const __m128d abs = as_pd(_mm_set1_epi64x(int64_t(kAbs)));
    const __m128i inf =
        _mm_cmpeq_epi32(as_int(_mm_and_pd(x, abs)), _mm_set_epi32(0x7FF00000, 0, 0x7FF00000, 0));
    const __m128d is_inf = as_pd(_mm_and_si128(inf, _mm_shuffle_epi32(inf, _MM_SHUFFLE(2, 3, 0, 1))));
    const __m128d one = _mm_or_pd(_mm_set1_pd(1.0), _mm_andnot_pd(abs, x));
    const __m128d sv = _mm_or_pd(_mm_and_pd(is_inf, one), _mm_andnot_pd(is_inf, x));
    return _mm_or_pd(_mm_and_pd(special_lanes, sv), _mm_andnot_pd(special_lanes, v));
  }

  void block(int i) {
    __m128d xa = load2(src + i), xb = load2(src + i + 2);
    const __m128d sa = special(xa), sb = special(xb);
    const bool any = _mm_movemask_pd(_mm_or_pd(sa, sb)) != 0;
    const __m128d ka = xa, kb = xb;
    if (__builtin_expect(any, 0)) {
      xa = _mm_andnot_pd(sa, xa);
      xb = _mm_andnot_pd(sb, xb);
    }
    const __m128i hi = as_int(_mm_shuffle_ps(_mm_castpd_ps(xa), _mm_castpd_ps(xb), _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i rows = row_numbers(hi, Tier::kIndex);
    __m128d ra = pair(xa, rows, 0), rb = pair(xb, rows, 2);
    if (__builtin_expect(any, 0)) {
      ra = select(ka, ra, sa);
      rb = select(kb, rb, sb);
    }
    store2(dst + i, ra);
    store2(dst + i + 2, rb);
  }

  // One lane, in the low half of a pair whose high half repeats it.
  void tail(int i) {
    const __m128d k = _mm_load1_pd(src + i);
    const __m128d s = special(k);
    const __m128d x = _mm_andnot_pd(s, k);
    const __m128i rows = row_numbers(high_words(x), Tier::kIndex);
    store1(dst + i, select(k, pair(x, rows, 0), s));
  }

  static luxStatus run(const double* src, double* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    Kernel64 k{src, dst};
    run_closed<4>(len, k);
    return luxOk;
  }
};

// The block loop of a binary32 tier: the arithmetic in doubles, two lanes at
// a time, one rounding to float at the end.  `Tier` gives
//   static __m128d magnitude(__m128d a, const double* row0, const double* row1)
//   static const double* row(int n)
//   static constexpr RowIndex kIndex
template <class Tier>
struct Kernel32 {
  const float* src;
  float* dst;

  static __m128 quad(__m128 x) {
    const __m128 abs = as_ps(_mm_set1_epi32(0x7FFFFFFF));
    const __m128 a = _mm_and_ps(x, abs);
    const __m128i special = _mm_cmpgt_epi32(as_int(a), _mm_set1_epi32(0x7F7FFFFF));
    const __m128 safe = _mm_andnot_ps(as_ps(special), a);
    const __m128i rows = row_numbers(as_int(safe), Tier::kIndex);
    const __m128d lo =
        Tier::magnitude(_mm_cvtps_pd(safe), Tier::row(lane_of(rows, 0)), Tier::row(lane_of(rows, 1)));
    const __m128d hi = Tier::magnitude(_mm_cvtps_pd(_mm_movehl_ps(safe, safe)), Tier::row(lane_of(rows, 2)),
                                       Tier::row(lane_of(rows, 3)));
    __m128 v = _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi));
    if (__builtin_expect(_mm_movemask_ps(as_ps(special)) != 0, 0)) {
      // An infinity gives 1.0, a NaN itself quieted (its sign comes back below).
      const __m128 inf = as_ps(_mm_cmpeq_epi32(as_int(a), _mm_set1_epi32(0x7F800000)));
      const __m128 sv = _mm_or_ps(_mm_and_ps(inf, _mm_set1_ps(1.0f)), _mm_andnot_ps(inf, _mm_add_ps(a, a)));
      v = _mm_or_ps(_mm_and_ps(as_ps(special), sv), _mm_andnot_ps(as_ps(special), v));
    }
    return _mm_or_ps(v, _mm_andnot_ps(abs, x));
  }

  void block(int i) { store4(dst + i, quad(load4(src + i))); }
  void tail(int i) { store1(dst + i, quad(_mm_load1_ps(src + i))); }

  static luxStatus run(const float* src, float* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    Kernel32 k{src, dst};
    run_closed<4>(len, k);
    return luxOk;
  }
};

// Coefficients k and k + 1 of two rows (k even, rows 16-byte aligned), one
// per lane: two loads for two coefficients.
struct CoefPair {
  __m128d even, odd;
};
inline CoefPair coef2(const double* r0, const double* r1, int k) {
  const __m128d a = _mm_load_pd(r0 + k), b = _mm_load_pd(r1 + k);
  return {_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b)};
}

// Horner's scheme c0 + a (c1 + a (c2 + ... + a cn)) on two lanes' rows.
template <int Degree>
inline __m128d horner(__m128d a, const double* r0, const double* r1) {
  __m128d p;
  int k;
  if constexpr (Degree % 2 == 0) {
    p = coef(r0, r1, Degree);
    k = Degree - 2;
  } else {
    const CoefPair c = coef2(r0, r1, Degree - 1);
    p = _mm_add_pd(c.even, _mm_mul_pd(a, c.odd));
    k = Degree - 3;
  }
  for (; k >= 0; k -= 2) {
    const CoefPair c = coef2(r0, r1, k);
    p = _mm_add_pd(c.odd, _mm_mul_pd(a, p));
    p = _mm_add_pd(c.even, _mm_mul_pd(a, p));
  }
  return p;
}

}  // namespace lux::tanh
