// Pow3o2 on both widths: the domain (every x below zero, -Inf, the smallest
// negative denormal), +Inf, NaN, the overflow threshold and denormals with
// their statuses and flags, the zero signs of the vector path against the
// lane routine, lanes independent of their block, exact powers at the full
// tiers, in-place calls and accuracy.  The seeds come from the estimate
// instructions: values are checked by bound or where the mathematics fixes
// them.
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f32;
using luxtest::f64;

template <class T>
std::string name_of(int tier) {
  return std::string("luxsPow3o2_") + (sizeof(T) == 8 ? "64f_A" : "32f_A") + std::to_string(tier);
}
template <class T>
std::vector<int> tiers() {
  return sizeof(T) == 8 ? std::vector<int>{26, 50, 53} : std::vector<int>{11, 21, 24};
}

struct Row {
  uint64_t x, want;  // binary32 rows in the low words; kQuiet: a quiet NaN
  int status;
  uint32_t flags;  // of invalid, division by zero, overflow
};
constexpr uint64_t kQuiet = 1, kFinite = 2;
constexpr uint32_t kChecked = luxtk::kInvalid | luxtk::kDivByZero | luxtk::kOverflow;

const Row kRows64[] = {
    {0xBFF0000000000000, 0xFFF8000000000000, 19, luxtk::kInvalid},
    {0xFFF0000000000000, 0xFFF8000000000000, 19, luxtk::kInvalid},
    {0x8000000000000001, 0xFFF8000000000000, 19, luxtk::kInvalid},  // smallest negative denormal
    {0x7FF0000000000000, 0x7FF0000000000000, 0, 0},
    {0xFFF8000000000042, 0xFFF8000000000042, 0, 0},
    {0x7FF4000000000042, 0x7FFC000000000042, 0, luxtk::kInvalid},  // signalling, quieted
    {0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, 0, luxtk::kOverflow},
    {0x6AA0000000000000, 0x7FF0000000000000, 0, luxtk::kOverflow},  // 2^683, above the threshold 2^682.67
    {0x6A90000000000000, kFinite, 0, 0},                            // 2^682: 2^1023
    {0x0010000000000000, 0x0000000000000000, 0, 0},                 // smallest normal: +0
    {0x0000000000000001, 0x0000000000000000, 0, 0},
    {0x000FFFFFFFFFFFFF, 0x0000000000000000, 0, 0},
};
const Row kRows32[] = {
    {0xBF800000, 0xFFC00000, 19, luxtk::kInvalid},
    {0xFF800000, 0xFFC00000, 19, luxtk::kInvalid},
    {0x80000001, 0xFFC00000, 19, luxtk::kInvalid},
    {0x7F800000, 0x7F800000, 0, 0},
    {0xFFC00042, 0xFFC00042, 0, 0},
    {0x7FA00042, 0x7FE00042, 0, luxtk::kInvalid},
    {0x7F7FFFFF, 0x7F800000, 0, luxtk::kOverflow},
    {0x6A800000, 0x7F800000, 0, luxtk::kOverflow},  // 2^86, above the threshold 2^85.33
    {0x69800000, kFinite, 0, 0},                    // 2^84: 2^126
    {0x00000001, 0x00000000, 0, 0},
    {0x007FFFFF, 0x00000000, 0, 0},
};

template <class T>
void check_rows(const Row* rows, size_t n) {
  for (size_t k = 0; k < n; ++k)
    for (int t : tiers<T>())
      for (int len : {1, 8, 16, 21}) {
        const Row& r = rows[k];
        const int at = len == 1 ? 0 : len == 21 ? 19 : 5;
        std::vector<T> x(len, T(2.25));
        if constexpr (sizeof(T) == 8)
          x[at] = f64(r.x);
        else
          x[at] = f32(uint32_t(r.x));
        const auto got = luxtest::call_unary(name_of<T>(t).c_str(), x);
        SCOPED_TRACE(testing::Message() << name_of<T>(t) << " row " << k << " len " << len);
        const uint64_t g = bits(got.out[at]);
        if (r.want == kQuiet) {
          EXPECT_TRUE(got.out[at] != got.out[at]);
        } else if (r.want == kFinite) {
          EXPECT_TRUE(std::isfinite(got.out[at]));
        } else {
          EXPECT_EQ(g, r.want) << std::hex << g;
        }
        EXPECT_EQ(got.status, r.status);
        EXPECT_EQ(got.flags & kChecked, r.flags);
        // The other lanes keep their value: 2.25^1.5 = 3.375, exact at the
        // full tiers, within the bound elsewhere.
        for (int i = 0; i < len; ++i)
          if (i != at) {
            EXPECT_NEAR(double(got.out[i]), 3.375, t == 11 || t == 26 ? 1e-3 : 1e-6) << "lane " << i;
          }
      }
}
TEST(Pow3o264, SpecialValuesStatusesAndFlags) { check_rows<double>(kRows64, std::size(kRows64)); }
TEST(Pow3o232, SpecialValuesStatusesAndFlags) { check_rows<float>(kRows32, std::size(kRows32)); }

