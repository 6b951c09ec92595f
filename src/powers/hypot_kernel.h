// Hypot on binary64 and binary32: sqrt(x^2 + y^2) with the sum of squares
// carried as an unevaluated pair hi + lo, so that its rounding error still
// reaches the result, and the root taken from a reciprocal-square-root seed
// refined against that pair (no square-root instruction, no division).
//
// Squares: M = max(|x|, |y|), m = min.  M is split into a short head Mh
// (7 bits on binary64, 5 on binary32) and the rest, so Mh*Mh is exact and
// M^2 - Mh^2 = (M - Mh)(M + Mh) is small; m is split the same way only when
// it is within 2^6 (binary32: 2^4) of M, so that hi = Mh^2 + mh^2 is exact.
// Both operands within (2^-500, 2^511) (binary32: (2^-62, 2^63)) keep every
// square inside the format; the lane routine scales the others by a power
// of two first.
//
// Root on binary64: c ~ S^(-1/2) to 12 bits (the seed of the Sqrt kernels),
// e = (hi*c^2 - 1) + lo*c^2, sqrt(S) = S*c*(1 + e)^(-1/2) with the Taylor
// polynomial of degree 5, summed as ((w*S) + lo*c) + hi*c: hi*c is exact
// (27 by 21 bits) and the error is that of the last addition.
// Root on binary32: one coupled Newton step from rsqrtps gives s1 ~ sqrt(S)
// and h1 ~ 1/(2 sqrt(S)); the residual s1^2 - (hi + lo), formed exactly with
// an 11-bit head of s1, corrects s1 by h1 times it.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_seed64.h"

namespace lux::hypot {

// ---------------------------------------------------------------------------
// binary64

struct alignas(16) Table64 {
  LUX_SQRT_SEED64_ROWS
  Row64 dbAbsMask = row64(0x7FFFFFFFFFFFFFFF);
  Row64 dbSplit = row64(0xFFFFC00000000000);  // 7 significant bits
  Row32 flDiffLimit = row32(0x00600000);      // 2^6 in the high word
  Row32 flLow = row32(0x20B00000);            // 2^-500
  Row32 flHigh = row32(0x5FE00000);           // 2^511
  Row64 dbOne = row64(0x3FF0000000000000);
  // Taylor coefficients of (1 + e)^(-1/2) - 1 over e, innermost first.
  Row64 dbE5 = row64(0xBFCF800000000000);  // -63/256
  Row64 dbE4 = row64(0x3FD1800000000000);  // 35/128
  Row64 dbE3 = row64(0xBFD4000000000000);  // -5/16
  Row64 dbE2 = row64(0x3FD8000000000000);  // 3/8
  Row64 dbE1 = row64(0xBFE0000000000000);  // -1/2
};
inline constexpr Table64 kTab64{};

// The vector steps on two lanes, the two parts of the result scaled by t
// before they are added; when t scales down (`sum_first`), after: the parts
// may be denormal there, and one rounding of the sum keeps the error of a
// denormal result within half an ulp.
inline __m128d core64(__m128d x, __m128d y, __m128d t, bool sum_first = false) {
  const Table64& k = kTab64;
  const __m128d a = _mm_and_pd(x, k.dbAbsMask.pd()), b = _mm_and_pd(y, k.dbAbsMask.pd());
  const __m128d M = _mm_max_pd(a, b), m = _mm_min_pd(a, b);
  const __m128d Mh = _mm_and_pd(M, k.dbSplit.pd());
  const __m128d lo1 = _mm_mul_pd(_mm_sub_pd(M, Mh), _mm_add_pd(M, Mh));
  // The high word of the difference of the patterns, in both halves of a lane.
  const __m128i far = _mm_cmpgt_epi32(_mm_sub_epi64(as_int(M), as_int(m)), k.flDiffLimit.pi());
  const __m128d far2 = as_pd(_mm_shuffle_epi32(far, _MM_SHUFFLE(3, 3, 1, 1)));
  const __m128d mh = _mm_andnot_pd(far2, _mm_and_pd(m, k.dbSplit.pd()));
  const __m128d ml = _mm_sub_pd(m, mh);
  const __m128d lo2 = _mm_mul_pd(ml, m), lo3 = _mm_mul_pd(ml, mh);
  const __m128d hi = _mm_add_pd(_mm_mul_pd(Mh, Mh), _mm_mul_pd(mh, mh));
  const __m128d lo = _mm_add_pd(_mm_add_pd(lo1, lo2), lo3);
  const __m128d S = _mm_add_pd(lo, hi);
  const __m128d c = rsqrt_seed(S, k);
  const __m128d c2 = _mm_mul_pd(c, c);
  const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(hi, c2), k.dbOne.pd()), _mm_mul_pd(lo, c2));
  __m128d p = _mm_add_pd(_mm_mul_pd(k.dbE5.pd(), e), k.dbE4.pd());
  p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE2.pd());
  p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE1.pd());
  const __m128d w = _mm_mul_pd(_mm_mul_pd(p, e), c);
  const __m128d small = _mm_add_pd(_mm_mul_pd(w, S), _mm_mul_pd(lo, c));
  if (sum_first) return _mm_mul_pd(_mm_add_pd(small, _mm_mul_pd(hi, c)), t);
  return _mm_add_pd(_mm_mul_pd(small, t), _mm_mul_pd(_mm_mul_pd(hi, c), t));
}

