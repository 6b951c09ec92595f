// luxsSin_32f_* and luxsCos_32f_*: special lanes and their statuses, the
// exact small-argument results of each tier, the range limits seen through
// the block redo, lane (in)dependence, in-place calls, huge arguments against
// MPFR, and the accuracy sweep.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "scalar/trig_scalar.h"
#include "sincos_cases.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::call_unary;
using luxtest::f32;

const char* const kAll[] = {"luxsSin_32f_A11", "luxsSin_32f_A21", "luxsSin_32f_A24",
                            "luxsCos_32f_A11", "luxsCos_32f_A21", "luxsCos_32f_A24"};

bool is_sin(const std::string& name) { return name.rfind("luxsSin", 0) == 0; }

// The scalar routine that the export's failing blocks go to.
using CallOut = void (*)(int, const lux32f*, lux32f*, luxStatus*);
CallOut call_out_of(const std::string& name) {
  const bool s = is_sin(name);
  if (name.ends_with("A11")) return s ? orksSin_SC_A11 : orksCos_SC_A11;
  if (name.ends_with("A21")) return s ? orksSin_SC_LA : orksCos_SC_LA;
  return s ? orksSin_SC_HA : orksCos_SC_HA;
}
float call_out(const std::string& name, float x) {
  float out = 0;
  luxStatus st = 0;
  call_out_of(name)(0, &x, &out, &st);
  return out;
}

// The vector path's limit: |x| at or below it stays.
float limit_of(const std::string& name) { return name == "luxsSin_32f_A11" ? 4000.0f : 10000.0f; }

// A block of 8 ordinary lanes with `x` in lane `at`.
std::vector<float> block_with(float x, int at) {
  std::vector<float> v = {0.5f, 1.0f, 2.0f, 3.0f, -0.75f, 1.25f, 0.1f, -2.5f};
  v[at] = x;
  return v;
}

TEST(SinCos32, InfinityStoresDefaultNanAndWarnsNanPassesQuietly) {
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    // +Inf at lane 2, -Inf last, in a full block (call-out for the block) and
    // in the tail; NaNs in a block and in a tail.
    sincostest::expect_infinities_and_nans<float>(name, {8, 11}, 2, false, {8, 3});
  }
}

TEST(SinCos32, ExactSmallArguments) {
  // Lane values of sin(x) and cos(x) on the vector path (a block of 8 and
  // the tail): the zero's sign of the sine follows the reduction, which keeps
  // it in the double-precision tier only; the EP cosine evaluates its
  // polynomial at pi/2 for x = 0.
  const float tiny[] = {0x1p-149f, -0x1p-149f, 0x1.8p-130f, 0x1p-126f, -0x1.234p-60f, 0x1p-30f};
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    const std::string n = name;
    const bool ha = n.ends_with("A24"), ep = n.ends_with("A11");
    for (int len : {8, 1}) {
      const auto pz = call_unary(name, std::vector<float>(len, 0.0f));
      const auto nz = call_unary(name, std::vector<float>(len, -0.0f));
      if (is_sin(n)) {
        EXPECT_EQ(bits(pz.out[0]), 0u);
        EXPECT_EQ(bits(nz.out[0]), ha ? 0x80000000u : 0u);
      } else {
        EXPECT_EQ(bits(pz.out[0]), ep ? 0x3F7FF60Fu : 0x3F800000u);
        EXPECT_EQ(bits(nz.out[0]), ep ? 0x3F7FF60Fu : 0x3F800000u);
      }
      for (float x : tiny) {
        const auto r = call_unary(name, std::vector<float>(len, x));
        EXPECT_EQ(bits(r.out[0]), is_sin(n) ? bits(x) : ep ? 0x3F7FF60Fu : 0x3F800000u) << luxtk::hexfloat(x);
        EXPECT_EQ(r.status, luxOk);
      }
    }
    // A -0.0 in a block that goes to the call-out keeps its sign in the sine.
    std::vector<float> in = block_with(-0.0f, 3);
    in[6] = 1e20f;
    const auto c = call_unary(name, in);
    EXPECT_EQ(bits(c.out[3]), is_sin(n) ? 0x80000000u : 0x3F800000u);
  }
}

