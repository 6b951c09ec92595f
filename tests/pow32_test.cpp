// Pow and Powx on binary32: tables against their rules, the special-value rows
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

const char* const kPow[] = {"luxsPow_32f_A11", "luxsPow_32f_A21", "luxsPow_32f_A24"};
const char* const kPowx[] = {"luxsPowx_32f_A11", "luxsPowx_32f_A21", "luxsPowx_32f_A24"};

using C = pow_cases::PowCases<float>;
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
U powx_expected(const Row& r, const std::string& name) { return C::powx_expected(r, name, "A24"); }
const std::vector<Row> kSpecialRows = C::special_rows();
float f32v(uint32_t b) { return luxtest::f32(b); }

TEST(Pow32, SpecialValueRowsAloneAndInsideABlock) {
  for (const char* name : kPow) {
    for (const Row& r : kSpecialRows) {
      SCOPED_TRACE(std::string(name) + " row " + r.what);
      const Out one = pow_call(name, {r.a}, {r.b});
      EXPECT_EQ(one.r[0], r.want) << std::hex << one.r[0];
      EXPECT_EQ(one.status, r.status);
      if (r.status == 19) {
        EXPECT_TRUE(one.flags & luxtk::kInvalid);
      }
      std::vector<uint32_t> a(9, d(1.5)), b(9, d(2.0));
      a[3] = r.a;
      b[3] = r.b;
      const Out blk = pow_call(name, a, b);
      EXPECT_EQ(blk.r[3], r.want);
      EXPECT_EQ(blk.status, r.status);
      EXPECT_EQ(blk.r[8], d(2.25));
    }
  }
  for (const char* name : kPowx) {
    for (const Row& r : kSpecialRows) {
      SCOPED_TRACE(std::string(name) + " row " + r.what);
      std::vector<uint32_t> a(9, d(1.5));
      a[3] = r.a;
      a[8] = r.a;
      const Out o = powx_call(name, a, r.b);
      EXPECT_EQ(o.r[3], powx_expected(r, name)) << std::hex << o.r[3];
      EXPECT_EQ(o.r[8], powx_expected(r, name)) << "tail lane";
      EXPECT_EQ(o.status, r.status);
    }
  }
}

TEST(Pow32, NegativeBasesEdgesAndExactPowers) {
  struct Case {
    double a, b, want;
  };
  const Case cases[] = {
      {-8.0, 3.0, -512.0},       {-2.0, -1.0, -0.5},        {-2.0, 10.0, 1024.0},
      {-3.0, 2.0, 9.0},          {-0.5, -3.0, -8.0},        {-1.0, 0x1p40, 1.0},
      {-1.0, 16777215.0, -1.0},  {-2.0, -149.0, -0x1p-149}, {-2.0, -151.0, -0.0},
      {-2.0, 129.0, -INFINITY},  {2.0, 128.0, INFINITY},    {2.0, 127.0, 0x1p127},
      {2.0, -126.0, 0x1p-126},   {2.0, -130.0, 0x1p-130},   {2.0, -149.0, 0x1p-149},
      {2.0, -150.0, 0.0},        {2.0, -160.0, 0.0},        {0x1p-148, 0.5, 0x1p-74},
      {1e30, 2.0, INFINITY},     {1e-30, 2.0, 0.0},         {10.0, 7.0, 1e7},
      {3.0, 10.0, 59049.0},      {9.0, 0.5, 3.0},           {0.25, -0.5, 2.0},
      {16.0, 0.25, 2.0},         {7.0, 1.0, 7.0},           {0x1.fffffep127, 1.0, 0x1.fffffep127},
      {0x1p-149, 1.0, 0x1p-149},
  };
  for (const char* name : kPow)
    for (const Case& c : cases) {
      const Out o = pow_call(name, {d(c.a)}, {d(c.b)});
      EXPECT_EQ(o.r[0], d(c.want)) << name << " " << c.a << "^" << c.b << " got " << f32v(o.r[0]);
      EXPECT_EQ(o.status, 0);
    }
  // The same in blocks of eight: the vector path where the lanes allow it.
  for (const char* name : kPow) {
    const Out o = pow_call(name, std::vector<uint32_t>(8, d(3.0)), std::vector<uint32_t>(8, d(10.0)));
    for (uint32_t r : o.r) EXPECT_EQ(r, d(59049.0)) << name;
  }
}

