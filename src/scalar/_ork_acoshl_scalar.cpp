// orkacoshl_scalar: acosh x in the 80-bit format at 64-bit precision:
// ln(x + sqrt(x^2 - 1)) carried as a two-part sum into the table logarithm
// step from 1.25 on; near 1, sqrt(2y) (1 + y P(y)) with y = x - 1 and the
// root corrected to more than 64 bits.
// max error 0.5004 ulp (64-bit significand) at x = 0x8.1dfc4862d2eafa5p-3.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kOneKey = 0x3FFF8000;           // the key of 1.0; distances from it pick the path
constexpr uint32_t kOutsideDistance = 0x40000000;  // x < 1, -Inf, +Inf, NaN
constexpr uint32_t kLogDistance = 8192;            // x >= 1.25
constexpr uint32_t kQDistance = 64;                // x >= 1 + 2^-9
constexpr uint32_t kSqrtFormEnd = 0x4004;          // below 32: the exact two-part root
constexpr uint32_t kRootRecipEnd = 16394;          // below 2^11
constexpr uint32_t kTwoTermEnd = 16401;            // below 2^18
constexpr uint32_t kSignificandOnly = 16417;       // from 2^34: ln(2x) alone

struct AcoshlTab {
  // acosh(1 + y) = sqrt(2y) (1 + y P(y)) for 2^-9 <= y < 1/4: Q[14], Q[15]
  // are -1/12 and 3/160 cut, Q[0], Q[1] their rests.
  OrkX80Slot Q[16];
  OrkX80Slot Q1[6];  // y < 2^-9
};
constexpr AcoshlTab kTab = {
    .Q = {slot(0x3FEE, 0xAAAAAAAAAAAABBE2ull),    // 1.017252604166666949e-05
          slot(0xBFEC, 0xCCCCCCCCCCEE51BBull),    // -3.0517578125004541791e-06
          slot(0xBFF7, 0xB6DB6DB6DB6C967Full),    // -0.005580357142857111756
          slot(0x3FF5, 0xF8E38E38E2CCB7CAull),    // 0.0018988715277764350777
          slot(0xBFF4, 0xB745D17431B06DD9ull),    // -0.0006991299715523606375
          slot(0x3FF3, 0x8E27626F5B60166Aull),    // 0.00027113694333785759048
          slot(0xBFF1, 0xE4CCCB455FF1265Eull),    // -0.00010910033067190094875
          slot(0x3FF0, 0xBD43A3967B917D2Dull),    // 4.5124105191727734675e-05
          slot(0xBFEF, 0x9FED354B60B23F86ull),    // -1.9064735705695453867e-05
          slot(0x3FEE, 0x896152B0B2798ECDull),    // 8.1884961129829299741e-06
          slot(0xBFEC, 0xEE295C159CA77461ull),    // -3.5488838158065852915e-06
          slot(0x3FEB, 0xCA8F37D942DDC7F5ull),    // 1.5091854775933540248e-06
          slot(0xBFEA, 0x982DD8FF30AF193Dull),    // -5.6691129639356224037e-07
          slot(0x3FE8, 0x91554E2C4D5A887Bull),    // 1.3535211242377901671e-07
          slot(0xBFFB, 0xAAB0000000000000ull),    // -0.083343505859375
          slot(0x3FF9, 0x99A0000000000000ull)},   // 0.0187530517578125
    .Q1 = {slot(0xBFFB, 0xAAAAAAAAAAAAAAABull),   // -0.083333333333333328707
           slot(0x3FF9, 0x99999999999991FCull),   // 0.018749999999999995837
           slot(0xBFF7, 0xB6DB6DB6DAA3489Aull),   // -0.0055803571428515242117
           slot(0x3FF5, 0xF8E38E2CE9BD3DC5ull),   // 0.0018988715223317940289
           slot(0xBFF4, 0xB7459D8AB016D1DFull),   // -0.00069912694986847966246
           slot(0x3FF3, 0x8DAF81641FDBBD0Cull)},  // 0.00027024377460798483172
};

