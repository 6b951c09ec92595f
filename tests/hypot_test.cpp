// Hypot on both widths: NaN beside infinity, zeros, operands whose squares
// leave the format, Pythagorean triples exact, no status and honest flags,
// lanes independent of their block and tail, in-place calls and accuracy.
// The binary32 root starts from rsqrtps: its results are checked by value
// only where the mathematics fixes them.
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
std::vector<std::string> names() {
  if (sizeof(T) == 8) return {"luxsHypot_64f_A26", "luxsHypot_64f_A50", "luxsHypot_64f_A53"};
  return {"luxsHypot_32f_A11", "luxsHypot_32f_A21", "luxsHypot_32f_A24"};
}

template <class T>
luxtest::Result<T> call(const std::string& name, const std::vector<T>& x, const std::vector<T>& y) {
  using Fn = luxStatus (*)(const T*, const T*, T*, int);
  const Fn fn = reinterpret_cast<Fn>(luxtk::export_address(name.c_str()));
  luxtest::Result<T> r;
  r.out.assign(x.size(), T{});
  const luxtk::Outcome o =
      luxtk::run_clean([&] { return int(fn(x.data(), y.data(), r.out.data(), int(x.size()))); });
  r.status = o.status;
  r.flags = o.flags;
  return r;
}

struct Row {
  uint64_t x, y, want;  // bit patterns; binary32 rows use the low words
  uint32_t flags;       // of invalid, overflow, underflow, division by zero
};
constexpr uint32_t kChecked = luxtk::kInvalid | luxtk::kOverflow | luxtk::kUnderflow | luxtk::kDivByZero;

const Row kRows64[] = {
    {0x7FF0000000000000, 0x7FF8000000000001, 0x7FF0000000000000, 0},  // +Inf beside a NaN
    {0xFFF8000000000002, 0xFFF0000000000000, 0x7FF0000000000000, 0},  // NaN beside -Inf
    {0x7FF4000000000000, 0xFFF0000000000000, 0x7FF0000000000000, 0},  // sNaN beside -Inf: Inf, no flag
    {0x7FF8000000000001, 0xFFF8000000000002, 0xFFF8000000000002, 0},  // two NaNs: the second
    {0xFFF8000000000005, 0x4008000000000000, 0xFFF8000000000005, 0},  // NaN keeps its sign
    {0x8000000000000000, 0x0000000000000003, 0x0000000000000003, 0},  // 0 beside a denormal
    {0x8000000000000000, 0x8000000000000000, 0x0000000000000000, 0},
    {0xC014000000000000, 0x8000000000000000, 0x4014000000000000, 0},
    {0x0000000000000003, 0x0000000000000004, 0x0000000000000005, 0},  // 3, 4, 5 * 2^-1074
    {0x0008000000000000, 0x8006000000000000, 0x000A000000000000, 0},  // both denormal, scaled by 2^1022
    {0x7FD8000000000000, 0x7FE0000000000000, 0x7FE4000000000000, 0},  // 3, 4, 5 * 2^1021: scaled by 2^-996
    {0x7FC8000000000000, 0x7FD0000000000000, 0x7FD4000000000000, 0},  // 3, 4, 5 * 2^1020: near overflow
    {0x7FEFFFFFFFFFFFFF, 0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, luxtk::kOverflow},
    {0x1A88000000000000, 0x1A90000000000000, 0x1A94000000000000, 0},  // 3, 4, 5 * 2^-600
    {0x7E37E43C8800759C, 0x0000000000000001, 0x7E37E43C8800759C, 0},  // 1e300 beside 2^-1074
    {0x3FF0000000000000, 0x01A56E1FC2F8F359, 0x3FF0000000000000, 0},  // 1 beside 1e-300
    {0x5FE0000000000000, 0x3FF0000000000000, 0x5FE0000000000000, 0},  // 2^511 (just out of range) and 1
};
const Row kRows32[] = {
    {0x7F800000, 0x7FC00001, 0x7F800000, 0},
    {0xFFC00002, 0xFF800000, 0x7F800000, 0},
    {0x7FC00001, 0xFFC00002, 0x7FC00002, 0},  // two NaNs: the second, positive
    {0xFFC00005, 0x40400000, 0x7FC00005, 0},  // NaN positive
    {0x80000000, 0x00000003, 0x00000003, 0},
    {0x80000000, 0x80000000, 0x00000000, 0},
    {0x00000003, 0x00000004, 0x00000005, 0},  // x87 path
    // x87 path: its overflow shows in the x87 status word, not in MXCSR.
    {0x7F7FFFFF, 0x7F7FFFFF, 0x7F800000, 0},
    {0x7EC00000, 0x7F000000, 0x7F200000, 0},  // 3, 4, 5 * 2^125
    {0x7F7FFFFF, 0x00000001, 0x7F7FFFFF, 0},
    {0x40400000, 0x40800000, 0x40A00000, 0},
};

