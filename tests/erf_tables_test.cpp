// The tables of Erf, Erfc and CdfNorm against their rules (recomputed with
// MPFR), the rows quoted for them, and the fits: every row's polynomial
// holds its function on its whole interval within the tier's share of error.
#include <mpfr.h>

#include <cmath>
#include <cstdint>

#include "../tools/accuracy/erf_regions.h"
#include "gen/gen_common.h"
#include "support/testing.h"

namespace {

using luxtest::f64;

constexpr uint64_t kErfD53[46][16] = {
#include "special/erf_d53_table.inc"
};
constexpr uint64_t kErfD50[24][16] = {
#include "special/erf_d50_table.inc"
};
constexpr uint64_t kErfD26[24][16] = {
#include "special/erf_d26_table.inc"
};
constexpr uint64_t kErfS24[22][8] = {
#include "special/erf_s24_table.inc"
};
constexpr uint64_t kErfS21[114][4] = {
#include "special/erf_s21_table.inc"
};
constexpr uint64_t kErfcD53[28][16] = {
#include "special/erfc_d53_table.inc"
};
constexpr uint64_t kErfcD50[28][16] = {
#include "special/erfc_d50_table.inc"
};
constexpr uint64_t kErfcS24[23][8] = {
#include "special/erfc_s24_table.inc"
};
constexpr uint64_t kErfcS21[150][4] = {
#include "special/erfc_s21_table.inc"
};
constexpr uint64_t kCdfD53[30][17] = {
#include "special/cdfnorm_d53_table.inc"
};
constexpr uint64_t kCdfD50[30][14] = {
#include "special/cdfnorm_d50_table.inc"
};
constexpr uint64_t kCdfD26[30][8] = {
#include "special/cdfnorm_d26_table.inc"
};
constexpr uint64_t kCdfS24[25][8] = {
#include "special/cdfnorm_s24_table.inc"
};
constexpr uint64_t kCdfS21[159][5] = {
#include "special/cdfnorm_s21_table.inc"
};
constexpr uint64_t kPow2[128] = {
#include "special/erf_exp2_128_table.inc"
};
constexpr uint64_t kPow2x129[129] = {
#include "special/erf_exp2_129_table.inc"
};
constexpr uint64_t kPow2Pairs[128][2] = {
#include "special/erf_exp2_pairs_table.inc"
};
constexpr uint64_t kPow2PairsRn[129][2] = {
#include "special/erf_exp2_pairs_rn_table.inc"
};

enum class Fn { kErf, kScaledErfc, kScaledTail };

// f(x) at 256 bits: erf, G(y) = exp(y^2) erfc(y), R(a) = Phi(-a) exp(a^2/2).
void eval(mpfr_t r, Fn fn, double x) {
  mpfr_t t, e;
  mpfr_inits2(256, t, e, (mpfr_ptr)0);
  mpfr_set_d(t, x, MPFR_RNDN);
  if (fn == Fn::kErf) {
    mpfr_erf(r, t, MPFR_RNDN);
  } else {
    mpfr_sqr(e, t, MPFR_RNDN);
    if (fn == Fn::kScaledTail) {
      mpfr_div_2ui(e, e, 1, MPFR_RNDN);
      mpfr_neg(t, t, MPFR_RNDN);
      luxtk::erf::mpfr_cdfnorm(r, t, MPFR_RNDN);
    } else {
      luxtk::erf::mpfr_erfc_fast(r, t, MPFR_RNDN);
    }
    mpfr_exp(e, e, MPFR_RNDN);
    mpfr_mul(r, r, e, MPFR_RNDN);
  }
  mpfr_clears(t, e, (mpfr_ptr)0);
}

// The largest relative error of sum c[k] t^k, t = x - centre, against fn
// over [lo, hi] (33 points, the ends included), in MPFR; c0lo and c1lo are
// the second words of c[0] and c[1] where the row splits them.
double fit_error(Fn fn, double lo, double hi, double centre, const double* c, int degree, double c0lo = 0,
                 double c1lo = 0) {
  mpfr_t p, t, f;
  mpfr_inits2(256, p, t, f, (mpfr_ptr)0);
  double worst = 0;
  for (int i = 0; i <= 32; ++i) {
    const double x = lo + (hi - lo) * i / 32;
    mpfr_set_d(t, x, MPFR_RNDN);
    mpfr_sub_d(t, t, centre, MPFR_RNDN);
    mpfr_set_d(p, c[degree], MPFR_RNDN);
    for (int k = degree - 1; k >= 0; --k) {
      mpfr_mul(p, p, t, MPFR_RNDN);
      mpfr_add_d(p, p, c[k], MPFR_RNDN);
      if (k == 1) mpfr_add_d(p, p, c1lo, MPFR_RNDN);
      if (k == 0) mpfr_add_d(p, p, c0lo, MPFR_RNDN);
    }
    eval(f, fn, x);
    mpfr_sub(p, p, f, MPFR_RNDN);
    mpfr_div(p, p, f, MPFR_RNDN);
    worst = std::fmax(worst, std::fabs(mpfr_get_d(p, MPFR_RNDN)));
  }
  mpfr_clears(p, t, f, (mpfr_ptr)0);
  return worst;
}

// d = m*x*f - k/sqrt(q*pi): G' with (m, k, q) = (2, 2, 1), R' with (1, 1, 2).
void derivative(mpfr_t d, mpfr_srcptr f, double x, int m, int q) {
  mpfr_t k;
  mpfr_init2(k, 256);
  mpfr_const_pi(k, MPFR_RNDN);
  mpfr_mul_ui(k, k, unsigned(q), MPFR_RNDN);
  mpfr_sqrt(k, k, MPFR_RNDN);
  mpfr_ui_div(k, unsigned(3 - q), k, MPFR_RNDN);
  mpfr_mul_d(d, f, x * m, MPFR_RNDN);
  mpfr_sub(d, d, k, MPFR_RNDN);
  mpfr_clear(k);
}

// Left end of row r of a key with `base`, `step` (binary64 high words or
// binary32 patterns).
double left64(int r, uint32_t base, uint32_t step) { return f64(uint64_t(base + uint32_t(r) * step) << 32); }
double left32(int r, uint32_t base, uint32_t step) { return double(luxtest::f32(base + uint32_t(r) * step)); }

template <size_t W>
std::vector<double> row_doubles(const uint64_t (&row)[W]) {
  std::vector<double> v;
  for (uint64_t b : row) v.push_back(f64(b));
  return v;
}

TEST(ErfTables, PowersOfTwoFollowTheirRules) {
  mpfr_t v, h;
  mpfr_inits2(256, v, h, (mpfr_ptr)0);
  for (int j = 0; j <= 128; ++j) {
    mpfr_set_si(v, j, MPFR_RNDN);
    mpfr_div_si(v, v, 128, MPFR_RNDN);
    mpfr_exp2(v, v, MPFR_RNDN);
    const uint64_t rn = luxtest::bits(mpfr_get_d(v, MPFR_RNDN));
    EXPECT_EQ(kPow2x129[j], rn) << j;
    if (j < 128) {
      EXPECT_EQ(kPow2[j], rn) << j;
    }
    // Pairs: head with 27 clear bits (truncated, or rounded), tail RN(rest).
    for (const bool rounded : {false, true}) {
      if (!rounded && j == 128) continue;
      const uint64_t* pair = rounded ? kPow2PairsRn[j] : kPow2Pairs[j];
      EXPECT_EQ(pair[0] & 0x7FFFFFF, 0u) << j;
      EXPECT_EQ(pair[0], luxtest::bits(gen::round_to(v, 26, rounded ? MPFR_RNDN : MPFR_RNDZ))) << j;
      mpfr_sub_d(h, v, f64(pair[0]), MPFR_RNDN);
      EXPECT_EQ(pair[1], luxtest::bits(mpfr_get_d(h, MPFR_RNDN))) << j;
    }
  }
  // Quoted entries.
  EXPECT_EQ(kPow2x129[1], 0x3FF0163DA9FB3335u);
  EXPECT_EQ(kPow2x129[127], 0x3FFFD3C22B8F71F1u);
  EXPECT_EQ(kPow2PairsRn[1][0], 0x3FF0163DA8000000u);
  EXPECT_EQ(kPow2PairsRn[1][1], 0x3E3FB33356D84A67u);
  mpfr_clears(v, h, (mpfr_ptr)0);
}

TEST(ErfTables, ErfBinary64HoldsTheRuleTheQuotedRowsAndTheFits) {
  mpfr_t v;
  mpfr_init2(v, 256);
  for (int r = 1; r <= 44; ++r) {
    const double* row = reinterpret_cast<const double*>(kErfD53[r]);
    const double lo = left64(r, 0x3FBE0000, 0x20000), centre = -row[12];
    const double hi = r == 44 ? 5.921587195794508 : left64(r + 1, 0x3FBE0000, 0x20000);
    if (r < 44) {
      EXPECT_EQ(centre, (lo + hi) / 2) << r;
    }
    // c0hi + c0lo = erf(centre), c0hi below it, c0lo under one of its ulps.
    mpfr_set_d(v, centre, MPFR_RNDN);
    mpfr_erf(v, v, MPFR_RNDN);
    EXPECT_LE(row[1], mpfr_get_d(v, MPFR_RNDN)) << r;
    EXPECT_GE(row[0], 0.0) << r;
    EXPECT_LT(row[0], std::nextafter(row[1], 2.0) - row[1]) << r;
    mpfr_sub_d(v, v, row[1], MPFR_RNDN);
    mpfr_sub_d(v, v, row[0], MPFR_RNDN);
    EXPECT_LT(std::fabs(mpfr_get_d(v, MPFR_RNDN)), 0x1p-105) << r;
    std::vector<double> c = {row[1]};
    for (int k = 2; k <= 11; ++k) c.push_back(row[k]);
    EXPECT_LT(fit_error(Fn::kErf, lo, hi, centre, c.data(), 10, row[0]), 0x1p-54) << "A53 row " << r;
  }
  for (int r = 1; r <= 22; ++r) {
    const double lo = left64(r, 0x3FBC0000, 0x40000), hi = left64(r + 1, 0x3FBC0000, 0x40000);
    const auto la = row_doubles(kErfD50[r]), ep = row_doubles(kErfD26[r]);
    EXPECT_EQ(la[14], (lo + hi) / 2);
    EXPECT_EQ(la[15], 1.0);
    mpfr_set_d(v, la[14], MPFR_RNDN);
    mpfr_erf(v, v, MPFR_RNDN);
    EXPECT_EQ(la[0], mpfr_get_d(v, MPFR_RNDN)) << r;  // c0 = RN(erf(b))
    EXPECT_LT(fit_error(Fn::kErf, lo, hi, la[14], la.data(), 13), 0x1p-53) << "A50 row " << r;
    EXPECT_LT(fit_error(Fn::kErf, lo, hi, ep[14], ep.data(), 7), 0x1p-30) << "A26 row " << r;
  }
  // Quoted rows.
  EXPECT_EQ(kErfD53[0][2], 0x3FF20DD750429B6Du);
  EXPECT_EQ(kErfD53[0][11], 0xBF40AF1F9C582F3Du);
  EXPECT_EQ(kErfD53[1][1], 0x3FC311FC15F56D14u);
  EXPECT_EQ(kErfD53[1][2], 0x3FF1BD07CDD189ACu);
  EXPECT_EQ(kErfD53[44][12], 0xC016D7DA46E4B314u);
  EXPECT_EQ(kErfD53[44][1], 0x3FEFFFFFFFFFFFF9u);
  EXPECT_EQ(kErfD53[45][1], 0x3FF0000000000000u);
  EXPECT_EQ(kErfD50[0][13], 0x3F1F9A326F9B89B7u);
  EXPECT_EQ(kErfD26[0][7], 0xBF9B82CE31288B51u);
  EXPECT_EQ(kErfD26[0][9], 0u);
  EXPECT_EQ(kErfD50[23][0], 0x3FF0000000000000u);
  EXPECT_EQ(kErfD50[23][15], 0u);
  mpfr_clear(v);
}

TEST(ErfTables, ErfBinary32HoldsTheQuotedRowsAndTheFits) {
  for (int r = 1; r < 21; ++r) {
    const auto c = row_doubles(kErfS24[r]);
    EXPECT_LT(fit_error(Fn::kErf, left32(r, 0x3DE00000, 0x200000), left32(r + 1, 0x3DE00000, 0x200000), 0,
                        c.data(), 6),
              0x1p-27)
        << "A24 row " << r;
  }
  for (int r = 1; r < 113; ++r) {
    const auto c = row_doubles(kErfS21[r]);
    EXPECT_LT(fit_error(Fn::kErf, left32(r, 0x3CF80000, 0x80000), left32(r + 1, 0x3CF80000, 0x80000), 0,
                        c.data(), 3),
              0x1p-22)
        << "A21 row " << r;
  }
  EXPECT_EQ(kErfS24[0][1], 0x3FF20DD75045FEADu);
  EXPECT_EQ(kErfS24[20][0], 0x3FED8F8FB9230C42u);
  EXPECT_EQ(kErfS24[21][0], 0x3FF0000000000000u);
  EXPECT_EQ(kErfS21[1][3], 0xBFD7FF45E70D3E0Au);
  EXPECT_EQ(kErfS21[113][0], 0x3FF0000000000000u);
}

constexpr double kErfcEnds[29] = {0,    0.25, 0.3125, 0.375, 0.4375, 0.5, 0.625, 0.75, 0.875, 1,
                                  1.25, 1.5,  1.75,   2,     2.5,    3,   3.5,   4,    5,     6,
                                  7,    8,    10,     12,    14,     16,  20,    24,   27.25};

TEST(ErfTables, ErfcHoldsTheRuleTheQuotedRowsAndTheFits) {
  mpfr_t v, d;
  mpfr_inits2(256, v, d, (mpfr_ptr)0);
  for (int r = 1; r < 28; ++r) {
    const double* row = reinterpret_cast<const double*>(kErfcD53[r]);
    const double a = kErfcEnds[r];
    EXPECT_EQ(kErfcD53[r][1] & 0xFFFFFFFF, 0u) << r;
    EXPECT_EQ(kErfcD53[r][3] & 0xFFFFFFFF, 0u) << r;
    eval(v, Fn::kScaledErfc, a);
    EXPECT_NEAR((row[1] + row[0]) / mpfr_get_d(v, MPFR_RNDN), 1.0, 1e-16) << r;
    // G' = 2aG - 2/sqrt(pi).
    derivative(d, v, a, 2, 1);
    EXPECT_NEAR(row[3] + row[2], mpfr_get_d(d, MPFR_RNDN), 1e-17) << r;
    std::vector<double> c = {row[1], row[3]};
    for (int k = 4; k < 16; ++k) c.push_back(row[k]);
    EXPECT_LT(fit_error(Fn::kScaledErfc, a, kErfcEnds[r + 1], a, c.data(), 13, row[0], row[2]), 0x1p-56)
        << "A53 row " << r;
    const auto la = row_doubles(kErfcD50[r]);
    EXPECT_LT(fit_error(Fn::kScaledErfc, a, kErfcEnds[r + 1], a, la.data(), 12), 0x1p-52) << "A50 row " << r;
  }
  for (int r = 2; r < 23; ++r) {
    const auto c = row_doubles(kErfcS24[r]);
    const double lo = left32(r, 0x3E600000, 0x200000),
                 hi = std::fmin(left32(r + 1, 0x3E600000, 0x200000), 10.1);
    EXPECT_EQ(c[7], lo);
    EXPECT_LT(fit_error(Fn::kScaledErfc, lo, hi, lo, c.data(), 6), 0x1p-27) << "32f A24 row " << r;
  }
  for (int r = 2; r < 150; ++r) {
    const auto c = row_doubles(kErfcS21[r]);
    const double lo = left32(r, 0x3C780000, 0x80000),
                 hi = std::fmin(left32(r + 1, 0x3C780000, 0x80000), 10.1);
    EXPECT_LT(fit_error(Fn::kScaledErfc, lo, hi, 0, c.data(), 3), 0x1p-23) << "32f A21 row " << r;
  }
  EXPECT_EQ(kErfcD53[0][1], 0x3FEFFFFE00000000u);
  EXPECT_EQ(kErfcD53[0][15], 0xBF32852E4A61B26Eu);
  EXPECT_EQ(kErfcD50[0][12], 0x3F48A93B0D7F7809u);
  EXPECT_EQ(kErfcS24[1][7], 0x3FD0000000000000u);
  EXPECT_EQ(kErfcS24[1][0], 0x3FE8A6ADCDA2EA24u);
  EXPECT_EQ(kErfcS21[0][3], 0xBFE812746B0379E7u);
  EXPECT_EQ(kErfcS21[1][0], 0x3FEFFFFFEE9B5096u);
  mpfr_clears(v, d, (mpfr_ptr)0);
}

constexpr double kCdfEnds[31] = {0,   0.25, 0.3125, 0.375, 0.4375, 0.5, 0.625, 0.75, 0.875, 1, 1.25,
                                 1.5, 1.75, 2,      2.5,   3,      3.5, 4,     5,    6,     7, 8,
                                 10,  12,   14,     16,    20,     24,  28,    32,   38.5};

TEST(ErfTables, CdfNormHoldsTheRuleTheQuotedRowsAndTheFits) {
  mpfr_t v, d;
  mpfr_inits2(256, v, d, (mpfr_ptr)0);
  for (int r = 0; r < 30; ++r) {
    const double c = kCdfEnds[r], next = kCdfEnds[r + 1];
    const double* ha = reinterpret_cast<const double*>(kCdfD53[r]);
    EXPECT_EQ(ha[0], c);
    EXPECT_EQ(kCdfD53[r][2] & 0x7FFFFFF, 0u) << r;
    EXPECT_EQ(kCdfD53[r][4] & 0x7FFFFFF, 0u) << r;
    eval(v, Fn::kScaledTail, c);
    const double R = mpfr_get_d(v, MPFR_RNDN);
    EXPECT_NEAR((ha[2] + ha[1]) / R, 1.0, 1e-16) << r;
    // R' = cR - 1/sqrt(2 pi).
    derivative(d, v, c, 1, 2);
    EXPECT_NEAR(ha[4] + ha[3], mpfr_get_d(d, MPFR_RNDN), 1e-17) << r;
    std::vector<double> hc = {ha[2], ha[4]};
    for (int k = 5; k < 17; ++k) hc.push_back(ha[k]);
    EXPECT_LT(fit_error(Fn::kScaledTail, c, next, c, hc.data(), 13, ha[1], ha[3]), 0x1p-56)
        << "A53 row " << r;
    const auto la = row_doubles(kCdfD50[r]), ep = row_doubles(kCdfD26[r]);
    EXPECT_EQ(la[0], c);
    EXPECT_EQ(ep[0], c);
    if (r != 1) {
      EXPECT_EQ(la[1], R) << r;  // c0 = RN(R(c))
    }
    EXPECT_LT(fit_error(Fn::kScaledTail, c, next, c, la.data() + 1, 12), 0x1p-52) << "A50 row " << r;
    EXPECT_LT(fit_error(Fn::kScaledTail, c, next, c, ep.data() + 1, 6), 0x1p-27) << "A26 row " << r;
  }
  for (int r = 0; r < 25; ++r)
    for (int k = 0; k < 8; ++k) EXPECT_EQ(kCdfS24[r][k], kCdfD26[r][k]) << r;
  for (int r = 0; r < 159; ++r) {
    const auto c = row_doubles(kCdfS21[r]);
    const double lo = r == 0 ? 0.0 : left32(r, 0x3C780000, 0x80000), hi = left32(r + 1, 0x3C780000, 0x80000);
    EXPECT_EQ(c[0], lo);
    EXPECT_LT(fit_error(Fn::kScaledTail, lo, hi, lo, c.data() + 1, 3), 0x1p-23) << "32f row " << r;
  }
  EXPECT_EQ(kCdfD53[0][6], 0xBFC1058377E2CECBu);
  EXPECT_EQ(kCdfD53[1][16], 0xBEB1F5C3151E22A0u);
  EXPECT_EQ(kCdfD50[1][13], 0x3ED12873323C5F36u);
  EXPECT_EQ(kCdfD26[1][7], 0x3F7533D56AE37979u);
  EXPECT_EQ(kCdfS21[1][4], 0xBFC083BF89A7B5B3u);
  mpfr_clears(v, d, (mpfr_ptr)0);
}

}  // namespace