TEST(SinCos32, LimitsDecideTheBlockPath) {
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    const std::string n = name;
    // A probe lane whose vector and call-out results differ.
    std::vector<float> candidates(512);
    for (size_t i = 0; i < candidates.size(); ++i) candidates[i] = 0.37f + 0.731f * float(i);
    const auto vec = call_unary(name, candidates);
    float probe = 0;
    for (size_t i = 0; i < candidates.size() && probe == 0; ++i)
      if (bits(vec.out[i]) != bits(call_out(n, candidates[i]))) probe = candidates[i];
    ASSERT_NE(probe, 0.0f) << "no lane tells the two paths apart";
    const float lim = limit_of(n);
    for (float edge : {lim, -lim, std::nextafter(lim, INFINITY), -std::nextafter(lim, INFINITY)}) {
      std::vector<float> in = block_with(edge, 5);
      in[2] = probe;
      const auto r = call_unary(name, in);
      const bool stays = std::fabs(edge) <= lim;
      EXPECT_EQ(bits(r.out[2]),
                bits(stays ? call_unary(name, std::vector<float>{probe}).out[0] : call_out(n, probe)))
          << "edge " << luxtk::hexfloat(edge);
      EXPECT_EQ(r.status, luxOk);
    }
  }
}

TEST(SinCos32, EpSineBlockWithFarLaneHasCallOutAccuracy) {
  // Lanes 1, 2, 3 beside a lane of 5000.0 come from the double-precision
  // routine; the same lanes in a block of their own keep EP accuracy.
  const std::vector<float> in = {0.0f, 1.0f, 2.0f, 3.0f, 5000.0f, 0.5f, 0.25f, 0.125f,
                                 0.0f, 1.0f, 2.0f, 3.0f, 0.75f,   0.5f, 0.25f, 0.125f};
  const auto r = call_unary("luxsSin_32f_A11", in);
  bool differs = false;
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(bits(r.out[i]), bits(call_out("luxsSin_32f_A11", in[i]))) << i;
    differs |= bits(r.out[i]) != bits(r.out[i + 8]) && i != 4;
  }
  EXPECT_TRUE(differs);
}

TEST(SinCos32, LanesAreIndependentOnTheVectorPath) {
  // The same value alone (tail), in every position of a block, and in-place.
  const float values[] = {1.5707963f, -3.1415927f, 0.785398f, 123.456f, -9999.5f, 3999.9f, 1e-3f};
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    for (float x : values) {
      if (std::fabs(x) > limit_of(name)) continue;
      const uint32_t alone = bits(call_unary(name, std::vector<float>{x}).out[0]);
      for (int at = 0; at < 8; ++at) EXPECT_EQ(bits(call_unary(name, block_with(x, at)).out[at]), alone);
    }
  }
}

TEST(SinCos32, InPlaceThroughTheCallOut) {
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    std::vector<float> in = {1.0f, -2.0f, 1e30f, 0.5f, f32(0x7F800000), 7.0f, 8.0f, 9.0f, 1e6f, -0.1f, 4.0f};
    const auto ref = call_unary(name, in);
    void* fn = luxtk::export_address(name);
    auto f = reinterpret_cast<luxStatus (*)(const lux32f*, lux32f*, int)>(fn);
    const luxtk::Outcome o = luxtk::run_clean([&] { return f(in.data(), in.data(), int(in.size())); });
    EXPECT_EQ(o.status, ref.status);
    for (size_t i = 0; i < in.size(); ++i) EXPECT_EQ(bits(in[i]), bits(ref.out[i])) << i;
  }
}

TEST(SinCos32, HugeArgumentsAreReducedExactly) {
  const float huge[] = {1e22f, -1e22f, FLT_MAX, -FLT_MAX, 0x1p100f, 16777215.0f, 131072.0f};
  mpfr_t x, y;
  mpfr_inits2(256, x, y, (mpfr_ptr)0);
  for (const char* name : kAll) {
    SCOPED_TRACE(name);
    std::vector<float> in(huge, huge + std::size(huge));
    const auto r = call_unary(name, in);
    EXPECT_EQ(r.status, luxOk);
    for (size_t i = 0; i < in.size(); ++i) {
      mpfr_set_flt(x, in[i], MPFR_RNDN);
      is_sin(name) ? mpfr_sin(y, x, MPFR_RNDN) : mpfr_cos(y, x, MPFR_RNDN);
      EXPECT_LE(luxtk::ulp_error(r.out[i], y, 32), 0.501) << luxtk::hexfloat(in[i]);
    }
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

TEST(SinCos32, AccuracySin) { luxtest::expect_family_accuracy("Sin", 32); }
TEST(SinCos32, AccuracyCos) { luxtest::expect_family_accuracy("Cos", 32); }

}  // namespace
