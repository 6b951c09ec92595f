// Pow and Powx on binary64: tables against their rules, the special-value rows
// for both shapes, negative bases, the edges of the range, exact powers,
// in-place calls, the Powx shortcuts, and MPFR sweeps.
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "pow_cases.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f64;

const char* const kPow[] = {"luxsPow_64f_A26", "luxsPow_64f_A50", "luxsPow_64f_A53"};
const char* const kPowx[] = {"luxsPowx_64f_A26", "luxsPowx_64f_A50", "luxsPowx_64f_A53"};

using C = pow_cases::PowCases<double>;
using U = C::U;
using Out = C::Out;
using Row = C::Row;
constexpr U kPInf = C::kPInf, kNInf = C::kNInf, kNZero = C::kNZero, kQNaN = C::kQNaN, kSNaN = C::kSNaN;
constexpr U kDefaultNaN = C::kDefaultNaN, kOne = C::kOne, kNOne = C::kNOne;
U d(double v) { return C::d(v); }
Out pow_call(const char* name, const std::vector<U>& a, const std::vector<U>& b) {
  return C::pow_call(name, a, b);
}
Out powx_call(const char* name, const std::vector<U>& a, U x) { return C::powx_call(name, a, x); }
U powx_expected(const Row& r, const std::string& name) { return C::powx_expected(r, name, "A53"); }
const std::vector<Row> kSpecialRows = C::special_rows();

TEST(Pow64, SpecialValueRowsAloneAndInsideABlock) {
  for (const char* name : kPow) {
    for (const Row& r : kSpecialRows) {
      SCOPED_TRACE(std::string(name) + " row " + r.what);
      const Out one = pow_call(name, {r.a}, {r.b});
      EXPECT_EQ(one.r[0], r.want) << std::hex << one.r[0];
      EXPECT_EQ(one.status, r.status);
      if (r.status == 19) {
        EXPECT_TRUE(one.flags & luxtk::kInvalid);
      }
      // Lane 1 of a block of four with ordinary neighbours: the block is redone.
      const Out blk =
          pow_call(name, {d(1.5), r.a, d(0.75), d(3.0), d(2.0)}, {d(2.5), r.b, d(-1.25), d(0.5), d(3.0)});
      EXPECT_EQ(blk.r[1], r.want);
      EXPECT_EQ(blk.status, r.status);
      EXPECT_EQ(blk.r[4], d(8.0));
    }
  }
  for (const char* name : kPowx) {
    for (const Row& r : kSpecialRows) {
      SCOPED_TRACE(std::string(name) + " row " + r.what);
      const Out o = powx_call(name, {d(1.5), r.a, d(0.75), d(3.0), r.a}, r.b);
      EXPECT_EQ(o.r[1], powx_expected(r, name)) << std::hex << o.r[1];
      EXPECT_EQ(o.r[4], powx_expected(r, name)) << "tail lane";
      EXPECT_EQ(o.status, r.status);
    }
  }
}

TEST(Pow64, DomainStatusRaisesInvalidAndStoresEveryLane) {
  for (const char* name : kPow) {
    const Out o = pow_call(name, {d(-8.0), d(2.0), 0, d(-8.0), d(4.0)},
                           {d(1.0 / 3.0), d(3.0), d(-1.0), d(3.0), d(0.5)});
    EXPECT_EQ(o.status, 19) << name;
    EXPECT_TRUE(o.flags & luxtk::kInvalid) << name;
    EXPECT_EQ(o.r[0], kDefaultNaN);
    EXPECT_EQ(o.r[1], d(8.0));
    EXPECT_EQ(o.r[2], kPInf);
    EXPECT_EQ(o.r[3], d(-512.0)) << name;
    EXPECT_EQ(o.r[4], d(2.0));
  }
}

TEST(Pow64, NegativeBases) {
  struct Case {
    double a, b, want;
  };
  const Case cases[] = {{-8.0, 3.0, -512.0},       {-2.0, -1.0, -0.5},         {-2.0, 10.0, 1024.0},
                        {-3.0, 2.0, 9.0},          {-0.5, -3.0, -8.0},         {-1.0, 0x1p60, 1.0},
                        {-1.0, 1e15 + 1, -1.0},    {-2.0, -1074.0, 0x1p-1074}, {-2.0, -1075.0, -0.0},
                        {-2.0, 1025.0, -INFINITY}, {-2.0, 1024.0, INFINITY},   {-0x1p-1074, 1.0, -0x1p-1074}};
  for (const char* name : kPow)
    for (const Case& c : cases) {
      const Out o = pow_call(name, {d(c.a)}, {d(c.b)});
      const double got = f64(o.r[0]);
      if (std::string(name).find("A53") != std::string::npos || std::fabs(c.a) == 2.0 ||
          std::fabs(c.a) == 1.0) {
        EXPECT_EQ(o.r[0], d(c.want)) << name << " " << c.a << "^" << c.b << " got " << got;
      } else {
        EXPECT_EQ(std::signbit(got), std::signbit(c.want)) << name << " " << c.a << "^" << c.b;
        EXPECT_NEAR(got / c.want, 1.0, 0x1p-24) << name << " " << c.a << "^" << c.b;
      }
      EXPECT_EQ(o.status, 0);
    }
}

