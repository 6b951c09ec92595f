// The checks the Erf, Erfc and CdfNorm tests run on every export of a width:
// directed rows (input, expected bits or "within the tier's bound of MPFR",
// status), each alone, as a whole block, and in every position of a block
// and of a tail beside ordinary lanes; the last offending lane's status; in
// place against out of place; tails of every length against lanes alone.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace erftest {

template <class T>
using Bits = std::conditional_t<sizeof(T) == 8, uint64_t, uint32_t>;

template <class T>
struct Export {
  unsigned tier;
  const char* name;
  luxStatus (*fn)(const T*, T*, int);
  double bound;
};

// `want` is a bit pattern, or kOracle: within the tier's bound of MPFR.
inline constexpr uint64_t kOracle = 1;

struct Row {
  unsigned tiers;
  uint64_t in, want;
  int status;
};

using Oracle = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

template <class T>
T value_of(uint64_t b) {
  if constexpr (sizeof(T) == 8)
    return luxtest::f64(b);
  else
    return luxtest::f32(uint32_t(b));
}

template <class T>
double ulps(Oracle f, T x, T got) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, double(x), MPFR_RNDN);
  f(e, e, MPFR_RNDN);
  const double u = luxtk::ulp_error(double(got), e, sizeof(T) == 8 ? 64 : 32);
  mpfr_clear(e);
  return u;
}

inline uint32_t required_flags(int status) {
  return status == luxWarnUnderflow ? luxtk::kUnderflow | luxtk::kInexact : 0;
}

// Every row through every export whose tier it names.  `others` are ordinary
// inputs for the neighbouring lanes (a block's worth).
template <class T>
void directed_rows(const std::vector<Export<T>>& exports, const std::vector<Row>& rows, Oracle f,
                   const std::vector<T>& others, int block) {
  using luxtest::bits;
  using luxtest::call_unary;
  for (const Export<T>& ex : exports) {
    std::vector<Bits<T>> other_bits;
    for (T o : others) other_bits.push_back(bits(call_unary<T>(ex.name, {o}).out[0]));
    for (const Row& row : rows) {
      if (!(row.tiers & ex.tier)) continue;
      const T x = value_of<T>(row.in);
      SCOPED_TRACE(testing::Message() << ex.name << " x = " << luxtk::hexfloat(double(x)));
      const auto solo = call_unary<T>(ex.name, {x});
      if (row.want == kOracle)
        EXPECT_LE(ulps(f, x, solo.out[0]), ex.bound);
      else
        EXPECT_EQ(uint64_t(bits(solo.out[0])), row.want);
      EXPECT_EQ(solo.status, row.status);
      EXPECT_EQ(solo.flags & required_flags(row.status), required_flags(row.status))
          << luxtk::flag_names(solo.flags);
      // A whole block of it, then each position of a block and of a tail.
      const auto whole = call_unary<T>(ex.name, std::vector<T>(block, x));
      for (T y : whole.out) EXPECT_EQ(bits(y), bits(solo.out[0]));
      EXPECT_EQ(whole.status, row.status);
      for (int pos = 0; pos <= block; ++pos) {
        std::vector<T> in;
        for (int l = 0; l <= block; ++l) in.push_back(others[l % others.size()]);
        in[pos] = x;
        const auto r = call_unary<T>(ex.name, in);
        EXPECT_EQ(r.status, row.status) << "position " << pos;
        for (int l = 0; l <= block; ++l)
          EXPECT_EQ(bits(r.out[l]), l == pos ? bits(solo.out[0]) : other_bits[l % others.size()])
              << "position " << pos << " lane " << l;
      }
    }
  }
}

// In place equals out of place, for every length of `in`.
template <class T>
void in_place(const std::vector<Export<T>>& exports, const std::vector<T>& in_all) {
  using luxtest::bits;
  for (const Export<T>& ex : exports)
    for (size_t len = 1; len <= in_all.size(); ++len) {
      std::vector<T> in(in_all.begin(), in_all.begin() + len), out(len), io = in;
      const auto a = luxtk::run_clean([&] { return ex.fn(in.data(), out.data(), int(len)); });
      const auto b = luxtk::run_clean([&] { return ex.fn(io.data(), io.data(), int(len)); });
      EXPECT_EQ(a.status, b.status) << ex.name << " len " << len;
      for (size_t i = 0; i < len; ++i)
        EXPECT_EQ(bits(io[i]), bits(out[i])) << ex.name << " len " << len << " lane " << i;
    }
}

// Tails of every length: each lane equals the lane alone, nothing is written
// past len, and the status is the one `status_of` gives the last offender.
template <class T, class StatusOf>
void tails(const std::vector<Export<T>>& exports, const std::vector<T>& in, StatusOf status_of) {
  using luxtest::bits;
  using luxtest::call_unary;
  for (const Export<T>& ex : exports) {
    std::vector<Bits<T>> solo;
    for (T x : in) solo.push_back(bits(call_unary<T>(ex.name, {x}).out[0]));
    for (size_t len = 1; len <= in.size(); ++len) {
      std::vector<T> out(len + 1, T(42));
      const int st = ex.fn(in.data(), out.data(), int(len));
      int want = 0;
      for (size_t i = 0; i < len; ++i) {
        EXPECT_EQ(bits(out[i]), solo[i]) << ex.name << " len " << len << " lane " << i;
        if (const int s = status_of(ex, in[i])) want = s;
      }
      EXPECT_EQ(out[len], T(42)) << ex.name << " wrote past len " << len;
      EXPECT_EQ(st, want) << ex.name << " len " << len;
    }
  }
}

// Every lane of a (block-sized or longer) array equals its value alone: a
// NaN or an extreme lane changes none of its neighbours.
template <class T>
void lanes_independent(const std::vector<Export<T>>& exports, const std::vector<T>& in) {
  using luxtest::bits;
  using luxtest::call_unary;
  for (const Export<T>& ex : exports) {
    const auto all = call_unary<T>(ex.name, in);
    for (size_t i = 0; i < in.size(); ++i)
      EXPECT_EQ(bits(all.out[i]), bits(call_unary<T>(ex.name, {in[i]}).out[0]))
          << ex.name << " lane " << i << " x = " << luxtk::hexfloat(double(in[i]));
  }
}

}  // namespace erftest
