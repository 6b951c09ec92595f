// Checks shared by the Asinh/Acosh/Atanh tests of both widths: one call on
// lanes given as bit patterns, special values as data rows (stored bits,
// status and flag, alone and inside a block of ordinary lanes), the last
// offending lane winning, lane independence, in-place calls of every length,
// and points checked against MPFR within the tier bound.
#pragma once

#include <mpfr.h>

#include <cstring>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace invhyptest {

using luxtest::bits;
using luxtest::call_unary;
using luxtest::f32;
using luxtest::f64;

inline int width_of(const std::string& name) { return name.find("_64f_") != std::string::npos ? 64 : 32; }

// One call on bit patterns (binary32 patterns in the low half).
struct Bits {
  std::vector<uint64_t> out;
  int status = 0;
  uint32_t flags = 0;
};
inline Bits run(const std::string& name, const std::vector<uint64_t>& in) {
  Bits b;
  if (width_of(name) == 64) {
    std::vector<double> v;
    for (uint64_t x : in) v.push_back(f64(x));
    const auto r = call_unary(name.c_str(), v);
    for (double d : r.out) b.out.push_back(bits(d));
    b.status = r.status, b.flags = r.flags;
  } else {
    std::vector<float> v;
    for (uint64_t x : in) v.push_back(f32(uint32_t(x)));
    const auto r = call_unary(name.c_str(), v);
    for (float f : r.out) b.out.push_back(bits(f));
    b.status = r.status, b.flags = r.flags;
  }
  return b;
}

// The same in place: one array is source and result.
inline std::vector<uint64_t> run_in_place(const std::string& name, const std::vector<uint64_t>& in) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  void* fn = luxtk::export_address(name.c_str());
  std::vector<uint64_t> out;
  if (width_of(name) == 64) {
    std::vector<double> io;
    for (uint64_t b : in) io.push_back(f64(b));
    luxtk::run_clean([&] {
      return luxtk::invoke(*e, fn, io.data(), nullptr, nullptr, io.data(), nullptr, int(io.size()));
    });
    for (double d : io) out.push_back(bits(d));
  } else {
    std::vector<float> io;
    for (uint64_t b : in) io.push_back(f32(uint32_t(b)));
    luxtk::run_clean([&] {
      return luxtk::invoke(*e, fn, io.data(), nullptr, nullptr, io.data(), nullptr, int(io.size()));
    });
    for (float f : io) out.push_back(bits(f));
  }
  return out;
}

// Matches any NaN in an expectation.
inline constexpr uint64_t kAnyNaN = ~uint64_t(0);

inline bool is_nan_bits(uint64_t b, int width) {
  return width == 64 ? (b & 0x7FFFFFFFFFFFFFFF) > 0x7FF0000000000000 : (b & 0x7FFFFFFF) > 0x7F800000;
}

// A special-value row: export, input, the bits stored and the status.
struct Case {
  const char* name;
  uint64_t in, out;
  int status;
};

inline uint32_t flag_of(int status) {
  if (status == luxWarnDomain) return luxtk::kInvalid;
  return status == luxWarnSingularity ? uint32_t(luxtk::kDivByZero) : 0u;
}

// Every row alone (tail) and at lane 3 of a block of 8 ordinary lanes (a
// masked or a scalar-routine block): same bits, same status, its flag.
inline void expect_cases(const std::vector<Case>& cases, uint64_t ordinary64, uint64_t ordinary32) {
  for (const Case& c : cases) {
    const int w = width_of(c.name);
    for (int pos : {-1, 3}) {
      std::vector<uint64_t> in(pos < 0 ? 1 : 8, w == 64 ? ordinary64 : ordinary32);
      const size_t at = pos < 0 ? 0 : size_t(pos);
      in[at] = c.in;
      const Bits r = run(c.name, in);
      if (c.out == kAnyNaN)
        EXPECT_TRUE(is_nan_bits(r.out[at], w)) << c.name << " x " << std::hex << c.in << " got " << r.out[at];
      else
        EXPECT_EQ(r.out[at], c.out) << c.name << " x " << std::hex << c.in
                                    << (pos < 0 ? " alone" : " in a block");
      EXPECT_EQ(r.status, c.status) << c.name << " x " << std::hex << c.in;
      if (c.status != 0)
        EXPECT_TRUE(r.flags & flag_of(c.status)) << c.name << " flags " << luxtk::flag_names(r.flags);
      else
        EXPECT_FALSE(r.flags & (luxtk::kDivByZero | luxtk::kOverflow))
            << c.name << " x " << std::hex << c.in << " flags " << luxtk::flag_names(r.flags);
    }
  }
}

