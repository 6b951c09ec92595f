// Cbrt, InvCbrt and Pow2o3 on both widths: the tables against their rules,
// the special values with their statuses and flags in block and tail lanes,
// odd and even symmetry bit for bit, exact cubes, lane independence (and the
// one place where a binary32 lane depends on its block), in-place calls and
// accuracy.
#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "gen/gen_common.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f32;
using luxtest::f64;

// ---------------------------------------------------------------------------
// Tables.

constexpr uint64_t kRcp[32] = {
#include "powers/cbrt_rcp_table.inc"
};
constexpr uint64_t kCbrtT[96][2] = {
#include "powers/cbrt_d_table.inc"
};
constexpr uint64_t kInvCbrtT[96][2] = {
#include "powers/invcbrt_d_table.inc"
};
constexpr uint32_t kRows4[171][4] = {
#include "powers/cbrt_rows4_table.inc"
};
constexpr uint64_t kRows2[11][2] = {
#include "powers/cbrt_rows2_table.inc"
};

// (2^rem * c_i)^(+-1/3) at 300 bits.
void table_value(mpfr_t v, int rem, int i, bool inverse) {
  mpfr_set_si(v, (65 + 2 * i) << rem, MPFR_RNDN);
  mpfr_div_2ui(v, v, 6, MPFR_RNDN);
  mpfr_cbrt(v, v, MPFR_RNDN);
  if (inverse) mpfr_ui_div(v, 1, v, MPFR_RNDN);
}

TEST(CbrtTables, EqualTheirRule) {
  mpfr_t v, d;
  mpfr_inits2(300, v, d, (mpfr_ptr)0);
  for (int i = 0; i < 32; ++i) {
    mpfr_set_si(v, -64, MPFR_RNDN);
    mpfr_div_si(v, v, 65 + 2 * i, MPFR_RNDN);
    EXPECT_EQ(kRcp[i], gen::bits_of(mpfr_get_d(v, MPFR_RNDN))) << "RCP " << i;
  }
  for (int inv = 0; inv < 2; ++inv)
    for (int rem = 0; rem < 3; ++rem)
      for (int i = 0; i < 32; ++i) {
        const uint64_t* row = inv ? kInvCbrtT[rem * 32 + i] : kCbrtT[rem * 32 + i];
        table_value(v, rem, i, inv);
        EXPECT_EQ(row[0], gen::bits_of(mpfr_get_d(v, MPFR_RNDZ))) << "T " << inv << " " << rem << " " << i;
        mpfr_sub_d(d, v, f64(row[0]), MPFR_RNDN);
        EXPECT_EQ(row[1], gen::bits_of(mpfr_get_d(d, MPFR_RNDN))) << "TL " << inv << " " << rem << " " << i;
      }
  const uint32_t r32[3] = {0x3FCB2FF5u, 0x3F800000u, 0x3FA14518u};  // RN 2^(2/3), 1, 2^(1/3)
  const uint64_t r64[3] = {0x3FF965FEA53D6E3Dull, 0x3FF0000000000000ull, 0x3FF428A2F98D728Bull};
  for (int rem = 0; rem < 3; ++rem) {
    mpfr_set_ui(v, rem == 0 ? 4 : rem == 1 ? 1 : 2, MPFR_RNDN);
    mpfr_cbrt(v, v, MPFR_RNDN);
    EXPECT_EQ(r32[rem], gen::bits_of(mpfr_get_flt(v, MPFR_RNDN)));
    EXPECT_EQ(r64[rem], gen::bits_of(mpfr_get_d(v, MPFR_RNDN)));
  }
  for (int k = 0; k < 171; ++k) {
    bool unused = false;
    for (int j = 0; j < 4; ++j) unused |= ((k >> (2 * j)) & 3) == 3;
    for (int j = 0; j < 4; ++j) EXPECT_EQ(kRows4[k][j], unused ? 0u : r32[(k >> (2 * j)) & 3]) << "row " << k;
  }
  for (int k = 0; k < 11; ++k)
    for (int j = 0; j < 2; ++j) {
      const int d = (k >> (2 * j)) & 3;
      EXPECT_EQ(kRows2[k][j], d == 3 || ((k >> 2) & 3) == 3 || (k & 3) == 3 ? 0u : r64[d]) << "row " << k;
    }
  mpfr_clears(v, d, (mpfr_ptr)0);
}

