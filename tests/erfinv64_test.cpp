// ErfInv, ErfcInv and CdfNormInv on binary64: special values and statuses per
// lane class in blocks and tails, the last offending lane, lane
// independence and in-place calls, the odd symmetry of ErfInv, the scaled
// and tail paths, the MPFR-built oracle against its identities, the row
// tables against their rule and published rows, and accuracy.
#include <mpfr.h>

#include <cmath>
#include <string>
#include <vector>

#include "common/erfinv_mp.h"
#include "erfinv_accuracy.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f64;

const char* const kErfInv[] = {"luxsErfInv_64f_A26", "luxsErfInv_64f_A50", "luxsErfInv_64f_A53"};
const char* const kErfcInv[] = {"luxsErfcInv_64f_A26", "luxsErfcInv_64f_A50", "luxsErfcInv_64f_A53"};
const char* const kCdfNormInv[] = {"luxsCdfNormInv_64f_A26", "luxsCdfNormInv_64f_A50",
                                   "luxsCdfNormInv_64f_A53"};
constexpr uint64_t kNaN = 0xFFF8000000000000;     // the default NaN (Inf*0)
constexpr uint64_t kAnyNaN = 0x7FFFFFFFFFFFFFFF;  // a NaN, payload not asserted

struct Special {
  int func;  // 0 ErfInv, 1 ErfcInv, 2 CdfNormInv
  uint64_t x, want;
  int status;
};
const Special kSpecials[] = {
    {0, 0x0000000000000000, 0x0000000000000000, 0},   // +0
    {0, 0x8000000000000000, 0x8000000000000000, 0},   // -0
    {0, 0x3FF0000000000000, 0x7FF0000000000000, 18},  // 1: +Inf
    {0, 0xBFF0000000000000, 0xFFF0000000000000, 18},  // -1: -Inf
    {0, 0x3FF0000000000001, kNaN, 19},                // just above 1
    {0, 0x7FF0000000000000, kNaN, 19},                // +Inf
    {0, 0xFFF0000000000000, kNaN, 19},                // -Inf
    {0, 0x7FF8000000000123, kAnyNaN, 0},              // quiet NaN
    {0, 0x7FF0000000000123, kAnyNaN, 0},              // signalling NaN: quieted, invalid
    {0, 0x0000000000000001, 0x0000000000000001, 0},   // 2^-1074: the rounded denormal
    {1, 0x3FF0000000000000, 0x0000000000000000, 0},   // 1: +0
    {1, 0x0000000000000000, 0x7FF0000000000000, 18},  // +0: +Inf
    {1, 0x8000000000000000, 0x7FF0000000000000, 18},  // -0: +Inf
    {1, 0x4000000000000000, 0xFFF0000000000000, 18},  // 2: -Inf
    {1, 0x4000000000000001, kNaN, 19},                // above 2
    {1, 0xBFF0000000000000, kNaN, 19},                // -1
    {1, 0x8000000000000001, kNaN, 19},                // negative denormal
    {1, 0x7FF0000000000000, kNaN, 19},
    {1, 0xFFF0000000000000, kNaN, 19},
    {1, 0xFFF8000000000000, kAnyNaN, 0},
    {2, 0x3FE0000000000000, 0x0000000000000000, 0},   // 1/2: +0
    {2, 0x0000000000000000, 0xFFF0000000000000, 18},  // +0: -Inf
    {2, 0x8000000000000000, 0xFFF0000000000000, 18},  // -0: -Inf
    {2, 0x3FF0000000000000, 0x7FF0000000000000, 18},  // 1: +Inf
    {2, 0x3FF8000000000000, kNaN, 19},                // 1.5
    {2, 0xBFF0000000000000, kNaN, 19},                // -1
    {2, 0x7FF0000000000000, kNaN, 19},
    {2, 0xFFF0000000000000, kNaN, 19},
    {2, 0x7FF8000000000000, kAnyNaN, 0},
};

const char* name_of(int func, int tier) {
  return func == 0 ? kErfInv[tier] : func == 1 ? kErfcInv[tier] : kCdfNormInv[tier];
}
double ordinary(int func) { return func == 0 ? 0.3 : func == 1 ? 0.7 : 0.2; }

