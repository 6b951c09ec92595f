// orkasinhl_scalar: asinh x in the 80-bit format at 64-bit precision:
// ln(|x| + sqrt(x^2 + 1)) carried as a two-part sum into the table logarithm
// step from 0.5 on, an odd polynomial with split leading terms below; the
// sign applied last, so the result is odd.
// max error 1.389 ulp (64-bit significand) at x = 0xd.167520254907e2p-2.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kLogField = 0x3FFE;        // |x| >= 0.5: logarithm forms
constexpr uint32_t kSqrtFormEnd = 0x4004;     // below |x| = 32: the exact two-part root
constexpr uint32_t kRootRecipEnd = 16394;     // below 2^11: 1/(sqrt(x^2 + 1) + |x|)
constexpr uint32_t kTwoTermEnd = 16401;       // below 2^18: 1/(2|x| + 1/(2|x|))
constexpr uint32_t kSignificandOnly = 16421;  // from 2^38: ln(2|x|) alone
constexpr uint32_t kQField = 0x3FF8;          // |x| >= 2^-7
constexpr uint32_t kQ1Field = 0x3FF3;         // |x| >= 2^-12
constexpr uint32_t kQ2Field = 0x3FED;         // |x| >= 2^-18
constexpr uint32_t kQ3Field = 0x3FB4;         // |x| >= 2^-75; below, asinh x = x (1 - 2^-75) rounded

struct AsinhlTab {
  // asinh x - x for 2^-7 <= |x| < 0.5: Q[20], Q[21] are -1/6 and 3/40 cut,
  // Q[0], Q[1] their rests; Q[2..19] the coefficients of x^7 .. x^41.
  OrkX80Slot Q[22];
  OrkX80Slot Q1[4], Q2[2], Q3;  // 2^-12, 2^-18, 2^-75 to the path above
};
constexpr AsinhlTab kTab = {
    .Q = {slot(0xBFF0, 0xAAAAAAAAAAAAA4F4ull),    // -4.0690104166666664408e-05
          slot(0xBFEE, 0xCCCCCCCCCCDA1199ull),    // -1.2207031250000718962e-05
          slot(0xBFFA, 0xB6DB6DB6DB6D7CDFull),    // -0.044642857142857095276
          slot(0x3FF9, 0xF8E38E38E37A660Cull),    // 0.03038194444444224443
          slot(0xBFF9, 0xB745D1745AB65679ull),    // -0.022372159090841486212
          slot(0x3FF9, 0x8E276275F0D8B153ull),    // 0.017352764421526854777
          slot(0xBFF8, 0xE4CCCCC53B2B6DADull),    // -0.013964843722464616999
          slot(0x3FF8, 0xBD43C3590B394CC2ull),    // 0.011551800507891469422
          slot(0xBFF8, 0x9FEF23ADFCD5B9B2ull),    // -0.0097616051134087177682
          slot(0x3FF8, 0x89777282FB20A5DCull),    // 0.0083902948644425743435
          slot(0xBFF7, 0xEF9B4CAC46A5D68Cull),    // -0.0073122143153813668956
          slot(0x3FF7, 0xD332BF3BF70C20A7ull),    // 0.0064452584992341667436
          slot(0xBFF7, 0xBBC27127575F33F5ull),    // -0.0057299664028347182393
          slot(0x3FF7, 0xA776D37FA072B97Full),    // 0.005110600729725320833
          slot(0xBFF7, 0x93D963226E9D4700ull),    // -0.004511998563306565159
          slot(0x3FF6, 0xFA949A9EE7D10B83ull),    // 0.0038235547534946211397
          slot(0xBFF6, 0xC050EAC5B7611B9Full),    // -0.0029345105337745965544
          slot(0x3FF5, 0xF35A46E95BC481A0ull),    // 0.0018566333353003151851
          slot(0xBFF4, 0xDA3C78A1EE10AEEBull),    // -0.00083250509531579658211
          slot(0x3FF2, 0xC9FD6FAFCA065956ull),    // 0.00019263266129821427614
          slot(0xBFFC, 0xAAA0000000000000ull),    // -0.1666259765625
          slot(0x3FFB, 0x99A0000000000000ull)},   // 0.07501220703125
    .Q1 = {slot(0xBFFC, 0xAAAAAAAAAAAAAAA2ull),   // -0.16666666666666665741
           slot(0x3FFB, 0x9999999999873740ull),   // 0.074999999999991837085
           slot(0xBFFA, 0xB6DB6DA49D1129BEull),   // -0.044642856877377824765
           slot(0x3FF9, 0xF8DB343A637318E8ull)},  // 0.030377962120026313214
    .Q2 = {slot(0xBFFC, 0xAAAAAAAAAAAA81F4ull),   // -0.16666666666666651864
           slot(0x3FFB, 0x999998F9999A2624ull)},  // 0.074999995343387373947
    .Q3 = slot(0xBFFC, 0xAAAAAAAAA4E81B4Full),    // -0.16666666666535698282
};

