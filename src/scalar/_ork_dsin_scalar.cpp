// _dSin: sin x in double precision for every double, on the SSE unit; from
// 2^17 on after the exact reduction.  max error 0.513 ulp at
// x = -0x1.101cca57009bp+15 (trigcore_test).
#include "scalar/dsincos_steps.h"

extern "C" alignas(16) const OrkDSinTab _dSinTab = {
    .entry =
        {
#include "scalar/_ork_dsincos_entries.inc"
        },
    .k =
        {
            .inv_step = 0x40245F306DC9C883ull,  // 32/pi = 10.185916357881302
            .shifter = 0x4338000000000000ull,   // 1.5 2^52
            .step = {0x3FB921FB54400000ull, 0x3D90B4611A600000ull, 0x3B63198A2E037073ull},
            // Taylor coefficients of sin r / r - 1 in z = r^2, |r| <= pi/64.
            .sin_c = {0xBFC5555555555555ull, 0x3F81111111111111ull, 0xBF2A01A01A01A01Aull,
                      0x3EC71DE3A556C734ull},  // -1/6, 1/120, -1/5040, 1/362880
            // Taylor coefficients of cos r - 1.
            .cos_c = {0xBFE0000000000000ull, 0x3FA5555555555555ull, 0xBF56C16C16C16C17ull,
                      0x3EFA01A01A01A01Aull},  // -1/2, 1/24, -1/720, 1/40320
        },
    .two55 = 0x4360000000000000ull,
    .two_m55 = 0x3C80000000000000ull,
    .zero = 0,
};

extern "C" __m128d _dSin(__m128d xv) {
  using namespace lux::trig;
  const OrkDSinTab& T = _dSinTab;
  const double x = lane(xv);
  const uint32_t e = uint32_t(bits(x) >> 52) & 0x7FF;
  if (__builtin_expect(e == 0x7FF, 0)) return not_finite(x, T.zero);
  if (__builtin_expect(e < kTinyExponent, 0)) return sin_of_tiny(xv, T.two55, T.two_m55);
  const GridPoint g = to_grid(T.k, x, e);
  return as_lane(from_entry(T.entry[g.index & 0x3F], g));
}
