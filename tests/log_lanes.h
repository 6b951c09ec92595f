// Checks shared by the Ln and Log10 tests: the lanes that leave the vector
// path (statuses, flags, stored values per tier), the last offending lane
// winning, denormals, 1.0, in-place calls, tails of every length, the A11
// block fallback, and points near 1.  Each test file names its tiers, its
// oracle and its inputs, and runs every check as its own TEST.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "gen/log_rules.h"
#include "luxvm.h"
#include "support/testing.h"

namespace logtest {

using luxtest::bits;
using luxtest::call_unary;
using luxtest::f32;
using luxtest::f64;

// A generated table file equals its rule, row for row.
template <size_t N>
inline void expect_table_is_rule(const char* name, const loggen::Row (&rows)[N]) {
  const loggen::TableInfo* info = loggen::find_table(name);
  ASSERT_NE(info, nullptr);
  ASSERT_EQ(size_t(info->rows), N);
  const std::vector<loggen::Row> rule = loggen::table_of(*info);
  for (size_t i = 0; i < N; ++i) EXPECT_EQ(rows[i], rule[i]) << name << " row " << i;
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

// A family's tiers, its oracle and the few expectations that differ.
struct Family {
  std::vector<Tier> tiers;
  int (*mpfr_log)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);  // mpfr_log or mpfr_log10
  // Binary64 tiers that test the high word alone (a NaN whose high word is
  // exactly 0xFFF00000 counts among the negatives).
  std::vector<const char*> high_word_only;
  // Error of a good lane that an A11 block takes through the x87.
  double x87_good_lane_ulps;
};

// Runs one export on values given as bit patterns; results as bit patterns.
struct Bits {
  std::vector<uint64_t> out;
  int status;
  uint32_t flags;
};
inline Bits run(const Tier& t, const std::vector<uint64_t>& in) {
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

inline void zeros_negatives_infinities_per_tier(const Family& f) {
  const Special cases[] = {
      {0x0000000000000000, 0x00000000, luxWarnSingularity, luxtk::kDivByZero},
      {0x8000000000000000, 0x80000000, luxWarnSingularity, luxtk::kDivByZero},  // never a domain status
      {0xBFF0000000000000, 0xBF800000, luxWarnDomain, luxtk::kInvalid},
      {0x8000000000000001, 0x80000001, luxWarnDomain, luxtk::kInvalid},  // negative denormal
      {kNegInf64, kNegInf32, luxWarnDomain, luxtk::kInvalid},
  };
  for (const Tier& t : f.tiers) {
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
    // +Inf and 1.0: no status; the logarithm of 1 is exactly +0.
    const Bits r = run(t, t.bits == 64 ? std::vector<uint64_t>{0x7FF0000000000000, 0x3FF0000000000000}
                                       : std::vector<uint64_t>{0x7F800000, 0x3F800000});
    EXPECT_EQ(r.out[0], t.bits == 64 ? 0x7FF0000000000000u : 0x7F800000u) << t.name;
    EXPECT_EQ(r.out[1], 0u) << t.name;
    EXPECT_EQ(r.status, 0) << t.name;
  }
}

inline void one_is_exactly_zero_on_the_vector_path(const Family& f) {
  for (const Tier& t : f.tiers) {
    const Bits r = run(t, std::vector<uint64_t>(16, t.bits == 64 ? 0x3FF0000000000000 : 0x3F800000));
    for (uint64_t o : r.out) EXPECT_EQ(o, 0u) << t.name;
  }
}

inline void nans_per_tier(const Family& f) {
  for (const Tier& t : f.tiers) {
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
  for (const char* name : f.high_word_only) {
    const auto r = call_unary(name, std::vector<double>{f64(0xFFF0000000000001)});
    EXPECT_EQ(bits(r.out[0]), 0xFFF8000000000001u) << name;
    EXPECT_EQ(r.status, luxWarnDomain) << name;
  }
}

inline void last_offending_lane_wins(const Family& f) {
  for (const Tier& t : f.tiers) {
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
inline void denormals_keep_their_accuracy_and_set_no_status(const Family& f) {
  mpfr_t y;
  mpfr_init2(y, 256);
  for (const Tier& t : f.tiers) {
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
      f.mpfr_log(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(got, y, t.bits), luxtk::tier_bound_ulps(t.name + std::strlen(t.name) - 3))
          << t.name << " x " << std::hex << in[i];
    }
  }
  mpfr_clear(y);
}

// Every length up to three blocks, in place and out of place, with a bad lane
// or none: the prefix of a long call, lane for lane.
inline void tails_of_every_length_and_in_place(const Family& f) {
  for (const Tier& t : f.tiers) {
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
inline void good_lanes_beside_a_bad_one(const Family& f) {
  mpfr_t y;
  mpfr_init2(y, 256);
  for (const Tier& t : f.tiers) {
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
      f.mpfr_log(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(double(f32(uint32_t(mixed.out[i]))), y, 32), f.x87_good_lane_ulps)
          << t.name << " lane " << i;
    }
  }
  mpfr_clear(y);
}

// x just around 1 and the places where rows and exponents step.
inline void near_one_and_row_steps(const Family& f, const std::vector<double>& d64,
                                   const std::vector<float>& d32) {
  mpfr_t y;
  mpfr_init2(y, 256);
  for (const Tier& t : f.tiers) {
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
      f.mpfr_log(y, y, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(got, y, t.bits), bound) << t.name << " x " << luxtk::hexfloat(x);
    }
  }
  mpfr_clear(y);
}

}  // namespace logtest
