// Atan and Atan2 on binary64: the special values (Atan2's whole table) in
// blocks, passes and single lanes, quadrants at the axes and at extreme
// ratios, lane independence and in-place calls, the internal full-accuracy
// routines that the complex argument shares, the class table against its
// rule, and accuracy against MPFR.
#include <mpfr.h>

#include "atan_cases.h"
#include "frame/frame.h"
#include "trig/atan2_kernels.h"
#include "trig/atan_classes.h"

namespace {

const char* const kAtan[] = {"luxsAtan_64f_A26", "luxsAtan_64f_A50", "luxsAtan_64f_A53"};
const char* const kAtan2[] = {"luxsAtan2_64f_A26", "luxsAtan2_64f_A50", "luxsAtan2_64f_A53"};

TEST(Atan64, SpecialValuesInBlocksAndTails) {
  for (int t = 0; t < 3; ++t) invtrig::run_atan_rows<double>(kAtan[t], t > 0);
}

TEST(Atan64, OddAndLanesIndependentAcrossTheClassLimits) {
  for (const char* name : kAtan)
    invtrig::expect_atan_odd_and_independent<double>(name, {7.0 / 16, 11.0 / 16, 19.0 / 16, 39.0 / 16});
}

TEST(Atan64, ALimitItselfStaysInTheClassBelow) {
  // 1.1875 (high word 0x3FF30000) subtracts pi/4, its successor atan 1.5:
  // both sides agree with the correctly rounded value to the tier.
  const std::vector<double> x = {1.1875, std::nextafter(1.1875, 2.0), 0x1.30001p+0};
  for (int t = 1; t < 3; ++t) {
    const auto r = luxtest::call_unary(kAtan[t], x);
    for (size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(r.out[i], std::atan(x[i]), 2.3e-16) << x[i];
  }
}

TEST(Atan2_64, SpecialValueTableQuadrantsAndExtremeRatios) {
  for (const char* name : kAtan2) invtrig::run_atan2_rows<double>(name);
}

TEST(Atan2_64, LanesIndependentOfPassesAndInPlace) {
  for (const char* name : kAtan2) invtrig::expect_atan2_lanes_independent<double>(name);
}

TEST(Atan2_64, InternalRoutinesAgreeWithTheExport) {
  // The four-lane pass and the lane routine give the export's bits; the pass
  // refuses (storing nothing) when a lane is out of range.
  lux::X87Guard64 x87;
  lux::RoundNearestGuard sse;
  double y[4] = {0.3, -2.0, 1e-5, 7.0}, x[4] = {0.9, 0.25, -3.0, -7.0}, d[4] = {}, e[4] = {};
  ASSERT_TRUE(_orkdAtan2_HA_Pass(y, x, d));
  for (int k = 0; k < 4; ++k) {
    _orkdAtan2_HA_Lane(y + k, x + k, e + k);
    EXPECT_EQ(luxtest::bits(d[k]), luxtest::bits(e[k])) << k;
    double want;
    luxsAtan2_64f_A53(y + k, x + k, &want, 1);
    EXPECT_EQ(luxtest::bits(d[k]), luxtest::bits(want)) << k;
  }
  x[2] = 0.0;
  double untouched[4] = {9, 9, 9, 9};
  EXPECT_FALSE(_orkdAtan2_HA_Pass(y, x, untouched));
  for (double v : untouched) EXPECT_EQ(v, 9.0);
  _orkdAtan2_HA_Lane(y + 2, x + 2, untouched + 2);
  EXPECT_EQ(untouched[2], M_PI_2);
}

TEST(Atan2_64, ClassAnglesFollowTheirRuleAndTheQuotedRows) {
  // head = RN(atan b), tail = RN(atan b - head), b = inf, 1.5, 1, 0.5, 0.
  const double b[5] = {-1, 1.5, 1.0, 0.5, 0.0};
  mpfr_t a, d;
  mpfr_inits2(256, a, d, (mpfr_ptr)0);
  for (int i = 0; i < 5; ++i) {
    if (b[i] < 0) {
      mpfr_const_pi(a, MPFR_RNDN);
      mpfr_div_2ui(a, a, 1, MPFR_RNDN);
    } else {
      mpfr_set_d(a, b[i], MPFR_RNDN);
      mpfr_atan(a, a, MPFR_RNDN);
    }
    const double h = mpfr_get_d(a, MPFR_RNDN);
    mpfr_sub_d(d, a, h, MPFR_RNDN);
    EXPECT_EQ(lux::kAtanClasses64.head[i], luxtest::bits(h)) << i;
    EXPECT_EQ(lux::kAtanClasses64.tail[i], luxtest::bits(mpfr_get_d(d, MPFR_RNDN))) << i;
  }
  mpfr_clears(a, d, (mpfr_ptr)0);
  // The rows as quoted for the classes of atan 1.5 and atan 0.5.
  EXPECT_EQ(lux::kAtanClasses64.head[1], 0x3FEF730BD281F69Bull);
  EXPECT_EQ(lux::kAtanClasses64.tail[1], 0x3C7007887AF0CBBDull);
  EXPECT_EQ(lux::kAtanClasses64.head[3], 0x3FDDAC670561BB4Full);
  EXPECT_EQ(lux::kAtanClasses64.tail[3], 0x3C7A2B7F222F65E2ull);
  EXPECT_EQ(lux::kAtanClasses64.tail[0], 0x3C91A62633145C07ull);
}

TEST(Atan64, Accuracy) { luxtest::expect_family_accuracy("Atan", 64); }
TEST(Atan2_64, Accuracy) { luxtest::expect_family_accuracy("Atan2", 64); }

}  // namespace
