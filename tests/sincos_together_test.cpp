// SinCos on both widths: the 64f A53 and A26 results against luxsSin and
// luxsCos of the same tier, bit for bit; special lanes in both arrays with
// their statuses and flags; the range limits through the block rule; result
// arrays that are the source; tails; the MPFR sweeps of both arrays.
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::call_unary;

const char* const kSinCos32[] = {"luxsSinCos_32f_A24", "luxsSinCos_32f_A21", "luxsSinCos_32f_A11"};
const char* const kSinCos64[] = {"luxsSinCos_64f_A53", "luxsSinCos_64f_A50", "luxsSinCos_64f_A26"};

template <class T>
struct Pair {
  std::vector<T> s, c;
  int status = 0;
  uint32_t flags = 0;
};

// One call; `alias` 1 or 2 makes that result array the source itself.
template <class T>
Pair<T> call_pair(const char* name, const std::vector<T>& in, int alias = 0) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  void* fn = luxtk::export_address(name);
  Pair<T> p;
  if (!e || !fn) {
    ADD_FAILURE() << name << " is not implemented";
    return p;
  }
  std::vector<T> src = in;
  p.s.assign(in.size(), T(-7));
  p.c.assign(in.size(), T(-7));
  T* d1 = alias == 1 ? src.data() : p.s.data();
  T* d2 = alias == 2 ? src.data() : p.c.data();
  const luxtk::Outcome o = luxtk::run_clean(
      [&] { return luxtk::invoke(*e, fn, src.data(), nullptr, nullptr, d1, d2, int(in.size())); });
  if (alias == 1) p.s = src;
  if (alias == 2) p.c = src;
  p.status = o.status;
  p.flags = o.flags;
  return p;
}

double ulps(double x, double got, int width, bool cosine) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, x, MPFR_RNDN);
  if (cosine)
    mpfr_cos(e, e, MPFR_RNDN);
  else
    mpfr_sin(e, e, MPFR_RNDN);
  const double u = luxtk::ulp_error(got, e, width);
  mpfr_clear(e);
  return u;
}

std::vector<double> mixed_inputs() {
  luxtk::Rng rng(11);
  std::vector<double> xs;
  for (int i = 0; i < 400; ++i) xs.push_back(rng.uniform(-90000.0, 90000.0));
  for (int i = 0; i < 400; ++i) xs.push_back(rng.log_uniform(0x1p-30, 8.0, true));
  return xs;
}

// The 64f A53 and A26 tiers run the sine's arithmetic twice on one
// reduction, the second time a quarter turn on in the table: they give the
// bits of the Sin and Cos exports of their tier (zeros apart: SinCos keeps
// the sign of -0 in the sine).
TEST(SinCos, Binary64HighAndEpTiersAreSinAndCos) {
  const std::vector<double> xs = mixed_inputs();
  const struct {
    const char *both, *sin, *cos;
  } tiers[] = {{"luxsSinCos_64f_A53", "luxsSin_64f_A53", "luxsCos_64f_A53"},
               {"luxsSinCos_64f_A26", "luxsSin_64f_A26", "luxsCos_64f_A26"}};
  for (const auto& t : tiers) {
    const auto p = call_pair<double>(t.both, xs);
    const auto s = call_unary<double>(t.sin, xs), c = call_unary<double>(t.cos, xs);
    for (size_t i = 0; i < xs.size(); ++i) {
      EXPECT_EQ(bits(p.s[i]), bits(s.out[i])) << t.both << " sin x = " << luxtk::hexfloat(xs[i]);
      EXPECT_EQ(bits(p.c[i]), bits(c.out[i])) << t.both << " cos x = " << luxtk::hexfloat(xs[i]);
    }
  }
}

template <class T>
void check_specials(const char* name) {
  const T zero = 0, inf = INFINITY;
  for (const T z : {zero, -zero})
    for (int len : {1, 5, 8, 9}) {
      const auto p = call_pair<T>(name, std::vector<T>(len, z));
      EXPECT_EQ(p.status, 0) << name;
      for (int i = 0; i < len; ++i) {
        EXPECT_EQ(bits(p.s[i]), bits(z)) << name << " len " << len;
        EXPECT_EQ(p.c[i], T(1)) << name << " len " << len;
      }
    }
  for (const T x : {inf, -inf}) {
    const auto p = call_pair<T>(name, {T(1), x, T(2)});
    EXPECT_TRUE(std::isnan(p.s[1]) && std::isnan(p.c[1])) << name;
    EXPECT_EQ(p.status, luxWarnDomain) << name;
    EXPECT_NE(p.flags & luxtk::kInvalid, 0u) << name;
  }
  const auto q = call_pair<T>(name, {T(NAN), T(1), T(2), T(NAN)});
  EXPECT_EQ(q.status, 0) << name;
  EXPECT_TRUE(std::isnan(q.s[0]) && std::isnan(q.c[0]) && std::isnan(q.s[3]) && std::isnan(q.c[3])) << name;
  EXPECT_EQ(q.flags & luxtk::kInvalid, 0u) << name;
  // Ordinary and huge finite lanes raise nothing but inexact.
  const auto h = call_pair<T>(name, {T(1), T(-3), T(1e4), T(1e30), T(-7), T(0.1), T(12800), T(1e5), T(3)});
  EXPECT_EQ(h.status, 0) << name;
  EXPECT_EQ(h.flags & ~luxtk::kInexact, 0u) << name << " " << luxtk::flag_names(h.flags);
}

TEST(SinCos, SpecialLanes) {
  for (const char* n : kSinCos32) check_specials<float>(n);
  for (const char* n : kSinCos64) check_specials<double>(n);
}

