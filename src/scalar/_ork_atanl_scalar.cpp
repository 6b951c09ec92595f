// orkatanl_scalar: atan x in the 80-bit format at 64-bit precision: a
// rational step to the nearest table point i/128 (of |x| or of 1/|x|) and a
// short series, pi/2 - 1/|x| + ... from 2^11, odd polynomials below 2^-7.
// max error 0.5002 ulp (64-bit significand) at x = 0xd.a85710f920f3585p+8.
#include "scalar/extended_atan.h"

using namespace lux::x80;

namespace {

constexpr uint32_t kLimitField = 0x4040;  // |x| >= 2^65: +-pi/2 rounded
constexpr uint32_t kLargeField = 0x400A;  // |x| >= 2^11: pi/2 - atan(1/|x|)
constexpr uint32_t kTableField = 0x3FF8;  // |x| >= 2^-7
constexpr uint32_t kPField = 0x3FF3;      // |x| >= 2^-12
constexpr uint32_t kP1Field = 0x3FED;     // |x| >= 2^-18
constexpr uint32_t kP2Field = 0x3FB4;     // |x| >= 2^-75
// pi/2 in two doubles.
constexpr uint64_t kPi02[2] = {0x3FF921FB54400000ull, 0x3DD0B4611A626331ull};

ld table_path(ld x, unsigned sign, uint32_t e) {
  const ld s = value(kOnes[sign]);
  const ld ax = x * s;
  const ld S = dbl(kTwo48H);
  unsigned n;
  ld D1, D2, Nh, Nl;
  if (e >= 0x3FFF) {
    // atan(ax) = (pi/2 - atan c) + atan((c ax - 1)/(ax + c)), c ~ 1/ax.
    const ld v = 1.0L / ax;
    const TablePoint tp = table_point(128.0L * v);
    n = 256 - tp.i;
    const Split sa = split_by(ax, S);
    D1 = split_by(tp.c + sa.h, S).h;
    D2 = sa.l + (tp.c - (D1 - sa.h));
    Nh = sa.h * tp.c - 1.0L;
    Nl = sa.l * tp.c;
  } else {
    // atan(ax) = atan c + atan((ax - c)/(1 + ax c)), c ~ ax.
    const TablePoint tp = table_point(128.0L * ax);
    n = tp.i;
    const Split sa = split_by(ax, S);
    D2 = sa.l * tp.c;
    D1 = sa.h * tp.c + 1.0L;
    const Split sn = split_by(ax - tp.c, S);
    Nh = sn.h;
    Nl = sn.l;
  }
  const ld q = 1.0L / (D1 + D2);
  const Split sq = split_by(q, S);
  const ld e2 = ((D1 * sq.h - 1.0L) + (D2 * q + D1 * sq.l)) * q;
  const ld m = Nl * q;
  const ld rl = m + (sq.l - e2) * Nh;
  const ld t1 = Nh * sq.h;
  const ld r = t1 + rl;
  const ld low = rl + r * atan_poly(r * r);
  const AtanPair p = atan_pair(n);
  const ld u = p.hi + t1;
  const ld R = split_by(u, dbl(kTwo32H)).h;
  return ((((p.hi - R) + t1) + (low + p.lo)) + R) * s;
}

}  // namespace

extern "C" long double orkatanl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kLimitField) {
    if (is_nan(x)) return quiet(x);
    return value(kPi2l[sign]) - opaque(value(kSmallValue[sign]));
  }
  if (e >= kLargeField) {
    const ld u = -1.0L / (x * value(kOnes[sign]));
    const ld v = u + ((((value(kAtanP1[1]) * u) * u + value(kAtanP1[0])) * u) * u) * u;
    return ((v + dbl(kPi02[1])) + dbl(kPi02[0])) * value(kOnes[sign]);
  }
  if (e >= kTableField) return table_path(x, sign, e);
  if (e >= kPField) return odd_q1(x, kAtanP);
  if (e >= kP1Field) return odd_q2(x, kAtanP1);
  if (e >= kP2Field) return odd_q3(x, kAtanP2[0]);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    return x - opaque(value(kSmallValue[0])) * value(kSmallValue[sign]);
  }
  return (dbl(kTwo75) * x - x) * dbl(kTwoM75);
}
