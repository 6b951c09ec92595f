// ErfInv, ErfcInv and CdfNormInv on binary32: special values and statuses per
// lane class in blocks and tails, lane independence, the odd symmetry of
// ErfInv, the double tail under the binary32 lanes, and accuracy.
#include <cmath>
#include <vector>

#include "common/erfinv_mp.h"
#include "erfinv_accuracy.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f32;

const char* const kNames[3][3] = {
    {"luxsErfInv_32f_A11", "luxsErfInv_32f_A21", "luxsErfInv_32f_A24"},
    {"luxsErfcInv_32f_A11", "luxsErfcInv_32f_A21", "luxsErfcInv_32f_A24"},
    {"luxsCdfNormInv_32f_A11", "luxsCdfNormInv_32f_A21", "luxsCdfNormInv_32f_A24"},
};
constexpr uint32_t kNaN = 0xFFC00000u;
constexpr uint32_t kAnyNaN = 0x7FFFFFFFu;

struct Special {
  int func;
  uint32_t x, want;
  int status;
};
const Special kSpecials[] = {
    {0, 0x00000000u, 0x00000000u, 0},  {0, 0x80000000u, 0x80000000u, 0}, {0, 0x3F800000u, 0x7F800000u, 18},
    {0, 0xBF800000u, 0xFF800000u, 18}, {0, 0x3F800001u, kNaN, 19},       {0, 0xFF800000u, kNaN, 19},
    {0, 0x7FC00001u, kAnyNaN, 0},      {1, 0x3F800000u, 0x00000000u, 0}, {1, 0x80000000u, 0x7F800000u, 18},
    {1, 0x40000000u, 0xFF800000u, 18}, {1, 0x40000001u, kNaN, 19},       {1, 0x80000001u, kNaN, 19},
    {1, 0x7F800000u, kNaN, 19},        {2, 0x3F000000u, 0x00000000u, 0}, {2, 0x00000000u, 0xFF800000u, 18},
    {2, 0x3F800000u, 0x7F800000u, 18}, {2, 0xBF800000u, kNaN, 19},       {2, 0x3F800001u, kNaN, 19},
    {2, 0xFFC00000u, kAnyNaN, 0},
};

TEST(ErfInv32, SpecialValuesAndStatusesInBlocksAndTails) {
  for (const Special& s : kSpecials)
    for (int tier = 0; tier < 3; ++tier)
      for (int len : {1, 7, 8, 19}) {
        const char* name = kNames[s.func][tier];
        const int at = len == 1 ? 0 : len == 8 ? 6 : len - 1;
        std::vector<float> x(len, 0.3f);
        x[at] = f32(s.x);
        const auto r = luxtest::call_unary(name, x);
        SCOPED_TRACE(testing::Message() << name << " x " << std::hex << s.x << " len " << std::dec << len);
        if (s.want == kAnyNaN) {
          EXPECT_TRUE(std::isnan(r.out[at]));
        } else {
          EXPECT_EQ(bits(r.out[at]), s.want);
        }
        EXPECT_EQ(r.status, s.status);
        EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, s.status == 18);
        EXPECT_EQ((r.flags & luxtk::kInvalid) != 0, s.status == 19);
      }
}

TEST(ErfInv32, LanesAreIndependentAndErfInvIsOdd) {
  luxtk::Rng rng(5);
  std::vector<float> x(29);
  for (float& v : x) v = float(rng.log_uniform(0x1p-149, 0.5, false));
  for (int func = 0; func < 3; ++func)
    for (const char* name : kNames[func]) {
      const auto all = luxtest::call_unary(name, x);
      for (size_t i = 0; i < x.size(); ++i)
        EXPECT_EQ(bits(luxtest::call_unary(name, std::vector<float>{x[i]}).out[0]), bits(all.out[i])) << name;
      if (func == 0) {
        std::vector<float> neg(x.size());
        for (size_t i = 0; i < x.size(); ++i) neg[i] = -x[i];
        const auto b = luxtest::call_unary(name, neg);
        for (size_t i = 0; i < x.size(); ++i) EXPECT_EQ(bits(all.out[i]), bits(-b.out[i])) << name;
      }
    }
}

TEST(ErfInv32, TailArgumentsGoThroughTheDoubleTail) {
  // ErfcInv at 1e-30 and CdfNormInv at 2^-149, well inside the A24 bound.
  mpfr_t a, z;
  mpfr_inits2(128, a, z, (mpfr_ptr)0);
  mpfr_set_flt(a, 1e-30f, MPFR_RNDN);
  luxmp::erfcinv(z, a);
  const float e = mpfr_get_flt(z, MPFR_RNDN);
  EXPECT_EQ(luxtest::call_unary("luxsErfcInv_32f_A24", std::vector<float>{1e-30f}).out[0], e);
  mpfr_set_flt(a, 0x1p-149f, MPFR_RNDN);
  luxmp::cdfnorminv(z, a);
  const float c = mpfr_get_flt(z, MPFR_RNDN);
  EXPECT_NEAR(c, -14.12f, 0.01f);
  EXPECT_EQ(luxtest::call_unary("luxsCdfNormInv_32f_A24", std::vector<float>{0x1p-149f}).out[0], c);
  mpfr_clears(a, z, (mpfr_ptr)0);
}

void expect_accuracy(const char* family) { luxtest::expect_inverse_accuracy(family, 32); }

TEST(ErfInv32, Accuracy) { expect_accuracy("ErfInv"); }
TEST(ErfcInv32, Accuracy) { expect_accuracy("ErfcInv"); }
TEST(CdfNormInv32, Accuracy) { expect_accuracy("CdfNormInv"); }

}  // namespace
