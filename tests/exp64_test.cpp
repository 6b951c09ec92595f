// Exp on binary64 (A53, A50, A26): directed values per lane class, statuses
// and flags, lane independence, in-place and read-only sources, tails, the
// single rounding into the denormal range, and the MPFR accuracy sweep.
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::call_unary;
using luxtest::f64;

enum Tier : unsigned { k53 = 1, k50 = 2, k26 = 4, kAll = 7 };
struct Export {
  Tier tier;
  const char* name;
  luxStatus (*fn)(const lux64f*, lux64f*, int);
  double bound;
};
const Export kExports[] = {{k53, "luxsExp_64f_A53", luxsExp_64f_A53, 1.0},
                           {k50, "luxsExp_64f_A50", luxsExp_64f_A50, 8.0},
                           {k26, "luxsExp_64f_A26", luxsExp_64f_A26, 0x1p27}};

constexpr uint64_t kOracle = 1;  // "want": within the tier's bound of MPFR's e^x
constexpr uint64_t kOne = 0x3FF0000000000000, kInf = 0x7FF0000000000000;

struct Row {
  unsigned tiers;
  uint64_t in, want;
  int status;
};

// clang-format off
const Row kRows[] = {
    // Zeros and tiny |x|: exactly 1.0.
    {kAll, 0x0000000000000000, kOne, 0},       {kAll, 0x8000000000000000, kOne, 0},
    {kAll, 0x0000000000000001, kOne, 0},       {kAll, 0x8000000000000001, kOne, 0},
    {kAll, 0x3C90000000000000, kOne, 0},       {kAll, 0xBC90000000000000, kOracle, 0},
    // Infinities, no status.
    {kAll, 0x7FF0000000000000, kInf, 0},       {kAll, 0xFFF0000000000000, 0, 0},
    // NaNs: A53 stores the all-ones NaN, A50 and A26 the input quieted.
    {k53, 0x7FF8000000000000, ~0ull, 0},       {k53, 0x7FF0000000000001, ~0ull, 0},
    {k53, 0xFFF8000000000123, ~0ull, 0},       {k53, 0xFFF4000000000000, ~0ull, 0},
    {k50 | k26, 0x7FF8000000000000, 0x7FF8000000000000, 0},
    {k50 | k26, 0x7FF0000000000001, 0x7FF8000000000001, 0},
    {k50 | k26, 0xFFF8000000000123, 0xFFF8000000000123, 0},
    {k50 | k26, 0xFFF4000000000000, 0xFFFC000000000000, 0},
    // Overflow from the first double above ln DBL_MAX; the one below is finite.
    {kAll, 0x40862E42FEFA39F0, kInf, 12},      {kAll, 0x7FEFFFFFFFFFFFFF, kInf, 12},
    {kAll, 0x4086300000000000, kInf, 12},      {kAll, 0x40862E42FEFA39EF, kOracle, 0},
    // N reaching 1024*64 (A53) and 1024*128 (A50, A26): the split scale.
    {kAll, 0x40862E37E7D8BA70, kOracle, 0},    {kAll, 0x40862E37E7D8BA71, kOracle, 0},
    {kAll, 0x40862E37E7D8BA72, kOracle, 0},    {kAll, 0x40862E37E7D8BA73, kOracle, 0},
    {kAll, 0x40862E3D73697A30, kOracle, 0},    {kAll, 0x40862E3D73697A31, kOracle, 0},
    {kAll, 0x40862E3D73697A32, kOracle, 0},
    // The main-path bound, both signs, and ordinary values.
    {kAll, 0x4086232B00000000, kOracle, 0},    {kAll, 0xC086232B00000000, kOracle, 0},
    {kAll, 0x4086232AFFFFFFFF, kOracle, 0},    {kAll, 0x3FF0000000000000, kOracle, 0},
    {kAll, 0xC085E00000000000, kOracle, 0},    {kAll, 0x4085E00000000000, kOracle, 0},
    // Denormal strip: below ln 2^-1022 underflows, the double above is normal.
    {kAll, 0xC086232BDD7ABCD3, kOracle, 17},   {kAll, 0xC086232BDD7ABCD2, kOracle, 0},
    {kAll, 0xC086C00000000000, kOracle, 17},
    {k53 | k50, 0xC0874910D52D3051, 0x0000000000000001, 17},
    // Zero strip from ln 2^-1075 down.
    {kAll, 0xC0874910D52D3052, 0, 17},         {kAll, 0xC08F400000000000, 0, 17},
    {kAll, 0xFFEFFFFFFFFFFFFF, 0, 17},
};
// clang-format on

