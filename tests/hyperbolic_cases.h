// Checks shared by the Sinh, Cosh and Tanh tests, for either width: directed
// rows (input bits, expected bits or "within the tier's bound of MPFR",
// status) run alone, as a whole block and at every position of a block and
// of a tail beside ordinary lanes; in-place calls; tails of every length.
#pragma once

#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace hyptest {

using luxtest::bits;
using luxtest::call_unary;

template <class T>
using Bits = std::conditional_t<sizeof(T) == 8, uint64_t, uint32_t>;

template <class T>
T from_bits(Bits<T> b) {
  if constexpr (sizeof(T) == 8)
    return luxtest::f64(b);
  else
    return luxtest::f32(b);
}

inline constexpr uint64_t kOracle = 1;  // "want": within the tier's bound of MPFR

template <class T>
struct Row {
  unsigned exports;  // bit e: the export kExports[e] of the test
  Bits<T> in;
  Bits<T> want;  // or kOracle
  int status;
};

struct Export {
  const char* name;
  int (*mpfr_f)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
  double bound;  // in ulps
};

inline double ulps(const Export& ex, double x, double got, int width) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, x, MPFR_RNDN);
  ex.mpfr_f(e, e, MPFR_RNDN);
  const double u = luxtk::ulp_error(got, e, width);
  mpfr_clear(e);
  return u;
}

// The correctly rounded value of f(x) in the format.
template <class T>
T rounded(int (*f)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t), T x) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, double(x), MPFR_RNDN);
  f(e, e, MPFR_RNDN);
  const T r = T(luxtk::round_to_format(e, sizeof(T) * 8));
  mpfr_clear(e);
  return r;
}

inline uint32_t required_flags(int status) { return status == luxWarnOverflow ? luxtk::kOverflow : 0u; }

template <class T>
void check_value(const Export& ex, const Row<T>& row, T got) {
  if (row.want != kOracle) {
    EXPECT_EQ(bits(got), row.want);
    return;
  }
  EXPECT_LE(ulps(ex, double(from_bits<T>(row.in)), double(got), sizeof(T) * 8), ex.bound);
  EXPECT_TRUE(std::isfinite(got));
}

// Each row alone, as a block of itself, and at every position among `others`
// (a block and one more lane): the lane's value and the call's status do not
// depend on where it stands.
template <class T, size_t N, size_t R>
void expect_rows(const Export (&exports)[N], const Row<T> (&rows)[R], const std::vector<T>& others) {
  for (size_t e = 0; e < N; ++e) {
    const Export& ex = exports[e];
    std::vector<Bits<T>> other_bits;
    for (T o : others) other_bits.push_back(bits(call_unary<T>(ex.name, {o}).out[0]));
    for (const Row<T>& row : rows) {
      if (!(row.exports >> e & 1)) continue;
      SCOPED_TRACE(testing::Message() << ex.name << " x = 0x" << std::hex << uint64_t(row.in));
      const T x = from_bits<T>(row.in);
      const auto solo = call_unary<T>(ex.name, {x});
      check_value(ex, row, solo.out[0]);
      EXPECT_EQ(solo.status, row.status);
      const uint32_t need = required_flags(row.status);
      EXPECT_EQ(solo.flags & need, need) << luxtk::flag_names(solo.flags);
      if (row.status == 0) {
        EXPECT_EQ(solo.flags & luxtk::kOverflow, 0u) << luxtk::flag_names(solo.flags);
      }
      const int n = int(others.size());
      const auto block = call_unary<T>(ex.name, std::vector<T>(n, x));
      for (T y : block.out) EXPECT_EQ(bits(y), bits(solo.out[0]));
      EXPECT_EQ(block.status, row.status);
      for (int pos = 0; pos <= n; ++pos) {
        std::vector<T> in = others;
        in.push_back(others[0]);
        in[pos] = x;
        const auto r = call_unary<T>(ex.name, in);
        EXPECT_EQ(r.status, row.status) << "position " << pos;
        for (int l = 0; l <= n; ++l)
          EXPECT_EQ(bits(r.out[l]), l == pos ? bits(solo.out[0]) : other_bits[l % n]) << "position " << pos;
      }
    }
  }
}

// In place equals out of place, for every prefix of `in` (whose blocks hold
// lanes that the lane routines settle); and the source is left alone.
template <class T>
void expect_in_place_and_tails(const char* name, const std::vector<T>& in) {
  SCOPED_TRACE(name);
  std::vector<Bits<T>> solo;
  for (T x : in) solo.push_back(bits(call_unary<T>(name, {x}).out[0]));
  for (size_t len = 1; len <= in.size(); ++len) {
    std::vector<T> part(in.begin(), in.begin() + len);
    const auto out = call_unary<T>(name, part);
    for (size_t i = 0; i < len; ++i) EXPECT_EQ(bits(out.out[i]), solo[i]) << "len " << len << " lane " << i;
    auto* fn = reinterpret_cast<luxStatus (*)(const T*, T*, int)>(luxtk::export_address(name));
    std::vector<T> io = part;
    const auto r = luxtk::run_clean([&] { return fn(io.data(), io.data(), int(len)); });
    EXPECT_EQ(r.status, out.status) << "len " << len;
    for (size_t i = 0; i < len; ++i)
      EXPECT_EQ(bits(io[i]), bits(out.out[i])) << "in place, len " << len << " lane " << i;
    std::vector<T> dst(len + 1, T(42));
    const std::vector<T> kept = part;
    fn(part.data(), dst.data(), int(len));
    EXPECT_EQ(dst[len], T(42)) << "wrote past len " << len;
    for (size_t i = 0; i < len; ++i) EXPECT_EQ(bits(part[i]), bits(kept[i])) << "source changed";
  }
}

}  // namespace hyptest
