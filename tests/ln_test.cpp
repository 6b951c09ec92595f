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
#include "luxvm.h"
#include "support/testing.h"

namespace {

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

template <size_t N>
void expect_table_is_rule(const char* name, const loggen::Row (&rows)[N]) {
  const loggen::TableInfo* info = loggen::find_table(name);
  ASSERT_NE(info, nullptr);
  ASSERT_EQ(size_t(info->rows), N);
  const std::vector<loggen::Row> rule = loggen::table_of(*info);
  for (size_t i = 0; i < N; ++i) EXPECT_EQ(rows[i], rule[i]) << name << " row " << i;
}

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
// Lanes off the vector path.

struct Tier {
  const char* name;
  int bits;
  bool nan_kept;        // NaN returned as it came (else quieted by the x87)
  uint64_t domain_nan;  // the value stored for negative lanes
  int block;
};

const Tier kTiers[] = {
    {"luxsLn_64f_A53", 64, true, 0xFFF8000000000000, 4},
    {"luxsLn_64f_A50", 64, false, 0xFFF8000000000000, 4},
    {"luxsLn_64f_A26", 64, false, 0xFFF8000000000000, 4},
    {"luxsLn_32f_A24", 32, false, 0xFFC00000, 8},
    {"luxsLn_32f_A21", 32, false, 0xFFC00000, 4},
    {"luxsLn_32f_A11", 32, false, 0xFFC00000, 8},
};

// Runs one export on values given as bit patterns; results as bit patterns.
struct Bits {
  std::vector<uint64_t> out;
  int status;
  uint32_t flags;
};
Bits run(const Tier& t, const std::vector<uint64_t>& in) {
  Bits b;
  if (t.bits == 64) {
    std::vector<double> v;
    for (uint64_t x : in) v.push_back(f64(x));
    const auto r = call_unary(t.name, v);
    for (double d : r.out) b.out.push_back(bits(d));
    b.status = r.status, b.flags = r.flags;
  } else {
    std::vector<float> v;
    for (uint64_t x : in) v.push_back(f32(uint32_t(x)));
    const auto r = call_unary(t.name, v);
    for (float f : r.out) b.out.push_back(bits(f));
    b.status = r.status, b.flags = r.flags;
  }
  return b;
}

struct Special {
  uint64_t x64, x32;
  int status;
  uint32_t flag;  // the flag the status must raise
};
constexpr uint64_t kNegInf64 = 0xFFF0000000000000, kNegInf32 = 0xFF800000;
constexpr uint64_t kQNaN64 = 0x7FF8000000000123, kSNaN64 = 0x7FF0000000000123;
constexpr uint32_t kQNaN32 = 0x7FC00123, kSNaN32 = 0x7F800123;

TEST(Ln, ZerosNegativesInfinitiesPerTier) {
  const Special cases[] = {
      {0x0000000000000000, 0x00000000, luxWarnSingularity, luxtk::kDivByZero},
      {0x8000000000000000, 0x80000000, luxWarnSingularity, luxtk::kDivByZero},  // never a domain status
      {0xBFF0000000000000, 0xBF800000, luxWarnDomain, luxtk::kInvalid},
      {0x8000000000000001, 0x80000001, luxWarnDomain, luxtk::kInvalid},  // negative denormal
      {kNegInf64, kNegInf32, luxWarnDomain, luxtk::kInvalid},
  };
  for (const Tier& t : kTiers) {
    for (const Special& c : cases) {
      // Alone (tail path) and inside a full block of good lanes.
      for (int pos : {0, 2}) {
        std::vector<uint64_t> in(size_t(pos == 0 ? 1 : t.block),
                                 t.bits == 64 ? 0x4000000000000000 : 0x40000000);
        in[size_t(pos == 0 ? 0 : pos)] = t.bits == 64 ? c.x64 : c.x32;
        const Bits r = run(t, in);
        const uint64_t want =
            c.status == luxWarnSingularity ? (t.bits == 64 ? kNegInf64 : kNegInf32) : t.domain_nan;
        EXPECT_EQ(r.out[size_t(pos == 0 ? 0 : pos)], want) << t.name << " x " << std::hex << c.x64;
        EXPECT_EQ(r.status, c.status) << t.name;
        EXPECT_TRUE(r.flags & c.flag) << t.name << " flags " << luxtk::flag_names(r.flags);
      }
    }
    // +Inf and 1.0: no status; ln 1 is exactly +0.
    const Bits r = run(t, t.bits == 64 ? std::vector<uint64_t>{0x7FF0000000000000, 0x3FF0000000000000}
                                       : std::vector<uint64_t>{0x7F800000, 0x3F800000});
    EXPECT_EQ(r.out[0], t.bits == 64 ? 0x7FF0000000000000u : 0x7F800000u) << t.name;
    EXPECT_EQ(r.out[1], 0u) << t.name;
    EXPECT_EQ(r.status, 0) << t.name;
  }
}

TEST(Ln, OneIsExactlyZeroOnTheVectorPath) {
  for (const Tier& t : kTiers) {
    const Bits r = run(t, std::vector<uint64_t>(16, t.bits == 64 ? 0x3FF0000000000000 : 0x3F800000));
    for (uint64_t o : r.out) EXPECT_EQ(o, 0u) << t.name;
  }
}

TEST(Ln, NaNsPerTier) {
  for (const Tier& t : kTiers) {
    for (bool signalling : {false, true}) {
      const uint64_t nan = t.bits == 64 ? (signalling ? kSNaN64 : kQNaN64) : (signalling ? kSNaN32 : kQNaN32);
      const uint64_t quiet_bit = t.bits == 64 ? 0x0008000000000000 : 0x00400000;
      const Bits r = run(t, {nan});
      EXPECT_EQ(r.out[0], t.nan_kept ? nan : (nan | quiet_bit)) << t.name << " signalling " << signalling;
      EXPECT_EQ(r.status, 0) << t.name;
      if (t.nan_kept && signalling) {
        EXPECT_TRUE(r.flags & luxtk::kInvalid) << t.name;
      }
    }
  }
  // A50 and A26 test the high word alone: a NaN whose high word is exactly
  // 0xFFF00000 counts among the negatives.
  for (const char* name : {"luxsLn_64f_A50", "luxsLn_64f_A26"}) {
    const auto r = call_unary(name, std::vector<double>{f64(0xFFF0000000000001)});
    EXPECT_EQ(bits(r.out[0]), 0xFFF8000000000001u) << name;
    EXPECT_EQ(r.status, luxWarnDomain) << name;
  }
}

TEST(Ln, LastOffendingLaneWins) {
  for (const Tier& t : kTiers) {
    const uint64_t one = t.bits == 64 ? 0x3FF8000000000000 : 0x3FC00000;
    const uint64_t zero = 0, neg = t.bits == 64 ? 0xC000000000000000 : 0xC0000000;
    std::vector<uint64_t> in(12, one);
    in[5] = zero, in[9] = neg;
    EXPECT_EQ(run(t, in).status, luxWarnDomain) << t.name;
    in[5] = neg, in[9] = zero;
    EXPECT_EQ(run(t, in).status, luxWarnSingularity) << t.name;
    // A later good lane does not clear the status.
    in.assign(12, one);
    in[1] = zero;
    EXPECT_EQ(run(t, in).status, luxWarnSingularity) << t.name;
  }
}

// Positive denormals: full accuracy, no status.
TEST(Ln, DenormalsKeepTheirAccuracyAndSetNoStatus) {
  mpfr_t y;
  mpfr_init2(y, 256);
  for (const Tier& t : kTiers) {
    const std::vector<uint64_t> in =
        t.bits == 64 ? std::vector<uint64_t>{1,
                                             2,
                                             3,
                                             0x000FFFFFFFFFFFFF,
                                             0x0008000000000000,
                                             0x00000000DEADBEEF,
                                             0x0010000000000000}
                     : std::vector<uint64_t>{1, 2, 3, 0x007FFFFF, 0x00400000, 0x0000BEEF, 0x00800000};
    const Bits r = run(t, in);
    EXPECT_EQ(r.status, 0) << t.name;
    for (size_t i = 0; i < in.size(); ++i) {
      const double x = t.bits == 64 ? f64(in[i]) : double(f32(uint32_t(in[i])));
      const double got = t.bits == 64 ? f64(r.out[i]) : double(f32(uint32_t(r.out[i])));
      mpfr_set_d(y, x, MPFR_RNDN);
      mpfr_log(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(got, y, t.bits), luxtk::tier_bound_ulps(t.name + std::strlen(t.name) - 3))
          << t.name << " x " << std::hex << in[i];
    }
  }
  mpfr_clear(y);
}

// Every length up to three blocks, in place and out of place, with a bad lane
// or none: the prefix of a long call, lane for lane.
TEST(Ln, TailsOfEveryLengthAndInPlace) {
  for (const Tier& t : kTiers) {
    std::vector<uint64_t> in;
    for (int i = 0; i < 3 * t.block + 3; ++i) {
      const double v = 0.37 + 0.61 * i;
      in.push_back(t.bits == 64 ? bits(v) : bits(float(v)));
    }
    const Bits whole = run(t, in);
    for (size_t n = 1; n <= in.size(); ++n) {
      const std::vector<uint64_t> part(in.begin(), in.begin() + long(n));
      const Bits r = run(t, part);
      for (size_t i = 0; i < n; ++i)
        EXPECT_EQ(r.out[i], whole.out[i]) << t.name << " len " << n << " lane " << i;
      // In place.
      if (t.bits == 64) {
        std::vector<double> io;
        for (uint64_t b : part) io.push_back(f64(b));
        luxtk::run_clean([&] {
          return luxtk::invoke(*luxtk::find_export(t.name), luxtk::export_address(t.name), io.data(), nullptr,
                               nullptr, io.data(), nullptr, int(n));
        });
        for (size_t i = 0; i < n; ++i) EXPECT_EQ(bits(io[i]), r.out[i]) << t.name << " in place, len " << n;
      } else {
        std::vector<float> io;
        for (uint64_t b : part) io.push_back(f32(uint32_t(b)));
        luxtk::run_clean([&] {
          return luxtk::invoke(*luxtk::find_export(t.name), luxtk::export_address(t.name), io.data(), nullptr,
                               nullptr, io.data(), nullptr, int(n));
        });
        for (size_t i = 0; i < n; ++i) EXPECT_EQ(bits(io[i]), r.out[i]) << t.name << " in place, len " << n;
      }
    }
  }
}

// Lanes beside a failing one keep their bits, except in A11, where the whole
// block goes to the x87 (and there the good lanes are then nearly exact).
TEST(Ln, GoodLanesBesideABadOne) {
  mpfr_t y;
  mpfr_init2(y, 256);
  for (const Tier& t : kTiers) {
    std::vector<uint64_t> in;
    for (int i = 0; i < 2 * t.block + 1; ++i) {
      const double v = 0.81 + 0.173 * i;
      in.push_back(t.bits == 64 ? bits(v) : bits(float(v)));
    }
    const Bits clean = run(t, in);
    std::vector<uint64_t> bad = in;
    bad[1] = t.bits == 64 ? kQNaN64 : kQNaN32;
    const Bits mixed = run(t, bad);
    for (size_t i = 0; i < in.size(); ++i) {
      if (i == 1) continue;
      const bool x87 = std::string(t.name).ends_with("A11") && i < size_t(t.block);
      if (!x87) {
        EXPECT_EQ(mixed.out[i], clean.out[i]) << t.name << " lane " << i;
        continue;
      }
      mpfr_set_d(y, double(f32(uint32_t(in[i]))), MPFR_RNDN);
      mpfr_log(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(double(f32(uint32_t(mixed.out[i]))), y, 32), 0.51)
          << t.name << " lane " << i;
    }
  }
  mpfr_clear(y);
}

// x just around 1 and the places where rows and exponents step.
TEST(Ln, NearOneAndRowSteps) {
  const double d64[] = {std::nextafter(1.0, 0.0),
                        std::nextafter(1.0, 2.0),
                        0x1.7fbffp+0,
                        0x1.7fcp+0,
                        0x1.fffffffffffffp-1 * 2,
                        0x1p-1022};
  const float d32[] = {
      std::nextafter(1.0f, 0.0f),       std::nextafter(1.0f, 2.0f),       0x1.fcp-1f, 0x1.04p+0f,
      std::nextafter(0x1.fcp-1f, 1.0f), std::nextafter(0x1.04p+0f, 1.0f), 0x1p-126f};
  mpfr_t y;
  mpfr_init2(y, 256);
  for (const Tier& t : kTiers) {
    std::vector<uint64_t> in;
    if (t.bits == 64)
      for (double v : d64) in.push_back(bits(v));
    else
      for (float v : d32) in.push_back(bits(v));
    const Bits r = run(t, in);
    const double bound = std::string(t.name).ends_with("A53") || std::string(t.name).ends_with("A24") ? 1.0
                         : std::string(t.name).ends_with("A11")                                       ? 8192.0
                         : std::string(t.name).ends_with("A26")                                       ? 0x1p27
                                                                                                      : 8.0;
    for (size_t i = 0; i < in.size(); ++i) {
      const double x = t.bits == 64 ? f64(in[i]) : double(f32(uint32_t(in[i])));
      const double got = t.bits == 64 ? f64(r.out[i]) : double(f32(uint32_t(r.out[i])));
      mpfr_set_d(y, x, MPFR_RNDN);
      mpfr_log(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(got, y, t.bits), bound) << t.name << " x " << luxtk::hexfloat(x);
    }
  }
  mpfr_clear(y);
}

TEST(LnAccuracy, Binary64) { luxtest::expect_family_accuracy("Ln", 64); }
TEST(LnAccuracy, Binary32) { luxtest::expect_family_accuracy("Ln", 32); }

}  // namespace
