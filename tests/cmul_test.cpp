// Complex Mul, MulByConj and Div: exact results, the forms of the binary64
// high tier (compensated, extended, plain) against MPC part by part, tiers
// that share their code giving the same bits, and the plain formula's
// behaviour at zero divisors and overflow.
#include <gtest/gtest.h>
#include <mpc.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <string>
#include <vector>

#include "common/complex_oracle.h"
#include "common/fpenv.h"
#include "luxvm.h"
#include "support/test_options.h"

namespace {

template <class T>
using Fn = luxStatus (*)(const T*, const T*, T*, int);

struct Exports32 {
  const char* name;
  Fn<lux32fc> fn;
};
struct Exports64 {
  const char* name;
  Fn<lux64fc> fn;
};

const Exports32 kAll32[] = {
    {"luxsMul_32fc_A11", luxsMul_32fc_A11},
    {"luxsMul_32fc_A21", luxsMul_32fc_A21},
    {"luxsMul_32fc_A24", luxsMul_32fc_A24},
    {"luxsMulByConj_32fc_A11", luxsMulByConj_32fc_A11},
    {"luxsMulByConj_32fc_A21", luxsMulByConj_32fc_A21},
    {"luxsMulByConj_32fc_A24", luxsMulByConj_32fc_A24},
    {"luxsDiv_32fc_A11", luxsDiv_32fc_A11},
    {"luxsDiv_32fc_A21", luxsDiv_32fc_A21},
    {"luxsDiv_32fc_A24", luxsDiv_32fc_A24},
};
const Exports64 kAll64[] = {
    {"luxsMul_64fc_A26", luxsMul_64fc_A26},
    {"luxsMul_64fc_A50", luxsMul_64fc_A50},
    {"luxsMul_64fc_A53", luxsMul_64fc_A53},
    {"luxsMulByConj_64fc_A26", luxsMulByConj_64fc_A26},
    {"luxsMulByConj_64fc_A50", luxsMulByConj_64fc_A50},
    {"luxsMulByConj_64fc_A53", luxsMulByConj_64fc_A53},
    {"luxsDiv_64fc_A26", luxsDiv_64fc_A26},
    {"luxsDiv_64fc_A50", luxsDiv_64fc_A50},
    {"luxsDiv_64fc_A53", luxsDiv_64fc_A53},
};

template <class T>
std::vector<T> run(Fn<T> fn, const std::vector<T>& a, const std::vector<T>& b, int* status = nullptr) {
  std::vector<T> out(a.size());
  const luxtk::Outcome o =
      luxtk::run_clean([&] { return fn(a.data(), b.data(), out.data(), int(a.size())); });
  if (status) *status = o.status;
  return out;
}

// (3 + 4i)(5 - 2i) = 23 + 14i, (3 + 4i) conj(5 - 2i) = 7 + 26i and
// (23 + 14i)/(5 - 2i) = 3 + 4i, also in a block of 5 lanes, at every tier;
// the quotient is exact where the divisor's reciprocal is carried beyond
// the format (binary32 widened, the binary64 high tier).
TEST(ComplexProducts, SmallIntegersAreExact) {
  for (const Exports32& e : kAll32) {
    const std::string n = e.name;
    const bool div = n.find("Div") != std::string::npos, conj = n.find("Conj") != std::string::npos;
    if (div && n.find("A11") != std::string::npos) continue;
    const lux32fc a = div ? lux32fc{23, 14} : lux32fc{3, 4}, b = lux32fc{5, -2};
    const lux32fc want = div ? lux32fc{3, 4} : conj ? lux32fc{7, 26} : lux32fc{23, 14};
    for (const lux32fc& r : run(e.fn, std::vector<lux32fc>(5, a), std::vector<lux32fc>(5, b))) {
      EXPECT_EQ(r.re, want.re) << e.name;
      EXPECT_EQ(r.im, want.im) << e.name;
    }
  }
  for (const Exports64& e : kAll64) {
    const std::string n = e.name;
    const bool div = n.find("Div") != std::string::npos, conj = n.find("Conj") != std::string::npos;
    if (div && n.find("A26") != std::string::npos) continue;
    const lux64fc a = div ? lux64fc{23, 14} : lux64fc{3, 4}, b = lux64fc{5, -2};
    const lux64fc want = div ? lux64fc{3, 4} : conj ? lux64fc{7, 26} : lux64fc{23, 14};
    for (const lux64fc& r : run(e.fn, std::vector<lux64fc>(5, a), std::vector<lux64fc>(5, b))) {
      EXPECT_EQ(r.re, want.re) << e.name;
      EXPECT_EQ(r.im, want.im) << e.name;
    }
  }
}

// Random components, log-uniform over [2^lo, 2^hi) in magnitude.
struct Draw {
  luxtk::Rng rng;
  explicit Draw(uint64_t salt) : rng(luxtest::g_sweep.seed ^ salt) {}
  double operator()(double lo, double hi) {
    return rng.log_uniform(std::ldexp(1.0, int(lo)), std::ldexp(1.0, int(hi)), true);
  }
};

using MpcOp = int (*)(mpc_ptr, mpc_srcptr, mpc_srcptr, mpc_rnd_t);
// a conj(b), exactly.
int mpc_mul_conj(mpc_ptr r, mpc_srcptr a, mpc_srcptr b, mpc_rnd_t rnd) {
  mpc_t c;
  mpc_init2(c, luxtk::kOraclePrecision);
  mpc_conj(c, b, MPC_RNDNN);
  const int t = mpc_mul(r, a, c, rnd);
  mpc_clear(c);
  return t;
}
MpcOp oracle_of(const std::string& name) {
  if (name.find("MulByConj") != std::string::npos) return mpc_mul_conj;
  if (name.find("Mul") != std::string::npos) return mpc_mul;
  return mpc_div;
}

// Each part of the binary64 high tier within an ulp of its own exact value,
// through all three forms: ordinary magnitudes (form A), components beyond
// 2^511 or below 2^-484 and denormals (form B), and products that cancel to
// their last bits, where the plain formula keeps only rounding noise.
TEST(ComplexProducts, HighTierPartsAreAccurateSeparately) {
  const long n = std::max(400L, luxtest::g_sweep.points / 20);
  struct Range {
    const char* what;
    double lo, hi;
  };
  const Range ranges[] = {{"ordinary", -40, 40},
                          {"near the top", 500, 520},
                          {"near the bottom", -540, -470},
                          {"denormal", -1074, -1022}};
  mpc_t z;
  mpc_init2(z, luxtk::kOraclePrecision);
  for (const char* name : {"luxsMul_64fc_A53", "luxsMulByConj_64fc_A53", "luxsDiv_64fc_A53"}) {
    const Exports64* e = nullptr;
    for (const Exports64& x : kAll64)
      if (std::string(x.name) == name) e = &x;
    const MpcOp op = oracle_of(name);
    for (const Range& r : ranges) {
      Draw draw(0x5eed);
      std::vector<lux64fc> a(n), b(n);
      for (long i = 0; i < n; ++i) {
        a[i] = {draw(r.lo, r.hi), draw(r.lo, r.hi)};
        b[i] = {draw(r.lo, r.hi), draw(r.lo, r.hi)};
        if (i % 4 == 3) {
          // p c and q d (or p d and q c) equal but for their last bits.
          b[i] = {a[i].im, a[i].re};
          b[i].re = std::nextafter(b[i].re, 0.0) * (i % 8 == 3 ? 1 : -1);
        }
      }
      const std::vector<lux64fc> got = run(e->fn, a, b);
      double worst = 0;
      long at = 0;
      for (long i = 0; i < n; ++i) {
        luxtk::complex_exact(op, a[i].re, a[i].im, b[i].re, b[i].im, z);
        if (mpfr_inf_p(mpc_realref(z)) || mpfr_inf_p(mpc_imagref(z))) continue;
        const double err = luxtk::complex_ulp_error(got[i].re, got[i].im, z, 64);
        if (err > worst) worst = err, at = i;
      }
      EXPECT_LE(worst, 1.0) << name << " " << r.what << ": (" << a[at].re << ", " << a[at].im << ") op ("
                            << b[at].re << ", " << b[at].im << ") -> (" << got[at].re << ", " << got[at].im
                            << ")";
      std::printf("  %-24s %-16s %.3g ulp\n", name, r.what, worst);
    }
  }
  mpc_clear(z);
}

// The widened binary32 tiers within an ulp of MPC; A21 and A24 (and A50 and
// A53) share their code and give the same bits.
TEST(ComplexProducts, SharedTiersAgreeAndWideTiersAreAccurate) {
  const long n = std::max(400L, luxtest::g_sweep.points / 20);
  Draw draw(0xc0de);
  std::vector<lux32fc> a(n), b(n);
  std::vector<lux64fc> A(n), B(n);
  for (long i = 0; i < n; ++i) {
    a[i] = {float(draw(-30, 30)), float(draw(-30, 30))};
    b[i] = {float(draw(-30, 30)), float(draw(-30, 30))};
    A[i] = {draw(-600, 600), draw(-600, 600)};
    B[i] = {draw(-600, 600), draw(-600, 600)};
  }
  mpc_t z;
  mpc_init2(z, luxtk::kOraclePrecision);
  for (int k = 0; k < 3; ++k) {
    const auto r21 = run(kAll32[3 * k + 1].fn, a, b), r24 = run(kAll32[3 * k + 2].fn, a, b);
    EXPECT_EQ(0, std::memcmp(r21.data(), r24.data(), n * sizeof(lux32fc))) << kAll32[3 * k + 2].name;
    const auto r50 = run(kAll64[3 * k + 1].fn, A, B), r53 = run(kAll64[3 * k + 2].fn, A, B);
    EXPECT_EQ(0, std::memcmp(r50.data(), r53.data(), n * sizeof(lux64fc))) << kAll64[3 * k + 2].name;
    const MpcOp op = oracle_of(kAll32[3 * k].name);
    double worst = 0;
    for (long i = 0; i < n; ++i) {
      luxtk::complex_exact(op, a[i].re, a[i].im, b[i].re, b[i].im, z);
      worst = std::max(worst, luxtk::complex_ulp_error(r24[i].re, r24[i].im, z, 32));
    }
    EXPECT_LE(worst, 1.0) << kAll32[3 * k + 2].name;
  }
  mpc_clear(z);
}

// No special-value logic: a zero divisor gives infinities or NaN by plain
// IEEE rules, NaNs and infinities pass through, and nothing warns; the
// binary32 formula overflows in c^2 + d^2 from about 1.8e19, where the
// widened tiers do not.
TEST(ComplexProducts, ZeroDivisorsAndOverflowNeverWarn) {
  for (const Exports64& e : kAll64) {
    if (std::string(e.name).find("Div") == std::string::npos) continue;
    int st = -1;
    const auto r = run(e.fn, std::vector<lux64fc>{{1, 2}, {0, 0}, {1, 0}},
                       std::vector<lux64fc>{{0, 0}, {0, 0}, {0, 0}}, &st);
    EXPECT_EQ(st, 0) << e.name;
    for (const lux64fc& v : r) EXPECT_TRUE(!std::isfinite(v.re) && !std::isfinite(v.im)) << e.name;
  }
  const std::vector<lux32fc> a(3, lux32fc{1e20f, 1e20f}), b(3, lux32fc{1e20f, 2e20f});
  int st = -1;
  const auto lo = run(luxsDiv_32fc_A11, a, b, &st);
  EXPECT_EQ(st, 0);
  EXPECT_TRUE(lo[0].re == 0.0f || std::isnan(lo[0].re));  // Inf 1/(c^2 + d^2) = Inf 0
  EXPECT_TRUE(lo[0].im == 0.0f || std::isnan(lo[0].im));
  const auto hi = run(luxsDiv_32fc_A24, a, b, &st);
  EXPECT_EQ(st, 0);
  EXPECT_FLOAT_EQ(hi[0].re, 0.6f);
  EXPECT_FLOAT_EQ(hi[0].im, -0.2f);
  const auto inf =
      run(luxsMul_64fc_A53, std::vector<lux64fc>{{INFINITY, 1}}, std::vector<lux64fc>{{2, 0}}, &st);
  EXPECT_EQ(st, 0);
  EXPECT_EQ(inf[0].re, INFINITY);
  EXPECT_TRUE(std::isnan(inf[0].im));  // Inf 0 in the plain formula
}

}  // namespace
