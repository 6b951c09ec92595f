// Inv and Div on binary64: batch inversion (bits that depend on the block),
// the scalar batch shape of tails and call-outs, poles per export, the x87
// lane routine of Div, and accuracy.
#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f64;
using luxtest::Result;

Result<double> call_div(const char* name, const std::vector<double>& a, const std::vector<double>& b,
                        double* inplace = nullptr) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  void* fn = luxtk::export_address(name);
  Result<double> r;
  if (!e || !fn) {
    ADD_FAILURE() << name << " is not implemented";
    return r;
  }
  r.out.assign(a.size(), 0.0);
  double* dst = inplace ? inplace : r.out.data();
  const luxtk::Outcome o = luxtk::run_clean(
      [&] { return luxtk::invoke(*e, fn, a.data(), b.data(), nullptr, dst, nullptr, int(a.size())); });
  if (inplace) r.out.assign(inplace, inplace + a.size());
  r.status = o.status;
  r.flags = o.flags;
  return r;
}

// The scalar batch shape of a lane outside a vector block: (1/x^4) * x^2 * x.
double batch_shape(double x) {
  const double s = x * x, q = s * s;
  return (1.0 / q) * s * x;
}

std::vector<double> ramp(int len, double base) {
  std::vector<double> v(len);
  for (int i = 0; i < len; ++i) v[i] = base * (1.0 + 0.0927 * i);
  return v;
}

TEST(Inv64, BatchBitsDependOnTheBlockAndTailsTakeTheScalarShape) {
  for (const char* name : {"luxsInv_64f_A26", "luxsInv_64f_A50"}) {
    // Lane 0 with different partners at lane 2 (same vector position):
    // some of them must change lane 0's last bits.
    luxtk::Rng rng(3);
    int changed = 0;
    for (int trial = 0; trial < 64; ++trial) {
      std::vector<double> x(8);
      for (double& v : x) v = rng.uniform(0.9, 1.1);
      const Result<double> r1 = luxtest::call_unary(name, x);
      x[2] = rng.uniform(0.9, 1.1);
      const Result<double> r2 = luxtest::call_unary(name, x);
      changed += bits(r1.out[0]) != bits(r2.out[0]);
    }
    EXPECT_GT(changed, 0) << name << ": batch results never depended on the block";
    // len 11: lanes 8..10 are the tail, in the scalar batch shape.
    const std::vector<double> x = ramp(11, 1.37);
    const Result<double> r = luxtest::call_unary(name, x);
    for (int i = 8; i < 11; ++i) EXPECT_EQ(bits(r.out[i]), bits(batch_shape(x[i]))) << name << " lane " << i;
  }
}

TEST(Inv64, FailingBlockGoesToTheCallOutWholeAndReportsItsPole) {
  for (const char* name : {"luxsInv_64f_A26", "luxsInv_64f_A50"}) {
    for (uint64_t z : {0x0000000000000000ull, 0x8000000000000000ull}) {
      std::vector<double> x = ramp(16, -0.61);
      x[2] = f64(z);
      x[5] = 0x1p-900;  // outside the batch range: the plain division
      x[12] = 0x1p-1070;
      const Result<double> r = luxtest::call_unary(name, x);
      EXPECT_EQ(bits(r.out[2]), z | 0x7FF0000000000000ull) << name;
      EXPECT_EQ(r.out[5], 0x1p+900) << name;
      EXPECT_EQ(r.out[12], INFINITY) << name;  // overflow: no status of its own
      for (int i : {0, 1, 3, 4, 6, 7, 8, 9}) EXPECT_EQ(bits(r.out[i]), bits(batch_shape(x[i]))) << name << i;
      EXPECT_EQ(r.status, luxWarnSingularity) << name;
      EXPECT_TRUE(r.flags & luxtk::kDivByZero);
    }
  }
}

TEST(Inv64, HardwareTierIsTheIeeeReciprocal) {
  std::vector<double> x = {0x1p-1074, -0x0.8p-1022, 3.0, 0.0, -0.0, 0x1.fffffffffffffp+1023, -INFINITY, 7.5};
  const Result<double> r = luxtest::call_unary("luxsInv_64f_A53", x);
  for (size_t i = 0; i < x.size(); ++i) EXPECT_EQ(bits(r.out[i]), bits(1.0 / x[i])) << i;
  EXPECT_EQ(r.status, luxWarnSingularity);
  const Result<double> d =
      luxtest::call_unary("luxsInv_64f_A53", std::vector<double>{0x1p-1074, 3.0, -0x1p-1060});
  EXPECT_EQ(d.status, 0) << "a denormal overflowing to infinity is no pole";
  // In place, the pole still reports: the zero test reads the loaded pair.
  for (int len : {2, 3}) {
    std::vector<double> io(len, 2.0);
    io[len - 1] = -0.0;
    const luxtk::CensusEntry* e = luxtk::find_export("luxsInv_64f_A53");
    const int st = luxtk::run_clean([&] {
                     return luxtk::invoke(*e, luxtk::export_address(e->name), io.data(), nullptr, nullptr,
                                          io.data(), nullptr, len);
                   }).status;
    EXPECT_EQ(st, luxWarnSingularity) << "len " << len;
    EXPECT_EQ(bits(io[len - 1]), 0xFFF0000000000000ull);
  }
}

