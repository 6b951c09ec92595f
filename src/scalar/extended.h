// The extended-precision core: scalar routines on one x87 80-bit value, run
// at 64-bit precision under the caller's x87 guard 64.  They set no library
// status; what they signal, they signal through the flags of the unit that
// computed the value.  This header holds their interfaces, the bit image of
// the format, the ten-byte constants and the two table steps (exponential and
// logarithm) that the exponential, logarithmic and hyperbolic routines share.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/lanes.h"
#include "scalar/reduce.h"  // OrkX80Slot

extern "C" {

long double orkexpl_scalar(long double x);    // e^x
long double orklogl_scalar(long double x);    // ln x
long double orklog1pl_scalar(long double x);  // ln(1 + x)
long double orksqrtl_scalar(long double x);   // square root
long double orkfabsl_scalar(long double x);   // |x|
long double orksinhl_scalar(long double x);
long double orkcoshl_scalar(long double x);
long double orktanhl_scalar(long double x);
void orksinhcoshl_scalar(long double x, long double* sinh_out, long double* cosh_out);
long double orksinl_scalar(long double x);
long double orkcosl_scalar(long double x);
long double orktanl_scalar(long double x);
void orksincosl_scalar(long double x, long double* sin_out, long double* cos_out);
long double orkatanl_scalar(long double x);
long double orkatan2l_scalar(long double y, long double x);  // the angle of (x, y)
long double orkasinl_scalar(long double x);
long double orkacosl_scalar(long double x);
long double orkasinhl_scalar(long double x);
long double orkacoshl_scalar(long double x);
long double orkatanhl_scalar(long double x);

// (hi, lo) bit patterns of doubles, hi + lo = 2^(j/256) for j = -128..128 at
// index j + 128; hi has at most 32 significant bits.
extern const uint64_t ork_ork_expl_table_256[257][2];
// c_i = round(2048 / (1 + (i + 1/2)/256)) / 2048 as binary32 bits: the
// reciprocal of the middle of the i-th step of [1, 2) on a grid of 2^-11.
extern const uint32_t ork_ork_rcp_table_256[256];
// (hi, lo) with hi + lo = -ln c_i within 2^-93; hi has 40 significant bits.
extern const uint64_t ork_ork_logl_table_256[256][2];
// (T0, T1) with T0 + T1 = -ln c_i within 2^-75; T1 has 21 significant bits.
extern const uint64_t ork_ork_log_table_256[256][2];

}  // extern "C"

