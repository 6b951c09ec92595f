// orksinl_scalar: sin x in the 80-bit format at 64-bit precision: reduction
// by multiples of pi/4 (exact from 2^30), then the sine or cosine series on
// the remainder in two parts; odd polynomials below 2^-5.
// max error 0.5005 ulp (64-bit significand) at x = -0x8.5d0712ee209dc8bp+17.
#include "scalar/extended_trig.h"

using namespace lux::x80;

extern "C" long double orksinl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kReduceField) {
    if (e == 0x7FFF) return is_nan(x) ? quiet(x) : sse_default_nan();
    const Octant o = octant_reduce(x * value(kOnes[sign]), e, kTwo52H);
    const TwoParts v = sin_or_cos(o, (o.c & 2) != 0);
    const ld sg = value(kOnes[sign ^ ((o.c >> 2) & 1)]);
    return v.head * sg + v.rest * sg;
  }
  if (e >= 0x3FF4) return odd_q1(x, kSP1);
  if (e >= 0x3FEC) return odd_q2(x, kSP2);
  if (e >= 0x3FB4) return odd_q3(x, kSP3[0]);
  if (e == 0) {
    if (image(x).sig == 0) return x;
    raise_by_square(value(kSmallValue[0]), value(kSmallValue[sign]));
  }
  return (dbl(kTwo75) * x - x) * dbl(kTwoM75);
}
