// luxsSin_64f_* and luxsCos_64f_*: the grid tables against their rule and
// their quoted rows, special lanes and their statuses, exact small arguments,
// the range limit seen through the block redo, the A26 tier under the
// caller's MXCSR, lane independence, in-place calls, huge arguments against
// MPFR, and the accuracy sweep.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "gen/gen_common.h"
#include "scalar/trig_scalar.h"
#include "sincos_cases.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::call_unary;
using luxtest::f64;

// ---------------------------------------------------------------------------
// Tables.

struct Entry {
  uint64_t cos_tail, sin_head, sin_tail, cos_head;
};
const Entry kHaSin[] = {
#include "trig/sincos_ha_sin.inc"
};
const Entry kHaCos[] = {
#include "trig/sincos_ha_cos.inc"
};
const Entry kLaSin[] = {
#include "trig/sincos_la_sin.inc"
};
const Entry kLaCos[] = {
#include "trig/sincos_la_cos.inc"
};
const uint64_t kEp[][2] = {
#include "trig/sincos_ep.inc"
};

// The rule, from MPFR at 300 bits: a = (2k + quarter * steps) pi / (2 steps).
struct Exact {
  mpfr_t s, c;
  Exact(long k, long steps, int quarter) {
    mpfr_inits2(300, s, c, (mpfr_ptr)0);
    const long num = 2 * k + quarter * steps, den = 2 * steps;
    mpfr_const_pi(s, MPFR_RNDN);
    mpfr_mul_si(s, s, num, MPFR_RNDN);
    mpfr_div_si(s, s, den, MPFR_RNDN);
    mpfr_sin_cos(s, c, s, MPFR_RNDN);
    if (num % den == 0) mpfr_set_zero(s, 1);                                      // a multiple of pi
    if ((2 * num) % den == 0 && ((2 * num) / den) % 2 != 0) mpfr_set_zero(c, 1);  // odd multiple of pi/2
  }
  ~Exact() { mpfr_clears(s, c, (mpfr_ptr)0); }
};

void expect_entries_follow_rule(const Entry* table, long count, long steps, int quarter) {
  mpfr_t d;
  mpfr_init2(d, 300);
  for (long k = 0; k < count; ++k) {
    SCOPED_TRACE(testing::Message() << "entry " << k);
    const Exact e(k, steps, quarter);
    const Entry& t = table[k];
    // CosHead: a signed power of two (or zero) within the 1.5 * 2^m boundaries.
    const double ch = f64(t.cos_head);
    if (mpfr_zero_p(e.c)) {
      EXPECT_EQ(ch, 0.0);
    } else {
      int ex;
      EXPECT_EQ(std::frexp(std::fabs(ch), &ex), 0.5);
      EXPECT_EQ(ch < 0, mpfr_sgn(e.c) < 0);
      mpfr_abs(d, e.c, MPFR_RNDN);
      EXPECT_LT(mpfr_cmp_d(d, 0.75 * std::fabs(ch) * 2), 0);  // |cos a| < 1.5 CosHead
      EXPECT_GE(mpfr_cmp_d(d, 0.75 * std::fabs(ch)), 0);      // |cos a| >= 0.75 CosHead
    }
    mpfr_sub_d(d, e.c, ch, MPFR_RNDN);
    EXPECT_EQ(f64(t.cos_tail), gen::round_to(d, 53));
    EXPECT_EQ(f64(t.sin_head), gen::round_to(e.s, 53));
    mpfr_sub_d(d, e.s, f64(t.sin_head), MPFR_RNDN);
    EXPECT_EQ(f64(t.sin_tail), gen::round_to(d, 24));
  }
  mpfr_clear(d);
}

TEST(SinCos64Tables, FollowTheirRule) {
  ASSERT_EQ(std::size(kHaSin), 128u);
  ASSERT_EQ(std::size(kHaCos), 128u);
  ASSERT_EQ(std::size(kLaSin), 64u);
  ASSERT_EQ(std::size(kLaCos), 64u);
  ASSERT_EQ(std::size(kEp), 64u);
  expect_entries_follow_rule(kHaSin, 128, 64, 0);
  expect_entries_follow_rule(kHaCos, 128, 64, 1);
  expect_entries_follow_rule(kLaSin, 64, 32, 0);
  expect_entries_follow_rule(kLaCos, 64, 32, 1);
  for (long k = 0; k < 64; ++k) {
    const Exact e(k, 32, 0);
    EXPECT_EQ(f64(kEp[k][0]), gen::round_to(e.c, 53)) << k;
    EXPECT_EQ(f64(kEp[k][1]), gen::round_to(e.s, 53)) << k;
  }
}