namespace lux::x80 {

using ld = long double;

// The 80-bit image (12 bytes of storage on i386, 16 on x86-64).
struct Image {
  uint64_t sig;  // significand, explicit integer bit 63
  uint16_t se;   // sign << 15 | exponent field (bias 16383)
  char pad[sizeof(ld) - 10];
};
inline Image image(ld v) { return __builtin_bit_cast(Image, v); }
inline ld from_image(uint64_t sig, uint16_t se) {
  Image x{};
  x.sig = sig;
  x.se = se;
  return __builtin_bit_cast(ld, x);
}
inline uint32_t exponent_field(ld v) { return image(v).se & 0x7FFFu; }
// v with its exponent field replaced (the sign cleared).
inline ld with_exponent(ld v, uint32_t field) { return from_image(image(v).sig, uint16_t(field & 0x7FFFu)); }
// 2^(field - 16383) from an exponent field.
inline ld power_of_two(uint32_t field) {
  return from_image(0x8000000000000000ull, uint16_t(field & 0x7FFFu));
}

// The key: sign << 31 | exponent field << 16 | top 16 significand bits.
inline uint32_t key(ld v) {
  const Image im = image(v);
  return uint32_t(im.se) << 16 | uint32_t(im.sig >> 48);
}
// The index into the 256-step tables: the top 8 fraction bits.
inline unsigned step_index(ld v) { return unsigned(image(v).sig >> 55) & 0xFFu; }
inline bool is_nan(ld v) {
  const Image im = image(v);
  return (im.se & 0x7FFF) == 0x7FFF && im.sig != 0x8000000000000000ull;
}

// A ten-byte constant in a 12-byte slot, written as its 20 hex digits split
// into the sign-and-exponent word and the significand.
constexpr OrkX80Slot slot(uint16_t se, uint64_t sig) {
  return OrkX80Slot{{uint32_t(sig), uint32_t(sig >> 32), se}};
}
inline ld value(const OrkX80Slot& s) { return from_image(uint64_t(s.w[1]) << 32 | s.w[0], uint16_t(s.w[2])); }

// Doubles and floats of the tables widen exactly.
inline ld dbl(uint64_t bits) { return ld(__builtin_bit_cast(double, bits)); }
inline ld flt(uint32_t bits) { return ld(__builtin_bit_cast(float, bits)); }

// Keeps the compiler from folding an x87 operation whose side effect (a flag,
// the quieting of a signalling NaN) is the point.
inline ld opaque(ld v) {
  asm volatile("" : "+t"(v));
  return v;
}
// x * 1.0: quiets a signalling NaN (invalid flag), passes the rest.
inline ld quiet(ld x) { return x * opaque(1.0L); }
// Multiplies two values of the special tables and drops the product: raises
// overflow or underflow (with inexact) on the x87 unit.
inline void raise_by_square(ld a, ld b) {
  ld sq = opaque(a) * b;
  asm volatile("" : : "t"(sq));
}
inline void raise_by_square(ld v) { raise_by_square(v, v); }
// v squared, kept: +Inf with overflow or +0 with underflow.
inline ld raise_and(ld v) { return opaque(v) * v; }

// The default NaN of a domain error, +Inf * 0, and the infinity of a pole,
// +-1 / 0, made in double precision on the SSE unit, then widened.
inline ld sse_default_nan() {
  const __m128d inf = lux::opaque(_mm_set_sd(__builtin_inf()));
  double r;
  _mm_store_sd(&r, lux::opaque(_mm_mul_sd(inf, _mm_setzero_pd())));
  return ld(r);
}
inline ld sse_pole(double one) {
  const __m128d num = lux::opaque(_mm_set_sd(one));
  double r;
  _mm_store_sd(&r, lux::opaque(_mm_div_sd(num, _mm_setzero_pd())));
  return ld(r);
}

// Rounding by a shifter: (a + S) - S.
inline ld round_by(ld a, ld S) { return (a + S) - S; }
// The scale-free split: t = S a, h = (a + t) - t keeps the leading bits of a
// at any magnitude; the rest is a - h.
struct Split {
  ld h, l;
};
inline Split split_by(ld a, ld S) {
  const ld t = S * a;
  const ld h = (a + t) - t;
  return {h, a - h};
}

// Shifters and split constants, as bits of doubles.
inline constexpr uint64_t kTwo63H = 0x43E8000000000000ull;  // 1.5 2^63
inline constexpr uint64_t kTwo32H = 0x41F8000000000000ull;  // 1.5 2^32: multiples of 2^-31
inline constexpr uint64_t kTwo48H = 0x42F8000000000000ull;  // 1.5 2^48: multiples of 2^-15
inline constexpr uint64_t kTwo52H = 0x4338000000000000ull;  // 1.5 2^52: multiples of 2^-11
inline constexpr uint64_t kTwo53H = 0x4348000000000000ull;  // 1.5 2^53: multiples of 2^-10
inline constexpr uint64_t kTwo12H = 0x40B8000000000000ull;  // 6144: scale-free split
inline constexpr uint64_t kTwo75 = 0x44A0000000000000ull;   // 2^75
inline constexpr uint64_t kTwoM75 = 0x3B40000000000000ull;  // 2^-75
inline constexpr uint64_t kKLn2 = 0x40771547652B82FEull;    // 256 / ln 2
// ln 2 / 256 and ln 2 as high part (enough trailing zeros that N times it is
// exact for |N| < 2^24) and low part.
inline constexpr uint64_t kLn2K[2] = {0x3F662E42FF000000ull, 0xBD4718432A1B0E26ull};
inline constexpr uint64_t kLn2[2] = {0x3FE62E42FF000000ull, 0xBDC718432A1B0E26ull};

// 2^-10000 and 2^10000 with both signs: squared, they underflow or overflow.
inline constexpr OrkX80Slot kSmallValue[2] = {slot(0x18EF, 0x8000000000000000ull),
                                              slot(0x98EF, 0x8000000000000000ull)};
inline constexpr OrkX80Slot kLargeValue[2] = {slot(0x670F, 0x8000000000000000ull),
                                              slot(0xE70F, 0x8000000000000000ull)};
// 2^-10000 + 1, dropped: raises inexact alone.
inline void raise_inexact() {
  ld v = opaque(value(kSmallValue[0])) + 1.0L;
  asm volatile("" : : "t"(v));
}

// pi/2 and pi rounded to the format (up, in their last bit), both signs.
inline constexpr OrkX80Slot kPi2l[2] = {slot(0x3FFF, 0xC90FDAA22168C235ull),
                                        slot(0xBFFF, 0xC90FDAA22168C235ull)};
inline constexpr OrkX80Slot kPi0l[2] = {slot(0x4000, 0xC90FDAA22168C235ull),
                                        slot(0xC000, 0xC90FDAA22168C235ull)};

// ln(1 + r) - r + r^2/2 ... as r^2 q(r): the logarithm polynomial shared by
// the table logarithm step of ln, log1p and the inverse hyperbolics.
// |r| < 2^-8.5: c_i lies within 2^-12 of the reciprocal of the step's middle.
inline constexpr OrkX80Slot kLogP[6] = {
    slot(0xBFFE, 0x8000000000000041ull),  // -0.5
    slot(0x3FFD, 0xAAAAAAAAAAAAABEAull),  // 1/3
    slot(0xBFFC, 0xFFFFFFFFEFE6E52Eull),  // -1/4
    slot(0x3FFC, 0xCCCCCCCCB4796149ull),  // 1/5
    slot(0xBFFC, 0xAAAAFBDE6BC3DEDDull),  // -1/6
    slot(0x3FFC, 0x92497ECBBF12A224ull),  // 1/7
};

// e^r - 1 - r = r^2 (P0 + P1 r + ...) for |r| <= ln 2 / 512: the polynomial
// of the table exponential step.
inline constexpr OrkX80Slot kExpP[5] = {
    slot(0x3FFE, 0x8000000000000000ull),  // 0.5
    slot(0x3FFC, 0xAAAAAAAAAAA0293Eull),  // 0.16666666666665733154
    slot(0x3FFA, 0xAAAAAAAAAAA0E910ull),  // 0.041666666666664499419
    slot(0x3FF8, 0x88888B443E6BDC82ull),  // 0.0083333358788653041915
    slot(0x3FF5, 0xB60B6439B9331BC1ull),  // 0.0013888892980155268918
};

// The table exponential step: y = (256 k + j) ln 2 / 256 + r, |y| < 2^14,
// r = rh + rl.  `round_rh` rounds rh to a multiple of 2^-31 (so that rh hi
// is exact); otherwise rh = a - b.
struct ExpStep {
  int32_t k, j;
  ld rh, rl, r, z;
  ld hi, lo;  // 2^(j/256) = hi + lo
};
inline ExpStep table_exp_step(ld y, bool round_rh) {
  ExpStep s;
  const ld w = y * dbl(kKLn2) + dbl(kTwo63H);
  const int32_t n = int32_t(uint32_t(image(w).sig));
  const ld nf = w - dbl(kTwo63H);
  s.j = int32_t(int8_t(n & 0xFF));
  s.k = (n - s.j) >> 8;
  const ld a = y - dbl(kLn2K[0]) * nf;
  const ld b = nf * dbl(kLn2K[1]);
  s.rh = round_rh ? round_by(a - b, dbl(kTwo32H)) : a - b;
  s.rl = (a - s.rh) - b;
  s.r = s.rh + s.rl;
  s.z = s.r * s.r;
  s.hi = dbl(ork_ork_expl_table_256[s.j + 128][0]);
  s.lo = dbl(ork_ork_expl_table_256[s.j + 128][1]);
  return s;
}
// N of the step above, for the tests of the exponential's denormal range.
inline int32_t exp_step_n(const ExpStep& s) { return s.k * 256 + s.j; }

// The table logarithm step: ln(2^k (A + B)) for A + B in [1, 2) (or, with the
// scale folded into c, A + B in [2^k, 2^(k+1))), A with at most 32 significant
// bits so that A c is exact.  c is c_i, possibly scaled by 2^-k; hi + lo is
// -ln c_i.
inline ld table_log_step(ld A, ld B, int32_t k, ld c, ld hi, ld lo) {
  const ld r1 = A * c - 1.0L;
  const ld r2 = B * c;
  const ld r = r1 + r2;
  const ld z = r * r;
  const ld q = (value(kLogP[1]) + (value(kLogP[3]) + value(kLogP[5]) * z) * z) * r +
               ((value(kLogP[2]) + value(kLogP[4]) * z) * z + value(kLogP[0]));
  const ld kf = ld(k);
  return (r1 + (kf * dbl(kLn2[0]) + hi)) + ((r2 + z * q) + (dbl(kLn2[1]) * kf + lo));
}
inline ld table_log_step(ld A, ld B, int32_t k, unsigned i, ld c) {
  return table_log_step(A, B, k, c, dbl(ork_ork_logl_table_256[i][0]), dbl(ork_ork_logl_table_256[i][1]));
}
inline ld rcp_c(unsigned i) { return flt(ork_ork_rcp_table_256[i]); }

// A + B brought into [1, 2): v = A + B, k = its binary exponent, both parts
// times 2^-k (exact), i the step of v.
struct UnitSum {
  ld A, B;
  int32_t k;
  unsigned i;
};
inline UnitSum to_unit(ld A, ld B) {
  const ld v = A + B;
  const uint32_t field = exponent_field(v);
  const ld scale = power_of_two((0u - field - 2u) & 0x7FFFu);
  return {A * scale, B * scale, int32_t(field) - 16383, step_index(v)};
}

// The short polynomial paths of the odd routines (sinh, tanh, asinh, atanh):
// z = x^2, w = z^2.
inline ld odd_q1(ld x, const OrkX80Slot* Q) {
  const ld z = x * x, w = z * z;
  return x + (((value(Q[3]) * w + value(Q[1])) * w + (w * value(Q[2]) + value(Q[0])) * z) * x);
}
inline ld odd_q2(ld x, const OrkX80Slot* Q) {
  const ld z = x * x;
  return x + (z * (value(Q[1]) * z + value(Q[0]))) * x;
}
inline ld odd_q3(ld x, const OrkX80Slot& Q) { return x + ((value(Q) * x) * x) * x; }

// sign as an index (0 for +, 1 for -) and the constants it selects.
inline unsigned sign_of(ld x) { return image(x).se >> 15; }
inline constexpr OrkX80Slot kOnes[2] = {slot(0x3FFF, 0x8000000000000000ull),
                                        slot(0xBFFF, 0x8000000000000000ull)};

}  // namespace lux::x80
