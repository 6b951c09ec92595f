// orkcosl_scalar: cos x in the 80-bit format at 64-bit precision: reduction
// by multiples of pi/4 (exact from 2^30), then the cosine or sine series on
// the remainder in two parts; even polynomials below 2^-5.
// max error 0.5004 ulp (64-bit significand) at x = 0xc.6acd075ab6b469dp-4.
#include "scalar/extended_trig.h"

using namespace lux::x80;

extern "C" long double orkcosl_scalar(long double x) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kReduceField) {
    if (e == 0x7FFF) return is_nan(x) ? quiet(x) : sse_default_nan();
    const Octant o = octant_reduce(x * value(kOnes[sign]), e, kTwo52H);
    const TwoParts v = sin_or_cos(o, (o.c & 2) == 0);
    const ld sg = value(kOnes[((o.n + 3) >> 2) & 1]);
    return v.head * sg + v.rest * sg;
  }
  if (e >= 0x3FF4) return cos_q1(x);
  const ld z = x * x;
  if (e >= 0x3FEC) return z * (value(kCP2[1]) * z + value(kCP2[0])) + 1.0L;
  if (e >= 0x3FB4) return x * (value(kCP3[0]) * x) + 1.0L;
  if (e == 0 && image(x).sig == 0) return 1.0L;
  return 1.0L - opaque(value(kSmallValue[0]));
}
