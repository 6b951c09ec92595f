// Expm1 and Log1p on both widths: directed values per lane class with their
// statuses and flags, the block rule (a block with one irregular lane goes
// whole through the scalar routine, a tail is padded to a block of its first
// lane), the last offending lane, in-place calls, the tables against their
// rules and quoted rows, and the MPFR sweeps.
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "gen/gen_common.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::call_unary;
using luxtest::f32;
using luxtest::f64;

const char* const kExpm1_64[] = {"luxsExpm1_64f_A53", "luxsExpm1_64f_A50", "luxsExpm1_64f_A26"};
const char* const kExpm1_32[] = {"luxsExpm1_32f_A24", "luxsExpm1_32f_A21", "luxsExpm1_32f_A11"};
const char* const kLog1p_64[] = {"luxsLog1p_64f_A53", "luxsLog1p_64f_A50", "luxsLog1p_64f_A26"};
const char* const kLog1p_32[] = {"luxsLog1p_32f_A24", "luxsLog1p_32f_A21", "luxsLog1p_32f_A11"};

// The tier bound of an export, from its name.
double tier_bound(const std::string& name) {
  if (name.find("Log1p") != std::string::npos) return 1.0;  // every tier has the best accuracy
  if (name.ends_with("A53") || name.ends_with("A24")) return 1.0;
  if (name.ends_with("A50") || name.ends_with("A21")) return 8.0;
  return name.ends_with("A11") ? 0x1p13 : 0x1p27;
}

double ulps(double x, double got, int width, bool log1p) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, x, MPFR_RNDN);
  if (log1p)
    mpfr_log1p(e, e, MPFR_RNDN);
  else
    mpfr_expm1(e, e, MPFR_RNDN);
  const double u = luxtk::ulp_error(got, e, width);
  mpfr_clear(e);
  return u;
}

constexpr uint64_t kOracle = 1;    // within the tier bound of MPFR
constexpr uint64_t kQuietNaN = 2;  // any quiet NaN
constexpr uint64_t kSame = 3;      // the input's own bits
uint32_t flags_of(int status) {
  switch (status) {
    case luxWarnOverflow:
      return luxtk::kOverflow | luxtk::kInexact;
    case luxWarnSingularity:
      return luxtk::kDivByZero;
    case luxWarnDomain:
      return luxtk::kInvalid;
  }
  return 0;
}

struct Row {
  uint64_t in, want;
  int status;
};