TEST(CbrtTables, HoldTheQuotedRows) {
  EXPECT_EQ(f64(kRcp[0]), -0.98461538461538467);
  EXPECT_EQ(f64(kRcp[1]), -0.95522388059701491);
  EXPECT_EQ(f64(kCbrtT[0][0]), 1.0051814396472645);
  EXPECT_EQ(f64(kCbrtT[32][0]), 1.2664492547752215);
  EXPECT_EQ(f64(kInvCbrtT[0][0]), 0.99484526927886496);
  EXPECT_EQ(f64(kInvCbrtT[0][1]), 4.1634848191696572e-18);
  // The low part of Cbrt is fixed to within 1.4e-20 of v only.
  EXPECT_NEAR(f64(kCbrtT[0][1]), 1.9889060768381057e-17, 1.4e-20);
  const uint32_t c2 = 0x3FCB2FF5u, c1 = 0x3FA14518u, one = 0x3F800000u;
  for (int j = 0; j < 4; ++j) {
    EXPECT_EQ(kRows4[0][j], c2);
    EXPECT_EQ(kRows4[0x55][j], one);
    EXPECT_EQ(kRows4[0xAA][j], c1);
  }
  EXPECT_EQ(kRows4[0x06][0], c1);
  EXPECT_EQ(kRows4[0x06][1], one);
  EXPECT_EQ(kRows4[0x06][2], c2);
  EXPECT_EQ(kRows4[0x06][3], c2);
}

// ---------------------------------------------------------------------------
// Exports.

template <class T>
std::string name_of(const char* func, int tier) {
  return std::string("luxs") + func + (sizeof(T) == 8 ? "_64f_A" : "_32f_A") + std::to_string(tier);
}
template <class T>
std::vector<int> tiers() {
  return sizeof(T) == 8 ? std::vector<int>{26, 50, 53} : std::vector<int>{11, 21, 24};
}

// Special values: x, Cbrt, InvCbrt and its status, Pow2o3 at the fast and
// the full tiers (binary64 A26 squares the root, A50 and A53 square the
// two-word root; binary32 gives +0 for both zeros at every tier).
// kQuiet stands for "a quiet NaN".
constexpr uint64_t kQuiet = 1;
struct Special64 {
  uint64_t x, cbrt, inv;
  int inv_status;
  uint64_t pow_fast, pow_full;
};
const Special64 kSpecials64[] = {
    {0x0000000000000000, 0x0000000000000000, 0x7FF0000000000000, 18, 0x0000000000000000, 0x0000000000000000},
    {0x8000000000000000, 0x8000000000000000, 0xFFF0000000000000, 18, 0x0000000000000000, 0x8000000000000000},
    {0x7FF0000000000000, 0x7FF0000000000000, 0x0000000000000000, 0, 0x7FF0000000000000, 0x7FF0000000000000},
    {0xFFF0000000000000, 0xFFF0000000000000, 0x8000000000000000, 0, 0x7FF0000000000000, 0x7FF0000000000000},
    {0x7FF4000000000123, 0x7FFC000000000123, 0x7FFC000000000123, 0, kQuiet, kQuiet},
    {0xFFF8000000000042, 0xFFF8000000000042, 0xFFF8000000000042, 0, kQuiet, kQuiet},
    // 2^-1074 takes the scaled path: 2^-358, 2^358, 2^-716.
    {0x0000000000000001, 0x2990000000000000, 0x5650000000000000, 0, 0x1330000000000000, 0x1330000000000000},
    {0x8000000000000001, 0xA990000000000000, 0xD650000000000000, 0, 0x1330000000000000, 0x1330000000000000},
    {0xC020000000000000, 0xC000000000000000, 0xBFE0000000000000, 0, 0x4010000000000000,
     0x4010000000000000},  // -8
};
struct Special32 {
  uint32_t x, cbrt, inv;
  int inv_status;
  uint32_t pow;
};
const Special32 kSpecials32[] = {
    {0x00000000, 0x00000000, 0x7F800000, 18, 0x00000000},
    {0x80000000, 0x80000000, 0xFF800000, 18, 0x00000000},
    {0x7F800000, 0x7F800000, 0x00000000, 0, 0x7F800000},
    {0xFF800000, 0xFF800000, 0x80000000, 0, 0x7F800000},
    {0x7FA00123, 0x7FE00123, 0x7FA00123, 0, kQuiet},  // signalling: kept at A11, A21 (see below)
    {0xFFC00042, 0xFFC00042, 0xFFC00042, 0, kQuiet},
    {0xC1000000, 0xC0000000, 0xBF000000, 0, 0x40800000},  // -8
};

