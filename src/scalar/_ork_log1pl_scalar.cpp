// orklog1pl_scalar: ln(1 + x) in the 80-bit format at 64-bit precision: the
// table step on 1 + x formed in two exact parts for |x| >= 1/16, polynomials
// on x below, and x itself, correctly rounded, below 2^-75.
// max error 0.5001 ulp (64-bit significand) at x = -0xd.be1de36b8b56de8p-7.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kMinusOneKey = 0xBFFF8000;  // from here x <= -1 by the top bits
constexpr uint32_t kTableField = 0x3FFB;       // |x| >= 1/16
constexpr uint32_t kQField = 0x3FF1;           // |x| >= 2^-14
constexpr uint32_t kQ1Field = 0x3FE6;          // |x| >= 2^-25
constexpr uint32_t kQ2Field = 0x3FD9;          // |x| >= 2^-38
constexpr uint32_t kQ3Field = 0x3FB4;          // |x| >= 2^-75
constexpr uint32_t kWideShifterField = 16415;  // |x| >= 2^32: split 1 + x with 1.5 2^24

struct Log1plTab {
  // Keys from which the table path takes 1 + x (or x alone) as one value:
  // x >= 2^74, and x <= -0.5 where 1 + x is exact.
  uint32_t ranges[2];
  uint64_t zero_one[2];  // 0.0, 1.0: what is added to x in that form
  uint64_t shifters[2];  // 1.5 2^24, 1.5 2^48: the splits of x below and from 2^32
  OrkX80Slot ones[2];    // 1.0, -1.0
  // ln(1 + x) - x for 2^-14 <= |x| < 1/16, as in the logarithm near 1: the
  // x^2 and x^3 coefficients split as Q[14], Q[15] (cut) and Q[0], Q[1].
  OrkX80Slot Q[16];
  OrkX80Slot Q1[4];  // 2^-25 <= |x| < 2^-14
  OrkX80Slot Q2[2];  // 2^-38 <= |x| < 2^-25
  OrkX80Slot Q3;     // 2^-75 <= |x| < 2^-38: -x^2/2
};

constexpr Log1plTab kTab = {
    .ranges = {0x40498000u, 0xBFFE8000u},
    .zero_one = {0x0000000000000000ull, 0x3FF0000000000000ull},
    .shifters = {0x4178000000000000ull, 0x42F8000000000000ull},
    .ones = {slot(0x3FFF, 0x8000000000000000ull), slot(0xBFFF, 0x8000000000000000ull)},
    .Q = {slot(0xBFB8, 0xF3556BEDF347381Bull),    // -8.0512360369949218441e-22
          slot(0x3FF1, 0xAAAAAAAAAAAAAE0Bull),    // 8.1380208333333342368e-05
          slot(0xBFFC, 0xFFFFFFFFFFFFFDC8ull),    // -0.25
          slot(0x3FFC, 0xCCCCCCCCCCCCC4DBull),    // 0.19999999999999998335
          slot(0xBFFC, 0xAAAAAAAAAAC29AA6ull),    // -0.16666666666668791819
          slot(0x3FFC, 0x92492492495E3D85ull),    // 0.14285714285719408601
          slot(0xBFFB, 0xFFFFFFFF1C24EE70ull),    // -0.12499999997409580454
          slot(0x3FFB, 0xE38E38E1EEF728D6ull),    // 0.1111111110639018823
          slot(0xBFFB, 0xCCCCCEF9579EE1ABull),    // -0.10000001619751180959
          slot(0x3FFB, 0xBA2E8ED53DD41B7Cull),    // 0.090909114725699111115
          slot(0xBFFB, 0xAAA7D30EB78F432Aull),    // -0.083327912222507571904
          slot(0x3FFB, 0x9D8655962E9BF835ull),    // 0.07691637863702104061
          slot(0xBFFB, 0x942CF1C706A18E69ull),    // -0.072351349722183738722
          slot(0x3FFB, 0x8A8D17883EEBFFAEull),    // 0.067651923985854622856
          slot(0xBFFE, 0x8000000000000000ull),    // -0.5
          slot(0x3FFD, 0xAAA0000000000000ull)},   // 0.333251953125
    .Q1 = {slot(0xBFFD, 0xFFFFFFFFFFFFFFE5ull),   // -0.5
           slot(0x3FFD, 0xAAAAAAAAAAAAAA6Full),   // 0.33333333333333331483
           slot(0xBFFD, 0x80000006AAAAAAA0ull),   // -0.25000000077610212701
           slot(0x3FFC, 0xCCCCCCDCCD38EDD5ull)},  // 0.20000000093141862001
    .Q2 = {slot(0xBFFE, 0x8000000000001000ull),   // -0.50000000000000022204
           slot(0x3FFD, 0xAAAAAAAAAAAAD111ull)},  // 0.33333333333333359239
    .Q3 = slot(0xBFFE, 0x8000000000000000ull),    // -0.5
};

