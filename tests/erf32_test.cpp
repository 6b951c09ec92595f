// Erf and Erfc on binary32 (A24, A21, A11): directed values per lane class
// (zeros, subnormals, row ends, the cut-offs of A11 at 3 and of the tables
// at 4, the underflow strip of Erfc from 9.19455 and its zero and two
// points, infinities, NaNs kept or quieted), statuses and flags, the last
// offending lane, lane independence, in-place calls, tails, Erf's oddness
// bit for bit, and the MPFR sweeps.
#include "erf_cases.h"

namespace {

using erftest::Export;
using erftest::kOracle;
using erftest::Row;
using luxtest::bits;
using luxtest::call_unary;

enum Tier : unsigned { k24 = 1, k21 = 2, k11 = 4, kAll = 7 };

const std::vector<Export<float>> kErf = {{k24, "luxsErf_32f_A24", luxsErf_32f_A24, 1.0},
                                         {k21, "luxsErf_32f_A21", luxsErf_32f_A21, 8.0},
                                         {k11, "luxsErf_32f_A11", luxsErf_32f_A11, 0x1p13}};
const std::vector<Export<float>> kErfc = {{k24, "luxsErfc_32f_A24", luxsErfc_32f_A24, 1.0},
                                          {k21, "luxsErfc_32f_A21", luxsErfc_32f_A21, 8.0},
                                          {k11, "luxsErfc_32f_A11", luxsErfc_32f_A11, 0x1p13}};

constexpr uint64_t kOne = 0x3F800000, kMinusOne = 0xBF800000, kTwo = 0x40000000;

// clang-format off
const std::vector<Row> kErfRows = {
    {kAll, 0x00000000, 0x00000000, 0}, {kAll, 0x80000000, 0x80000000, 0},
    {kAll, 0x7F800000, kOne, 0},       {kAll, 0xFF800000, kMinusOne, 0},
    // NaNs: A24 and A21 widen and narrow (quiet), A11 goes through p*x.
    {kAll, 0x7FC00000, 0x7FC00000, 0}, {k24 | k21, 0x7FA00000, 0x7FE00000, 0},
    {kAll, 0x00000001, kOracle, 0},    {kAll, 0x807FFFFF, kOracle, 0},
    {kAll, 0x3E000000, kOracle, 0},    {kAll, 0x3DFFFFFF, kOracle, 0},
    {kAll, 0x3D000000, kOracle, 0},    {kAll, 0x3CFFFFFF, kOracle, 0},
    // A11: 3.0 stays on the polynomial, the next float is 1.
    {kAll, 0x40400000, kOracle, 0},    {k11, 0x40400001, kOne, 0},
    {k11, 0xC0400001, kMinusOne, 0},   {k24 | k21, 0x407FFFFF, kOracle, 0},
    {kAll, 0x40800000, kOne, 0},       {kAll, 0x7F7FFFFF, kOne, 0},
};

const std::vector<Row> kErfcRows = {
    {kAll, 0x00000000, kOne, 0},       {kAll, 0x80000000, kOne, 0},
    {kAll, 0x7F800000, 0, 0},          {kAll, 0xFF800000, kTwo, 0},
    // NaNs: A24 and A21 quiet (x*2), A11 keeps the input.
    {k24 | k21, 0x7FA00000, 0x7FE00000, 0}, {k11, 0x7FA00000, 0x7FA00000, 0},
    {kAll, 0xFFC00001, 0xFFC00001, 0},
    // A11's single polynomial is 2.1e-4 low near the origin (within its tier).
    {k24 | k21, 0x00000001, kOne, 0},  {k24 | k21, 0x32000000, kOne, 0},
    {k11, 0x00000001, kOracle, 0},     {k11, 0x32000000, kOracle, 0},
    {kAll, 0x3E800000, kOracle, 0},    {kAll, 0x3E7FFFFF, kOracle, 0},
    {kAll, 0xBF800000, kOracle, 0},    {kAll, 0x40A00000, kOracle, 0},
    // Subnormal strip from 9.194549560546875, reporting 17; the float below
    // is normal.  Zero from 10.054195404052734; 2 from -3.8325066566467285.
    {kAll, 0x41131CDF, kOracle, 0},    {kAll, 0x41131CE0, kOracle, 17},
    {kAll, 0x41133333, kOracle, 17},   {kAll, 0x4120DDFB, kOracle, 17},
    {k24 | k21, 0x4120DDFC, 0, 17},    {k11, 0x4120DDFC, kOracle, 17},
    {kAll, 0x4120DDFD, 0, 17},         {kAll, 0x7F7FFFFF, 0, 17},
    {kAll, 0xC07547CA, kTwo, 0},       {kAll, 0xC07547C9, kOracle, 0},
    {kAll, 0xFF7FFFFF, kTwo, 0},
};
// clang-format on

int mpfr_erfc_oracle(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) { return mpfr_erfc(r, x, rnd); }

TEST(Erf32, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  erftest::directed_rows<float>(kErf, kErfRows, mpfr_erf, {0.3f, -1.7f, 2.5f, 0.01f, 1.1f, -3.5f, 0.7f, 2.0f},
                                8);
}

TEST(Erfc32, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  erftest::directed_rows<float>(kErfc, kErfcRows, mpfr_erfc_oracle,
                                {0.3f, -1.7f, 2.5f, 8.0f, 1.1f, -0.5f, 0.7f, 2.0f}, 8);
}

TEST(Erf32, OddBitForBit) {
  std::vector<float> xs;
  for (float x = 0x1p-140f; x < 5.0f; x *= 1.13f) xs.push_back(x);
  std::vector<float> neg;
  for (float x : xs) neg.push_back(-x);
  for (const auto& ex : kErf) {
    const auto p = call_unary<float>(ex.name, xs), n = call_unary<float>(ex.name, neg);
    for (size_t i = 0; i < xs.size(); ++i)
      EXPECT_EQ(bits(n.out[i]), bits(p.out[i]) ^ 0x80000000u) << ex.name << " x = " << xs[i];
  }
}

TEST(Erfc32, LastOffendingLaneWins) {
  const float under = 9.5f;
  for (const auto& ex : kErfc) {
    EXPECT_EQ(call_unary<float>(ex.name, {1, 2, 3, under, 5, 6, NAN, -30, 0}).status, 17) << ex.name;
    EXPECT_EQ(call_unary<float>(ex.name, {under, 1, 2, 3, 4, 5, 6, 7, 8, 1}).status, 17) << ex.name;
    EXPECT_EQ(call_unary<float>(ex.name, {1, 2, 3, 4, -under, INFINITY, NAN, -INFINITY, 0}).status, 0)
        << ex.name;
  }
}

const std::vector<float> kMixed = {0.5f,  9.5f,  NAN,   -2.0f, 1e-40f, 4.5f,   INFINITY, 30.0f, -0.0f,
                                   10.0f, 0.25f, -4.0f, 3.0f,  3.25f,  -1e30f, 9.2f,     0.01f};

TEST(ErfErfc32, LanesIndependentOfTheirNeighbours) {
  erftest::lanes_independent<float>(kErf, kMixed);
  erftest::lanes_independent<float>(kErfc, kMixed);
}

TEST(ErfErfc32, InPlaceEqualsOutOfPlace) {
  erftest::in_place<float>(kErf, kMixed);
  erftest::in_place<float>(kErfc, kMixed);
}

TEST(ErfErfc32, TailsOfEveryLength) {
  erftest::tails<float>(kErf, kMixed, [](const Export<float>&, float) { return 0; });
  erftest::tails<float>(kErfc, kMixed, [](const Export<float>&, float x) {
    return x >= 9.194549560546875f && x < INFINITY ? 17 : 0;
  });
}

TEST(Erf32, Accuracy) { luxtest::expect_family_accuracy("Erf", 32); }
TEST(Erfc32, Accuracy) { luxtest::expect_family_accuracy("Erfc", 32); }

}  // namespace
