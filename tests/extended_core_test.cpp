// The extended-precision exponential, logarithms, square root and absolute
// value: their shared tables against their rules, special values with the
// flags they raise, and MPFR sweeps (64-bit significand) within their bounds.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <cstring>

#include "extended/core_sweep.h"
#include "frame/frame.h"
#include "scalar/extended.h"
#include "support/test_options.h"

namespace {

using ld = long double;
using lux::x80::from_image;
using lux::x80::image;

// The IEEE flags (the x87 unit's denormal-operand flag, 0x02, is left out).
constexpr uint32_t kIeeeFlags = 0x3D;
constexpr uint32_t kInvalid = 0x01, kZeroDivide = 0x04, kOverflow = 0x08, kUnderflow = 0x10, kInexact = 0x20;

// One call under x87 guard 64 with both units' flags cleared; returns the
// flags raised on either unit (their low six bits agree).
struct Call {
  ld value;
  uint32_t flags;
};
Call call(ld (*fn)(ld), ld x) {
  lux::X87Guard64 guard;
  asm volatile("fnclex" ::: "memory");
  lux::write_mxcsr(lux::read_mxcsr() & ~0x3Fu);
  volatile ld in = x;
  const ld v = fn(in);
  uint16_t sw;
  asm volatile("fnstsw %0" : "=m"(sw));
  return {v, (sw | lux::read_mxcsr()) & kIeeeFlags};
}

ld x80(uint16_t se, uint64_t sig) { return from_image(sig, se); }
const ld kInf = __builtin_infl();
const ld kSNaN = x80(0x7FFF, 0xA000000000000000ull);  // signalling, payload kept
const ld kQNaN = x80(0x7FFF, 0xC000000000000000ull);
const ld kNegQNaN = x80(0xFFFF, 0xC000000000000000ull);
const ld kMinDenormal = x80(0x0000, 0x0000000000000001ull);
const ld kPi2 = x80(0x3FFF, 0xC90FDAA22168C235ull);  // pi/2 rounded to nearest

enum Expect { kExact, kAnyNaN, kPosZero, kNegZero };
struct Row {
  const char* what;
  ld (*fn)(ld);
  ld x;
  Expect kind;
  ld want;  // for kExact: bit for bit
  uint32_t flags;
};

TEST(ExtendedCore, SpecialValuesAndFlags) {
  const Row rows[] = {
      // e^x
      {"exp(+Inf)", orkexpl_scalar, kInf, kExact, kInf, 0},
      {"exp(-Inf)", orkexpl_scalar, -kInf, kPosZero, 0, 0},
      {"exp(sNaN)", orkexpl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      {"exp(qNaN)", orkexpl_scalar, kQNaN, kAnyNaN, 0, 0},
      {"exp(+0)", orkexpl_scalar, 0.0L, kExact, 1.0L, 0},
      {"exp(-0)", orkexpl_scalar, -0.0L, kExact, 1.0L, 0},
      {"exp(11357) overflows", orkexpl_scalar, 11357.0L, kExact, kInf, kOverflow | kInexact},
      {"exp(-11401) underflows to +0", orkexpl_scalar, -11401.0L, kPosZero, 0, kUnderflow | kInexact},
      {"exp(-12000) underflows to +0", orkexpl_scalar, -12000.0L, kPosZero, 0, kUnderflow | kInexact},
      {"exp(2^-70) = 1 + x rounded", orkexpl_scalar, 0x1p-70L, kExact, 1.0L, kInexact},
      {"exp(-2^-70) rounds below 1", orkexpl_scalar, -0x1p-70L, kExact, 1.0L, kInexact},
      // ln x
      {"ln(1) = +0", orklogl_scalar, 1.0L, kPosZero, 0, 0},
      {"ln(+0)", orklogl_scalar, 0.0L, kExact, -kInf, kZeroDivide},
      {"ln(-0)", orklogl_scalar, -0.0L, kExact, -kInf, kZeroDivide},
      {"ln(-1)", orklogl_scalar, -1.0L, kAnyNaN, 0, kInvalid},
      {"ln(-Inf)", orklogl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      {"ln(negative denormal)", orklogl_scalar, -kMinDenormal, kAnyNaN, 0, kInvalid},
      {"ln(+Inf)", orklogl_scalar, kInf, kExact, kInf, 0},
      {"ln(sNaN)", orklogl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      {"ln(-qNaN)", orklogl_scalar, kNegQNaN, kAnyNaN, 0, 0},
      {"ln(2^16000)", orklogl_scalar, 0x1p16000L, kExact, 16000 * 0.693147180559945309417232121458176568L,
       kInexact},
      // ln(1 + x)
      {"log1p(-1)", orklog1pl_scalar, -1.0L, kExact, -kInf, kZeroDivide},
      {"log1p(-1 - ulp)", orklog1pl_scalar, std::nextafter(-1.0L, -2.0L), kAnyNaN, 0, kInvalid},
      {"log1p(-2)", orklog1pl_scalar, -2.0L, kAnyNaN, 0, kInvalid},
      {"log1p(-Inf)", orklog1pl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      {"log1p(+Inf)", orklog1pl_scalar, kInf, kExact, kInf, 0},
      {"log1p(sNaN)", orklog1pl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      {"log1p(+0)", orklog1pl_scalar, 0.0L, kPosZero, 0, 0},
      {"log1p(-0)", orklog1pl_scalar, -0.0L, kNegZero, 0, 0},
      {"log1p(2^-80) rounds to x", orklog1pl_scalar, 0x1p-80L, kExact, 0x1p-80L, kInexact},
      {"log1p(-2^-80) rounds to x", orklog1pl_scalar, -0x1p-80L, kExact, -0x1p-80L, kInexact},
      {"log1p(least denormal)", orklog1pl_scalar, kMinDenormal, kExact, kMinDenormal, kUnderflow | kInexact},
      // square root
      {"sqrt(4) = 2", orksqrtl_scalar, 4.0L, kExact, 2.0L, 0},
      {"sqrt(2^-16444)", orksqrtl_scalar, 0x1p-16444L, kExact, 0x1p-8222L, 0},
      {"sqrt(least denormal)", orksqrtl_scalar, kMinDenormal, kExact, std::sqrt(kMinDenormal), kInexact},
      {"sqrt(-0) = -0", orksqrtl_scalar, -0.0L, kNegZero, 0, 0},
      {"sqrt(+0) = +0", orksqrtl_scalar, 0.0L, kPosZero, 0, 0},
      {"sqrt(-1)", orksqrtl_scalar, -1.0L, kAnyNaN, 0, kInvalid},
      {"sqrt(-Inf)", orksqrtl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      {"sqrt(+Inf)", orksqrtl_scalar, kInf, kExact, kInf, 0},
      {"sqrt(sNaN)", orksqrtl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      // hyperbolic functions
      {"sinh(-0)", orksinhl_scalar, -0.0L, kNegZero, 0, 0},
      {"sinh(-Inf)", orksinhl_scalar, -kInf, kExact, -kInf, 0},
      {"sinh(sNaN)", orksinhl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      {"sinh at the overflow bound", orksinhl_scalar, x80(0xC00C, 0xB174DDC031AEC0EAull), kExact, -kInf,
       kOverflow | kInexact},
      {"sinh of a denormal", orksinhl_scalar, -kMinDenormal, kExact, -kMinDenormal, kUnderflow | kInexact},
      {"sinh(2^-80)", orksinhl_scalar, 0x1p-80L, kExact, 0x1p-80L, kInexact},
      {"cosh(-0)", orkcoshl_scalar, -0.0L, kExact, 1.0L, 0},
      {"cosh(-Inf)", orkcoshl_scalar, -kInf, kExact, kInf, 0},
      {"cosh at the overflow bound", orkcoshl_scalar, x80(0xC00C, 0xB174DDC031AEC0EAull), kExact, kInf,
       kOverflow | kInexact},
      {"cosh(2^-80)", orkcoshl_scalar, -0x1p-80L, kExact, 1.0L, kInexact},
      {"tanh(32)", orktanhl_scalar, 32.0L, kExact, 1.0L, kInexact},
      {"tanh(-2^16000)", orktanhl_scalar, -0x1p16000L, kExact, -1.0L, kInexact},
      {"tanh(-Inf)", orktanhl_scalar, -kInf, kExact, -1.0L, 0},
      {"tanh(-0)", orktanhl_scalar, -0.0L, kNegZero, 0, 0},
      {"tanh(2^-80)", orktanhl_scalar, 0x1p-80L, kExact, 0x1p-80L, kInexact},
      {"asinh(-Inf)", orkasinhl_scalar, -kInf, kExact, -kInf, 0},
      {"asinh(-0)", orkasinhl_scalar, -0.0L, kNegZero, 0, 0},
      {"asinh of a denormal", orkasinhl_scalar, kMinDenormal, kExact, kMinDenormal, kUnderflow | kInexact},
      {"acosh(1) = +0", orkacoshl_scalar, 1.0L, kPosZero, 0, 0},
      {"acosh(1 - ulp)", orkacoshl_scalar, std::nextafter(1.0L, 0.0L), kAnyNaN, 0, kInvalid},
      {"acosh(-Inf)", orkacoshl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      {"acosh(-0)", orkacoshl_scalar, -0.0L, kAnyNaN, 0, kInvalid},
      {"acosh(+Inf)", orkacoshl_scalar, kInf, kExact, kInf, 0},
      {"acosh(sNaN)", orkacoshl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      {"atanh(1)", orkatanhl_scalar, 1.0L, kExact, kInf, kZeroDivide},
      {"atanh(-1)", orkatanhl_scalar, -1.0L, kExact, -kInf, kZeroDivide},
      {"atanh(-1 - ulp)", orkatanhl_scalar, std::nextafter(-1.0L, -2.0L), kAnyNaN, 0, kInvalid},
      {"atanh(+Inf)", orkatanhl_scalar, kInf, kAnyNaN, 0, kInvalid},
      {"atanh(-0)", orkatanhl_scalar, -0.0L, kNegZero, 0, 0},
      {"atanh of a denormal", orkatanhl_scalar, -kMinDenormal, kExact, -kMinDenormal, kUnderflow | kInexact},
      // trigonometric functions
      {"sin(-0)", orksinl_scalar, -0.0L, kNegZero, 0, 0},
      {"sin(+Inf)", orksinl_scalar, kInf, kAnyNaN, 0, kInvalid},
      {"sin(sNaN)", orksinl_scalar, kSNaN, kAnyNaN, 0, kInvalid},
      {"sin(2^-80)", orksinl_scalar, 0x1p-80L, kExact, 0x1p-80L, kInexact},
      {"cos(-0)", orkcosl_scalar, -0.0L, kExact, 1.0L, 0},
      {"cos(2^-80)", orkcosl_scalar, 0x1p-80L, kExact, 1.0L, kInexact},
      {"cos(-Inf)", orkcosl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      {"tan(-0)", orktanl_scalar, -0.0L, kNegZero, 0, 0},
      {"tan(-Inf)", orktanl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      {"tan(-2^-80)", orktanl_scalar, -0x1p-80L, kExact, -0x1p-80L, kInexact},
      {"atan(-Inf)", orkatanl_scalar, -kInf, kExact, -kPi2, kInexact},
      {"atan(2^70)", orkatanl_scalar, 0x1p70L, kExact, kPi2, kInexact},
      {"atan(-0)", orkatanl_scalar, -0.0L, kNegZero, 0, 0},
      {"atan(1) = pi/4", orkatanl_scalar, 1.0L, kExact, kPi2 / 2, kInexact},
      {"asin(-1)", orkasinl_scalar, -1.0L, kExact, -kPi2, kInexact},
      {"asin(1 + ulp)", orkasinl_scalar, std::nextafter(1.0L, 2.0L), kAnyNaN, 0, kInvalid},
      {"asin(-0)", orkasinl_scalar, -0.0L, kNegZero, 0, 0},
      {"acos(1) = +0", orkacosl_scalar, 1.0L, kPosZero, 0, 0},
      {"acos(-1) = pi", orkacosl_scalar, -1.0L, kExact, 2 * kPi2, kInexact},
      {"acos(-0) = pi/2", orkacosl_scalar, -0.0L, kExact, kPi2, kInexact},
      {"acos(-Inf)", orkacosl_scalar, -kInf, kAnyNaN, 0, kInvalid},
      // |x|
      {"fabs(-0) = +0", orkfabsl_scalar, -0.0L, kPosZero, 0, 0},
      {"fabs(-Inf)", orkfabsl_scalar, -kInf, kExact, kInf, 0},
      {"fabs(-3)", orkfabsl_scalar, -3.0L, kExact, 3.0L, 0},
      {"fabs(-least denormal)", orkfabsl_scalar, -kMinDenormal, kExact, kMinDenormal, 0},
      {"fabs(-qNaN) clears the sign", orkfabsl_scalar, kNegQNaN, kExact, kQNaN, 0},
      {"fabs(sNaN) quiets", orkfabsl_scalar, kSNaN, kExact, x80(0x7FFF, 0xE000000000000000ull), kInvalid},
  };
  for (const Row& r : rows) {
    const Call c = call(r.fn, r.x);
    const auto got = image(c.value), want = image(r.want);
    switch (r.kind) {
      case kExact:
        EXPECT_TRUE(got.sig == want.sig && got.se == want.se)
            << r.what << ": got " << luxcore::hex80(c.value) << " want " << luxcore::hex80(r.want);
        break;
      case kAnyNaN:
        EXPECT_TRUE(std::isnan(c.value)) << r.what << ": got " << luxcore::hex80(c.value);
        break;
      case kPosZero:
      case kNegZero:
        EXPECT_TRUE(got.sig == 0 && got.se == (r.kind == kNegZero ? 0x8000 : 0))
            << r.what << ": got " << luxcore::hex80(c.value);
        break;
    }
    EXPECT_EQ(c.flags, r.flags) << r.what;
  }
}

// atan2's special pairs, with the flags: (y, x, expected).
TEST(ExtendedCore, Atan2SpecialPairs) {
  struct Pair {
    ld y, x;
    Expect kind;
    ld want;
    uint32_t flags;
  };
  const ld qnan = kQNaN;
  const Pair rows[] = {
      {0.0L, 0.0L, kPosZero, 0, 0},
      {-0.0L, 0.0L, kNegZero, 0, 0},
      {0.0L, -0.0L, kExact, 2 * kPi2, kInexact},
      {-0.0L, -0.0L, kExact, -2 * kPi2, kInexact},
      {-0.0L, 5.0L, kNegZero, 0, 0},
      {0.0L, -5.0L, kExact, 2 * kPi2, kInexact},
      {kInf, kInf, kExact, kPi2 / 2, kInexact},
      {-kInf, -kInf, kExact, x80(0xC000, 0x96CBE3F9990E91A8ull), kInexact},
      {kInf, -3.0L, kExact, kPi2, kInexact},
      {-3.0L, kInf, kNegZero, 0, 0},
      {3.0L, -kInf, kExact, 2 * kPi2, kInexact},
      {-3.0L, 0.0L, kExact, -kPi2, kInexact},
      {qnan, 1.0L, kAnyNaN, 0, 0},
      {1.0L, kSNaN, kAnyNaN, 0, kInvalid},
      {0x1p-16400L, 1.0L, kExact, 0x1p-16400L, kUnderflow | kInexact},  // the plain quotient, denormal
      {-3.0L, 0x1p100L, kExact, -3.0L * 0x1p-100L, kInexact},
  };
  for (const Pair& r : rows) {
    lux::X87Guard64 guard;
    asm volatile("fnclex" ::: "memory");
    lux::write_mxcsr(lux::read_mxcsr() & ~0x3Fu);
    volatile ld y = r.y, x = r.x;
    const ld v = orkatan2l_scalar(y, x);
    uint16_t sw;
    asm volatile("fnstsw %0" : "=m"(sw));
    const uint32_t flags = (sw | lux::read_mxcsr()) & kIeeeFlags;
    const auto got = image(v), want = image(r.want);
    const std::string what = luxcore::hex80(r.y) + ", " + luxcore::hex80(r.x) + " -> " + luxcore::hex80(v);
    if (r.kind == kAnyNaN)
      EXPECT_TRUE(std::isnan(v)) << what;
    else if (r.kind == kExact)
      EXPECT_TRUE(got.sig == want.sig && got.se == want.se) << what;
    else
      EXPECT_TRUE(got.sig == 0 && got.se == (r.kind == kNegZero ? 0x8000 : 0)) << what;
    EXPECT_EQ(flags, r.flags) << what;
  }
}

// The odd routines are odd and cos, cosh even, bit for bit, on every path;
// the combined routines agree with the separate ones.
TEST(ExtendedCore, SymmetryAndTheCombinedRoutines) {
  luxtk::Rng rng(luxtest::g_sweep.seed);
  struct Odd {
    const char* name;
    ld (*fn)(ld);
    int lo, hi;
  };
  const Odd odd[] = {{"sin", orksinl_scalar, -90, 16000},     {"tan", orktanl_scalar, -90, 16000},
                     {"atan", orkatanl_scalar, -90, 16000},   {"asin", orkasinl_scalar, -90, 0},
                     {"sinh", orksinhl_scalar, -90, 14},      {"tanh", orktanhl_scalar, -90, 6},
                     {"asinh", orkasinhl_scalar, -90, 16000}, {"atanh", orkatanhl_scalar, -90, 0}};
  for (int i = 0; i < 2000; ++i) {
    for (const Odd& f : odd) {
      const ld x = luxcore::log_uniform80(rng, f.lo, f.hi, false);
      const ld a = call(f.fn, x).value, b = call(f.fn, -x).value;
      EXPECT_TRUE(image(a).sig == image(b).sig && image(a).se == (image(b).se ^ 0x8000))
          << f.name << " at " << luxcore::hex80(x);
    }
    const ld x = luxcore::log_uniform80(rng, -90, 13, true);  // finite results
    EXPECT_EQ(call(orkcoshl_scalar, x).value, call(orkcoshl_scalar, -x).value) << luxcore::hex80(x);
    const ld big = luxcore::log_uniform80(rng, -90, 16000, false);
    EXPECT_EQ(call(orkcosl_scalar, big).value, call(orkcosl_scalar, -big).value) << luxcore::hex80(big);
    ld s, c;
    {
      lux::X87Guard64 guard;
      orksinhcoshl_scalar(x, &s, &c);
    }
    // The combined routine's polynomial paths run in one chain: within an
    // ulp of the separate routines, equal where the paths coincide.
    const ld s1 = call(orksinhl_scalar, x).value, c1 = call(orkcoshl_scalar, x).value;
    EXPECT_LE(std::fabs(s - s1), std::fabs(s1) * 0x1p-63L) << luxcore::hex80(x);
    EXPECT_LE(std::fabs(c - c1), c1 * 0x1p-63L) << luxcore::hex80(x);
    if (std::fabs(x) >= 0.5L) {
      EXPECT_EQ(c, c1) << luxcore::hex80(x);
    }
    // The same for sine and cosine.
    {
      lux::X87Guard64 guard;
      orksincosl_scalar(big, &s, &c);
    }
    const ld s2 = call(orksinl_scalar, big).value, c2 = call(orkcosl_scalar, big).value;
    EXPECT_LE(std::fabs(s - s2), 0x1p-63L) << luxcore::hex80(big);
    EXPECT_LE(std::fabs(c - c2), 0x1p-63L) << luxcore::hex80(big);
  }
}

// Results that must round once: the two-term sum of the denormal range of e^x
// and the neighbourhood of the overflow bound.
TEST(ExtendedCore, ExpEdgesRoundOnce) {
  mpfr_t x, y;
  mpfr_inits2(256, x, y, (mpfr_ptr)0);
  for (const ld v : {-11356.0L, -11370.0L, -11390.5L, -11399.0L, -11400.0L, 11356.5L}) {
    const Call c = call(orkexpl_scalar, v);
    mpfr_set_ld(x, v, MPFR_RNDN);
    mpfr_exp(y, x, MPFR_RNDN);
    EXPECT_LE(luxcore::ulp_error80(c.value, y), 1.0)
        << luxcore::hex80(v) << " -> " << luxcore::hex80(c.value);
    const bool tiny = v < 0;
    EXPECT_EQ(c.flags & kUnderflow, tiny ? kUnderflow : 0u) << luxcore::hex80(v);
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

// The tables: every entry by its rule and bound, and the rows quoted for them.
TEST(ExtendedCore, TablesFollowTheirRules) {
  mpfr_t v, w;
  mpfr_inits2(256, v, w, (mpfr_ptr)0);
  auto dbl = [](uint64_t b) { return __builtin_bit_cast(double, b); };
  for (int j = -128; j <= 128; ++j) {
    const uint64_t* p = ork_ork_expl_table_256[j + 128];
    EXPECT_EQ(p[0] & 0x1FFFFF, 0u) << "exp hi " << j << " has more than 32 bits";
    mpfr_set_si(v, j, MPFR_RNDN);
    mpfr_div_si(v, v, 256, MPFR_RNDN);
    mpfr_exp2(v, v, MPFR_RNDN);
    mpfr_sub_d(v, v, dbl(p[0]), MPFR_RNDN);
    mpfr_sub_d(v, v, dbl(p[1]), MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(v, MPFR_RNDN)), 0x1p-85) << "exp pair " << j;
  }
  EXPECT_EQ(ork_ork_expl_table_256[0][0], 0x3FE6A09E66800000ull);
  EXPECT_EQ(ork_ork_expl_table_256[0][1], 0xBD98866DEE9A09D9ull);
  EXPECT_EQ(dbl(ork_ork_expl_table_256[128][0]), 1.0);
  EXPECT_EQ(dbl(ork_ork_expl_table_256[128][1]), 0.0);
  for (int i = 0; i < 256; ++i) {
    const float c = __builtin_bit_cast(float, ork_ork_rcp_table_256[i]);
    const double mid = 1.0 + (i + 0.5) / 256;
    EXPECT_EQ(c * 2048.0, std::nearbyint(2048.0 / mid)) << "c_" << i;
    const uint64_t* p = ork_ork_logl_table_256[i];
    EXPECT_EQ(p[0] & 0x1FFF, 0u) << "log hi " << i;
    mpfr_set_d(v, c, MPFR_RNDN);
    mpfr_log(v, v, MPFR_RNDN);
    mpfr_add_d(v, v, dbl(p[0]), MPFR_RNDN);
    mpfr_add_d(v, v, dbl(p[1]), MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(v, MPFR_RNDN)), 0x1p-93) << "log pair " << i;
  }
  for (int i = 0; i < 256; ++i) {
    const uint64_t* p = ork_ork_log_table_256[i];  // (T0, T1): the rest first
    EXPECT_EQ(p[1] & 0xFFFFFFFFull, 0u) << "T1 " << i;
    EXPECT_LE(std::fabs(dbl(p[0])), 5e-7) << "T0 " << i;
    mpfr_set_d(v, __builtin_bit_cast(float, ork_ork_rcp_table_256[i]), MPFR_RNDN);
    mpfr_log(v, v, MPFR_RNDN);
    mpfr_add_d(v, v, dbl(p[0]), MPFR_RNDN);
    mpfr_add_d(v, v, dbl(p[1]), MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(v, MPFR_RNDN)), 0x1p-75) << "log pair (T0, T1) " << i;
  }
  EXPECT_EQ(__builtin_bit_cast(float, ork_ork_rcp_table_256[0]), 0.998046875f);
  EXPECT_EQ(__builtin_bit_cast(float, ork_ork_rcp_table_256[255]), 0.50048828125f);
  mpfr_clears(v, w, (mpfr_ptr)0);
}

// The square root's reciprocal table is file-local: its rule shows through
// exact squares at and between every table point, at every scale.
TEST(ExtendedCore, SquareRootsOfExactSquaresAreExact) {
  for (int n = 0; n <= 1024; ++n) {
    const ld s = 1.0L + ld(n) / 1024;  // s^2 has at most 22 bits
    for (const int m : {0, 1, -8200, -8191, 8000}) {
      const ld sq = std::ldexp(s * s, 2 * m);
      EXPECT_EQ(call(orksqrtl_scalar, sq).value, std::ldexp(s, m)) << "s = " << double(s) << ", m = " << m;
    }
  }
}

TEST(ExtendedCore, SweepsWithinTheirBounds) {
  // The report's sweeps (luxvm core-accuracy) are larger.
  const long n = std::max(200L, luxtest::g_sweep.points / 20);
  for (const luxcore::Routine& r : luxcore::routines()) {
    const luxcore::Result res = luxcore::sweep(r, luxtest::g_sweep.seed, n);
    EXPECT_LE(res.overall.ulps, r.bound)
        << r.name << " at " << luxcore::hex80(res.overall.x) << " got " << luxcore::hex80(res.overall.got);
    for (const auto& [name, w] : res.regions)
      std::printf("  %-18s %-42s %.4g ulp at %s\n", r.name, name.c_str(), w.ulps,
                  luxcore::hex80(w.x).c_str());
  }
}

}  // namespace
