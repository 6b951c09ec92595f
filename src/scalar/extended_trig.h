// The extended sine and cosine family: the octant reduction that sin, cos,
// sincos and tan share, and the sine and cosine series they evaluate.
#pragma once

#include "scalar/extended.h"

namespace lux::x80 {

// sin t - t = t^3 (SP[9] + SP[0]) + t^5 (SP[10] + SP[1]) + SP[2] t^7 + ... for |t| <= pi/4:
// SP[9], SP[10] are -1/6 and 1/120 cut to few bits, SP[0], SP[1] their rests.
inline constexpr OrkX80Slot kSP[11] = {
    slot(0xBFF0, 0xAAAAAAAAAAAAAAABull),  // -4.0690104166666664408e-05
    slot(0x3FF0, 0x8888888888888884ull),  // 3.2552083333333332882e-05
    slot(0xBFF2, 0xD00D00D00D00CFFBull),  // -0.00019841269841269841253
    slot(0x3FEC, 0xB8EF1D2AB6397771ull),  // 2.7557319223985871335e-06
    slot(0xBFE5, 0xD7322B3FA9C82DF0ull),  // -2.5052108385431668325e-08
    slot(0x3FDE, 0xB092309CA8E0B798ull),  // 1.6059043833549323027e-10
    slot(0xBFD6, 0xD73F9DF8B7A1CEF7ull),  // -7.6471630522899364805e-13
    slot(0x3FCE, 0xCA949FED3A4F8A69ull),  // 2.8113700990447834639e-15
    slot(0xBFC6, 0x967BC63B3FE9053Cull),  // -8.1577265299765814094e-18
    slot(0xBFFC, 0xAAA0000000000000ull),  // -0.1666259765625
    slot(0x3FF8, 0x8800000000000000ull),  // 0.00830078125
};
// cos t - 1 = t^2 (CP[9] + CP[0]) + t^4 (CP[10] + CP[1]) + CP[2] t^6 + ...: CP[9] = -1/2,
// CP[10] 1/24 cut, CP[0], CP[1] the rests.
inline constexpr OrkX80Slot kCP[11] = {
    slot(0x3FB2, 0xABEC40714050C9AFull),  // 8.8882034531905543083e-24
    slot(0x3FF4, 0xAAAAAAAAAAAAAAA5ull),  // 0.00065104166666666663053
    slot(0xBFF5, 0xB60B60B60B60B5DDull),  // -0.0013888888888888889419
    slot(0x3FEF, 0xD00D00D00D006EDCull),  // 2.4801587301587260908e-05
    slot(0xBFE9, 0x93F27DBBC47E5D08ull),  // -2.7557319223964797155e-07
    slot(0x3FE2, 0x8F76C77EFC0FC2CAull),  // 2.0876756981000118822e-09
    slot(0xBFDA, 0xC9CBA3A10E36FE20ull),  // -1.1470744171462834376e-11
    slot(0x3FD2, 0xD73D83472C35360Aull),  // 4.7792943912126055094e-14
    slot(0xBFCA, 0xB28DFB9BA5869F05ull),  // -1.548714459482671389e-16
    slot(0xBFFE, 0x8000000000000000ull),  // -0.5
    slot(0x3FFA, 0xA800000000000000ull),  // 0.041015625
};
// sin x - x for 2^-11 <= |x| < 2^-5.
inline constexpr OrkX80Slot kSP1[4] = {
    slot(0xBFFC, 0xAAAAAAAAAAAAAAAAull),  // -0.16666666666666665741
    slot(0x3FF8, 0x88888888888830E6ull),  // 0.0083333333333333141357
    slot(0xBFF2, 0xD00D00CF1CE4A850ull),  // -0.00019841269835938328569
    slot(0x3FEC, 0xB8EE0E12BDEADA13ull),  // 2.755670282842949953e-06
};
// sin x - x for 2^-19 <= |x| < 2^-11.
inline constexpr OrkX80Slot kSP2[2] = {
    slot(0xBFFC, 0xAAAAAAAAAAAAA8CAull),  // -0.16666666666666665741
    slot(0x3FF8, 0x88888874E04E0633ull),  // 0.0083333332618210648884
};
// sin x - x for 2^-75 <= |x| < 2^-19.
inline constexpr OrkX80Slot kSP3[1] = {
    slot(0xBFFC, 0xAAAAAAAAAA884444ull),  // -0.16666666666663612628
};
// cos x - 1 for 2^-11 <= |x| < 2^-5.
inline constexpr OrkX80Slot kCP1[4] = {
    slot(0xBFFD, 0xFFFFFFFFFFFFFFFFull),  // -0.5
    slot(0x3FFA, 0xAAAAAAAAAAA9B9ADull),  // 0.041666666666666456187
    slot(0xBFF5, 0xB60B60B4C13A3733ull),  // -0.0013888888883024240375
    slot(0x3FEF, 0xD00B8C0F465D9116ull),  // 2.4800909267773826275e-05
};
// cos x - 1 for 2^-19 <= |x| < 2^-11.
inline constexpr OrkX80Slot kCP2[2] = {
    slot(0xBFFD, 0xFFFFFFFFFFFFF96Full),  // -0.49999999999999994449
    slot(0x3FFA, 0xAAAAAA884444473Eull),  // 0.041666666166080786049
};
// cos x - 1 for 2^-75 <= |x| < 2^-19.
inline constexpr OrkX80Slot kCP3[1] = {
    slot(0xBFFD, 0xFFFFFFFFFFAA0000ull),  // -0.49999999999984723331
};

inline constexpr uint64_t kPi4Inv = 0x3FF45F306DC9C883ull;  // RN(4/pi)
// pi/4 in five parts (n P[i] exact for n < 2^31) and in three (n < 2^17).
inline constexpr uint64_t kPi04x5[5] = {0x3FE921FB54400000ull, 0x3DC0B4611A600000ull, 0x3B93198A2E000000ull,
                                        0x396B839A25200000ull, 0x37027044533E63A0ull};
inline constexpr uint64_t kPi04x3[3] = {0x3FE921FB54442D00ull, 0x3CE8469898CC5180ull, 0xB9DFC8F8CBB5BF6Cull};
inline constexpr uint32_t kReduceField = 0x3FFA;       // |x| >= 2^-5: the octant reduction runs
inline constexpr uint32_t kFivePartField = 0x4010;     // |x| >= 2^17
inline constexpr uint32_t kExactReduceField = 0x401D;  // |x| >= 2^30: orkreduce_pi04l

// |x| = (c & ~1) pi/4 + t, |t| <= pi/4, t = h + l with h short enough that
// h^2 is exact; n = c - 1 is floor(4|x|/pi) (congruent modulo 8 from 2^30).
struct Octant {
  uint32_t c, n;
  ld h, l, t;
};
// S is the shifter of the final split (1.5 2^52 for sin and cos, 1.5 2^48
// for tan); ax = |x| finite, |x| >= 2^-5.
inline Octant octant_reduce(ld ax, uint32_t e, uint64_t S) {
  Octant o;
  if (e >= kExactReduceField) {
    double out[2];
    o.n = orkreduce_pi04l(ax, 0, out);
    o.c = o.n + 1;
    const double s2 = out[0] * __builtin_bit_cast(double, S);
    o.h = (ld(out[0]) + ld(s2)) - ld(s2);
    o.l = (ld(out[0]) - o.h) + ld(out[1]);
    o.t = o.h + o.l;
    return o;
  }
  const ld y = dbl(kPi4Inv) * ax;
  const uint32_t ey = exponent_field(y);
  if (ey < 16383) {
    o.c = 1;
    o.n = 0;
    const Split sp = split_by(ax, dbl(S));
    o.h = sp.h;
    o.l = sp.l;
    o.t = ax;
    return o;
  }
  o.n = uint32_t(image(y).sig >> 32) >> (31 - (ey - 16383));
  o.c = o.n + 1;
  const ld m = ld(o.c & ~1u);
  ld head, low;
  if (e >= kFivePartField) {
    const auto P = [](int i) { return dbl(kPi04x5[i]); };
    const ld a = ax - P(0) * m;
    const ld H = split_by(a, dbl(kTwo32H)).h;
    const ld b1 = P(1) * m, b2 = P(2) * m, b3 = P(3) * m, b4 = P(4) * m;
    const ld H1 = H - b1, H2 = H1 - b2, H3 = H2 - b3, H4 = H3 - b4;
    low = (((a - H) + ((H - H1) - b1)) + ((H1 - H2) - b2)) + ((H2 - H3) - b3);
    low = low + ((H3 - H4) - b4);
    head = H4;
  } else {
    const auto Q = [](int i) { return dbl(kPi04x3[i]); };
    const ld a = ax - Q(0) * m;
    const ld H = split_by(a, dbl(kTwo32H)).h;
    const ld b1 = Q(1) * m;
    const ld H1 = H - b1;
    const ld b2 = Q(2) * m;
    const ld H2 = H1 - b2;
    low = ((a - H) + ((H - H1) - b1)) + ((H1 - H2) - b2);
    head = H2;
  }
  const Split sp = split_by(head, dbl(S));
  o.h = sp.h;
  o.l = sp.l + low;
  o.t = o.h + o.l;
  return o;
}

// The pieces of sin t and cos t shared by the main paths: t^2 and t^4 with
// their roundings under control.
struct Square {
  ld d, g, z, f;
};
inline Square square_of(const Octant& o) {
  Square s;
  s.d = (o.h + o.t) * o.l;
  s.g = o.h * o.h;
  s.z = s.d + s.g;
  s.f = (s.z + s.g) * s.d;
  return s;
}

// sin t or cos t after the reduction, as a head and a rest; the caller
// applies the sign to each before adding them.
struct TwoParts {
  ld head, rest;
};
inline TwoParts sin_or_cos(const Octant& o, bool cosine) {
  const Square s = square_of(o);
  const OrkX80Slot* A = cosine ? kCP : kSP;
  const auto a = [A](int i) { return value(A[i]); };
  const ld g2 = s.g * s.g;
  const ld w = g2 + s.f;
  const ld Ev = (((a(8) * w + a(6)) * w + a(4)) * w + a(2)) * w + a(0);
  const ld Od = (((a(7) * w + a(5)) * w + a(3)) * w + a(1)) * w;
  const ld q = Ev * s.z + Od;
  const ld v = s.d * a(9) + (s.f * a(10) + q);
  const ld u = a(10) * g2 + a(9) * s.g;
  const ld b = split_by(v + u, dbl(kTwo53H)).h;
  if (cosine) {
    const ld k = 1.0L + b;
    return {k, (b + (1.0L - k)) + ((u - b) + v)};
  }
  const ld e = (((u - b) + v) * o.t + o.l * b) + o.l;
  const ld p = o.h + b * o.h;
  return {p, (b * o.h + (o.h - p)) + e};
}

// The short paths of sin and cos below 2^-5 (z = x^2, w = z^2).
inline ld cos_q1(ld x) {
  const ld z = x * x, w = z * z;
  const auto C = [](int i) { return value(kCP1[i]); };
  return ((C(3) * w + C(1)) * w + (w * C(2) + C(0)) * z) + 1.0L;
}

}  // namespace lux::x80
