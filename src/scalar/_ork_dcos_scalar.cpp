// _dCos: cos x in double precision for every double, on the SSE unit: the
// sine's grid shifted by a quarter turn.  max error 0.509 ulp on random
// arguments, 0.601 ulp at x = 0x1.65a1dd290660fp+16, next to a multiple of
// pi/2 (trigcore_test).
#include "scalar/dsincos_steps.h"

extern "C" alignas(16) const OrkDCosTab _dCosTab = {
    .entry =
        {
#include "scalar/_ork_dsincos_entries.inc"
        },
    .k =
        {
            .inv_step = 0x40245F306DC9C883ull,  // 32/pi
            .shifter = 0x4338000000000000ull,   // 1.5 2^52
            .step = {0x3FB921FB54400000ull, 0x3D90B4611A600000ull, 0x3B63198A2E037073ull},
            .sin_c = {0xBFC5555555555555ull, 0x3F81111111111111ull, 0xBF2A01A01A01A01Aull,
                      0x3EC71DE3A556C734ull},  // -1/6, 1/120, -1/5040, 1/362880
            .cos_c = {0xBFE0000000000000ull, 0x3FA5555555555555ull, 0xBF56C16C16C16C17ull,
                      0x3EFA01A01A01A01Aull},  // -1/2, 1/24, -1/720, 1/40320
        },
    .one = 0x3FF0000000000000ull,
    .zero = 0,
};

extern "C" __m128d _dCos(__m128d xv) {
  using namespace lux::trig;
  const OrkDCosTab& T = _dCosTab;
  const double x = lane(xv);
  const uint32_t e = uint32_t(bits(x) >> 52) & 0x7FF;
  if (__builtin_expect(e == 0x7FF, 0)) return not_finite(x, T.zero);
  if (__builtin_expect(e < kTinyExponent, 0)) return cos_of_tiny(x, T.one);
  const GridPoint g = to_grid(T.k, x, e);
  return as_lane(from_entry(T.entry[(g.index + 16) & 0x3F], g));
}