// Lanes whose operands both lie strictly inside (0x20B00000, 0x5FE00000) on
// their magnitude high words; `words` holds four high words.
inline __m128i in_range64(__m128i words) {
  const Table64& k = kTab64;
  const __m128i h = _mm_and_si128(words, _mm_set1_epi32(0x7FFFFFFF));
  return _mm_and_si128(_mm_cmpgt_epi32(h, k.flLow.pi()), _mm_cmplt_epi32(h, k.flHigh.pi()));
}

struct Kernel64 {
  const double* src1;
  const double* src2;
  double* dst;

  bool block(int i) {
    const __m128d x0 = load2(src1 + i), x1 = load2(src1 + i + 2);
    const __m128d y0 = load2(src2 + i), y1 = load2(src2 + i + 2);
    const __m128i ok = _mm_and_si128(in_range64(_mm_unpacklo_epi64(high_words(x0), high_words(x1))),
                                     in_range64(_mm_unpacklo_epi64(high_words(y0), high_words(y1))));
    if (__builtin_expect(_mm_movemask_ps(as_ps(ok)) != 0xF, 0)) return false;
    const __m128d one = kTab64.dbOne.pd();
    store2(dst + i, core64(x0, y0, one));
    store2(dst + i + 2, core64(x1, y1, one));
    return true;
  }

