// -sqrt(w) as head and tail without a square-root instruction, for the
// binary64 inverse sine and cosine at full accuracy.
//
// Seed: the top 23 fraction bits of w under an exponent of 0 or 1 (by the
// parity of w's exponent) make a single v in [1, 4); its 12-bit estimate f
// of 1/sqrt(v), moved into a double's high word with the exponent halved and
// negated, is y near 1/sqrt(w) with a 21-bit significand.  With w = wh + wl
// (wh: the high word) and e = w y^2 - 1, |e| < 2^-11:
//   1/sqrt(w) = y (1 + p),  p = -e/2 + 3e^2/8 - 5e^3/16 + 35e^4/128 - 63e^5/256
// to 2^-66, and -sqrt(w) = -y w (1 + p) = Hd + Tl with Hd = wh (-y), exact
// (21 by 22 bits), and Tl = (p (-y)) w + wl (-y).
// w = 0 gives a finite y and Hd = Tl = 0; the callers select other values
// for those lanes anyway.
#pragma once

#include <pmmintrin.h>

#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux {

struct RootSeries64 {
  Row64 c5, c4, c3, c2, c1;  // -63/256, 35/128, -5/16, 3/8, -1/2
  Row64 fraction_mask;       // 0x00FFFFFF: fraction and lowest exponent bit
  Row64 parity_flip;         // 0x00800000
  Row64 one_bits;            // 0x3F800000
  Row64 exp_rebias;          // 0x57F00000
  Row64 exp_unit;            // 0x00100000
  Row64 exp_even_mask;       // 0xFFE00000
  Row64 high_word_mask;      // keeps the high word of a double
  Row64 dbOne;
};

inline constexpr RootSeries64 kRootSeries64 = {
    row64(0xBFCF800000000000),  // -63/256
    row64(0x3FD1800000000000),  // 35/128
    row64(0xBFD4000000000000),  // -5/16
    row64(0x3FD8000000000000),  // 3/8
    row64(0xBFE0000000000000),  // -1/2
    row64(0x0000000000FFFFFF), row64(0x0000000000800000), row64(0x000000003F800000),
    row64(0x57F0000057F00000), row64(0x0010000000100000), row64(0xFFE00000FFE00000),
    row64(0xFFFFFFFF00000000), row64(0x3FF0000000000000),
};

inline void minus_root_head_tail(__m128d w, const RootSeries64& R, __m128d* hd, __m128d* tl) {
  // v: bits 29..60 of w, masked, the exponent parity flipped, rebased to 1.
  __m128i v = _mm_srli_epi64(as_int(w), 29);
  v = _mm_and_si128(v, R.fraction_mask.pi());
  v = _mm_xor_si128(v, R.parity_flip.pi());
  v = _mm_add_epi32(v, R.one_bits.pi());
  const __m128 v2 = as_ps(_mm_shuffle_epi32(v, _MM_SHUFFLE(2, 0, 2, 0)));
  const __m128i f = as_int(_mm_rsqrt_ps(v2));  // lanes 0, 1
  const __m128i h = high_words(w);             // lanes 0, 1
  const __m128i ex =
      _mm_srli_epi32(_mm_and_si128(_mm_sub_epi32(h, R.exp_unit.pi()), R.exp_even_mask.pi()), 1);
  const __m128i yh = _mm_sub_epi32(_mm_add_epi32(_mm_srli_epi32(f, 3), R.exp_rebias.pi()), ex);
  const __m128d y = as_pd(_mm_unpacklo_epi32(_mm_setzero_si128(), yh));
  const __m128d wh = _mm_and_pd(w, as_pd(R.high_word_mask.pi()));
  const __m128d wl = _mm_sub_pd(w, wh);
  const __m128d y2 = _mm_mul_pd(y, y);
  const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(wh, y2), R.dbOne.pd()), _mm_mul_pd(wl, y2));
  const __m128d p = _mm_mul_pd(sincos::horner(e, R.c5, R.c4, R.c3, R.c2, R.c1), e);
  const __m128d m = _mm_xor_pd(y, _mm_set1_pd(-0.0));
  *hd = _mm_mul_pd(wh, m);
  *tl = _mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, m), w), _mm_mul_pd(wl, m));
}

}  // namespace lux
