// The binary64 sine and cosine kernels that step through a table of angles
// a = k pi/N, written once for the sine; the cosine is the same arithmetic on
// a table turned by a quarter, cos x = sin(x + pi/2).  Each unit keeps its own
// table, grid and polynomial lengths and hands them in.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"

namespace lux::sincos {

// Head-tail tables (the 0.5-ulp tiers).  x = k pi/N + r + c with |r| <= pi/2N
// and c the tail of the three-part reduction; with a the angle of entry k,
//   sin(a + r + c) = sin a + r cos a + r cos a S + sin a C
//                    + (cos a - r sin a) c,
// S ~ sin r / r - 1 and C ~ cos r - 1.  The first two terms are carried as a
// head H with the errors of its two additions; cos a r with cos a split into
// a power of two (the product exact) and a tail.
//
// Table: entry[N] of OrkSinCosEntry, and rows grid_per_radian (N/pi),
// shifter (1.5 2^52), step1..step3 (pi/N in three parts, n step1 and
// n step2 exact on the vector path).  sin_poly(z) and cos_poly(z) give the
// polynomials in z = r^2 before their last product by z.  kRowOffset turns
// the table: with a quarter of its entries, the sine table gives the cosine.
template <int kRowOffset = 0, class Table, class SinPoly, class CosPoly>
inline __m128d sin_on_head_tail_table(__m128d x, const Table& T, SinPoly sin_poly, CosPoly cos_poly) {
  constexpr int kIndexMask = sizeof(Table::entry) / sizeof(Table::entry[0]) - 1;
  static_assert((kIndexMask & (kIndexMask + 1)) == 0, "the grid has a power of two of entries");
  // k = rint(x N/pi) in the low word of t; n = k as a double.
  const __m128d t = _mm_add_pd(_mm_mul_pd(x, T.grid_per_radian.pd()), T.shifter.pd());
  const __m128d n = _mm_sub_pd(t, T.shifter.pd());
  const __m128i ti = as_int(t);
  const OrkSinCosEntry& e0 = T.entry[(_mm_cvtsi128_si32(ti) + kRowOffset) & kIndexMask];
  const OrkSinCosEntry& e1 =
      T.entry[(_mm_cvtsi128_si32(_mm_unpackhi_epi64(ti, ti)) + kRowOffset) & kIndexMask];

  // r + c = x - k pi/N: u is exact, c keeps what r lost.
  const __m128d u = _mm_sub_pd(x, _mm_mul_pd(n, T.step1.pd()));
  const __m128d r = _mm_sub_pd(u, _mm_mul_pd(n, T.step2.pd()));
  const __m128d c =
      _mm_sub_pd(_mm_sub_pd(_mm_sub_pd(u, r), _mm_mul_pd(n, T.step2.pd())), _mm_mul_pd(n, T.step3.pd()));

  const __m128d a0 = _mm_load_pd(reinterpret_cast<const double*>(&e0.cos_tail));
  const __m128d a1 = _mm_load_pd(reinterpret_cast<const double*>(&e1.cos_tail));
  const __m128d b0 = _mm_load_pd(reinterpret_cast<const double*>(&e0.sin_tail));
  const __m128d b1 = _mm_load_pd(reinterpret_cast<const double*>(&e1.sin_tail));
  const __m128d cos_tail = _mm_unpacklo_pd(a0, a1);
  const __m128d sin_head = _mm_unpackhi_pd(a0, a1);
  const __m128d sin_tail = _mm_unpacklo_pd(b0, b1);
  const __m128d cos_head = _mm_unpackhi_pd(b0, b1);

  const __m128d cos_a = _mm_add_pd(cos_head, cos_tail);
  // The argument's tail through the derivative of sin at a + r.
  const __m128d L = _mm_add_pd(_mm_mul_pd(_mm_sub_pd(cos_a, _mm_mul_pd(sin_head, r)), c), sin_tail);

  const __m128d z = _mm_mul_pd(r, r);
  const __m128d S = _mm_mul_pd(sin_poly(z), z);
  const __m128d C = _mm_mul_pd(cos_poly(z), z);
  const __m128d PS = _mm_mul_pd(_mm_mul_pd(S, r), cos_a);
  const __m128d PC = _mm_mul_pd(C, sin_head);

  // sin a + r cos a as head H with the errors of its two additions.
  const __m128d B = _mm_mul_pd(cos_head, r);  // exact: cos_head is a power of two
  const __m128d A = _mm_add_pd(sin_head, B);
  const __m128d R = _mm_mul_pd(cos_tail, r);
  const __m128d H = _mm_add_pd(R, A);
  const __m128d lowA = _mm_add_pd(_mm_sub_pd(sin_head, A), B);
  const __m128d lowH = _mm_add_pd(_mm_sub_pd(A, H), R);

  return _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(lowA, L), lowH), PS), PC), H);
}

// Plain tables (the 26-bit tier).  x = k pi/32 + r, |r| <= pi/64; with a the
// angle of row k + kRowOffset (0 for the sine, 16 for the cosine),
//   sin(a + r) = cos r sin a + sin r cos a,
// sin r and cos r from their Taylor series to r^5 and r^4.
//
// Table: cos_sin[64] = {RN(cos a), RN(sin a)}, and rows grid_per_radian
// (32/pi), shifter, step1..step3, s3, s5, c2, c4, one.
template <int kRowOffset, class Table>
inline __m128d sin_on_plain_table(__m128d x, const Table& T) {
  const __m128d t = _mm_add_pd(_mm_mul_pd(x, T.grid_per_radian.pd()), T.shifter.pd());
  const __m128d n = _mm_sub_pd(t, T.shifter.pd());
  const __m128i ti = as_int(t);
  const __m128d row0 =
      _mm_load_pd(reinterpret_cast<const double*>(T.cos_sin[(_mm_cvtsi128_si32(ti) + kRowOffset) & 0x3F]));
  const __m128d row1 = _mm_load_pd(reinterpret_cast<const double*>(
      T.cos_sin[(_mm_cvtsi128_si32(_mm_unpackhi_epi64(ti, ti)) + kRowOffset) & 0x3F]));
  const __m128d ca = _mm_unpacklo_pd(row0, row1);
  const __m128d sa = _mm_unpackhi_pd(row0, row1);

  // r = x - n pi/32 in three steps; the first two products are exact, so
  // r has a relative error of about 2^-53 even where x is close to a
  // multiple of pi and the result is tiny.  (With RN(pi/32) as the first
  // part, n * step1 is rounded and an absolute error up to 2^-37 in r left
  // sines near such x with no correct bit: sin(0x1.6c6cbc45dc8dep+6) came
  // out as 3.6e-15 for -1.2e-18.)  No tail is kept.
  const __m128d r = subtract_multiples(x, n, T.step1, T.step2, T.step3);
  const __m128d z = _mm_mul_pd(r, r);
  const __m128d SP = _mm_mul_pd(horner(z, T.s5, T.s3, T.one), r);
  const __m128d CP = horner(z, T.c4, T.c2, T.one);
  return _mm_add_pd(_mm_mul_pd(CP, sa), _mm_mul_pd(SP, ca));
}

}  // namespace lux::sincos
