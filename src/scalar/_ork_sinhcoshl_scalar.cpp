// orksinhcoshl_scalar: sinh x and cosh x together in the 80-bit format at
// 64-bit precision, one reduction and one pair of table reads for both; the
// polynomial paths in one chain per result.
// max error 0.501 (sinh), 0.5007 (cosh) ulp (64-bit significand) at x = -0xf.3d116003670e05cp-5 and
// 0x9.f65e475d35f8f03p+10.
#include "scalar/hyperbolic_steps.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kPField = 0x3FFA;   // |x| >= 2^-5
constexpr uint32_t kP1Field = 0x3FF4;  // |x| >= 2^-11
constexpr uint32_t kP2Field = 0x3FED;  // |x| >= 2^-18
constexpr uint32_t kP3Field = 0x3FB4;  // |x| >= 2^-75

// The coefficients of the sinh and cosh routines under this routine's names.
struct SinhCoshlTab {
  OrkX80Slot PS[9];   // sinh x - x, 2^-5 <= |x| < 0.5: PS[8] 1/6 cut, PS[0] its rest
  OrkX80Slot PC[10];  // cosh x - 1: PC[8] = 1/2, PC[9] 1/24 cut, PC[1] its rest; PC[0] unused
  OrkX80Slot PS1[4], PS2[2], PS3;
  OrkX80Slot PC1[4], PC2[2], PC3;
};
constexpr SinhCoshlTab kTab = {
    .PS = {slot(0x3FEC, 0xAAAAAAAAAAAAAA64ull), slot(0x3FF8, 0x8888888888888889ull),
           slot(0x3FF2, 0xD00D00D00D00CC9Eull), slot(0x3FEC, 0xB8EF1D2AB642AE79ull),
           slot(0x3FE5, 0xD7322B3F8C663D3Eull), slot(0x3FDE, 0xB09230DB5A5128ACull),
           slot(0x3FD6, 0xD73EFE3CA397915Dull), slot(0x3FCE, 0xCB834B6DA4A406B9ull),
           slot(0x3FFC, 0xAAAA000000000000ull)},
    .PC = {slot(0x0000, 0x0000000000000000ull), slot(0x3FEA, 0xAAAAAAAAAAAB3FAEull),
           slot(0x3FF5, 0xB60B60B60B60B42Dull), slot(0x3FEF, 0xD00D00D00D07750Dull),
           slot(0x3FE9, 0x93F27DBBB69FD6A6ull), slot(0x3FE2, 0x8F76C7A664AF780Dull),
           slot(0x3FDA, 0xC9CB26C901C2C2BAull), slot(0x3FD2, 0xD8269151B0870AD8ull),
           slot(0x3FFE, 0x8000000000000000ull), slot(0x3FFA, 0xAAAA000000000000ull)},
    .PS1 = {slot(0x3FFC, 0xAAAAAAAAAAAAAAABull), slot(0x3FF8, 0x888888888888DC98ull),
            slot(0x3FF2, 0xD00D00CF21A11946ull), slot(0x3FEC, 0xB8F02A2A23C7C93Bull)},
    .PS2 = {slot(0x3FFC, 0xAAAAAAAAAAAA7333ull), slot(0x3FF8, 0x888888EA0EA1072Eull)},
    .PS3 = slot(0x3FFC, 0xAAAAAAAAAD555555ull),
    .PC1 = {slot(0x3FFD, 0xFFFFFFFFFFFFFFFBull), slot(0x3FFA, 0xAAAAAAAAAAAD1B8Eull),
            slot(0x3FF5, 0xB60B60B3E37461B8ull), slot(0x3FEF, 0xD00ECF278BD8E035ull)},
    .PC2 = {slot(0x3FFD, 0xFFFFFFFFFFFFF3DEull), slot(0x3FFA, 0xAAAAAAD55555596Eull)},
    .PC3 = slot(0x3FFE, 0x8000000000D55555ull),
};

