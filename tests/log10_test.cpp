// Log10 on binary32 and binary64: the tables against their rules, the lanes that
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
#include "exp_log/log10_d53_table.inc"
};
const loggen::Row kD50[] = {
#include "exp_log/log10_d50_table.inc"
};
const loggen::Row kS24[] = {
#include "exp_log/log10_s24_table.inc"
};
const loggen::Row kS21[] = {
#include "exp_log/log10_s21_table.inc"
};

TEST(Log10Tables, GeneratedFilesFollowTheirRules) {
  expect_table_is_rule("dlog10_ha", kD53);
  expect_table_is_rule("dlog10_la", kD50);
  expect_table_is_rule("slog10_ha", kS24);
  expect_table_is_rule("slog10_la", kS21);
}

TEST(Log10Tables, QuotedRows) {
  // A53: rcp carries K = 0.43359375; row 512 cancels e*log10 2 for e = -1.
  EXPECT_EQ(kD53[0], (loggen::Row{0x3FDBC00000000000, 0, 0}));
  EXPECT_EQ(kD53[1], (loggen::Row{0x3FDBB22000000000, 0x3F4BD27045B80000, 0x3D2F4092C3AD69A4}));
  EXPECT_EQ(kD53[256], (loggen::Row{0x3FD27FB600000000, 0x3FC68B06E8F60000, 0x3D4D869E00D01E30}));
  EXPECT_EQ(kD53[512], (loggen::Row{0x3FCBC00000000000, 0x3FD34413509F7800, 0x3D1FEF311F12B358}));
  // A24: rows 63 and 64 share rcp, and the logarithm falls by log10 2.
  EXPECT_EQ(kS24[63], (loggen::Row{0x3E940000, 0x3E340000, 0x39A288B6}));
  EXPECT_EQ(kS24[64], (loggen::Row{0x3E940000, 0xBDFF8000, 0xB93FC2BC}));
  for (int i : {0, 127, 128}) {
    EXPECT_EQ(kS24[i][1], 0u) << i;
    EXPECT_EQ(kS24[i][2], 0u) << i;
  }
  EXPECT_EQ(kS24[127][0], 0x3E5E0000u);  // K/2
  EXPECT_EQ(kD50[256], (loggen::Row{0x3FD34413509F8000, 0xBD380433B83B532A, 0x3FE0000000000000}));
  EXPECT_EQ(kS21[64], (loggen::Row{0x3E9A2000, 0x369A84FC, 0x3F000000}));
}

TEST(Log10Tables, HeadsMakeTheLeadingSumExact) {
  // A53: rcp = K*q has at most 21 significant bits (m_hi*rcp exact); heads
  // have at most 42 significant bits and none below 2^-44.
  for (const loggen::Row& r : kD53) {
    EXPECT_EQ(r[0] & 0xFFFFFFFF, 0u);
    const double h = f64(r[1]);
    EXPECT_EQ(std::ldexp(h, 44), std::nearbyint(std::ldexp(h, 44)));
    EXPECT_EQ(r[1] & 0x7FF, 0u);
  }
  // A24: rcp 8 bits, heads 9 bits and none below 2^-18.
  for (const loggen::Row& r : kS24) {
    EXPECT_EQ(r[0] & 0xFFFF, 0u);
    EXPECT_EQ(r[1] & 0x7FFF, 0u);
    const double h = double(f32(uint32_t(r[1])));
    EXPECT_EQ(std::ldexp(h, 18), std::nearbyint(std::ldexp(h, 18)));
  }
}

// ---------------------------------------------------------------------------
// Lanes off the vector path (tests/log_lanes.h).

// The x87 lanes of an A11 block carry only the error of the float log10 2
// it multiplies by, about 4.8e-8 relative.
const logtest::Family kFamily = {
    .tiers =
        {
            {"luxsLog10_64f_A53", 64, true, 0xFFF8000000000000, 4},
            {"luxsLog10_64f_A50", 64, false, 0xFFF8000000000000, 4},
            {"luxsLog10_64f_A26", 64, false, 0xFFF8000000000000, 4},
            {"luxsLog10_32f_A24", 32, true, 0xFFC00000, 8},
            {"luxsLog10_32f_A21", 32, false, 0xFFC00000, 4},
            {"luxsLog10_32f_A11", 32, false, 0xFFC00000, 8},
        },
    .mpfr_log = mpfr_log10,
    .high_word_only = {"luxsLog10_64f_A50", "luxsLog10_64f_A26"},
    .x87_good_lane_ulps = 1.5,
};

TEST(Log10, ZerosNegativesInfinitiesPerTier) { logtest::zeros_negatives_infinities_per_tier(kFamily); }
TEST(Log10, OneIsExactlyZeroOnTheVectorPath) { logtest::one_is_exactly_zero_on_the_vector_path(kFamily); }
TEST(Log10, NaNsPerTier) { logtest::nans_per_tier(kFamily); }
TEST(Log10, LastOffendingLaneWins) { logtest::last_offending_lane_wins(kFamily); }
TEST(Log10, DenormalsKeepTheirAccuracyAndSetNoStatus) {
  logtest::denormals_keep_their_accuracy_and_set_no_status(kFamily);
}
TEST(Log10, TailsOfEveryLengthAndInPlace) { logtest::tails_of_every_length_and_in_place(kFamily); }
TEST(Log10, GoodLanesBesideABadOne) { logtest::good_lanes_beside_a_bad_one(kFamily); }

// x just around 1 and the places where rows and exponents step.
TEST(Log10, NearOneAndRowSteps) {
  logtest::near_one_and_row_steps(
      kFamily,
      {std::nextafter(1.0, 0.0), std::nextafter(1.0, 2.0), 0x1.7fbffp+0, 0x1.7fcp+0, 10.0, 1000.0,
       0x1.fffffffffffffp-1 * 2, 0x1p-1022},
      {std::nextafter(1.0f, 0.0f), std::nextafter(1.0f, 2.0f), 0x1.fcp-1f, 0x1.04p+0f,
       std::nextafter(0x1.fcp-1f, 1.0f), std::nextafter(0x1.04p+0f, 1.0f), 0x1p-126f, 0x1.7fp+0f,
       std::nextafter(0x1.7fp+0f, 1.0f), 10.0f, 1000.0f});
}

TEST(Log10Accuracy, Binary64) { luxtest::expect_family_accuracy("Log10", 64); }
TEST(Log10Accuracy, Binary32) { luxtest::expect_family_accuracy("Log10", 32); }

}  // namespace
