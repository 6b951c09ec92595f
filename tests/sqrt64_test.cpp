// Sqrt and InvSqrt on binary64: the special values and statuses of the lane
// routines, denormal scaling, zero signs, lane independence across call-outs
// and tails, and accuracy.  The seed comes from the binary32 estimate, so
// results are checked by bound except where they cannot depend on it.
#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f64;

const char* const kSqrt[] = {"luxsSqrt_64f_A26", "luxsSqrt_64f_A50", "luxsSqrt_64f_A53"};
const char* const kInvSqrt[] = {"luxsInvSqrt_64f_A26", "luxsInvSqrt_64f_A50", "luxsInvSqrt_64f_A53"};

struct Special {
  uint64_t x, sqrt, invsqrt;
  int sqrt_status, invsqrt_status;
};
const Special kSpecials[] = {
    {0x0000000000000000ull, 0x0000000000000000ull, 0x7FF0000000000000ull, 0, 18},
    {0x8000000000000000ull, 0x8000000000000000ull, 0xFFF0000000000000ull, 0, 18},
    {0x7FF0000000000000ull, 0x7FF0000000000000ull, 0x0000000000000000ull, 0, 0},
    {0xFFF0000000000000ull, 0xFFF8000000000000ull, 0xFFF8000000000000ull, 19, 19},
    {0xBFF0000000000000ull, 0xFFF8000000000000ull, 0xFFF8000000000000ull, 19, 19},
    {0x8000000000000001ull, 0xFFF8000000000000ull, 0xFFF8000000000000ull, 19, 19},  // negative denormal
    {0x7FF4000000000123ull, 0x7FFC000000000123ull, 0x7FFC000000000123ull, 0, 0},    // sNaN quieted
    {0xFFF8000000000042ull, 0xFFF8000000000042ull, 0xFFF8000000000042ull, 0, 0},
};

TEST(Sqrt64, SpecialValuesAndStatusesInBlocksAndTails) {
  for (int family = 0; family < 2; ++family) {
    for (int t = 0; t < 3; ++t) {
      const char* name = family == 0 ? kSqrt[t] : kInvSqrt[t];
      for (const Special& s : kSpecials) {
        for (int len : {1, 8, 11}) {
          const int at = len == 1 ? 0 : len == 8 ? 5 : 9;  // block lane, or tail lane
          std::vector<double> x(len, 2.25);
          x[at] = f64(s.x);
          const auto r = luxtest::call_unary(name, x);
          SCOPED_TRACE(testing::Message() << name << " x " << std::hex << s.x << " len " << std::dec << len);
          EXPECT_EQ(bits(r.out[at]), family == 0 ? s.sqrt : s.invsqrt);
          const int status = family == 0 ? s.sqrt_status : s.invsqrt_status;
          EXPECT_EQ(r.status, status);
          // Invalid goes with 19 (a signalling NaN raises it too, without status).
          if (status == 19) {
            EXPECT_TRUE(r.flags & luxtk::kInvalid);
          }
          EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, status == 18);
          // The other lanes are untouched by the special one.
          const auto ref = luxtest::call_unary(name, std::vector<double>(len, 2.25));
          for (int i = 0; i < len; ++i)
            if (i != at) {
              EXPECT_EQ(bits(r.out[i]), bits(ref.out[i])) << "lane " << i;
            }
        }
      }
    }
  }
}

TEST(Sqrt64, LastOffendingLaneDecidesTheStatus) {
  for (const char* name : kInvSqrt) {
    std::vector<double> x(13, 3.0);
    x[2] = -1.0, x[10] = 0.0;
    EXPECT_EQ(luxtest::call_unary(name, x).status, luxWarnSingularity) << name;
    x[2] = 0.0, x[10] = -1.0;
    EXPECT_EQ(luxtest::call_unary(name, x).status, luxWarnDomain) << name;
  }
}

TEST(Sqrt64, ExactCasesOfTheFullTier) {
  const std::vector<double> x = {4.0, 0x1p-1074, 0x1p-1022, 0x1p+1022, 1.0, 2.25, 0x1.2p-1040, 0x1p-1072};
  const auto r = luxtest::call_unary("luxsSqrt_64f_A53", x);
  for (size_t i = 0; i < x.size(); ++i) EXPECT_EQ(r.out[i], std::sqrt(x[i])) << std::hexfloat << x[i];
  // Powers of 4 have exact reciprocal roots.
  const std::vector<double> p = {4.0, 0x1p-1074, 0x1p-1022, 0x1p+1022, 1.0, 0x1p-1072, 0x1p-2};
  for (const char* name : {"luxsInvSqrt_64f_A53", "luxsInvSqrt_64f_A26"}) {
    const auto q = luxtest::call_unary(name, p);
    for (size_t i = 0; i < p.size(); ++i)
      EXPECT_EQ(q.out[i], 1.0 / std::sqrt(p[i])) << name << std::hexfloat << p[i];
  }
}

TEST(Sqrt64, LanesAreIndependentOfTheirBlock) {
  // Call-outs and tails run the vector arithmetic on one lane: a lane's bits
  // do not depend on a failing neighbour or on where the block ends.
  luxtk::Rng rng(9);
  std::vector<double> x(19);
  for (double& v : x) v = rng.log_uniform(0x1p-1000, 0x1p+1000, false);
  for (int f = 0; f < 2; ++f) {
    for (int t = 0; t < 3; ++t) {
      const char* name = f == 0 ? kSqrt[t] : kInvSqrt[t];
      const auto ref = luxtest::call_unary(name, x);
      std::vector<double> y = x;
      y[1] = -7.0;
      y[12] = NAN;
      const auto bad = luxtest::call_unary(name, y);
      for (int i = 0; i < 19; ++i)
        if (i != 1 && i != 12) {
          EXPECT_EQ(bits(bad.out[i]), bits(ref.out[i])) << name << " lane " << i;
        }
      for (int i = 0; i < 19; ++i) {
        const auto one = luxtest::call_unary(name, std::vector<double>{x[i]});
        EXPECT_EQ(bits(one.out[0]), bits(ref.out[i])) << name << " lane " << i;
      }
    }
  }
}

TEST(Sqrt64, Accuracy) { luxtest::expect_family_accuracy("Sqrt", 64); }
TEST(InvSqrt64, Accuracy) { luxtest::expect_family_accuracy("InvSqrt", 64); }

}  // namespace
