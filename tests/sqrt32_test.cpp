// Sqrt and InvSqrt on binary32: special values and statuses of each tier's
// lane routines, the report order of the two InvSqrt special paths, the
// binary64 fallback of the full InvSqrt tier, and accuracy.  Everything on
// the vector path rests on the processor's rsqrt estimate and is checked by
// bound, or against another lane computed by the same instructions.
#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f32;

const char* const kSqrt[] = {"luxsSqrt_32f_A11", "luxsSqrt_32f_A21", "luxsSqrt_32f_A24"};
const char* const kInvSqrt[] = {"luxsInvSqrt_32f_A11", "luxsInvSqrt_32f_A21", "luxsInvSqrt_32f_A24"};
constexpr uint32_t kAnyNaN = 0xFFFFFFFFu;

struct Special {
  uint32_t x, sqrt, invsqrt;  // kAnyNaN: any NaN (the estimate's NaN differs by processor)
  int sqrt_status, invsqrt_status;
};
const Special kSpecials[] = {
    {0x00000000u, 0x00000000u, 0x7F800000u, 0, 18},
    {0x80000000u, 0x80000000u, 0xFF800000u, 0, 18},
    {0x7F800000u, 0x7F800000u, 0x00000000u, 0, 0},
    {0xFF800000u, 0xFFC00000u, kAnyNaN, 19, 19},
    {0xBF800000u, 0xFFC00000u, kAnyNaN, 19, 19},
    {0x80000001u, 0xFFC00000u, kAnyNaN, 19, 19},  // negative denormal
    {0x7FC00123u, 0x7FC00123u, kAnyNaN, 0, 0},
};

TEST(Sqrt32, SpecialValuesAndStatusesInBlocksAndTails) {
  for (int family = 0; family < 2; ++family) {
    for (int t = 0; t < 3; ++t) {
      const char* name = family == 0 ? kSqrt[t] : kInvSqrt[t];
      for (const Special& s : kSpecials) {
        for (int len : {1, 3, 16, 21}) {
          const int at = len == 1 ? 0 : len == 16 ? 9 : len - 2;
          std::vector<float> x(len, 2.25f);
          x[at] = f32(s.x);
          const auto r = luxtest::call_unary(name, x);
          SCOPED_TRACE(testing::Message() << name << " x " << std::hex << s.x << " len " << std::dec << len);
          const uint32_t want = family == 0 ? s.sqrt : s.invsqrt;
          if (want == kAnyNaN)
            EXPECT_TRUE(std::isnan(r.out[at]));
          else
            EXPECT_EQ(bits(r.out[at]), want);
          const int status = family == 0 ? s.sqrt_status : s.invsqrt_status;
          EXPECT_EQ(r.status, status);
          if (status == 19) {
            EXPECT_TRUE(r.flags & luxtk::kInvalid);
          }
          EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, status == 18);
        }
      }
    }
  }
}

TEST(InvSqrt32, ReportOrderOfTheSpecialPaths) {
  // The full tier reports a block's zero lanes first, then its negative
  // ones; the others go lane by lane.
  struct Case {
    int neg_at, zero_at;
    int a24, a21;
  } const cases[] = {{1, 6, 19, 18}, {6, 1, 19, 19}, {1, 9, 18, 18}, {9, 1, 19, 19}};
  for (const Case& c : cases) {
    std::vector<float> x(16, 0.7f);
    x[c.neg_at] = -1.0f;
    x[c.zero_at] = 0.0f;
    EXPECT_EQ(luxtest::call_unary("luxsInvSqrt_32f_A24", x).status, c.a24) << c.neg_at << " " << c.zero_at;
    EXPECT_EQ(luxtest::call_unary("luxsInvSqrt_32f_A21", x).status, c.a21) << c.neg_at << " " << c.zero_at;
    EXPECT_EQ(luxtest::call_unary("luxsInvSqrt_32f_A11", x).status, c.a21) << c.neg_at << " " << c.zero_at;
  }
}

