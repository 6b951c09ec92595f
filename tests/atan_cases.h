// The special-value rows of Atan and of Atan2's whole table (signed zeros,
// infinities in either argument, NaN), quadrants at both axes and extreme
// ratios, written once over the element type.  Expected values are the
// correctly rounded ones; the Atan2 rows hold for every tier because every
// such lane takes the x87 fallback or is exact on the vector path.
#pragma once

#include <cmath>
#include <limits>

#include "invtrig_support.h"
#include "luxvm.h"

namespace invtrig {

// The constants of a format: pi, pi/2, pi/4, 3pi/4 rounded to nearest.
template <class T>
struct Angles;
template <>
struct Angles<float> {
  static constexpr uint32_t pi = 0x40490FDB, pio2 = 0x3FC90FDB, pio4 = 0x3F490FDB, three_pio4 = 0x4016CBE4;
};
template <>
struct Angles<double> {
  static constexpr uint64_t pi = 0x400921FB54442D18, pio2 = 0x3FF921FB54442D18, pio4 = 0x3FE921FB54442D18,
                            three_pio4 = 0x4002D97C7F3321D2;
};

template <class T>
struct PairRow {
  T y, x;
  Bits<T> want;  // kAnyNaN<T>: any NaN
};

template <class T>
inline constexpr Bits<T> kAnyNaNBits = Bits<T>(~Bits<T>(0));

template <class T>
Bits<T> neg(Bits<T> b) {
  return b ^ (Bits<T>(1) << (8 * sizeof(T) - 1));
}

// The rows: signed zeros against each other and against finite x, the axes,
// infinities in either argument, NaN in either, the diagonal, and ratios
// below the least subnormal, inside the subnormals and above the largest.
template <class T>
std::vector<PairRow<T>> atan2_rows() {
  using A = Angles<T>;
  const T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  const T big = std::numeric_limits<T>::max(), tiny = std::numeric_limits<T>::denorm_min();
  const bool f = sizeof(T) == 4;
  // A ratio far below the least subnormal, one exactly a subnormal power of
  // two, one far above the largest finite; all arguments normal.
  const T lo = f ? T(0x1p-100) : T(0x1p-600), hi = f ? T(0x1p100) : T(0x1p600);
  const T sub_y = f ? T(0x1p-60) : T(0x1p-500), sub_x = f ? T(0x1p80) : T(0x1p560);
  const Bits<T> sub = to_bits(T(sub_y / sub_x));
  const Bits<T> zero = 0, mzero = neg<T>(0), nanb = kAnyNaNBits<T>;
  return {
      {T(0.0), T(0.0), zero},
      {T(-0.0), T(0.0), mzero},
      {T(0.0), T(-0.0), A::pi},
      {T(-0.0), T(-0.0), neg<T>(A::pi)},
      {T(0.0), T(3.0), zero},
      {T(-0.0), T(3.0), mzero},
      {T(0.0), T(-3.0), A::pi},
      {T(-0.0), T(-3.0), neg<T>(A::pi)},
      {T(2.0), T(0.0), A::pio2},
      {T(2.0), T(-0.0), A::pio2},
      {T(-2.0), T(0.0), neg<T>(A::pio2)},
      {T(-2.0), T(-0.0), neg<T>(A::pio2)},
      {inf, inf, A::pio4},
      {-inf, inf, neg<T>(A::pio4)},
      {inf, -inf, A::three_pio4},
      {-inf, -inf, neg<T>(A::three_pio4)},
      {inf, T(1.0), A::pio2},
      {-inf, T(-1.0), neg<T>(A::pio2)},
      {inf, T(0.0), A::pio2},
      {T(1.0), inf, zero},
      {T(-1.0), inf, mzero},
      {T(1.0), -inf, A::pi},
      {T(-1.0), -inf, neg<T>(A::pi)},
      {T(0.0), inf, zero},
      {T(-0.0), -inf, neg<T>(A::pi)},
      {nan, T(1.0), nanb},
      {T(1.0), nan, nanb},
      {nan, nan, nanb},
      {nan, inf, nanb},
      {T(0.0), nan, nanb},
      {T(1.0), T(1.0), A::pio4},
      {T(-1.0), T(1.0), neg<T>(A::pio4)},
      {T(1.0), T(-1.0), A::three_pio4},
      {T(-1.0), T(-1.0), neg<T>(A::three_pio4)},
      {T(5.5), T(5.5), A::pio4},
      // Near the x axis: y/x tiny, for x > 0 the result is y/x, for x < 0
      // pi with y's sign.
      {lo, hi, zero},
      {-lo, hi, mzero},
      {lo, -hi, A::pi},
      {-lo, -hi, neg<T>(A::pi)},
      {sub_y, sub_x, sub},
      {-sub_y, sub_x, neg<T>(sub)},
      {tiny, T(1.0), to_bits(tiny)},
      {-tiny, T(-1.0), neg<T>(A::pi)},
      // Near the y axis: y/x beyond the largest finite.
      {hi, lo, A::pio2},
      {hi, -lo, A::pio2},
      {-hi, lo, neg<T>(A::pio2)},
      {-hi, -lo, neg<T>(A::pio2)},
      {big, tiny, A::pio2},
      {-big, -tiny, neg<T>(A::pio2)},
  };
}

// Every row at every placement in every tier: value, status 0, no invalid
// flag, and the filler lanes undisturbed.  The two-class tiers of binary32
// reach the diagonal |y| = |x| through their polynomial: there the value is
// checked to the tier's accuracy (and its sign exactly) unless `exact_diagonal`.
template <class T>
void run_atan2_rows(const char* name, bool exact_diagonal = true) {
  const T fy = T(0.75), fx = T(-1.25);
  const Bits<T> filler = to_bits(call_binary(name, std::vector<T>{fy}, std::vector<T>{fx}).out[0]);
  for (const PairRow<T>& row : atan2_rows<T>()) {
    for (const Placement p : kPlacements) {
      std::vector<T> y(p.len, fy), x(p.len, fx);
      y[p.at] = row.y;
      x[p.at] = row.x;
      const auto r = call_binary(name, y, x);
      SCOPED_TRACE(testing::Message() << name << " y " << row.y << " x " << row.x << " len " << p.len);
      const bool diagonal = std::fabs(row.y) == std::fabs(row.x) && std::isfinite(row.y) && row.y != 0;
      if (row.want == kAnyNaNBits<T>) {
        EXPECT_TRUE(std::isnan(r.out[p.at]));
      } else if (diagonal && !exact_diagonal) {
        const T want = from_bits<T>(row.want);
        EXPECT_NEAR(double(r.out[p.at]), double(want), 1e-3 * std::fabs(double(want)));
        EXPECT_EQ(std::signbit(r.out[p.at]), std::signbit(want));
      } else {
        EXPECT_EQ(to_bits(r.out[p.at]), row.want) << std::hexfloat << r.out[p.at];
      }
      EXPECT_EQ(r.status, 0);
      EXPECT_EQ(r.flags & (luxtk::kInvalid | luxtk::kDivByZero | luxtk::kOverflow), 0u);
      for (int i = 0; i < p.len; ++i) {
        if (i != p.at) {
          EXPECT_EQ(to_bits(r.out[i]), filler) << "lane " << i;
        }
      }
    }
  }
}

// Random pairs over every quadrant with the special rows' arguments mixed in:
// each lane equals itself alone, also in place on either source.
template <class T>
void expect_atan2_lanes_independent(const char* name) {
  luxtk::Rng rng(23);
  std::vector<T> y, x;
  for (int i = 0; i < 40; ++i) {
    y.push_back(T(rng.log_uniform(0x1p-20, 0x1p20, true)));
    x.push_back(T(rng.log_uniform(0x1p-20, 0x1p20, true)));
  }
  const auto rows = atan2_rows<T>();
  for (size_t k = 0; k < rows.size(); k += 3) {
    const size_t at = (k * 7) % y.size();
    y[at] = rows[k].y;
    x[at] = rows[k].x;
  }
  expect_pairs_alone_equal(name, y, x);
}

// Atan: +-0, +-Inf, NaN, the diagonal; each at every placement, no status,
// no invalid flag.
template <class T>
void run_atan_rows(const char* name, bool exact_pio4) {
  using A = Angles<T>;
  const T inf = std::numeric_limits<T>::infinity();
  struct Row {
    T x;
    Bits<T> want;
  };
  std::vector<Row> rows = {
      {T(0.0), 0},
      {T(-0.0), neg<T>(0)},
      {inf, A::pio2},
      {-inf, neg<T>(A::pio2)},
      {std::numeric_limits<T>::quiet_NaN(), kAnyNaNBits<T>},
      {std::numeric_limits<T>::max(), A::pio2},
      {std::numeric_limits<T>::denorm_min(), to_bits(std::numeric_limits<T>::denorm_min())}};
  if (exact_pio4) rows.push_back({T(1.0), A::pio4});
  const T filler = T(0.3);
  const Bits<T> filler_bits = to_bits(luxtest::call_unary(name, std::vector<T>{filler}).out[0]);
  for (const Row& row : rows) {
    for (const Placement p : kPlacements) {
      std::vector<T> x(p.len, filler);
      x[p.at] = row.x;
      const auto r = luxtest::call_unary(name, x);
      SCOPED_TRACE(testing::Message() << name << " x " << row.x << " len " << p.len);
      if (row.want == kAnyNaNBits<T>)
        EXPECT_TRUE(std::isnan(r.out[p.at]));
      else
        EXPECT_EQ(to_bits(r.out[p.at]), row.want) << std::hexfloat << r.out[p.at];
      EXPECT_EQ(r.status, 0);
      EXPECT_EQ(r.flags & (luxtk::kInvalid | luxtk::kDivByZero | luxtk::kOverflow), 0u);
      for (int i = 0; i < p.len; ++i) {
        if (i != p.at) {
          EXPECT_EQ(to_bits(r.out[i]), filler_bits) << "lane " << i;
        }
      }
    }
  }
}

// Atan is odd bit for bit (the sign is or-ed in last), and a lane's value
// does not depend on its neighbours (infinities and NaN among them).
template <class T>
void expect_atan_odd_and_independent(const char* name, std::vector<T> limits) {
  luxtk::Rng rng(5);
  std::vector<T> x;
  for (int i = 0; i < 40; ++i) x.push_back(T(rng.log_uniform(0x1p-30, 0x1p30, false)));
  for (T l : limits)
    for (int k = -2; k <= 2; ++k) {
      T v = l;
      for (int j = 0; j < (k < 0 ? -k : k); ++j) v = std::nextafter(v, k < 0 ? T(0) : T(2) * l);
      x.push_back(v);
    }
  x[3] = std::numeric_limits<T>::infinity();
  x[9] = std::numeric_limits<T>::quiet_NaN();
  std::vector<T> nx;
  for (T v : x) nx.push_back(-v);
  const auto p = luxtest::call_unary(name, x), n = luxtest::call_unary(name, nx);
  for (size_t i = 0; i < x.size(); ++i) {
    if (!std::isnan(x[i])) {
      EXPECT_EQ(to_bits(p.out[i]), neg<T>(to_bits(n.out[i]))) << name << " x " << x[i];
    }
  }
  expect_lanes_alone_equal(name, x);
  expect_lanes_alone_equal(name, nx);
}

}  // namespace invtrig
