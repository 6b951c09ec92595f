// Integer mechanics shared by the binary64 Exp units: reading N out of a
// shifter sum, turning it into an exponent field, the block's range test and
// raw lane stores.  Numbers (bounds, biases, tables) stay in each unit.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/lanes.h"

namespace lux::dexp {

// After t = x*R + 1.5*2^52 the low 32 bits of t's encoding hold N, the
// nearest integer to x*R, as a two's-complement integer.
inline int32_t shifter_low_word(__m128d t, int lane) {
  const __m128i w = as_int(t);
  return _mm_cvtsi128_si32(lane == 0 ? w : _mm_shuffle_epi32(w, _MM_SHUFFLE(3, 2, 3, 2)));
}

// 2^k as an exponent field, from the shifter sum: adding bias = 1023*2^m to
// the low word (a 32-bit add, so no carry reaches the high word) puts k + 1023
// in bits m..m+10; a left shift by 52 - m moves them into the exponent field
// and the mask drops j and everything above.  `n` is the biased sum.
template <int Shift>
inline __m128i exponent_field(__m128i n, __m128i exponent_mask) {
  return _mm_and_si128(_mm_slli_epi64(n, Shift), exponent_mask);
}

// High words of the four lanes of a block, for the one branch per block.
inline __m128i high_words(__m128d a, __m128d b) {
  return as_int(_mm_shuffle_ps(_mm_castpd_ps(a), _mm_castpd_ps(b), _MM_SHUFFLE(3, 1, 3, 1)));
}

// High and low words of one lane (the low lane of v).
inline uint32_t high_word(__m128d v) { return uint32_t(_mm_cvtsi128_si32(_mm_srli_epi64(as_int(v), 32))); }
inline uint32_t low_word(__m128d v) { return uint32_t(_mm_cvtsi128_si32(as_int(v))); }

// Stores a result given as its bit pattern, without passing through a
// floating-point register.
inline void store_bits(double* p, uint64_t bits) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_set_epi64x(0, int64_t(bits)));
}

}  // namespace lux::dexp