// clang-format off
const Row kExpm1Rows64[] = {
    {0x0000000000000000, kSame, 0},               {0x8000000000000000, kSame, 0},
    {0x0000000000000001, kSame, 0},               {0x8000000000000001, kSame, 0},
    {0x3C30000000000000, kSame, 0},               {0xBC30000000000000, kSame, 0},  // 2^-60
    {0x3C60000000000000, kOracle, 0},             {0x3F6FFFFFFFFFFFFF, kOracle, 0},  // polynomial
    {0x3F70000000000000, kOracle, 0},             {0xBF70000000000000, kOracle, 0},  // 2^-8
    {0x3FD3333300000000, kOracle, 0},             {0x3FD33332FFFFFFFF, kOracle, 0},  // vector bodies
    {0x4042388E00000000, kOracle, 0},             {0xC045800000000000, kOracle, 0},
    {0x404419EC00000000, kOracle, 0},             {0x404419EC00000001, kOracle, 0},  // high path
    {0x4055A92D00000000, kOracle, 0},             {0x40862C0000000000, kOracle, 0},  // upper path, 709.5
    {0x40862E42FEFA39EF, kOracle, 0},                                                // last finite
    {0x40862E42FEFA39F0, 0x7FF0000000000000, 12}, {0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, 12},
    {0xC044000000000000, 0xBFF0000000000000, 0},  {0xC0862C0000000000, 0xBFF0000000000000, 0},  // -40, -709.5
    {0xC055A92D00000000, 0xBFF0000000000000, 0},  {0xFFEFFFFFFFFFFFFF, 0xBFF0000000000000, 0},
    {0x7FF0000000000000, 0x7FF0000000000000, 0},  {0xFFF0000000000000, 0xBFF0000000000000, 0},
    {0x7FF8000000000000, kQuietNaN, 0},           {0xFFF4000000000000, kQuietNaN, 0},
};
const Row kExpm1Rows32[] = {
    {0x00000000, kSame, 0},       {0x80000000, kSame, 0},       {0x00000001, kSame, 0},
    {0x2F800000, kSame, 0},       {0x3B7FFFFF, kOracle, 0},     {0x3B800000, kOracle, 0},  // 2^-8
    {0xBB800000, kOracle, 0},     {0x42B17217, kOracle, 0},     // last finite
    {0x42B17218, 0x7F800000, 12}, {0x43000000, 0x7F800000, 12}, {0x7F7FFFFF, 0x7F800000, 12},
    {0xC2200000, 0xBF800000, 0},  {0xC2C80000, 0xBF800000, 0},  {0xFF7FFFFF, 0xBF800000, 0},
    {0x7F800000, 0x7F800000, 0},  {0xFF800000, 0xBF800000, 0},
    {0x7FC00000, kQuietNaN, 0},   {0xFFA00000, kQuietNaN, 0},
};
const Row kLog1pRows64[] = {
    {0x0000000000000000, kSame, 0},               {0x8000000000000000, kSame, 0},
    {0x0000000000000001, kSame, 0},               {0x8000000000000001, kSame, 0},
    {0x3C30000000000000, kSame, 0},               {0xBC30000000000000, kSame, 0},
    {0x3C60000000000000, kOracle, 0},             {0x3F1FFFFFFFFFFFFF, kOracle, 0},  // zone 3
    {0x3F20000000000000, kOracle, 0},             {0x3F8FFFFFFFFFFFFF, kOracle, 0},  // zone 2
    {0x3F90000000000000, kOracle, 0},             {0xBFB23FFFFFFFFFFF, kOracle, 0},  // zone 1
    {0x3FB2400000000000, kOracle, 0},             {0xBFB2400000000000, kOracle, 0},  // logarithm path
    {0x3FFFFFFFFFFFFFFF, kOracle, 0},             {0x4000000000000000, kOracle, 0},  // vector bodies
    {0x435FFFFFFFFFFFFF, kOracle, 0},             {0x4360000000000000, kOracle, 0},  // 2^55
    {0x7FEFFFFFFFFFFFFF, 0x40862E42FEFA39EF, 0},  {0xBFEFFFFFFFFFFFFF, kOracle, 0},  // -1 + 2^-53
    {0xBFF0000000000000, 0xFFF0000000000000, 18}, {0xBFF0000000000001, kQuietNaN, 19},
    {0xBFF8000000000000, kQuietNaN, 19},          {0xFFEFFFFFFFFFFFFF, kQuietNaN, 19},
    {0xFFF0000000000000, kQuietNaN, 19},          {0x7FF0000000000000, 0x7FF0000000000000, 0},
    {0x7FF8000000000000, kQuietNaN, 0},           {0xFFF4000000000000, kQuietNaN, 0},
};
const Row kLog1pRows32[] = {
    {0x00000000, kSame, 0},       {0x80000000, kSame, 0},       {0x00000001, kSame, 0},
    {0x3A000000, kOracle, 0},     {0xBD920000, kOracle, 0},     {0x3FFFFFFF, kOracle, 0},
    {0x40000000, kOracle, 0},     {0x5AFFFFFF, kOracle, 0},     {0x5B000000, kOracle, 0},
    {0x7F7FFFFF, kOracle, 0},     {0xBF7FFFFF, kOracle, 0},     // -1 + 2^-24
    {0xBF800000, 0xFF800000, 18}, {0xBF800001, kQuietNaN, 19},  {0xFF800000, kQuietNaN, 19},
    {0xFF7FFFFF, kQuietNaN, 19},  {0x7F800000, 0x7F800000, 0},  {0x7FC00000, kQuietNaN, 0},
    {0xFFA00000, kQuietNaN, 0},
};
// clang-format on

