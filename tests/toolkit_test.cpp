// The test platform's own instruments: number parsing, the ulp measure and
// the sweeps must be right before any kernel is judged by them.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "common/census.h"
#include "common/complex_oracle.h"
#include "common/numbers.h"
#include "common/oracle.h"

namespace {

using luxtk::parse_component;

TEST(Numbers, ParsesEveryAcceptedForm) {
  uint64_t b = 0;
  EXPECT_TRUE(parse_component("1.5", 64, &b));
  EXPECT_EQ(b, 0x3FF8000000000000ull);
  EXPECT_TRUE(parse_component("0x3ff8000000000000", 64, &b));
  EXPECT_EQ(b, 0x3FF8000000000000ull);
  EXPECT_TRUE(parse_component("0x1.8p+1", 64, &b));
  EXPECT_EQ(b, 0x4008000000000000ull);
  EXPECT_TRUE(parse_component("0.1", 32, &b));
  EXPECT_EQ(b, 0x3DCCCCCDull);  // rounded once, straight to binary32
  EXPECT_TRUE(parse_component("-inf", 32, &b));
  EXPECT_EQ(b, 0xFF800000ull);
  EXPECT_TRUE(parse_component("snan", 64, &b));
  EXPECT_EQ(b, 0x7FF4000000000000ull);
  EXPECT_TRUE(parse_component("NaN", 64, &b));
  EXPECT_EQ(b, 0x7FF8000000000000ull);
  for (const char* bad : {"", "1.5x", "0x123456789", "abc", "1,2"})
    EXPECT_FALSE(parse_component(bad, 32, &b)) << bad;
  unsigned char lane[16];
  EXPECT_TRUE(luxtk::parse_lane("1,-2", 64, true, lane));
  EXPECT_FALSE(luxtk::parse_lane("1", 64, true, lane));
}

class Ulp : public testing::Test {
 protected:
  Ulp() { mpfr_init2(x_, luxtk::kOraclePrecision); }
  ~Ulp() override { mpfr_clear(x_); }
  mpfr_t x_;
};

TEST_F(Ulp, MeasuresAgainstTheUnroundedValue) {
  // exp(1) rounds to 0x1.5bf0a8b145769p+1; its exact value lies about 0.33 ulp above.
  mpfr_set_ui(x_, 1, MPFR_RNDN);
  mpfr_exp(x_, x_, MPFR_RNDN);
  const double cr = 0x1.5bf0a8b145769p+1;
  const double e0 = luxtk::ulp_error(cr, x_, 64);
  EXPECT_LT(e0, 0.5);
  EXPECT_GT(e0, 0.0);
  EXPECT_NEAR(luxtk::ulp_error(std::nextafter(cr, 0.0), x_, 64), 1.0 + e0, 1e-9);
  EXPECT_EQ(luxtk::round_to_format(x_, 64), cr);
  EXPECT_EQ(luxtk::round_to_format(x_, 32), double(2.71828183f));
}

TEST_F(Ulp, SubnormalsOverflowAndSpecialValues) {
  // 3 * 2^-1076 lies between the two smallest subnormals: ulp is 2^-1074.
  mpfr_set_ui_2exp(x_, 3, -1076, MPFR_RNDN);
  EXPECT_DOUBLE_EQ(luxtk::ulp_error(0x1p-1074, x_, 64), 0.25);
  EXPECT_EQ(luxtk::round_to_format(x_, 64), 0x1p-1074);
  mpfr_set_ui_2exp(x_, 3, -151, MPFR_RNDN);
  EXPECT_EQ(luxtk::round_to_format(x_, 32), double(0x1p-149f));
  // Beyond the largest double: infinity is the correctly rounded answer.
  mpfr_set_ui_2exp(x_, 1, 1024, MPFR_RNDN);
  EXPECT_EQ(luxtk::ulp_error(INFINITY, x_, 64), 0.0);
  EXPECT_EQ(luxtk::ulp_error(-INFINITY, x_, 64), INFINITY);
  EXPECT_EQ(luxtk::ulp_error(0x1.fffffffffffffp1023, x_, 64), 1.0);
  mpfr_set_nan(x_);
  EXPECT_EQ(luxtk::ulp_error(NAN, x_, 64), 0.0);
  EXPECT_EQ(luxtk::ulp_error(1.0, x_, 64), INFINITY);
  mpfr_set_zero(x_, 1);
  EXPECT_EQ(luxtk::ulp_error(0.0, x_, 64), 0.0);
}

TEST(ComplexOracle, TakesTheWorseComponent) {
  mpc_t z;
  mpc_init2(z, luxtk::kOraclePrecision);
  luxtk::complex_exact(mpc_exp, 0.0, 0.0, z);  // exactly 1 + 0i
  EXPECT_EQ(luxtk::complex_ulp_error(1.0, 0.0, z, 64), 0.0);
  EXPECT_EQ(luxtk::complex_ulp_error(std::nextafter(1.0, 2.0), 0.0, z, 64), 1.0);
  mpc_clear(z);
}

TEST(Sweeps, DeterministicAndShapedAsAsked) {
  std::vector<double> a1, a2, b;
  luxtk::Rng r1(42), r2(42);
  const luxtk::Region lu = luxtk::log_uniform_region("lu", 1e-300, 1e300, true);
  lu.draw(r1, 64, 1000, a1, b);
  lu.draw(r2, 64, 1000, a2, b);
  EXPECT_EQ(a1, a2);
  int negative = 0;
  for (double v : a1) {
    EXPECT_GE(std::fabs(v), 1e-300);
    EXPECT_LE(std::fabs(v), 1e300);
    negative += v < 0;
  }
  EXPECT_GT(negative, 400);
  std::vector<double> s;
  luxtk::splits_region("s", {1.0}, 2).draw(r1, 32, 0, s, b);
  ASSERT_EQ(s.size(), 5u);
  EXPECT_EQ(s[0], double(std::nextafter(std::nextafter(1.0f, 0.0f), 0.0f)));
  EXPECT_EQ(s[2], 1.0);
  EXPECT_EQ(s[4], double(std::nextafter(std::nextafter(1.0f, 2.0f), 2.0f)));
}

TEST(Census, EveryFamilyAndTypeAsListed) {
  EXPECT_EQ(luxtk::census().size(), 390u);
  const luxtk::CensusEntry* abs32 = luxtk::find_export("luxsAbs_32f_A24");
  ASSERT_NE(abs32, nullptr);
  EXPECT_EQ(luxtk::find_export("luxsAbs_32f_A11"), nullptr);
  EXPECT_EQ(luxtk::find_export("luxsAdd_32fc_A21"), nullptr);
  const luxtk::CensusEntry* cabs = luxtk::find_export("luxsAbs_64fc_A50");
  ASSERT_NE(cabs, nullptr);
  EXPECT_TRUE(cabs->complex_src());
  EXPECT_FALSE(cabs->complex_dst());
  EXPECT_EQ(cabs->dst_size(), 8u);
  const luxtk::CensusEntry* cis = luxtk::find_export("luxsCIS_32fc_A24");
  ASSERT_NE(cis, nullptr);
  EXPECT_FALSE(cis->complex_src());
  EXPECT_EQ(cis->dst_size(), 8u);
  EXPECT_EQ(luxtk::find_export("luxsModf_64f")->results(), 2);
  EXPECT_TRUE(luxtk::find_export("luxsLn_64f_A53")->may_return(18));
  EXPECT_FALSE(luxtk::find_export("luxsLn_64f_A53")->may_return(12));
}

}  // namespace