template <class T>
void check_rows(const Row* rows, size_t n) {
  for (size_t k = 0; k < n; ++k) {
    const Row& r = rows[k];
    for (const std::string& name : names<T>())
      for (int len : {1, 8, 13}) {
        const int at = len == 1 ? 0 : len == 8 ? 6 : 11;
        std::vector<T> x(len, T(1.25)), y(len, T(-0.75));
        if constexpr (sizeof(T) == 8)
          x[at] = f64(r.x), y[at] = f64(r.y);
        else
          x[at] = f32(uint32_t(r.x)), y[at] = f32(uint32_t(r.y));
        const auto got = call<T>(name, x, y);
        SCOPED_TRACE(testing::Message() << name << " row " << k << " len " << len);
        EXPECT_EQ(uint64_t(bits(got.out[at])), r.want) << std::hex << uint64_t(bits(got.out[at]));
        EXPECT_EQ(got.status, 0);
        EXPECT_EQ(got.flags & kChecked, r.flags);
      }
  }
}
TEST(Hypot64, SpecialValuesHugeAndTinyOperands) { check_rows<double>(kRows64, std::size(kRows64)); }
TEST(Hypot32, SpecialValuesHugeAndTinyOperands) { check_rows<float>(kRows32, std::size(kRows32)); }

// (m^2 - n^2, 2mn, m^2 + n^2), scaled through the block path, the lane
// routine's scalings and the x87 path, in both orders and signs.
template <class T>
void check_triples(double limit, std::initializer_list<int> powers) {
  std::vector<T> x, y, want;
  for (int m = 2; m < 120 && m * m < limit; ++m)
    for (int n = 1; n < m; n += 3)
      for (int p : powers) {
        const double a = double(m * m - n * n), b = 2.0 * m * n, c = double(m * m + n * n);
        if (c >= limit) continue;
        x.push_back(T(std::ldexp(a, p)));
        y.push_back(T(std::ldexp(-b, p)));
        want.push_back(T(std::ldexp(c, p)));
        x.push_back(T(std::ldexp(b, p)));
        y.push_back(T(std::ldexp(a, p)));
        want.push_back(T(std::ldexp(c, p)));
      }
  for (const std::string& name : names<T>()) {
    const auto r = call<T>(name, x, y);
    for (size_t i = 0; i < x.size(); ++i) EXPECT_EQ(r.out[i], want[i]) << name << " " << x[i] << " " << y[i];
  }
}
TEST(Hypot64, PythagoreanTriplesExact) {
  check_triples<double>(0x1p26, {-1070, -1040, -600, -3, 0, 40, 600, 990});
}
TEST(Hypot32, PythagoreanTriplesExact) {
  check_triples<float>(0x1p12, {-145, -130, -70, -3, 0, 20, 70, 115});
}

// Lanes of a failing block and the tail lanes run the vector steps: a lane's
// value does not depend on its neighbours or on where it lies.
template <class T>
void check_independence() {
  luxtk::Rng rng(11);
  std::vector<T> x(23), y(23);
  for (int i = 0; i < 23; ++i) {
    x[i] = T(rng.log_uniform(1e-15, 1e15, true));
    y[i] = T(rng.log_uniform(1e-15, 1e15, true));
  }
  for (const std::string& name : names<T>()) {
    const auto ref = call<T>(name, x, y);
    for (int i = 0; i < 23; ++i) {
      const auto one = call<T>(name, std::vector<T>{x[i]}, std::vector<T>{y[i]});
      EXPECT_EQ(bits(one.out[0]), bits(ref.out[i])) << name << " lane " << i;
    }
    std::vector<T> bx = x;
    bx[2] = T(0), bx[9] = std::numeric_limits<T>::infinity();
    const auto bad = call<T>(name, bx, y);
    for (int i = 0; i < 23; ++i)
      if (i != 2 && i != 9) {
        EXPECT_EQ(bits(bad.out[i]), bits(ref.out[i])) << name << " lane " << i;
      }
    // In place, over either source.
    std::vector<T> a = bx, b = y;
    using Fn = luxStatus (*)(const T*, const T*, T*, int);
    const Fn fn = reinterpret_cast<Fn>(luxtk::export_address(name.c_str()));
    EXPECT_EQ(fn(a.data(), b.data(), a.data(), 23), luxOk);
    for (int i = 0; i < 23; ++i) EXPECT_EQ(bits(a[i]), bits(bad.out[i])) << name << " in place, lane " << i;
    a = bx;
    EXPECT_EQ(fn(a.data(), b.data(), b.data(), 23), luxOk);
    for (int i = 0; i < 23; ++i) EXPECT_EQ(bits(b[i]), bits(bad.out[i])) << name << " in place 2, lane " << i;
  }
}
TEST(Hypot64, LanesAreIndependentOfTheirBlockAndInPlace) { check_independence<double>(); }
TEST(Hypot32, LanesAreIndependentOfTheirBlockAndInPlace) { check_independence<float>(); }

TEST(Hypot64, Accuracy) { luxtest::expect_family_accuracy("Hypot", 64); }
TEST(Hypot32, Accuracy) { luxtest::expect_family_accuracy("Hypot", 32); }

}  // namespace