void p_path(ld x, ld* sh, ld* ch) {
  const auto S = [](int i) { return value(kTab.PS[i]); };
  const auto C = [](int i) { return value(kTab.PC[i]); };
  const ld z = x * x;
  const ld h = round_by(x, dbl(kTwo48H));
  const ld l = x - h;
  const ld d = (x + h) * l;
  const ld g = h * h;
  const ld m = (S(8) * g) * h;
  const ld u = h + m;
  const ld B =
      (((((((S(7) * z + S(6)) * z + S(5)) * z + S(4)) * z + S(3)) * z + S(2)) * z + S(1)) * z + S(0)) * z +
      S(8) * d;
  *sh = ((l + (B * x + (S(8) * g) * l)) + (m + (h - u))) + u;
  const ld q = (C(9) * g) * g;
  const ld m2 = round_by(q + C(8) * g, dbl(kTwo48H));
  const ld A = ((((((C(7) * z + C(6)) * z + C(5)) * z + C(4)) * z + C(3)) * z + C(2)) * z + C(1)) * z;
  *ch = ((((A + C(9) * d) * z + (C(9) * g) * d) + d * C(8)) + (q + (C(8) * g - m2))) + (m2 + 1.0L);
}

}  // namespace

extern "C" void orksinhcoshl_scalar(long double x, long double* sinh_out, long double* cosh_out) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  const ld s = value(kOnes[sign]);
  if (abs_key(x) >= kHypLargeKey) {
    if (e == 0x7FFF) {
      *sinh_out = opaque(1.0L) * x;
      *cosh_out = x * opaque(s);
      return;
    }
    if (hyp_overflows(x)) {
      *sinh_out = opaque(value(kLargeValue[sign])) * value(kLargeValue[0]);
      *cosh_out = raise_and(value(kLargeValue[0]));
      return;
    }
    const LargePieces q = large_pieces(x * s, 1.0L);
    const ld two32 = dbl(kTwo32);
    const ld rest = (q.lo + (q.t + (q.hi - q.u))) + (q.hi * q.p + (q.p + q.rh) * q.lo);
    const ld V = ((q.u * q.sc) * two32) + ((rest * q.sc) * two32);
    *sinh_out = V * s;
    *cosh_out = V;
    return;
  }
  if (e >= kHypMiddleField) {
    const MiddlePieces q = middle_pieces(x * s);
    const ld Sp = half_pow2(q.k), Sm = half_pow2(-q.k);
    const ld u = q.sp * Sp, v = q.sm * Sm;
    const ld d1 = u - v, d2 = u + v;
    *sinh_out = (d1 + ((q.Ep * Sp - q.Em * Sm) + ((u - d1) - v))) * s;
    *cosh_out = d2 + ((q.Ep * Sp + q.Em * Sm) + ((u - d2) + v));
    return;
  }
  if (e >= kPField) return p_path(x, sinh_out, cosh_out);
  const ld z = x * x;
  if (e >= kP1Field) {
    const auto S = [](int i) { return value(kTab.PS1[i]); };
    const auto C = [](int i) { return value(kTab.PC1[i]); };
    *sinh_out = x + ((((S(3) * z + S(2)) * z + S(1)) * z + S(0)) * z) * x;
    *cosh_out = z * (((C(3) * z + C(2)) * z + C(1)) * z + C(0)) + 1.0L;
    return;
  }
  if (e >= kP2Field) {
    *sinh_out = x + ((value(kTab.PS2[1]) * z + value(kTab.PS2[0])) * z) * x;
    *cosh_out = z * (value(kTab.PC2[1]) * z + value(kTab.PC2[0])) + 1.0L;
    return;
  }
  if (e >= kP3Field) {
    *sinh_out = x + (value(kTab.PS3) * z) * x;
    *cosh_out = z * value(kTab.PC3) + 1.0L;
    return;
  }
  if (e == 0 && image(x).sig == 0) {
    *sinh_out = x;
    *cosh_out = 1.0L;
    return;
  }
  if (e == 0) {
    const ld product = opaque(value(kSmallValue[0])) * value(kSmallValue[sign]);
    *sinh_out = product + x;
  } else {
    *sinh_out = (dbl(kTwo75) * x + x) * dbl(kTwoM75);
  }
  *cosh_out = x * s + 1.0L;
}