TEST(Pow64, RangeEdgesAndExactPowers) {
  struct Case {
    double a, b, want;
  };
  // Results that are powers of two come out exact at every tier; the others at A53.
  const Case cases[] = {
      {2.0, 1024.0, INFINITY},
      {2.0, 1023.0, 0x1p1023},
      {0.5, -1023.0, 0x1p1023},
      {2.0, -1022.0, 0x1p-1022},
      {2.0, -1023.0, 0x1p-1023},
      {2.0, -1030.0, 0x1p-1030},
      {2.0, -1074.0, 0x1p-1074},
      {2.0, -1075.0, 0.0},
      {2.0, -1080.0, 0.0},
      {4.0, -537.0, 0x1p-1074},
      {0x1p-1074, 0.5, 0x1p-537},
      {0x1p-1060, 0.25, 0x1p-265},
      {1e300, 2.0, INFINITY},
      {1e-300, 2.0, 0.0},
      {10.0, 15.0, 1e15},
      {3.0, 20.0, 3486784401.0},
      {9.0, 0.5, 3.0},
      {0.25, -0.5, 2.0},
      {16.0, 0.25, 2.0},
      {1.0, 1e300, 1.0},
      {7.0, 1.0, 7.0},
      {0x1.fffffffffffffp1023, 1.0, 0x1.fffffffffffffp1023},
      {0x1p-1074, 1.0, 0x1p-1074},
  };
  for (const char* name : kPow)
    for (const Case& c : cases) {
      int e;
      const bool pow2 = c.want == 0 || std::isinf(c.want) || std::frexp(c.want, &e) == 0.5 || c.a == 1.0;
      if (!pow2 && std::string(name).find("A53") == std::string::npos) continue;
      const Out o = pow_call(name, {d(c.a)}, {d(c.b)});
      EXPECT_EQ(o.r[0], d(c.want)) << name << " " << c.a << "^" << c.b << " got " << f64(o.r[0]);
      EXPECT_EQ(o.status, 0) << "no overflow or underflow status from this family";
    }
}

TEST(Pow64, InPlaceThroughEitherSource) {
  std::vector<uint64_t> a, b;
  for (int i = 0; i < 23; ++i) {
    a.push_back(d(0.3 + 0.7 * i));
    b.push_back(d(-3.5 + 0.41 * i));
  }
  a[5] = d(-2.0);  // a failing block, redone by the call-out
  b[5] = d(3.0);
  a[14] = 0;
  for (const char* name : kPow) {
    const Out want = pow_call(name, a, b);
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    void* fn = luxtk::export_address(name);
    std::vector<uint64_t> x = a;
    const int s1 = luxtk::invoke(*e, fn, x.data(), b.data(), nullptr, x.data(), nullptr, int(x.size()));
    EXPECT_EQ(x, want.r) << name << " dst = src1";
    std::vector<uint64_t> y = b;
    const int s2 = luxtk::invoke(*e, fn, a.data(), y.data(), nullptr, y.data(), nullptr, int(y.size()));
    EXPECT_EQ(y, want.r) << name << " dst = src2";
    EXPECT_EQ(s1, want.status);
    EXPECT_EQ(s2, want.status);
  }
  for (const char* name : kPowx) {
    const Out want = powx_call(name, a, d(1.75));
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    std::vector<uint64_t> x = a;
    const uint64_t xv = d(1.75);
    luxtk::invoke(*e, luxtk::export_address(name), x.data(), nullptr, &xv, x.data(), nullptr, int(x.size()));
    EXPECT_EQ(x, want.r) << name;
  }
}

TEST(Pow64, PowxShortcutsAreThePlainProducts) {
  const std::vector<uint64_t> a = {d(1.1), d(-3.3), kPInf, kNInf, kNZero, kQNaN, d(1e200), d(7e-110), d(0.9)};
  auto product = [](uint64_t x, int k) {
    volatile double v = f64(x);
    const double s = v * v;
    return d(k == 2 ? s : k == 3 ? s * v : s * s);
  };
  for (const char* name : kPowx) {
    const bool products = std::string(name).find("A53") == std::string::npos;
    for (int k : {2, 3, 4}) {
      const Out o = powx_call(name, a, d(double(k)));
      EXPECT_EQ(o.status, 0);
      if (k == 2 || products) {
        for (size_t i = 0; i < a.size(); ++i)
          EXPECT_EQ(o.r[i], product(a[i], k)) << name << " x=" << k << " lane " << i;
      } else {
        // A53 takes the general path for 3 and 4: a signalling NaN is copied.
        EXPECT_EQ(powx_call(name, {kSNaN}, d(double(k))).r[0], kSNaN);
        EXPECT_EQ(o.r[0], d(k == 3 ? 1.3310000000000004 : 1.4641000000000004)) << std::hex << o.r[0];
      }
    }
  }
}

