// The lanes of the binary32 Atanh tiers off the main path (|x| < 1), shared
// by the three units: the selections of the masked pass and the statuses;
// and the kernel of the A21 and A11 tiers, which differ only in their w and
// their polynomials.
// |x| = 1 gives +-Inf with a singularity status; 1 < |x| <= Inf the NaN
// 0xFFC00000 with a domain status; a NaN gives x, bits unchanged, no status.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"

namespace lux::invhyp {

// Block test: bits(|x|) below 0x3F800000.
inline bool satanh_main_range(__m128 x0, __m128 x1) {
  const __m128i m = _mm_set1_epi32(0x7FFFFFFF);
  return all_within(_mm_and_si128(as_int(x0), m), 0, 0x3F800000) &&
         all_within(_mm_and_si128(as_int(x1), m), 0, 0x3F800000);
}

// Lanes of |x| >= 1 or NaN, from bits(|x|).
inline __m128 satanh_off_path(__m128 a) {
  return as_ps(_mm_cmpgt_epi32(as_int(a), _mm_set1_epi32(0x3F7FFFFF)));
}

// The results of the lanes off the path, over `res`.
inline __m128 satanh_fix(__m128 x, __m128 a, __m128 res) {
  const __m128i ab = as_int(a);
  const __m128 pole = as_ps(_mm_cmpeq_epi32(ab, _mm_set1_epi32(0x3F800000)));
  const __m128 beyond = as_ps(_mm_and_si128(_mm_cmpgt_epi32(ab, _mm_set1_epi32(0x3F800000)),
                                            _mm_cmplt_epi32(ab, _mm_set1_epi32(0x7F800001))));
  const __m128 nan = as_ps(_mm_cmpgt_epi32(ab, _mm_set1_epi32(0x7F800000)));
  const __m128 sign = _mm_and_ps(x, as_ps(_mm_set1_epi32(int32_t(0x80000000))));
  res = select(pole, _mm_or_ps(as_ps(_mm_set1_epi32(0x7F800000)), sign), res);
  res = select(beyond, as_ps(_mm_set1_epi32(int32_t(0xFFC00000))), res);
  return select(nan, x, res);
}

// The A21 and A11 kernels, on the unit's table (abs_mask, sign_mask, one,
// half, quarter, ln2_half, p[], l[]) and its w = (1 + a)/(1 - a), W(t, a):
// while x^2 < 1/4, a + a s P(s); elsewhere ln(w)/2 as t L(t) + e ln(2)/2.
// The sign of x is ORed in.
template <bool Masked, class Table, class W>
inline __m128 satanh_poly(const Table& t, __m128 x, W w_of) {
  const __m128 a0 = _mm_and_ps(x, t.abs_mask.ps());
  const __m128 a = Masked ? select(satanh_off_path(a0), t.half.ps(), a0) : a0;
  const __m128 w = w_of(t, a);
  const __m128 s = _mm_mul_ps(a, a);
  const __m128 near = _mm_cmplt_ps(s, t.quarter.ps());
  const __m128 nv = _mm_add_ps(_mm_mul_ps(a, _mm_mul_ps(s, horner(t.p, s))), a);
  const __m128 fv = log_t_poly(w, _mm_setzero_ps(), t.l, t.ln2_half.ps());
  const __m128 res = _mm_or_ps(select(near, nv, fv), _mm_and_ps(x, t.sign_mask.ps()));
  return Masked ? satanh_fix(x, a0, res) : res;
}

inline luxStatus satanh_status(uint32_t x) {
  const uint32_t a = x & 0x7FFFFFFF;
  if (a == 0x3F800000) return luxWarnSingularity;
  if (a > 0x3F800000 && a <= 0x7F800000) return luxWarnDomain;
  return luxOk;
}

}  // namespace lux::invhyp
