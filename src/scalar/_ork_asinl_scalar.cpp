// orkasinl_scalar: asin x in the 80-bit format at 64-bit precision: a series
// on x with its leading terms split below 0.5, and from 0.5 the half angle
// pi/2 - 2 asin(sqrt((1 - |x|)/2)) with the root in two parts.
// max error 0.5019 ulp (64-bit significand) at x = -0x8.54cc72a8ef49351p-4.
#include "scalar/asinl_core.h"

using namespace lux::x80;

extern "C" long double orkasinl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= 0x3FFF) {
    if (is_nan(x)) return quiet(x);
    if (e == 0x3FFF && image(x).sig == 0x8000000000000000ull)
      return value(kPi2l[sign]) + opaque(value(kSmallValue[sign]));
    return sse_default_nan();
  }
  if (e >= kAsinHalfAngleField) {
    const HalfAngle ha = half_angle(x * value(kOnes[sign]));
    const AsinCore c = asin_core(ha.h, ha.l, ha.t, exponent_field(ha.t) >= kAsinWideField);
    const ld W = ((c.V * ha.t + c.m * ha.l) + ha.l) * (-2.0L);
    const ld p = (c.m * ha.h + ha.h) * (-2.0L);
    const ld v = value(kPi02[0]) + p;
    const ld p2 = p - (v - value(kPi02[0]));
    return (v + (p2 + (W + value(kPi02[1])))) * value(kOnes[sign]);
  }
  if (e >= 0x3FF8) {
    const Split sp = split_by(x, dbl(kTwo52H));
    const AsinCore c = asin_core(sp.h, sp.l, x, e >= kAsinWideField);
    return (sp.l + (c.V * x + c.m * sp.l)) + (sp.h + c.m * sp.h);
  }
  if (e >= 0x3FF3) return odd_q1(x, kAsinP2);
  if (e >= 0x3FED) return odd_q2(x, kAsinP3);
  if (e >= 0x3FB4) return odd_q3(x, kAsinP4[0]);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    return opaque(value(kSmallValue[0])) * value(kSmallValue[sign]) + x;
  }
  return (x + dbl(kTwo75) * x) * dbl(kTwoM75);
}
