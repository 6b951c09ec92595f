// Small steps shared by the binary32 inverse sine and cosine units (each unit
// keeps its own constants): the square root from the reciprocal-square-root
// estimate and the tail of a root.
#pragma once

#include <pmmintrin.h>

#include "trig/asincos_kernel.h"

namespace lux::asincos {

// sqrt(k^2 d) for d >= 0 from the 12-bit estimate y of 1/sqrt(d) and one
// Newton step, (d y^2 - 3)(minus_half_k d y), minus_half_k = -k/2.  A zero d
// gets a zero estimate, so its root is 0 without an invalid 0 * Inf.
inline __m128 newton_root(__m128 d, __m128 minus_half_k, __m128 three) {
  const __m128 y = _mm_and_ps(_mm_rsqrt_ps(d), _mm_cmpneq_ps(d, _mm_setzero_ps()));
  return _mm_mul_ps(_mm_sub_ps(_mm_mul_ps(d, _mm_mul_ps(y, y)), three),
                    _mm_mul_ps(_mm_mul_ps(minus_half_k, d), y));
}

// The low part of a root t of u, with th = t's head (t with 16 low bits
// clear): (u - th^2)/(t + th), by the refined reciprocal estimate of t + th
// (zero when t + th is).
inline __m128 root_tail(__m128 u, __m128 t, __m128 th, __m128 two) {
  const __m128 sum = _mm_add_ps(t, th);
  const __m128 r = _mm_and_ps(_mm_rcp_ps(sum), _mm_cmpneq_ps(sum, _mm_setzero_ps()));
  const __m128 inv = _mm_xor_ps(_mm_mul_ps(_mm_sub_ps(two, _mm_mul_ps(sum, r)), r), _mm_set1_ps(-0.0f));
  return _mm_mul_ps(_mm_sub_ps(_mm_mul_ps(th, th), u), inv);
}

}  // namespace lux::asincos
