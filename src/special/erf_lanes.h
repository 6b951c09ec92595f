// Mechanics shared by the error-function and normal-distribution units: the
// per-lane table row from an interval key, two-lane gathers of row words,
// lane masks from integer tests on the encodings, selections, the error-free
// splits and sums, and the loop that walks blocks of four lanes.  Numbers
// (keys, bounds, tables) stay in each unit.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::erf {

// Row of an interval key: ((w & mask) - base) >> shift with unsigned
// arithmetic; a key below base takes row 0, one above `last` takes `above`.
inline uint32_t row_index(uint32_t w, uint32_t mask, uint32_t base, int shift, uint32_t last,
                          uint32_t above) {
  const uint32_t k = w & mask;
  if (k < base) return 0;
  const uint32_t i = (k - base) >> shift;
  return i > last ? above : i;
}

// The word at position k of the rows of lane 0 and lane 1.
inline __m128d gather(const double* r0, const double* r1, int k) {
  return _mm_loadh_pd(_mm_load_sd(r0 + k), r1 + k);
}

// High words of a pair as {h0, h1, h0, h1}, for 32-bit compares.
inline __m128i high_pair(__m128d v) { return _mm_shuffle_epi32(as_int(v), _MM_SHUFFLE(3, 1, 3, 1)); }
// The high word of lane `l`.
inline uint32_t high_word(__m128d v, int l) {
  return uint32_t(_mm_cvtsi128_si32(_mm_srli_si128(as_int(v), l == 0 ? 4 : 12)));
}
// The whole encoding of lane `l`.
inline uint64_t lane_bits(__m128d v, int l) {
  alignas(16) uint64_t b[2];
  _mm_store_si128(reinterpret_cast<__m128i*>(b), as_int(v));
  return b[l];
}
// A 32-bit compare result on high_pair() widened to 64-bit lane masks.
inline __m128d wide_mask(__m128i m) { return as_pd(_mm_shuffle_epi32(m, _MM_SHUFFLE(1, 1, 0, 0))); }

// mask ? a : b, lane by lane.
inline __m128d select(__m128d mask, __m128d a, __m128d b) {
  return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b));
}
inline __m128 select(__m128 mask, __m128 a, __m128 b) {
  return _mm_or_ps(_mm_and_ps(mask, a), _mm_andnot_ps(mask, b));
}

// The ordered compares (lt, le, gt, ge) raise invalid on a quiet NaN: they
// are given x with its NaN lanes zeroed, and the NaNs handled by selection.
inline __m128d no_nan(__m128d x) { return _mm_andnot_pd(_mm_cmpunord_pd(x, x), x); }

// Error-free sum (Knuth): s + e = a + b exactly.
inline void two_sum(__m128d a, __m128d b, __m128d& s, __m128d& e) {
  s = _mm_add_pd(a, b);
  const __m128d v = _mm_sub_pd(s, a);
  e = _mm_add_pd(_mm_sub_pd(a, _mm_sub_pd(s, v)), _mm_sub_pd(b, v));
}

// A binary32 block of four lanes as two pairs of doubles, and back with one
// rounding per lane.
inline void widen(__m128 x, __m128d& lo, __m128d& hi) {
  lo = _mm_cvtps_pd(x);
  hi = _mm_cvtps_pd(_mm_movehl_ps(x, x));
}
inline __m128 narrow(__m128d lo, __m128d hi) { return _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi)); }

}  // namespace lux::erf
