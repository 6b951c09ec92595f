// Error functions and the normal distribution: glibc libm in a scalar loop,
// libmvec and SLEEF (SSE2 variants) for erf and erfc; for CdfNorm, Boost.Math's
// normal distribution and glibc's 0.5*erfc(-x/sqrt 2), both scalar.
#include <sleef.h>

#include <boost/math/distributions/normal.hpp>
#include <cmath>

#include "loops.h"

extern "C" {
__m128d _ZGVbN2v_erf(__m128d);
__m128d _ZGVbN2v_erfc(__m128d);
__m128 _ZGVbN4v_erff(__m128);
__m128 _ZGVbN4v_erfcf(__m128);
}

namespace luxbench {
namespace {

const FamilyBench kErf = {
    .family = "Erf",
    .ranges =
        {
            {"[-3, 3]", kReal, uniform(-3, 3)},
            {"[-6, 6]", kReal, uniform(-6, 6)},
        },
    .peers =
        {
            {"glibc erf", k64f, unary<double, [](double v) { return std::erf(v); }>},
            {"libmvec erf", k64f, vec_d2<_ZGVbN2v_erf>},
            {"SLEEF erfd2_u10", k64f, vec_d2<Sleef_erfd2_u10sse2>},
            {"glibc erff", k32f, unary<float, [](float v) { return std::erf(v); }>},
            {"libmvec erff", k32f, vec_f4<_ZGVbN4v_erff>},
            {"SLEEF erff4_u10", k32f, vec_f4<Sleef_erff4_u10sse2>},
        },
    .notes = "Measured while other jobs shared the machine's two cores: ratios are indicative.",
};
const Registrar kErfReg(&kErf);

const FamilyBench kErfc = {
    .family = "Erfc",
    .ranges =
        {
            {"[-3, 3]", kReal, uniform(-3, 3)},
            {"[-5, 26]", k64f, uniform(-5, 26)},
            {"[-3, 9]", k32f, uniform(-3, 9)},
        },
    .peers =
        {
            {"glibc erfc", k64f, unary<double, [](double v) { return std::erfc(v); }>},
            {"libmvec erfc", k64f, vec_d2<_ZGVbN2v_erfc>},
            {"SLEEF erfcd2_u15", k64f, vec_d2<Sleef_erfcd2_u15sse2>},
            {"glibc erfcf", k32f, unary<float, [](float v) { return std::erfc(v); }>},
            {"libmvec erfcf", k32f, vec_f4<_ZGVbN4v_erfcf>},
            {"SLEEF erfcf4_u15", k32f, vec_f4<Sleef_erfcf4_u15sse2>},
        },
    .notes = "Measured while other jobs shared the machine's two cores: ratios are indicative.",
};
const Registrar kErfcReg(&kErfc);

double boost_cdf(double v) { return boost::math::cdf(boost::math::normal_distribution<double>(), v); }
float boost_cdff(float v) { return boost::math::cdf(boost::math::normal_distribution<float>(), v); }

const FamilyBench kCdfNorm = {
    .family = "CdfNorm",
    .ranges =
        {
            {"[-3, 3]", kReal, uniform(-3, 3)},
            {"[-38, 8]", k64f, uniform(-38, 8)},
            {"[-14, 5.4]", k32f, uniform(-14, 5.4)},
        },
    .peers =
        {
            {"Boost.Math normal cdf", k64f, unary<double, boost_cdf>},
            {"glibc 0.5*erfc(-x/sqrt 2)", k64f,
             unary<double, [](double v) { return 0.5 * std::erfc(-v / std::sqrt(2.0)); }>},
            {"Boost.Math normal cdf (float)", k32f, unary<float, boost_cdff>},
            {"glibc 0.5f*erfcf(-x/sqrt 2)", k32f,
             unary<float, [](float v) { return 0.5f * std::erfc(-v / std::sqrt(2.0f)); }>},
        },
    .notes = "Measured while other jobs shared the machine's two cores: ratios are indicative.",
};
const Registrar kCdfNormReg(&kCdfNorm);

}  // namespace
}  // namespace luxbench
