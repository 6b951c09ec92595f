// The special-value rows of the inverse sine and cosine (both widths) and the
// test that runs them in every tier, in blocks and in tails.
#pragma once

#include <limits>

#include "invtrig_support.h"
#include "luxvm.h"

namespace invtrig {

// kAnyNaN: the tier's arithmetic decides the NaN (the binary64 full tier).
template <class T>
struct AsinAcosRow {
  Bits<T> x, asin, acos;
  int status;
};

template <class T>
inline constexpr Bits<T> kAnyNaN = Bits<T>(~Bits<T>(0));

// Runs each row through `name` (asin when is_asin) at every placement, the
// other lanes holding 0.25: the value, the status, the invalid flag only for
// the domain rows, and the neighbours undisturbed.  `nan_kept` says whether
// the tier returns a NaN source lane bit for bit.
template <class T>
void run_asincos_rows(const char* name, bool is_asin, bool nan_kept,
                      const std::vector<AsinAcosRow<T>>& rows) {
  const T filler = T(0.25);
  const T filler_result = luxtest::call_unary(name, std::vector<T>{filler}).out[0];
  for (const AsinAcosRow<T>& row : rows) {
    for (const Placement p : kPlacements) {
      std::vector<T> x(p.len, filler);
      x[p.at] = from_bits<T>(row.x);
      const auto r = luxtest::call_unary(name, x);
      SCOPED_TRACE(testing::Message() << name << " x 0x" << std::hex << uint64_t(row.x) << std::dec << " len "
                                      << p.len << " at " << p.at);
      Bits<T> want = is_asin ? row.asin : row.acos;
      const bool is_nan = std::isnan(from_bits<T>(row.x));
      if (is_nan && nan_kept) want = row.x;
      if (want == kAnyNaN<T> || (is_nan && !nan_kept))
        EXPECT_TRUE(std::isnan(r.out[p.at]));
      else
        EXPECT_EQ(to_bits(r.out[p.at]), want);
      EXPECT_EQ(r.status, row.status);
      const bool signalling = is_nan && !(row.x >> (sizeof(T) == 4 ? 22 : 51) & 1);
      if (!signalling) {
        EXPECT_EQ((r.flags & luxtk::kInvalid) != 0, row.status == luxWarnDomain);
      }
      EXPECT_EQ(r.flags & (luxtk::kOverflow | luxtk::kDivByZero), 0u);
      for (int i = 0; i < p.len; ++i) {
        if (i != p.at) {
          EXPECT_EQ(to_bits(r.out[i]), to_bits(filler_result)) << "lane " << i;
        }
      }
    }
  }
}

// Domain lanes in a block: each gets the default NaN, the call returns 19
// with the invalid flag, and every other lane keeps its value alone - also
// for two offenders in one block and in the tail.
template <class T>
void expect_domain_lanes_isolated(const char* name, Bits<T> default_nan) {
  luxtk::Rng rng(7);
  std::vector<T> x(27);
  for (T& v : x) v = T(rng.uniform(-1.0, 1.0));
  x[2] = T(2.0);
  x[5] = -std::numeric_limits<T>::infinity();
  x[25] = T(1.5);
  const auto r = luxtest::call_unary(name, x);
  EXPECT_EQ(r.status, luxWarnDomain) << name;
  EXPECT_TRUE(r.flags & luxtk::kInvalid) << name;
  for (int i : {2, 5, 25}) EXPECT_EQ(to_bits(r.out[i]), default_nan) << name << " lane " << i;
  expect_lanes_alone_equal(name, x);
}

}  // namespace invtrig
