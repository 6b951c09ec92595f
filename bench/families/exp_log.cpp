// Exponential and logarithms: glibc libm in a scalar loop, libmvec and SLEEF
// (SSE2 variants), and the C library's complex functions through std::complex.
#include <sleef.h>

#include <cmath>

#include "loops.h"

namespace luxbench {
namespace {

const FamilyBench kExp = {
    .family = "Exp",
    .ranges =
        {
            {"[-10, 10]", kReal, uniform(-10, 10)},
            {"[-700, 700]", k64f, uniform(-700, 700)},
            {"[-87, 88]", k32f, uniform(-87, 88)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10)},
        },
    .peers =
        {
            {"glibc exp", k64f, unary<double, [](double v) { return std::exp(v); }>},
            {"libmvec exp", k64f, vec_d2<_ZGVbN2v_exp>},
            {"SLEEF expd2_u10", k64f, vec_d2<Sleef_expd2_u10sse2>},
            {"glibc expf", k32f, unary<float, [](float v) { return std::exp(v); }>},
            {"libmvec expf", k32f, vec_f4<_ZGVbN4v_expf>},
            {"SLEEF expf4_u10", k32f, vec_f4<Sleef_expf4_u10sse2>},
            {"glibc cexp", k64fc, unary<c64, [](c64 v) { return std::exp(v); }>},
            {"glibc cexpf", k32fc, unary<c32, [](c32 v) { return std::exp(v); }>},
        },
    .notes =
        "A53 is about 1.9× SLEEF u10 and within ~25% of libmvec (which is less accurate); its cost is the "
        "two-word table reconstruction and the degree-5 polynomial. A26/A11 drop the table tail and most of "
        "the "
        "polynomial.",
};
const Registrar kExpReg(&kExp);

const FamilyBench kLn = {
    .family = "Ln",
    .ranges =
        {
            {"[0.5, 2]", kReal, uniform(0.5, 2)},
            {"|x| in [1e-300, 1e300]", k64f, magnitudes(1e-300, 1e300)},
            {"|x| in [1e-37, 1e38]", k32f, magnitudes(1e-37, 1e38)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10)},
        },
    .peers =
        {
            {"glibc log", k64f, unary<double, [](double v) { return std::log(v); }>},
            {"libmvec log", k64f, vec_d2<_ZGVbN2v_log>},
            {"SLEEF logd2_u10", k64f, vec_d2<Sleef_logd2_u10sse2>},
            {"SLEEF logd2_u35", k64f, vec_d2<Sleef_logd2_u35sse2>},
            {"glibc logf", k32f, unary<float, [](float v) { return std::log(v); }>},
            {"libmvec logf", k32f, vec_f4<_ZGVbN4v_logf>},
            {"SLEEF logf4_u10", k32f, vec_f4<Sleef_logf4_u10sse2>},
            {"SLEEF logf4_u35", k32f, vec_f4<Sleef_logf4_u35sse2>},
            {"glibc clog", k64fc, unary<c64, [](c64 v) { return std::log(v); }>},
            {"glibc clogf", k32fc, unary<c32, [](c32 v) { return std::log(v); }>},
        },
    .notes =
        "The table of reciprocals and logarithms and the x87-free two-word sum of A24 cost about twice "
        "libmvec's "
        "single-precision log (A21 about 1.5 times); A24 is the more accurate (0.53 ulp for Ln, 0.75 ulp for "
        "Log10, against libmvec's ~1 ulp).",
};
const Registrar kLnReg(&kLn);

const FamilyBench kLog10 = {
    .family = "Log10",
    .ranges =
        {
            {"[0.5, 2]", kReal, uniform(0.5, 2)},
            {"|x| in [1e-300, 1e300]", k64f, magnitudes(1e-300, 1e300)},
            {"|x| in [1e-37, 1e38]", k32f, magnitudes(1e-37, 1e38)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10)},
        },
    .peers =
        {
            {"glibc log10", k64f, unary<double, [](double v) { return std::log10(v); }>},
            {"libmvec log10", k64f, vec_d2<_ZGVbN2v_log10>},
            {"SLEEF log10d2_u10", k64f, vec_d2<Sleef_log10d2_u10sse2>},
            {"glibc log10f", k32f, unary<float, [](float v) { return std::log10(v); }>},
            {"libmvec log10f", k32f, vec_f4<_ZGVbN4v_log10f>},
            {"SLEEF log10f4_u10", k32f, vec_f4<Sleef_log10f4_u10sse2>},
            {"glibc clog / ln 10", k64fc, unary<c64, [](c64 v) { return std::log10(v); }>},
            {"glibc clogf / ln 10", k32fc, unary<c32, [](c32 v) { return std::log10(v); }>},
        },
    .notes =
        "The table of reciprocals and logarithms and the x87-free two-word sum of A24 cost about twice "
        "libmvec's "
        "single-precision log (A21 about 1.5 times); A24 is the more accurate (0.53 ulp for Ln, 0.75 ulp for "
        "Log10, against libmvec's ~1 ulp).",
};
const Registrar kLog10Reg(&kLog10);

}  // namespace
}  // namespace luxbench
