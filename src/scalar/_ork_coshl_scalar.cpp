// orkcoshl_scalar: cosh x in the 80-bit format at 64-bit precision: e^|x|/2
// alone from 26.17 on, e^|x| and e^-|x| from table pairs of opposite index
// from 0.5, an even polynomial with a split quadratic term below.
// max error 0.5007 ulp (64-bit significand) at x = 0x9.f65e475d35f8f03p+10.
#include "scalar/hyperbolic_steps.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kQField = 0x3FFA;   // |x| >= 2^-5
constexpr uint32_t kQ1Field = 0x3FF4;  // |x| >= 2^-11
constexpr uint32_t kQ2Field = 0x3FED;  // |x| >= 2^-18
constexpr uint32_t kQ3Field = 0x3FB4;  // |x| >= 2^-75; below, cosh x = 1 + |x| rounded

struct CoshlTab {
  // cosh x - 1 for 2^-5 <= |x| < 0.5, entries 1 to 9: Q[8] = 1/2, Q[9] is
  // 1/24 cut to 16 bits and Q[1] the rest of it; Q[2..7] the coefficients of
  // x^6 .. x^16.  Entry 0 is not used.
  OrkX80Slot Q[10];
  OrkX80Slot Q1[4], Q2[2], Q3;  // 2^-11, 2^-18, 2^-75 to the path above
};
constexpr CoshlTab kTab = {
    .Q = {slot(0x0000, 0x0000000000000000ull),
          slot(0x3FEA, 0xAAAAAAAAAAAB3FAEull),    // 6.3578287760416864308e-07
          slot(0x3FF5, 0xB60B60B60B60B42Dull),    // 0.0013888888888888889419
          slot(0x3FEF, 0xD00D00D00D07750Dull),    // 2.4801587301588023238e-05
          slot(0x3FE9, 0x93F27DBBB69FD6A6ull),    // 2.7557319223363313766e-07
          slot(0x3FE2, 0x8F76C7A664AF780Dull),    // 2.0876757322815992299e-09
          slot(0x3FDA, 0xC9CB26C901C2C2BAull),    // 1.1470635886606028725e-11
          slot(0x3FD2, 0xD8269151B0870AD8ull),    // 4.7995086770112059326e-14
          slot(0x3FFE, 0x8000000000000000ull),    // 0.5
          slot(0x3FFA, 0xAAAA000000000000ull)},   // 0.0416660308837890625
    .Q1 = {slot(0x3FFD, 0xFFFFFFFFFFFFFFFBull),   // 0.5
           slot(0x3FFA, 0xAAAAAAAAAAAD1B8Eull),   // 0.041666666666667205587
           slot(0x3FF5, 0xB60B60B3E37461B8ull),   // 0.0013888888879084763592
           slot(0x3FEF, 0xD00ECF278BD8E035ull)},  // 2.4802428296384547934e-05
    .Q2 = {slot(0x3FFD, 0xFFFFFFFFFFFFF3DEull),   // 0.49999999999999988898
           slot(0x3FFA, 0xAAAAAAD55555596Eull)},  // 0.04166666728754838539
    .Q3 = slot(0x3FFE, 0x8000000000D55555ull),    // 0.50000000000075794926
};

ld q_path(ld ax) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const ld z = ax * ax, w = z * z;
  const ld h = round_by(ax, dbl(kTwo48H));
  const ld d = (ax + h) * (ax - h);
  const ld g = h * h;
  const ld g9 = Q(9) * g, g8 = Q(8) * g;
  const ld q = g9 * g;
  const ld m = round_by(q + g8, dbl(kTwo48H));
  const ld A =
      ((((Q(7) * w + Q(5)) * w + Q(3)) * w + Q(1)) * z + ((Q(6) * w + Q(4)) * w + Q(2)) * w) + Q(9) * d;
  return (m + 1.0L) + (((A * z + d * g9) + Q(8) * d) + (q + (g8 - m)));
}

}  // namespace

extern "C" long double orkcoshl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  const ld s = value(kOnes[sign]);
  if (abs_key(x) >= kHypLargeKey) {
    if (e == 0x7FFF) return x * opaque(s);
    if (hyp_overflows(x)) return raise_and(value(kLargeValue[0]));
    const LargePieces q = large_pieces(x * s, 1.0L);
    const ld two32 = dbl(kTwo32);
    const ld rest = (q.lo + (q.t + (q.hi - q.u))) + (q.hi * q.p + (q.p + q.rh) * q.lo);
    return ((q.u * q.sc) * two32) + ((rest * q.sc) * two32);
  }
  if (e >= kHypMiddleField) {
    const MiddlePieces q = middle_pieces(x * s);
    const ld Sp = half_pow2(q.k), Sm = half_pow2(-q.k);
    const ld u = q.sp * Sp, v = q.sm * Sm;
    const ld d = u + v;
    return d + (((u - d) + v) + (q.Ep * Sp + q.Em * Sm));
  }
  const ld z = x * x, w = z * z;
  if (e >= kQField) return q_path(x * s);
  if (e >= kQ1Field) {
    const auto Q = [](int i) { return value(kTab.Q1[i]); };
    return ((Q(3) * w + Q(1)) * w + (w * Q(2) + Q(0)) * z) + 1.0L;
  }
  if (e >= kQ2Field) return z * (value(kTab.Q2[1]) * z + value(kTab.Q2[0])) + 1.0L;
  if (e >= kQ3Field) return x * (value(kTab.Q3) * x) + 1.0L;
  if (e == 0 && image(x).sig == 0) return 1.0L;
  return x * s + 1.0L;
}
