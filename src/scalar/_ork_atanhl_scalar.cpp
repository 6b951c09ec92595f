// orkatanhl_scalar: atanh x in the 80-bit format at 64-bit precision:
// ln((1 + |x|)/(1 - |x|)) / 2 with the quotient in two parts into the table
// logarithm step from 0.25 on, an odd polynomial with split leading terms
// below.
// max error 0.5001 ulp (64-bit significand) at x = -0xb.18d7481882a8053p-22.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kPoleField = 0x3FFF;      // |x| >= 1: poles at +-1, NaN beyond
constexpr uint32_t kQuotientField = 0x3FFD;  // |x| >= 0.25
constexpr uint32_t kQField = 0x3FF8;         // |x| >= 2^-7
constexpr uint32_t kQ1Field = 0x3FF3;        // |x| >= 2^-12
constexpr uint32_t kQ2Field = 0x3FED;        // |x| >= 2^-18
constexpr uint32_t kQ3Field = 0x3FB4;        // |x| >= 2^-75; below, atanh x = x (1 + 2^-75) rounded

struct AtanhlTab {
  OrkX80Slot halfs[2];  // 0.5, -0.5
  // atanh x - x for 2^-7 <= |x| < 0.25: Q[12], Q[13] are 1/3 and 1/5 cut,
  // Q[0], Q[1] their rests; Q[2..11] the coefficients of x^7 .. x^25.
  OrkX80Slot Q[14];
  OrkX80Slot Q1[4], Q2[2], Q3;  // 2^-12, 2^-18, 2^-75 to the path above
};
constexpr AtanhlTab kTab = {
    .halfs = {slot(0x3FFE, 0x8000000000000000ull), slot(0xBFFE, 0x8000000000000000ull)},
    .Q = {slot(0x3FF1, 0xAAAAAAAAAAAAA85Dull),    // 8.1380208333333328816e-05
          slot(0x3FF0, 0xCCCCCCCCCCD91231ull),    // 4.8828125000002659006e-05
          slot(0x3FFC, 0x924924924923A689ull),    // 0.1428571428571420443
          slot(0x3FFB, 0xE38E38E38F6F2BD7ull),    // 0.1111111111112488975
          slot(0x3FFB, 0xBA2E8BA26C10FBD1ull),    // 0.090909090894918595516
          slot(0x3FFB, 0x9D89D8BE20131B39ull),    // 0.076923077871478492962
          slot(0x3FFB, 0x888882C89F673CA2ull),    // 0.066666623828428250853
          slot(0x3FFA, 0xF0F2559E1C27AC5Cull),    // 0.058824858135048715968
          slot(0x3FFA, 0xD7768B6EF27933B4ull),    // 0.052603287374181115221
          slot(0x3FFA, 0xC4B4D8B7D8AC035Bull),    // 0.048024031214974449711
          slot(0x3FFA, 0xA2F3033683474AF2ull),    // 0.039782536078023351955
          slot(0x3FFA, 0xF19FC1302505C9A7ull),    // 0.058990244522932618054
          slot(0x3FFD, 0xAAA0000000000000ull),    // 0.333251953125
          slot(0x3FFC, 0xCCC0000000000000ull)},   // 0.199951171875
    .Q1 = {slot(0x3FFD, 0xAAAAAAAAAAAAAAA6ull),   // 0.33333333333333331483
           slot(0x3FFC, 0xCCCCCCCCCCDF148Aull),   // 0.20000000000001624811
           slot(0x3FFC, 0x92492485866528C7ull),   // 0.14285714211437042231
           slot(0x3FFB, 0xE39580AFC2E762A5ull)},  // 0.11112499748593379634
    .Q2 = {slot(0x3FFD, 0xAAAAAAAAAAAA8164ull),   // 0.33333333333333303727
           slot(0x3FFC, 0xCCCCCDA8715FE46Eull)},  // 0.20000001278489767942
    .Q3 = slot(0x3FFD, 0xAAAAAAAAB112AAABull),    // 0.33333333333624654005
};

ld quotient_path(ld x, unsigned sign) {
  const ld ax = x * value(kOnes[sign]);
  const ld S = dbl(kTwo48H);
  const ld hp = split_by(1.0L + ax, S).h;
  const ld lp = (1.0L - hp) + ax;
  const ld hm = split_by(1.0L - ax, S).h;
  const ld lm = (1.0L - hm) - ax;
  const ld den = hm + lm;
  const ld q = 1.0L / den;
  const ld qh = split_by(q, S).h;
  const ld ql = q - qh;
  const ld A = qh * hp;
  const ld B = qh * lp + (ql + ((1.0L - hm * qh) - (den * ql + lm * qh)) * q) * (lp + hp);
  const UnitSum u = to_unit(A, B);
  return table_log_step(u.A, u.B, u.k, u.i, rcp_c(u.i)) * value(kTab.halfs[sign]);
}

ld q_path(ld x) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const Split sp = split_by(x, dbl(kTwo52H));
  const ld h = sp.h, l = sp.l;
  const ld d = (x + h) * l;
  const ld g = h * h;
  const ld f = (g + (g + d)) * d;
  const ld w = g * g + f;
  const ld A = (((((Q(11) * w + Q(9)) * w + Q(7)) * w + Q(5)) * w + Q(3)) * w + Q(1)) * w;
  const ld B = (w * ((((Q(10) * w + Q(8)) * w + Q(6)) * w + Q(4)) * w + Q(2)) + Q(0)) * (g + d);
  const ld u = g * Q(12) + Q(13) * (g * g);
  const ld m = round_by(u, dbl(kTwo48H));
  return (m * h + h) + ((((u - m) + (d * Q(12) + (f * Q(13) + (A + B)))) * x + m * l) + l);
}

}  // namespace

extern "C" long double orkatanhl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kPoleField) {
    if (is_nan(x)) return quiet(x);
    if (e == kPoleField && image(x).sig == 0x8000000000000000ull) return sse_pole(sign ? -1.0 : 1.0);
    return sse_default_nan();
  }
  if (e >= kQuotientField) return quotient_path(x, sign);
  if (e >= kQField) return q_path(x);
  if (e >= kQ1Field) return odd_q1(x, kTab.Q1);
  if (e >= kQ2Field) return odd_q2(x, kTab.Q2);
  if (e >= kQ3Field) return odd_q3(x, kTab.Q3);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    return opaque(value(kSmallValue[0])) * value(kSmallValue[sign]) + x;
  }
  return (x + dbl(kTwo75) * x) * dbl(kTwoM75);
}
