// The loops of the exact element-wise families (Add, Sub, Mul, Sqr, Abs,
// Conj): no guard, no lane test, no status, every operation under the
// caller's MXCSR.  The units supply only their operation; what lives here is
// how the arrays are walked.
//
// IEEE arithmetic gives the same bits whether an operation runs on one lane
// (addss) or on four (addps), under every rounding mode and flush-to-zero
// setting, so the short-array loop, the peel, the vector loop and the rest
// agree lane for lane.  The path only matters when arrays overlap: then the
// plain ascending loop runs and each lane sees what the lanes before it
// stored.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"

namespace lux::arith {

// ---------------------------------------------------------------------------
// Lane access by element type.  Single lanes move through integer loads and
// stores that tolerate any byte address, so a result array that is not even
// element-aligned works, and a signalling NaN is never copied through the x87
// unit.

template <class T>
struct Vec;

template <>
struct Vec<float> {
  using V = __m128;
  static constexpr int kLanes = 4;
  static V load(const float* p) { return _mm_loadu_ps(p); }
  static V load_aligned(const float* p) { return _mm_load_ps(p); }
  static void store(float* p, V v) { _mm_storeu_ps(p, v); }
  static void store_aligned(float* p, V v) { _mm_store_ps(p, v); }
  static V load_lane(const float* p) { return _mm_castsi128_ps(_mm_loadu_si32(p)); }
  static void store_lane(float* p, V v) { _mm_storeu_si32(p, _mm_castps_si128(v)); }
};

template <>
struct Vec<double> {
  using V = __m128d;
  static constexpr int kLanes = 2;
  static V load(const double* p) { return _mm_loadu_pd(p); }
  static V load_aligned(const double* p) { return _mm_load_pd(p); }
  static void store(double* p, V v) { _mm_storeu_pd(p, v); }
  static void store_aligned(double* p, V v) { _mm_store_pd(p, v); }
  static V load_lane(const double* p) { return _mm_castsi128_pd(_mm_loadu_si64(p)); }
  static void store_lane(double* p, V v) { _mm_storeu_si64(p, _mm_castpd_si128(v)); }
};

inline bool aligned16(const void* p) { return (reinterpret_cast<uintptr_t>(p) & 15) == 0; }

// Two arrays of `bytes` bytes each are clear of each other when the distance
// between their bases exceeds the length; equal bases are not clear.
inline bool clear_of(const void* dst, const void* src, uint64_t bytes) {
  const uintptr_t d = reinterpret_cast<uintptr_t>(dst), s = reinterpret_cast<uintptr_t>(src);
  if (d > s) return bytes < d - s;
  if (s > d) return bytes < s - d;
  return false;
}

// Lanes to run one at a time before `p + lanes` is 16-byte aligned, or -1
// when `p` is not a multiple of the element size and never will be.
template <class T>
inline int peel_count(const void* p) {
  const uintptr_t a = reinterpret_cast<uintptr_t>(p);
  if (a & (sizeof(T) - 1)) return -1;
  if constexpr (sizeof(T) == 4)
    return (a & 15) ? int(16 - (a & 15)) / 4 : 0;
  else
    return (a & 15) ? 1 : 0;
}

// Lanes a pass of the vector loops.
inline constexpr int kPass = 8;
// At or below this length the array goes lane by lane straight away.
inline constexpr int kShortArray = 6;

// ---------------------------------------------------------------------------
// Two sources (Add, Sub, Mul).  Op provides lane(V, V), one scalar operation
// on the low lanes, and vec(V, V), the same operation on whole vectors.

template <class T, class Op>
inline void plain_loop2(const T* a, const T* b, T* d, int from, int to) {
  using L = Vec<T>;
  for (int i = from; i < to; ++i) L::store_lane(d + i, Op::lane(L::load_lane(a + i), L::load_lane(b + i)));
}

template <class T, class Op, bool kSrc2Aligned>
inline void vector_loop2(const T* a, const T* b, T* d, int from, int to) {
  using L = Vec<T>;
  for (int i = from; i < to; i += kPass) {
    for (int k = 0; k < kPass; k += L::kLanes) {
      const typename L::V va = L::load(a + i + k);
      const typename L::V vb = kSrc2Aligned ? L::load_aligned(b + i + k) : L::load(b + i + k);
      L::store_aligned(d + i + k, Op::vec(va, vb));
    }
  }
}

// Peel to an aligned dst, whole passes of 8 lanes, then the rest.
template <class T, class Op>
inline void aligned_flow2(const T* a, const T* b, T* d, int len) {
  const int p = peel_count<T>(d);
  if (p < 0 || len < p + kPass) return plain_loop2<T, Op>(a, b, d, 0, len);
  plain_loop2<T, Op>(a, b, d, 0, p);
  const int n = len - ((len - p) & (kPass - 1));
  if (aligned16(b + p))
    vector_loop2<T, Op, true>(a, b, d, p, n);
  else
    vector_loop2<T, Op, false>(a, b, d, p, n);
  plain_loop2<T, Op>(a, b, d, n, len);
}

// Real Add, Sub, Mul: short arrays and arrays that touch dst go lane by lane
// in ascending order, which is what an in-place or shifted call gets.
template <class T, class Op>
inline void binary_flow(const T* a, const T* b, T* d, int len) {
  if (len <= kShortArray) return plain_loop2<T, Op>(a, b, d, 0, len);
  const uint64_t bytes = uint64_t(uint32_t(len)) * sizeof(T);
  if (!clear_of(d, b, bytes) || !clear_of(d, a, bytes)) return plain_loop2<T, Op>(a, b, d, 0, len);
  aligned_flow2<T, Op>(a, b, d, len);
}

// Complex Add and Sub: the real flow on the interleaved parts, 2 * len
// components, with no overlap test.  From len 2^30 on the component count
// would not fit an int, so the two halves run one after the other.
template <class T, class Op>
inline void complex_flow(const T* a, const T* b, T* d, int len) {
  if (len < 0x40000000) return aligned_flow2<T, Op>(a, b, d, 2 * len);
  aligned_flow2<T, Op>(a, b, d, len);
  aligned_flow2<T, Op>(a + len, b + len, d + len, len);
}

// ---------------------------------------------------------------------------
// One source (Sqr): as above, but the peel aligns the source, and the vector
// loop stores aligned or not according to where dst then stands.

template <class T, class Op>
inline void plain_loop1(const T* s, T* d, int from, int to) {
  using L = Vec<T>;
  for (int i = from; i < to; ++i) L::store_lane(d + i, Op::lane(L::load_lane(s + i)));
}

template <class T, class Op, bool kDstAligned>
inline void vector_loop1(const T* s, T* d, int from, int to) {
  using L = Vec<T>;
  for (int i = from; i < to; i += kPass) {
    for (int k = 0; k < kPass; k += L::kLanes) {
      const typename L::V r = Op::vec(L::load_aligned(s + i + k));
      if (kDstAligned)
        L::store_aligned(d + i + k, r);
      else
        L::store(d + i + k, r);
    }
  }
}

template <class T, class Op>
inline void unary_flow(const T* s, T* d, int len) {
  if (len <= kShortArray) return plain_loop1<T, Op>(s, d, 0, len);
  const uint64_t bytes = uint64_t(uint32_t(len)) * sizeof(T);
  if (!clear_of(d, s, bytes)) return plain_loop1<T, Op>(s, d, 0, len);
  const int p = peel_count<T>(s);
  if (p < 0 || len < p + kPass) return plain_loop1<T, Op>(s, d, 0, len);
  plain_loop1<T, Op>(s, d, 0, p);
  const int n = len - ((len - p) & (kPass - 1));
  if (aligned16(d + p))
    vector_loop1<T, Op, true>(s, d, p, n);
  else
    vector_loop1<T, Op, false>(s, d, p, n);
  plain_loop1<T, Op>(s, d, n, len);
}

// ---------------------------------------------------------------------------
// Abs and Conj: unaligned vectors throughout, Block lanes (two vectors) a
// pass.  The rest, fewer than a block, is one more pass over a vector pair
// built from the live lanes, read one by one, with the dead places holding
// copies of the first live lane: they compute what a live lane computes and
// raise no flag of their own.  Only live lanes are written back, so nothing
// at or beyond len is read or written.  Elem is the array's element (a
// complex element counts as one lane); C its component type; Op::vec works on
// vectors of C.

// Lane copies as raw 32-bit words, for any element size and address.
template <class Elem>
inline void copy_raw(const Elem* from, Elem* to) {
  static_assert(sizeof(Elem) % 4 == 0);
  const char* f = reinterpret_cast<const char*>(from);
  char* t = reinterpret_cast<char*>(to);
  for (unsigned w = 0; w < sizeof(Elem); w += 4) _mm_storeu_si32(t + w, _mm_loadu_si32(f + w));
}

template <class Elem, class C, int Block, class Op>
inline void blocked_with_rest(const Elem* s, Elem* d, int len) {
  using L = Vec<C>;
  static_assert(Block * sizeof(Elem) == 2 * sizeof(typename L::V), "a block is two vectors");
  constexpr int kHalf = 16 / sizeof(C);  // components in one vector
  const int n = len & ~(Block - 1);
  for (int i = 0; i < n; i += Block) {
    const C* sc = reinterpret_cast<const C*>(s + i);
    C* dc = reinterpret_cast<C*>(d + i);
    const typename L::V x0 = L::load(sc), x1 = L::load(sc + kHalf);
    L::store(dc, Op::vec(x0));
    L::store(dc + kHalf, Op::vec(x1));
  }
  const int rest = len - n;
  if (rest == 0) return;
  alignas(16) Elem buf[Block];
  for (int k = 0; k < rest; ++k) copy_raw(s + n + k, buf + k);
  for (int k = rest; k < Block; ++k) copy_raw(s + n, buf + k);
  C* bc = reinterpret_cast<C*>(buf);
  const typename L::V x0 = L::load_aligned(bc), x1 = L::load_aligned(bc + kHalf);
  L::store_aligned(bc, Op::vec(x0));
  L::store_aligned(bc + kHalf, Op::vec(x1));
  for (int k = 0; k < rest; ++k) copy_raw(buf + k, d + n + k);
}

}  // namespace lux::arith
