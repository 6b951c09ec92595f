// Asinh, Acosh and Atanh on binary32: the table of cubics against its rule,
// its quoted rows and its fit, special values per tier as data rows (stored
// bits, status, flag), the last offending lane winning, lane independence and
// in-place calls, the range edges against MPFR, and the MPFR sweeps.  The
// A11 tiers and the vector path of Asinh/Acosh A24 are seeded by hardware
// estimates: they are checked by bound and property, not by bits against
// constants.
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
using invhyptest::kAnyNaN;
using invhyptest::run;
using luxtest::bits;

// ---------------------------------------------------------------------------
// The table of cubics of the A24 scalar routines.

const invhypgen::Row kCubic[] = {
#include "hyperbolic/invhyp_ln_cubic_table.inc"
};

TEST(InvHypTables32, CubicsFollowTheirRule) {
  const std::vector<invhypgen::Row> rule = invhypgen::table_of(*invhypgen::find_table("ln_cubic"));
  ASSERT_EQ(rule.size(), std::size(kCubic));
  for (size_t i = 0; i < rule.size(); ++i) EXPECT_EQ(kCubic[i], rule[i]) << "row " << i;
}

TEST(InvHypTables32, QuotedRows) {
  // Row 0: the Taylor cubic at m = 1, (-11/6, 3, -3/2, 1/3).
  EXPECT_EQ(kCubic[0],
            (invhypgen::Row{0xBFFD555555555555, 0x4008000000000000, 0xBFF8000000000000, 0x3FD5555555555555}));
  // Row 255: the Taylor cubic at m = 2: k1, k2, k3 = 1.5, -0.375, 1/24.
  EXPECT_EQ(kCubic[255][1], luxtest::bits(1.5));
  EXPECT_EQ(kCubic[255][2], luxtest::bits(-0.375));
  EXPECT_EQ(kCubic[255][3], luxtest::bits(1.0 / 24));
}

// Each row's cubic, evaluated as the kernel does, is ln m on its interval
// to well below a float's rounding: 2^-36 absolute, and in row 0, the Taylor
// cubic at 1 where ln m is small, (m - 1)^3/4 relative (at most 2^-26) and
// the evaluation's roundings.
TEST(InvHypTables32, CubicsFitTheirIntervals) {
  for (int i = 0; i < 256; ++i) {
    const double k0 = luxtest::f64(kCubic[i][0]), k1 = luxtest::f64(kCubic[i][1]),
                 k2 = luxtest::f64(kCubic[i][2]), k3 = luxtest::f64(kCubic[i][3]);
    for (int j = i == 0 ? 1 : 0; j <= 32; ++j) {
      const double m = 1.0 + (i + j / 32.0) / 256.0;
      const double c = ((k3 * m + k2) * m + k1) * m + k0;
      const long double exact = std::log(static_cast<long double>(m));
      if (i == 0)
        EXPECT_LE(std::fabs(double(c - exact)), double(exact) * std::pow(m - 1, 3) / 4 * 1.01 + 0x1p-50)
            << "m " << m;
      else
        EXPECT_LT(std::fabs(double(c - exact)), 0x1p-36) << "row " << i << " m " << m;
    }
  }
}

// ---------------------------------------------------------------------------
// Special values.

constexpr uint64_t kZero = 0, kNegZero = 0x80000000, kInf = 0x7F800000, kNegInf = 0xFF800000,
                   kOne = 0x3F800000, kNegOne = 0xBF800000, kHalf = 0x3F000000, kTwo = 0x40000000,
                   kNegTwo = 0xC0000000, kQNaN = 0x7FC00123, kNegQNaN = 0xFFC00123, kSNaN = 0x7F800123,
                   kTiny = 1, kNegTiny = 0x80000001, kDefaultNaN = 0xFFC00000, kA24NaN = 0x7FFFFFFF;
constexpr int kDom = luxWarnDomain, kSing = luxWarnSingularity;

const char* const kAsinh[] = {"luxsAsinh_32f_A24", "luxsAsinh_32f_A21", "luxsAsinh_32f_A11"};
const char* const kAcosh[] = {"luxsAcosh_32f_A24", "luxsAcosh_32f_A21", "luxsAcosh_32f_A11"};
const char* const kAtanh[] = {"luxsAtanh_32f_A24", "luxsAtanh_32f_A21", "luxsAtanh_32f_A11"};

TEST(InvHyp32, AsinhSpecialValues) {
  std::vector<Case> cases;
  for (const char* f : kAsinh)
    for (const Case& c : std::vector<Case>{{f, kZero, kZero, 0},
                                           {f, kNegZero, kNegZero, 0},
                                           {f, kInf, kInf, 0},
                                           {f, kNegInf, kNegInf, 0},
                                           {f, kQNaN, kQNaN, 0},
                                           {f, kNegQNaN, kNegQNaN, 0},
                                           {f, kSNaN, kSNaN, 0},  // bits copied
                                           {f, kTiny, kTiny, 0},
                                           {f, kNegTiny, kNegTiny, 0}})
      cases.push_back(c);
  invhyptest::expect_cases(cases, 0, 0x40A00000);
}

TEST(InvHyp32, AcoshSpecialValues) {
  std::vector<Case> cases;
  for (const char* f : kAcosh) {
    const std::string n = f;
    const bool top = n.ends_with("A24"), est = n.ends_with("A11");
    const uint64_t nan = top ? kA24NaN : est ? kAnyNaN : kDefaultNaN;
    for (const Case& c : std::vector<Case>{{f, kOne, kZero, 0},
                                           {f, kHalf, nan, kDom},
                                           {f, kZero, nan, kDom},
                                           {f, kNegZero, nan, kDom},
                                           {f, kNegOne, nan, kDom},
                                           {f, kNegInf, nan, kDom},
                                           {f, 0x3F7FFFFF, nan, kDom},
                                           {f, kInf, kInf, 0},
                                           {f, kQNaN, kQNaN, 0},
                                           {f, kNegQNaN, est ? kAnyNaN : kNegQNaN, 0},
                                           {f, kSNaN, top ? kSNaN : 0x7FC00123, 0}})
      cases.push_back(c);
  }
  invhyptest::expect_cases(cases, 0, 0x40A00000);
}