bool same(uint64_t got, uint64_t want, int width) {
  if (want == kQuiet) {
    return width == 64 ? (got & 0x7FF8000000000000ull) == 0x7FF8000000000000ull
                       : (got & 0x7FC00000u) == 0x7FC00000u;
  }
  return got == want;
}

template <class T>
void check_special(const char* func, int tier, uint64_t x, uint64_t want, int status) {
  const std::string name = name_of<T>(func, tier);
  for (int len : {1, 8, 11, 16}) {
    const int at = len == 1 ? 0 : len == 8 ? 5 : len == 11 ? 9 : 2;
    std::vector<T> in(len, T(3.375));
    if constexpr (sizeof(T) == 8)
      in[at] = f64(x);
    else
      in[at] = f32(uint32_t(x));
    const auto r = luxtest::call_unary(name.c_str(), in);
    SCOPED_TRACE(testing::Message() << name << " x " << std::hex << x << std::dec << " len " << len);
    EXPECT_TRUE(same(bits(r.out[at]), want, int(8 * sizeof(T)))) << std::hex << bits(r.out[at]);
    EXPECT_EQ(r.status, status);
    EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, status == 18);
    const bool snan = sizeof(T) == 8 ? (x & 0x7FF8000000000000ull) == 0x7FF0000000000000ull && (x << 12) != 0
                                     : (x & 0x7FC00000u) == 0x7F800000u && (x & 0x3FFFFF) != 0;
    if (!snan) {
      EXPECT_EQ(r.flags & (luxtk::kInvalid | luxtk::kOverflow | luxtk::kUnderflow), 0u);
    }
  }
}

TEST(Cbrt64, SpecialValuesStatusesAndFlags) {
  for (const Special64& s : kSpecials64)
    for (int t : tiers<double>()) {
      check_special<double>("Cbrt", t, s.x, s.cbrt, 0);
      check_special<double>("InvCbrt", t, s.x, s.inv, s.inv_status);
      check_special<double>("Pow2o3", t, s.x, t == 26 ? s.pow_fast : s.pow_full, 0);
    }
}

TEST(Cbrt32, SpecialValuesStatusesAndFlags) {
  for (const Special32& s : kSpecials32) {
    for (int t : tiers<float>()) {
      if (s.x == 0xC1000000 && t != 24) continue;  // exact at the full tier only
      check_special<float>("Cbrt", t, s.x, s.cbrt, 0);
      // A11 and A21 restore a NaN's bits; A24 multiplies it.
      const uint32_t inv = s.x == 0x7FA00123 && t == 24 ? 0x7FE00123 : s.inv;
      check_special<float>("InvCbrt", t, s.x, inv, s.inv_status);
      check_special<float>("Pow2o3", t, s.x, s.pow, 0);
    }
  }
  // Denormals: within the tier's bound of the root of the scaled value.
  for (int t : tiers<float>())
    for (const float x : {0x1p-149f, -0x1.8p-140f, 0x1.fffffcp-127f}) {
      const double tol = t == 11 ? 0x1p-10 : t == 21 ? 0x1p-20 : 0x1p-23;
      const auto c = luxtest::call_unary(name_of<float>("Cbrt", t).c_str(), std::vector<float>{x});
      const auto i = luxtest::call_unary(name_of<float>("InvCbrt", t).c_str(), std::vector<float>{x});
      const auto p = luxtest::call_unary(name_of<float>("Pow2o3", t).c_str(), std::vector<float>{x});
      EXPECT_NEAR(c.out[0] / std::cbrt(double(x)), 1.0, tol) << t << " " << x;
      EXPECT_NEAR(i.out[0] * std::cbrt(double(x)), 1.0, tol) << t << " " << x;
      EXPECT_NEAR(p.out[0] / std::pow(std::cbrt(double(x)), 2.0), 1.0, 2 * tol) << t << " " << x;
      EXPECT_EQ(i.status, 0);
    }
}

