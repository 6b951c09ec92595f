// The loop of the rounding family (Floor, Ceil, Trunc, Round, NearbyInt,
// Rint, Modf): a closed vector kernel whose arithmetic rounds by adding and
// subtracting the shifter M = 2^52 (binary64) or 2^23 (binary32), so the
// direction is whatever MXCSR says, set by the unit's guard or left to the
// caller.  Each unit brings its table and its arithmetic; this header walks
// the arrays and gives the lanes the shifter cannot take their own form.
//
// A block whose lanes all lie within the shifter's range runs the vector
// arithmetic.  Otherwise the block, and every lane after the last whole
// block, goes lane by lane:
//   exponent field all ones   x + x: keeps +-Inf, quiets a NaN
//   |x| at or above M         already an integer, stored unchanged
//   otherwise                 the same vector arithmetic on one lane
// So every lane that gets arithmetic gets the same arithmetic.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "arith/plain_loop.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::arith {

// A unit's family F provides:
//   using T = float or double;
//   kExpField    exponent field of the word that holds it (the high word of
//                a binary64);
//   kShifterExp  that field in M: at or above it x is an integer;
//   path_mask(), path_bound()  rows of the unit's table for the block test:
//                a lane stays on the vector path when (word AND mask) is not
//                above bound, as a signed compare;
//   vec(V x)     the rounding of whole vectors (one result), or
//   vec(V x, V* whole, V* frac)  for Modf.

// The word that carries the exponent, for each lane of a vector pair: the
// high words of four binary64 lanes, or the words of eight binary32 lanes.
inline bool block_in_range(__m128d x0, __m128d x1, __m128i mask, __m128i bound) {
  const __m128i hi =
      _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(x0), _mm_castpd_ps(x1), _MM_SHUFFLE(3, 1, 3, 1)));
  const __m128i out = _mm_cmpgt_epi32(_mm_and_si128(hi, mask), bound);
  return _mm_movemask_epi8(out) == 0;
}
inline bool block_in_range(__m128 x0, __m128 x1, __m128i mask, __m128i bound) {
  const __m128i out0 = _mm_cmpgt_epi32(_mm_and_si128(_mm_castps_si128(x0), mask), bound);
  const __m128i out1 = _mm_cmpgt_epi32(_mm_and_si128(_mm_castps_si128(x1), mask), bound);
  return _mm_movemask_epi8(_mm_or_si128(out0, out1)) == 0;
}

inline uint32_t exponent_word(__m128d x) {
  return uint32_t(_mm_cvtsi128_si32(_mm_srli_epi64(_mm_castpd_si128(x), 32)));
}
inline uint32_t exponent_word(__m128 x) { return uint32_t(_mm_cvtsi128_si32(_mm_castps_si128(x))); }

// The sign of x alone, as a zero of that sign: what the lane form stores as
// the fraction of an integer or an infinity.
inline __m128d signed_zero(__m128d x) {
  return _mm_and_pd(x, _mm_castsi128_pd(_mm_set_epi32(0, 0, int(0x80000000), 0)));
}
inline __m128 signed_zero(__m128 x) {
  return _mm_and_ps(x, _mm_castsi128_ps(_mm_cvtsi32_si128(int(0x80000000))));
}

// An exponent field of all ones with a zero significand.
inline bool is_infinity(__m128d x) {
  const __m128i b = _mm_castpd_si128(x);
  return (uint32_t(_mm_cvtsi128_si32(_mm_srli_epi64(b, 32))) & 0x7FFFFFFF) == 0x7FF00000 &&
         _mm_cvtsi128_si32(b) == 0;
}
inline bool is_infinity(__m128 x) {
  return (uint32_t(_mm_cvtsi128_si32(_mm_castps_si128(x))) & 0x7FFFFFFF) == 0x7F800000;
}

inline __m128d twice(__m128d x) { return _mm_add_sd(lux::opaque(x), x); }
inline __m128 twice(__m128 x) { return _mm_add_ss(lux::opaque(x), x); }

// One result per lane (all but Modf).
template <class F>
struct RoundKernel {
  using T = typename F::T;
  using L = Vec<T>;
  using V = typename L::V;
  static constexpr int kBlock = 2 * L::kLanes;

  const T* src;
  T* dst;

  void block(int i) {
    const V x0 = L::load(src + i), x1 = L::load(src + i + L::kLanes);
    if (__builtin_expect(!block_in_range(x0, x1, F::path_mask(), F::path_bound()), 0)) return lanes(i);
    L::store(dst + i, F::vec(x0));
    L::store(dst + i + L::kLanes, F::vec(x1));
  }
  void tail(int i) { lane(i); }

  __attribute__((noinline)) void lanes(int i) {
    for (int j = i; j < i + kBlock; ++j) lane(j);
  }
  void lane(int i) {
    const V x = L::load_lane(src + i);
    const uint32_t e = exponent_word(x) & F::kExpField;
    if (e == F::kExpField)
      L::store_lane(dst + i, twice(x));
    else if (e >= F::kShifterExp)
      L::store_lane(dst + i, x);
    else
      L::store_lane(dst + i, F::vec(x));
  }
};

