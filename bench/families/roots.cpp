// Cube roots, the fixed powers x^(2/3) and x^(3/2), and Hypot.  Pow2o3 and
// Pow3o2 run beside pow with the constant exponent (glibc, libmvec) and the
// plain loops a caller would write; cbrt and hypot also through libmvec and
// SLEEF.
#include <sleef.h>

#include <cmath>

#include "loops.h"

extern "C" {
__m128d _ZGVbN2v_cbrt(__m128d);
__m128 _ZGVbN4v_cbrtf(__m128);
__m128d _ZGVbN2vv_hypot(__m128d, __m128d);
__m128 _ZGVbN4vv_hypotf(__m128, __m128);
}

namespace luxbench {
namespace {

__m128d mvec_pow2o3(__m128d x) { return _ZGVbN2vv_pow(x, _mm_set1_pd(2.0 / 3.0)); }
__m128 mvec_pow2o3f(__m128 x) { return _ZGVbN4vv_powf(x, _mm_set1_ps(2.0f / 3.0f)); }
__m128d mvec_pow3o2(__m128d x) { return _ZGVbN2vv_pow(x, _mm_set1_pd(1.5)); }
__m128 mvec_pow3o2f(__m128 x) { return _ZGVbN4vv_powf(x, _mm_set1_ps(1.5f)); }

const FamilyBench kCbrt = {
    .family = "Cbrt",
    .ranges =
        {
            {"[-10, 10]", kReal, uniform(-10, 10)},
            {"|x| in [1e-300, 1e300]", k64f, signed_magnitudes(1e-300, 1e300)},
            {"|x| in [1e-37, 1e37]", k32f, signed_magnitudes(1e-37, 1e37)},
        },
    .peers =
        {
            {"glibc cbrt", k64f, unary<double, [](double v) { return std::cbrt(v); }>},
            {"libmvec cbrt", k64f, vec_d2<_ZGVbN2v_cbrt>},
            {"SLEEF cbrtd2_u10", k64f, vec_d2<Sleef_cbrtd2_u10sse2>},
            {"SLEEF cbrtd2_u35", k64f, vec_d2<Sleef_cbrtd2_u35sse2>},
            {"glibc cbrtf", k32f, unary<float, [](float v) { return std::cbrt(v); }>},
            {"libmvec cbrtf", k32f, vec_f4<_ZGVbN4v_cbrtf>},
            {"SLEEF cbrtf4_u10", k32f, vec_f4<Sleef_cbrtf4_u10sse2>},
            {"SLEEF cbrtf4_u35", k32f, vec_f4<Sleef_cbrtf4_u35sse2>},
        },
    .notes =
        "The 64-bit tiers read two table rows per lane pair and evaluate a degree-7 (A53) or degree-5 (A26, "
        "A50) polynomial by Horner's rule; in cache they run at about 0.6 to 0.9 times libmvec's speed, "
        "beyond the cache at about its speed. The single-precision A24 tier evaluates its polynomial in "
        "double precision, two lanes per vector.",
};
const Registrar kCbrtReg(&kCbrt);

const FamilyBench kInvCbrt = {
    .family = "InvCbrt",
    .ranges =
        {
            {"[0.1, 10]", kReal, uniform(0.1, 10)},
            {"|x| in [1e-300, 1e300]", k64f, signed_magnitudes(1e-300, 1e300)},
            {"|x| in [1e-37, 1e37]", k32f, signed_magnitudes(1e-37, 1e37)},
        },
    .peers =
        {
            {"loop 1/cbrt(x)", k64f, unary<double, [](double v) { return 1.0 / std::cbrt(v); }>},
            {"libmvec 1/cbrt", k64f,
             vec_d2<[](__m128d v) { return _mm_div_pd(_mm_set1_pd(1.0), _ZGVbN2v_cbrt(v)); }>},
            {"loop 1/cbrtf(x)", k32f, unary<float, [](float v) { return 1.0f / std::cbrt(v); }>},
            {"libmvec 1/cbrtf", k32f,
             vec_f4<[](__m128 v) { return _mm_div_ps(_mm_set1_ps(1.0f), _ZGVbN4v_cbrtf(v)); }>},
        },
};
const Registrar kInvCbrtReg(&kInvCbrt);

const FamilyBench kPow2o3 = {
    .family = "Pow2o3",
    .ranges =
        {
            {"[0, 10]", kReal, uniform(0, 10)},
            {"x in [1e-300, 1e300]", k64f, magnitudes(1e-300, 1e300)},
            {"x in [1e-37, 1e37]", k32f, magnitudes(1e-37, 1e37)},
        },
    .peers =
        {
            {"glibc pow(x, 2/3)", k64f, unary<double, [](double v) { return std::pow(v, 2.0 / 3.0); }>},
            {"libmvec pow(x, 2/3)", k64f, vec_d2<mvec_pow2o3>},
            {"loop cbrt(x)^2", k64f, unary<double, [](double v) { return std::cbrt(v) * std::cbrt(v); }>},
            {"glibc powf(x, 2/3)", k32f, unary<float, [](float v) { return std::pow(v, 2.0f / 3.0f); }>},
            {"libmvec powf(x, 2/3)", k32f, vec_f4<mvec_pow2o3f>},
        },
};
const Registrar kPow2o3Reg(&kPow2o3);

const FamilyBench kPow3o2 = {
    .family = "Pow3o2",
    .ranges =
        {
            {"[0, 10]", kReal, uniform(0, 10)},
            {"x in [1e-200, 1e200]", k64f, magnitudes(1e-200, 1e200)},
            {"x in [1e-25, 1e25]", k32f, magnitudes(1e-25, 1e25)},
        },
    .peers =
        {
            {"glibc pow(x, 1.5)", k64f, unary<double, [](double v) { return std::pow(v, 1.5); }>},
            {"libmvec pow(x, 1.5)", k64f, vec_d2<mvec_pow3o2>},
            {"loop x*sqrt(x)", k64f, unary<double, [](double v) { return v * std::sqrt(v); }>},
            {"glibc powf(x, 1.5)", k32f, unary<float, [](float v) { return std::pow(v, 1.5f); }>},
            {"libmvec powf(x, 1.5)", k32f, vec_f4<mvec_pow3o2f>},
            {"loop x*sqrtf(x)", k32f, unary<float, [](float v) { return v * std::sqrt(v); }>},
        },
};
const Registrar kPow3o2Reg(&kPow3o2);

const FamilyBench kHypot = {
    .family = "Hypot",
    .ranges =
        {
            {"x, y in [-10, 10]", kReal, uniform(-10, 10), uniform(-10, 10)},
            {"|x|, |y| in [1e-150, 1e150]", k64f, signed_magnitudes(1e-150, 1e150),
             signed_magnitudes(1e-150, 1e150)},
            {"|x|, |y| in [1e-18, 1e18]", k32f, signed_magnitudes(1e-18, 1e18),
             signed_magnitudes(1e-18, 1e18)},
        },
    .peers =
        {
            {"glibc hypot", k64f, binary<double, [](double a, double b) { return std::hypot(a, b); }>},
            {"libmvec hypot", k64f, vec_d2_binary<_ZGVbN2vv_hypot>},
            {"SLEEF hypotd2_u05", k64f, vec_d2_binary<Sleef_hypotd2_u05sse2>},
            {"SLEEF hypotd2_u35", k64f, vec_d2_binary<Sleef_hypotd2_u35sse2>},
            {"glibc hypotf", k32f, binary<float, [](float a, float b) { return std::hypot(a, b); }>},
            {"libmvec hypotf", k32f, vec_f4_binary<_ZGVbN4vv_hypotf>},
            {"SLEEF hypotf4_u05", k32f, vec_f4_binary<Sleef_hypotf4_u05sse2>},
            {"SLEEF hypotf4_u35", k32f, vec_f4_binary<Sleef_hypotf4_u35sse2>},
        },
    .notes =
        "Every tier carries the sum of squares as a two-word value and refines a reciprocal-square-root "
        "seed against it (no square-root instruction), which costs about three times libmvec's hypot on "
        "moderate operands, where libmvec takes a plain double-precision path; on wide magnitudes luxvm is "
        "about twice as fast. Operands outside (2^-500, 2^511) (single precision: (2^-62, 2^63)) send their "
        "block through the scaled lane routine.",
};
const Registrar kHypotReg(&kHypot);

}  // namespace
}  // namespace luxbench
