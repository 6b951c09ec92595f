// Asin and Acos on binary64: the special values of every tier in blocks and
// tails, statuses and flags per lane class, domain lanes beside ordinary
// ones, in-place calls, odd symmetry, and accuracy against MPFR.
#include <limits>

#include "asincos_cases.h"
#include "luxvm.h"

namespace {

using invtrig::AsinAcosRow;
using invtrig::kAnyNaN;

const char* const kAsin[] = {"luxsAsin_64f_A26", "luxsAsin_64f_A50", "luxsAsin_64f_A53"};
const char* const kAcos[] = {"luxsAcos_64f_A26", "luxsAcos_64f_A50", "luxsAcos_64f_A53"};
constexpr uint64_t kNaN = 0xFFF8000000000000;  // the default NaN
constexpr uint64_t kPio2 = 0x3FF921FB54442D18, kPi = 0x400921FB54442D18;

const std::vector<AsinAcosRow<double>> kRows = {
    {0x0000000000000000, 0x0000000000000000, kPio2, 0},
    {0x8000000000000000, 0x8000000000000000, kPio2, 0},
    {0x3FF0000000000000, kPio2, 0x0000000000000000, 0},
    {0xBFF0000000000000, 0xBFF921FB54442D18, kPi, 0},
    {0x0000000000000001, 0x0000000000000001, kPio2, 0},  // least subnormal: asin x = x
    {0x3FF0000000000001, kNaN, kNaN, luxWarnDomain},     // just above 1
    {0xBFF0000000000001, kNaN, kNaN, luxWarnDomain},
    {0x7FEFFFFFFFFFFFFF, kNaN, kNaN, luxWarnDomain},  // no overflow on the way
    {0x7FF0000000000000, kNaN, kNaN, luxWarnDomain},
    {0xFFF0000000000000, kNaN, kNaN, luxWarnDomain},
    {0x7FF8000000000123, kAnyNaN<double>, kAnyNaN<double>, 0},
    {0xFFF4000000000001, kAnyNaN<double>, kAnyNaN<double>, 0},  // signalling
};

TEST(AsinAcos64, SpecialValuesStatusesAndFlagsInBlocksAndTails) {
  for (int t = 0; t < 3; ++t) {
    invtrig::run_asincos_rows<double>(kAsin[t], true, t < 2, kRows);
    invtrig::run_asincos_rows<double>(kAcos[t], false, t < 2, kRows);
  }
}

TEST(AsinAcos64, DomainLanesDoNotDisturbTheirBlock) {
  for (int t = 0; t < 3; ++t) {
    invtrig::expect_domain_lanes_isolated<double>(kAsin[t], kNaN);
    invtrig::expect_domain_lanes_isolated<double>(kAcos[t], kNaN);
  }
}

TEST(AsinAcos64, LanesNearTheSplitsAreIndependentOfTheirBlock) {
  // Around 1/2 (where the two sides meet) and 1, with a NaN and zeros among
  // them: each lane's bits are those it has alone, also in place.
  std::vector<double> x;
  for (double c : {0.5, -0.5, 1.0, -1.0})
    for (int k = -3; k <= 3; ++k) {
      double v = c;
      for (int j = 0; j < (k < 0 ? -k : k); ++j) v = std::nextafter(v, k < 0 ? 0.0 : 2.0 * c);
      x.push_back(v);
    }
  x.push_back(std::numeric_limits<double>::quiet_NaN());
  x.push_back(-0.0);
  x.push_back(0x1p-30);
  for (int t = 0; t < 3; ++t) {
    invtrig::expect_lanes_alone_equal(kAsin[t], x);
    invtrig::expect_lanes_alone_equal(kAcos[t], x);
  }
}

TEST(AsinAcos64, AsinIsOddAndAcosOfMinusXIsPiMinusAcosX) {
  luxtk::Rng rng(11);
  std::vector<double> x(64), nx(64);
  for (int i = 0; i < 64; ++i) {
    x[i] = rng.log_uniform(0x1p-40, 1.0, false);
    nx[i] = -x[i];
  }
  for (int t = 0; t < 3; ++t) {
    const auto p = luxtest::call_unary(kAsin[t], x), n = luxtest::call_unary(kAsin[t], nx);
    const auto cp = luxtest::call_unary(kAcos[t], x), cn = luxtest::call_unary(kAcos[t], nx);
    for (int i = 0; i < 64; ++i) {
      EXPECT_EQ(p.out[i], -n.out[i]) << kAsin[t] << " x " << x[i];
      // acos(-x) + acos(x) = pi, to the tier's accuracy at pi.
      EXPECT_NEAR(cp.out[i] + cn.out[i], M_PI, t == 0 ? 1e-7 : 1e-14) << kAcos[t] << " x " << x[i];
    }
  }
}

TEST(Asin64, Accuracy) { luxtest::expect_family_accuracy("Asin", 64); }
TEST(Acos64, Accuracy) { luxtest::expect_family_accuracy("Acos", 64); }

}  // namespace
