// Asinh, Acosh and Atanh on binary64: the tables against their rules and the
// rows quoted for them, special values per tier as data rows (stored bits,
// status, flag), the last offending lane winning, lane independence and
// in-place calls, the range edges against MPFR, and the MPFR sweeps.
#include <mpfr.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "gen/invhyp_rules.h"
#include "invhyp_lanes.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using invhyptest::Case;
using invhyptest::run;
using luxtest::bits;

// ---------------------------------------------------------------------------
// Tables.

const invhypgen::Row kLn256[] = {

#include "hyperbolic/invhyp_ln256_table.inc"
};
const invhypgen::Row kAsinhLa[] = {
#include "hyperbolic/invhyp_asinh_la_table.inc"
};

template <size_t N>
void expect_table_is_rule(const char* name, const invhypgen::Row (&rows)[N]) {
  const invhypgen::TableInfo* info = invhypgen::find_table(name);
  ASSERT_NE(info, nullptr);
  ASSERT_EQ(size_t(info->rows), N);
  const std::vector<invhypgen::Row> rule = invhypgen::table_of(*info);
  for (size_t i = 0; i < N; ++i) EXPECT_EQ(rows[i], rule[i]) << name << " row " << i;
}

TEST(InvHypTables64, GeneratedFilesFollowTheirRules) {
  expect_table_is_rule("ln256", kLn256);
  expect_table_is_rule("asinh_la", kAsinhLa);
}

TEST(InvHypTables64, QuotedRows) {
  EXPECT_EQ(kLn256[0], (invhypgen::Row{0, 0, 0x3FF0000000000000}));
  EXPECT_EQ(kLn256[1], (invhypgen::Row{0x3F6FF00AA2B10BC0, 0x3C02821AD5A6D353, 0x3FEFE01FE01FE020}));
  EXPECT_EQ(kLn256[255], (invhypgen::Row{0x3FE61E3EFDA46466, 0x3C92F246C090828E, 0x3FE0080402010080}));
  EXPECT_EQ(kAsinhLa[1], (invhypgen::Row{0x3FEF820000000000, 0x3F8FBEA8B13C0000, 0x3CDEC927B17E4E13}));
  EXPECT_EQ(kAsinhLa[64], (invhypgen::Row{0x3FE0000000000000, invhypgen::kLn2Hi, invhypgen::kLn2Lo}));
}

TEST(InvHypTables64, AsinhRowsMakeTheHeadProductsExact) {
  for (const invhypgen::Row& r : kAsinhLa) {
    const double rcp = luxtest::f64(r[0]);
    EXPECT_EQ(std::ldexp(rcp, 12), std::nearbyint(std::ldexp(rcp, 12)));  // 12 bits: m_hi * rcp exact
    EXPECT_EQ(r[1] & 0x7FF, 0u);                                          // e * LN2_HI + logHi exact
  }
}

// ---------------------------------------------------------------------------
// Special values.

constexpr uint64_t kZero = 0, kNegZero = 0x8000000000000000, kInf = 0x7FF0000000000000,
                   kNegInf = 0xFFF0000000000000, kOne = 0x3FF0000000000000, kNegOne = 0xBFF0000000000000,
                   kHalf = 0x3FE0000000000000, kTwo = 0x4000000000000000, kNegTwo = 0xC000000000000000,
                   kQNaN = 0x7FF8000000000123, kNegQNaN = 0xFFF8000000000123, kSNaN = 0x7FF0000000000123,
                   kTiny = 1, kNegTiny = 0x8000000000000001, kX87NaN = 0x7FFFFFFFFFFFFFFF,
                   kNegX87NaN = 0xFFFFFFFFFFFFFFFF, kDefaultNaN = 0xFFF8000000000000;
constexpr int kDom = luxWarnDomain, kSing = luxWarnSingularity;

const char* const kAsinh[] = {"luxsAsinh_64f_A53", "luxsAsinh_64f_A50", "luxsAsinh_64f_A26"};
const char* const kAcosh[] = {"luxsAcosh_64f_A53", "luxsAcosh_64f_A50", "luxsAcosh_64f_A26"};
const char* const kAtanh[] = {"luxsAtanh_64f_A53", "luxsAtanh_64f_A50", "luxsAtanh_64f_A26"};