TEST(SinCos64Tables, QuotedRows) {
  // a = pi/64: CosHead 1, CosTail small and negative; a = pi/4: CosHead 0.5.
  EXPECT_EQ(kHaSin[1].cos_tail, 0xBF53BC390D250439u);
  EXPECT_EQ(kHaSin[1].cos_head, 0x3FF0000000000000u);
  EXPECT_EQ(kHaSin[16].cos_head, 0x3FE0000000000000u);
  EXPECT_EQ(kHaSin[16].cos_tail, 0x3FCA827999FCEF32u);
  EXPECT_EQ(kLaSin[8].cos_tail, 0x3FCA827999FCEF32u);
  // The cosine tables are the sine tables a quarter turn on.
  for (int k = 0; k < 128; ++k)
    EXPECT_EQ(std::memcmp(&kHaCos[k], &kHaSin[(k + 32) % 128], sizeof(Entry)), 0) << k;
  for (int k = 0; k < 64; ++k)
    EXPECT_EQ(std::memcmp(&kLaCos[k], &kLaSin[(k + 16) % 64], sizeof(Entry)), 0) << k;
  // And the LA grid is every other point of the HA one; the EP rows are its heads.
  for (int k = 0; k < 64; ++k) {
    EXPECT_EQ(std::memcmp(&kLaSin[k], &kHaSin[2 * k], sizeof(Entry)), 0) << k;
    EXPECT_EQ(kEp[k][1], kLaSin[k].sin_head) << k;
  }
}

// ---------------------------------------------------------------------------
// Kernels.

const char* const kAll[] = {"luxsSin_64f_A26", "luxsSin_64f_A50", "luxsSin_64f_A53",
                            "luxsCos_64f_A26", "luxsCos_64f_A50", "luxsCos_64f_A53"};

bool is_sin(const std::string& name) { return name.rfind("luxsSin", 0) == 0; }

double call_out(const std::string& name, double x) {
  double out = 0;
  luxStatus st = 0;
  const bool s = is_sin(name);
  if (name.ends_with("A26"))
    (s ? orkdSin_SC_LA : orkdCos_SC_LA)(0, &x, &out, &st);
  else
    (s ? orkdSin_SC : orkdCos_SC)(0, &x, &out, &st, "");
  return out;
}

std::vector<double> block_with(double x, int at) {
  std::vector<double> v = {0.5, -1.25, 2.0, 3.0};
  v[at] = x;
  return v;
}

TEST(SinCos64, InfinityStoresDefaultNanAndWarnsNanPassesQuietly) {
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    // -Inf at lane 1, +Inf last, in a full block and in the tail; NaNs in a
    // block and in a tail.
    sincostest::expect_infinities_and_nans<double>(name, {4, 7}, 1, true, {4, 2});
  }
}

TEST(SinCos64, ExactSmallArguments) {
  const double tiny[] = {0x1p-1074, -0x1p-1074, 0x1.8p-1030, 0x1p-1022, -0x1.234p-300, 0x1p-60};
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    const bool s = is_sin(name);
    for (int len : {4, 1}) {
      // On the vector path sin(-0.0) is +0.0; cos(+-0) is 1.
      EXPECT_EQ(bits(call_unary(name, std::vector<double>(len, 0.0)).out[0]), s ? 0u : 0x3FF0000000000000u);
      EXPECT_EQ(bits(call_unary(name, std::vector<double>(len, -0.0)).out[0]), s ? 0u : 0x3FF0000000000000u);
      for (double x : tiny) {
        const auto r = call_unary(name, std::vector<double>(len, x));
        EXPECT_EQ(bits(r.out[0]), s ? bits(x) : 0x3FF0000000000000u) << luxtk::hexfloat(x);
      }
    }
    // Beside a lane that leaves, -0.0 goes through the scalar routine, which
    // keeps the sign in the sine.
    std::vector<double> in = block_with(-0.0, 0);
    in[3] = 1e300;
    EXPECT_EQ(bits(call_unary(name, in).out[0]), s ? 0x8000000000000000u : 0x3FF0000000000000u);
  }
}

TEST(SinCos64, LimitDecidesTheBlockPath) {
  // 90112.0 leaves in A50 and A53 and stays in A26, which leaves from the
  // next high word on (90112.0625).
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    const std::string n = name;
    // (The LA kernel and the scalar core differ only in the order of their
    // last additions, so such lanes are rare there.)
    std::vector<double> candidates(16384);
    for (size_t i = 0; i < candidates.size(); ++i) candidates[i] = 0.37 + 5.31 * double(i);
    const auto vec = call_unary(name, candidates);
    double probe = 0;
    for (size_t i = 0; i < candidates.size() && probe == 0; ++i)
      if (bits(vec.out[i]) != bits(call_out(n, candidates[i]))) probe = candidates[i];
    ASSERT_NE(probe, 0.0) << "no lane tells the two paths apart";
    const uint64_t on_vector_path = bits(call_unary(name, std::vector<double>{probe}).out[0]);
    const uint64_t through_call_out = bits(call_out(n, probe));
    const bool ep = n.ends_with("A26");
    const struct {
      double x;
      bool stays;
    } edges[] = {{90112.0, ep},
                 {-90112.0, ep},
                 {std::nextafter(90112.0, 0.0), true},
                 {f64(0x40F60000FFFFFFFFu), ep},
                 {90112.0625, false},
                 {-90112.0625, false}};
    for (const auto& e : edges) {
      std::vector<double> in = block_with(e.x, 3);
      in[1] = probe;
      const auto r = call_unary(name, in);
      EXPECT_EQ(bits(r.out[1]), e.stays ? on_vector_path : through_call_out) << luxtk::hexfloat(e.x);
      EXPECT_EQ(r.status, luxOk);
    }
  }
}