// sqrt(q + p) as sh + c, c carrying the bits beyond the 64 of the root.
struct Root {
  ld sh, c;
};
Root two_part_root(ld q, ld p) {
  const ld sq = orksqrtl_scalar(q + p);
  const ld sh = split_by(sq, dbl(kTwo52H)).h;
  const ld c = ((p + ((q - sh * sh) - sh * (sq - sh))) / sq + (sq - sh)) * 0.5L;
  return {sh, c};
}

ld q_path(ld x) {
  const auto Q = [](int i) { return value(kTab.Q[i]); };
  const ld y = x - 1.0L;
  const Split sp = split_by(y, dbl(kTwo52H));
  const ld h = sp.h, l = sp.l;
  const ld d = (h + y) * l;
  const ld z = d + h * h;
  const ld A = ((((((Q(13) * z + Q(11)) * z + Q(9)) * z + Q(7)) * z + Q(5)) * z + Q(3)) * z + Q(1)) * z;
  const ld A2 = A + y * (z * (((((Q(12) * z + Q(10)) * z + Q(8)) * z + Q(6)) * z + Q(4)) * z + Q(2)) + Q(0));
  const ld u = Q(15) * (h * h) + Q(14) * h;
  const ld m = round_by(u, dbl(kTwo52H));
  const ld f = (u - m) + ((d * Q(15) + A2) + Q(14) * l);
  const Root r = two_part_root(2.0L * h, 2.0L * l);
  return (r.sh + m * r.sh) + ((m * r.c + f * (r.sh + r.c)) + r.c);
}

ld q1_path(ld x) {
  const auto Q = [](int i) { return value(kTab.Q1[i]); };
  const ld y = x - 1.0L;
  const ld z = y * y;
  const ld h = split_by(y, dbl(kTwo52H)).h;
  const Root r = two_part_root(2.0L * h, 2.0L * (y - h));
  const ld poly = ((Q(3) + Q(5) * z) * z + Q(1)) * z + ((Q(4) * z + Q(2)) * z + Q(0)) * y;
  return r.sh + ((poly * (r.sh + r.c)) + r.c);
}

// ln(x + sqrt(x^2 - 1)) for x >= 1.25.
ld log_forms(ld x, uint32_t e) {
  if (e >= kSignificandOnly) {
    const ld m = with_exponent(x, 0x3FFF);
    const ld A = round_by(m, dbl(kTwo52H));
    const unsigned i = step_index(m);
    return table_log_step(A, m - A, int32_t(e) - 16382, i, rcp_c(i));
  }
  ld A, B;
  if (e < kSqrtFormEnd) {
    const ld h = round_by(x, dbl(kTwo52H));
    const ld d = (x + h) * (x - h);
    const ld v = h * h - 1.0L;
    const ld y = orksqrtl_scalar(d + v);
    const ld yh = round_by(y, dbl(kTwo52H));
    const ld yl = y - yh;
    const ld c = (d + ((v - yh * yh) - yh * yl)) / (yh + yl);
    A = h + yh;
    B = (x - h) + (yl + c) * 0.5L;
  } else {
    // 2x - (x - sqrt(x^2 - 1)), the small term as 1/(sqrt(x^2 - 1) + x).
    const ld t = 2.0L * x;
    const Split sp = split_by(t, dbl(kTwo32H));
    A = sp.h;
    if (e < kRootRecipEnd) {
      const ld y = orksqrtl_scalar((x + 1.0L) * (x - 1.0L));
      B = sp.l + (-1.0L) / (y + x);
    } else if (e < kTwoTermEnd) {
      B = sp.l + (-1.0L) / (t + (-1.0L) / t);
    } else {
      B = sp.l + (-1.0L) / t;
    }
  }
  const UnitSum u = to_unit(A, B);
  return table_log_step(u.A, u.B, u.k, u.i, rcp_c(u.i));
}

}  // namespace

extern "C" long double orkacoshl_scalar(long double x) {
  const uint32_t d0 = key(x) - kOneKey;
  if (d0 >= kOutsideDistance) {
    if (is_nan(x) || (sign_of(x) == 0 && exponent_field(x) == 0x7FFF)) return quiet(x);
    return sse_default_nan();
  }
  if (d0 >= kLogDistance) return log_forms(x, exponent_field(x));
  if (d0 >= kQDistance) return q_path(x);
  if (x == 1.0L) return 0.0L;
  return q1_path(x);
}
