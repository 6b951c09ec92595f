// orksinhl_scalar: sinh x in the 80-bit format at 64-bit precision: e^|x|/2
// alone from 26.17 on, e^|x| and e^-|x| from table pairs of opposite index
// from 0.5, an odd polynomial with a split cubic term below.
// max error 0.5007 ulp (64-bit significand) at x = 0x9.f65e475d35f8f03p+10.
#include "scalar/hyperbolic_steps.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kQField = 0x3FFA;   // |x| >= 2^-5
constexpr uint32_t kQ1Field = 0x3FF5;  // |x| >= 2^-10
constexpr uint32_t kQ2Field = 0x3FEE;  // |x| >= 2^-17
constexpr uint32_t kQ3Field = 0x3FB4;  // |x| >= 2^-75; below, sinh x = x (1 + 2^-75) rounded

struct SinhlTab {
  // sinh x - x for 2^-5 <= |x| < 0.5: Q[8] is 1/6 cut to 16 bits, Q[0] the
  // rest of it; Q[1..7] the coefficients of x^5 .. x^17.
  OrkX80Slot Q[9];
  OrkX80Slot Q1[4], Q2[2], Q3;  // 2^-10, 2^-17, 2^-75 to the path above
};
constexpr SinhlTab kTab = {
    .Q = {slot(0x3FEC, 0xAAAAAAAAAAAAAA64ull),    // 2.5431315104166665255e-06
          slot(0x3FF8, 0x8888888888888889ull),    // 0.0083333333333333332177
          slot(0x3FF2, 0xD00D00D00D00CC9Eull),    // 0.00019841269841269841253
          slot(0x3FEC, 0xB8EF1D2AB642AE79ull),    // 2.7557319223987120709e-06
          slot(0x3FE5, 0xD7322B3F8C663D3Eull),    // 2.5052108384635252214e-08
          slot(0x3FDE, 0xB09230DB5A5128ACull),    // 1.6059044173409417901e-10
          slot(0x3FD6, 0xD73EFE3CA397915Dull),    // 7.6470764599459713555e-13
          slot(0x3FCE, 0xCB834B6DA4A406B9ull),    // 2.8243084217785455071e-15
          slot(0x3FFC, 0xAAAA000000000000ull)},   // 0.16666412353515625
    .Q1 = {slot(0x3FFC, 0xAAAAAAAAAAAAAAABull),   // 0.16666666666666665741
           slot(0x3FF8, 0x888888888888DC98ull),   // 0.0083333333333333522996
           slot(0x3FF2, 0xD00D00CF21A11946ull),   // 0.00019841269836043490759
           slot(0x3FEC, 0xB8F02A2A23C7C93Bull)},  // 2.755793085409201355e-06
    .Q2 = {slot(0x3FFC, 0xAAAAAAAAAAAA7333ull),   // 0.16666666666666646313
           slot(0x3FF8, 0x888888EA0EA1072Eull)},  // 0.0083333336881228920606
    .Q3 = slot(0x3FFC, 0xAAAAAAAAAD555555ull),    // 0.16666666666727300572
};

ld q_path(ld ax, ld s) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const ld z = ax * ax, w = z * z;
  const ld h = round_by(ax, dbl(kTwo48H));
  const ld l = ax - h;
  const ld Qe = (((Q(6) * w + Q(4)) * w + Q(2)) * w + Q(0)) * z;
  const ld Qo = (((Q(7) * w + Q(5)) * w + Q(3)) * w + Q(1)) * w;
  const ld t = (((h + ax) * l) * Q(8) + (Qo + Qe)) * ax;
  const ld c = Q(8) * (h * h);
  const ld m = c * h;
  const ld u = h + m;
  return (u + (((t + c * l) + l) + (m + (h - u)))) * s;
}

}  // namespace

extern "C" long double orksinhl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  const ld s = value(kOnes[sign]);
  if (abs_key(x) >= kHypLargeKey) {
    if (e == 0x7FFF) return quiet(x);
    if (hyp_overflows(x)) return opaque(value(kLargeValue[0])) * value(kLargeValue[sign]);
    const LargePieces q = large_pieces(x * s, s);
    const ld two32 = dbl(kTwo32);
    const ld rest = (q.hi * q.p + (q.p + q.rh) * q.lo) + ((q.t + (q.hi - q.u)) + q.lo);
    return ((rest * q.sc) * two32) + ((q.u * q.sc) * two32);
  }
  if (e >= kHypMiddleField) {
    const MiddlePieces q = middle_pieces(x * s);
    const ld Sp = half_pow2(q.k) * s, Sm = half_pow2(-q.k) * s;
    const ld u = q.sp * Sp, v = q.sm * Sm;
    const ld d = u - v;
    return d + (((u - d) - v) + (q.Ep * Sp - q.Em * Sm));
  }
  if (e >= kQField) return q_path(x * s, s);
  if (e >= kQ1Field) return odd_q1(x, kTab.Q1);
  if (e >= kQ2Field) return odd_q2(x, kTab.Q2);
  if (e >= kQ3Field) return odd_q3(x, kTab.Q3);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    raise_by_square(value(kSmallValue[0]), value(kSmallValue[sign]));
  }
  return (x + dbl(kTwo75) * x) * dbl(kTwoM75);
}
