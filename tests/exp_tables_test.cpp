// The Exp tables of both widths against their rules (recomputed with MPFR)
// and the rows quoted for them, and the binary64 main-path arithmetic replayed
// operation by operation in scalar code: the kernels' bits must follow it on
// the main path and in the strips where the call-out finishes the main path's
// value.
#include <mpfr.h>

#include <cstdint>

#include "gen/gen_common.h"
#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f64;

// 2^(j/n) into `v`, to v's precision.
void pow2_fraction(mpfr_t v, int j, int n) {
  mpfr_set_si(v, j, MPFR_RNDN);
  mpfr_div_si(v, v, n, MPFR_RNDN);
  mpfr_exp2(v, v, MPFR_RNDN);
}

// ---------------------------------------------------------------------------
// Binary32: (Hj, Ej) of A24 and (Fj, 0) of A21.

constexpr uint32_t kHaTable[128][2] = {
#include "exp_log/sexp_ha_table.inc"
};
constexpr uint32_t kLaTable[128][2] = {
#include "exp_log/sexp_la_table.inc"
};

uint32_t float_bits_of(mpfr_srcptr v) { return gen::bits_of(mpfr_get_flt(v, MPFR_RNDN)); }

TEST(Exp32Tables, EqualTheirRule) {
  mpfr_t v, h, e;
  mpfr_inits2(300, v, e, (mpfr_ptr)0);
  mpfr_init2(h, 24);
  for (int j = 0; j < 128; ++j) {
    pow2_fraction(v, j, 128);
    mpfr_set(h, v, MPFR_RNDZ);  // truncated to 24 significant bits
    mpfr_sub(e, v, h, MPFR_RNDN);
    mpfr_div(e, e, h, MPFR_RNDN);
    EXPECT_EQ(kHaTable[j][0], float_bits_of(h)) << "H, j = " << j;
    EXPECT_EQ(kHaTable[j][1], float_bits_of(e)) << "E, j = " << j;
    mpfr_set(e, v, MPFR_RNDN);
    EXPECT_EQ(kLaTable[j][0], float_bits_of(e) & 0x007FFFFFu) << "LA, j = " << j;
    EXPECT_EQ(kLaTable[j][1], 0u);
  }
  mpfr_clears(v, h, e, (mpfr_ptr)0);
}

TEST(Exp32Tables, HoldTheQuotedRows) {
  EXPECT_EQ(kHaTable[1][0], 0x3F80B1EDu);
  EXPECT_EQ(kHaTable[1][1], 0x331ED669u);
  EXPECT_EQ(kHaTable[127][0], 0x3FFE9E11u);
  EXPECT_EQ(kHaTable[127][1], 0x32B9F83Cu);
  EXPECT_EQ(kHaTable[2][0], 0x3F8164D1u);  // truncated ...
  EXPECT_EQ(kLaTable[1][0], 0x0000B1EDu);
  EXPECT_EQ(kLaTable[2][0], 0x000164D2u);  // ... where LA rounds up
}

// ---------------------------------------------------------------------------
// Binary64: (H, L) of A53 and the fraction fields of A50/A26.

const uint64_t kHa[64][2] = {
#include "exp_log/dexp_ha_table.inc"
};
const uint64_t kLa[128] = {
#include "exp_log/dexp_la_table.inc"
};

TEST(Exp64Tables, HeadsTailsAndFractionsFollowTheirRules) {
  mpfr_t v, h, l;
  mpfr_inits2(256, v, l, (mpfr_ptr)0);
  mpfr_init2(h, 45);  // [1, 2) with 44 fraction bits
  for (int j = 0; j < 128; ++j) {
    pow2_fraction(v, j, 128);
    EXPECT_EQ(kLa[j], bits(mpfr_get_d(v, MPFR_RNDN)) & 0x000FFFFFFFFFFFFF) << "LA row " << j;
    if (j % 2) continue;
    mpfr_set(h, v, MPFR_RNDZ);
    mpfr_sub(l, v, h, MPFR_RNDN);
    EXPECT_EQ(kHa[j / 2][0], bits(mpfr_get_d(h, MPFR_RNDN))) << "HA head " << j / 2;
    EXPECT_EQ(kHa[j / 2][1], bits(mpfr_get_d(l, MPFR_RNDN))) << "HA tail " << j / 2;
    EXPECT_EQ(kHa[j / 2][0] & 0xFF, 0u);
    EXPECT_GE(f64(kHa[j / 2][1]), 0.0);
  }
  mpfr_clears(v, h, l, (mpfr_ptr)0);
}

