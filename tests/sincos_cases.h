// Special-lane cases that the binary32 and binary64 sine/cosine tests run
// alike, written once over the element type.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "support/testing.h"

namespace sincostest {

// The encodings of one width that the special-lane checks use.
template <class F>
struct Specials;
template <>
struct Specials<float> {
  using U = uint32_t;
  static constexpr U kPlusInf = 0x7F800000, kMinusInf = 0xFF800000, kDefaultNan = 0xFFC00000;
  static constexpr U kQuiet = 0x7FC12345, kNegativeQuiet = 0xFFC00001, kSignalling = 0x7F812345;
  static float of(U b) { return luxtest::f32(b); }
};
template <>
struct Specials<double> {
  using U = uint64_t;
  static constexpr U kPlusInf = 0x7FF0000000000000u, kMinusInf = 0xFFF0000000000000u;
  static constexpr U kDefaultNan = 0xFFF8000000000000u;
  static constexpr U kQuiet = 0x7FF8000000012345u, kNegativeQuiet = 0xFFF8000000000001u;
  static constexpr U kSignalling = 0x7FF0000000012345u;
  static double of(U b) { return luxtest::f64(b); }
};

// An infinity stores the default NaN, warns of a domain error and raises
// invalid: one at lane `at` (-Inf when `minus_first`, else +Inf) and the other
// sign in the last lane, for each length of `inf_lens` (a full block, which
// goes to the call-out, and a tail).  A quiet NaN comes back as itself with no
// status and no invalid flag; a signalling one comes back quieted, raising
// invalid only: lanes 0 and 1, for each length of `nan_lens`.
template <class F>
void expect_infinities_and_nans(const char* name, std::initializer_list<int> inf_lens, int at,
                                bool minus_first, std::initializer_list<int> nan_lens) {
  using S = Specials<F>;
  using luxtest::bits;
  for (int len : inf_lens) {
    std::vector<F> in(len, F(0.5));
    in[at] = S::of(minus_first ? S::kMinusInf : S::kPlusInf);
    in[len - 1] = S::of(minus_first ? S::kPlusInf : S::kMinusInf);
    const auto r = luxtest::call_unary(name, in);
    EXPECT_EQ(r.status, luxWarnDomain);
    EXPECT_TRUE(r.flags & luxtk::kInvalid);
    EXPECT_EQ(bits(r.out[at]), S::kDefaultNan);
    EXPECT_EQ(bits(r.out[len - 1]), S::kDefaultNan);
  }
  for (int len : nan_lens) {
    std::vector<F> in(len, F(0.25));
    in[1] = S::of(S::kQuiet);
    in[0] = S::of(S::kNegativeQuiet);
    auto r = luxtest::call_unary(name, in);
    EXPECT_EQ(r.status, luxOk);
    EXPECT_FALSE(r.flags & luxtk::kInvalid);
    EXPECT_EQ(bits(r.out[1]), S::kQuiet);
    EXPECT_EQ(bits(r.out[0]), S::kNegativeQuiet);
    in[1] = S::of(S::kSignalling);
    r = luxtest::call_unary(name, in);
    EXPECT_EQ(r.status, luxOk);
    EXPECT_TRUE(r.flags & luxtk::kInvalid);
    EXPECT_EQ(bits(r.out[1]), S::kQuiet);
  }
}

}  // namespace sincostest
