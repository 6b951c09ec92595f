// CdfNorm on binary64 (A53, A50, A26) and binary32 (A24, A21, A11): the
// quoted values, zeros and tiny |x|, the subnormal results of A53 and A50
// down to -38.4854 and A26's flush below -37.5194 without a report, the
// zero and one thresholds with their neighbours, infinities and NaNs;
// statuses and flags (underflow reported for finite x below the zero
// threshold), the last offending lane, lane independence, in-place calls,
// tails, and the MPFR sweeps against erfc(-x/sqrt 2)/2.
#include "../tools/accuracy/erf_regions.h"
#include "erf_cases.h"

namespace {

using erftest::Export;
using erftest::kOracle;
using erftest::Row;
using luxtest::bits;
using luxtest::call_unary;

enum Tier : unsigned { kHa = 1, kLa = 2, kEp = 4, kAll = 7 };

const std::vector<Export<double>> k64 = {{kHa, "luxsCdfNorm_64f_A53", luxsCdfNorm_64f_A53, 1.0},
                                         {kLa, "luxsCdfNorm_64f_A50", luxsCdfNorm_64f_A50, 8.0},
                                         {kEp, "luxsCdfNorm_64f_A26", luxsCdfNorm_64f_A26, 0x1p27}};
const std::vector<Export<float>> k32 = {{kHa, "luxsCdfNorm_32f_A24", luxsCdfNorm_32f_A24, 1.0},
                                        {kLa, "luxsCdfNorm_32f_A21", luxsCdfNorm_32f_A21, 8.0},
                                        {kEp, "luxsCdfNorm_32f_A11", luxsCdfNorm_32f_A11, 0x1p13}};

constexpr uint64_t kHalf64 = 0x3FE0000000000000, kOne64 = 0x3FF0000000000000;

// clang-format off
const std::vector<Row> kRows64 = {
    {kHa | kLa, 0x0000000000000000, kHalf64, 0}, {kHa | kLa, 0x8000000000000000, kHalf64, 0},
    {kHa | kLa, 0x01A56E1FC2F8F359, kHalf64, 0}, {kHa | kLa, 0x81A56E1FC2F8F359, kHalf64, 0},  // +-1e-300
    {kEp, 0x0000000000000000, kOracle, 0},       {kEp, 0x8000000000000000, kOracle, 0},
    // 1 -> 0.8413447460685429, -1 -> 0.15865525393145705, -20 -> 2.7536241186062337e-89.
    {kHa, 0x3FF0000000000000, 0x3FEAEC4BD120D37D, 0}, {kHa, 0xBFF0000000000000, 0x3FC44ED0BB7CB20B, 0},
    {kHa, 0xC034000000000000, 0x2D8C0BD0F1880783, 0},
    {kAll, 0x3FD0000000000000, kOracle, 0},      {kAll, 0xBFCFFFFFFFFFFFFF, kOracle, 0},
    {kAll, 0xC040000000000000, kOracle, 0},      {kAll, 0xC03FFFFFFFFFFFFF, kOracle, 0},
    {kAll, 0x4020000000000000, kOracle, 0},
    // -37.6: subnormal 1.07481124958705e-309 in A53 and A50, +0 in A26, no status.
    {kHa | kLa, 0xC042CCCCCCCCCCCD, kOracle, 0}, {kEp, 0xC042CCCCCCCCCCCD, 0, 0},
    {kEp, 0xC042C27B05BF1A0A, kOracle, 0},       {kEp, 0xC042C27B05BF1A0B, 0, 0},
    // Zero threshold of A53 and A50: -38.485408335567335 is kept, below +0 with 17.
    {kHa | kLa, 0xC0433E21DC3F3BD7, kOracle, 0}, {kHa | kLa, 0xC0433E21DC3F3BD8, 0, 17},
    {kHa | kLa, 0xC0433EB851EB851F, 0, 17},      {kHa | kLa, 0xFFEFFFFFFFFFFFFF, 0, 17},
    {kEp, 0xFFEFFFFFFFFFFFFF, 0, 0},
    {kAll, 0xFFF0000000000000, 0, 0},
    // One threshold: 8.292361075813595 is computed, above it 1 exactly.
    {kAll, 0x402095B059D67C4C, kOracle, 0},      {kAll, 0x402095B059D67C4D, kOne64, 0},
    {kAll, 0x402099999999999A, kOne64, 0},       {kAll, 0x7FF0000000000000, kOne64, 0},
    {kAll, 0x7FF8000000000000, 0x7FF8000000000000, 0},
};

const std::vector<Row> kRows32 = {
    {kAll, 0x00000000, 0x3F000000, 0},  {kAll, 0x80000000, 0x3F000000, 0},
    {kAll, 0x3F800000, kOracle, 0},     {kAll, 0xBF800000, kOracle, 0},
    {kAll, 0x3C800000, kOracle, 0},     {kAll, 0xBC7FFFFF, kOracle, 0},
    {kAll, 0xC1600000, kOracle, 0},     {kAll, 0xC15FFFFF, kOracle, 0},
    // Zero threshold -14.170185089111328: kept; the next float down +0 with 17.
    {kAll, 0xC162B914, kOracle, 0},     {kAll, 0xC162B915, 0, 17},
    {kAll, 0xC1A00000, 0, 17},          {kAll, 0xFF7FFFFF, 0, 17},
    {kAll, 0xFF800000, 0, 0},
    // One threshold 5.41998291015625: computed, then 1.
    {kAll, 0x40AD7080, kOracle, 0},     {kAll, 0x40AD7081, 0x3F800000, 0},
    {kAll, 0x40AD70A4, 0x3F800000, 0},  {kAll, 0x7F800000, 0x3F800000, 0},
    {kAll, 0x7FC00000, 0x7FC00000, 0},
};
// clang-format on

TEST(CdfNorm64, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  erftest::directed_rows<double>(k64, kRows64, luxtk::erf::mpfr_cdfnorm, {0.3, -1.7, 2.5, -20.0}, 4);
}

TEST(CdfNorm32, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  erftest::directed_rows<float>(k32, kRows32, luxtk::erf::mpfr_cdfnorm, {0.3f, -1.7f, 2.5f, -10.0f}, 4);
}

TEST(CdfNorm, LastOffendingLaneWins) {
  for (const auto& ex : k64) {
    const int want = ex.tier == kEp ? 0 : 17;
    EXPECT_EQ(call_unary<double>(ex.name, {1, 2, 3, -40, 5, 6, NAN, -INFINITY, 0}).status, want) << ex.name;
    EXPECT_EQ(call_unary<double>(ex.name, {1, -39, 2, 3, 4, 5, 6, 7, 8}).status, want) << ex.name;
    EXPECT_EQ(call_unary<double>(ex.name, {1, 2, 3, 4, 40, INFINITY, NAN, -INFINITY, 0}).status, 0)
        << ex.name;
  }
  for (const auto& ex : k32) {
    EXPECT_EQ(call_unary<float>(ex.name, {1, 2, 3, -20, 5, 6, NAN, -INFINITY, 0}).status, 17) << ex.name;
    EXPECT_EQ(call_unary<float>(ex.name, {1, 2, 3, 4, 40, INFINITY, NAN, -INFINITY, 0}).status, 0) << ex.name;
  }
}

// The underflow report comes before the block is stored: an in-place call
// still reports and stores the same values.
const std::vector<double> kMixed64 = {0.5,    -38.6, NAN, -2.0, 1e-320,    -37.6, INFINITY,
                                      -1e300, -0.0,  8.3, 0.25, -INFINITY, 3.0};
const std::vector<float> kMixed32 = {0.5f,   -14.5f, NAN,  -2.0f, 1e-40f,    -13.0f, INFINITY,
                                     -1e30f, -0.0f,  5.5f, 0.25f, -INFINITY, 3.0f};

TEST(CdfNorm, LanesIndependentOfTheirNeighbours) {
  erftest::lanes_independent<double>(k64, kMixed64);
  erftest::lanes_independent<float>(k32, kMixed32);
}

TEST(CdfNorm, InPlaceEqualsOutOfPlace) {
  erftest::in_place<double>(k64, kMixed64);
  erftest::in_place<float>(k32, kMixed32);
}

TEST(CdfNorm, TailsOfEveryLength) {
  erftest::tails<double>(k64, kMixed64, [](const Export<double>& ex, double x) {
    return ex.tier != kEp && x < -38.485408335567335 && x > -INFINITY ? 17 : 0;
  });
  erftest::tails<float>(k32, kMixed32, [](const Export<float>&, float x) {
    return x < -14.170185089111328f && x > -INFINITY ? 17 : 0;
  });
}

// Phi(x) + Phi(-x) = 1 within the tiers' error, and the 32f A11 and A21
// tiers share one kernel.
TEST(CdfNorm, ReflectionAndSharedKernel) {
  std::vector<double> xs, neg;
  for (double x = 0.001; x < 8.0; x *= 1.05) xs.push_back(x), neg.push_back(-x);
  const auto p = call_unary<double>("luxsCdfNorm_64f_A53", xs),
             n = call_unary<double>("luxsCdfNorm_64f_A53", neg);
  for (size_t i = 0; i < xs.size(); ++i) EXPECT_NEAR(p.out[i] + n.out[i], 1.0, 0x1p-52) << xs[i];
  std::vector<float> fs;
  for (float x = -14.5f; x < 6.0f; x += 0.0137f) fs.push_back(x);
  const auto a = call_unary<float>("luxsCdfNorm_32f_A11", fs),
             b = call_unary<float>("luxsCdfNorm_32f_A21", fs);
  for (size_t i = 0; i < fs.size(); ++i) EXPECT_EQ(bits(a.out[i]), bits(b.out[i])) << fs[i];
}

// A53 and A50 through the subnormal results, where the shared sweep stops
// (A26 flushes them to +0): within their bounds in subnormal ulps.
TEST(CdfNorm64, SubnormalResultsWithinBounds) {
  std::vector<double> xs;
  for (double x = -38.4854; x < -37.5; x += 0.00731) xs.push_back(x);
  for (const auto& ex : k64) {
    if (ex.tier == kEp) continue;
    const auto r = call_unary<double>(ex.name, xs);
    for (size_t i = 0; i < xs.size(); ++i)
      EXPECT_LE(erftest::ulps(luxtk::erf::mpfr_cdfnorm, xs[i], r.out[i]), ex.bound)
          << ex.name << " x = " << luxtk::hexfloat(xs[i]);
    EXPECT_EQ(r.status, 0) << ex.name;
  }
}

TEST(CdfNorm64, Accuracy) { luxtest::expect_family_accuracy("CdfNorm", 64); }
TEST(CdfNorm32, Accuracy) { luxtest::expect_family_accuracy("CdfNorm", 32); }

}  // namespace