template <class T>
void check_rows(const char* const (&names)[3], const Row* rows, size_t count, bool log1p) {
  constexpr int width = sizeof(T) * 8;
  for (const char* name : names)
    for (size_t r = 0; r < count; ++r) {
      const Row& row = rows[r];
      const T x = width == 64 ? T(f64(row.in)) : T(f32(uint32_t(row.in)));
      SCOPED_TRACE(testing::Message() << name << " x = " << luxtk::hexfloat(double(x)));
      const auto solo = call_unary<T>(name, {x});
      const T y = solo.out[0];
      if (row.want == kOracle) {
        EXPECT_LE(ulps(double(x), double(y), width, log1p), tier_bound(name));
      } else if (row.want == kQuietNaN) {
        EXPECT_TRUE(std::isnan(y));
        const uint64_t quiet = width == 64 ? 0x0008000000000000ull : 0x00400000u;
        EXPECT_NE(uint64_t(bits(y)) & quiet, 0u);
      } else {
        EXPECT_EQ(uint64_t(bits(y)), row.want == kSame ? row.in : row.want);
      }
      EXPECT_EQ(solo.status, row.status);
      const uint32_t need = flags_of(row.status);
      EXPECT_EQ(solo.flags & need, need) << luxtk::flag_names(solo.flags);
      // Nothing else of the exceptional kinds: a normal |x| never raises
      // underflow, and only the domain lanes (or a signalling NaN) invalid.
      uint32_t forbidden = luxtk::kDivByZero | luxtk::kOverflow;
      if (!std::isnan(x)) forbidden |= luxtk::kInvalid;
      if (std::fabs(double(x)) >= (width == 64 ? 0x1p-1022 : 0x1p-126)) forbidden |= luxtk::kUnderflow;
      EXPECT_EQ(solo.flags & forbidden & ~need, 0u) << luxtk::flag_names(solo.flags);
      // A tail is a block of copies of its first lane: a whole block and
      // every tail length give the lone lane's bits and status.
      for (int len = 2; len <= 11; ++len) {
        const auto many = call_unary<T>(name, std::vector<T>(len, x));
        EXPECT_EQ(many.status, row.status) << "len " << len;
        for (const T v : many.out) EXPECT_EQ(bits(v), bits(y)) << "len " << len;
      }
    }
}

TEST(Expm1, DirectedRows) {
  check_rows<double>(kExpm1_64, kExpm1Rows64, std::size(kExpm1Rows64), false);
  check_rows<float>(kExpm1_32, kExpm1Rows32, std::size(kExpm1Rows32), false);
}
TEST(Log1p, DirectedRows) {
  check_rows<double>(kLog1p_64, kLog1pRows64, std::size(kLog1pRows64), true);
  check_rows<float>(kLog1p_32, kLog1pRows32, std::size(kLog1pRows32), true);
}

// A block with one irregular lane goes through the scalar routine for every
// lane.  For Expm1 that routine is the whole of the binary64 A53 tier, and
// the binary32 scalar pass is it on the widened lane, narrowed once; its
// vector body stays within the tier bound, and a lane alone in a tail takes
// the vector body when it is regular.
template <class T>
void check_scalar_pass(const char* name, const std::vector<T>& regular, T irregular, bool log1p) {
  constexpr int width = sizeof(T) * 8;
  constexpr int block = width == 64 ? 4 : 8;
  for (const T x : regular) {
    SCOPED_TRACE(testing::Message() << name << " x = " << luxtk::hexfloat(double(x)));
    const T vec = call_unary<T>(name, {x}).out[0];
    EXPECT_LE(ulps(double(x), double(vec), width, log1p), tier_bound(name));
    T scalar;
    if (log1p) {
      scalar = call_unary<T>(name, {x, irregular}).out[0];
      EXPECT_LE(ulps(double(x), double(scalar), width, log1p), 1.0);
    } else if constexpr (width == 64) {
      scalar = call_unary<T>("luxsExpm1_64f_A53", {x}).out[0];
    } else {
      scalar = T(call_unary<double>("luxsExpm1_64f_A53", {double(x)}).out[0]);
    }
    for (int bad = 0; bad < block; ++bad)
      for (int pos = 0; pos < block; ++pos) {
        if (pos == bad) continue;
        std::vector<T> in(block + 3, x);
        in[bad] = irregular;
        const auto r = call_unary<T>(name, in);
        EXPECT_EQ(bits(r.out[pos]), bits(scalar)) << "irregular lane " << bad << ", lane " << pos;
        EXPECT_EQ(bits(r.out[block + 1]), bits(vec)) << "tail";
      }
  }
}