ld table_path(ld x, uint32_t e, unsigned sign, uint32_t key) {
  if (key >= kTab.ranges[sign]) {
    const ld y = x + dbl(kTab.zero_one[sign]);  // exact for x in (-1, -0.5]
    const int32_t k = int32_t(exponent_field(y)) - 16383;
    const ld m = with_exponent(y, 0x3FFF);
    const ld A = round_by(m, dbl(kTwo32H));
    const unsigned i = step_index(m);
    return table_log_step(A, m - A, k, i, rcp_c(i));
  }
  // 1 + x as A' + B', both exact: below 2^32 the head of x takes the 1,
  // from 2^32 on the tail does.
  const bool narrow = e < kWideShifterField;
  const Split sp = split_by(x, dbl(kTab.shifters[narrow ? 1 : 0]));
  const ld A = narrow ? sp.h + 1.0L : sp.h;
  const ld B = narrow ? sp.l : sp.l + 1.0L;
  const ld v = A + B;
  const uint32_t field = exponent_field(v);
  const ld scale = power_of_two((0u - field - 2u) & 0x7FFFu);  // 2^-k
  const unsigned i = step_index(v);
  return table_log_step(A, B, int32_t(field) - 16383, i, rcp_c(i) * scale);
}

// 2^-14 <= |x| < 1/16.
ld q_path(ld x) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const Split sp = split_by(x, dbl(kTwo52H));
  const ld h = sp.h, l = sp.l;
  const ld g = h * h;
  const ld d = (x + h) * l;
  const ld z = g + d;
  const ld E = ((((((Q(13) * z + Q(11)) * z + Q(9)) * z + Q(7)) * z + Q(5)) * z + Q(3)) * z + Q(1)) * z;
  const ld O = z * (((((Q(12) * z + Q(10)) * z + Q(8)) * z + Q(6)) * z + Q(4)) * z + Q(2)) + Q(0);
  const ld v = E + O * x;
  const ld u = Q(14) * h + Q(15) * g;
  const ld t = ((((d * Q(15) + v) + Q(14) * l) * x) + u * l) + l;
  const ld m = u * h;
  const ld s = h + m;
  return s + (t + ((h - s) + m));
}

// x (1 -+ 2^-75) rounded once: ln(1 + x) for 0 < |x| < 2^-75, inexact.
ld tiny(ld x, unsigned sign) { return (x * (dbl(kTwo75) - value(kTab.ones[sign]))) * dbl(kTwoM75); }

}  // namespace

extern "C" long double orklog1pl_scalar(long double x) {
  const Image im = image(x);
  const uint32_t e = im.se & 0x7FFFu;
  const unsigned sign = im.se >> 15;
  const uint32_t key = lux::x80::key(x);
  if (e == 0x7FFF) {
    if (sign && im.sig == 0x8000000000000000ull) return sse_default_nan();  // -Inf
    return quiet(x);
  }
  if (key >= kMinusOneKey) {
    if (x == -1.0L) return sse_pole(-1.0);
    return sse_default_nan();
  }
  if (e >= kTableField) return table_path(x, e, sign, key);
  if (e >= kQField) return q_path(x);
  if (e >= kQ1Field) {
    const auto Q = [](int i) { return value(kTab.Q1[i]); };
    const ld z = x * x;
    return x + (((Q(3) * z + Q(1)) * z + (z * Q(2) + Q(0)) * x) * x);
  }
  if (e >= kQ2Field) return x + ((value(kTab.Q2[1]) * x + value(kTab.Q2[0])) * x) * x;
  if (e >= kQ3Field) {
    // x + 2^75 x is computed only for its inexact flag.
    ld probe = x + dbl(kTwo75) * opaque(x);
    asm volatile("" : : "t"(probe));
    return (value(kTab.Q3) * x) * x + x;
  }
  if (e > 0) return tiny(x, sign);
  if (im.sig == 0) return x;
  raise_by_square(value(kSmallValue[0]));
  return tiny(x, sign);
}
