// Reciprocal, division, roots and powers.  Where no library routine exists
// (1/x, a/b, 1/sqrt(x)) the peer is the plain compiled loop a caller would
// write; pow and sqrt also run through libmvec and SLEEF.
#include <sleef.h>

#include <cmath>

#include "loops.h"

namespace luxbench {
namespace {

const FamilyBench kInv = {
    .family = "Inv",
    .ranges =
        {
            {"[1, 2]", kReal, uniform(1, 2)},
            {"|x| in [1e-300, 1e300]", k64f, signed_magnitudes(1e-300, 1e300)},
            {"|x| in [1e-37, 1e37]", k32f, signed_magnitudes(1e-37, 1e37)},
        },
    .peers =
        {
            {"loop 1/x", k64f, unary<double, [](double v) { return 1.0 / v; }>},
            {"loop 1/x", k32f, unary<float, [](float v) { return 1.0f / v; }>},
        },
    .notes =
        "The 64-bit fast tiers (A26, A50) invert a block of eight lanes with one vector division, two "
        "products before it and six multiplications after it: about 1.9 times as fast as a plain vector "
        "division loop while every lane of the block lies in 2^-255.5 <= |x| < 2^256, so that the product "
        "of four lanes stays normal. A block with a lane outside that range goes lane by lane through scalar "
        "divisions, which makes the wide-magnitude row about twice the loop's time in cache.",
};
const Registrar kInvReg(&kInv);

const FamilyBench kDiv = {
    .family = "Div",
    .ranges =
        {
            {"a, b in [1, 2]", kReal, uniform(1, 2), uniform(1, 2)},
            {"|a|, |b| in [1e-150, 1e150]", k64f, signed_magnitudes(1e-150, 1e150),
             signed_magnitudes(1e-150, 1e150)},
            {"|a|, |b| in [1e-18, 1e18]", k32f, signed_magnitudes(1e-18, 1e18),
             signed_magnitudes(1e-18, 1e18)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10), uniform(-10, 10)},
        },
    .peers =
        {
            {"loop a/b", k64f, binary<double, [](double a, double b) { return a / b; }>},
            {"loop a/b", k32f, binary<float, [](float a, float b) { return a / b; }>},
            {"std::complex a/b", k64fc, binary<c64, [](c64 a, c64 b) { return a / b; }>},
            {"std::complex a/b", k32fc, binary<c32, [](c32 a, c32 b) { return a / b; }>},
        },
    .notes =
        "The 64-bit fast tiers (A26, A50) divide four lanes in the x87 unit under 64-bit precision (one "
        "division and a few multiplications per four lanes); x87 latency and the transfers between the x87 "
        "stack and the vector registers bound them, which is why they trail a plain vector division loop "
        "(about 2.5 times its time on [1, 2]). On wide magnitudes the product of four divisors often leaves "
        "the single-precision range and the block goes lane by lane, which costs more again.",
};
const Registrar kDivReg(&kDiv);

const FamilyBench kSqrt = {
    .family = "Sqrt",
    .ranges =
        {
            {"[0, 1000]", kReal, uniform(0, 1000)},
            {"x in [1e-300, 1e300]", k64f, magnitudes(1e-300, 1e300)},
            {"x in [1e-37, 1e38]", k32f, magnitudes(1e-37, 1e38)},
            {"re, im in [-10, 10]", kComplex, uniform(-10, 10)},
        },
    .peers =
        {
            {"glibc sqrt", k64f, unary<double, [](double v) { return std::sqrt(v); }>},
            {"SLEEF sqrtd2_u35", k64f, vec_d2<Sleef_sqrtd2_u35sse2>},
            {"SLEEF sqrtd2_u05", k64f, vec_d2<Sleef_sqrtd2_u05sse2>},
            {"glibc sqrtf", k32f, unary<float, [](float v) { return std::sqrt(v); }>},
            {"SLEEF sqrtf4_u35", k32f, vec_f4<Sleef_sqrtf4_u35sse2>},
            {"SLEEF sqrtf4_u05", k32f, vec_f4<Sleef_sqrtf4_u05sse2>},
            {"glibc csqrt", k64fc, unary<c64, [](c64 v) { return std::sqrt(v); }>},
            {"glibc csqrtf", k32fc, unary<c32, [](c32 v) { return std::sqrt(v); }>},
        },
    .notes =
        "The single-precision A24 tier is built on the 12-bit reciprocal-square-root estimate with a coupled "
        "Newton step and a residual correction; for tiny normal inputs (below about 2^-100) the residual is "
        "subnormal, and subnormal arithmetic costs a microcode assist on most processors, which is what "
        "slows the wide-magnitude row.",
};
const Registrar kSqrtReg(&kSqrt);

const FamilyBench kInvSqrt = {
    .family = "InvSqrt",
    .ranges =
        {
            {"[1, 1000]", kReal, uniform(1, 1000)},
            {"x in [1e-300, 1e300]", k64f, magnitudes(1e-300, 1e300)},
            {"x in [1e-37, 1e38]", k32f, magnitudes(1e-37, 1e38)},
        },
    .peers =
        {
            {"loop 1/sqrt(x)", k64f, unary<double, [](double v) { return 1.0 / std::sqrt(v); }>},
            {"loop 1/sqrtf(x)", k32f, unary<float, [](float v) { return 1.0f / std::sqrt(v); }>},
        },
};
const Registrar kInvSqrtReg(&kInvSqrt);

const FamilyBench kPow = {
    .family = "Pow",
    .ranges =
        {
            {"x in [0.5, 2], y in [-10, 10]", kReal, uniform(0.5, 2), uniform(-10, 10)},
            {"x in [1e-3, 1e3], y in [-40, 40]", k64f, magnitudes(1e-3, 1e3), uniform(-40, 40)},
            {"x in [1e-3, 1e3], y in [-5, 5]", k32f, magnitudes(1e-3, 1e3), uniform(-5, 5)},
            {"re, im in [-2, 2]", kComplex, uniform(-2, 2), uniform(-2, 2)},
        },
    .peers =
        {
            {"glibc pow", k64f, binary<double, [](double a, double b) { return std::pow(a, b); }>},
            {"libmvec pow", k64f, vec_d2_binary<_ZGVbN2vv_pow>},
            {"SLEEF powd2_u10", k64f, vec_d2_binary<Sleef_powd2_u10sse2>},
            {"glibc powf", k32f, binary<float, [](float a, float b) { return std::pow(a, b); }>},
            {"libmvec powf", k32f, vec_f4_binary<_ZGVbN4vv_powf>},
            {"SLEEF powf4_u10", k32f, vec_f4_binary<Sleef_powf4_u10sse2>},
            {"glibc cpow", k64fc, binary<c64, [](c64 a, c64 b) { return std::pow(a, b); }>},
            {"glibc cpowf", k32fc, binary<c32, [](c32 a, c32 b) { return std::pow(a, b); }>},
        },
    .notes =
        "Single precision (A24): the log stage is evaluated in double precision with a table of reciprocals; "
        "about 1.4 times the cost of libmvec's powf and about 2.7 times as fast as SLEEF's u10.",
};
const Registrar kPowReg(&kPow);

const FamilyBench kPowx = {
    .family = "Powx",
    .ranges =
        {
            {"x in [0.5, 2], y = 2.5", kAllTypes, uniform(0.5, 2), {}, 2.5},
            {"x in [1e-3, 1e3], y = -1.75", kReal, magnitudes(1e-3, 1e3), {}, -1.75},
        },
    .peers =
        {
            {"glibc pow", k64f, with_scalar<double, [](double a, double y) { return std::pow(a, y); }>},
            {"libmvec pow", k64f, vec_d2_scalar<_ZGVbN2vv_pow>},
            {"SLEEF powd2_u10", k64f, vec_d2_scalar<Sleef_powd2_u10sse2>},
            {"glibc powf", k32f, with_scalar<float, [](float a, float y) { return std::pow(a, y); }>},
            {"libmvec powf", k32f, vec_f4_scalar<_ZGVbN4vv_powf>},
            {"SLEEF powf4_u10", k32f, vec_f4_scalar<Sleef_powf4_u10sse2>},
            {"glibc cpow", k64fc, with_scalar<c64, [](c64 a, c64 y) { return std::pow(a, y); }>},
            {"glibc cpowf", k32fc, with_scalar<c32, [](c32 a, c32 y) { return std::pow(a, y); }>},
        },
};
const Registrar kPowxReg(&kPowx);

}  // namespace
}  // namespace luxbench