TEST(Expm1, FailingBlocksTakeTheScalarRoutine) {
  const std::vector<double> x64 = {0.5, -0.30048051486107763, 1.0, -3.5, 37.0, 100.0, 700.0, -700.0};
  for (const char* name : {"luxsExpm1_64f_A50", "luxsExpm1_64f_A26"})
    check_scalar_pass<double>(name, x64, 0.01, false);
  const std::vector<float> x32 = {0.0041f, -0.3f, 1.5f, -20.0f, 45.0f, 88.7f, -88.0f};
  for (const char* name : kExpm1_32) check_scalar_pass<float>(name, x32, 0.001f, false);
}

TEST(Log1p, FailingBlocksTakeTheScalarRoutineWithinAnUlp) {
  const std::vector<double> x64 = {2.0, 3.5, 1000.0, 0x1.fffffffffffffp+54, 1e10};
  for (const char* name : kLog1p_64) check_scalar_pass<double>(name, x64, 1.0, true);
  const std::vector<float> x32 = {2.0f, 7.25f, 1e6f, 0x1.fffffep+54f};
  for (const char* name : kLog1p_32) check_scalar_pass<float>(name, x32, 1.0f, true);
}

// The binary32 Expm1 tiers and the Log1p tiers of each width are one kernel
// under three names.
TEST(Expm1Log1p, TiersOfAWidthAreOneKernel) {
  luxtk::Rng rng(42);
  std::vector<double> x64;
  std::vector<float> x32;
  for (int i = 0; i < 997; ++i) {
    x64.push_back(rng.log_uniform(0x1p-70, 0x1p70, true));
    x32.push_back(float(rng.log_uniform(0x1p-70, 0x1p70, true)));
  }
  const auto r64 = call_unary<double>(kLog1p_64[0], x64);
  const auto r32 = call_unary<float>(kLog1p_32[0], x32);
  const auto e32 = call_unary<float>(kExpm1_32[0], x32);
  for (int t = 1; t < 3; ++t) {
    const auto s64 = call_unary<double>(kLog1p_64[t], x64);
    const auto s32 = call_unary<float>(kLog1p_32[t], x32);
    const auto f32 = call_unary<float>(kExpm1_32[t], x32);
    EXPECT_EQ(s64.status, r64.status);
    EXPECT_EQ(s32.status, r32.status);
    EXPECT_EQ(f32.status, e32.status);
    for (size_t i = 0; i < x64.size(); ++i) EXPECT_EQ(bits(s64.out[i]), bits(r64.out[i])) << kLog1p_64[t];
    for (size_t i = 0; i < x32.size(); ++i) {
      EXPECT_EQ(bits(s32.out[i]), bits(r32.out[i])) << kLog1p_32[t];
      EXPECT_EQ(bits(f32.out[i]), bits(e32.out[i])) << kExpm1_32[t];
    }
  }
}

// Where three tiers are one kernel, a third of the points for each sweeps
// that kernel as often as one full sweep would.
struct ThirdOfThePoints {
  long saved = luxtest::g_sweep.points;
  ThirdOfThePoints() { luxtest::g_sweep.points = std::max(saved / 3, 500L); }
  ~ThirdOfThePoints() { luxtest::g_sweep.points = saved; }
};

