// Sine and cosine on the usual range, on large arguments that still reduce in
// double-double, and on huge ones that need the exact reduction.
#include <sleef.h>

#include <cmath>

#include "loops.h"

namespace luxbench {
namespace {

const FamilyBench kSin = {
    .family = "Sin",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 1e5", kReal, uniform(-1e5, 1e5)},
            {"|x| in [1e6, 1e300]", k64f, signed_magnitudes(1e6, 1e300)},
            {"|x| in [1e6, 1e38]", k32f, signed_magnitudes(1e6, 1e38)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10)},
        },
    .peers =
        {
            {"glibc sin", k64f, unary<double, [](double v) { return std::sin(v); }>},
            {"libmvec sin", k64f, vec_d2<_ZGVbN2v_sin>},
            {"SLEEF sind2_u10", k64f, vec_d2<Sleef_sind2_u10sse2>},
            {"SLEEF sind2_u35", k64f, vec_d2<Sleef_sind2_u35sse2>},
            {"glibc sinf", k32f, unary<float, [](float v) { return std::sin(v); }>},
            {"libmvec sinf", k32f, vec_f4<_ZGVbN4v_sinf>},
            {"SLEEF sinf4_u10", k32f, vec_f4<Sleef_sinf4_u10sse2>},
            {"SLEEF sinf4_u35", k32f, vec_f4<Sleef_sinf4_u35sse2>},
            {"glibc csin", k64fc, unary<c64, [](c64 v) { return std::sin(v); }>},
            {"glibc csinf", k32fc, unary<c32, [](c32 v) { return std::sin(v); }>},
        },
    .notes =
        "A53/A50 in double precision: a table of 128 (64) angles with head and tail and a short Taylor "
        "polynomial; arguments beyond 90112 go through the scalar core with exact reduction by 4/pi. "
        "Float lanes beyond 10000 (4000 for A11 Sin) take the same double-precision scalar core, "
        "which costs about 70 cycles an element on huge arguments, several times a reduction "
        "specialised to single precision as in glibc's sinf/cosf.",
};
const Registrar kSinReg(&kSin);

const FamilyBench kCos = {
    .family = "Cos",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 1e5", kReal, uniform(-1e5, 1e5)},
            {"|x| in [1e6, 1e300]", k64f, signed_magnitudes(1e6, 1e300)},
            {"|x| in [1e6, 1e38]", k32f, signed_magnitudes(1e6, 1e38)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10)},
        },
    .peers =
        {
            {"glibc cos", k64f, unary<double, [](double v) { return std::cos(v); }>},
            {"libmvec cos", k64f, vec_d2<_ZGVbN2v_cos>},
            {"SLEEF cosd2_u10", k64f, vec_d2<Sleef_cosd2_u10sse2>},
            {"SLEEF cosd2_u35", k64f, vec_d2<Sleef_cosd2_u35sse2>},
            {"glibc cosf", k32f, unary<float, [](float v) { return std::cos(v); }>},
            {"libmvec cosf", k32f, vec_f4<_ZGVbN4v_cosf>},
            {"SLEEF cosf4_u10", k32f, vec_f4<Sleef_cosf4_u10sse2>},
            {"SLEEF cosf4_u35", k32f, vec_f4<Sleef_cosf4_u35sse2>},
            {"glibc ccos", k64fc, unary<c64, [](c64 v) { return std::cos(v); }>},
            {"glibc ccosf", k32fc, unary<c32, [](c32 v) { return std::cos(v); }>},
        },
    .notes =
        "A53/A50 in double precision: a table of 128 (64) angles with head and tail and a short Taylor "
        "polynomial; arguments beyond 90112 go through the scalar core with exact reduction by 4/pi. "
        "Float lanes beyond 10000 (4000 for A11 Sin) take the same double-precision scalar core, "
        "which costs about 70 cycles an element on huge arguments, several times a reduction "
        "specialised to single precision as in glibc's sinf/cosf.",
};
const Registrar kCosReg(&kCos);

}  // namespace
}  // namespace luxbench