// Modf: integer part to dst1, fraction to dst2.  An infinity is its own
// integer part with a zero of its sign as fraction; a NaN goes to both.
template <class F>
struct ModfKernel {
  using T = typename F::T;
  using L = Vec<T>;
  using V = typename L::V;
  static constexpr int kBlock = 2 * L::kLanes;

  const T* src;
  T* whole;
  T* frac;

  void block(int i) {
    const V x0 = L::load(src + i), x1 = L::load(src + i + L::kLanes);
    if (__builtin_expect(!block_in_range(x0, x1, F::path_mask(), F::path_bound()), 0)) return lanes(i);
    V w0, f0, w1, f1;
    F::vec(x0, &w0, &f0);
    F::vec(x1, &w1, &f1);
    L::store(whole + i, w0);
    L::store(whole + i + L::kLanes, w1);
    L::store(frac + i, f0);
    L::store(frac + i + L::kLanes, f1);
  }
  void tail(int i) { lane(i); }

  __attribute__((noinline)) void lanes(int i) {
    for (int j = i; j < i + kBlock; ++j) lane(j);
  }
  void lane(int i) {
    const V x = L::load_lane(src + i);
    const uint32_t e = exponent_word(x) & F::kExpField;
    V w, f;
    if (e == F::kExpField && is_infinity(x)) {
      w = x;
      f = signed_zero(x);
    } else if (e == F::kExpField) {
      w = twice(x);
      f = w;
    } else if (e >= F::kShifterExp) {
      w = x;
      f = signed_zero(x);
    } else {
      F::vec(x, &w, &f);
    }
    L::store_lane(whole + i, w);
    L::store_lane(frac + i, f);
  }
};

// The element-type half of a unit's family: the exponent fields the lane
// form tests, and the block-test rows iPathMask, iPathBound of the unit's
// table kTab.  A unit derives its family from one of these and adds vec().
template <const auto& kTab>
struct ShifterLanes64 {
  using T = double;
  using V = __m128d;
  static constexpr uint32_t kExpField = 0x7FF00000;    // exponent field of the high word
  static constexpr uint32_t kShifterExp = 0x43300000;  // that field in M: x is an integer from here on
  static __m128i path_mask() { return kTab.iPathMask.pi(); }
  static __m128i path_bound() { return kTab.iPathBound.pi(); }
};

template <const auto& kTab>
struct ShifterLanes32 {
  using T = float;
  using V = __m128;
  static constexpr uint32_t kExpField = 0x7F800000;    // exponent field of the word
  static constexpr uint32_t kShifterExp = 0x4B000000;  // that field in M: x is an integer from here on
  static __m128i path_mask() { return kTab.iPathMask.pi(); }
  static __m128i path_bound() { return kTab.iPathBound.pi(); }
};

// Rint and NearbyInt (the same code), in the caller's rounding mode: m = M
// with the sign of x; r = (x + m) - m rounds x in the caller's direction.
// The result carries the sign of x: under round-down a positive x below 1
// leaves r = (M - M) = -0, so the sign is set from x rather than ORed onto r
// (OR alone keeps that -0 for a positive x; rint gives +0 there).  kTab is
// the unit's table: the shifter M, the sign mask and the block-test rows.
template <const auto& kTab>
struct RoundInCallerMode64 : ShifterLanes64<kTab> {
  using V = __m128d;
  static V vec(V x) {
    const V sign = _mm_and_pd(x, kTab.dbSignMask.pd());
    const V m = _mm_or_pd(kTab.dbShifter.pd(), sign);
    const V r = _mm_sub_pd(lux::opaque(_mm_add_pd(x, m)), m);
    return _mm_or_pd(_mm_andnot_pd(kTab.dbSignMask.pd(), r), sign);
  }
};

template <const auto& kTab>
struct RoundInCallerMode32 : ShifterLanes32<kTab> {
  using V = __m128;
  static V vec(V x) {
    const V sign = _mm_and_ps(x, kTab.flSignMask.ps());
    const V m = _mm_or_ps(kTab.flShifter.ps(), sign);
    const V r = _mm_sub_ps(lux::opaque(_mm_add_ps(x, m)), m);
    return _mm_or_ps(_mm_andnot_ps(kTab.flSignMask.ps(), r), sign);
  }
};

// The export bodies after the entry checks: the unit's guard sets the
// direction the shifter rounds in, then closed blocks of two vectors.
// CallerMode is no guard: for Rint and NearbyInt the caller's rounding mode
// is the function.
struct CallerMode {};

template <class F, class Guard>
inline luxStatus run_rounding(const typename F::T* src, typename F::T* dst, int len) {
  [[maybe_unused]] Guard guard;
  RoundKernel<F> k{src, dst};
  run_closed<RoundKernel<F>::kBlock>(len, k);
  return luxOk;
}

template <class F, class Guard>
inline luxStatus run_modf(const typename F::T* src, typename F::T* whole, typename F::T* frac, int len) {
  [[maybe_unused]] Guard guard;
  ModfKernel<F> k{src, whole, frac};
  run_closed<ModfKernel<F>::kBlock>(len, k);
  return luxOk;
}

}  // namespace lux::arith
