// Calls and checks shared by the inverse sine, cosine and tangent tests of
// both widths: two-argument calls, in-place calls, and the lane-independence
// and in-place checks written once over the element type.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "support/testing.h"

namespace invtrig {

template <class T>
using Bits = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;

template <class T>
T from_bits(Bits<T> b) {
  T v;
  std::memcpy(&v, &b, sizeof v);
  return v;
}
template <class T>
Bits<T> to_bits(T v) {
  Bits<T> b;
  std::memcpy(&b, &v, sizeof v);
  return b;
}
template <class T>
std::vector<Bits<T>> bit_vector(const std::vector<T>& v) {
  std::vector<Bits<T>> out;
  for (T x : v) out.push_back(to_bits(x));
  return out;
}

// One call of a two-argument export (y, x) from a clean MXCSR.
template <class T>
luxtest::Result<T> call_binary(const char* name, const std::vector<T>& y, const std::vector<T>& x) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  void* fn = luxtk::export_address(name);
  luxtest::Result<T> r;
  if (!e || !fn) {
    ADD_FAILURE() << name << " is not implemented";
    return r;
  }
  r.out.assign(y.size(), T{});
  const luxtk::Outcome o = luxtk::run_clean([&] {
    return luxtk::invoke(*e, fn, y.data(), x.data(), nullptr, r.out.data(), nullptr, int(y.size()));
  });
  r.status = o.status;
  r.flags = o.flags;
  return r;
}

// In-place calls: the result array is the (first or second) source.
template <class T>
std::vector<T> call_unary_in_place(const char* name, std::vector<T> v) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  luxtk::invoke(*e, luxtk::export_address(name), v.data(), nullptr, nullptr, v.data(), nullptr,
                int(v.size()));
  return v;
}
template <class T>
std::vector<T> call_binary_in_place(const char* name, std::vector<T> y, std::vector<T> x, bool into_y) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  T* d = into_y ? y.data() : x.data();
  luxtk::invoke(*e, luxtk::export_address(name), y.data(), x.data(), nullptr, d, nullptr, int(y.size()));
  return into_y ? y : x;
}

// Every lane of a long call equals the same lane computed alone (a tail of
// one), whatever its neighbours: blocks, passes and tails agree bit for bit.
template <class T>
void expect_lanes_alone_equal(const char* name, const std::vector<T>& v) {
  const auto all = luxtest::call_unary(name, v);
  for (size_t i = 0; i < v.size(); ++i) {
    const auto one = luxtest::call_unary(name, std::vector<T>{v[i]});
    EXPECT_EQ(to_bits(all.out[i]), to_bits(one.out[0])) << name << " lane " << i << " x " << v[i];
  }
  EXPECT_EQ(bit_vector(call_unary_in_place(name, v)), bit_vector(all.out)) << name << " in place";
}
template <class T>
void expect_pairs_alone_equal(const char* name, const std::vector<T>& y, const std::vector<T>& x) {
  const auto all = call_binary(name, y, x);
  for (size_t i = 0; i < y.size(); ++i) {
    const auto one = call_binary(name, std::vector<T>{y[i]}, std::vector<T>{x[i]});
    EXPECT_EQ(to_bits(all.out[i]), to_bits(one.out[0]))
        << name << " lane " << i << " y " << y[i] << " x " << x[i];
  }
  EXPECT_EQ(bit_vector(call_binary_in_place(name, y, x, true)), bit_vector(all.out))
      << name << " in place (y)";
  EXPECT_EQ(bit_vector(call_binary_in_place(name, y, x, false)), bit_vector(all.out))
      << name << " in place (x)";
  EXPECT_EQ(all.status, 0) << name;
}

// Lengths and the lane that carries the case: alone, inside the first block,
// in the last block, in a tail.
struct Placement {
  int len, at;
};
inline constexpr Placement kPlacements[] = {{1, 0}, {16, 5}, {20, 14}, {21, 19}, {37, 35}};

}  // namespace invtrig
