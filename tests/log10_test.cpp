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

template <size_t N>
void expect_table_is_rule(const char* name, const loggen::Row (&rows)[N]) {
  const loggen::TableInfo* info = loggen::find_table(name);
  ASSERT_NE(info, nullptr);
  ASSERT_EQ(size_t(info->rows), N);
  const std::vector<loggen::Row> rule = loggen::table_of(*info);
  for (size_t i = 0; i < N; ++i) EXPECT_EQ(rows[i], rule[i]) << name << " row " << i;
}

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
// Lanes off the vector path.

struct Tier {
  const char* name;
  int bits;
  bool nan_kept;        // NaN returned as it came (else quieted by the x87)
  uint64_t domain_nan;  // the value stored for negative lanes
  int block;
};

const Tier kTiers[] = {
    {"luxsLog10_64f_A53", 64, true, 0xFFF8000000000000, 4},
    {"luxsLog10_64f_A50", 64, false, 0xFFF8000000000000, 4},
    {"luxsLog10_64f_A26", 64, false, 0xFFF8000000000000, 4},
    {"luxsLog10_32f_A24", 32, true, 0xFFC00000, 8},
    {"luxsLog10_32f_A21", 32, false, 0xFFC00000, 4},
    {"luxsLog10_32f_A11", 32, false, 0xFFC00000, 8},
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

TEST(Log10, ZerosNegativesInfinitiesPerTier) {
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
    // +Inf and 1.0: no status; log10 1 is exactly +0.
    const Bits r = run(t, t.bits == 64 ? std::vector<uint64_t>{0x7FF0000000000000, 0x3FF0000000000000}
                                       : std::vector<uint64_t>{0x7F800000, 0x3F800000});
    EXPECT_EQ(r.out[0], t.bits == 64 ? 0x7FF0000000000000u : 0x7F800000u) << t.name;
    EXPECT_EQ(r.out[1], 0u) << t.name;
    EXPECT_EQ(r.status, 0) << t.name;
  }
}

TEST(Log10, OneIsExactlyZeroOnTheVectorPath) {
  for (const Tier& t : kTiers) {
    const Bits r = run(t, std::vector<uint64_t>(16, t.bits == 64 ? 0x3FF0000000000000 : 0x3F800000));
    for (uint64_t o : r.out) EXPECT_EQ(o, 0u) << t.name;
  }
}

TEST(Log10, NaNsPerTier) {
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
  for (const char* name : {"luxsLog10_64f_A50", "luxsLog10_64f_A26"}) {
    const auto r = call_unary(name, std::vector<double>{f64(0xFFF0000000000001)});
    EXPECT_EQ(bits(r.out[0]), 0xFFF8000000000001u) << name;
    EXPECT_EQ(r.status, luxWarnDomain) << name;
  }
}

TEST(Log10, LastOffendingLaneWins) {
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
TEST(Log10, DenormalsKeepTheirAccuracyAndSetNoStatus) {
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
      mpfr_log10(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(got, y, t.bits), luxtk::tier_bound_ulps(t.name + std::strlen(t.name) - 3))
          << t.name << " x " << std::hex << in[i];
    }
  }
  mpfr_clear(y);
}

// Every length up to three blocks, in place and out of place, with a bad lane
// or none: the prefix of a long call, lane for lane.
TEST(Log10, TailsOfEveryLengthAndInPlace) {
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
// block goes to the x87 (there the good lanes carry only the error of the
// float log10 2 it multiplies by, about 4.8e-8 relative).
TEST(Log10, GoodLanesBesideABadOne) {
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
      mpfr_log10(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(double(f32(uint32_t(mixed.out[i]))), y, 32), 1.5) << t.name << " lane " << i;
    }
  }
  mpfr_clear(y);
}

// x just around 1 and the places where rows and exponents step.
TEST(Log10, NearOneAndRowSteps) {
  const double d64[] = {std::nextafter(1.0, 0.0),
                        std::nextafter(1.0, 2.0),
                        0x1.7fbffp+0,
                        0x1.7fcp+0,
                        10.0,
                        1000.0,
                        0x1.fffffffffffffp-1 * 2,
                        0x1p-1022};
  const float d32[] = {std::nextafter(1.0f, 0.0f),
                       std::nextafter(1.0f, 2.0f),
                       0x1.fcp-1f,
                       0x1.04p+0f,
                       std::nextafter(0x1.fcp-1f, 1.0f),
                       std::nextafter(0x1.04p+0f, 1.0f),
                       0x1p-126f,
                       0x1.7fp+0f,
                       std::nextafter(0x1.7fp+0f, 1.0f),
                       10.0f,
                       1000.0f};
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
      mpfr_log10(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(got, y, t.bits), bound) << t.name << " x " << luxtk::hexfloat(x);
    }
  }
  mpfr_clear(y);
}

TEST(Log10Accuracy, Binary64) { luxtest::expect_family_accuracy("Log10", 64); }
TEST(Log10Accuracy, Binary32) { luxtest::expect_family_accuracy("Log10", 32); }

}  // namespace