TEST(InvHyp64, AsinhSpecialValues) {
  std::vector<Case> cases;
  for (const char* f : kAsinh) {
    // Odd: the sign of zero kept; a signalling NaN quieted by the x87.
    for (const Case& c : std::vector<Case>{{f, kZero, kZero, 0},
                                           {f, kNegZero, kNegZero, 0},
                                           {f, kInf, kInf, 0},
                                           {f, kNegInf, kNegInf, 0},
                                           {f, kQNaN, kQNaN, 0},
                                           {f, kNegQNaN, kNegQNaN, 0},
                                           {f, kSNaN, kQNaN, 0},
                                           {f, kTiny, kTiny, 0},
                                           {f, kNegTiny, kNegTiny, 0}})
      cases.push_back(c);
  }
  invhyptest::expect_cases(cases, 0x3FF8000000000000, 0);
}

TEST(InvHyp64, AcoshSpecialValues) {
  std::vector<Case> cases;
  for (const char* f : kAcosh) {
    const bool top = std::string(f).ends_with("A53");
    const uint64_t nan = top ? kX87NaN : kDefaultNaN;
    for (const Case& c : std::vector<Case>{{f, kOne, kZero, 0},
                                           {f, kHalf, nan, kDom},
                                           {f, kZero, nan, kDom},
                                           {f, kNegZero, nan, kDom},
                                           {f, kNegOne, nan, kDom},
                                           {f, kNegInf, nan, kDom},
                                           {f, 0x3FEFFFFFFFFFFFFF, nan, kDom},
                                           {f, kInf, kInf, 0},
                                           {f, kQNaN, kQNaN, 0},
                                           {f, kNegQNaN, top ? kX87NaN : kNegQNaN, 0},
                                           {f, kSNaN, kQNaN, 0}})
      cases.push_back(c);
  }
  invhyptest::expect_cases(cases, 0x3FF8000000000000, 0);
}

TEST(InvHyp64, AtanhSpecialValues) {
  std::vector<Case> cases;
  for (const char* f : kAtanh) {
    const bool top = std::string(f).ends_with("A53");
    for (const Case& c : std::vector<Case>{{f, kZero, kZero, 0},
                                           {f, kNegZero, kNegZero, 0},
                                           {f, kTiny, kTiny, 0},
                                           {f, kNegTiny, kNegTiny, 0},
                                           {f, kOne, kInf, kSing},
                                           {f, kNegOne, kNegInf, kSing},
                                           {f, 0x3FF0000000000001, top ? kX87NaN : kDefaultNaN, kDom},
                                           {f, kTwo, top ? kX87NaN : kDefaultNaN, kDom},
                                           {f, kNegTwo, top ? kNegX87NaN : kDefaultNaN, kDom},
                                           {f, kInf, top ? kX87NaN : kDefaultNaN, kDom},
                                           {f, kNegInf, top ? kNegX87NaN : kDefaultNaN, kDom},
                                           {f, kQNaN, top ? kX87NaN : kQNaN, 0},
                                           {f, kNegQNaN, top ? kNegX87NaN : kNegQNaN, 0},
                                           {f, kSNaN, top ? kX87NaN : kSNaN, 0}})
      cases.push_back(c);
  }
  invhyptest::expect_cases(cases, 0x3FD8000000000000, 0);
}

// ---------------------------------------------------------------------------
// Statuses over an array.

TEST(InvHyp64, LastOffendingLaneWins) {
  invhyptest::expect_last_offending_lane_wins(kAtanh, kAcosh,
                                              {kHalf, kOne, kTwo, kNegOne, kNegTwo, kQNaN, kTwo});
}

// ---------------------------------------------------------------------------
// Lanes: a lane's bits do not depend on its neighbours or on the length of
// the call, and in-place calls give the same bits.  Atanh A53 shares one
// division between the two lanes of a pair, so there only lengths and
// in-place calls are compared.

std::vector<uint64_t> mix(const std::vector<double>& v) {
  std::vector<uint64_t> out;
  for (double d : v) out.push_back(bits(d));
  return out;
}