TEST(Exp64Tables, QuotedRows) {
  EXPECT_EQ(kHa[0][0], 0x3FF0000000000000u);
  EXPECT_EQ(kHa[0][1], 0u);
  EXPECT_EQ(kHa[1][0], 0x3FF02C9A3E778000u);
  EXPECT_EQ(kHa[1][1], 0x3D183B9BDF2B293Eu);
  EXPECT_EQ(kHa[32][0], 0x3FF6A09E667F3B00u);
  EXPECT_EQ(kHa[32][1], 0x3D29921165F626CEu);
  EXPECT_EQ(kHa[63][0], 0x3FFFA7C1819E9000u);
  EXPECT_EQ(kHa[63][1], 0x3D2B05D214FCE965u);
  EXPECT_EQ(kLa[0], 0u);
  EXPECT_EQ(kLa[1], 0x0000163DA9FB3335u);
  EXPECT_EQ(kLa[127], 0x000FD3C22B8F71F1u);
}

// ---------------------------------------------------------------------------
// Scalar replay of the main paths (one rounding per operation, in order).

constexpr double kShifter = 0x1.8p52;

double pow2(int k) { return f64(uint64_t(k + 1023) << 52); }

double replay_a53(double x) {
  const double t = x * f64(0x40571547652B82FE) + kShifter;
  const double nf = t - kShifter;
  const double r = (x - nf * f64(0x3F862E42FEF00000)) - nf * f64(0x3D7473DE6AF278ED);
  const int32_t n = int32_t(uint32_t(bits(t)));
  const double h = f64(kHa[n & 63][0]), l = f64(kHa[n & 63][1]);
  double p = f64(0x3F81111276409C2C) * r + f64(0x3FA555574BC3A1BE);
  p = p * r + f64(0x3FC55555555542A1);
  p = p * r + f64(0x3FDFFFFFFFFFD97C);
  const double u = r + p * (r * r);
  const double v = ((u * (h + l)) + l) + h;
  return v * pow2(n >> 6);
}

double replay_la(double x, bool a26) {
  const double t = x * f64(0x40671547652B82FE) + kShifter;
  const double nf = t - kShifter;
  const int32_t n = int32_t(uint32_t(bits(t)));
  double u;
  if (a26) {
    const double r = x - nf * f64(0x3F762E42FEFA39EF);
    u = (0.5 * r) * r + r;
  } else {
    const double r = (x - nf * f64(0x3F762E42FEE00000)) - nf * f64(0x3D7A39EF35793C76);
    double p = f64(0x3FA55555C2A9C0FA) * r + f64(0x3FC55555B7BAE976);
    p = p * r + f64(0x3FDFFFFFFFFFFEB0);
    u = (p * r) * r + r;
  }
  const double w = f64((uint64_t(((n >> 7) + 1023) & 0x7FF) << 52) | kLa[n & 127]);
  return u * w + w;
}

TEST(Exp64Arithmetic, BitsFollowTheMainPathFormulas) {
  luxtk::Rng rng(0xE4964);
  std::vector<double> xs = {708.39599609375,  708.39599609375,  708.39599609375,  708.39599609375,
                            -708.39599609375, -708.39599609375, -708.39599609375, -708.39599609375};
  for (int i = 0; i < 4000; ++i) xs.push_back(rng.uniform(-708.3959, 708.3959));
  for (int i = 0; i < 400; ++i) xs.push_back(rng.uniform(-1.0, 1.0));
  // The strips that the call-out finishes with the main path's own product.
  for (int i = 0; i < 400; ++i) xs.push_back(rng.uniform(708.39599609375, 709.777));
  for (int i = 0; i < 400; ++i) xs.push_back(rng.uniform(-708.3964185322641, -708.39599609375));
  const char* names[] = {"luxsExp_64f_A53", "luxsExp_64f_A50", "luxsExp_64f_A26"};
  for (int e = 0; e < 3; ++e) {
    const auto r = luxtest::call_unary<double>(names[e], xs);
    EXPECT_EQ(r.status, 0);
    int mismatches = 0;
    for (size_t i = 0; i < xs.size(); ++i) {
      const double want = e == 0 ? replay_a53(xs[i]) : replay_la(xs[i], e == 2);
      if (bits(r.out[i]) != bits(want) && ++mismatches <= 5)
        ADD_FAILURE() << names[e] << " x = " << luxtk::hexfloat(xs[i]) << " got " << luxtk::hexfloat(r.out[i])
                      << " want " << luxtk::hexfloat(want);
    }
    EXPECT_EQ(mismatches, 0) << names[e];
  }
}

}  // namespace
