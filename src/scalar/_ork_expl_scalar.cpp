// orkexpl_scalar: e^x in the 80-bit format at 64-bit precision, by a table of
// 2^(j/256) and a short polynomial, or a polynomial alone for |x| < 2^-5.
// max error 0.5005 ulp (64-bit significand) at x = -0xe.dd62552e3d227ccp+9.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

// Paths by exponent field.
constexpr uint32_t kBoundTestField = 0x400C;  // |x| >= 4096: compare with the finite ranges
constexpr uint32_t kLargeField = 0x4005;      // |x| >= 64: 2^k in two factors
constexpr uint32_t kMiddleField = 0x3FFA;     // |x| >= 2^-5: table step, 2^k as a float
constexpr uint32_t kQ0Field = 0x3FF4;         // |x| >= 2^-11
constexpr uint32_t kQ1Field = 0x3FED;         // |x| >= 2^-18
constexpr uint32_t kQ2Field = 0x3FE5;         // |x| >= 2^-26
constexpr uint32_t kQ3Field = 0x3FBC;         // |x| >= 2^-67; below, e^x = 1 + x rounded once

// Results that may be denormal: N = round(256 x / ln 2) in [low, high) and x
// below the logarithm of the least normal value.
constexpr int32_t kDenormalNLow = -4196735;
constexpr int32_t kDenormalNHigh = -4193664;

struct ExplTab {
  // Significands (exponent field 0x400C) of 11356.52340629414357, beyond
  // which e^x overflows, and of -11400.191678669420071, beyond which it is
  // below half the least denormal.
  uint64_t ranges[2];
  OrkX80Slot expbut;       // -11355.137111933023334 = ln(2^-16382)
  OrkX80Slot minnorm;      // 2^-16382
  uint16_t sc2_bias[2];    // exponent bias of the first factor of 2^k, x > 0 and x < 0
  OrkX80Slot sc2[2];       // the second factor: 2^8192, 2^-8192
  OrkX80Slot inf_zero[2];  // e^+Inf, e^-Inf
  // e^x - 1 - x = x^2 (Q0 + Q1 x + ...) by the size of x: 2^-11 to 2^-5,
  // 2^-18 to 2^-11, 2^-26 to 2^-18, 2^-67 to 2^-26.
  OrkX80Slot Q0[8], Q1[4], Q2[2], Q3;
};

constexpr ExplTab kTab = {
    .ranges = {0xB17217F7D1CF79ACull, 0xB220C44769C201E8ull},
    .expbut = slot(0xC00C, 0xB16C8C671210EB2Full),
    .minnorm = slot(0x0001, 0x8000000000000000ull),
    .sc2_bias = {0x1FFF, 0x5FFF},
    .sc2 = {slot(0x5FFF, 0x8000000000000000ull), slot(0x1FFF, 0x8000000000000000ull)},
    .inf_zero = {slot(0x7FFF, 0x8000000000000000ull), slot(0x0000, 0x0000000000000000ull)},
    .Q0 = {slot(0x3FFE, 0x8000000000000000ull),   // 0.5
           slot(0x3FFC, 0xAAAAAAAAAAAAAAABull),   // 0.16666666666666665741
           slot(0x3FFA, 0xAAAAAAAAAAAAF4A4ull),   // 0.041666666666666733743
           slot(0x3FF8, 0x888888888888D282ull),   // 0.0083333333333333488302
           slot(0x3FF5, 0xB60B60B55270F231ull),   // 0.0013888888885603754668
           slot(0x3FF2, 0xD00D00CF285A5521ull),   // 0.00019841269836192785398
           slot(0x3FEF, 0xD00E28B5D143466Bull),   // 2.4802125536051511861e-05
           slot(0x3FEC, 0xB8F02A2A5CBBD47Aull)},  // 2.755793085606798048e-06
    .Q1 = {slot(0x3FFD, 0xFFFFFFFFFFFFFE94ull),   // 0.5
           slot(0x3FFC, 0xAAAAAAAAAAAAA90Bull),   // 0.16666666666666665741
           slot(0x3FFA, 0xAAAAAAC16C16C2EEull),   // 0.041666666997803580852
           slot(0x3FF8, 0x8888889C09C09C28ull)},  // 0.0083333334042912446393
    .Q2 = {slot(0x3FFE, 0x8000000000555555ull),   // 0.50000000000030320191
           slot(0x3FFC, 0xAAAAAAAAAB333333ull)},  // 0.16666666666678792152
    .Q3 = slot(0x3FFE, 0x8000000000000001ull),    // 0.5
};