TEST(InvHyp64, LanesIndependentAndInPlace) {
  const std::vector<uint64_t> asinh =
      mix({0.3, -0.7, 1.5, 2.0, 1e-300, 0.5625, -0.5624, 1e160, -DBL_MAX, 0x1p-9, -0x1.fffffffffffffp-10, 3.0,
           INFINITY, NAN, 40.0, 0.0, -1e154, 7.5, 0.1});
  const std::vector<uint64_t> acosh =
      mix({1.5, 2.0, 1.0, 1.13001, 1.13, 0x1p512, 0x1.fffffffffffffp511, 0.5, 3.0, 1.0004882812499998,
           1.00048828125, DBL_MAX, INFINITY, -NAN, 9.0, -1.0, 1.2, 1e300, 1.0000001});
  const std::vector<uint64_t> atanh =
      mix({0.3, -0.7, 0.5, -0.49999999, 0x1p-8, 0x1.fffffffffffffp-9, 0.99, -1.0, 2.0, 0.9999999999, 1e-300,
           NAN, 0.75, -0.1, 0.0, -0.0, 0.25, 0.6, 0.999});
  for (const char* f : kAsinh) invhyptest::expect_lanes_independent_and_in_place(f, asinh);
  for (const char* f : kAcosh) invhyptest::expect_lanes_independent_and_in_place(f, acosh);
  for (const char* f : kAtanh)
    invhyptest::expect_lanes_independent_and_in_place(f, atanh, !std::string(f).ends_with("A53"));
}

// A53 Atanh: a lane computed beside a partner on the path and alone stays
// within the tier bound either way (the sweeps see both).
TEST(InvHyp64, AtanhPairsAndLoneLanesBothAccurate) {
  const std::vector<double> xs = {0.3, 0.31, 0.9, -0.95, 0x1p-8, 0.5, 0.99999, 0.123456789};
  for (double x : xs) invhyptest::expect_within_bound("luxsAtanh_64f_A53", mpfr_atanh, {x});
  invhyptest::expect_within_bound("luxsAtanh_64f_A53", mpfr_atanh, xs);
}

// ---------------------------------------------------------------------------
// The range edges of every path, with their neighbours.

std::vector<double> around(std::vector<double> points) {
  std::vector<double> out;
  for (double p : points) {
    out.push_back(std::nextafter(p, 0.0));
    out.push_back(p);
    if (p < DBL_MAX) out.push_back(std::nextafter(p, INFINITY));
  }
  return out;
}

TEST(InvHyp64, RangeEdges) {
  const std::vector<double> asinh = around({0x1p-9, 0.5625, 1e154, DBL_MAX, 0x1p-1022, 1.0, 4.0});
  const std::vector<double> acosh =
      around({1.0004882812499998, 1.00048828125, 1.13001, 0x1p512, DBL_MAX, 2.0});
  const std::vector<double> atanh =
      around({0x1p-8, 0.5, 0.25, 0x1.fffffffffffffp-1, 0x1.ffffffffffffep-1, 0x1p-1022, 0.75});
  for (const char* f : kAsinh) invhyptest::expect_within_bound(f, mpfr_asinh, asinh);
  for (const char* f : kAcosh) invhyptest::expect_within_bound(f, mpfr_acosh, acosh);
  for (const char* f : kAtanh) invhyptest::expect_within_bound(f, mpfr_atanh, atanh);
}

// The two middle tiers are one kernel.
TEST(InvHyp64, A26GivesTheResultsOfA50) {
  std::vector<uint64_t> in;
  for (int i = 0; i < 200; ++i) in.push_back(bits(std::ldexp(1.0 + i / 200.0, i % 40 - 20)));
  for (const std::string f : {"luxsAsinh_64f_", "luxsAcosh_64f_", "luxsAtanh_64f_"})
    EXPECT_EQ(run(f + "A26", in).out, run(f + "A50", in).out) << f;
}

TEST(InvHypAccuracy, Asinh64) { luxtest::expect_family_accuracy("Asinh", 64); }
TEST(InvHypAccuracy, Acosh64) { luxtest::expect_family_accuracy("Acosh", 64); }
TEST(InvHypAccuracy, Atanh64) { luxtest::expect_family_accuracy("Atanh", 64); }

}  // namespace
