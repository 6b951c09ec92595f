// Inverse hyperbolic functions: the usual range, the neighbourhood of the
// logarithm's awkward end (small |x| for Asinh/Atanh, just above 1 for Acosh)
// and, for Asinh and Acosh, huge arguments.  SLEEF has only its 1-ulp (u10)
// variants of these functions.
#include <sleef.h>

#include <cmath>

#include "loops.h"

// glibc libmvec, SSE2 variants of the inverse hyperbolics.
extern "C" {
__m128d _ZGVbN2v_asinh(__m128d);
__m128 _ZGVbN4v_asinhf(__m128);
__m128d _ZGVbN2v_acosh(__m128d);
__m128 _ZGVbN4v_acoshf(__m128);
__m128d _ZGVbN2v_atanh(__m128d);
__m128 _ZGVbN4v_atanhf(__m128);
}

namespace luxbench {
namespace {

const FamilyBench kAsinh = {
    .family = "Asinh",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| in [1e-6, 0.5]", kReal, signed_magnitudes(1e-6, 0.5)},
            {"|x| in [1e3, 1e30]", kReal, signed_magnitudes(1e3, 1e30)},
        },
    .peers =
        {
            {"glibc asinh", k64f, unary<double, [](double v) { return std::asinh(v); }>},
            {"libmvec asinh", k64f, vec_d2<_ZGVbN2v_asinh>},
            {"SLEEF asinhd2_u10", k64f, vec_d2<Sleef_asinhd2_u10sse2>},
            {"glibc asinhf", k32f, unary<float, [](float v) { return std::asinh(v); }>},
            {"libmvec asinhf", k32f, vec_f4<_ZGVbN4v_asinhf>},
            {"SLEEF asinhf4_u10", k32f, vec_f4<Sleef_asinhf4_u10sse2>},
        },
    .notes =
        "A53 runs lane by lane on the x87 (square root and logarithm in 64-bit precision). A50/A26 "
        "leave the vector path below |x| = 0.5625 for a rational form, lane by lane. The float A24 "
        "tier keeps a block on the vector path only when all 8 lanes are at least 4.0; other blocks "
        "take a scalar routine in doubles.",
};
const Registrar kAsinhReg(&kAsinh);

const FamilyBench kAcosh = {
    .family = "Acosh",
    .ranges =
        {
            {"x in [1, 10]", kReal, uniform(1, 10)},
            {"x in [1, 1.1]", kReal, uniform(1, 1.1)},
            {"x in [1e3, 1e30]", kReal, magnitudes(1e3, 1e30)},
        },
    .peers =
        {
            {"glibc acosh", k64f, unary<double, [](double v) { return std::acosh(v); }>},
            {"libmvec acosh", k64f, vec_d2<_ZGVbN2v_acosh>},
            {"SLEEF acoshd2_u10", k64f, vec_d2<Sleef_acoshd2_u10sse2>},
            {"glibc acoshf", k32f, unary<float, [](float v) { return std::acosh(v); }>},
            {"libmvec acoshf", k32f, vec_f4<_ZGVbN4v_acoshf>},
            {"SLEEF acoshf4_u10", k32f, vec_f4<Sleef_acoshf4_u10sse2>},
        },
    .notes =
        "A53 runs lane by lane on the x87. A50/A26 compute both their forms for every lane and select. "
        "The float A24 tier keeps a block on the vector path only when all 8 lanes are at least 4.0; "
        "other blocks take a scalar routine in doubles.",
};
const Registrar kAcoshReg(&kAcosh);

const FamilyBench kAtanh = {
    .family = "Atanh",
    .ranges =
        {
            {"|x| < 1", kReal, uniform(-0.999, 0.999)},
            {"|x| in [1e-6, 0.5]", kReal, signed_magnitudes(1e-6, 0.5)},
        },
    .peers =
        {
            {"glibc atanh", k64f, unary<double, [](double v) { return std::atanh(v); }>},
            {"libmvec atanh", k64f, vec_d2<_ZGVbN2v_atanh>},
            {"SLEEF atanhd2_u10", k64f, vec_d2<Sleef_atanhd2_u10sse2>},
            {"glibc atanhf", k32f, unary<float, [](float v) { return std::atanh(v); }>},
            {"libmvec atanhf", k32f, vec_f4<_ZGVbN4v_atanhf>},
            {"SLEEF atanhf4_u10", k32f, vec_f4<Sleef_atanhf4_u10sse2>},
        },
    .notes =
        "A53 runs on the x87, one division for a pair of lanes. A50/A26 compute the series and the "
        "table-free logarithm (degree 19) for every lane and select.",
};
const Registrar kAtanhReg(&kAtanh);

}  // namespace
}  // namespace luxbench