TEST(ErfInv64, SpecialValuesAndStatusesInBlocksAndTails) {
  for (const Special& s : kSpecials)
    for (int tier = 0; tier < 3; ++tier)
      for (int len : {1, 3, 8, 13}) {
        const char* name = name_of(s.func, tier);
        const int at = len == 1 ? 0 : len == 8 ? 5 : len - 1;
        std::vector<double> x(len, ordinary(s.func));
        x[at] = f64(s.x);
        const auto r = luxtest::call_unary(name, x);
        SCOPED_TRACE(testing::Message() << name << " x " << std::hex << s.x << " len " << std::dec << len);
        if (s.want == kAnyNaN)
          EXPECT_TRUE(std::isnan(r.out[at]));
        else
          EXPECT_EQ(bits(r.out[at]), s.want);
        EXPECT_EQ(r.status, s.status);
        EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, s.status == 18);
        const bool snan = s.x == 0x7FF0000000000123;
        EXPECT_EQ((r.flags & luxtk::kInvalid) != 0, s.status == 19 || snan);
        for (int i = 0; i < len; ++i) {
          if (i != at) {
            EXPECT_EQ(bits(r.out[i]), bits(r.out[at == 0 ? 1 % len : 0])) << "lane " << i;
          }
        }
      }
}

TEST(ErfInv64, LastOffendingLaneWins) {
  for (int tier = 0; tier < 3; ++tier) {
    std::vector<double> x(11, 0.7);
    x[1] = 2.0;   // 18
    x[9] = -1.0;  // 19, tail lane
    EXPECT_EQ(luxtest::call_unary(kErfcInv[tier], x).status, 19);
    std::swap(x[1], x[9]);
    const auto r = luxtest::call_unary(kErfcInv[tier], x);
    EXPECT_EQ(r.status, 18);
    EXPECT_EQ(bits(r.out[9]), 0xFFF0000000000000u);
    EXPECT_EQ(bits(r.out[3]), bits(luxtest::call_unary(kErfcInv[tier], std::vector<double>{0.7}).out[0]));
  }
}

// Inputs over every path: rows near the ends, the scaled path and the tail.
std::vector<double> mixed_inputs(int func, int n) {
  luxtk::Rng rng(17 + func);
  std::vector<double> x(n);
  for (int i = 0; i < n; ++i) {
    const double d = rng.log_uniform(0x1p-1074, 0.5, false);
    switch (func) {
      case 0:
        x[i] = (i & 1 ? -1.0 : 1.0) * (i % 3 == 0 ? d : 1.0 - d);
        break;
      case 1:
        x[i] = i % 3 == 0 ? 2.0 - d : d;
        break;
      default:
        x[i] = i % 3 == 0 ? 1.0 - d : d / 2;
        break;
    }
  }
  x[n / 2] = std::nan("");
  return x;
}

TEST(ErfInv64, LanesAreIndependentOfBlockTailAndPlace) {
  for (int func = 0; func < 3; ++func)
    for (int tier = 0; tier < 3; ++tier) {
      const char* name = name_of(func, tier);
      const std::vector<double> x = mixed_inputs(func, 23);
      const auto all = luxtest::call_unary(name, x);
      for (size_t i = 0; i < x.size(); ++i)
        EXPECT_EQ(bits(luxtest::call_unary(name, std::vector<double>{x[i]}).out[0]), bits(all.out[i]))
            << name << " lane " << i;
      // In place: the inputs of a block are kept before its stores.
      std::vector<double> y = x;
      y[4] = 5.0;
      const auto ref = luxtest::call_unary(name, y);
      auto* fn = reinterpret_cast<luxStatus (*)(const double*, double*, int)>(luxtk::export_address(name));
      ASSERT_NE(fn, nullptr);
      EXPECT_EQ(fn(y.data(), y.data(), int(y.size())), ref.status);
      for (size_t i = 0; i < y.size(); ++i)
        EXPECT_EQ(bits(y[i]), bits(ref.out[i])) << name << " in place " << i;
    }
}

TEST(ErfInv64, IsOddBitForBit) {
  const std::vector<double> x = mixed_inputs(0, 40);
  std::vector<double> neg(x.size());
  for (size_t i = 0; i < x.size(); ++i) neg[i] = -x[i];
  for (const char* name : kErfInv) {
    const auto a = luxtest::call_unary(name, x), b = luxtest::call_unary(name, neg);
    for (size_t i = 0; i < x.size(); ++i) {
      if (!std::isnan(x[i])) {
        EXPECT_EQ(bits(a.out[i]), bits(-b.out[i])) << name << " " << x[i];
      }
    }
  }
}

// The exact value, rounded, from the oracle.
double exact(int func, double x) {
  mpfr_t a, z;
  mpfr_inits2(128, a, z, (mpfr_ptr)0);
  mpfr_set_d(a, x, MPFR_RNDN);
  if (func == 0) luxmp::erfinv(z, a);
  if (func == 1) luxmp::erfcinv(z, a);
  if (func == 2) luxmp::cdfnorminv(z, a);
  const double r = mpfr_get_d(z, MPFR_RNDN);
  mpfr_clears(a, z, (mpfr_ptr)0);
  return r;
}

