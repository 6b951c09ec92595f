// orkatan2l_scalar: the angle of (x, y) in [-pi, pi] in the 80-bit format at
// 64-bit precision: the smaller of |x|, |y| over the larger, measured from
// the nearer axis by a rational step to a table point and a short series; a
// plain series when the ratio is below 2^-12, the axis angle (or y/x) when
// it is below 2^-75.
// max error 0.5 ulp (64-bit significand) at (y, x) = (-0x9.3f928c034a53ce8p+59, 0xb.209820bbb33c0edp+60).
#include "scalar/extended_atan.h"

using namespace lux::x80;

namespace {

constexpr int kTableSpread = 12;         // exponents of the ratio's terms apart by at most this: table path
constexpr int kShortSpread = 75;         // up to this: short path; beyond, the limit path
constexpr uint32_t kSmallField = 8191;   // both at most 2^-8191: scale up
constexpr uint32_t kLargeField = 24575;  // both from 2^8192: scale down
constexpr OrkX80Slot kTwo8192[2] = {slot(0x5FFF, 0x8000000000000000ull), slot(0x1FFF, 0x8000000000000000ull)};
constexpr OrkX80Slot kZeros[2] = {slot(0x0000, 0), slot(0x8000, 0)};

// An angle rounded to the format, made inexact by the sign's tiny value.
ld angle(const OrkX80Slot (&a)[2], unsigned sy) { return value(a[sy]) - opaque(value(kSmallValue[sy])); }

}  // namespace

extern "C" long double orkatan2l_scalar(long double y, long double x) {
  if (is_nan(y) || is_nan(x)) return x * y;
  const unsigned sy = sign_of(y), sx = sign_of(x);
  uint32_t ey = exponent_field(y), ex = exponent_field(x);
  const bool y_inf = ey == 0x7FFF, x_inf = ex == 0x7FFF;
  if (y_inf) {
    if (x_inf) return sx ? angle(kPi34l, sy) : angle(kPi4l, sy);
    return angle(kPi2l, sy);
  }
  if (x_inf) return sx ? angle(kPi0l, sy) : value(kZeros[sy]);
  const bool y_zero = ey == 0 && image(y).sig == 0, x_zero = ex == 0 && image(x).sig == 0;
  if (y_zero) return sx ? angle(kPi0l, sy) : value(kZeros[sy]);
  if (x_zero) return angle(kPi2l, sy);

  if (ex <= kSmallField && ey <= kSmallField) {
    x = x * value(kTwo8192[0]);
    y = y * value(kTwo8192[0]);
  } else if (ex >= kLargeField && ey >= kLargeField) {
    x = x * value(kTwo8192[1]);
    y = y * value(kTwo8192[1]);
  }
  ey = exponent_field(y);
  ex = exponent_field(x);
  const ld ax = x * value(kOnes[sx]), ay = y * value(kOnes[sy]);
  const ld R = value(kOnes[sy]);
  const bool from_y_axis = ax <= ay;  // the angle measured from the y axis
  const ld a = from_y_axis ? ax : ay, b = from_y_axis ? ay : ax;
  const int spread = from_y_axis ? int(ey) - int(ex) : int(ex) - int(ey);

  if (spread <= kTableSpread) {
    const ld S = dbl(kTwo48H);
    const TablePoint tp = table_point((128.0L * a) / b);
    const Split s1 = split_by(a, S), s2 = split_by(b, S);
    const ld D1 = s1.h * tp.c + s2.h, D2 = s1.l * tp.c + s2.l;
    const ld N1 = s1.h - s2.h * tp.c, N2 = s1.l - s2.l * tp.c;
    const ld q = 1.0L / (D2 + D1);
    const Split sq = split_by(q, S);
    const ld e = ((D2 * q + D1 * sq.l) + (D1 * sq.h - 1.0L)) * q;
    const ld t1 = sq.h * N1;
    const ld t2 = sq.h * N2 + (N2 + N1) * (sq.l - e);
    const ld t = t1 + t2;
    const ld z = (t1 + t) * t2 + t1 * t1;
    const ld T = t2 + t * atan_poly(z);
    // Angles c + atan t (or their reflections) about the table point.
    const auto sum = [&](unsigned n) {
      const AtanPair p = atan_pair(n);
      const ld v = t1 + p.hi;
      return v + ((t1 + (p.hi - v)) + (T + p.lo));
    };
    const auto difference = [&](unsigned n) {
      const AtanPair p = atan_pair(n);
      const ld v = p.hi - t1;
      return v + ((p.lo - T) + ((p.hi - v) - t1));
    };
    ld r;
    if (!from_y_axis)
      r = sx ? difference(512 - tp.i) : sum(tp.i);
    else
      r = sx ? sum(256 + tp.i) : difference(256 - tp.i);
    return r * R;
  }
  if (spread <= kShortSpread) {
    const ld u = a / b;
    const ld poly = atan_poly(u * u);
    if (from_y_axis) {
      const AtanPair p = atan_pair(256);
      const ld v = poly * u + u;
      return (sx ? (v + p.lo) + p.hi : (p.lo - v) + p.hi) * R;
    }
    if (sx) {
      const AtanPair p = atan_pair(512);
      const ld v = u + poly * u;
      return ((p.lo - v) + p.hi) * R;
    }
    // ay/ax in two parts: the head exact, the rest through a corrected
    // reciprocal.
    const ld S = dbl(kTwo32H);
    const Split s1 = split_by(ax, S), s2 = split_by(ay, S);
    const ld q = 1.0L / (s1.h + s1.l);
    const Split sq = split_by(q, S);
    const ld v = opaque(poly * u);
    const ld e = (sq.l - ((s1.l * q + s1.h * sq.l) + (s1.h * sq.h - 1.0L)) * q) * ay;
    return (((sq.h * s2.l + e) + v) + sq.h * s2.h) * R;
  }
  if (from_y_axis) return angle(kPi2l, sy);
  if (sx) return angle(kPi0l, sy);
  const ld quotient = opaque(y / x);
  if (exponent_field(quotient) == 0)
    raise_by_square(value(kSmallValue[0]));
  else
    raise_inexact();
  return quotient;
}