ld q_path(ld x) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const Split sp = split_by(x, dbl(kTwo53H));
  const ld h = sp.h, l = sp.l;
  const ld d = (x + h) * l;
  const ld g = h * h;
  const ld z = d + g;
  const ld f = (z + g) * d;
  const ld w = g * g + f;
  const ld A =
      (((((((((Q(19) * w + Q(17)) * w + Q(15)) * w + Q(13)) * w + Q(11)) * w + Q(9)) * w + Q(7)) * w + Q(5)) *
            w +
        Q(3)) *
           w +
       Q(1)) *
      w;
  const ld B =
      (w * ((((((((Q(18) * w + Q(16)) * w + Q(14)) * w + Q(12)) * w + Q(10)) * w + Q(8)) * w + Q(6)) * w +
             Q(4)) *
                w +
            Q(2)) +
       Q(0)) *
      z;
  const ld v = d * Q(20) + (f * Q(21) + (A + B));
  const ld u = Q(21) * (g * g) + Q(20) * g;
  const ld m = round_by(u, dbl(kTwo48H));
  return (m * h + h) + ((((u - m) + v) * x + m * l) + l);
}

// ln(|x| + sqrt(x^2 + 1)) for |x| >= 0.5.
ld log_forms(ld ax, uint32_t e) {
  if (e >= kSignificandOnly) {
    const ld m = with_exponent(ax, 0x3FFF);
    const ld A = round_by(m, dbl(kTwo52H));
    const unsigned i = step_index(m);
    return table_log_step(A, m - A, int32_t(e) - 16382, rcp_c(i), dbl(ork_ork_log_table_256[i][0]),
                          dbl(ork_ork_log_table_256[i][1]));
  }
  ld A, B;
  if (e < kSqrtFormEnd) {
    // |x| + sqrt(x^2 + 1) with x^2 + 1 = v + d exact and the root corrected
    // by one Newton step: A + B.
    const ld h = round_by(ax, dbl(kTwo52H));
    const ld d = (ax + h) * (ax - h);
    const ld v = h * h + 1.0L;
    const ld y = orksqrtl_scalar(d + v);
    const ld yh = round_by(y, dbl(kTwo52H));
    const ld yl = y - yh;
    const ld c = (d + ((v - yh * yh) - yh * yl)) / (yh + yl);
    A = h + yh;
    B = (ax - h) + (yl + c) * 0.5L;
  } else {
    // 2|x| + (sqrt(x^2 + 1) - |x|), the small term as 1/(sqrt(x^2 + 1) + |x|).
    const ld t = 2.0L * ax;
    const Split sp = split_by(t, dbl(kTwo32H));
    A = sp.h;
    if (e < kRootRecipEnd) {
      const ld y = orksqrtl_scalar(ax * ax + 1.0L);
      B = sp.l + 1.0L / (y + ax);
    } else if (e < kTwoTermEnd) {
      B = sp.l + 1.0L / (t + 1.0L / t);
    } else {
      B = sp.l + 1.0L / t;
    }
  }
  const UnitSum u = to_unit(A, B);
  return table_log_step(u.A, u.B, u.k, rcp_c(u.i), dbl(ork_ork_log_table_256[u.i][0]),
                        dbl(ork_ork_log_table_256[u.i][1]));
}

}  // namespace

extern "C" long double orkasinhl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e == 0x7FFF) return quiet(x);
  if (e >= kLogField) {
    const ld s = value(kOnes[sign]);
    return s * log_forms(x * s, e);
  }
  if (e >= kQField) return q_path(x);
  if (e >= kQ1Field) return odd_q1(x, kTab.Q1);
  if (e >= kQ2Field) return odd_q2(x, kTab.Q2);
  if (e >= kQ3Field) return odd_q3(x, kTab.Q3);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    return x - opaque(value(kSmallValue[0])) * value(kSmallValue[sign]);
  }
  return (dbl(kTwo75) * x - x) * dbl(kTwoM75);
}