double ulps_from_exp(double x, double got) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, x, MPFR_RNDN);
  mpfr_exp(e, e, MPFR_RNDN);
  const double u = luxtk::ulp_error(got, e, 64);
  mpfr_clear(e);
  return u;
}

void check_value(const Export& ex, const Row& row, double got) {
  SCOPED_TRACE(testing::Message() << ex.name << " x = " << luxtk::hexfloat(f64(row.in)));
  if (row.want != kOracle) {
    EXPECT_EQ(bits(got), row.want);
    return;
  }
  EXPECT_LE(ulps_from_exp(f64(row.in), got), ex.bound);
  // The strip's lanes keep their class: denormal with status 17, normal without.
  EXPECT_EQ(std::fpclassify(got), row.status == 17 ? FP_SUBNORMAL : FP_NORMAL);
}

uint32_t required_flags(int status) {
  return status == 12   ? luxtk::kOverflow | luxtk::kInexact
         : status == 17 ? luxtk::kUnderflow | luxtk::kInexact
                        : 0;
}

TEST(Exp64, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  const std::vector<double> others = {0.5, -1.25, 3.0, 100.0};
  for (const Export& ex : kExports) {
    std::vector<uint64_t> other_bits;
    for (double o : others) other_bits.push_back(bits(call_unary<double>(ex.name, {o}).out[0]));
    for (const Row& row : kRows) {
      if (!(row.tiers & ex.tier)) continue;
      SCOPED_TRACE(testing::Message() << ex.name << " x = 0x" << std::hex << row.in);
      const double x = f64(row.in);
      const auto solo = call_unary<double>(ex.name, {x});
      check_value(ex, row, solo.out[0]);
      EXPECT_EQ(solo.status, row.status);
      EXPECT_EQ(solo.flags & required_flags(row.status), required_flags(row.status))
          << luxtk::flag_names(solo.flags);
      if (row.status == 0 && std::fabs(x) > 0x1p-500) {
        EXPECT_EQ(solo.flags & (luxtk::kOverflow | luxtk::kUnderflow), 0u) << luxtk::flag_names(solo.flags);
      }
      // A whole block of it, and in every position of a block and of a tail.
      const auto block = call_unary<double>(ex.name, {x, x, x, x});
      for (double y : block.out) EXPECT_EQ(bits(y), bits(solo.out[0]));
      EXPECT_EQ(block.status, row.status);
      for (int pos = 0; pos < 5; ++pos) {
        std::vector<double> in = {others[0], others[1], others[2], others[3], others[0]};
        in[pos] = x;
        const auto r = call_unary<double>(ex.name, in);
        EXPECT_EQ(r.status, row.status) << "position " << pos;
        for (int l = 0; l < 5; ++l)
          EXPECT_EQ(bits(r.out[l]), l == pos ? bits(solo.out[0]) : other_bits[l % 4]) << "position " << pos;
      }
    }
  }
}

TEST(Exp64, LastOffendingLaneWinsAndStays) {
  const double over = 1e308, under = -1000.0;
  struct Case {
    std::vector<double> in;
    int status;
  };
  const Case cases[] = {
      {{over, 1.0, under, 2.0, 3.0}, 17},       {{under, 1.0, over, 2.0, 3.0}, 12},
      {{1, 2, over, 3, 4, under, 5, 6, 7}, 17}, {{1, 2, under, 3, 4, over, 5, 6, 7}, 12},
      {{1, 2, 3, 4, 5, 6, 7, over, under}, 17}, {{under, over, 0.5}, 12},
      {{0, 1, 2, 3, 4, 5, 6, under, 0.0}, 17},
  };
  for (const Export& ex : kExports)
    for (const Case& c : cases) {
      const auto r = call_unary<double>(ex.name, c.in);
      EXPECT_EQ(r.status, c.status) << ex.name << " len " << c.in.size();
    }
}

