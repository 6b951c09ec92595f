// _dSinCos: sin x and cos x in double precision for every double, from one
// reduction and two table entries a quarter turn apart: bit for bit the
// results of _dSin and _dCos (trigcore_test).
#include "scalar/dsincos_steps.h"

extern "C" alignas(16) const OrkDSinCosTab _dSinCosTab = {
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
    .two55 = 0x4360000000000000ull,
    .two_m55 = 0x3C80000000000000ull,
    .one = 0x3FF0000000000000ull,
    .zero = 0,
};

extern "C" void _dSinCos(__m128d xv, lux64f* sinOut, lux64f* cosOut) {
  using namespace lux::trig;
  const OrkDSinCosTab& T = _dSinCosTab;
  const double x = lane(xv);
  const uint32_t e = uint32_t(bits(x) >> 52) & 0x7FF;
  if (__builtin_expect(e == 0x7FF, 0)) {
    const __m128d v = not_finite(x, T.zero);
    _mm_store_sd(sinOut, v);
    _mm_store_sd(cosOut, v);
    return;
  }
  if (__builtin_expect(e < kTinyExponent, 0)) {
    _mm_store_sd(sinOut, sin_of_tiny(xv, T.two55, T.two_m55));
    _mm_store_sd(cosOut, cos_of_tiny(x, T.one));
    return;
  }
  const GridPoint g = to_grid(T.k, x, e);
  _mm_store_sd(sinOut, as_lane(from_entry(T.entry[g.index & 0x3F], g)));
  _mm_store_sd(cosOut, as_lane(from_entry(T.entry[(g.index + 16) & 0x3F], g)));
}
