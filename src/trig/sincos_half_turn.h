// The binary32 sine and cosine kernels that reduce by whole half turns:
// x = m pi + r with |r| <= pi/2 and sin x = (-1)^m sin r, where m = n for the
// sine and m = n - 1/2 for the cosine (cos x = sin(x + pi/2)).  Each unit
// finds its own multiple; the rest is written once here, on the unit's table.
#pragma once

#include <pmmintrin.h>

#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux::sincos {

// In single precision, pi in four parts (the first three so short that
// m * part is exact on the vector path): sin r = r + r^3 q(r^2) with q of
// degree 3.  m is the multiple, t the shifter sum whose bit 0 is its parity.
//
// Table: rows pi1..pi4 and c3, c5, c7, c9.
template <class Table>
inline __m128 sin_of_half_turns4(__m128 x, __m128 m, __m128 t, const Table& T) {
  const __m128 r = subtract_multiples(x, m, T.pi1, T.pi2, T.pi3, T.pi4);
  const __m128 s = flip_sign_if_odd(r, as_int(t));
  const __m128 z = _mm_mul_ps(r, r);
  const __m128 q = horner(z, T.c9, T.c7, T.c5, T.c3);
  return _mm_add_ps(_mm_mul_ps(_mm_mul_ps(q, z), s), s);
}

// In double precision on lanes widened from single: sin(xd - m pi) for a
// pair of lanes, m the multiple as a double, pi = -pi1 + pi2 with m pi1
// exact; sin r = r p(r^2) with p of degree 4.
//
// Table: rows pi1, pi2 (double) and d1, d3, d5, d7, d9.
template <class Table>
inline __m128d sin_of_half_turns_widened(__m128d xd, __m128d m, const Table& T) {
  const __m128d r = _mm_sub_pd(_mm_add_pd(_mm_mul_pd(m, T.pi1.pd()), xd), _mm_mul_pd(m, T.pi2.pd()));
  const __m128d z = _mm_mul_pd(r, r);
  return _mm_mul_pd(r, horner(z, T.d9, T.d7, T.d5, T.d3, T.d1));
}

// The four lanes of x as two widened pairs with their multiples m_lo, m_hi;
// the results narrowed back and signed by the parity of the integers k.
template <class Table>
inline __m128 sin_of_half_turns_widened(__m128 x, __m128d m_lo, __m128d m_hi, __m128i k, const Table& T) {
  const __m128d lo = sin_of_half_turns_widened(_mm_cvtps_pd(x), m_lo, T);
  const __m128d hi = sin_of_half_turns_widened(_mm_cvtps_pd(_mm_movehl_ps(x, x)), m_hi, T);
  return flip_sign_if_odd(_mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi)), k);
}

}  // namespace lux::sincos
