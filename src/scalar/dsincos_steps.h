// The steps that _dSin, _dCos and _dSinCos share: reduction to the grid of
// pi/32 (with the exact reduction beyond 2^17), the two short polynomials,
// and the reconstruction from one table entry.  Each core binds its own
// table; only the mechanism is written once.
#pragma once

#include <stdint.h>

#include "scalar/reduce.h"
#include "scalar/trig_scalar.h"

namespace lux::trig {

inline double f64(uint64_t b) { return __builtin_bit_cast(double, b); }
inline uint64_t bits(double d) { return __builtin_bit_cast(uint64_t, d); }
inline double lane(__m128d v) { return _mm_cvtsd_f64(v); }
inline __m128d as_lane(double d) { return _mm_set_sd(d); }

// Hides a value from the optimiser, so that an operation whose side effect
// is the point (x * 0.0 raising invalid) is really carried out.
inline double opaque(double v) {
  asm volatile("" : "+x"(v));
  return v;
}

inline constexpr uint32_t kTinyExponent = 0x303;    // |x| < 2^-252: x itself (or 1 - |x|)
inline constexpr uint32_t kReduceExponent = 0x410;  // |x| >= 2^17: exact reduction first

// The lane of a NaN or an infinity: x 0 for an infinity (NaN, raising
// invalid), x x for a NaN (quieted).  zero is the unit's own 0.0.
inline __m128d not_finite(double x, uint64_t zero) {
  if ((bits(x) & 0x000FFFFFFFFFFFFFull) == 0) return as_lane(x * opaque(f64(zero)));
  return as_lane(x * x);
}

// sin x for |x| < 2^-252: the zero itself, sign included, or x with inexact
// raised by a rounded product; two55 and two_m55 are the unit's 2^55, 2^-55.
inline __m128d sin_of_tiny(__m128d xv, uint64_t two55, uint64_t two_m55) {
  const double x = lane(xv);
  if ((bits(x) << 1) == 0) return xv;
  return as_lane((f64(two55) * opaque(x) - x) * f64(two_m55));
}

// cos x for |x| < 2^-252: 1 - |x|, 1.0 rounded, inexact raised unless x is 0.
inline __m128d cos_of_tiny(double x, uint64_t one) {
  return as_lane(f64(one) - f64(bits(opaque(x)) & 0x7FFFFFFFFFFFFFFFull));
}

// x = (16q + k) pi/32 + r + c, r the head of the distance from the grid
// point, c its tail; z = r^2; S ~ sin r / r - 1; C ~ cos r - 1.
struct GridPoint {
  uint32_t index;  // 16q + k, before the mask
  double r, c, z, S, C;
};

inline GridPoint to_grid(const OrkSinCosConsts& K, double x, uint32_t e) {
  uint32_t q = 0;
  double corr = 0.0;
  if (e >= kReduceExponent) {
    double out[2];
    q = orkreduce_pio2d(x, out);
    x = out[0];
    corr = out[1];
  }
  const double t = x * f64(K.inv_step) + f64(K.shifter);
  const uint32_t k = uint32_t(bits(t));
  const double n = t - f64(K.shifter);
  const double P1 = f64(K.step[0]), P2 = f64(K.step[1]), P3 = f64(K.step[2]);
  const double u = x - n * P1;
  const double r = u - n * P2;
  const double c = (((u - r) - n * P2) - n * P3) + corr;
  const double z = r * r;
  const double S =
      (((f64(K.sin_c[3]) * z + f64(K.sin_c[2])) * z + f64(K.sin_c[1])) * z + f64(K.sin_c[0])) * z;
  const double C =
      (((f64(K.cos_c[3]) * z + f64(K.cos_c[2])) * z + f64(K.cos_c[1])) * z + f64(K.cos_c[0])) * z;
  return {(q << 4) + k, r, c, z, S, C};
}

// sin(a + r + c) from the entry of angle a:
//   sin a + cos a r + cos a r S + sin a C + (cos a - r sin a) c,
// with sin a and cos a each as head and tail and the leading sums exact.
inline double from_entry(const OrkSinCosEntry& E, const GridPoint& g) {
  const double ct = f64(E.cos_tail), sh = f64(E.sin_head), st = f64(E.sin_tail), ch = f64(E.cos_head);
  const double T = ct + ch;
  const double PS = (g.S * g.r) * T;
  const double PC = g.C * sh;
  const double B = ch * g.r;  // exact: ch is a power of two
  const double A = sh + B;
  const double R = ct * g.r;
  const double H = R + A;
  const double lowA = B + (sh - A);
  const double lowH = R + (A - H);
  const double L = g.c * (T - g.r * sh) + st;
  return H + ((((PS + PC) + L) + lowA) + lowH);
}

}  // namespace lux::trig