inline ld P(int i) { return value(kExpP[i]); }

// |x| from 64 to the overflow or underflow bound.
ld large_path(ld x, unsigned sign) {
  const ExpStep s = table_exp_step(x, true);
  const ld sc = power_of_two(uint32_t(s.k + kTab.sc2_bias[sign]));
  const ld sc2 = value(kTab.sc2[sign]);
  const ld r = s.r, z = s.z, rh = s.rh, hi = s.hi, lo = s.lo;
  const ld p = ((((P(2) + P(4) * z) * z) * z + r * ((P(3) * z + P(1)) * z)) + z * P(0)) + s.rl;
  const ld t = rh * hi;
  const ld sum = hi + t;
  const ld u = (((hi - sum) + t) + lo) + (hi * p + (p + rh) * lo);
  const ld res = u + sum;
  const int32_t n = exp_step_n(s);
  ld result;
  if (n >= kDenormalNLow && n < kDenormalNHigh && x < value(kTab.expbut)) {
    // The result may be denormal: round it once, from a head with few bits
    // (its product by the scale is exact) and the rest.
    const Split sp = split_by(res, dbl(kTwo12H));
    const ld p1 = sp.h;
    const ld p2 = u + (sum - p1);
    result = (p1 * sc) * sc2 + (p2 * sc) * sc2;
  } else {
    result = (sc * res) * sc2;
  }
  if (result < value(kTab.minnorm)) raise_by_square(value(kSmallValue[0]));
  return result;
}

// 2^-5 <= |x| < 64.
ld middle_path(ld x) {
  const ExpStep s = table_exp_step(x, true);
  const ld scale = ld(__builtin_bit_cast(float, uint32_t((s.k << 23) + 0x3F800000)));
  const ld r = s.r, z = s.z, rh = s.rh, hi = s.hi, lo = s.lo;
  const ld p = ((r * ((P(3) * z + P(1)) * z) + ((P(4) * z + P(2)) * z) * z) + z * P(0)) + s.rl;
  const ld t = rh * hi;
  const ld sum = hi + t;
  return (sum + ((hi * p + (p + rh) * lo) + (lo + ((hi - sum) + t)))) * scale;
}

}  // namespace

extern "C" long double orkexpl_scalar(long double x) {
  const Image im = image(x);
  const uint32_t e = im.se & 0x7FFFu;
  const unsigned sign = im.se >> 15;
  if (e >= kBoundTestField) {
    if (e == kBoundTestField && im.sig < kTab.ranges[sign]) return large_path(x, sign);
    if (e == 0x7FFF) {
      if (im.sig == 0x8000000000000000ull) return value(kTab.inf_zero[sign]);
      return quiet(x);
    }
    const ld v = sign ? value(kSmallValue[0]) : value(kLargeValue[0]);
    return opaque(v) * v;  // +Inf with overflow, +0 with underflow
  }
  if (e >= kLargeField) return large_path(x, sign);
  if (e >= kMiddleField) return middle_path(x);
  if (e < kQ3Field) return x + 1.0L;
  const ld z = x * x;
  const ld h = x + 1.0L;
  const ld l = x - (h - 1.0L);
  if (e >= kQ0Field) {
    const auto Q = [](int i) { return value(kTab.Q0[i]); };
    const ld odd = ((Q(7) * z + Q(5)) * z + Q(3)) * z + Q(1);
    const ld even = ((Q(6) * z + Q(4)) * z + Q(2)) * z + Q(0);
    return h + ((odd * z) * x + (even * z + l));
  }
  if (e >= kQ1Field) {
    const auto Q = [](int i) { return value(kTab.Q1[i]); };
    return (l + (((Q(3) * z + Q(1)) * z + (Q(2) * z + Q(0)) * x) * x)) + h;
  }
  if (e >= kQ2Field) {
    const ld Q0 = value(kTab.Q2[0]), Q1 = value(kTab.Q2[1]);
    return (x + ((Q1 * x + Q0) * x) * x) + 1.0L;
  }
  return (x + (value(kTab.Q3) * x) * x) + 1.0L;
}