TEST(Log1p, LastOffendingLaneWins) {
  struct Case {
    std::vector<double> in;
    int status;
  };
  const Case cases[] = {
      {{-1.0, 3.0, -2.0, 4.0, 5.0}, 19},
      {{-2.0, 3.0, -1.0, 4.0, 5.0}, 18},
      {{3, 4, 5, 6, 7, 8, -1, 9, -3}, 19},
      {{3, 4, 5, 6, 7, 8, -3, 9, -1}, 18},
      {{-1, 2, 3, 4, -INFINITY, 5, 6, 7, 8}, 19},
      {{-INFINITY, 2, 3, 4, -1, 5, 6, 7, 8, 9, 10}, 18},
      {{0.5, NAN, 2.0}, 0},
  };
  for (const Case& c : cases) {
    for (const char* name : kLog1p_64)
      EXPECT_EQ(call_unary<double>(name, c.in).status, c.status) << name << " len " << c.in.size();
    const std::vector<float> f(c.in.begin(), c.in.end());
    for (const char* name : kLog1p_32)
      EXPECT_EQ(call_unary<float>(name, f).status, c.status) << name << " len " << c.in.size();
  }
}

// Overflowing lanes anywhere leave the others alone.
TEST(Expm1, OverflowLanesAmongOthers) {
  for (const char* name : kExpm1_64) {
    const std::vector<double> ref = {0.5, 1.5, -2.0, 3.0, 4.0, 0.001, 7.0, 8.0, 9.5};
    const auto base = call_unary<double>(name, ref);
    for (size_t pos = 0; pos < ref.size(); ++pos) {
      std::vector<double> in = ref;
      in[pos] = 710.0;
      const auto r = call_unary<double>(name, in);
      EXPECT_EQ(r.status, luxWarnOverflow) << name << " position " << pos;
      EXPECT_EQ(bits(r.out[pos]), 0x7FF0000000000000u);
      for (size_t l = 0; l < ref.size(); ++l) {
        if (l == pos) continue;
        EXPECT_LE(ulps(ref[l], r.out[l], 64, false), tier_bound(name)) << name << " lane " << l;
      }
    }
    EXPECT_EQ(base.status, 0);
  }
}

template <class T, class Fn>
void check_in_place(const char* name, Fn fn, const std::vector<T>& in_all) {
  for (size_t len = 1; len <= in_all.size(); ++len) {
    std::vector<T> in(in_all.begin(), in_all.begin() + len), out(len), io = in;
    const auto a = luxtk::run_clean([&] { return fn(in.data(), out.data(), int(len)); });
    const auto b = luxtk::run_clean([&] { return fn(io.data(), io.data(), int(len)); });
    EXPECT_EQ(a.status, b.status) << name << " len " << len;
    for (size_t i = 0; i < len; ++i)
      EXPECT_EQ(bits(io[i]), bits(out[i])) << name << " len " << len << " lane " << i;
  }
}

TEST(Expm1Log1p, InPlaceEqualsOutOfPlace) {
  const std::vector<double> d = {0.5,  1.5,  NAN, 2.0,  -3.0, 4.0, 5.0,  1e308, 700,
                                 -1.0, 0.25, 7.0, -800, 9.0,  8.0, -9.0, 3.0};
  const std::vector<float> f = {0.5f,  1.5f,  NAN,  2.0f, -3.0f, 4.0f, 5.0f,  1e30f, 70.f,
                                -1.0f, 0.25f, 7.0f, -800, 9.0f,  8.0f, -9.0f, 3.0f,  1e-3f,
                                4.f,   5.f,   6.f,  7.f,  8.f,   9.f,  10.f};
  check_in_place<double>("Expm1 A53", luxsExpm1_64f_A53, d);
  check_in_place<double>("Expm1 A50", luxsExpm1_64f_A50, d);
  check_in_place<double>("Log1p A53", luxsLog1p_64f_A53, d);
  check_in_place<float>("Expm1 A24", luxsExpm1_32f_A24, f);
  check_in_place<float>("Log1p A24", luxsLog1p_32f_A24, f);
}

// ---------------------------------------------------------------------------
// Tables: the committed files against their rules and the quoted rows.

constexpr uint64_t kExp128[129][2] = {
#include "exp_log/expm1_table.inc"
};
constexpr uint32_t kRcp256[256] = {
#include "exp_log/log1p_rcp_table.inc"
};
constexpr uint64_t kLog256[256][2] = {
#include "exp_log/log1p_log_table.inc"
};