TEST(Div64, ZeroDivisorsReportByExport) {
  struct Case {
    double a;
    uint64_t b;
    int batch_status, ha_status;  // tiers A26/A50, tier A53
  } const cases[] = {
      {1.5, 0x0000000000000000ull, 18, 18}, {-1.5, 0x8000000000000000ull, 18, 18},
      {0.0, 0x0000000000000000ull, 18, 18}, {INFINITY, 0x0000000000000000ull, 18, 0},
      {NAN, 0x8000000000000000ull, 18, 0},  {1.0, 0x0000000000000001ull, 0, 0},  // overflow is no status
  };
  for (const char* name : {"luxsDiv_64f_A26", "luxsDiv_64f_A50", "luxsDiv_64f_A53"}) {
    const bool ha = std::string(name).ends_with("A53");
    for (const Case& c : cases) {
      for (int len : {1, 4, 7}) {
        const int at = len == 1 ? 0 : 2;
        std::vector<double> a = ramp(len, 2.2), b = ramp(len, 0.7);
        a[at] = c.a;
        b[at] = f64(c.b);
        const Result<double> r = call_div(name, a, b);
        SCOPED_TRACE(testing::Message()
                     << name << " a " << c.a << " b " << std::hex << c.b << " len " << len);
        const double want = c.a / f64(c.b);
        if (std::isnan(want))
          EXPECT_TRUE(std::isnan(r.out[at]));
        else
          EXPECT_EQ(bits(r.out[at]), bits(want));
        const int status = ha ? c.ha_status : c.batch_status;
        EXPECT_EQ(r.status, status);
        EXPECT_EQ((r.flags & luxtk::kDivByZero) != 0, status == 18);
      }
    }
  }
}

TEST(Div64, BlocksLeavingTheBinary32RangeTakeTheLaneRoutine) {
  // Four divisors near 1e300: their product is far outside binary32, so the
  // lanes go one at a time, with the x87 range holding b^4.  With batch
  // products in range the tier gives correctly rounded results in practice,
  // but only within 8 ulps is promised.
  const std::vector<double> b = {1e300, -3e299, 7e300, 2e-300, 1e-310, 5.0, 0x1p-1074};
  const std::vector<double> a = {3e200, 1.0, -5e-10, 7e-10, 1e-300, -2.5, 0x1p-1070};
  for (const char* name : {"luxsDiv_64f_A26", "luxsDiv_64f_A50"}) {
    const Result<double> r = call_div(name, a, b);
    EXPECT_EQ(r.status, 0);
    for (size_t i = 0; i < a.size(); ++i) {
      const double want = a[i] / b[i];
      EXPECT_LE(std::fabs(r.out[i] - want), 8 * (std::nextafter(std::fabs(want), INFINITY) - std::fabs(want)))
          << name << " lane " << i;
    }
    EXPECT_EQ(r.out[6], 16.0);
  }
}

TEST(Div64, InPlaceOnEitherSourceAndTheAliasedTiersAgree) {
  luxtk::Rng rng(5);
  std::vector<double> a(23), b(23);
  for (int i = 0; i < 23; ++i) {
    a[i] = rng.log_uniform(0x1p-300, 0x1p+300, true);
    b[i] = rng.log_uniform(0x1p-300, 0x1p+300, true);
  }
  b[6] = 0.0;
  const Result<double> ref = call_div("luxsDiv_64f_A26", a, b);
  EXPECT_EQ(ref.out, call_div("luxsDiv_64f_A50", a, b).out);
  for (int which : {1, 2}) {
    std::vector<double> io = which == 1 ? a : b;
    const Result<double> r = which == 1 ? call_div("luxsDiv_64f_A26", io, b, io.data())
                                        : call_div("luxsDiv_64f_A26", a, io, io.data());
    EXPECT_EQ(r.status, luxWarnSingularity);
    for (int i = 0; i < 23; ++i)
      EXPECT_EQ(bits(r.out[i]), bits(ref.out[i])) << "src" << which << " lane " << i;
  }
}

TEST(Inv64, Accuracy) { luxtest::expect_family_accuracy("Inv", 64); }
TEST(Div64, Accuracy) { luxtest::expect_family_accuracy("Div", 64); }

}  // namespace