// All arithmetic runs on |x|: odd functions are odd bit for bit, Pow2o3 even.
template <class T>
void check_symmetry() {
  luxtk::Rng rng(31);
  std::vector<T> x(37), nx(37);
  const double lo = sizeof(T) == 8 ? 0x1p-1074 : 0x1p-149, hi = sizeof(T) == 8 ? 0x1p+1023 : 0x1p+127;
  for (int i = 0; i < 37; ++i) x[i] = T(rng.log_uniform(lo, hi, false)), nx[i] = -x[i];
  for (const char* f : {"Cbrt", "InvCbrt", "Pow2o3"})
    for (int t : tiers<T>()) {
      const std::string name = name_of<T>(f, t);
      const auto p = luxtest::call_unary(name.c_str(), x), n = luxtest::call_unary(name.c_str(), nx);
      const bool even = f[0] == 'P';
      for (int i = 0; i < 37; ++i) {
        const T want = even ? p.out[i] : -p.out[i];
        EXPECT_EQ(bits(n.out[i]), bits(want)) << name << " " << x[i];
      }
    }
}
TEST(Cbrt64, OddAndEvenBitForBit) { check_symmetry<double>(); }
TEST(Cbrt32, OddAndEvenBitForBit) { check_symmetry<float>(); }

TEST(Cbrt64, ExactCubesAtTheFullTier) {
  std::vector<double> x, root;
  for (double k = 1; k < 0x1p17; k = std::floor(k * 1.37) + 1)
    for (int p : {-1020, -300, -3, 0, 3, 300, 969}) {
      if (k * k * k * std::ldexp(1.0, p) >= 0x1p1023) continue;
      x.push_back(k * k * k * std::ldexp(1.0, p));
      root.push_back(k * std::ldexp(1.0, p / 3));
    }
  for (const char* f :
       {"luxsCbrt_64f_A53", "luxsPow2o3_64f_A53", "luxsPow2o3_64f_A50", "luxsInvCbrt_64f_A53"}) {
    const auto r = luxtest::call_unary(f, x);
    for (size_t i = 0; i < x.size(); ++i) {
      const std::string n = f;
      const bool inv = n.find("Inv") != n.npos, pow = n.find("Pow") != n.npos;
      const double want = inv ? 1.0 / root[i] : pow ? root[i] * root[i] : root[i];
      // 1/k is exact only for powers of two.
      if (inv && std::fmod(std::log2(root[i]), 1.0) != 0) continue;
      EXPECT_EQ(r.out[i], want) << f << " " << std::hexfloat << x[i];
    }
  }
}

TEST(Cbrt32, ExactCubesAtTheFullTier) {
  std::vector<float> x, root;
  for (int k = 1; k < 256; k += 1)
    for (int p : {-120, -30, 0, 3, 60}) {
      x.push_back(std::ldexp(float(k * k * k), p));
      root.push_back(std::ldexp(float(k), p / 3));
    }
  const auto c = luxtest::call_unary("luxsCbrt_32f_A24", x);
  const auto q = luxtest::call_unary("luxsPow2o3_32f_A24", x);
  for (size_t i = 0; i < x.size(); ++i) {
    EXPECT_EQ(c.out[i], root[i]) << std::hexfloat << x[i];
    EXPECT_EQ(q.out[i], root[i] * root[i]) << std::hexfloat << x[i];
  }
}

