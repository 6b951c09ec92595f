// Sinh, Cosh and Tanh on the usual range, on small arguments where the
// kernels take their near-zero paths, and near the end of the range.
#include <sleef.h>

#include <cmath>

#include "loops.h"

// glibc libmvec, SSE2 variants, as in loops.h.
extern "C" {
__m128d _ZGVbN2v_sinh(__m128d);
__m128d _ZGVbN2v_cosh(__m128d);
__m128d _ZGVbN2v_tanh(__m128d);
__m128 _ZGVbN4v_sinhf(__m128);
__m128 _ZGVbN4v_coshf(__m128);
__m128 _ZGVbN4v_tanhf(__m128);
}

namespace luxbench {
namespace {

const FamilyBench kSinh = {
    .family = "Sinh",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 0.2", kReal, uniform(-0.2, 0.2)},
            {"|x| in [700, 710]", k64f, uniform(700, 710)},
            {"|x| in [85, 89]", k32f, uniform(85, 89)},
        },
    .peers =
        {
            {"glibc sinh", k64f, unary<double, [](double v) { return std::sinh(v); }>},
            {"libmvec sinh", k64f, vec_d2<_ZGVbN2v_sinh>},
            {"SLEEF sinhd2_u10", k64f, vec_d2<Sleef_sinhd2_u10sse2>},
            {"SLEEF sinhd2_u35", k64f, vec_d2<Sleef_sinhd2_u35sse2>},
            {"glibc sinhf", k32f, unary<float, [](float v) { return std::sinh(v); }>},
            {"libmvec sinhf", k32f, vec_f4<_ZGVbN4v_sinhf>},
            {"SLEEF sinhf4_u10", k32f, vec_f4<Sleef_sinhf4_u10sse2>},
            {"SLEEF sinhf4_u35", k32f, vec_f4<Sleef_sinhf4_u35sse2>},
        },
    .notes =
        "e^a/2 and e^-a/2 from one reduction and one or two table rows. A53 takes |x| below 0.035 "
        "through an x87 polynomial one lane at a time, and beyond 708.40 the lane routine; A50 and "
        "A26 take |x| below 0.125 one lane at a time through a small table and Taylor polynomials.",
};
const Registrar kSinhReg(&kSinh);

const FamilyBench kCosh = {
    .family = "Cosh",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 0.2", kReal, uniform(-0.2, 0.2)},
            {"|x| in [700, 710]", k64f, uniform(700, 710)},
            {"|x| in [85, 89]", k32f, uniform(85, 89)},
        },
    .peers =
        {
            {"glibc cosh", k64f, unary<double, [](double v) { return std::cosh(v); }>},
            {"libmvec cosh", k64f, vec_d2<_ZGVbN2v_cosh>},
            {"SLEEF coshd2_u10", k64f, vec_d2<Sleef_coshd2_u10sse2>},
            {"SLEEF coshd2_u35", k64f, vec_d2<Sleef_coshd2_u35sse2>},
            {"glibc coshf", k32f, unary<float, [](float v) { return std::cosh(v); }>},
            {"libmvec coshf", k32f, vec_f4<_ZGVbN4v_coshf>},
            {"SLEEF coshf4_u10", k32f, vec_f4<Sleef_coshf4_u10sse2>},
            {"SLEEF coshf4_u35", k32f, vec_f4<Sleef_coshf4_u35sse2>},
        },
    .notes =
        "e^a/2 and e^-a/2 from one reduction and one or two table rows; the lanes beyond 708.40 "
        "(binary64) or 88.02 and 89.41 (binary32) go through the lane routine one at a time.",
};
const Registrar kCoshReg(&kCosh);

const FamilyBench kTanh = {
    .family = "Tanh",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 0.2", kReal, uniform(-0.2, 0.2)},
            {"|x| in [10, 30]", kReal, uniform(10, 30)},
        },
    .peers =
        {
            {"glibc tanh", k64f, unary<double, [](double v) { return std::tanh(v); }>},
            {"libmvec tanh", k64f, vec_d2<_ZGVbN2v_tanh>},
            {"SLEEF tanhd2_u10", k64f, vec_d2<Sleef_tanhd2_u10sse2>},
            {"SLEEF tanhd2_u35", k64f, vec_d2<Sleef_tanhd2_u35sse2>},
            {"glibc tanhf", k32f, unary<float, [](float v) { return std::tanh(v); }>},
            {"libmvec tanhf", k32f, vec_f4<_ZGVbN4v_tanhf>},
            {"SLEEF tanhf4_u10", k32f, vec_f4<Sleef_tanhf4_u10sse2>},
            {"SLEEF tanhf4_u35", k32f, vec_f4<Sleef_tanhf4_u35sse2>},
        },
    .notes =
        "One polynomial per interval of |x| (8, 4 or 16 intervals a binade), its coefficients gathered "
        "lane by lane from the row that the bit pattern picks; no exponential and no division.",
};
const Registrar kTanhReg(&kTanh);

}  // namespace
}  // namespace luxbench