TEST(Pow32, InPlaceThroughEitherSource) {
  std::vector<uint32_t> a, b;
  for (int i = 0; i < 37; ++i) {
    a.push_back(d(0.3 + 0.7 * i));
    b.push_back(d(-3.5 + 0.21 * i));
  }
  a[5] = d(-2.0);
  b[5] = d(3.0);
  a[20] = 0;
  for (const char* name : kPow) {
    const Out want = pow_call(name, a, b);
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    void* fn = luxtk::export_address(name);
    std::vector<uint32_t> x = a;
    luxtk::invoke(*e, fn, x.data(), b.data(), nullptr, x.data(), nullptr, int(x.size()));
    EXPECT_EQ(x, want.r) << name << " dst = src1";
    std::vector<uint32_t> y = b;
    luxtk::invoke(*e, fn, a.data(), y.data(), nullptr, y.data(), nullptr, int(y.size()));
    EXPECT_EQ(y, want.r) << name << " dst = src2";
  }
  for (const char* name : kPowx) {
    const Out want = powx_call(name, a, d(1.75));
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    std::vector<uint32_t> x = a;
    const uint32_t xv = d(1.75);
    luxtk::invoke(*e, luxtk::export_address(name), x.data(), nullptr, &xv, x.data(), nullptr, int(x.size()));
    EXPECT_EQ(x, want.r) << name;
  }
}

TEST(Pow32, PowxShortcutsAreThePlainProducts) {
  const std::vector<uint32_t> a = {d(1.1), d(-3.3), kPInf, kNInf, kNZero, kQNaN, d(1e20), d(7e-11), d(0.9)};
  auto product = [](uint32_t x, int k) {
    volatile float v = f32v(x);
    const float s = v * v;
    return bits(k == 2 ? s : k == 3 ? s * v : s * s);
  };
  for (const char* name : kPowx) {
    const bool products = std::string(name).find("A24") == std::string::npos;
    for (int k : {2, 3, 4}) {
      const Out o = powx_call(name, a, d(double(k)));
      EXPECT_EQ(o.status, 0);
      if (k == 2 || products)
        for (size_t i = 0; i < a.size(); ++i)
          EXPECT_EQ(o.r[i], product(a[i], k)) << name << " x=" << k << " lane " << i;
      else
        EXPECT_EQ(powx_call(name, {kSNaN}, d(double(k))).r[0], kSNaN) << "A24 takes the general path";
    }
  }
}

namespace table {
const uint64_t Log[][2] = {
#include "powers/pow_table_slog.inc"
};
const uint32_t Exp[][2] = {
#include "powers/pow_table_sexp.inc"
};
}  // namespace table

TEST(Pow32, TablesFollowTheirRules) {
  EXPECT_EQ(table::Log[0][0], 0u);
  EXPECT_EQ(table::Log[0][1], 0x3FF0000000000000u);
  EXPECT_EQ(table::Exp[0][0], 0x3F800000u);
  EXPECT_EQ(table::Exp[0][1], 0u);
  EXPECT_EQ(table::Exp[1][0], 0x3F80B1EDu);
  EXPECT_EQ(table::Exp[1][1], 0x331ED669u);
  mpfr_t x, y;
  mpfr_inits2(300, x, y, (mpfr_ptr)0);
  for (int i = 0; i <= 256; ++i) {
    mpfr_set_ui(x, 256 + i, MPFR_RNDN);
    mpfr_div_ui(x, x, 256, MPFR_RNDN);
    mpfr_ui_div(y, 1, x, MPFR_RNDN);
    mpfr_log(x, x, MPFR_RNDN);
    EXPECT_EQ(table::Log[i][0], bits(mpfr_get_d(x, MPFR_RNDN))) << i;
    EXPECT_EQ(table::Log[i][1], bits(mpfr_get_d(y, MPFR_RNDN))) << i;
  }
  for (int j = 0; j < 128; ++j) {
    mpfr_set_si(x, j, MPFR_RNDN);
    mpfr_div_ui(x, x, 128, MPFR_RNDN);
    mpfr_exp2(x, x, MPFR_RNDN);
    const float h = mpfr_get_flt(x, MPFR_RNDN);
    EXPECT_EQ(table::Exp[j][0], bits(h)) << j;
    mpfr_sub_d(x, x, double(h), MPFR_RNDN);
    mpfr_div_d(x, x, double(h), MPFR_RNDN);
    EXPECT_EQ(table::Exp[j][1], bits(mpfr_get_flt(x, MPFR_RNDN))) << j;
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

TEST(Pow32, NextToTheLargestFiniteStaysFinite) {
  for (const char* name : kPow) C::expect_finite_at_the_top(name, false);
  for (const char* name : kPowx) C::expect_finite_at_the_top(name, true);
}

TEST(Pow32, Accuracy) { luxtest::expect_family_accuracy("Pow", 32); }

TEST(Pow32, PowxAccuracy) { luxtest::expect_family_accuracy("Powx", 32); }

}  // namespace
