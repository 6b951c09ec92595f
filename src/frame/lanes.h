// Lane access for the kernels: unaligned block loads and stores, one-lane
// loads for tails, integer views of lanes for the range tests, and a barrier
// that keeps the compiler from folding arithmetic whose side effects (flags,
// quieting of NaNs) are the point.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

namespace lux {

// Caller arrays carry no alignment promise.
inline __m128d load2(const double* p) { return _mm_loadu_pd(p); }
inline void store2(double* p, __m128d v) { _mm_storeu_pd(p, v); }
inline __m128d load1(const double* p) { return _mm_load_sd(p); }  // upper lane 0
inline void store1(double* p, __m128d v) { _mm_store_sd(p, v); }
inline __m128 load4(const float* p) { return _mm_loadu_ps(p); }
inline void store4(float* p, __m128 v) { _mm_storeu_ps(p, v); }
inline __m128 load1(const float* p) { return _mm_load_ss(p); }  // upper lanes 0
inline void store1(float* p, __m128 v) { _mm_store_ss(p, v); }

// Constant rows: every scalar constant of a unit's table stands replicated
// across a 16-byte row, and is read as a full vector.
struct alignas(16) Row64 {
  uint64_t v[2];
  __m128d pd() const { return _mm_load_pd(reinterpret_cast<const double*>(v)); }
  __m128i pi() const { return _mm_load_si128(reinterpret_cast<const __m128i*>(v)); }
};
struct alignas(16) Row32 {
  uint32_t v[4];
  __m128 ps() const { return _mm_load_ps(reinterpret_cast<const float*>(v)); }
  __m128i pi() const { return _mm_load_si128(reinterpret_cast<const __m128i*>(v)); }
};
constexpr Row64 row64(uint64_t bits) { return Row64{{bits, bits}}; }
constexpr Row32 row32(uint32_t bits) { return Row32{{bits, bits, bits, bits}}; }

inline __m128i as_int(__m128d v) { return _mm_castpd_si128(v); }
inline __m128i as_int(__m128 v) { return _mm_castps_si128(v); }
inline __m128d as_pd(__m128i v) { return _mm_castsi128_pd(v); }
inline __m128 as_ps(__m128i v) { return _mm_castsi128_ps(v); }

// The high 32-bit words of two binary64 lanes, in the two low int32 lanes.
inline __m128i high_words(__m128d v) { return _mm_shuffle_epi32(as_int(v), _MM_SHUFFLE(3, 1, 3, 1)); }

// Range test on integer words: lane passes when (word & 0x7FFFFFFF) - bound
// is negative.  The sign bits of all lanes are ANDed: true when every lane
// of the group passes.  For binary64 lanes pass their high words.
inline bool all_below(__m128i words, uint32_t bound, int lanes) {
  const __m128i abs = _mm_and_si128(words, _mm_set1_epi32(0x7FFFFFFF));
  const __m128i d = _mm_sub_epi32(abs, _mm_set1_epi32(int32_t(bound)));
  const int mask = _mm_movemask_ps(_mm_castsi128_ps(d)) & ((1 << lanes) - 1);
  return mask == (1 << lanes) - 1;
}

// Hides a value's origin from the optimiser so the operation it feeds is
// really carried out (a product by 1.0 that quiets a NaN, an overflow that
// raises a flag).
inline __m128d opaque(__m128d v) {
  asm volatile("" : "+x"(v));
  return v;
}
inline __m128 opaque(__m128 v) {
  asm volatile("" : "+x"(v));
  return v;
}

}  // namespace lux
