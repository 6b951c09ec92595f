// _dTan: tan x in double precision for every double, on the SSE unit; from
// 12800 on after the exact reduction.  Near the poles the tangent is split
// into -1/w, w the distance from the pole carried in two parts, and a
// regular part from the table.  max error 0.583 ulp at
// x = 0x1.fdbe428e27a1bp+22; 0.4998 ulp next to the poles (trigcore_test).
#include "scalar/dsincos_steps.h"

namespace {
constexpr uint32_t kReduceHighBits = 0x40C9;  // high 16 bits of |x|: |x| >= 12800
}

extern "C" alignas(16) const OrkDTanTab _dTanTab = {
    .inv_step = 0x40245F306DC9C883ull,      // 32/pi
    .grid_shifter = 0x4338000000000000ull,  // 1.5 2^52: rounds to an integer
    .pole_shifter = 0x4378000000000000ull,  // 1.5 2^56: rounds to a multiple of 16
    // pi/32 = B1 + B2 + B3 (B2 negative) and A1 + A2 + A3; B1 m, B2 m, A1 n, A2 n exact.
    .B = {0x3FB921FB54444000ull, 0xBD32E7B967674000ull, 0x3AA8A2E03707344Aull},
    .A = {0x3FB921FB54440000ull, 0x3D468C234C4C0000ull, 0x3AE98A2E03707345ull},
    .B2p = 0x3D32E7B9676733AFull,  // -(B2 + B3)
    .one = 0x3FF0000000000000ull,
    .zero = 0,
    .two55 = 0x4360000000000000ull,
    .two_m55 = 0x3C80000000000000ull,
    .entry =
        {
#include "scalar/_ork_dtan_entries.inc"
        },
};

extern "C" __m128d _dTan(__m128d xv) {
  using namespace lux::trig;
  const OrkDTanTab& T = _dTanTab;
  double x = lane(xv);
  const uint64_t xb = bits(x);
  const uint32_t e = uint32_t(xb >> 52) & 0x7FF;
  if (__builtin_expect(e == 0x7FF, 0)) {
    if ((xb & 0x000FFFFFFFFFFFFFull) == 0) return as_lane(x * opaque(f64(T.zero)));
    return as_lane(x * x);
  }
  if (__builtin_expect(e < kTinyExponent, 0)) {
    if ((xb << 1) == 0) return xv;
    return as_lane((f64(T.two55) * opaque(x) - x) * f64(T.two_m55));
  }
  uint32_t q = 0;
  double corr = 0.0;
  if ((uint32_t(xb >> 48) & 0x7FFF) >= kReduceHighBits) {
    double out[2];
    q = orkreduce_pio2d(x, out);
    x = out[0];
    corr = out[1];
  }
  // Grid point n and the nearest pole (or zero) m, in steps of pi/32.
  const double y = x * f64(T.inv_step);
  const double t1 = y + f64(T.grid_shifter);
  const uint32_t k = uint32_t(bits(t1));
  const double n = t1 - f64(T.grid_shifter);
  const double t2 = y + f64(T.pole_shifter);
  const double m = t2 - f64(T.pole_shifter);
  const OrkTanEntry& E = T.entry[((q << 4) + k) & 0x1F];
  auto c = [&](OrkTanField f) { return f64(E.f[f]); };
  // Distance from the grid point: r + cc.
  const double A1 = f64(T.A[0]), A2 = f64(T.A[1]), A3 = f64(T.A[2]);
  const double u = x - A1 * n;
  const double r = u - A2 * n;
  const double cc = (((u - r) - A2 * n) - A3 * n) + corr;
  // Distance from the pole: wv + vt.
  const double B1 = f64(T.B[0]), B2 = f64(T.B[1]), B3 = f64(T.B[2]);
  const double v = x - B1 * m;
  const double wv = v - B2 * m;
  const double vt = (((v - wv) - B2 * m) - B3 * m) + corr;
  // w = wz + dw with wz short; rc = 1/wz; rm its top bits in the pole rows.
  const double w0 = f64(T.B2p) * m + v;
  const double wz = f64(bits(w0) & ~((uint64_t(1) << 18) - 1));
  const double rc = f64(T.one) / wz;
  const double dw = vt + (wv - wz);
  const double rm = f64(bits(rc) & E.f[kTanPoleMask]);
  // Powers of r and the Taylor polynomial from the second order on.
  const double z = r * r;
  const double f = z * z;
  const double p = f * r;
  const double o = f * f;
  const double a1 = (c(kTanC3) * r + c(kTanC2)) * z + c(kTanC4) * f;
  const double a2 = (c(kTanC6) * r + c(kTanC5)) + c(kTanC7) * z;
  const double b1 = ((c(kTanC9) * r + c(kTanC8)) + (c(kTanC11) * r + c(kTanC10)) * z) + c(kTanC12) * f;
  const double b2 = ((c(kTanC14) * r + c(kTanC13)) + c(kTanC15) * z);
  const double P = (a1 + a2 * p) + o * (b1 + p * b2);
  // The linear term in head and tail.
  const double sh = c(kTanSlopeHead), st = c(kTanSlopeTail);
  const double G = sh * r + r * st;
  const double el = ((r * st + (sh * r - G)) + c(kTanTail)) + (sh + st) * cc;
  // 1/w = rm + E by one Newton step on the truncated reciprocal.
  const double Ep = (c(kTanPoleFactor) * rc) * ((f64(T.one) - wz * rm) - dw * rc);
  const double U = rm - c(kTanHead);
  const double D = G - U;
  const double low = G - (U + D);
  return as_lane(D + (((P + el) + low) - Ep));
}
