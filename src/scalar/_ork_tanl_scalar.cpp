// orktanl_scalar: tan x in the 80-bit format at 64-bit precision: the tan
// family's octant reduction, then tan t or -cot t directly for |t| < pi/64,
// else from the table point a = k pi/64: tan(a + r) = T - X tau/(G + tau),
// -cot(a + r) = G + X tau/(T + tau), tau = tan r (T = tan a, G = -cot a,
// X = tan a + cot a).
// max error 0.5008 ulp (64-bit significand) at x = 0xa.b6d808381e786acp+26.
#include "scalar/extended_trig.h"

using namespace lux::x80;

namespace {

constexpr uint32_t kMainField = 0x3FF5;  // |x| >= 2^-10
constexpr uint32_t kP1Field = 0x3FF3;    // |x| >= 2^-12
constexpr uint32_t kP2Field = 0x3FEC;    // |x| >= 2^-19
constexpr uint32_t kP3Field = 0x3FB4;    // |x| >= 2^-75

// tan t = t + t^3 (PT0 + PT1 t^2 + ...) for |t| <= pi/64.
constexpr OrkX80Slot kPT[6] = {
    slot(0x3FFD, 0xAAAAAAAAAAAAAAABull),  // 0.33333333333333331483
    slot(0x3FFC, 0x88888888888889BCull),  // 0.13333333333333333148
    slot(0x3FFA, 0xDD0DD0DD0D75E827ull),  // 0.053968253968233771689
    slot(0x3FF9, 0xB327A4464A5BED85ull),  // 0.021869488571904842356
    slot(0x3FF8, 0x9136FBF9450380C3ull),  // 0.0088632069283251790903
    slot(0x3FF6, 0xEC1ACDFA377C81F7ull),  // 0.0036026718973669116797
};
// -cot t = -1/t + t (PG0 + PG1 t^2 + ...) for |t| <= pi/64.
constexpr OrkX80Slot kPG[6] = {
    slot(0x3FFD, 0xAAAAAAAAAAAAAAABull),  // 0.33333333333333331483
    slot(0x3FF9, 0xB60B60B60B60B60Cull),  // 0.02222222222222222307
    slot(0x3FF6, 0x8AB355E008AAFD63ull),  // 0.0021164021164021135091
    slot(0x3FF2, 0xDDEBBC99BFAA9234ull),  // 0.0002116402116455842774
    slot(0x3FEF, 0xB35477029EF47093ull),  // 2.1377794856085453434e-05
    slot(0x3FEC, 0x915B6CEADEC1E375ull),  // 2.1659900352145784887e-06
};
// tan x - x for 2^-12 <= |x| < 2^-10.
constexpr OrkX80Slot kP1[4] = {
    slot(0x3FFD, 0xAAAAAAAAAAAAAAABull),  // 0.33333333333333331483
    slot(0x3FFC, 0x8888888888888889ull),  // 0.13333333333333333148
    slot(0x3FFA, 0xDD0DD0DD0DA37AD5ull),  // 0.053968253968243888596
    slot(0x3FF9, 0xB327AD54E4AE415Dull),  // 0.021869505441960673808
};
// tan x - x for 2^-19 <= |x| < 2^-12.
constexpr OrkX80Slot kP2[2] = {
    slot(0x3FFD, 0xAAAAAAAAAAAAA736ull),  // 0.33333333333333331483
    slot(0x3FFC, 0x888888BFCC6B5D1Aull),  // 0.1333333365501901957
};
// tan x - x for 2^-75 <= |x| < 2^-19.
constexpr OrkX80Slot kP3[1] = {
    slot(0x3FFD, 0xAAAAAAAAAB333444ull),  // 0.33333333333357589856
};

constexpr OrkX80Slot kKPi04 = slot(0x4003, 0xA2F9836E4E44152Aull);  // 64/pi
// pi/64 in two parts; the first times |k| <= 17 is exact in a double.
constexpr uint64_t kPi04K[2] = {0x3FA921FB54400000ull, 0x3D80B4611A626331ull};

// Pairs (hi, lo) for k = -17..17 at index k + 17, a = k pi/64.
alignas(16) constexpr uint64_t kTT[35][2] = {
// tan a
#include "scalar/tt_table.inc"
};
alignas(16) constexpr uint64_t kGG[35][2] = {
// -cot a
#include "scalar/gg_table.inc"
};
alignas(16) constexpr uint64_t kTG[35][2] = {
// tan a + cot a
#include "scalar/tg_table.inc"
};

struct Pair {
  ld hi, lo;
};
Pair pair(const uint64_t (&t)[35][2], int k) { return {dbl(t[k + 17][0]), dbl(t[k + 17][1])}; }

ld pt(int i) { return value(kPT[i]); }

// |t| < pi/64.
ld direct(const Octant& o, bool cot) {
  const ld S = dbl(kTwo48H);
  const ld h = o.h, l = o.l, t = o.t;
  if (!cot) {
    const ld z = t * t, w = z * z;
    const ld p = z * ((pt(4) * w + pt(2)) * w + pt(0)) + ((pt(5) * w + pt(3)) * w + pt(1)) * w;
    const Split sp = split_by(p, S);
    const ld tail = l + (sp.l * t + sp.h * l);
    const ld v = sp.h * h;
    return (tail + ((h - (h + v)) + v)) + (h + v);
  }
  const auto G = [](int i) { return value(kPG[i]); };
  const ld q = -1.0L / t;
  const Split sq = split_by(q, S);
  const ld z = (h + t) * l + h * h, w = z * z;
  const ld P = (((G(5) * w + G(3)) * w + G(1)) * z) * t + ((G(4) * w + G(2)) * w + G(0)) * t;
  return (P + (q * ((l * q + h * sq.l) + (h * sq.h + 1.0L)) + sq.l)) + sq.h;
}

// k pi/64 <= |t| < (k + 1) pi/64 with the sign of t in k.
ld from_table(const Octant& o, int k, bool cot) {
  const ld S = dbl(kTwo48H);
  const double kf = double(k);
  const ld rh = o.h - ld(__builtin_bit_cast(double, kPi04K[0]) * kf);
  const ld rl = o.l - ld(__builtin_bit_cast(double, kPi04K[1]) * kf);
  const Pair T = pair(kTT, k), G = pair(kGG, k), X = pair(kTG, k);
  if (!cot) {
    const ld u = rh + rl;
    const ld z = u * u, w = z * z;
    const ld p = ((pt(5) * w + pt(3)) * w + pt(1)) * w + ((pt(4) * w + pt(2)) * w + pt(0)) * z;
    const Split sp = split_by(p, S);
    const ld tail = rl + (u * sp.l + rl * sp.h);
    const ld high = sp.h * rh + rh;
    ld tau = high + tail;
    const ld tau1 = split_by(tau, S).h;
    const ld tau2 = (high - tau1) + tail;
    tau = tau1 + tau2;
    const ld n1 = X.hi * tau2 + tau * X.lo;
    const ld dh = tau1 + G.hi, dl = tau2 + G.lo;
    const ld q = -1.0L / (dh + dl);
    const Split sq = split_by(q, S);
    const ld e = ((dl * q + dh * sq.l) + (dh * sq.h + 1.0L)) * q + sq.l;
    const ld m = sq.h * (X.hi * tau1);
    const ld v = T.hi + m;
    return v + ((m - (v - T.hi)) + ((e * (n1 + X.hi * tau1) + sq.h * n1) + T.lo));
  }
  const ld u = rh + rl;
  const ld z = (rh + u) * rl + rh * rh, w = z * z;
  const ld tail =
      ((((pt(5) * w + pt(3)) * w + pt(1)) * w) * u + (((pt(4) * w + pt(2)) * w + pt(0)) * z) * u) + rl;
  const ld tau = rh + tail;
  const ld n = X.hi * tail;
  const ld n2 = n + tau * X.lo;
  const ld N1 = round_by(X.hi * rh + n2, S);
  const ld N2 = (n + (rh + tail) * X.lo) + (X.hi * rh - N1);
  const ld dh = rh + T.hi, dl = tail + T.lo;
  const ld q = 1.0L / (dh + dl);
  const ld qh = round_by(q, S);
  const ld e = ((dl * q + dh * (q - qh)) + (dh * qh - 1.0L)) * q;
  return (qh * N1 + G.hi) + (((N2 + N1) * ((q - qh) - e) + qh * N2) + G.lo);
}

}  // namespace