// The last product is the only rounding into the denormal range: deep in
// the strip, where V's own error is far below a denormal ulp, the result is
// the correctly rounded one unless e^x lies within 2^-20 ulp of a midpoint.
TEST(Exp64, DenormalResultsRoundOnce) {
  mpfr_t e, m;
  mpfr_inits2(luxtk::kOraclePrecision, e, m, (mpfr_ptr)0);
  std::vector<double> xs;
  for (double x = -745.13; x < -730.0; x += 0.00731) xs.push_back(x);
  for (const Export& ex : kExports) {
    if (ex.tier == k26) continue;  // its V is good to 2^-28 only
    const auto r = call_unary<double>(ex.name, xs);
    int checked = 0;
    for (size_t i = 0; i < xs.size(); ++i) {
      mpfr_set_d(e, xs[i], MPFR_RNDN);
      mpfr_exp(e, e, MPFR_RNDN);
      mpfr_mul_2si(m, e, 1074, MPFR_RNDN);  // in units of the smallest denormal
      mpfr_frac(m, m, MPFR_RNDN);
      const double frac = mpfr_get_d(m, MPFR_RNDN);
      if (std::fabs(frac - 0.5) < 0x1p-20) continue;
      ++checked;
      EXPECT_EQ(bits(r.out[i]), bits(luxtk::round_to_format(e, 64)))
          << ex.name << " x = " << luxtk::hexfloat(xs[i]);
    }
    EXPECT_GT(checked, 1900);
    EXPECT_EQ(r.status, 17);
  }
  mpfr_clears(e, m, (mpfr_ptr)0);
}

// Inputs whose blocks fail after A53 has stored their first two results.
const std::vector<double> kFailingBlocks = {0.5,  1.5,  NAN, 2.0,  -3.0, 4.0, 5.0,  1e308, 708.39599609375,
                                            -1.0, 0.25, 7.0, -800, 9.0,  8.0, -9.0, 0.125};

TEST(Exp64, InPlaceEqualsOutOfPlace) {
  for (const Export& ex : kExports)
    for (size_t len = 1; len <= kFailingBlocks.size(); ++len) {
      std::vector<double> in(kFailingBlocks.begin(), kFailingBlocks.begin() + len), out(len), io = in;
      const auto a = luxtk::run_clean([&] { return ex.fn(in.data(), out.data(), int(len)); });
      const auto b = luxtk::run_clean([&] { return ex.fn(io.data(), io.data(), int(len)); });
      EXPECT_EQ(a.status, b.status) << ex.name << " len " << len;
      for (size_t i = 0; i < len; ++i)
        EXPECT_EQ(bits(io[i]), bits(out[i])) << ex.name << " len " << len << " lane " << i;
    }
}

TEST(Exp64, ReadOnlySourceIsNeverWritten) {
  const long page = sysconf(_SC_PAGESIZE);
  void* mem = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(mem, MAP_FAILED);
  double* src = static_cast<double*>(mem);
  for (size_t i = 0; i < kFailingBlocks.size(); ++i) src[i] = kFailingBlocks[i];
  ASSERT_EQ(mprotect(mem, page, PROT_READ), 0);
  for (const Export& ex : kExports) {
    std::vector<double> out(kFailingBlocks.size());
    EXPECT_EQ(ex.fn(src, out.data(), int(out.size())), 17) << ex.name;  // a write would fault
  }
  munmap(mem, page);
}

TEST(Exp64, TailsOfEveryLength) {
  const std::vector<double> in = {0.75,     -745.2, 709.78, -2.5, 1e-310, 1e308, -708.3964185322642,
                                  INFINITY, 33.0};
  for (const Export& ex : kExports) {
    std::vector<uint64_t> solo;
    for (double x : in) solo.push_back(bits(call_unary<double>(ex.name, {x}).out[0]));
    for (size_t len = 1; len <= in.size(); ++len) {
      std::vector<double> out(len + 1, 42.0);
      const int st = ex.fn(in.data(), out.data(), int(len));
      int want = 0;
      for (size_t i = 0; i < len; ++i) {
        EXPECT_EQ(bits(out[i]), solo[i]) << ex.name << " len " << len << " lane " << i;
        if (in[i] == 1e308) want = 12;
        if (in[i] == -745.2 || in[i] == -708.3964185322642) want = 17;
      }
      EXPECT_EQ(out[len], 42.0) << ex.name << " wrote past len " << len;
      EXPECT_EQ(st, want) << ex.name << " len " << len;
    }
  }
}

TEST(Exp64, Accuracy) { luxtest::expect_family_accuracy("Exp", 64); }

}  // namespace
