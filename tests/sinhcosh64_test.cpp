// Sinh and Cosh on binary64 (A53, A50, A26): the tables against their rules
// and the Exp tables they share rows with, the overflow threshold against
// MPFR, directed rows per lane class at every position of a block and a
// tail, in-place calls, and the accuracy sweeps.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <vector>

#include "gen/gen_common.h"
#include "hyperbolic_cases.h"

namespace {

using hyptest::kOracle;
using luxtest::f64;

const uint64_t kHa[65][2] = {
#include "hyperbolic/dsinhcosh_ha_table.inc"
};
const uint64_t kExpHa[64][2] = {
#include "exp_log/dexp_ha_table.inc"
};
const uint64_t kLa[129] = {
#include "hyperbolic/dsinhcosh_la_table.inc"
};
const uint64_t kExpLa[128] = {
#include "exp_log/dexp_la_table.inc"
};
const uint64_t kNz[32][2] = {
#include "hyperbolic/dsinh_nz_table.inc"
};

// 2^(j/n) at 256 bits.
struct Pow2 {
  mpfr_t v;
  Pow2(long j, long n) {
    mpfr_init2(v, 256);
    mpfr_set_si(v, j, MPFR_RNDN);
    mpfr_div_si(v, v, n, MPFR_RNDN);
    mpfr_exp2(v, v, MPFR_RNDN);
  }
  ~Pow2() { mpfr_clear(v); }
};

TEST(SinhCosh64Tables, FollowTheirRules) {
  mpfr_t d;
  mpfr_init2(d, 256);
  for (int j = 0; j < 64; ++j) {
    const Pow2 p(j, 64);
    EXPECT_EQ(f64(kHa[j][0]), gen::round_to(p.v, 45, MPFR_RNDZ)) << j;  // 44 fraction bits, truncated
    mpfr_sub_d(d, p.v, f64(kHa[j][0]), MPFR_RNDN);
    EXPECT_EQ(f64(kHa[j][1]), gen::round_to(d, 53)) << j;
    // The rows of -N: half of row 64 - j is 2^(-j/64) to the same accuracy.
    const Pow2 m(-j, 64);
    mpfr_sub_d(d, m.v, f64(kHa[64 - j][0]) / (j ? 2 : 1), MPFR_RNDN);
    mpfr_sub_d(d, d, f64(kHa[64 - j][1]) / (j ? 2 : 1), MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(d, MPFR_RNDN)), 0x1p-96) << j;  // L within half an ulp
  }
  EXPECT_EQ(kHa[64][0], 0x3FF0000000000000u);
  EXPECT_EQ(kHa[64][1], 0u);
  for (int j = 0; j < 128; ++j) {
    const Pow2 p(j, 128);
    EXPECT_EQ(f64(kLa[j]), gen::round_to(p.v, 53)) << j;
  }
  EXPECT_EQ(kLa[128], 0x3FF0000000000000u);
  for (int i = 0; i < 32; ++i) {
    mpfr_t s, c;
    mpfr_inits2(256, s, c, (mpfr_ptr)0);
    mpfr_set_d(d, i / 32.0, MPFR_RNDN);
    mpfr_sinh_cosh(s, c, d, MPFR_RNDN);
    EXPECT_EQ(f64(kNz[i][0]), gen::round_to(c, 53)) << i;
    EXPECT_EQ(f64(kNz[i][1]), gen::round_to(s, 53)) << i;
    mpfr_clears(s, c, (mpfr_ptr)0);
  }
  mpfr_clear(d);
}

TEST(SinhCosh64Tables, ShareTheExpRows) {
  for (int j = 0; j < 64; ++j) {
    EXPECT_EQ(kHa[j][0], kExpHa[j][0]) << j;
    EXPECT_EQ(kHa[j][1], kExpHa[j][1]) << j;
  }
  for (int j = 0; j < 128; ++j) EXPECT_EQ(kLa[j] & 0x000FFFFFFFFFFFFFu, kExpLa[j]) << j;
}

TEST(SinhCosh64, OverflowThresholdIsExact) {
  for (auto f : {mpfr_sinh, mpfr_cosh}) {
    EXPECT_TRUE(std::isfinite(hyptest::rounded(f, f64(0x408633CE8FB9F87D))));
    EXPECT_TRUE(std::isinf(hyptest::rounded(f, f64(0x408633CE8FB9F87E))));
  }
}

const hyptest::Export kExports[] = {
    {"luxsSinh_64f_A53", mpfr_sinh, 1.0},    {"luxsSinh_64f_A50", mpfr_sinh, 8.0},
    {"luxsSinh_64f_A26", mpfr_sinh, 0x1p27}, {"luxsCosh_64f_A53", mpfr_cosh, 1.0},
    {"luxsCosh_64f_A50", mpfr_cosh, 8.0},    {"luxsCosh_64f_A26", mpfr_cosh, 0x1p27},
};
enum : unsigned { S53 = 1, S50 = 2, S26 = 4, C53 = 8, C50 = 16, C26 = 32, S = 7, C = 56, All = 63 };
constexpr unsigned kLaTiers = S50 | S26 | C50 | C26;

constexpr uint64_t kOne = 0x3FF0000000000000, kInf = 0x7FF0000000000000, kNegInf = 0xFFF0000000000000;