TEST(Expm1Log1pTables, EqualTheirRules) {
  mpfr_t v, w;
  mpfr_inits2(300, v, w, (mpfr_ptr)0);
  for (int j = -64; j <= 64; ++j) {
    mpfr_set_si(v, j, MPFR_RNDN);
    mpfr_div_si(v, v, 128, MPFR_RNDN);
    mpfr_exp2(v, v, MPFR_RNDN);
    const double thi = f64(kExp128[j + 64][1]), tlo = f64(kExp128[j + 64][0]);
    EXPECT_EQ(bits(thi) & 0x1FFFFF, 0u) << "j = " << j;
    mpfr_sub_d(w, v, thi, MPFR_RNDN);
    EXPECT_GE(mpfr_sgn(w), 0) << "Thi is truncated, j = " << j;
    EXPECT_LT(mpfr_get_d(w, MPFR_RNDN), std::ldexp(1.0, std::ilogb(thi) - 31)) << "j = " << j;
    EXPECT_EQ(bits(tlo), bits(mpfr_get_d(w, MPFR_RNDN))) << "j = " << j;
  }
  for (int i = 0; i < 256; ++i) {
    const double r = f32(kRcp256[i]);
    const double q = 2048.0 / (1.0 + (i + 0.5) / 256.0);
    EXPECT_EQ(r * 2048.0, std::nearbyint(q)) << "i = " << i;
    EXPECT_EQ(kRcp256[i] & 0xFFF, 0u) << "at most 12 significant bits, i = " << i;
    mpfr_set_d(v, r, MPFR_RNDN);
    mpfr_log(v, v, MPFR_RNDN);
    mpfr_neg(v, v, MPFR_RNDN);
    const double lhi = f64(kLog256[i][1]), llo = f64(kLog256[i][0]);
    EXPECT_EQ(kLog256[i][1] & 0xFFFFFFFF, 0u) << "i = " << i;
    mpfr_sub_d(w, v, lhi, MPFR_RNDN);
    EXPECT_EQ(bits(llo), bits(mpfr_get_d(w, MPFR_RNDN))) << "i = " << i;
    mpfr_sub_d(w, w, llo, MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(w, MPFR_RNDN)), 3e-23) << "i = " << i;
  }
  mpfr_clears(v, w, (mpfr_ptr)0);
}

TEST(Expm1Log1pTables, HoldTheQuotedRows) {
  const int64_t exp_rows[][3] = {{0, 0, 0x3FF0000000000000},
                                 {1, 0x3DFB33356D84A66B, 0x3FF0163DA9E00000},
                                 {-1, 0x3DDEE3E212EB7496, 0x3FEFD3C22B800000},
                                 {-64, 0x3DEF3BCC908B2FB1, 0x3FE6A09E66600000},
                                 {64, 0x3DFF3BCC908B2FB1, 0x3FF6A09E66600000}};
  for (const auto& r : exp_rows) {
    const int j = int(r[0]);
    EXPECT_EQ(kExp128[j + 64][0], uint64_t(r[1])) << "j = " << j;
    EXPECT_EQ(kExp128[j + 64][1], uint64_t(r[2])) << "j = " << j;
  }
  EXPECT_EQ(kRcp256[0], 0x3F7F8000u);
  EXPECT_EQ(kRcp256[1], 0x3F7E8000u);
  EXPECT_EQ(kRcp256[127], 0x3F2AE000u);
  EXPECT_EQ(kRcp256[255], 0x3F002000u);
  EXPECT_EQ(kLog256[0][0], 0x3E0575622779C19Cu);
  EXPECT_EQ(kLog256[0][1], 0x3F60040100000000u);
  EXPECT_EQ(kLog256[1][0], 0x3DF4586B540E0A5Du);
  EXPECT_EQ(kLog256[1][1], 0x3F78121200000000u);
}

TEST(Expm1, Accuracy) {
  luxtest::expect_family_accuracy("Expm1", 64);
  const ThirdOfThePoints third;
  luxtest::expect_family_accuracy("Expm1", 32);
}
TEST(Log1p, Accuracy) {
  const ThirdOfThePoints third;
  luxtest::expect_family_accuracy("Log1p", 64);
  luxtest::expect_family_accuracy("Log1p", 32);
}

}  // namespace
