// The inverse error functions and the inverse normal distribution beside
// Boost.Math's scalar erf_inv, erfc_inv and normal quantile (header-only,
// double and float instantiations), on the centre of the domain, near the
// poles and in the logarithmic tail.
#include <boost/math/distributions/normal.hpp>
#include <boost/math/special_functions/erf.hpp>

#include "loops.h"

namespace luxbench {
namespace {

template <class T>
T boost_erf_inv(T v) {
  return boost::math::erf_inv(v);
}
template <class T>
T boost_erfc_inv(T v) {
  return boost::math::erfc_inv(v);
}
template <class T>
T boost_quantile(T v) {
  return boost::math::quantile(boost::math::normal_distribution<T>(), v);
}

constexpr const char* kNotes =
    "Main path: one table row per quarter (A53/A50), eighth (32f A24/A21) or sixteenth (A26, 32f A11) "
    "of a binade of the distance to the pole, no logarithm, root or division; ErfcInv and CdfNormInv "
    "arguments below 2^-53 (2^-54) take a scalar logarithmic tail with one square root and division.";

const FamilyBench kErfInv = {
    .family = "ErfInv",
    .ranges =
        {
            {"|x| < 0.9", kReal, uniform(-0.9, 0.9)},
            {"0.9 <= |x| < 1", kReal, signed_magnitudes(0.9, 0.9999999)},
        },
    .peers =
        {
            {"Boost erf_inv", k64f, unary<double, boost_erf_inv<double>>},
            {"Boost erf_inv<float>", k32f, unary<float, boost_erf_inv<float>>},
        },
    .notes = kNotes,
};
const Registrar kErfInvReg(&kErfInv);

const FamilyBench kErfcInv = {
    .family = "ErfcInv",
    .ranges =
        {
            {"x in [0.1, 1.9]", kReal, uniform(0.1, 1.9)},
            {"x in [1e-30, 0.1]", kReal, magnitudes(1e-30, 0.1)},
            {"tail, x in [1e-300, 1e-20]", k64f, magnitudes(1e-300, 1e-20)},
        },
    .peers =
        {
            {"Boost erfc_inv", k64f, unary<double, boost_erfc_inv<double>>},
            {"Boost erfc_inv<float>", k32f, unary<float, boost_erfc_inv<float>>},
        },
    .notes = kNotes,
};
const Registrar kErfcInvReg(&kErfcInv);

const FamilyBench kCdfNormInv = {
    .family = "CdfNormInv",
    .ranges =
        {
            {"p in [0.05, 0.95]", kReal, uniform(0.05, 0.95)},
            {"p in [1e-30, 0.05]", kReal, magnitudes(1e-30, 0.05)},
            {"tail, p in [1e-300, 1e-20]", k64f, magnitudes(1e-300, 1e-20)},
        },
    .peers =
        {
            {"Boost normal quantile", k64f, unary<double, boost_quantile<double>>},
            {"Boost normal quantile<float>", k32f, unary<float, boost_quantile<float>>},
        },
    .notes = kNotes,
};
const Registrar kCdfNormInvReg(&kCdfNormInv);

}  // namespace
}  // namespace luxbench
