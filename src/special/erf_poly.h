// The row-polynomial Erf kernels that differ only in their tables: binary64
// A50 and A26 (a centred polynomial per row, t = a|x| - b, Horner from the
// top), binary32 A21 and A24 (a polynomial in |x| itself per row, in double,
// one rounding to binary32 at the end).  A unit gives its table and degree.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace lux::erf {

// Binary64: `rows` of 16 doubles {c0..c13, b, a}; key 4 rows a binade from
// base 0x3FBC0000, the last row (|x| >= 6) the constant 1.
template <int Degree>
struct DErfRows {
  const uint64_t (*rows)[16];

  static constexpr uint32_t kKeyMask = 0x7FFC0000, kKeyBase = 0x3FBC0000, kLastRow = 23;
  static constexpr int kKeyShift = 18;

  const double* row_of(uint32_t hi) const {
    return reinterpret_cast<const double*>(
        rows[row_index(hi, kKeyMask, kKeyBase, kKeyShift, kLastRow, kLastRow)]);
  }
  __m128d main_pair(__m128d x) const {
    const __m128d sign = as_pd(_mm_set1_epi64x(int64_t(0x8000000000000000ull)));
    const __m128d ax = _mm_andnot_pd(sign, x);
    const double* r0 = row_of(high_word(x, 0));
    const double* r1 = row_of(high_word(x, 1));
    const __m128d t = _mm_sub_pd(_mm_mul_pd(gather(r0, r1, 15), ax), gather(r0, r1, 14));
    __m128d p = gather(r0, r1, Degree);
    for (int k = Degree - 1; k >= 0; --k) p = _mm_add_pd(gather(r0, r1, k), _mm_mul_pd(t, p));
    return _mm_or_pd(p, _mm_and_pd(x, sign));
  }
  // Infinities give +-1, NaNs themselves.
  __m128d select_pair(__m128d x) const {
    const __m128d sign = as_pd(_mm_set1_epi64x(int64_t(0x8000000000000000ull)));
    const __m128d one = as_pd(_mm_set1_epi64x(0x3FF0000000000000));
    const __m128i h = _mm_and_si128(high_pair(x), _mm_set1_epi32(0x7FFFFFFF));
    const __m128d big = wide_mask(_mm_cmpgt_epi32(h, _mm_set1_epi32(0x7FEFFFFF)));
    const __m128d nan = _mm_cmpunord_pd(x, x);
    const __m128d y = select(big, _mm_or_pd(one, _mm_and_pd(x, sign)), main_pair(x));
    return select(nan, x, y);
  }
  static bool all_finite(__m128d a, __m128d b) {
    const __m128i h = _mm_unpacklo_epi64(high_pair(a), high_pair(b));
    const __m128i abs = _mm_and_si128(h, _mm_set1_epi32(0x7FFFFFFF));
    return _mm_movemask_epi8(_mm_cmpgt_epi32(abs, _mm_set1_epi32(0x7FEFFFFF))) == 0;
  }
};

template <class Rows>
struct DPairKernel {
  const Rows& k;
  const double* src;
  double* dst;
  void block(int i) {
    const __m128d a = load2(src + i), b = load2(src + i + 2);
    if (__builtin_expect(Rows::all_finite(a, b), 1)) {
      store2(dst + i, k.main_pair(a));
      store2(dst + i + 2, k.main_pair(b));
    } else {
      store2(dst + i, k.select_pair(a));
      store2(dst + i + 2, k.select_pair(b));
    }
  }
  void tail(int i) { store1(dst + i, k.select_pair(load1(src + i))); }
};

template <int Degree>
inline luxStatus run_derf(const DErfRows<Degree>& rows, const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  DPairKernel<DErfRows<Degree>> k{rows, src, dst};
  run_closed<4>(len, k);
  return luxOk;
}

// Binary32: rows of `Width` doubles {c0..cDegree, ...}, in |x| itself; the
// key on the float pattern; `kClampAbove4` replaces |x| > 4 by 0 (the last
// row is the constant 1 and needs no argument).
template <int Degree, int Width, bool kClampAbove4>
struct SErfRows {
  const uint64_t (*rows)[Width];
  uint32_t key_mask, key_base;
  int key_shift;
  uint32_t last_row;

  const double* row_of(uint32_t bits) const {
    return reinterpret_cast<const double*>(
        rows[row_index(bits, key_mask, key_base, key_shift, last_row, last_row)]);
  }
  // Two lanes: their float patterns and their widened values.
  __m128d pair(__m128d x, uint32_t b0, uint32_t b1) const {
    const __m128d sign = as_pd(_mm_set1_epi64x(int64_t(0x8000000000000000ull)));
    __m128d ax = _mm_andnot_pd(sign, x);
    if (kClampAbove4) {
      const __m128d above = _mm_cmpgt_pd(no_nan(ax), as_pd(_mm_set1_epi64x(0x4010000000000000)));
      ax = _mm_andnot_pd(above, ax);
    }
    const double* r0 = row_of(b0);
    const double* r1 = row_of(b1);
    __m128d p = gather(r0, r1, Degree);
    for (int k = Degree - 1; k >= 0; --k) p = _mm_add_pd(gather(r0, r1, k), _mm_mul_pd(ax, p));
    return _mm_or_pd(p, _mm_and_pd(x, sign));
  }
  // Infinities +-1, NaNs the widened input.
  __m128d select_pair(__m128d x, uint32_t b0, uint32_t b1) const {
    const __m128d sign = as_pd(_mm_set1_epi64x(int64_t(0x8000000000000000ull)));
    const __m128d one = as_pd(_mm_set1_epi64x(0x3FF0000000000000));
    const __m128d inf = as_pd(_mm_set1_epi64x(0x7FF0000000000000));
    const __m128d big = _mm_cmpeq_pd(_mm_andnot_pd(sign, x), inf);
    const __m128d nan = _mm_cmpunord_pd(x, x);
    const __m128d y = select(big, _mm_or_pd(one, _mm_and_pd(x, sign)), pair(x, b0, b1));
    return select(nan, x, y);
  }
  __m128 four(__m128 x, bool special) const {
    alignas(16) uint32_t b[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(b), as_int(x));
    __m128d lo, hi;
    widen(x, lo, hi);
    if (__builtin_expect(!special, 1)) return narrow(pair(lo, b[0], b[1]), pair(hi, b[2], b[3]));
    return narrow(select_pair(lo, b[0], b[1]), select_pair(hi, b[2], b[3]));
  }
};

// A lane whose exponent field is all ones (Inf or NaN) sends its group of
// four to the selecting path.
inline bool any_exponent_all_ones(__m128 x) {
  const __m128i e = _mm_and_si128(as_int(x), _mm_set1_epi32(0x7F800000));
  return _mm_movemask_ps(as_ps(_mm_cmpeq_epi32(e, _mm_set1_epi32(0x7F800000)))) != 0;
}

template <class Rows>
struct SQuadKernel {
  const Rows& k;
  const float* src;
  float* dst;
  void block(int i) {
    const __m128 x = load4(src + i);
    store4(dst + i, k.four(x, any_exponent_all_ones(x)));
  }
  void tail(int i) {
    const __m128 x = load1(src + i);
    store1(dst + i, k.four(x, any_exponent_all_ones(x)));
  }
};

template <class Rows>
inline luxStatus run_serf(const Rows& rows, const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  SQuadKernel<Rows> k{rows, src, dst};
  run_closed<4>(len, k);
  return luxOk;
}

}  // namespace lux::erf