// -0: the vector path of the fast tiers A26 and A11 gives x itself, the
// others +0; the lane routine gives -0 everywhere.  binary64 tails take the
// one-lane vector code but at A53.
template <class T>
void check_minus_zero() {
  for (int t : tiers<T>()) {
    const std::string name = name_of<T>(t);
    const bool vector_keeps = t == 26 || t == 11;
    std::vector<T> x(sizeof(T) == 8 ? 9 : 17, T(1.0));
    const int tail = int(x.size()) - 1;
    x[1] = T(-0.0), x[tail] = T(-0.0);
    auto r = luxtest::call_unary(name.c_str(), x);
    EXPECT_EQ(std::signbit(r.out[1]), vector_keeps) << name;
    const bool tail_keeps = sizeof(T) == 4 || t == 53 || t == 26;
    EXPECT_EQ(std::signbit(r.out[tail]), tail_keeps) << name;
    EXPECT_EQ(r.status, 0);
    x[3] = T(-2.0);  // the block fails: -0 through the lane routine
    r = luxtest::call_unary(name.c_str(), x);
    EXPECT_TRUE(std::signbit(r.out[1])) << name;
    EXPECT_EQ(r.status, luxWarnDomain);
  }
}
TEST(Pow3o264, MinusZero) { check_minus_zero<double>(); }
TEST(Pow3o232, MinusZero) { check_minus_zero<float>(); }

// Lanes of a failing block go through the lane routine, which holds the
// tier's arithmetic; tails too.
template <class T>
void check_independence_and_in_place() {
  luxtk::Rng rng(3);
  std::vector<T> x(37);
  for (T& v : x)
    v = T(rng.log_uniform(sizeof(T) == 8 ? 1e-200 : 1e-25, sizeof(T) == 8 ? 1e200 : 1e25, false));
  for (int t : tiers<T>()) {
    const std::string name = name_of<T>(t);
    const auto ref = luxtest::call_unary(name.c_str(), x);
    for (int i = 0; i < 37; ++i) {
      const auto one = luxtest::call_unary(name.c_str(), std::vector<T>{x[i]});
      EXPECT_EQ(bits(one.out[0]), bits(ref.out[i])) << name << " lane " << i;
    }
    std::vector<T> y = x;
    y[2] = T(-1), y[20] = std::numeric_limits<T>::infinity();
    const auto bad = luxtest::call_unary(name.c_str(), y);
    EXPECT_EQ(bad.status, luxWarnDomain);
    for (int i = 0; i < 37; ++i)
      if (i != 2 && i != 20) {
        EXPECT_EQ(bits(bad.out[i]), bits(ref.out[i])) << name << " lane " << i;
      }
    using Fn = luxStatus (*)(const T*, T*, int);
    EXPECT_EQ(reinterpret_cast<Fn>(luxtk::export_address(name.c_str()))(y.data(), y.data(), 37),
              luxWarnDomain);
    for (int i = 0; i < 37; ++i) EXPECT_EQ(bits(y[i]), bits(bad.out[i])) << name << " in place, lane " << i;
  }
}
TEST(Pow3o264, LanesAreIndependentAndInPlace) { check_independence_and_in_place<double>(); }
TEST(Pow3o232, LanesAreIndependentAndInPlace) { check_independence_and_in_place<float>(); }

// (k^2 * 4^j)^(3/2) = k^3 * 8^j, exact where the full tiers promise it.
TEST(Pow3o2, ExactPowersAtTheFullTiers) {
  std::vector<double> x, want;
  std::vector<float> xf, wantf;
  for (int k = 1; k < 200; ++k)
    for (int j : {-100, -5, 0, 7, 200}) {
      x.push_back(std::ldexp(double(k) * k, 2 * j));
      want.push_back(std::ldexp(double(k) * k * k, 3 * j));
      if (j > -20 && j < 20 && k < 160) {
        xf.push_back(std::ldexp(float(k * k), 2 * j));
        wantf.push_back(std::ldexp(float(k * k * k), 3 * j));
      }
    }
  const auto r = luxtest::call_unary("luxsPow3o2_64f_A53", x);
  for (size_t i = 0; i < x.size(); ++i) EXPECT_EQ(r.out[i], want[i]) << std::hexfloat << x[i];
  const auto s = luxtest::call_unary("luxsPow3o2_32f_A24", xf);
  for (size_t i = 0; i < xf.size(); ++i) EXPECT_EQ(s.out[i], wantf[i]) << std::hexfloat << xf[i];
}

TEST(Pow3o264, Accuracy) { luxtest::expect_family_accuracy("Pow3o2", 64); }
TEST(Pow3o232, Accuracy) { luxtest::expect_family_accuracy("Pow3o2", 32); }

}  // namespace
