// Tan on both widths: special lanes with their statuses and flags, the range
// limits seen through the block rule (a block with a lane beyond the limit
// goes whole to the scalar routine, whose results are the same for every
// tier of a width), the block sizes, poles, tails of the chunked A53 tier,
// in-place calls and the MPFR sweeps.
#include <mpfr.h>

#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::call_unary;

const char* const kTan32[] = {"luxsTan_32f_A24", "luxsTan_32f_A21", "luxsTan_32f_A11"};
const char* const kTan64[] = {"luxsTan_64f_A53", "luxsTan_64f_A50", "luxsTan_64f_A26"};

double tier_bound(const std::string& name) {
  if (name.ends_with("A53") || name.ends_with("A24")) return 1.0;
  if (name.ends_with("A50") || name.ends_with("A21")) return 8.0;
  return name.ends_with("A11") ? 0x1p13 : 0x1p27;
}

double tan_ulps(double x, double got, int width) {
  mpfr_t e;
  mpfr_init2(e, luxtk::kOraclePrecision);
  mpfr_set_d(e, x, MPFR_RNDN);
  mpfr_tan(e, e, MPFR_RNDN);
  const double u = luxtk::ulp_error(got, e, width);
  mpfr_clear(e);
  return u;
}

template <class T>
void check_specials(const char* name) {
  constexpr bool wide = sizeof(T) == 8;
  const T inf = INFINITY, zero = 0;
  // Zeros keep their sign on every path: alone, in a block, in a tail.
  for (const T z : {zero, -zero})
    for (int len : {1, 3, 4, 8, 9}) {
      const auto r = call_unary<T>(name, std::vector<T>(len, z));
      EXPECT_EQ(r.status, 0);
      for (const T y : r.out) EXPECT_EQ(bits(y), bits(z)) << name << " len " << len;
      EXPECT_EQ(r.flags, 0u) << name << " " << luxtk::flag_names(r.flags);
    }
  // Infinities: NaN, domain status, invalid; NaN: quiet, no status.
  for (const T x : {inf, -inf}) {
    const auto r = call_unary<T>(name, {x});
    EXPECT_TRUE(std::isnan(r.out[0])) << name;
    EXPECT_EQ(r.status, luxWarnDomain) << name;
    EXPECT_NE(r.flags & luxtk::kInvalid, 0u) << name;
  }
  const T snan = wide ? T(luxtest::f64(0x7FF4000000000001)) : T(luxtest::f32(0x7FA00001));
  for (const T x : {T(NAN), snan}) {
    const auto r = call_unary<T>(name, {x, T(1), T(2), T(3), x});
    EXPECT_EQ(r.status, 0) << name;
    EXPECT_TRUE(std::isnan(r.out[0]) && std::isnan(r.out[4])) << name;
    const uint64_t quiet = wide ? 0x0008000000000000ull : 0x00400000u;
    EXPECT_NE(uint64_t(bits(r.out[0])) & quiet, 0u) << name;
  }
  // Huge finite lanes and the ordinary ones raise no exception but inexact.
  const std::vector<T> calm = {T(1),  T(-2.5), T(1e4),   wide ? T(1e300) : T(1e38),
                               T(-7), T(0.1),  T(12800), T(1e5)};
  const auto r = call_unary<T>(name, calm);
  EXPECT_EQ(r.status, 0) << name;
  EXPECT_EQ(r.flags & ~luxtk::kInexact, 0u) << name << " " << luxtk::flag_names(r.flags);
  // The last lane of several infinities wins; they are all the same code.
  const auto m = call_unary<T>(name, {T(1), inf, T(2), T(3), T(4), -inf, T(5), T(6), T(7), T(NAN)});
  EXPECT_EQ(m.status, luxWarnDomain) << name;
}

TEST(Tan, SpecialLanes) {
  for (const char* n : kTan32) check_specials<float>(n);
  for (const char* n : kTan64) check_specials<double>(n);
}

