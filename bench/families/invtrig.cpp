// Inverse sine, cosine and tangent, and the two-argument inverse tangent,
// beside glibc, libmvec's SSE variants and SLEEF's SSE2 routines.
#include <sleef.h>

#include <cmath>

#include "loops.h"

// libmvec, SSE variants (glibc 2.35 and later); no header declares them.
extern "C" {
__m128d _ZGVbN2v_asin(__m128d);
__m128d _ZGVbN2v_acos(__m128d);
__m128d _ZGVbN2v_atan(__m128d);
__m128d _ZGVbN2vv_atan2(__m128d, __m128d);
__m128 _ZGVbN4v_asinf(__m128);
__m128 _ZGVbN4v_acosf(__m128);
__m128 _ZGVbN4v_atanf(__m128);
__m128 _ZGVbN4vv_atan2f(__m128, __m128);
}

namespace luxbench {
namespace {

const FamilyBench kAsin = {
    .family = "Asin",
    .ranges =
        {
            {"[-1, 1]", kReal, uniform(-1, 1)},
            {"[-0.5, 0.5]", kReal, uniform(-0.5, 0.5)},
        },
    .peers =
        {
            {"glibc asin", k64f, unary<double, [](double v) { return std::asin(v); }>},
            {"libmvec asin", k64f, vec_d2<_ZGVbN2v_asin>},
            {"SLEEF asind2_u10", k64f, vec_d2<Sleef_asind2_u10sse2>},
            {"SLEEF asind2_u35", k64f, vec_d2<Sleef_asind2_u35sse2>},
            {"glibc asinf", k32f, unary<float, [](float v) { return std::asin(v); }>},
            {"libmvec asinf", k32f, vec_f4<_ZGVbN4v_asinf>},
            {"SLEEF asinf4_u10", k32f, vec_f4<Sleef_asinf4_u10sse2>},
            {"SLEEF asinf4_u35", k32f, vec_f4<Sleef_asinf4_u35sse2>},
        },
    .notes =
        "One polynomial in z = x^2 below 1/2 and z = (1 - |x|)/2 above, with sqrt(z) formed by the "
        "square-root instruction (A50, A26, binary32 A21), by the estimate and a Newton step (binary32 A11, "
        "A24 Asin) or by the estimate and a series in head and tail (A53). All lanes run both sides, "
        "selected by masks; |x| >= 1 and NaN take a selecting pass over the block.",
};
const Registrar kAsinReg(&kAsin);

const FamilyBench kAcos = {
    .family = "Acos",
    .ranges =
        {
            {"[-1, 1]", kReal, uniform(-1, 1)},
            {"[-0.5, 0.5]", kReal, uniform(-0.5, 0.5)},
        },
    .peers =
        {
            {"glibc acos", k64f, unary<double, [](double v) { return std::acos(v); }>},
            {"libmvec acos", k64f, vec_d2<_ZGVbN2v_acos>},
            {"SLEEF acosd2_u10", k64f, vec_d2<Sleef_acosd2_u10sse2>},
            {"SLEEF acosd2_u35", k64f, vec_d2<Sleef_acosd2_u35sse2>},
            {"glibc acosf", k32f, unary<float, [](float v) { return std::acos(v); }>},
            {"libmvec acosf", k32f, vec_f4<_ZGVbN4v_acosf>},
            {"SLEEF acosf4_u10", k32f, vec_f4<Sleef_acosf4_u10sse2>},
            {"SLEEF acosf4_u35", k32f, vec_f4<Sleef_acosf4_u35sse2>},
        },
    .notes =
        "The inverse sine's polynomial and root, with pi/2 or pi (head and tail at A53, A24) added per lane.",
};
const Registrar kAcosReg(&kAcos);

const FamilyBench kAtan = {
    .family = "Atan",
    .ranges =
        {
            {"[-4, 4]", kReal, uniform(-4, 4)},
            {"|x| in [1e-3, 1e30]", kReal, signed_magnitudes(1e-3, 1e30)},
        },
    .peers =
        {
            {"glibc atan", k64f, unary<double, [](double v) { return std::atan(v); }>},
            {"libmvec atan", k64f, vec_d2<_ZGVbN2v_atan>},
            {"SLEEF atand2_u10", k64f, vec_d2<Sleef_atand2_u10sse2>},
            {"SLEEF atand2_u35", k64f, vec_d2<Sleef_atand2_u35sse2>},
            {"glibc atanf", k32f, unary<float, [](float v) { return std::atan(v); }>},
            {"libmvec atanf", k32f, vec_f4<_ZGVbN4v_atanf>},
            {"SLEEF atanf4_u10", k32f, vec_f4<Sleef_atanf4_u10sse2>},
            {"SLEEF atanf4_u35", k32f, vec_f4<Sleef_atanf4_u35sse2>},
        },
    .notes =
        "binary64 and binary32 A24: five (four) classes, each subtracting atan b by the addition theorem "
        "(one vector division per register), the class rows fetched lane by lane in binary64. binary32 A21 "
        "and A11: two classes, -1/x from the reciprocal estimate.",
};
const Registrar kAtanReg(&kAtan);

const FamilyBench kAtan2 = {
    .family = "Atan2",
    .ranges =
        {
            {"y, x in [-10, 10]", kReal, uniform(-10, 10), uniform(-10, 10)},
            {"|y|, |x| in [1e-20, 1e20]", kReal, signed_magnitudes(1e-20, 1e20),
             signed_magnitudes(1e-20, 1e20)},
        },
    .peers =
        {
            {"glibc atan2", k64f, binary<double, [](double a, double b) { return std::atan2(a, b); }>},
            {"libmvec atan2", k64f, vec_d2_binary<_ZGVbN2vv_atan2>},
            {"SLEEF atan2d2_u10", k64f, vec_d2_binary<Sleef_atan2d2_u10sse2>},
            {"SLEEF atan2d2_u35", k64f, vec_d2_binary<Sleef_atan2d2_u35sse2>},
            {"glibc atan2f", k32f, binary<float, [](float a, float b) { return std::atan2(a, b); }>},
            {"libmvec atan2f", k32f, vec_f4_binary<_ZGVbN4vv_atan2f>},
            {"SLEEF atan2f4_u10", k32f, vec_f4_binary<Sleef_atan2f4_u10sse2>},
            {"SLEEF atan2f4_u35", k32f, vec_f4_binary<Sleef_atan2f4_u35sse2>},
        },
    .notes =
        "Classes by the ratio |y/x|; A53/A50 form the quotient in head and tail from a reciprocal estimate "
        "and a series, A24 of binary32 in double through two routines over chunks of 128 lanes. Zeros, "
        "subnormals, infinities, NaN and extreme magnitudes take the x87 partial arctangent, one lane at a "
        "time.",
};
const Registrar kAtan2Reg(&kAtan2);

}  // namespace
}  // namespace luxbench