TEST(SinCos64, EpTierRunsUnderTheCallersMxcsr) {
  // No SSE guard in A26: under flush-to-zero a subnormal gives zero; the
  // guarded tiers give x back whatever the caller sets.
  const std::vector<double> in(4, 0x1p-1060);
  const uint32_t ftz = luxtk::kDefaultMxcsr | luxtk::kFlushToZero;
  EXPECT_EQ(call_unary("luxsSin_64f_A26", in, ftz).out[0], 0.0);
  EXPECT_EQ(call_unary("luxsSin_64f_A53", in, ftz).out[0], 0x1p-1060);
  EXPECT_EQ(call_unary("luxsSin_64f_A50", in, ftz).out[0], 0x1p-1060);
  // And a caller's rounding mode moves its last bits.
  const std::vector<double> x = {0.7, 1.9, 2.3, 5.1};
  const auto up = call_unary("luxsCos_64f_A26", x, luxtk::kDefaultMxcsr | luxtk::kRoundUp);
  const auto down = call_unary("luxsCos_64f_A26", x, luxtk::kDefaultMxcsr | luxtk::kRoundDown);
  EXPECT_NE(up.out, down.out);
}

TEST(SinCos64, LanesAreIndependentOnTheVectorPath) {
  const double values[] = {
      1.5707963267948966, -3.141592653589793, 0.7853981633974483, 123.456, -89999.5, 1e-3};
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    for (double x : values) {
      const uint64_t alone = bits(call_unary(name, std::vector<double>{x}).out[0]);
      for (int at = 0; at < 4; ++at) EXPECT_EQ(bits(call_unary(name, block_with(x, at)).out[at]), alone);
    }
  }
}

TEST(SinCos64, InPlaceThroughTheCallOut) {
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    std::vector<double> in = {1.0, -2.0, 1e300, 0.5, f64(0x7FF0000000000000u), 7.0, 8.0, 9.0, 1e6};
    const auto ref = call_unary(name, in);
    auto f = reinterpret_cast<luxStatus (*)(const lux64f*, lux64f*, int)>(luxtk::export_address(name));
    const luxtk::Outcome o = luxtk::run_clean([&] { return f(in.data(), in.data(), int(in.size())); });
    EXPECT_EQ(o.status, ref.status);
    for (size_t i = 0; i < in.size(); ++i) EXPECT_EQ(bits(in[i]), bits(ref.out[i])) << i;
  }
}

TEST(SinCos64, HugeArgumentsAreReducedExactly) {
  const double huge[] = {1e22, -1e22, DBL_MAX, -DBL_MAX, 0x1p1000, 0x1.921fb54442d18p+60, 131072.0, 90112.0};
  mpfr_t x, y;
  mpfr_inits2(256, x, y, (mpfr_ptr)0);
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    std::vector<double> in(huge, huge + std::size(huge));
    const auto r = call_unary(name, in);
    EXPECT_EQ(r.status, luxOk);
    for (size_t i = 0; i < in.size(); ++i) {
      mpfr_set_d(x, in[i], MPFR_RNDN);
      is_sin(name) ? mpfr_sin(y, x, MPFR_RNDN) : mpfr_cos(y, x, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(r.out[i], y, 64), 1.0) << luxtk::hexfloat(in[i]);
    }
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

TEST(SinCos64, NearestDoublesToMultiplesOfPiKeepRelativeAccuracy) {
  // The doubles closest to a multiple of pi and of pi/2 below the limit:
  // sin and cos of them are about 1e-18, and a reduction with a rounded
  // product would leave them with no correct bit.
  const double x[] = {0x1.6c6cbc45dc8dep+6, 0x1.6c6cbc45dc8dep+5};
  mpfr_t a, y;
  mpfr_inits2(256, a, y, (mpfr_ptr)0);
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    const auto r = call_unary(name, std::vector<double>(x, x + 2));
    for (int i = 0; i < 2; ++i) {
      mpfr_set_d(a, x[i], MPFR_RNDN);
      is_sin(name) ? mpfr_sin(y, a, MPFR_RNDN) : mpfr_cos(y, a, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(r.out[i], y, 64), luxtk::tier_bound_ulps(std::string(name).substr(12)))
          << luxtk::hexfloat(x[i]);
    }
  }
  mpfr_clears(a, y, (mpfr_ptr)0);
}

TEST(SinCos64, AccuracySin) { luxtest::expect_family_accuracy("Sin", 64); }
TEST(SinCos64, AccuracyCos) { luxtest::expect_family_accuracy("Cos", 64); }

}  // namespace