// Statuses over an array, for one width's Atanh and Acosh tiers: of several
// offending lanes the last decides; a later NaN lane, which sets nothing,
// does not clear it.  The values are given in the width's bits: 1/2, 1, 2
// and a quiet NaN, and an ordinary Acosh lane.
struct StatusValues {
  uint64_t half, one, two, neg_one, neg_two, qnan, acosh_ordinary;
};
template <size_t NA, size_t NC>
inline void expect_last_offending_lane_wins(const char* const (&atanh)[NA], const char* const (&acosh)[NC],
                                            const StatusValues& v) {
  for (const char* f : atanh) {
    std::vector<uint64_t> in(13, v.half);
    in[5] = v.one, in[9] = v.two;
    EXPECT_EQ(run(f, in).status, luxWarnDomain) << f;
    in[5] = v.neg_two, in[9] = v.neg_one;
    EXPECT_EQ(run(f, in).status, luxWarnSingularity) << f;
    in.assign(13, v.half);
    in[1] = v.one, in[12] = v.qnan;
    EXPECT_EQ(run(f, in).status, luxWarnSingularity) << f;
  }
  for (const char* f : acosh) {
    std::vector<uint64_t> in(13, v.acosh_ordinary);
    in[2] = v.half, in[11] = v.qnan;
    EXPECT_EQ(run(f, in).status, luxWarnDomain) << f;
    in.assign(13, v.acosh_ordinary);
    EXPECT_EQ(run(f, in).status, 0) << f;
  }
}

// Each lane of a long call (blocks with and without offending lanes, and a
// tail) equals the same lane computed alone, and the in-place call gives the
// same bits, for every length up to the whole array.
inline void expect_lanes_independent_and_in_place(const std::string& name, const std::vector<uint64_t>& in,
                                                  bool check_alone = true) {
  const Bits whole = run(name, in);
  for (size_t i = 0; i < in.size() && check_alone; ++i)
    EXPECT_EQ(run(name, {in[i]}).out[0], whole.out[i]) << name << " lane " << i << " x " << std::hex << in[i];
  for (size_t n = 1; n <= in.size(); ++n) {
    const std::vector<uint64_t> part(in.begin(), in.begin() + long(n));
    const Bits r = run(name, part);
    const std::vector<uint64_t> io = run_in_place(name, part);
    for (size_t i = 0; i < n; ++i) {
      EXPECT_EQ(r.out[i], whole.out[i]) << name << " len " << n << " lane " << i;
      EXPECT_EQ(io[i], whole.out[i]) << name << " in place, len " << n << " lane " << i;
    }
  }
}

// Points against MPFR within the export's tier bound.
inline void expect_within_bound(const std::string& name, int (*f)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t),
                                const std::vector<double>& xs) {
  mpfr_t y;
  mpfr_init2(y, 256);
  const int w = width_of(name);
  std::vector<uint64_t> in;
  for (double x : xs) in.push_back(w == 64 ? bits(x) : bits(float(x)));
  const Bits r = run(name, in);
  const double bound = luxtk::tier_bound_ulps(name.c_str() + name.size() - 3);
  for (size_t i = 0; i < in.size(); ++i) {
    const double x = w == 64 ? f64(in[i]) : double(f32(uint32_t(in[i])));
    const double got = w == 64 ? f64(r.out[i]) : double(f32(uint32_t(r.out[i])));
    mpfr_set_d(y, x, MPFR_RNDN);
    f(y, y, MPFR_RNDN);
    EXPECT_LE(luxtk::ulp_error(got, y, w), bound) << name << " x " << luxtk::hexfloat(x);
  }
  mpfr_clear(y);
}

}  // namespace invhyptest
