// orklogl_scalar: ln x in the 80-bit format at 64-bit precision: a table step
// on 2^k m in general, a split polynomial within 1/32 of 1.
// max error 0.5002 ulp (64-bit significand) at x = 0xf.26b7707b060266p-4.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

// Paths by the key read as a signed integer.
constexpr int32_t kFiniteKeyMax = 0x7FFF7FFF;  // above: +Inf or NaN; negative keys: x < 0
constexpr int32_t kGeneralLow = 0x3FFEF800;    // x below 0.96875: general path
constexpr int32_t kGeneralHigh = 0x3FFF8800;   // x from 1.0625 + 2^-15: general path
constexpr int32_t kNearOneLow = 0x3FFEFFFF;    // x below 1 - 2^-16: near-one path
constexpr int32_t kNearOneHigh = 0x3FFF8000;   // x from 1 + 2^-15: near-one path
constexpr uint32_t kDenormalBias = 16458;      // 16383 + 75: exponent field after the product by 2^75

struct LoglTab {
  // ln(1 + d) - d for |d| < 1/16: with t the leading bits of d, the t^2 and
  // t^3 coefficients stand split as Q[14] = -1/2 and Q[15] = 1/3 cut to
  // 13 bits, completed by Q[0] and Q[1]; Q[2..13] are those of t^4 .. t^15.
  OrkX80Slot Q2[16];
  // ln(1 + d) - d for 1 - 2^-16 <= 1 + d < 1 + 2^-15.
  OrkX80Slot Q1[4];
};

constexpr LoglTab kTab = {
    .Q2 = {slot(0xBFB4, 0x9F28EA2D2DF7E646ull),   // -3.2913480022349110741e-23
           slot(0x3FF1, 0xAAAAAAAAAAAAADC6ull),   // 8.1380208333333342368e-05
           slot(0xBFFC, 0xFFFFFFFFFFFFFFEAull),   // -0.25
           slot(0x3FFC, 0xCCCCCCCCCCCCC236ull),   // 0.19999999999999995559
           slot(0xBFFC, 0xAAAAAAAAAAAB8F55ull),   // -0.16666666666666746233
           slot(0x3FFC, 0x9249249249A4A0C4ull),   // 0.14285714285725659156
           slot(0xBFFB, 0xFFFFFFFFFF0A3715ull),   // -0.1249999999998908512
           slot(0x3FFB, 0xE38E38DDBC1754F0ull),   // 0.11111111094170282587
           slot(0xBFFB, 0xCCCCCC8103D7E06Eull),   // -0.099999997794366579651
           slot(0x3FFB, 0xBA2E9A1CE811D305ull),   // 0.090909198767811810749
           slot(0xBFFB, 0xAAAC2BCE12338B18ull),   // -0.083336202837267739363
           slot(0x3FFB, 0x9D86222D7A648AC4ull),   // 0.076915995610123980009
           slot(0xBFFB, 0x9033450A5189D630ull),   // -0.070410289170642778589
           slot(0x3FFA, 0xDA3EB73F2509BDB7ull),   // 0.05328246670461783685
           slot(0xBFFE, 0x8000000000000000ull),   // -0.5
           slot(0x3FFD, 0xAAA0000000000000ull)},  // 0.333251953125
    .Q1 = {slot(0xBFFE, 0x8000000000000000ull),   // -0.5
           slot(0x3FFD, 0xAAAAAAAAAAAC1552ull),   // 0.33333333333333586834
           slot(0xBFFC, 0xFFFFFFFFC004AE8Aull),   // -0.24999999998545224811
           slot(0x3FFC, 0xCCCACCD25F7EF9AAull)},  // 0.19999237092986185682
};

ld general_path(ld x, uint32_t e) {
  int32_t k;
  if (e == 0) {
    x = x * dbl(kTwo75);
    if (x == 0.0L) return sse_pole(-1.0);
    k = int32_t(exponent_field(x)) - int32_t(kDenormalBias);
  } else {
    k = int32_t(e) - 16383;
  }
  const ld m = with_exponent(x, 0x3FFF);
  const ld A = round_by(m, dbl(kTwo32H));
  const ld B = m - A;
  const unsigned i = step_index(m);
  return table_log_step(A, B, k, i, rcp_c(i));
}

ld near_one_path(ld x) {
  const auto Q = [](int i) { return value(kTab.Q2[i]); };
  const ld d = x - 1.0L;
  const Split sp = split_by(d, dbl(kTwo52H));
  const ld h = sp.h, l = sp.l;
  const ld g = h * h;
  const ld f = (h + d) * l;
  const ld z = f + g;
  const ld A = ((((((Q(13) * z + Q(11)) * z + Q(9)) * z + Q(7)) * z + Q(5)) * z + Q(3)) * z + Q(1)) * z;
  const ld B = z * (((((Q(12) * z + Q(10)) * z + Q(8)) * z + Q(6)) * z + Q(4)) * z + Q(2)) + Q(0);
  const ld v = Q(14) * l + ((A + d * B) + f * Q(15));
  const ld u = g * Q(15) + Q(14) * h;
  const ld m = u * h;
  const ld s = h + m;
  return s + (((h - s) + m) + (l + (h * v + (v + u) * l)));
}

}  // namespace

extern "C" long double orklogl_scalar(long double x) {
  const Image im = image(x);
  const uint32_t e = im.se & 0x7FFFu;
  const int32_t key = int32_t(lux::x80::key(x));
  if (key < 0 || key > kFiniteKeyMax) {
    if (key < 0) {
      if (e == 0 && im.sig == 0) return sse_pole(-1.0);  // -0
      if (!is_nan(x)) return sse_default_nan();
    }
    return quiet(x);  // NaN, +Inf
  }
  if (key < kGeneralLow || key > kGeneralHigh) return general_path(x, e);
  if (key < kNearOneLow || key > kNearOneHigh) return near_one_path(x);
  if (x == 1.0L) return 0.0L;
  const auto Q = [](int i) { return value(kTab.Q1[i]); };
  const ld d = x - 1.0L;
  const ld z = d * d;
  return d + z * ((Q(1) + Q(3) * z) * d + (Q(0) + Q(2) * z));
}
