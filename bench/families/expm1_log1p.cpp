// e^x - 1 and ln(1 + x): glibc libm in a scalar loop, libmvec and SLEEF (SSE2
// variants) near 0, where the cancellation lies, and over the wider range.
#include <sleef.h>

#include <cmath>

#include "loops.h"

extern "C" {
__m128d _ZGVbN2v_expm1(__m128d);
__m128 _ZGVbN4v_expm1f(__m128);
__m128d _ZGVbN2v_log1p(__m128d);
__m128 _ZGVbN4v_log1pf(__m128);
}

namespace luxbench {
namespace {

const FamilyBench kExpm1 = {
    .family = "Expm1",
    .ranges =
        {
            {"[-0.25, 0.25]", kReal, uniform(-0.25, 0.25)},
            {"[-10, 10]", kReal, uniform(-10, 10)},
            {"[-700, 700]", k64f, uniform(-700, 700)},
            {"[-87, 88]", k32f, uniform(-87, 88)},
        },
    .peers =
        {
            {"glibc expm1", k64f, unary<double, [](double v) { return std::expm1(v); }>},
            {"libmvec expm1", k64f, vec_d2<_ZGVbN2v_expm1>},
            {"SLEEF expm1d2_u10", k64f, vec_d2<Sleef_expm1d2_u10sse2>},
            {"glibc expm1f", k32f, unary<float, [](float v) { return std::expm1(v); }>},
            {"libmvec expm1f", k32f, vec_f4<_ZGVbN4v_expm1f>},
            {"SLEEF expm1f4_u10", k32f, vec_f4<Sleef_expm1f4_u10sse2>},
        },
    .notes =
        "One scalar routine handles every argument; A53 (double) runs every lane through it. The vector "
        "bodies "
        "take blocks whose lanes all lie in 0.3 <= |x| < 709.78 (double) or 2^-8 <= |x| <= 88.72 (float): "
        "near 0 the double tiers A50/A26 run the scalar routine, so their cost there is A53's.",
};
const Registrar kExpm1Reg(&kExpm1);

const FamilyBench kLog1p = {
    .family = "Log1p",
    .ranges =
        {
            {"[-0.5, 0.5]", kReal, uniform(-0.5, 0.5)},
            {"[2, 1000]", kReal, uniform(2, 1000)},
            {"|x| in [1e-30, 1e30]", kReal, magnitudes(1e-30, 1e30)},
        },
    .peers =
        {
            {"glibc log1p", k64f, unary<double, [](double v) { return std::log1p(v); }>},
            {"libmvec log1p", k64f, vec_d2<_ZGVbN2v_log1p>},
            {"SLEEF log1pd2_u10", k64f, vec_d2<Sleef_log1pd2_u10sse2>},
            {"glibc log1pf", k32f, unary<float, [](float v) { return std::log1p(v); }>},
            {"libmvec log1pf", k32f, vec_f4<_ZGVbN4v_log1pf>},
            {"SLEEF log1pf4_u10", k32f, vec_f4<Sleef_log1pf4_u10sse2>},
        },
    .notes =
        "The three tiers of a type are one kernel at the best accuracy. Blocks whose lanes all lie in 2 <= x "
        "< 2^55 run in vector code; every other block goes lane by lane through the scalar routine, whose "
        "five zones pick the formula by |x|.",
};
const Registrar kLog1pReg(&kLog1p);

}  // namespace
}  // namespace luxbench