// The tables against their rules (the generator's, independently restated).
namespace table {
const uint64_t R1024[] = {
#include "powers/pow_table_r1024.inc"
};
const uint64_t L1024[][2] = {
#include "powers/pow_table_l1024.inc"
};
const uint64_t R64[] = {
#include "powers/pow_table_r64.inc"
};
const uint64_t L64[][2] = {
#include "powers/pow_table_l64.inc"
};
const uint64_t T[][2] = {
#include "powers/pow_table_dexp.inc"
};
}  // namespace table

void check_r_l(const uint64_t* r, const uint64_t (*l)[2], int k) {
  mpfr_t x, y;
  mpfr_inits2(300, x, y, (mpfr_ptr)0);
  EXPECT_EQ(r[0], 0x3FF7154740000000u);
  EXPECT_EQ(r[k], 0x3FE7154740000000u);
  EXPECT_EQ(l[0][0] | l[0][1] | l[k][0] | l[k][1], 0u);
  for (int i = 0; i <= k; ++i) {
    // R[i] = log2(e)/(1 + i/K) truncated to 23 bits: R <= exact < R + ulp23(R).
    mpfr_set_ui(x, 1, MPFR_RNDN);
    mpfr_exp(x, x, MPFR_RNDN);
    mpfr_log2(x, x, MPFR_RNDN);
    mpfr_mul_ui(x, x, k, MPFR_RNDN);
    mpfr_div_ui(x, x, k + i, MPFR_RNDN);
    const double ri = f64(r[i]);
    EXPECT_EQ(r[i] & ((1ull << 30) - 1), 0u) << i;
    mpfr_set_d(y, ri, MPFR_RNDN);
    EXPECT_LE(mpfr_cmp(y, x), 0) << i;
    mpfr_set_d(y, ri + std::ldexp(1.0, std::ilogb(ri) - 22), MPFR_RNDN);
    EXPECT_GT(mpfr_cmp(y, x), 0) << i;
    // L[i] = log2(R[0]/R[i]) (- 1 from K/2): hi + lo within 2^-71 (lo, below 2^-20, rounds at 2^-53 of
    // itself).
    mpfr_set_d(x, f64(r[0]), MPFR_RNDN);
    mpfr_div_d(x, x, ri, MPFR_RNDN);
    mpfr_log2(x, x, MPFR_RNDN);
    if (i >= k / 2) mpfr_sub_ui(x, x, 1, MPFR_RNDN);
    mpfr_sub_d(x, x, f64(l[i][0]), MPFR_RNDN);
    mpfr_sub_d(x, x, f64(l[i][1]), MPFR_RNDN);
    EXPECT_TRUE(mpfr_zero_p(x) || mpfr_get_exp(x) < -70) << i;
    EXPECT_EQ(l[i][0] & ((1ull << 33) - 1), 0u) << "high part of L cut to 20 bits, " << i;
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

TEST(Pow64, TablesFollowTheirRules) {
  check_r_l(table::R1024, table::L1024, 1024);
  check_r_l(table::R64, table::L64, 64);
  EXPECT_EQ(table::T[0][0], kOne);
  EXPECT_EQ(table::T[0][1], 0u);
  mpfr_t x;
  mpfr_init2(x, 300);
  for (int j = 0; j < 128; ++j) {
    mpfr_set_si(x, j, MPFR_RNDN);
    mpfr_div_ui(x, x, 128, MPFR_RNDN);
    mpfr_exp2(x, x, MPFR_RNDN);
    EXPECT_EQ(table::T[j][0], d(mpfr_get_d(x, MPFR_RNDN))) << j;
    mpfr_sub_d(x, x, f64(table::T[j][0]), MPFR_RNDN);
    EXPECT_EQ(table::T[j][1], d(mpfr_get_d(x, MPFR_RNDN))) << j;
  }
  mpfr_clear(x);
}

TEST(Pow64, NextToTheLargestFiniteStaysFinite) {
  for (const char* name : kPow) C::expect_finite_at_the_top(name, false);
  for (const char* name : kPowx) C::expect_finite_at_the_top(name, true);
}

TEST(Pow64, Accuracy) { luxtest::expect_family_accuracy("Pow", 64); }

TEST(Pow64, PowxAccuracy) { luxtest::expect_family_accuracy("Powx", 64); }

}  // namespace