  // hypot_scalar: NaN and Inf, zeros, then the vector steps, on operands
  // scaled by a power of two when they leave the range of the block test.
  void lane(int i) {
    const Table64& k = kTab64;
    __m128d x = _mm_loaddup_pd(src1 + i), y = _mm_loaddup_pd(src2 + i);
    const uint64_t bx = __builtin_bit_cast(uint64_t, src1[i]) & 0x7FFFFFFFFFFFFFFFull;
    const uint64_t by = __builtin_bit_cast(uint64_t, src2[i]) & 0x7FFFFFFFFFFFFFFFull;
    const uint32_t hx = uint32_t(bx >> 32), hy = uint32_t(by >> 32);
    constexpr uint64_t kInf = 0x7FF0000000000000ull;
    __m128d r;
    if (bx >= kInf && !(by >= kInf)) {
      r = bx == kInf ? as_pd(_mm_set1_epi64x(int64_t(kInf))) : _mm_mul_pd(x, opaque(k.dbOne.pd()));
    } else if (bx == kInf || by == kInf) {
      r = as_pd(_mm_set1_epi64x(int64_t(kInf)));
    } else if (by > kInf) {
      r = _mm_mul_pd(y, opaque(k.dbOne.pd()));
    } else if (bx == 0) {
      r = _mm_and_pd(_mm_mul_pd(y, opaque(k.dbOne.pd())), k.dbAbsMask.pd());
    } else if (by == 0) {
      r = _mm_and_pd(_mm_mul_pd(x, opaque(k.dbOne.pd())), k.dbAbsMask.pd());
    } else if (hx > 0x20B00000 && hx < 0x5FE00000 && hy > 0x20B00000 && hy < 0x5FE00000) {
      r = core64(x, y, k.dbOne.pd());
    } else {
      const uint32_t H = hx > hy ? hx : hy, h = hx > hy ? hy : hx;
      const uint32_t e = H >> 20;
      uint64_t f, t;
      const bool tiny = H <= 0x010FFFFF;
      if (tiny) {
        f = 0x7FD0000000000000ull, t = 0x0010000000000000ull;  // 2^1022, 2^-1022
      } else if (e == 0x7FE) {
        f = 0x01B0000000000000ull, t = 0x7E30000000000000ull;  // 2^-996, 2^996
      } else {
        f = uint64_t(0x7FE - e) << 52, t = uint64_t(e) << 52;
      }
      // An operand 2^64 below the other no longer moves the rounded result;
      // dropping it keeps its square from underflowing.
      if (H - h > 0x04000000) {
        if (hx > hy)
          y = _mm_setzero_pd();
        else
          x = _mm_setzero_pd();
      }
      const __m128d fv = as_pd(_mm_set1_epi64x(int64_t(f)));
      r = core64(_mm_mul_pd(x, fv), _mm_mul_pd(y, fv), as_pd(_mm_set1_epi64x(int64_t(t))), tiny);
    }
    store1(dst + i, r);
  }
  void tail(int i) { lane(i); }
};

inline luxStatus run64(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  RoundNearestGuard guard;
  X87Guard64 x87;
  Kernel64 k{src1, src2, dst};
  run_block_redo<4>(len, k);
  return luxOk;
}

// ---------------------------------------------------------------------------
// binary32

struct alignas(16) Table32 {
  Row32 flAbsMask = row32(0x7FFFFFFF);
  Row32 flSplit = row32(0xFFF80000);      // 5 significant bits
  Row32 flRootSplit = row32(0xFFFFE000);  // 11 significant bits
  Row32 flDiffLimit = row32(0x02000000);  // 2^4
  Row32 flLow = row32(0x20800000);        // 2^-62
  Row32 flHigh = row32(0x5F000000);       // 2^63
  Row32 flHalf = row32(0x3F000000);
  Row32 flOne = row32(0x3F800000);
};
inline constexpr Table32 kTab32{};

inline __m128 core32(__m128 x, __m128 y) {
  const Table32& k = kTab32;
  const __m128 a = _mm_and_ps(x, k.flAbsMask.ps()), b = _mm_and_ps(y, k.flAbsMask.ps());
  const __m128 M = _mm_max_ps(a, b), m = _mm_min_ps(a, b);
  const __m128 Mh = _mm_and_ps(M, k.flSplit.ps());
  const __m128 lo1 = _mm_mul_ps(_mm_sub_ps(M, Mh), _mm_add_ps(M, Mh));
  const __m128i far = _mm_cmpgt_epi32(_mm_sub_epi32(as_int(M), as_int(m)), k.flDiffLimit.pi());
  const __m128 mh = _mm_andnot_ps(as_ps(far), _mm_and_ps(m, k.flSplit.ps()));
  const __m128 lo2 = _mm_mul_ps(_mm_sub_ps(m, mh), _mm_add_ps(m, mh));
  const __m128 hi = _mm_add_ps(_mm_mul_ps(Mh, Mh), _mm_mul_ps(mh, mh));
  const __m128 lo = _mm_add_ps(lo1, lo2);
  const __m128 S = _mm_add_ps(lo, hi);
  const __m128 r = _mm_rsqrt_ps(S);
  const __m128 s = _mm_mul_ps(S, r), h = _mm_mul_ps(r, k.flHalf.ps());
  const __m128 d = _mm_sub_ps(k.flHalf.ps(), _mm_mul_ps(h, s));
  const __m128 h1 = _mm_add_ps(h, _mm_mul_ps(h, d));
  const __m128 s1 = _mm_add_ps(s, _mm_mul_ps(s, d));
  const __m128 sh = _mm_and_ps(s1, k.flRootSplit.ps());
  const __m128 sl = _mm_sub_ps(s1, sh);
  const __m128 err = _mm_add_ps(
      _mm_mul_ps(sl, s1), _mm_sub_ps(_mm_add_ps(_mm_sub_ps(_mm_mul_ps(sh, sh), hi), _mm_mul_ps(sh, sl)), lo));
  return _mm_sub_ps(s1, _mm_mul_ps(h1, err));
}