// A block whose lanes all lie within the limit keeps the vector path's bits
// (those of each lane alone in a tail); one lane beyond it sends the block
// of 8 (binary32) or 4 (binary64) to the scalar routine, whose results, in
// both arrays, are within 1 ulp and the same for every tier of a width.
template <class T>
void check_limit(const std::vector<const char*>& names, T inside, T outside) {
  constexpr int block = sizeof(T) == 4 ? 8 : 4;
  const std::vector<T> others = {T(0.7), T(-1.3), T(2.9), T(-4.4), T(5.6), T(-6.1), T(7.7), T(-8.25)};
  Pair<T> first;
  for (const char* name : names) {
    SCOPED_TRACE(name);
    std::vector<T> in(others.begin(), others.begin() + block);
    in[2] = inside;
    in.insert(in.end(), others.begin(), others.begin() + block);
    const auto stay = call_pair<T>(name, in);
    for (int l = 0; l < 2 * block; ++l) {
      const auto alone = call_pair<T>(name, {in[l]});
      EXPECT_EQ(bits(stay.s[l]), bits(alone.s[0])) << "lane " << l;
      EXPECT_EQ(bits(stay.c[l]), bits(alone.c[0])) << "lane " << l;
    }
    in[2] = outside;
    const auto leave = call_pair<T>(name, in);
    for (int l = 0; l < 2 * block; ++l) {
      if (l == 2) continue;
      if (l < block) {
        EXPECT_LE(ulps(double(in[l]), double(leave.s[l]), sizeof(T) * 8, false), 1.0) << "lane " << l;
        EXPECT_LE(ulps(double(in[l]), double(leave.c[l]), sizeof(T) * 8, true), 1.0) << "lane " << l;
        if (!first.s.empty()) {
          EXPECT_EQ(bits(leave.s[l]), bits(first.s[l])) << "lane " << l;
          EXPECT_EQ(bits(leave.c[l]), bits(first.c[l])) << "lane " << l;
        }
      } else {
        EXPECT_EQ(bits(leave.s[l]), bits(stay.s[l])) << "lane " << l;
        EXPECT_EQ(bits(leave.c[l]), bits(stay.c[l])) << "lane " << l;
      }
    }
    if (first.s.empty()) first = leave;
  }
}

TEST(SinCos, RangeLimitsAndBlocks) {
  check_limit<float>({kSinCos32[0], kSinCos32[1], kSinCos32[2]}, 10000.0f, std::nextafter(10000.0f, 2e4f));
  // A50: its test reads the high word, so 128000 + 1/16 is the first to leave.
  check_limit<double>({"luxsSinCos_64f_A50"}, 128000.0, 128000.0625);
  // A26 keeps 90112 on the vector path, A53 sends it to the scalar routine.
  check_limit<double>({"luxsSinCos_64f_A26", "luxsSinCos_64f_A50"}, 90112.0, 1e6);
  check_limit<double>({"luxsSinCos_64f_A53"}, std::nextafter(90112.0, 0.0), 90112.0);
}

// Either result array may be the source array itself.
template <class T>
void check_aliasing(const char* name) {
  const std::vector<T> base = {T(0.5), T(1e5),  T(NAN), T(2),  T(-3), T(INFINITY), T(5),  T(1e30), T(7),
                               T(-1),  T(0.25), T(7),   T(-8), T(9),  T(8),        T(-9), T(3),    T(-0.0)};
  for (size_t len = 1; len <= base.size(); ++len) {
    const std::vector<T> in(base.begin(), base.begin() + len);
    const auto ref = call_pair<T>(name, in);
    for (int alias : {1, 2}) {
      const auto a = call_pair<T>(name, in, alias);
      EXPECT_EQ(a.status, ref.status) << name << " len " << len;
      for (size_t i = 0; i < len; ++i) {
        EXPECT_EQ(bits(a.s[i]), bits(ref.s[i]))
            << name << " alias " << alias << " len " << len << " lane " << i;
        EXPECT_EQ(bits(a.c[i]), bits(ref.c[i]))
            << name << " alias " << alias << " len " << len << " lane " << i;
      }
    }
  }
}

TEST(SinCos, ResultArraysMayBeTheSource) {
  for (const char* n : kSinCos32) check_aliasing<float>(n);
  for (const char* n : kSinCos64) check_aliasing<double>(n);
}

// Quadrants of negative arguments in binary32: n < 0 is read from the low
// bits of its two's complement.
TEST(SinCos, NegativeQuadrants) {
  for (const char* name : kSinCos32)
    for (float x : {-0.5f, -1.7f, -3.3f, -4.9f, -6.4f, -7.9f, -9.5f, -11.0f}) {
      const auto p = call_pair<float>(name, {x, x, x, x, x, x, x, x});
      const double bound = std::string(name).ends_with("A11") ? 0x1p13 : 8.0;
      EXPECT_LE(ulps(x, p.s[5], 32, false), bound) << name << " x = " << x;
      EXPECT_LE(ulps(x, p.c[5], 32, true), bound) << name << " x = " << x;
    }
}

// Every point costs two oracle values; the binary64 A53 and A26 results are
// also those of the Sin and Cos exports, which have their own sweeps.  A
// third of the points keeps the suite's time in hand.
TEST(SinCos, Accuracy) {
  const long saved = luxtest::g_sweep.points;
  luxtest::g_sweep.points = std::max(saved / 3, 500L);
  luxtest::expect_family_accuracy("SinCos", 32);
  luxtest::expect_family_accuracy("SinCos", 64);
  luxtest::g_sweep.points = saved;
}

}  // namespace
