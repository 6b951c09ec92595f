// Ln on binary32 and binary64: the tables against their rules, the lanes that
// leave the vector path (statuses, flags, stored values per tier), the last
// offending lane winning, denormals, 1.0, in-place calls, tails of every
// length, the A11 block fallback, and the MPFR sweep.
#include <mpfr.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "gen/log_rules.h"
#include "log_lanes.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using logtest::expect_table_is_rule;
using luxtest::bits;
using luxtest::call_unary;
using luxtest::f32;
using luxtest::f64;

// ---------------------------------------------------------------------------
// Tables: the generated files equal the rules, and the rules give the rows
// quoted for them.

const loggen::Row kD53[] = {
#include "exp_log/ln_d53_table.inc"
};
const loggen::Row kD50[] = {
#include "exp_log/ln_d50_table.inc"
};
const loggen::Row kS24[] = {
#include "exp_log/ln_s24_table.inc"
};
const loggen::Row kS21[] = {
#include "exp_log/ln_s21_table.inc"
};

TEST(LnTables, GeneratedFilesFollowTheirRules) {
  expect_table_is_rule("dln_ha", kD53);
  expect_table_is_rule("dln_la", kD50);
  expect_table_is_rule("sln_ha", kS24);
  expect_table_is_rule("sln_la", kS21);
}

TEST(LnTables, QuotedRows) {
  // A53: rows 0 and 512 stand for m*rcp = 1; the sign of the logarithm
  // changes between rows 255 and 256, where e gains 1.
  EXPECT_EQ(kD53[0], (loggen::Row{0x3FF0000000000000, 0, 0}));
  EXPECT_EQ(kD53[512], (loggen::Row{0x3FE0000000000000, 0, 0}));
  EXPECT_EQ(kD53[255][0], 0x3FE55C7440000000u);
  EXPECT_EQ(kD53[255][1], 0x3FD9DDCAB0000000u);
  EXPECT_EQ(kD53[256][0], 0x3FE5555540000000u);
  EXPECT_EQ(kD53[256][1], 0xBFD26961D0000000u);
  // A50/A26 and the 32-bit tiers: the last row is LN2_HI, LN2_LO, 1/2.
  EXPECT_EQ(kD50[256], (loggen::Row{0x3FE62E42FEFA4000, 0xBD48432A1B0E2634, 0x3FE0000000000000}));
  EXPECT_EQ(kS24[64], (loggen::Row{0x3F317000, 0x3805FDF4, 0x3F000000}));
  EXPECT_EQ(kS21[64], (loggen::Row{0x3F317200, 0x35BFBE8E, 0x3F000000}));
  EXPECT_EQ(kS24[1][2], 0x3F7C0000u);  // 0.984375, not 64/65
}

TEST(LnTables, HeadsMakeTheLeadingSumExact) {
  // A53: rcp on the 2^-23 grid (m_hi*rcp exact), heads of 25 bits.
  for (const loggen::Row& r : kD53) {
    EXPECT_EQ(r[0] & 0x1FFFFFFF, 0u);
    EXPECT_EQ(r[1] & 0x0FFFFFFF, 0u);
  }
  // A50/A26: heads on the 2^-39 grid.
  for (const loggen::Row& r : kD50) {
    const double h = f64(r[0]);
    EXPECT_EQ(std::ldexp(h, 39), std::nearbyint(std::ldexp(h, 39)));
  }
}

// ---------------------------------------------------------------------------
// Lanes off the vector path (tests/log_lanes.h).

// The x87 lanes of an A11 block are then nearly exact.
const logtest::Family kFamily = {
    .tiers =
        {
            {"luxsLn_64f_A53", 64, true, 0xFFF8000000000000, 4},
            {"luxsLn_64f_A50", 64, false, 0xFFF8000000000000, 4},
            {"luxsLn_64f_A26", 64, false, 0xFFF8000000000000, 4},
            {"luxsLn_32f_A24", 32, false, 0xFFC00000, 8},
            {"luxsLn_32f_A21", 32, false, 0xFFC00000, 4},
            {"luxsLn_32f_A11", 32, false, 0xFFC00000, 8},
        },
    .mpfr_log = mpfr_log,
    .high_word_only = {"luxsLn_64f_A50", "luxsLn_64f_A26"},
    .x87_good_lane_ulps = 0.51,
};

TEST(Ln, ZerosNegativesInfinitiesPerTier) { logtest::zeros_negatives_infinities_per_tier(kFamily); }
TEST(Ln, OneIsExactlyZeroOnTheVectorPath) { logtest::one_is_exactly_zero_on_the_vector_path(kFamily); }
TEST(Ln, NaNsPerTier) { logtest::nans_per_tier(kFamily); }
TEST(Ln, LastOffendingLaneWins) { logtest::last_offending_lane_wins(kFamily); }
TEST(Ln, DenormalsKeepTheirAccuracyAndSetNoStatus) {
  logtest::denormals_keep_their_accuracy_and_set_no_status(kFamily);
}
TEST(Ln, TailsOfEveryLengthAndInPlace) { logtest::tails_of_every_length_and_in_place(kFamily); }
TEST(Ln, GoodLanesBesideABadOne) { logtest::good_lanes_beside_a_bad_one(kFamily); }

// x just around 1 and the places where rows and exponents step.
TEST(Ln, NearOneAndRowSteps) {
  logtest::near_one_and_row_steps(
      kFamily,
      {std::nextafter(1.0, 0.0), std::nextafter(1.0, 2.0), 0x1.7fbffp+0, 0x1.7fcp+0, 0x1.fffffffffffffp-1 * 2,
       0x1p-1022},
      {std::nextafter(1.0f, 0.0f), std::nextafter(1.0f, 2.0f), 0x1.fcp-1f, 0x1.04p+0f,
       std::nextafter(0x1.fcp-1f, 1.0f), std::nextafter(0x1.04p+0f, 1.0f), 0x1p-126f});
}

TEST(LnAccuracy, Binary64) { luxtest::expect_family_accuracy("Ln", 64); }
TEST(LnAccuracy, Binary32) { luxtest::expect_family_accuracy("Ln", 32); }

}  // namespace
