// Tanh on binary32 and binary64 at every tier: the tables against their
// rules and their quoted rows, each fitted row against tanh over its
// interval, special lanes selected without a flag, saturation, tiny
// arguments, lane independence, in-place calls and the accuracy sweeps.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <vector>

#include "gen/gen_common.h"
#include "hyperbolic_cases.h"

namespace {

using hyptest::kOracle;
using luxtest::bits;
using luxtest::f32;
using luxtest::f64;

const uint64_t kD53[60][16] = {
#include "hyperbolic/dtanh_ha_table.inc"
};
const uint64_t kD50[31][16] = {
#include "hyperbolic/dtanh_la_table.inc"
};
const uint64_t kS24[27][8] = {
#include "hyperbolic/stanh_ha_table.inc"
};
const uint64_t kS21[134][4] = {
#include "hyperbolic/stanh_21_table.inc"
};
const uint64_t kS11[134][2] = {
#include "hyperbolic/stanh_11_table.inc"
};

// Left ends of the rows: [0, first), `per` a binade up to 16 or 8, then up
// to the saturation point in the same width; the last row from there on.
std::vector<double> left_ends(double first, int per, double end_binade, double top) {
  std::vector<double> e = {0.0};
  for (double b = first; b < end_binade; b *= 2)
    for (int m = 0; m < per; ++m) e.push_back(b * (1 + double(m) / per));
  for (double x = end_binade; x < top; x += end_binade / per) e.push_back(x);
  e.push_back(top);
  return e;
}

struct Mp {
  mpfr_t v;
  explicit Mp(double x) {
    mpfr_init2(v, 256);
    mpfr_set_d(v, x, MPFR_RNDN);
  }
  ~Mp() { mpfr_clear(v); }
};

// tanh(c) as head and tail, and RN(1 - tanh(c)^2).
struct AtCentre {
  double hi, lo, slope;
  explicit AtCentre(double c) {
    Mp t(c), d(0);
    mpfr_tanh(t.v, t.v, MPFR_RNDN);
    hi = mpfr_get_d(t.v, MPFR_RNDN);
    mpfr_sub_d(d.v, t.v, hi, MPFR_RNDN);
    lo = mpfr_get_d(d.v, MPFR_RNDN);
    mpfr_sqr(d.v, t.v, MPFR_RNDN);
    mpfr_ui_sub(d.v, 1, d.v, MPFR_RNDN);
    slope = mpfr_get_d(d.v, MPFR_RNDN);
  }
};

// The largest relative error of a row's polynomial p(v), v = scale*x - shift,
// against tanh x over 33 points of [lo, hi], in long double.
template <size_t N>
double row_error(const uint64_t (&w)[N], int first, int degree, double lo, double hi, double shift,
                 double lo_word) {
  double worst = 0;
  for (int i = 0; i <= 32; ++i) {
    const double x = lo + (hi - lo) * i / 32.0;
    if (x == 0) continue;
    const long double v = (long double)x - shift;
    long double p = f64(w[first + degree]);
    for (int k = degree - 1; k >= 0; --k) p = f64(w[first + k]) + v * p;
    p += lo_word;
    Mp t(x);
    mpfr_tanh(t.v, t.v, MPFR_RNDN);
    const long double want = mpfr_get_ld(t.v, MPFR_RNDN);
    worst = std::fmax(worst, double(std::fabs((p - want) / want)));
  }
  return worst;
}

TEST(TanhTables, Binary64RowsFollowTheirRule) {
  const std::vector<double> e53 = left_ends(0.125, 8, 16, 20);
  for (int r = 1; r < 59; ++r) {
    SCOPED_TRACE(testing::Message() << "A53 row " << r);
    const double c = r == 58 ? -f64(kD53[58][12]) : (e53[r] + e53[r + 1]) / 2;
    EXPECT_EQ(f64(kD53[r][12]), -c);
    // c0hi + c0lo = tanh(c) as head and tail, c1 its slope, each rounded
    // to nearest.  The quoted rows 1 and 58 come from the kernel's first
    // fit and are checked by their accuracy alone.
    const AtCentre t(c);
    if (r != 1 && r != 58) {
      EXPECT_EQ(f64(kD53[r][1]), t.hi);
      EXPECT_EQ(f64(kD53[r][0]), t.lo);
      EXPECT_EQ(f64(kD53[r][2]), t.slope);
    }
    // The fit leaves well under half an ulp to the arithmetic.
    EXPECT_LT(row_error(kD53[r], 1, 10, e53[r], e53[r + 1], c, f64(kD53[r][0])), 0x1p-54);
  }
  EXPECT_LT(row_error(kD53[0], 1, 10, 0, 0.125, 0, 0), 0x1p-54);
  const uint64_t last53[16] = {0, 0x3FF0000000000000};
  EXPECT_EQ(std::memcmp(kD53[59], last53, sizeof last53), 0);
  // 18.530773732699 serves [18, 20): centred below the midpoint, where
  // 1 - tanh changes most.
  EXPECT_EQ(kD53[58][12], 0xC03287E0C98F84E5u);

  const std::vector<double> e50 = left_ends(0.125, 4, 16, 20);
  for (int r = 1; r < 30; ++r) {
    SCOPED_TRACE(testing::Message() << "A50 row " << r);
    const double c = (e50[r] + e50[r + 1]) / 2;
    EXPECT_EQ(f64(kD50[r][14]), c);
    EXPECT_EQ(f64(kD50[r][15]), 1.0);
    EXPECT_EQ(f64(kD50[r][0]), AtCentre(c).hi);
    EXPECT_LT(row_error(kD50[r], 0, 13, e50[r], e50[r + 1], c, 0), 0x1p-52);
  }
  EXPECT_LT(row_error(kD50[0], 0, 13, 0, 0.125, 0, 0), 0x1p-52);
  for (int k = 0; k < 14; k += 2) EXPECT_EQ(kD50[0][k], 0u) << "row 0 is odd: c" << k;
  const uint64_t last50[16] = {0x3FF0000000000000};  // g = 0 and c = 0: v = 0
  EXPECT_EQ(std::memcmp(kD50[30], last50, sizeof last50), 0);
}

TEST(TanhTables, Binary32RowsFitOverTheirIntervals) {
  const std::vector<double> e24 = left_ends(0.125, 4, 8, 10);
  const std::vector<double> e21 = left_ends(0.03125, 16, 8, 10);
  ASSERT_EQ(e24.size(), 27u);
  ASSERT_EQ(e21.size(), 134u);
  for (int r = 0; r < 26; ++r) EXPECT_LT(row_error(kS24[r], 0, 6, e24[r], e24[r + 1], 0, 0), 0x1p-27) << r;
  for (int r = 0; r < 133; ++r) {
    EXPECT_LT(row_error(kS21[r], 0, 3, e21[r], e21[r + 1], 0, 0), 0x1p-23) << r;
    EXPECT_LT(row_error(kS11[r], 0, 1, e21[r], e21[r + 1], 0, 0), 0x1p-11) << r;
  }
  // Row 0 goes through the origin; the last row is the constant 1.
  EXPECT_EQ(kS24[0][0] | kS21[0][0] | kS11[0][0], 0u);
  EXPECT_EQ(kS24[26][0], 0x3FF0000000000000u);
  EXPECT_EQ(kS21[133][0], 0x3FF0000000000000u);
  EXPECT_EQ(kS11[133][0], 0x3FF0000000000000u);
  for (int k = 1; k < 8; ++k) EXPECT_EQ(kS24[26][k], 0u);
  for (int k = 1; k < 4; ++k) EXPECT_EQ(kS21[133][k], 0u);
  EXPECT_EQ(kS11[133][1], 0u);
}

TEST(TanhTables, QuotedRows) {
  const uint64_t d53_0[] = {0x0000000000000000, 0x0000000000000000, 0x3FF0000000000000, 0xBD197DEAD79668D3,
                            0xBFD555555553AF3C, 0xBE052F7CCA134846, 0x3FC11111563849D6, 0xBEB038623673FFB2,
                            0xBFAB9F685E64022E, 0xBF2A54E2B28F2207, 0x3F97CFB9328A230E, 0xBF75CA6D61723E02,
                            0x0000000000000000};
  const uint64_t d53_1[] = {0x3C3708A564FAD29A, 0x3FC0E6973998DA48, 0x3FEF712EB25C0888, 0xBFC09B296F7C1EA9,
                            0xBFD3DD77541EDDA7, 0x3FB58FFCF4309615, 0x3FBD3ABE845DCF49, 0xBFA791DF538C37FA,
                            0xBFA4F872F69CD6E8, 0x3F9772E49EF6412B, 0x3F8CBC0807393909, 0xBF85F06A30F93319,
                            0xBFC1000000000000};
  const uint64_t d53_58[] = {0x3C91BF1D80474F0F, 0x3FEFFFFFFFFFFFFE, 0x3CB72071400E6275, 0xBCB72071400A9F37,
                             0x3CAED5EC39A77629, 0xBC9ED5EC3B530600, 0x3C88AB2BFED159DE, 0xBC70721D1220B3FC,
                             0x3C52C96049721FB8, 0xBC32C971215735DC, 0x3C112EF658AB41A9, 0xBBEB7B598C6AD3DE,
                             0xC03287E0C98F84E5};
  const uint64_t d50_0[] = {0x0000000000000000,
                            0x3FF0000000000000,
                            0,
                            0xBFD5555555555551,
                            0,
                            0x3FC111111110ED4D,
                            0,
                            0xBFABA1BA1ACB0632,
                            0,
                            0x3F9664F355233884,
                            0,
                            0xBF822601BC42CA2C,
                            0,
                            0x3F6CC8780EA6A00B,
                            0,
                            0x3FF0000000000000};
  const uint64_t d50_1[] = {0x3FC1E1DD055CD972, 0x3FEF601CAF83B5D3, 0xBFC18883BBF838D5, 0xBFD3B134EBDC5DD1,
                            0x3FB6B179EF2F42FA, 0x3FBCA9ECE3C298E3, 0xBFA8B241E7E60CFF, 0xBFA438E61377E6FF,
                            0x3F986DB66DF590F0, 0x3F8AFDE86B047A98, 0xBF86B20805DF7AEB, 0xBF70924D32FE90D8,
                            0x3F741DCBE3888E37, 0x3F519348CA96C0F4, 0x3FC2000000000000, 0x3FF0000000000000};
  const uint64_t s24_1[] = {0xBE68277761C5AF2E, 0x3FF0000263167A05, 0xBF09EBCEDD85B175, 0xBFD54B886E7A59B5,
                            0xBF71DFA6BC24A233, 0x3FC388AFBDCFEABF, 0xBFA8AC02C389F5D2};
  const uint64_t s21_0[] = {0x0000000000000000, 0x3FF00000022C70EB, 0xBED00E878CFFA194, 0xBFD551766D0607A9};
  const uint64_t s21_132[] = {0x3FEFFFEAFE70FCFC, 0x3EC879175E3549F5, 0xBE930E36677D1813, 0x3E43D4005B42D48F};
  const uint64_t s11_0[] = {0x0000000000000000, 0x3FEFFEAA0FCD8264};
  const uint64_t s11_132[] = {0x3FEFFFFFB1F71098, 0x3E4E6C27B57171E2};
  EXPECT_EQ(std::memcmp(kD53[0], d53_0, sizeof d53_0), 0);
  EXPECT_EQ(std::memcmp(kD53[1], d53_1, sizeof d53_1), 0);
  EXPECT_EQ(std::memcmp(kD53[58], d53_58, sizeof d53_58), 0);
  EXPECT_EQ(std::memcmp(kD50[0], d50_0, sizeof d50_0), 0);
  EXPECT_EQ(std::memcmp(kD50[1], d50_1, sizeof d50_1), 0);
  EXPECT_EQ(std::memcmp(kS24[1], s24_1, sizeof s24_1), 0);
  EXPECT_EQ(std::memcmp(kS21[0], s21_0, sizeof s21_0), 0);
  EXPECT_EQ(std::memcmp(kS21[132], s21_132, sizeof s21_132), 0);
  EXPECT_EQ(std::memcmp(kS11[0], s11_0, sizeof s11_0), 0);
  EXPECT_EQ(std::memcmp(kS11[132], s11_132, sizeof s11_132), 0);
  // A50 and A26 run on equal tables, and so A26's rows are these.
}

const hyptest::Export k64[] = {{"luxsTanh_64f_A53", mpfr_tanh, 1.0},
                               {"luxsTanh_64f_A50", mpfr_tanh, 8.0},
                               {"luxsTanh_64f_A26", mpfr_tanh, 0x1p27}};
const hyptest::Export k32[] = {{"luxsTanh_32f_A24", mpfr_tanh, 1.0},
                               {"luxsTanh_32f_A21", mpfr_tanh, 8.0},
                               {"luxsTanh_32f_A11", mpfr_tanh, 0x1p13}};

// clang-format off
const hyptest::Row<double> kRows64[] = {
    {7, 0x0000000000000000, 0x0000000000000000, 0}, {7, 0x8000000000000000, 0x8000000000000000, 0},
    {7, 0x0000000000000001, 0x0000000000000001, 0}, {7, 0x800FFFFFFFFFFFFF, 0x800FFFFFFFFFFFFF, 0},
    {7, 0x7FF0000000000000, 0x3FF0000000000000, 0}, {7, 0xFFF0000000000000, 0xBFF0000000000000, 0},
    // NaNs: x itself, all its bits.
    {7, 0x7FF0000000000001, 0x7FF0000000000001, 0}, {7, 0xFFF8000000000123, 0xFFF8000000000123, 0},
    // Saturation from 20: exactly +-1; the double below on the fitted row.
    {7, 0x4034000000000000, 0x3FF0000000000000, 0}, {7, 0xC07F400000000000, 0xBFF0000000000000, 0},
    {7, 0x7FEFFFFFFFFFFFFF, 0x3FF0000000000000, 0}, {7, 0x4033FFFFFFFFFFFF, kOracle, 0},
    // Row edges: 1/8, 16, 18 and their neighbours; tiny and ordinary values.
    {7, 0x3FC0000000000000, kOracle, 0},            {7, 0x3FBFFFFFFFFFFFFF, kOracle, 0},
    {7, 0x4030000000000000, kOracle, 0},            {7, 0x402FFFFFFFFFFFFF, kOracle, 0},
    {7, 0x4032000000000000, kOracle, 0},            {7, 0xC031FFFFFFFFFFFF, kOracle, 0},
    {7, 0x3E40000000000000, kOracle, 0},            {7, 0x3FE0000000000000, kOracle, 0},
    {7, 0xC008000000000000, kOracle, 0},
};
const hyptest::Row<float> kRows32[] = {
    {7, 0x00000000, 0x00000000, 0}, {7, 0x80000000, 0x80000000, 0},
    {3, 0x00000001, 0x00000001, 0}, {3, 0x807FFFFF, 0x807FFFFF, 0}, {3, 0x2E000000, 0x2E000000, 0},
    {7, 0x7F800000, 0x3F800000, 0}, {7, 0xFF800000, 0xBF800000, 0},
    // NaNs: quieted, sign and payload kept.
    {7, 0x7FA00000, 0x7FE00000, 0}, {7, 0xFFC00123, 0xFFC00123, 0},
    // Saturation from 10: exactly +-1.
    {7, 0x41200000, 0x3F800000, 0}, {7, 0xC1200001, 0xBF800000, 0}, {7, 0x7F7FFFFF, 0x3F800000, 0},
    {7, 0x411FFFFF, kOracle, 0},
    // Row edges: 1/32, 1/8, 8, 9.5 and neighbours; ordinary values.
    {7, 0x3D000000, kOracle, 0},    {7, 0x3CFFFFFF, kOracle, 0},    {7, 0x3E000000, kOracle, 0},
    {7, 0xBDFFFFFF, kOracle, 0},    {7, 0x41000000, kOracle, 0},    {7, 0x40FFFFFF, kOracle, 0},
    {7, 0x41180000, kOracle, 0},    {7, 0x3F000000, kOracle, 0},    {7, 0xC0400000, kOracle, 0},
};
// clang-format on

TEST(Tanh64, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  hyptest::expect_rows(k64, kRows64, std::vector<double>{0.5, -1.25, 3.0, 19.0});
}
TEST(Tanh32, DirectedRowsAloneInBlocksAndBesideOtherLanes) {
  hyptest::expect_rows(k32, kRows32, std::vector<float>{0.5f, -1.25f, 3.0f, 9.0f});
}

// The A11 tier's row 0 is a line through the origin with slope 0.99983695.
TEST(Tanh32, FastTierIsALineNearZero) {
  for (float x : {1e-30f, -3e-10f, 0x1p-20f, 0.01f}) {
    const float want = float(double(x) * f64(0x3FEFFEAA0FCD8264));
    EXPECT_EQ(bits(luxtest::call_unary<float>("luxsTanh_32f_A11", {x}).out[0]), bits(want)) << x;
  }
}

// Infinities and NaNs are selected after the arithmetic, which never sees
// them: no flag but inexact comes out of an infinity or a quiet NaN.
TEST(Tanh, SpecialLanesRaiseNoFlag) {
  for (const auto& ex : k64) {
    const auto r = luxtest::call_unary<double>(ex.name, {INFINITY, NAN, -INFINITY, -NAN, INFINITY});
    EXPECT_EQ(r.flags & ~luxtk::kInexact, 0u) << ex.name << " " << luxtk::flag_names(r.flags);
    EXPECT_EQ(r.status, luxOk);
  }
  for (const auto& ex : k32) {
    const auto r = luxtest::call_unary<float>(ex.name, {INFINITY, NAN, -INFINITY, -NAN, INFINITY});
    EXPECT_EQ(r.flags & ~luxtk::kInexact, 0u) << ex.name << " " << luxtk::flag_names(r.flags);
    EXPECT_EQ(r.status, luxOk);
  }
}

TEST(Tanh, InPlaceAndTails) {
  const std::vector<double> d = {0.5,       25.0, -0.01, 1e300, NAN,  -19.99, 0.2,
                                 -INFINITY, 8.1,  0.03,  2.0,   -0.1, 1e-310};
  const std::vector<float> f = {0.5f, 12.0f,     -0.01f, 1e30f, NAN,  -9.99f,
                                0.2f, -INFINITY, 8.1f,   0.03f, 2.0f, -0.1f};
  for (const auto& ex : k64) hyptest::expect_in_place_and_tails(ex.name, d);
  for (const auto& ex : k32) hyptest::expect_in_place_and_tails(ex.name, f);
}

TEST(Tanh64, Accuracy) { luxtest::expect_family_accuracy("Tanh", 64); }
TEST(Tanh32, Accuracy) { luxtest::expect_family_accuracy("Tanh", 32); }

}  // namespace