// clang-format off
const hyptest::Row<double> kRows[] = {
    // Zeros and denormals: sinh keeps x, cosh is exactly 1.
    {S, 0x0000000000000000, 0x0000000000000000, 0},  {S, 0x8000000000000000, 0x8000000000000000, 0},
    {S, 0x0000000000000001, 0x0000000000000001, 0},  {S, 0x800FFFFFFFFFFFFF, 0x800FFFFFFFFFFFFF, 0},
    {C, 0x0000000000000000, kOne, 0},                {C, 0x8000000000000000, kOne, 0},
    {C, 0x0000000000000001, kOne, 0},                {C, 0x3E40000000000000, kOne, 0},
    // Infinities, no status.
    {All, kInf, kInf, 0},                            {S, kNegInf, kNegInf, 0},
    {C, kNegInf, kInf, 0},
    // NaNs: A53 the all-ones NaN; Sinh A50, A26 x itself; Cosh A50, A26 x quieted, sign cleared.
    {S53 | C53, 0x7FF8000000000000, ~0ull, 0},       {S53 | C53, 0xFFF0000000000001, ~0ull, 0},
    {S50 | S26, 0x7FF0000000000001, 0x7FF0000000000001, 0},
    {S50 | S26, 0xFFF8000000000123, 0xFFF8000000000123, 0},
    {C50 | C26, 0x7FF0000000000001, 0x7FF8000000000001, 0},
    {C50 | C26, 0xFFF8000000000123, 0x7FF8000000000123, 0},
    // Overflow from 710.475860073944; the double below is finite.
    {All, 0x408633CE8FB9F87E, kInf, 12},             {S, 0xC08633CE8FB9F87E, kNegInf, 12},
    {C, 0xC08633CE8FB9F87E, kInf, 12},               {All, 0x7FEFFFFFFFFFFFFF, kInf, 12},
    {All, 0x408633CE8FB9F87D, kOracle, 0},           {All, 0xC08633CE8FB9F87D, kOracle, 0},
    // The zone beyond 708.40: M no longer counts, then the split scale.
    {All, 0x4086280000000000, kOracle, 0},           {All, 0x4086300000000000, kOracle, 0},
    {All, 0x40862336F49C3C50, kOracle, 0},           {All, 0x40862336F49C3C4F, kOracle, 0},
    {All, 0x4086233600000000, kOracle, 0},           {All, 0x40862335FFFFFFFF, kOracle, 0},
    {All, 0x408633C378987900, kOracle, 0},           {All, 0x408633C3789878FF, kOracle, 0},
    {All, 0x4086233100000000, kOracle, 0},           {All, 0x40862330FFFFFFFF, kOracle, 0},
    // Sinh's small-argument splits: the x87 polynomial, the order of the
    // last sum (A53), the near-zero table (A50, A26) and its rows.
    {All, 0x3FA1EB8500000000, kOracle, 0},           {All, 0x3FA1EB84FFFFFFFF, kOracle, 0},
    {All, 0x3FCFACFC00000000, kOracle, 0},           {All, 0x3FCFACFBFFFFFFFF, kOracle, 0},
    {All, 0x3FC0000000000000, kOracle, 0},           {All, 0xBFBFFFFFFFFFFFFF, kOracle, 0},
    {All, 0x3FA0000000000000, kOracle, 0},           {All, 0x3FB7FFFFFFFFFFFF, kOracle, 0},
    {All, 0x3E50000000000000, kOracle, 0},           {All, 0x3F50624DD2F1A9FC, kOracle, 0},
    // Ordinary values.
    {All, 0x3FF0000000000000, kOracle, 0},           {All, 0xC004000000000000, kOracle, 0},
    {All, 0x403E000000000000, kOracle, 0},
};
// clang-format on

TEST(SinhCosh64, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  hyptest::expect_rows(kExports, kRows, std::vector<double>{0.5, -1.25, 3.0, 100.0});
}

TEST(SinhCosh64, SinhKeepsTheSignOfZeroBesideLanesThatLeave) {
  for (int e = 0; e < 3; ++e) {
    const auto r = luxtest::call_unary<double>(kExports[e].name, {-0.0, 1e300, -1e-310, 709.5, -0.0});
    EXPECT_EQ(luxtest::bits(r.out[0]), 0x8000000000000000u) << kExports[e].name;
    EXPECT_EQ(luxtest::bits(r.out[2]), luxtest::bits(-1e-310)) << kExports[e].name;
    EXPECT_EQ(luxtest::bits(r.out[4]), 0x8000000000000000u) << kExports[e].name;
    EXPECT_EQ(r.status, luxWarnOverflow);
  }
}

TEST(SinhCosh64, InPlaceAndTails) {
  const std::vector<double> in = {0.5,  709.5, -0.01, 1e300,  NAN, -710.0, 0.2,  -INFINITY, 708.41,
                                  0.03, 2.0,   -0.1,  710.47, 5.0, 1e-20,  -3.0, 0.125};
  for (const auto& ex : kExports) hyptest::expect_in_place_and_tails(ex.name, in);
}

TEST(SinhCosh64, OverflowingLanesWarnWhereverTheyStand) {
  for (const auto& ex : kExports)
    for (size_t len : {1u, 3u, 4u, 5u, 9u})
      for (size_t at = 0; at < len; ++at) {
        std::vector<double> in(len, 1.5);
        in[at] = -800.0;
        const auto r = luxtest::call_unary<double>(ex.name, in);
        EXPECT_EQ(r.status, luxWarnOverflow) << ex.name << " len " << len << " at " << at;
        EXPECT_NE(r.flags & luxtk::kOverflow, 0u);
        in[at] = INFINITY;  // an infinite argument is not an overflow
        EXPECT_EQ(luxtest::call_unary<double>(ex.name, in).status, luxOk);
      }
}

TEST(Sinh64, Accuracy) { luxtest::expect_family_accuracy("Sinh", 64); }
TEST(Cosh64, Accuracy) { luxtest::expect_family_accuracy("Cosh", 64); }

}  // namespace
