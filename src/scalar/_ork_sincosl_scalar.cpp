// orksincosl_scalar: sin x and cos x together in the 80-bit format at 64-bit
// precision: one reduction, both series (each in one Horner chain), and a
// swap by the octant.
// max error 0.5005 ulp (64-bit significand) at x = -0x8.5d0712ee209dc8bp+17 (sin), -0x9.a8d6742f2962ca5p+14
// (cos).
#include "scalar/extended_trig.h"

using namespace lux::x80;

namespace {

// sin t and cos t on the reduced argument, each a head plus the rest.
void both_series(const Octant& o, ld* vs, ld* vc) {
  const Square s = square_of(o);
  const ld z = s.z, g = s.g;
  {
    const auto A = [](int i) { return value(kSP[i]); };
    const ld H =
        ((((((((A(8) * z + A(7)) * z + A(6)) * z + A(5)) * z + A(4)) * z + A(3)) * z + A(2)) * z + A(1)) * z +
         A(0)) *
        z;
    const ld B = (H + A(10) * s.f) + A(9) * s.d;
    const ld u = A(9) * g + (A(10) * g) * g;
    const ld b = split_by(B + u, dbl(kTwo53H)).h;
    const ld p = o.h + b * o.h;
    *vs = p + ((((B + (u - b)) * o.t + o.l * b) + o.l) + (b * o.h + (o.h - p)));
  }
  {
    const auto A = [](int i) { return value(kCP[i]); };
    const ld H =
        ((((((((A(8) * z + A(7)) * z + A(6)) * z + A(5)) * z + A(4)) * z + A(3)) * z + A(2)) * z + A(1)) * z +
         A(0)) *
        z;
    const ld B = s.d * A(9) + (s.f * A(10) + H);
    const ld u = (A(10) * g) * g + A(9) * g;
    const ld b = split_by(B + u, dbl(kTwo53H)).h;
    const ld k = 1.0L + b;
    *vc = k + ((B + (u - b)) + (b + (1.0L - k)));
  }
}

}  // namespace

extern "C" void orksincosl_scalar(long double x, long double* sin_out, long double* cos_out) {
  const unsigned sign = sign_of(x);
  const uint32_t e = exponent_field(x);
  if (e >= kReduceField) {
    if (e == 0x7FFF) {
      const ld v = is_nan(x) ? quiet(x) : sse_default_nan();
      *sin_out = v;
      *cos_out = v;
      return;
    }
    const Octant o = octant_reduce(x * value(kOnes[sign]), e, kTwo52H);
    ld vs, vc;
    both_series(o, &vs, &vc);
    const ld s1 = value(kOnes[sign ^ ((o.c >> 2) & 1)]);
    const ld s2 = value(kOnes[((o.n + 3) >> 2) & 1]);
    if ((o.c & 2) == 0) {
      *sin_out = vs * s1;
      *cos_out = vc * s2;
    } else {
      *sin_out = vc * s1;
      *cos_out = vs * s2;
    }
    return;
  }
  const ld z = x * x;
  if (e >= 0x3FF4) {
    const auto S = [](int i) { return value(kSP1[i]); };
    const auto C = [](int i) { return value(kCP1[i]); };
    *sin_out = x + ((((S(3) * z + S(2)) * z + S(1)) * z + S(0)) * z) * x;
    *cos_out = z * (((C(3) * z + C(2)) * z + C(1)) * z + C(0)) + 1.0L;
    return;
  }
  if (e >= 0x3FEC) {
    *sin_out = x + ((value(kSP2[1]) * z + value(kSP2[0])) * z) * x;
    *cos_out = z * (value(kCP2[1]) * z + value(kCP2[0])) + 1.0L;
    return;
  }
  if (e >= 0x3FB4) {
    *sin_out = ((value(kSP3[0]) * x) * x) * x + x;
    *cos_out = x * (value(kCP3[0]) * x) + 1.0L;
    return;
  }
  if (e == 0 && image(x).sig == 0) {
    *sin_out = x;
    *cos_out = 1.0L;
    return;
  }
  if (e == 0) raise_by_square(value(kSmallValue[0]), value(kSmallValue[sign]));
  *sin_out = (dbl(kTwo75) * x - x) * dbl(kTwoM75);
  *cos_out = 1.0L - opaque(value(kSmallValue[0]));
}