TEST(InvSqrt32, FullTierFallbackIsTheBinary64Quotient) {
  // A failing block is recomputed as sqrt(x)/x in binary64: its good lanes
  // no longer depend on the estimate, and match that quotient exactly.
  luxtk::Rng rng(2);
  std::vector<float> x(11);
  for (float& v : x) v = float(rng.log_uniform(0x1p-140, 0x1p+127, false));
  x[3] = -2.0f;
  x[10] = 0x1p-140f;  // tail lane: a denormal takes the same fallback
  const auto r = luxtest::call_unary("luxsInvSqrt_32f_A24", x);
  EXPECT_EQ(r.status, luxWarnDomain);
  for (int i : {0, 1, 2, 4, 5, 6, 7, 10}) {
    const double d = double(x[i]);
    EXPECT_EQ(bits(r.out[i]), bits(float(std::sqrt(d) / d))) << "lane " << i;
  }
}

TEST(InvSqrt32, SpecialPathsKeepEveryLaneWithinTheBound) {
  // Finite lanes beyond 0x7F7FF001 and denormals take the four-lane special
  // path of the fast tiers, as do the good lanes of a failing block and the
  // filler of a partial vector.
  const std::vector<float> x = {f32(0x7F7FF002u), f32(0x7F7FFFFFu), 0x1p-149f, 0x1.8p-130f, 3.0f, 0.0f, 5.5f};
  for (int t = 0; t < 3; ++t) {
    for (size_t len : {x.size(), size_t(3)}) {
      const std::vector<float> in(x.begin(), x.begin() + len);
      const auto r = luxtest::call_unary(kInvSqrt[t], in);
      for (size_t i = 0; i < len; ++i) {
        if (in[i] == 0.0f) continue;
        const double want = 1.0 / std::sqrt(double(in[i]));
        const double ulp = std::ldexp(1.0, std::ilogb(want) - 23);
        EXPECT_LE(std::fabs(double(r.out[i]) - want) / ulp, t == 0   ? 8192.0
                                                            : t == 1 ? 8.0
                                                                     : 1.0)
            << kInvSqrt[t] << " lane " << i;
      }
    }
  }
}

TEST(Sqrt32, LanesAreIndependentOfTheirBlock) {
  // The call-out runs the vector arithmetic on one lane: a lane's bits do
  // not depend on a failing neighbour or on where the block ends.
  luxtk::Rng rng(4);
  std::vector<float> x(37);
  for (float& v : x) v = float(rng.log_uniform(0x1p-120, 0x1p+120, false));
  for (const char* name : kSqrt) {
    const auto ref = luxtest::call_unary(name, x);
    std::vector<float> y = x;
    y[2] = -1.0f;
    y[20] = 0x1p-140f;
    const auto bad = luxtest::call_unary(name, y);
    for (int i = 0; i < 37; ++i) {
      if (i != 2 && i != 20) {
        EXPECT_EQ(bits(bad.out[i]), bits(ref.out[i])) << name << " lane " << i;
      }
      EXPECT_EQ(bits(luxtest::call_unary(name, std::vector<float>{x[i]}).out[0]), bits(ref.out[i])) << name;
    }
  }
}

TEST(Sqrt32, DenormalsAreScaledAndTheFullTierIsExactOnSquares) {
  const std::vector<float> x = {0x1p-149f, 0x1p-148f, 0x1.21p-140f, 4.0f, 0x1p-126f, 0x1.9p+6f, -0.0f};
  const auto r = luxtest::call_unary("luxsSqrt_32f_A24", x);
  for (size_t i = 0; i < x.size(); ++i)
    EXPECT_EQ(bits(r.out[i]), bits(std::sqrt(x[i]))) << std::hexfloat << x[i];
  EXPECT_EQ(r.status, 0);
}

TEST(Sqrt32, Accuracy) { luxtest::expect_family_accuracy("Sqrt", 32); }
TEST(InvSqrt32, Accuracy) { luxtest::expect_family_accuracy("InvSqrt", 32); }

}  // namespace