TEST(ErfInv64, PathEdges) {
  struct Edge {
    int func;
    double x;
  } const edges[] = {
      {0, 0x1.fffffffffffffp-1},   // y = 2^-53, the last row
      {0, 0x1p-53},                // row 0, the smallest regular lane
      {0, 0x1.fffffffffffffp-54},  // scaled path
      {0, 0x1p-1022},
      {1, 0x1p-53},                // the rows' reach
      {1, 0x1.fffffffffffffp-54},  // the tail
      {1, 0x1p-1074},              // the tail's denormal branch: about 27.2
      {1, 0x1.0000000000001p+0},   // 2 - x: about -1.97e-16
      {2, 0x1p-54},
      {2, 0x1.fffffffffffffp-55},
      {2, 0x1p-1074},
      {2, 0x1.fffffffffffffp-1},
  };
  for (const Edge& e : edges)
    for (int tier = 0; tier < 3; ++tier) {
      const auto r = luxtest::call_unary(name_of(e.func, tier), std::vector<double>{e.x});
      const double want = exact(e.func, e.x);
      const double tol = (tier == 2   ? 1.0
                          : tier == 1 ? 8.0
                                      : 0x1p27) *
                         std::ldexp(1.0, std::ilogb(want) - 52);
      EXPECT_LE(std::fabs(r.out[0] - want), tol) << name_of(e.func, tier) << " " << std::hexfloat << e.x;
      EXPECT_EQ(r.status, 0);
    }
  // The denormal result raises underflow; a normal scaled one does not.
  EXPECT_TRUE(luxtest::call_unary(kErfInv[2], std::vector<double>{0x1p-1074}).flags & luxtk::kUnderflow);
  EXPECT_FALSE(luxtest::call_unary(kErfInv[2], std::vector<double>{0x1p-60}).flags & luxtk::kUnderflow);
  // Rounding up to the smallest normal: the largest x whose result is a denormal, and the next ones.
  for (double x = 0x1.20dd750429b6dp-1022 - 0x1p-1070; x < 0x1.20dd750429b6dp-1022 + 0x1p-1070;
       x = std::nextafter(x, 1.0)) {
    const double got = luxtest::call_unary(kErfInv[2], std::vector<double>{x}).out[0];
    EXPECT_LE(std::fabs(got - exact(0, x)), 0x1p-1074) << std::hexfloat << x;
  }
}

TEST(ErfInv64, OracleMeetsItsIdentities) {
  // erf(erfinv(y)) = y and erfc(erfcinv(q)) = q on representable points,
  // to far below an ulp.
  mpfr_t y, z, back, d;
  mpfr_inits2(200, y, z, back, d, (mpfr_ptr)0);
  for (double v : {0x1p-1074, 0x1p-60, 0.001, 0.25, 0.5, 0.75, 0.999, 0x1.fffffffffffffp-1}) {
    mpfr_set_d(y, v, MPFR_RNDN);
    luxmp::erfinv(z, y);
    mpfr_erf(back, z, MPFR_RNDN);
    mpfr_sub(d, back, y, MPFR_RNDN);
    mpfr_div(d, d, y, MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(d, MPFR_RNDN)), 0x1p-150) << "erfinv " << v;
    luxmp::erfcinv(z, y);
    mpfr_erfc(back, z, MPFR_RNDN);
    mpfr_sub(d, back, y, MPFR_RNDN);
    mpfr_div(d, d, y, MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(d, MPFR_RNDN)), 0x1p-150) << "erfcinv " << v;
  }
  mpfr_set_d(y, 1.5, MPFR_RNDN);  // erfcinv(1.5) = -erfinv(0.5)
  luxmp::erfcinv(z, y);
  EXPECT_EQ(mpfr_get_d(z, MPFR_RNDN), -0.47693627620446987);
  mpfr_set_d(y, 0.975, MPFR_RNDN);  // the 97.5% quantile
  luxmp::cdfnorminv(z, y);
  EXPECT_NEAR(mpfr_get_d(z, MPFR_RNDN), 1.959963984540054, 1e-15);
  mpfr_clears(y, z, back, d, (mpfr_ptr)0);
}

// The sweeps of these families measure against an iterative oracle: a
// fiftieth of the usual points per region.
void expect_accuracy(const char* family) { luxtest::expect_inverse_accuracy(family, 64); }

TEST(ErfInv64, Accuracy) { expect_accuracy("ErfInv"); }
TEST(ErfcInv64, Accuracy) { expect_accuracy("ErfcInv"); }
TEST(CdfNormInv64, Accuracy) { expect_accuracy("CdfNormInv"); }

}  // namespace