TEST(InvHyp32, AtanhSpecialValues) {
  std::vector<Case> cases;
  for (const char* f : kAtanh)
    for (const Case& c : std::vector<Case>{{f, kZero, kZero, 0},
                                           {f, kNegZero, kNegZero, 0},
                                           {f, kTiny, kTiny, 0},
                                           {f, kNegTiny, kNegTiny, 0},
                                           {f, kOne, kInf, kSing},
                                           {f, kNegOne, kNegInf, kSing},
                                           {f, 0x3F800001, kDefaultNaN, kDom},
                                           {f, kTwo, kDefaultNaN, kDom},
                                           {f, kNegTwo, kDefaultNaN, kDom},
                                           {f, kInf, kDefaultNaN, kDom},
                                           {f, kNegInf, kDefaultNaN, kDom},
                                           {f, kQNaN, kQNaN, 0},
                                           {f, kNegQNaN, kNegQNaN, 0},
                                           {f, kSNaN, kSNaN, 0}})
      cases.push_back(c);
  invhyptest::expect_cases(cases, 0, 0x3EC00000);
}

// ---------------------------------------------------------------------------
// Statuses over an array.

TEST(InvHyp32, LastOffendingLaneWins) {
  invhyptest::expect_last_offending_lane_wins(kAtanh, kAcosh,
                                              {kHalf, kOne, kTwo, kNegOne, kNegTwo, kQNaN, 0x40A00000});
}

// ---------------------------------------------------------------------------
// Lanes: a lane's bits do not depend on its neighbours or on the length of
// the call, and in-place calls give the same bits.  In the A24 Asinh and
// Acosh a block with one lane below 4.0 sends all 8 to the scalar routine,
// whose formula from 4.0 on is the vector path's.

std::vector<uint64_t> mix(const std::vector<float>& v) {
  std::vector<uint64_t> out;
  for (float f : v) out.push_back(bits(f));
  return out;
}

TEST(InvHyp32, LanesIndependentAndInPlace) {
  const std::vector<uint64_t> asinh =
      mix({5.0f,  -7.5f,      4.0f,   9.0f,   12.0f, 4.5f,          100.0f, 1e10f,    0.3f,
           -0.7f, 3.9999998f, 1e-10f, 1e-30f, 1e19f, 1.0000001e19f, -3e38f, INFINITY, NAN,
           1.2f,  1.2000001f, 0.999f, 1.0f,   7.0f,  -20.0f,        0.0f});
  const std::vector<uint64_t> acosh = mix(
      {5.0f,  6.0f,  4.0f,  9.0f,     12.0f, 4.5f,  100.0f,     1e10f,  1.5f, 3.99f, 1.0f, 1.0000001f, 0.5f,
       1e19f, 2e19f, 3e38f, INFINITY, NAN,   -1.0f, 1.4999999f, 100.0f, 6.5f, 7.0f,  9.0f, 2.0f});
  const std::vector<uint64_t> atanh =
      mix({0.3f,  -0.7f, 0.5f,       0.6f,   0.60000004f, 0.75f, 0.74999994f, 0.6875f, 1.0f, 2.0f, NAN,
           -0.1f, 0.0f,  0.9999999f, 1e-30f, 0.25f,       0.9f,  -0.99f,      0.4f,    0.1f, 0.2f});
  for (const char* f : kAsinh) invhyptest::expect_lanes_independent_and_in_place(f, asinh);
  for (const char* f : kAcosh) invhyptest::expect_lanes_independent_and_in_place(f, acosh);
  for (const char* f : kAtanh) invhyptest::expect_lanes_independent_and_in_place(f, atanh);
}

// ---------------------------------------------------------------------------
// The range edges of every path, with their neighbours.

std::vector<double> around(std::vector<float> points) {
  std::vector<double> out;
  for (float p : points) {
    out.push_back(std::nextafter(p, 0.0f));
    out.push_back(p);
    if (p < FLT_MAX) out.push_back(std::nextafter(p, INFINITY));
  }
  return out;
}

TEST(InvHyp32, RangeEdges) {
  const std::vector<double> asinh =
      around({0x1p-27f, 1.0f, 1.2f, 4.0f, 0x1.158e46p+63f, 0x1.fffffep+63f, FLT_MAX, 0x1p-126f});
  const std::vector<double> acosh = around({1.0f, 1.5f, 4.0f, 0x1.158e46p+63f, 0x1.fffffep+63f, FLT_MAX});
  const std::vector<double> atanh = around({0.5f, 0.6f, 0.6875f, 0.75f, 0x1.fffffep-1f, 0x1p-126f, 0.25f});
  for (const char* f : kAsinh) invhyptest::expect_within_bound(f, mpfr_asinh, asinh);
  for (const char* f : kAcosh) invhyptest::expect_within_bound(f, mpfr_acosh, acosh);
  for (const char* f : kAtanh) invhyptest::expect_within_bound(f, mpfr_atanh, atanh);
}

TEST(InvHypAccuracy, Asinh32) { luxtest::expect_family_accuracy("Asinh", 32); }
TEST(InvHypAccuracy, Acosh32) { luxtest::expect_family_accuracy("Acosh", 32); }
TEST(InvHypAccuracy, Atanh32) { luxtest::expect_family_accuracy("Atanh", 32); }

}  // namespace