// A block with one lane beyond the limit goes whole to the scalar routine:
// its other lanes then carry the scalar routine's bits, which are the same
// for every tier of a width and within 1 ulp, while a block wholly inside
// keeps the vector path's bits (those of each lane alone in a tail).
template <class T>
void check_limit(const char* const (&names)[3], T inside, T outside, int block) {
  const std::vector<T> others = {T(0.7), T(-1.3), T(2.9), T(-4.4), T(5.6), T(-6.1), T(7.7), T(-8.25)};
  std::vector<T> scalar_bits;
  for (const char* name : names) {
    SCOPED_TRACE(name);
    std::vector<T> alone;
    for (const T o : others) alone.push_back(call_unary<T>(name, {o}).out[0]);
    // `inside` in lane 1 of the first block: the block stays in vector code.
    std::vector<T> in(others.begin(), others.begin() + block);
    in[1] = inside;
    const auto a = call_unary<T>(name, in);
    for (int l = 0; l < block; ++l) {
      if (l == 1) continue;
      EXPECT_EQ(bits(a.out[l]), bits(alone[l])) << "lane " << l << " beside the limit";
    }
    // `outside`: every lane of its block through the scalar routine; the
    // next block stays.
    std::vector<T> out2(others.begin(), others.begin() + block);
    out2.insert(out2.end(), others.begin(), others.begin() + block);
    out2[1] = outside;
    const auto b = call_unary<T>(name, out2);
    EXPECT_EQ(b.status, 0);
    std::vector<T> mine;
    for (int l = 0; l < block; ++l) {
      if (l == 1) continue;
      EXPECT_LE(tan_ulps(double(out2[l]), double(b.out[l]), sizeof(T) * 8), 1.0) << "lane " << l;
      mine.push_back(b.out[l]);
    }
    for (int l = block; l < 2 * block; ++l) EXPECT_EQ(bits(b.out[l]), bits(alone[l - block])) << "lane " << l;
    if (scalar_bits.empty()) scalar_bits = mine;
    for (size_t l = 0; l < mine.size(); ++l)
      EXPECT_EQ(bits(mine[l]), bits(scalar_bits[l])) << "scalar lane " << l;
  }
}

TEST(Tan, RangeLimitsAndBlocks) {
  // binary32: 10000 stays, the next float leaves; blocks of 4.
  check_limit<float>(kTan32, 10000.0f, std::nextafter(10000.0f, 2e4f), 4);
  // binary64 A50, A26: the test is on the high word, so 128000 and the
  // doubles up to 128000 + 1/16 stay; A53 sends 128000 itself to the scalar
  // routine, with the other lane of its pair.
  const char* const ep_la[3] = {kTan64[1], kTan64[2], kTan64[1]};
  check_limit<double>(ep_la, 128000.06249999999, 128000.0625, 2);
  const char* const ha[3] = {kTan64[0], kTan64[0], kTan64[0]};
  check_limit<double>(ha, 127999.99999999999, 128000.0, 2);
}

// The binary32 A11 tier runs blocks of 4 only below len & ~7: in a call of
// 7 lanes a lane beyond the limit takes no other lane with it.
TEST(Tan, A11TailIsLaneByLane) {
  const std::vector<float> in = {0.7f, 20000.0f, 2.9f, -4.4f, 5.6f, -6.1f, 7.7f};
  const auto r = call_unary<float>("luxsTan_32f_A11", in);
  for (size_t l = 0; l < in.size(); ++l)
    EXPECT_EQ(bits(r.out[l]), bits(call_unary<float>("luxsTan_32f_A11", {in[l]}).out[0])) << "lane " << l;
}

