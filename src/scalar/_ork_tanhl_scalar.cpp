// orktanhl_scalar: tanh x in the 80-bit format at 64-bit precision:
// 1 - 2/(1 + e^2|x|) with a Newton-corrected reciprocal from 0.5, an odd
// polynomial with split leading terms below, +-1 from 32 on.
// max error 0.502 ulp (64-bit significand) at x = -0xf.11b286ee99c795ap-5.
#include "scalar/hyperbolic_steps.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kSaturatedField = 0x4004;        // |x| >= 32: +-1, inexact
constexpr uint32_t kPlainQuotientKey = 0x40019666;  // |x| >= 4.699951171875: no correction needed
constexpr uint32_t kQField = 0x3FF8;                // |x| >= 2^-7
constexpr uint32_t kQ1Field = 0x3FF3;               // |x| >= 2^-12
constexpr uint32_t kQ2Field = 0x3FED;               // |x| >= 2^-18
constexpr uint32_t kQ3Field = 0x3FB4;               // |x| >= 2^-75; below, tanh x = x (1 - 2^-75) rounded

struct TanhlTab {
  OrkX80Slot twos[2];  // 2.0, -2.0
  // tanh x - x for 2^-7 <= |x| < 0.5: Q[16], Q[17] are -1/3 and 2/15 cut to
  // 16 bits, Q[0], Q[1] their rests; Q[2..15] the coefficients of x^7 .. x^33.
  OrkX80Slot Q[18];
  OrkX80Slot Q1[4], Q2[2], Q3;  // 2^-12, 2^-18, 2^-75 to the path above
};
constexpr TanhlTab kTab = {
    .twos = {slot(0x4000, 0x8000000000000000ull), slot(0xC000, 0x8000000000000000ull)},
    .Q = {slot(0xBFF1, 0xAAAAAAAAAAAAA9F1ull),    // -8.1380208333333328816e-05
          slot(0x3FF0, 0x888888888887CA38ull),    // 3.2552083333333170251e-05
          slot(0xBFFA, 0xDD0DD0DD0DD0D1D3ull),    // -0.053968253968253956931
          slot(0x3FF9, 0xB327A4416084919Aull),    // 0.021869488536154842173
          slot(0xBFF8, 0x91371AAF356DC816ull),    // -0.0088632355298930865645
          slot(0x3FF6, 0xEB69E8707CC9B389ull),    // 0.0035921280364049857844
          slot(0xBFF5, 0xBED1B22444291754ull),    // -0.0014558343847357955569
          slot(0x3FF4, 0x9AAC11D40B828030ull),    // 0.00059002741637526924523
          slot(0xBFF2, 0xFABEADB1084039C2ull),    // -0.00023912891180272196723
          slot(0x3FF1, 0xCB3E598441CC0BD7ull),    // 9.6914078433684935584e-05
          slot(0xBFF0, 0xA4B7C8EC7E0EB97Dull),    // -3.9271809960331610374e-05
          slot(0x3FEF, 0x855375E938080BFFull),    // 1.5893699875980420779e-05
          slot(0xBFED, 0xD5FDCFF2D4B661A4ull),    // -6.3774423090572934954e-06
          slot(0x3FEC, 0xA493946060059919ull),    // 2.4523806988475319403e-06
          slot(0xBFEA, 0xD863BAF96DDF1719ull),    // -8.0611397233569479292e-07
          slot(0x3FE8, 0xAF03544ED6A66560ull),    // 1.6299356258234069294e-07
          slot(0xBFFD, 0xAAA0000000000000ull),    // -0.333251953125
          slot(0x3FFC, 0x8880000000000000ull)},   // 0.13330078125
    .Q1 = {slot(0xBFFD, 0xAAAAAAAAAAAAAAA8ull),   // -0.33333333333333331483
           slot(0x3FFC, 0x888888888883BDF3ull),   // 0.13333333333332908488
           slot(0xBFFA, 0xDD0DD0D497125D40ull),   // -0.053968253845088826059
           slot(0x3FF9, 0xB32418B434548180ull)},  // 0.021867798089838574871
    .Q2 = {slot(0xBFFD, 0xAAAAAAAAAAAA8D33ull),   // -0.3333333333333331483
           slot(0x3FFC, 0x88888820EA0ED956ull)},  // 0.13333332730191113646
    .Q3 = slot(0xBFFD, 0xAAAAAAAAA5555555ull),    // -0.33333333333090803263
};

// 0.5 <= |x| < 32.
ld quotient_path(ld x, unsigned sign) {
  const ld T = value(kTab.twos[sign]);
  const ld one = value(kOnes[sign]);
  const ExpStep st = table_exp_step(x * T, false);
  const ld p = (st.rl + st.r * ((P(3) * st.z + P(1)) * st.z)) + ((P(4) * st.z + P(2)) * st.z + P(0)) * st.z;
  const ld c = st.hi * p + (p + st.rh) * st.lo;
  const ld t = st.rh * st.hi;
  const ld S = ld(__builtin_bit_cast(float, uint32_t((st.k << 23) + 0x3F800000)));
  if (abs_key(x) >= kPlainQuotientKey) return one - T / (1.0L + ((t + (st.lo + c)) + st.hi) * S);
  const ld e1 = round_by(st.hi + t, dbl(kTwo32));
  const ld A = e1 * S + 1.0L;
  const ld B = (c + (st.lo + (t + (st.hi - e1)))) * S;
  const ld q = 1.0L / (B + A);
  const ld qh = round_by(q, dbl(kTwo32H));
  const ld ql = q - qh;
  return (one - qh * T) - (ql - ((A * ql + B * q) + (A * qh - 1.0L)) * q) * T;
}

ld q_path(ld x, unsigned sign) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const ld s = value(kOnes[sign]);
  const ld ax = x * s;
  const ld z = ax * ax, w = z * z;
  const Split sp = split_by(ax, dbl(kTwo52H));
  const ld h = sp.h, l = sp.l;
  const ld d = (h + ax) * l;
  const ld g = h * h;
  const ld Ev =
      ((((((Q(14) * w + Q(12)) * w + Q(10)) * w + Q(8)) * w + Q(6)) * w + Q(4)) * w + Q(2)) * w + Q(0);
  const ld Od =
      (((((((Q(15) * w + Q(13)) * w + Q(11)) * w + Q(9)) * w + Q(7)) * w + Q(5)) * w + Q(3)) * w + Q(1)) * w;
  const ld u = Q(16) * g + Q(17) * (g * g);
  const ld m = round_by(u, dbl(kTwo48H));
  const ld X = (((Od + Ev * z) + ((z + g) * d) * Q(17)) + d * Q(16)) + (u - m);
  return (((X * ax + m * l) + l) + (m * h + h)) * s;
}

}  // namespace

extern "C" long double orktanhl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kSaturatedField) {
    if (e != 0x7FFF) return value(kOnes[sign]) - opaque(value(kSmallValue[sign]));
    if (image(x).sig == 0x8000000000000000ull) return value(kOnes[sign]);
    return quiet(x);
  }
  if (e >= kHypMiddleField) return quotient_path(x, sign);
  if (e >= kQField) return q_path(x, sign);
  if (e >= kQ1Field) return odd_q1(x, kTab.Q1);
  if (e >= kQ2Field) return odd_q2(x, kTab.Q2);
  if (e >= kQ3Field) return odd_q3(x, kTab.Q3);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    raise_by_square(value(kSmallValue[0]), value(kSmallValue[sign]));
  }
  return (dbl(kTwo75) * x - x) * dbl(kTwoM75);
}