extern "C" long double orktanl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kMainField) {
    if (e == 0x7FFF) return is_nan(x) ? quiet(x) : sse_default_nan();
    const ld s = value(kOnes[sign]);
    Octant o;
    if (e < kReduceField || exponent_field(dbl(kPi4Inv) * (x * s)) < 16383) {
      // Below pi/4 the reduction leaves x itself.
      const Split sp = split_by(x, dbl(kTwo48H));
      o = {1, 0, sp.h, sp.l, x};
    } else {
      o = octant_reduce(x * s, e, kTwo48H);
      o.h = o.h * s;
      o.l = o.l * s;
      o.t = o.h + o.l;
    }
    const bool cot = (o.c & 2) != 0;
    const ld Y = value(kKPi04) * o.t;
    const uint32_t ey = exponent_field(Y);
    if (ey < 16383) return direct(o, cot);
    const int k = int(uint32_t(image(Y).sig >> 32) >> (31 - (ey - 16383)));
    return from_table(o, sign_of(o.t) ? -k : k, cot);
  }
  if (e >= kP1Field) return odd_q1(x, kP1);
  const ld z = x * x;
  if (e >= kP2Field) return x + (z * (value(kP2[1]) * z + value(kP2[0]))) * x;
  if (e >= kP3Field) return x + (z * value(kP3[0])) * x;
  if (e == 0) {
    if (image(x).sig == 0) return x;
    raise_by_square(value(kSmallValue[0]), value(kSmallValue[sign]));
  }
  return (x + dbl(kTwo75) * x) * dbl(kTwoM75);
}