// Next to a pole the result is large and of the sign of -r, r the distance
// past the pole; every tier within its bound there.
TEST(Tan, NextToPoles) {
  const double half_pi = 0x1.921fb54442d18p+0;  // just below pi/2
  for (const char* name : kTan64)
    for (double x :
         {half_pi, -half_pi, std::nextafter(half_pi, 4.0), 3 * half_pi, 101 * half_pi, 80001 * half_pi}) {
      const double y = call_unary<double>(name, {x, x, x}).out[1];
      EXPECT_LE(tan_ulps(x, y, 64), tier_bound(name)) << name << " x = " << luxtk::hexfloat(x);
      EXPECT_GT(std::fabs(y), 1e4) << name;
    }
  const float half_pi_f = 0x1.921fb6p+0f;  // just above pi/2
  for (const char* name : kTan32)
    for (float x :
         {half_pi_f, -half_pi_f, std::nextafter(half_pi_f, 0.0f), 3 * half_pi_f, 1001 * half_pi_f}) {
      const float y = call_unary<float>(name, {x, x, x, x, x}).out[2];
      EXPECT_LE(tan_ulps(x, y, 32), tier_bound(name)) << name << " x = " << luxtk::hexfloat(x);
    }
  EXPECT_LT(call_unary<double>("luxsTan_64f_A53", {std::nextafter(half_pi, 4.0)}).out[0], -1e15);
  EXPECT_GT(call_unary<double>("luxsTan_64f_A53", {half_pi}).out[0], 1e15);
}

// A53 runs chunks of 256 lanes; a chunk of one lane takes the single-lane
// quotient, which may differ from the pair's in the last bit only.
TEST(Tan, A53ChunksAndTails) {
  luxtk::Rng rng(7);
  std::vector<double> xs;
  for (int i = 0; i < 515; ++i) xs.push_back(rng.uniform(-100.0, 100.0));
  xs[300] = 1e300;  // a pair through the scalar routine in the second chunk
  const auto all = call_unary<double>("luxsTan_64f_A53", xs);
  for (size_t i = 0; i < xs.size(); ++i) {
    EXPECT_LE(tan_ulps(xs[i], all.out[i], 64), 1.0) << i;
    const double alone = call_unary<double>("luxsTan_64f_A53", {xs[i]}).out[0];
    EXPECT_LE(std::fabs(double(int64_t(bits(alone)) - int64_t(bits(all.out[i])))), 1.0) << i;
  }
  for (int len : {255, 256, 257, 258}) {
    const std::vector<double> in(xs.begin(), xs.begin() + len);
    const auto r = call_unary<double>("luxsTan_64f_A53", in);
    // The last lane may be a chunk's single lane.
    for (int i = 0; i < len - 1; ++i)
      EXPECT_EQ(bits(r.out[i]), bits(all.out[i])) << "len " << len << " lane " << i;
    EXPECT_LE(tan_ulps(in[len - 1], r.out[len - 1], 64), 1.0);
  }
}

template <class T>
void check_in_place(const char* name) {
  const std::vector<T> base = {T(0.5), T(1e5),  T(NAN), T(2),  T(-3), T(INFINITY), T(5),  T(1e30), T(7),
                               T(-1),  T(0.25), T(7),   T(-8), T(9),  T(8),        T(-9), T(3)};
  for (size_t len = 1; len <= base.size(); ++len) {
    std::vector<T> in(base.begin(), base.begin() + len);
    const auto ref = call_unary<T>(name, in);
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    void* fn = luxtk::export_address(name);
    const auto o = luxtk::run_clean(
        [&] { return luxtk::invoke(*e, fn, in.data(), nullptr, nullptr, in.data(), nullptr, int(len)); });
    EXPECT_EQ(o.status, ref.status) << name << " len " << len;
    for (size_t i = 0; i < len; ++i) EXPECT_EQ(bits(in[i]), bits(ref.out[i])) << name << " len " << len;
  }
}

TEST(Tan, InPlaceEqualsOutOfPlace) {
  for (const char* n : kTan32) check_in_place<float>(n);
  for (const char* n : kTan64) check_in_place<double>(n);
}

TEST(Tan, Accuracy) {
  luxtest::expect_family_accuracy("Tan", 32);
  luxtest::expect_family_accuracy("Tan", 64);
}

}  // namespace
