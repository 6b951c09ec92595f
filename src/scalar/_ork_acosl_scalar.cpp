// orkacosl_scalar: acos x in the 80-bit format at 64-bit precision: pi/2 -
// asin x in two parts below 0.5, and from 0.5 the half angle 2 asin(sqrt((1 -
// |x|)/2)), or pi minus it for x < 0.
// max error 0.5017 ulp (64-bit significand) at x = 0x8.b64ee0c745160dbp-4.
#include "scalar/asinl_core.h"

using namespace lux::x80;

extern "C" long double orkacosl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  const ld pi02h = value(kPi02[0]), pi02l = value(kPi02[1]);
  if (e >= 0x3FFF) {
    if (is_nan(x)) return quiet(x);
    if (e == 0x3FFF && image(x).sig == 0x8000000000000000ull)
      return sign ? value(kPi0l[0]) - opaque(value(kSmallValue[0])) : 0.0L;
    return sse_default_nan();
  }
  if (e >= kAsinHalfAngleField) {
    const HalfAngle ha = half_angle(x * value(kOnes[sign]));
    const AsinCore c = asin_core(ha.h, ha.l, ha.t, exponent_field(ha.t) >= kAsinWideField);
    const ld W = (c.V * ha.t + c.m * ha.l) + ha.l;
    const ld mh = c.m * ha.h;
    const ld p = ha.h + mh;
    if (!sign) return (((mh - (p - ha.h)) + W) + p) * 2.0L;
    const ld p1 = p * (-2.0L), W1 = W * (-2.0L);
    const ld v = value(kPi00[0]) + p1;
    const ld p2 = p1 - (v - value(kPi00[0]));
    return (p2 + (W1 + value(kPi00[1]))) + v;
  }
  if (e >= 0x3FF8) {
    const Split sp = split_by(x, dbl(kTwo52H));
    const AsinCore c = asin_core(sp.h, sp.l, x, e >= kAsinWideField);
    const ld W = (c.V * x + c.m * sp.l) + sp.l;
    const ld p = sp.h + c.m * sp.h;
    const ld v = pi02h - p;
    const ld p2 = p + (v - pi02h);
    return v + ((pi02l - W) - p2);
  }
  const ld z = x * x;
  if (e >= 0x3FF3) {
    const auto P = [](int i) { return value(kAsinP2[i]); };
    const Split sp = split_by(x, dbl(kTwo32H));
    const ld w = z * z;
    const ld poly = (P(3) * w + P(1)) * w + (w * P(2) + P(0)) * z;
    return (pi02h - sp.h) + (pi02l - (poly * x + sp.l));
  }
  if (e >= 0x3FED) return (pi02l - (x + (z * (value(kAsinP3[1]) * z + value(kAsinP3[0]))) * x)) + pi02h;
  if (e >= 0x3FB4) return (pi02l - (x + ((value(kAsinP4[0]) * x) * x) * x)) + pi02h;
  return (pi02l - x) + pi02h;
}
