// Inv and Div on binary32: poles and their statuses per export, the x87
// division outside the estimate range, in-place calls through failing
// pipelined blocks, and accuracy.  The estimate tiers (A11, A21) depend on
// the processor's reciprocal estimate, so their vector results are checked
// by bound and by identities between exports, never by bits.
#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f32;
using luxtest::Result;

const char* const kInv[] = {"luxsInv_32f_A11", "luxsInv_32f_A21", "luxsInv_32f_A24"};
const char* const kDiv[] = {"luxsDiv_32f_A11", "luxsDiv_32f_A21", "luxsDiv_32f_A24"};

Result<float> call_div(const char* name, const std::vector<float>& a, const std::vector<float>& b) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  void* fn = luxtk::export_address(name);
  Result<float> r;
  if (!e || !fn) {
    ADD_FAILURE() << name << " is not implemented";
    return r;
  }
  r.out.assign(a.size(), 0.0f);
  const luxtk::Outcome o = luxtk::run_clean([&] {
    return luxtk::invoke(*e, fn, a.data(), b.data(), nullptr, r.out.data(), nullptr, int(a.size()));
  });
  r.status = o.status;
  r.flags = o.flags;
  return r;
}

// Ordinary lanes around a special one, so that it sits in a vector block.
std::vector<float> block_of(float fill, int len, int at, float special) {
  std::vector<float> v(len);
  for (int i = 0; i < len; ++i) v[i] = fill * (1.0f + 0.125f * float(i));
  v[at] = special;
  return v;
}

TEST(Inv32, PolesStoreSignedInfinityAndReport18) {
  for (const char* name : kInv) {
    for (int len : {1, 8, 13}) {
      for (uint32_t z : {0x00000000u, 0x80000000u}) {
        const int at = len == 1 ? 0 : len - 6;
        const Result<float> r = luxtest::call_unary(name, block_of(1.5f, len, at, f32(z)));
        EXPECT_EQ(bits(r.out[at]), z | 0x7F800000u) << name << " len " << len;
        EXPECT_EQ(r.status, luxWarnSingularity) << name;
        EXPECT_TRUE(r.flags & luxtk::kDivByZero) << name;
      }
    }
  }
}

TEST(Inv32, OutsideTheEstimateRangeIsTheDivision) {
  // Denormals overflow to infinity without a status; 2^127 and the largest
  // finite give denormal reciprocals; NaN stays NaN.
  const uint32_t xs[] = {0x00000001u, 0x80400000u, 0x7F000000u, 0x7F7FFFFFu, 0x00400000u, 0xFF800000u};
  for (const char* name : kInv) {
    std::vector<float> in = block_of(0.75f, 16, 0, 1.0f);
    for (int k = 0; k < 6; ++k) in[2 * k + 1] = f32(xs[k]);
    const Result<float> r = luxtk::find_export(name) ? luxtest::call_unary(name, in) : Result<float>{};
    ASSERT_EQ(r.out.size(), in.size());
    for (int k = 0; k < 6; ++k)
      EXPECT_EQ(bits(r.out[2 * k + 1]), bits(1.0f / in[2 * k + 1])) << name << " x " << std::hex << xs[k];
    EXPECT_EQ(r.status, 0) << name;
    // 2^126, whose estimate can fall below the least normal, divides alone
    // and in a block.
    for (int len : {1, 16}) {
      const Result<float> t = luxtest::call_unary(name, block_of(1.25f, len, 0, f32(0x7E800000u)));
      EXPECT_EQ(bits(t.out[0]), 0x00800000u) << name << " len " << len;
    }
  }
}

TEST(Div32, ZeroDivisorsReportUnlessTheDividendIsNaN) {
  struct Case {
    uint32_t a, b, want;  // want 0xFFFFFFFF: any NaN
    int status;
  } const cases[] = {
      {0x3F800000u, 0x00000000u, 0x7F800000u, 18},  // 1/+0
      {0x3F800000u, 0x80000000u, 0xFF800000u, 18},  // 1/-0
      {0xC0000000u, 0x00000000u, 0xFF800000u, 18},  // -2/+0
      {0x00000000u, 0x00000000u, 0xFFFFFFFFu, 18},  // 0/0
      {0x7F800000u, 0x80000000u, 0xFF800000u, 18},  // Inf/-0
      {0x7FC00001u, 0x00000000u, 0xFFFFFFFFu, 0},   // NaN/0
      {0x3F800000u, 0x00000001u, 0x7F800000u, 0},   // overflow is no status
      {0x00000001u, 0x7F000000u, 0x00000000u, 0},   // nor is underflow
      {0x7F800000u, 0x7F800000u, 0xFFFFFFFFu, 0},   // Inf/Inf
  };
  for (const char* name : kDiv) {
    for (const Case& c : cases) {
      for (int len : {1, 8, 11}) {
        const int at = len == 1 ? 0 : 3;
        std::vector<float> a = block_of(3.0f, len, at, f32(c.a)), b = block_of(0.5f, len, at, f32(c.b));
        const Result<float> r = call_div(name, a, b);
        SCOPED_TRACE(testing::Message()
                     << name << " a " << std::hex << c.a << " b " << c.b << " len " << len);
        if (c.want == 0xFFFFFFFFu)
          EXPECT_TRUE(std::isnan(r.out[at]));
        else
          EXPECT_EQ(bits(r.out[at]), c.want);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, c.status == 18);
      }
    }
  }
}