inline __m128i in_range32(__m128 v) {
  const Table32& k = kTab32;
  const __m128i a = _mm_and_si128(as_int(v), k.flAbsMask.pi());
  return _mm_and_si128(_mm_cmpgt_epi32(a, k.flLow.pi()), _mm_cmplt_epi32(a, k.flHigh.pi()));
}

// x^2 + y^2 and its root in the x87 unit under the caller's precision
// control: the extended exponent range holds every square of a binary32.
__attribute__((always_inline)) inline void x87_hypot_to_f32(float* out, const float* x, const float* y) {
  const long double a = *x, b = *y;
  long double s = a * a + b * b;
  asm("fsqrt" : "+t"(s));
  *out = static_cast<float>(s);
}

struct Kernel32 {
  const float* src1;
  const float* src2;
  float* dst;

  bool block(int i) {
    const __m128 x0 = load4(src1 + i), x1 = load4(src1 + i + 4);
    const __m128 y0 = load4(src2 + i), y1 = load4(src2 + i + 4);
    const __m128i ok = _mm_and_si128(_mm_and_si128(in_range32(x0), in_range32(x1)),
                                     _mm_and_si128(in_range32(y0), in_range32(y1)));
    if (__builtin_expect(_mm_movemask_ps(as_ps(ok)) != 0xF, 0)) return false;
    store4(dst + i, core32(x0, y0));
    store4(dst + i + 4, core32(x1, y1));
    return true;
  }

  // hypot_scalar: the special values on magnitudes (a NaN comes out
  // positive), the vector steps for operands in range, x87 for the rest.
  void lane(int i) {
    const Table32& k = kTab32;
    const uint32_t ax = __builtin_bit_cast(uint32_t, src1[i]) & 0x7FFFFFFF;
    const uint32_t ay = __builtin_bit_cast(uint32_t, src2[i]) & 0x7FFFFFFF;
    const __m128 a = _mm_and_ps(_mm_load1_ps(src1 + i), k.flAbsMask.ps());
    const __m128 b = _mm_and_ps(_mm_load1_ps(src2 + i), k.flAbsMask.ps());
    constexpr uint32_t kInf = 0x7F800000;
    if (ax >= kInf && ay < kInf) {
      store1(dst + i, ax == kInf ? a : _mm_mul_ps(a, opaque(k.flOne.ps())));
    } else if (ax == kInf || ay == kInf) {
      store1(dst + i, as_ps(_mm_set1_epi32(int32_t(kInf))));
    } else if (ay > kInf) {
      store1(dst + i, _mm_mul_ps(b, opaque(k.flOne.ps())));
    } else if (ax == 0) {
      store1(dst + i, _mm_mul_ps(b, opaque(k.flOne.ps())));
    } else if (ay == 0) {
      store1(dst + i, _mm_mul_ps(a, opaque(k.flOne.ps())));
    } else if (ax > 0x20800000 && ax < 0x5F000000 && ay > 0x20800000 && ay < 0x5F000000) {
      store1(dst + i, core32(a, b));
    } else {
      alignas(16) float m[2];
      store1(m, a);
      store1(m + 1, b);
      x87_hypot_to_f32(dst + i, m, m + 1);
    }
  }
  void tail(int i) { lane(i); }
};

inline luxStatus run32(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  RoundNearestGuard guard;
  Kernel32 k{src1, src2, dst};
  run_block_redo<8>(len, k);
  return luxOk;
}

}  // namespace lux::hypot