// A lane computes the same alone in a tail and inside a block, also a block
// that another lane sends down the lane routine (binary64) or the special
// path (binary32 InvCbrt, and every binary32 tier of A24).
template <class T>
void check_independence(bool special_blocks_keep_lanes) {
  luxtk::Rng rng(77);
  std::vector<T> x(21);
  for (T& v : x)
    v = T(rng.log_uniform(sizeof(T) == 8 ? 0x1p-900 : 0x1p-120, sizeof(T) == 8 ? 0x1p900 : 0x1p120, true));
  for (const char* f : {"Cbrt", "InvCbrt", "Pow2o3"})
    for (int t : tiers<T>()) {
      const std::string name = name_of<T>(f, t);
      const auto ref = luxtest::call_unary(name.c_str(), x);
      for (int i = 0; i < 21; ++i) {
        const auto one = luxtest::call_unary(name.c_str(), std::vector<T>{x[i]});
        EXPECT_EQ(bits(one.out[0]), bits(ref.out[i])) << name << " lane " << i;
      }
      std::vector<T> y = x;
      y[3] = T(0), y[12] = std::numeric_limits<T>::infinity();
      const auto bad = luxtest::call_unary(name.c_str(), y);
      const bool keeps = special_blocks_keep_lanes || f[0] == 'I' || t == 24;
      if (!keeps) continue;
      for (int i = 0; i < 21; ++i)
        if (i != 3 && i != 12) {
          EXPECT_EQ(bits(bad.out[i]), bits(ref.out[i])) << name << " lane " << i;
        }
    }
}
TEST(Cbrt64, LanesAreIndependentOfTheirBlock) { check_independence<double>(true); }
TEST(Cbrt32, LanesAreIndependentOfTheirBlock) { check_independence<float>(false); }

TEST(Cbrt32, SpecialBlockTakesTheWidenedPathAtTheFastTiers) {
  // A block with a denormal lane runs all eight lanes through the binary64
  // polynomial: at A11 and A21 the normal neighbours then equal A24 (Cbrt)
  // or the square of the A24 Cbrt (Pow2o3).
  std::vector<float> x = {1.5f, 3.0f, -7.25f, 100.0f, 0x1p-140f, 0.3f, 2e10f, -5e-20f};
  const auto full = luxtest::call_unary("luxsCbrt_32f_A24", x);
  for (int t : {11, 21}) {
    const auto c = luxtest::call_unary(name_of<float>("Cbrt", t).c_str(), x);
    const auto p = luxtest::call_unary(name_of<float>("Pow2o3", t).c_str(), x);
    for (int i = 0; i < 8; ++i) {
      EXPECT_EQ(bits(c.out[i]), bits(full.out[i])) << t << " lane " << i;
      EXPECT_EQ(bits(p.out[i]), bits(full.out[i] * full.out[i])) << t << " lane " << i;
    }
  }
}

template <class T>
void check_in_place() {
  luxtk::Rng rng(5);
  std::vector<T> x(19);
  for (T& v : x) v = T(rng.log_uniform(1e-30, 1e30, true));
  x[4] = T(0);  // a zero for InvCbrt's report, a special block for binary32
  for (const char* f : {"Cbrt", "InvCbrt", "Pow2o3"})
    for (int t : tiers<T>()) {
      const std::string name = name_of<T>(f, t);
      const auto ref = luxtest::call_unary(name.c_str(), x);
      using Fn = luxStatus (*)(const T*, T*, int);
      std::vector<T> y = x;
      const luxStatus st = reinterpret_cast<Fn>(luxtk::export_address(name.c_str()))(y.data(), y.data(), 19);
      EXPECT_EQ(st, ref.status) << name;
      for (int i = 0; i < 19; ++i) EXPECT_EQ(bits(y[i]), bits(ref.out[i])) << name << " lane " << i;
    }
}
TEST(Cbrt64, InPlace) { check_in_place<double>(); }
TEST(Cbrt32, InPlace) { check_in_place<float>(); }

TEST(Cbrt64, Accuracy) { luxtest::expect_family_accuracy("Cbrt", 64); }
TEST(Cbrt32, Accuracy) { luxtest::expect_family_accuracy("Cbrt", 32); }
TEST(InvCbrt64, Accuracy) { luxtest::expect_family_accuracy("InvCbrt", 64); }
TEST(InvCbrt32, Accuracy) { luxtest::expect_family_accuracy("InvCbrt", 32); }
TEST(Pow2o364, Accuracy) { luxtest::expect_family_accuracy("Pow2o3", 64); }
TEST(Pow2o332, Accuracy) { luxtest::expect_family_accuracy("Pow2o3", 32); }

}  // namespace
