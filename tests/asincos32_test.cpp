// Asin and Acos on binary32: the special values of every tier in blocks and
// tails, statuses and flags per lane class, domain lanes beside ordinary
// ones, in-place calls, odd symmetry, and accuracy against MPFR.  The A24
// Asin and both A11 tiers rest on the processor's estimates: checked by
// value only where the selecting pass fixes it, else by bound and property.
#include <limits>

#include "asincos_cases.h"
#include "luxvm.h"

namespace {

using invtrig::AsinAcosRow;
using invtrig::kAnyNaN;

const char* const kAsin[] = {"luxsAsin_32f_A11", "luxsAsin_32f_A21", "luxsAsin_32f_A24"};
const char* const kAcos[] = {"luxsAcos_32f_A11", "luxsAcos_32f_A21", "luxsAcos_32f_A24"};
constexpr uint32_t kNaN = 0xFFC00000;  // the default NaN
constexpr uint32_t kPio2 = 0x3FC90FDB, kPi = 0x40490FDB;

// Every binary32 tier returns a NaN source lane bit for bit.
const std::vector<AsinAcosRow<float>> kRows = {
    {0x00000000, 0x00000000, kPio2, 0},
    {0x80000000, 0x80000000, kPio2, 0},
    {0x3F800000, kPio2, 0x00000000, 0},
    {0xBF800000, 0xBFC90FDB, kPi, 0},
    {0x3F800001, kNaN, kNaN, luxWarnDomain},  // just above 1
    {0xBF800001, kNaN, kNaN, luxWarnDomain},
    {0x7F7FFFFF, kNaN, kNaN, luxWarnDomain},  // no overflow on the way
    {0x7F800000, kNaN, kNaN, luxWarnDomain},
    {0xFF800000, kNaN, kNaN, luxWarnDomain},
    {0x7FC00123, kAnyNaN<float>, kAnyNaN<float>, 0},
    {0xFFA00001, kAnyNaN<float>, kAnyNaN<float>, 0},  // signalling
};

TEST(AsinAcos32, SpecialValuesStatusesAndFlagsInBlocksAndTails) {
  for (int t = 0; t < 3; ++t) {
    invtrig::run_asincos_rows<float>(kAsin[t], true, true, kRows);
    invtrig::run_asincos_rows<float>(kAcos[t], false, true, kRows);
  }
}

TEST(AsinAcos32, DomainLanesDoNotDisturbTheirBlock) {
  for (int t = 0; t < 3; ++t) {
    invtrig::expect_domain_lanes_isolated<float>(kAsin[t], kNaN);
    invtrig::expect_domain_lanes_isolated<float>(kAcos[t], kNaN);
  }
}

TEST(AsinAcos32, LanesNearTheSplitsAreIndependentOfTheirBlock) {
  // Around 1/2 (where the two sides meet) and 1, with a NaN and zeros among
  // them: each lane's bits are those it has alone, also in place.
  std::vector<float> x;
  for (float c : {0.5f, -0.5f, 1.0f, -1.0f})
    for (int k = -3; k <= 3; ++k) {
      float v = c;
      for (int j = 0; j < (k < 0 ? -k : k); ++j) v = std::nextafter(v, k < 0 ? 0.0f : 2.0f * c);
      x.push_back(v);
    }
  x.push_back(std::numeric_limits<float>::quiet_NaN());
  x.push_back(-0.0f);
  x.push_back(0x1p-30f);
  for (int t = 0; t < 3; ++t) {
    invtrig::expect_lanes_alone_equal(kAsin[t], x);
    invtrig::expect_lanes_alone_equal(kAcos[t], x);
  }
}

TEST(AsinAcos32, AsinIsOddAndAcosOfMinusXIsPiMinusAcosX) {
  luxtk::Rng rng(11);
  std::vector<float> x(64), nx(64);
  for (int i = 0; i < 64; ++i) {
    x[i] = float(rng.log_uniform(0x1p-40, 1.0, false));
    nx[i] = -x[i];
  }
  for (int t = 0; t < 3; ++t) {
    const auto p = luxtest::call_unary(kAsin[t], x), n = luxtest::call_unary(kAsin[t], nx);
    const auto cp = luxtest::call_unary(kAcos[t], x), cn = luxtest::call_unary(kAcos[t], nx);
    for (int i = 0; i < 64; ++i) {
      EXPECT_EQ(p.out[i], -n.out[i]) << kAsin[t] << " x " << x[i];
      // acos(-x) + acos(x) = pi, to the tier's accuracy at pi.
      EXPECT_NEAR(double(cp.out[i]) + double(cn.out[i]), M_PI, t == 0 ? 2e-3 : 1e-6)
          << kAcos[t] << " x " << x[i];
    }
  }
}

TEST(Asin32, Accuracy) { luxtest::expect_family_accuracy("Asin", 32); }
TEST(Acos32, Accuracy) { luxtest::expect_family_accuracy("Acos", 32); }

}  // namespace
