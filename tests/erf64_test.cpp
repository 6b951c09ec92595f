// Erf and Erfc on binary64 (A53, A50, A26): directed values per lane class
// (zeros, the tiny-argument forms of A53, row ends, the last rows, the
// underflow strip of Erfc and its thresholds, infinities, NaNs kept or
// quieted), statuses and flags, the last offending lane, lane independence,
// in-place calls, tails, Erf's oddness bit for bit, and the MPFR sweeps.
#include "erf_cases.h"

namespace {

using erftest::Export;
using erftest::kOracle;
using erftest::Row;
using luxtest::bits;
using luxtest::call_unary;
using luxtest::f64;

enum Tier : unsigned { k53 = 1, k50 = 2, k26 = 4, kAll = 7 };

const std::vector<Export<double>> kErf = {{k53, "luxsErf_64f_A53", luxsErf_64f_A53, 1.0},
                                          {k50, "luxsErf_64f_A50", luxsErf_64f_A50, 8.0},
                                          {k26, "luxsErf_64f_A26", luxsErf_64f_A26, 0x1p27}};
const std::vector<Export<double>> kErfc = {{k53, "luxsErfc_64f_A53", luxsErfc_64f_A53, 1.0},
                                           {k50, "luxsErfc_64f_A50", luxsErfc_64f_A50, 8.0},
                                           {k26, "luxsErfc_64f_A26", luxsErfc_64f_A26, 0x1p27}};

constexpr uint64_t kOne = 0x3FF0000000000000, kMinusOne = 0xBFF0000000000000, kTwo = 0x4000000000000000;

// clang-format off
const std::vector<Row> kErfRows = {
    {kAll, 0x0000000000000000, 0x0000000000000000, 0}, {kAll, 0x8000000000000000, 0x8000000000000000, 0},
    {kAll, 0x7FF0000000000000, kOne, 0},               {kAll, 0xFFF0000000000000, kMinusOne, 0},
    // NaNs pass unchanged, a signalling one stays signalling.
    {kAll, 0x7FF8000000000000, 0x7FF8000000000000, 0}, {kAll, 0x7FF4000000000001, 0x7FF4000000000001, 0},
    {kAll, 0xFFF0000000000001, 0xFFF0000000000001, 0}, {kAll, 0x7FF00000FFFFFFFF, 0x7FF00000FFFFFFFF, 0},
    // A53's tiny forms: plain product at 2^-1074, split at 2^-1030, scaled
    // at 2^-1022, the row-0 polynomial from 2^-1015; others: c1*x.
    {k53, 0x0000000000000001, kOracle, 0},             {k53, 0x0000100000000000, kOracle, 0},
    {k53, 0x0010000000000000, kOracle, 0},             {k53, 0x0080000000000000, kOracle, 0},
    {kAll, 0x800FFFFFFFFFFFFF, kOracle, 0},            {kAll, 0x007FFFFFFFFFFFFF, kOracle, 0},
    // Row ends and the last rows: below 1 up to 5.92158719579450, then 1.
    {kAll, 0x3FC0000000000000, kOracle, 0},            {kAll, 0x3FBFFFFFFFFFFFFF, kOracle, 0},
    {kAll, 0x3FF0000000000000, kOracle, 0},            {kAll, 0xBFEFFFFFFFFFFFFF, kOracle, 0},
    {kAll, 0x4010000000000000, kOracle, 0},            {kAll, 0x400FFFFFFFFFFFFF, kOracle, 0},
    {k53, 0x4017AFB48DC96626, 0x3FEFFFFFFFFFFFFF, 0},   {kAll, 0x4018000000000000, kOne, 0},
    {kAll, 0xC018000000000000, kMinusOne, 0},          {kAll, 0x7FEFFFFFFFFFFFFF, kOne, 0},
};

const std::vector<Row> kErfcRows = {
    {kAll, 0x0000000000000000, kOne, 0},               {kAll, 0x8000000000000000, kOne, 0},
    {kAll, 0x7FF0000000000000, 0, 0},                  {kAll, 0xFFF0000000000000, kTwo, 0},
    {kAll, 0x0000000000000001, kOne, 0},               {kAll, 0x3C7FFFFFFFFFFFFF, kOne, 0},
    // NaNs: A53 quiets (x*x), A50 and A26 keep the input.
    {k53, 0x7FF8000000000000, 0x7FF8000000000000, 0},  {k53, 0x7FF4000000000000, 0x7FFC000000000000, 0},
    {k50 | k26, 0x7FF4000000000000, 0x7FF4000000000000, 0},
    {k50 | k26, 0xFFF0000000000001, 0xFFF0000000000001, 0},
    // Row ends, both signs.
    {kAll, 0x3FD0000000000000, kOracle, 0},            {kAll, 0x3FCFFFFFFFFFFFFF, kOracle, 0},
    {kAll, 0xBFD0000000000000, kOracle, 0},            {kAll, 0x4038000000000000, kOracle, 0},
    {kAll, 0xC000000000000000, kOracle, 0},            {kAll, 0x4014000000000000, kOracle, 0},
    // The underflow strip: from 26.543258454250978 (exclusive) results are
    // subnormal and report 17; the double below is normal and silent.
    {kAll, 0x403A8B12FC6E4891, kOracle, 0},            {kAll, 0x403A8B12FC6E4892, kOracle, 17},
    {kAll, 0x403A8B1200000000, kOracle, 0},            {kAll, 0x403AC00000000000, kOracle, 17},
    {kAll, 0x403B39DC41E48BFC, kOracle, 17},
    // From 27.226017111108366 the result is +0, still reporting; -27.3 gives 2.
    {kAll, 0x403B39DC41E48BFD, 0, 17},                 {kAll, 0x403B4CCCCCCCCCCD, 0, 17},
    {kAll, 0x7FEFFFFFFFFFFFFF, 0, 17},                 {kAll, 0xC03B4CCCCCCCCCCD, kTwo, 0},
    {kAll, 0xC03A8B12FC6E4892, kTwo, 0},               {kAll, 0xFFEFFFFFFFFFFFFF, kTwo, 0},
};
// clang-format on

int mpfr_erfc_oracle(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) { return mpfr_erfc(r, x, rnd); }

TEST(Erf64, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  erftest::directed_rows<double>(kErf, kErfRows, mpfr_erf, {0.3, -1.7, 2.5, 4.75}, 4);
}

TEST(Erfc64, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  erftest::directed_rows<double>(kErfc, kErfcRows, mpfr_erfc_oracle, {0.3, -1.7, 2.5, 20.0}, 4);
}

TEST(Erf64, OddBitForBit) {
  std::vector<double> xs;
  for (double x = 0x1p-1060; x < 7.0; x *= 1.37) xs.push_back(x);
  std::vector<double> neg;
  for (double x : xs) neg.push_back(-x);
  for (const auto& ex : kErf) {
    const auto p = call_unary<double>(ex.name, xs), n = call_unary<double>(ex.name, neg);
    for (size_t i = 0; i < xs.size(); ++i)
      EXPECT_EQ(bits(n.out[i]), bits(p.out[i]) ^ 0x8000000000000000ull) << ex.name << " x = " << xs[i];
  }
}

TEST(Erfc64, LastOffendingLaneWins) {
  const double under = 26.6;
  for (const auto& ex : kErfc) {
    const auto a = call_unary<double>(ex.name, {1, 2, 3, under, 5, 6, NAN, -30});
    EXPECT_EQ(a.status, 17) << ex.name;
    const auto b = call_unary<double>(ex.name, {under, 1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(b.status, 17) << ex.name;
    const auto c = call_unary<double>(ex.name, {1, 2, 3, 4, -under, INFINITY, NAN, -INFINITY, 0});
    EXPECT_EQ(c.status, 0) << ex.name;
  }
}

const std::vector<double> kMixed = {0.5,  26.6, NAN,  -2.0, 1e-320, 6.5, INFINITY,
                                    30.0, -0.0, 27.2, 0.25, -27.3,  3.0};

TEST(ErfErfc64, LanesIndependentOfTheirNeighbours) {
  erftest::lanes_independent<double>(kErf, kMixed);
  erftest::lanes_independent<double>(kErfc, kMixed);
}

TEST(ErfErfc64, InPlaceEqualsOutOfPlace) {
  erftest::in_place<double>(kErf, kMixed);
  erftest::in_place<double>(kErfc, kMixed);
}

TEST(ErfErfc64, TailsOfEveryLength) {
  erftest::tails<double>(kErf, kMixed, [](const Export<double>&, double) { return 0; });
  erftest::tails<double>(kErfc, kMixed, [](const Export<double>&, double x) {
    return x > 26.543258454250978 && x < INFINITY ? 17 : 0;
  });
}

// Above 26.54 A53 rounds the scaled product once: deep in the strip, where
// the kernel's own error is far below a subnormal ulp, the result is the
// correctly rounded one unless erfc lies within 2^-20 ulp of a midpoint.
TEST(Erfc64, SubnormalResultsRoundOnce) {
  mpfr_t e, m;
  mpfr_inits2(luxtk::kOraclePrecision, e, m, (mpfr_ptr)0);
  std::vector<double> xs;
  for (double x = 26.8; x < 27.22; x += 0.000731) xs.push_back(x);
  const auto r = call_unary<double>("luxsErfc_64f_A53", xs);
  int checked = 0;
  for (size_t i = 0; i < xs.size(); ++i) {
    mpfr_set_d(e, xs[i], MPFR_RNDN);
    mpfr_erfc(e, e, MPFR_RNDN);
    mpfr_mul_2si(m, e, 1074, MPFR_RNDN);
    mpfr_frac(m, m, MPFR_RNDN);
    if (std::fabs(mpfr_get_d(m, MPFR_RNDN) - 0.5) < 0x1p-20) continue;
    ++checked;
    EXPECT_EQ(bits(r.out[i]), bits(luxtk::round_to_format(e, 64))) << "x = " << luxtk::hexfloat(xs[i]);
  }
  EXPECT_GT(checked, 500);
  EXPECT_EQ(r.status, 17);
  mpfr_clears(e, m, (mpfr_ptr)0);
}

// Erfc's 64f A26 and A50 are one tier in two names.
TEST(Erfc64, EpEqualsLa) {
  std::vector<double> xs;
  for (double x = -6.0; x < 27.5; x += 0.01371) xs.push_back(x);
  xs.insert(xs.end(), kMixed.begin(), kMixed.end());
  const auto a = call_unary<double>("luxsErfc_64f_A26", xs), b = call_unary<double>("luxsErfc_64f_A50", xs);
  for (size_t i = 0; i < xs.size(); ++i) EXPECT_EQ(bits(a.out[i]), bits(b.out[i])) << xs[i];
  EXPECT_EQ(a.status, b.status);
}

TEST(Erf64, Accuracy) { luxtest::expect_family_accuracy("Erf", 64); }
TEST(Erfc64, Accuracy) { luxtest::expect_family_accuracy("Erfc", 64); }

}  // namespace
