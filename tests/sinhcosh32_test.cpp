// Sinh and Cosh on binary32 (A24, A21, A11): the tables against their rules,
// the overflow threshold against MPFR, directed rows per lane class at every
// position of a block and a tail, the masked paths of A21, in-place calls,
// and the accuracy sweeps.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <vector>

#include "gen/gen_common.h"
#include "hyperbolic_cases.h"

namespace {

using hyptest::kOracle;
using luxtest::bits;
using luxtest::f32;

const uint32_t kLa[64][2] = {
#include "hyperbolic/ssinhcosh_la_table.inc"
};
const uint32_t kHa[64][4] = {
// Mlo, Plo, Mhi, Phi
#include "hyperbolic/scosh_ha_table.inc"
};

double pow2(long j, long n) {
  mpfr_t v;
  mpfr_init2(v, 256);
  mpfr_set_si(v, j, MPFR_RNDN);
  mpfr_div_si(v, v, n, MPFR_RNDN);
  mpfr_exp2(v, v, MPFR_RNDN);
  const double d = mpfr_get_d(v, MPFR_RNDN);
  mpfr_clear(v);
  return d;
}

TEST(SinhCosh32Tables, FollowTheirRules) {
  for (int j = 0; j < 64; ++j) {
    EXPECT_EQ(f32(kLa[j][0]), float(pow2(j, 64))) << j;
    EXPECT_EQ(f32(kLa[j][1]), float(pow2(-j, 64))) << j;
    // Phi: 2^(j/64) truncated to a multiple of 2^-17; Plo the rest, rounded.
    const double p = pow2(j, 64), m = pow2(-j, 64);
    const double phi = std::floor(p * 0x1p17) / 0x1p17;
    EXPECT_EQ(double(f32(kHa[j][3])), phi) << j;
    EXPECT_EQ(f32(kHa[j][1]), float(p - phi)) << j;
    // Mhi: Phi of row 64 - j, halved (1 in row 0); Mlo the rest.
    const double mhi = j ? double(f32(kHa[64 - j][3])) / 2 : 1.0;
    EXPECT_EQ(double(f32(kHa[j][2])), mhi) << j;
    EXPECT_EQ(f32(kHa[j][0]), float(m - mhi)) << j;
  }
}

TEST(SinhCosh32, OverflowThresholdIsExact) {
  for (auto f : {mpfr_sinh, mpfr_cosh}) {
    EXPECT_TRUE(std::isfinite(hyptest::rounded(f, f32(0x42B2D4FC))));
    EXPECT_TRUE(std::isinf(hyptest::rounded(f, f32(0x42B2D4FD))));
  }
}

const hyptest::Export kExports[] = {
    {"luxsSinh_32f_A24", mpfr_sinh, 1.0},    {"luxsSinh_32f_A21", mpfr_sinh, 8.0},
    {"luxsSinh_32f_A11", mpfr_sinh, 0x1p13}, {"luxsCosh_32f_A24", mpfr_cosh, 1.0},
    {"luxsCosh_32f_A21", mpfr_cosh, 8.0},    {"luxsCosh_32f_A11", mpfr_cosh, 0x1p13},
};
enum : unsigned { S = 7, C = 56, All = 63 };

constexpr uint32_t kOne = 0x3F800000, kInf = 0x7F800000, kNegInf = 0xFF800000;

// clang-format off
const hyptest::Row<float> kRows[] = {
    // Zeros and denormals: sinh keeps x, cosh is exactly 1.
    {S, 0x00000000, 0x00000000, 0},  {S, 0x80000000, 0x80000000, 0},
    {S, 0x00000001, 0x00000001, 0},  {S, 0x807FFFFF, 0x807FFFFF, 0},
    {C, 0x00000000, kOne, 0},        {C, 0x80000000, kOne, 0},
    {C, 0x00000001, kOne, 0},        {C, 0x39000000, kOne, 0},
    // Infinities, no status; NaNs quieted, sinh keeps the sign, cosh clears it.
    {All, kInf, kInf, 0},            {S, kNegInf, kNegInf, 0},       {C, kNegInf, kInf, 0},
    {S, 0x7FA00000, 0x7FE00000, 0},  {S, 0xFFC00123, 0xFFC00123, 0},
    {C, 0x7FA00000, 0x7FE00000, 0},  {C, 0xFFC00123, 0x7FC00123, 0},
    // Overflow from 89.4159927368164; the float below is finite.
    {All, 0x42B2D4FD, kInf, 12},     {S, 0xC2B2D4FD, kNegInf, 12},   {C, 0xC2B2D4FD, kInf, 12},
    {All, 0x7F7FFFFF, kInf, 12},     {All, 0x42B2D4FC, kOracle, 0},  {All, 0xC2B2D4FC, kOracle, 0},
    // The top zones (A24 from 88.0242691040039, A21 and A11 from
    // 89.41056060791016), the cut of M at 16.
    {All, 0x42B00C6D, kOracle, 0},   {All, 0x42B00C6E, kOracle, 0},  {All, 0x42B10000, kOracle, 0},
    {All, 0x42B2D235, kOracle, 0},   {All, 0x42B2D236, kOracle, 0},  {All, 0xC2B2D300, kOracle, 0},
    {All, 0x41800000, kOracle, 0},   {All, 0x417FFFFF, kOracle, 0},
    // Sinh A21's polynomial below 0.2160000056028366.
    {All, 0x3E5D2F1B, kOracle, 0},   {All, 0x3E5D2F1A, kOracle, 0},  {All, 0xBD000000, kOracle, 0},
    {All, 0x3B000000, kOracle, 0},
    // Ordinary values.
    {All, 0x3F800000, kOracle, 0},   {All, 0xC0200000, kOracle, 0},  {All, 0x41F00000, kOracle, 0},
};
// clang-format on

TEST(SinhCosh32, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  hyptest::expect_rows(kExports, kRows, std::vector<float>{0.5f, -1.25f, 3.0f, 20.0f});
}

// A21 blends its small-argument polynomial into the block, or runs it alone
// when every lane is small; A11 blocks are 8 lanes in the driver's eyes but
// the values are per lane all the same.
TEST(SinhCosh32, SmallAndLargeLanesMixed) {
  const std::vector<float> in = {0.1f, 0.3f,  -0.05f, 89.0f, 0.2f,  0.01f, -0.15f, 1e-30f,
                                 1.0f, 0.21f, 0.22f,  0.0f,  -0.0f, 89.4f, 100.0f, 0.25f};
  for (const auto& ex : kExports) {
    const auto r = luxtest::call_unary<float>(ex.name, in);
    for (size_t i = 0; i < in.size(); ++i) {
      EXPECT_EQ(bits(r.out[i]), bits(luxtest::call_unary<float>(ex.name, {in[i]}).out[0]))
          << ex.name << " " << i;
      if (std::fabs(in[i]) < 89.5f) {
        EXPECT_LE(hyptest::ulps(ex, in[i], r.out[i], 32), ex.bound) << ex.name << " " << in[i];
      }
    }
    EXPECT_EQ(r.status, luxWarnOverflow);
  }
}

TEST(SinhCosh32, InPlaceAndTails) {
  const std::vector<float> in = {0.5f,  89.0f, -0.01f, 1e30f,   NAN,  -89.41f, 0.2f,  -INFINITY, 88.5f,
                                 0.03f, 2.0f,  -0.1f,  89.416f, 5.0f, 1e-20f,  -3.0f, 0.125f};
  for (const auto& ex : kExports) hyptest::expect_in_place_and_tails(ex.name, in);
}

TEST(SinhCosh32, OverflowingLanesWarnWhereverTheyStand) {
  for (const auto& ex : kExports)
    for (size_t len : {1u, 3u, 4u, 5u, 9u, 13u})
      for (size_t at = 0; at < len; ++at) {
        std::vector<float> in(len, 1.5f);
        in[at] = -100.0f;
        const auto r = luxtest::call_unary<float>(ex.name, in);
        EXPECT_EQ(r.status, luxWarnOverflow) << ex.name << " len " << len << " at " << at;
        EXPECT_NE(r.flags & luxtk::kOverflow, 0u);
        in[at] = -INFINITY;
        EXPECT_EQ(luxtest::call_unary<float>(ex.name, in).status, luxOk);
      }
}

TEST(Sinh32, Accuracy) { luxtest::expect_family_accuracy("Sinh", 32); }
TEST(Cosh32, Accuracy) { luxtest::expect_family_accuracy("Cosh", 32); }

}  // namespace