TEST(Div32, EstimateTiersAreTheDividendTimesTheirReciprocal) {
  // Div at A11 and A21 stores r*a with the r that Inv stores: the same
  // estimate instruction, whatever the processor's table.
  luxtk::Rng rng(7);
  std::vector<float> a(40), b(40);
  for (int i = 0; i < 40; ++i) {
    a[i] = float(rng.log_uniform(0x1p-60, 0x1p+60, true));
    b[i] = float(rng.log_uniform(0x1p-100, 0x1p+100, true));
  }
  for (const char* tier : {"A11", "A21"}) {
    const Result<float> q = call_div((std::string("luxsDiv_32f_") + tier).c_str(), a, b);
    const Result<float> r = luxtest::call_unary((std::string("luxsInv_32f_") + tier).c_str(), b);
    for (int i = 0; i < 40; ++i) EXPECT_EQ(bits(q.out[i]), bits(r.out[i] * a[i])) << tier << " lane " << i;
  }
}

TEST(Div32, InPlaceThroughAFailingPipelinedBlock) {
  // A zero divisor in the second half of a block: the first half has been
  // stored before the block fails, and must be redone from its inputs.
  for (const char* name : {"luxsDiv_32f_A11", "luxsDiv_32f_A21"}) {
    for (int at : {3, 6, 13}) {
      const std::vector<float> a = block_of(-2.5f, 21, at, 1.0f), b = block_of(0.3f, 21, at, 0.0f);
      const Result<float> ref = call_div(name, a, b);
      EXPECT_EQ(ref.status, luxWarnSingularity);
      for (int which : {1, 2}) {
        std::vector<float> x = a, y = b;
        std::vector<float>& io = which == 1 ? x : y;
        const luxtk::CensusEntry* e = luxtk::find_export(name);
        const int st = luxtk::run_clean([&] {
                         return luxtk::invoke(*e, luxtk::export_address(name), x.data(), y.data(), nullptr,
                                              io.data(), nullptr, 21);
                       }).status;
        EXPECT_EQ(st, luxWarnSingularity) << name;
        for (int i = 0; i < 21; ++i)
          EXPECT_EQ(bits(io[i]), bits(ref.out[i])) << name << " in place on src" << which << " lane " << i;
        EXPECT_EQ(which == 1 ? y : x, which == 1 ? b : a) << name << " stored to a source-only array";
      }
    }
  }
}

TEST(Inv32, InPlaceThroughAFailingPipelinedBlock) {
  for (const char* name : {"luxsInv_32f_A11", "luxsInv_32f_A21"}) {
    std::vector<float> x = block_of(1.7f, 19, 5, 0.0f);
    x[14] = f32(0x00000010u);
    const Result<float> ref = luxtest::call_unary(name, x);
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    const int st = luxtk::run_clean([&] {
                     return luxtk::invoke(*e, luxtk::export_address(name), x.data(), nullptr, nullptr,
                                          x.data(), nullptr, 19);
                   }).status;
    EXPECT_EQ(st, luxWarnSingularity);
    for (int i = 0; i < 19; ++i) EXPECT_EQ(bits(x[i]), bits(ref.out[i])) << name << " lane " << i;
  }
}

TEST(Div32, HardwareTierIsTheIeeeQuotient) {
  luxtk::Rng rng(11);
  std::vector<float> a(37), b(37);
  for (int i = 0; i < 37; ++i) {
    a[i] = float(rng.log_uniform(0x1p-149, 0x1p+127, true));
    b[i] = float(rng.log_uniform(0x1p-149, 0x1p+127, true));
  }
  const Result<float> q = call_div("luxsDiv_32f_A24", a, b);
  const Result<float> r = luxtest::call_unary("luxsInv_32f_A24", b);
  for (int i = 0; i < 37; ++i) {
    EXPECT_EQ(bits(q.out[i]), bits(a[i] / b[i])) << i;
    EXPECT_EQ(bits(r.out[i]), bits(1.0f / b[i])) << i;
  }
}

TEST(Inv32, Accuracy) { luxtest::expect_family_accuracy("Inv", 32); }
TEST(Div32, Accuracy) { luxtest::expect_family_accuracy("Div", 32); }

}  // namespace
