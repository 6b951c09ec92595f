// The row tables of ErfInv and CdfNormInv (the ErfcInv units negate the
// ErfInv rows as they compile) and the tables of the logarithmic tails,
// against their rules in MPFR and against the published rows: each row's
// polynomial holds F(y) = erfinv(1 - y)/(1 - y) (times sqrt(2)) on its
// interval, the CdfNormInv rows are sqrt(2) times the ErfInv rows, the
// compensated rows carry F and F' at the centre in two parts, and _RT and
// the tail rows follow theirs.  The generated_tables test ties the files to
// the generator.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "common/erfinv_mp.h"
#include "support/test_options.h"

namespace {

const uint64_t kDErfInvHa[][17] = {
#include "special/derfinv_ha_rows.inc"
};
const uint64_t kDErfInvLa[][12] = {
#include "special/derfinv_la_rows.inc"
};
const uint64_t kDErfInvEp[][4] = {
#include "special/derfinv_ep_rows.inc"
};
const uint32_t kSErfInvHa[][8] = {
#include "special/serfinv_ha_rows.inc"
};
const uint32_t kSErfInvLa[][4] = {
#include "special/serfinv_la_rows.inc"
};
const uint32_t kSErfInvEp[][2] = {
#include "special/serfinv_ep_rows.inc"
};
const uint64_t kDCdfHa[][17] = {
#include "special/dcdfnorminv_ha_rows.inc"
};
const uint64_t kDCdfLa[][12] = {
#include "special/dcdfnorminv_la_rows.inc"
};
const uint64_t kDCdfEp[][4] = {
#include "special/dcdfnorminv_ep_rows.inc"
};
const uint32_t kSCdfHa[][8] = {
#include "special/scdfnorminv_ha_rows.inc"
};
const uint32_t kSCdfLa[][4] = {
#include "special/scdfnorminv_la_rows.inc"
};
const uint32_t kSCdfEp[][2] = {
#include "special/scdfnorminv_ep_rows.inc"
};
const uint64_t kRt[][2] = {
#include "special/erfcinv_tail_rt.inc"
};
const uint64_t kErfcInvTail[][16] = {
#include "special/erfcinv_tail_p.inc"
};
const uint64_t kCdfTail[][16] = {
#include "special/cdfnorminv_tail_p.inc"
};

double word(uint64_t w, bool is64) {
  if (is64) {
    double d;
    std::memcpy(&d, &w, 8);
    return d;
  }
  const uint32_t b = uint32_t(w);
  float f;
  std::memcpy(&f, &b, 4);
  return f;
}

// One table as the test sees it.
struct Table {
  const char* name;
  const void* rows;
  bool is64, compensated, cdf;
  int n, count, degree;
  uint32_t top;
  double tolerance;  // relative, of the polynomial against the rule
};

uint64_t at(const Table& t, int r, int k) {
  const int width = t.compensated ? t.degree + 3 : t.degree + 1;
  return t.is64 ? static_cast<const uint64_t*>(t.rows)[r * width + k]
                : static_cast<const uint32_t*>(t.rows)[r * width + k];
}

// Coefficient k of the polynomial in v (the compensated pairs summed).
void coefficient(mpfr_ptr c, const Table& t, int r, int k) {
  mpfr_set_d(c, word(at(t, r, k), t.is64), MPFR_RNDN);
  if (t.compensated && k < 2) mpfr_add_d(c, c, word(at(t, r, t.degree + 1 + k), t.is64), MPFR_RNDN);
}

// The interval of row r: y = 2^e (base + v), |v| <= 1/(2n).
void place(const Table& t, int r, long& e, double& base) {
  const uint32_t code = t.top - uint32_t(r);
  const int log2n = t.n == 4 ? 2 : t.n == 8 ? 3 : 4;
  e = long(code >> log2n) - (t.is64 ? 1023 : 127);
  base = double(code & uint32_t(t.n - 1)) / t.n + 1.0 + 0.5 / t.n;
}

// F(y) (sqrt(2) F(y) for CdfNormInv) at v.
void rule(mpfr_ptr out, const Table& t, long e, double base, double v) {
  mpfr_t y, w;
  mpfr_inits2(160, y, w, (mpfr_ptr)0);
  mpfr_set_d(y, base + v, MPFR_RNDN);  // exact
  mpfr_mul_2si(y, y, e, MPFR_RNDN);
  luxmp::erfcinv(out, y);
  mpfr_ui_sub(w, 1, y, MPFR_RNDN);
  mpfr_div(out, out, w, MPFR_RNDN);
  if (t.cdf) {
    mpfr_sqrt_ui(w, 2, MPFR_RNDN);
    mpfr_mul(out, out, w, MPFR_RNDN);
  }
  mpfr_clears(y, w, (mpfr_ptr)0);
}

// The tables are data, the same on both builds: the emulated build (small
// sweeps) checks a sample of the rows, the native one many more.
bool emulated() { return luxtest::g_sweep.points < 10000; }

const Table kTables[] = {
    {"dErfInv_HA_Table", kDErfInvHa, true, true, false, 4, 212, 14, 0xFFB, 2e-19},
    {"dErfInv_LA_Table", kDErfInvLa, true, false, false, 4, 212, 11, 0xFFB, 4e-16},
    {"dErfInv_EP_Table", kDErfInvEp, true, false, false, 16, 848, 3, 0x3FEF, 1.5e-8},
    {"sErfInv_HA_Table", kSErfInvHa, false, true, false, 8, 192, 5, 0x3F7, 2e-9},
    {"sErfInv_LA_Table", kSErfInvLa, false, false, false, 8, 192, 3, 0x3F7, 2e-7},
    {"sErfInv_EP_Table", kSErfInvEp, false, false, false, 16, 384, 1, 0x7EF, 1e-4},
    {"dCdfNormInv_HA_Table", kDCdfHa, true, true, true, 4, 212, 14, 0xFFB, 3e-19},
    {"dCdfNormInv_LA_Table", kDCdfLa, true, false, true, 4, 212, 11, 0xFFB, 4e-16},
    {"dCdfNormInv_EP_Table", kDCdfEp, true, false, true, 16, 848, 3, 0x3FEF, 1.5e-8},
    {"sCdfNormInv_HA_Table", kSCdfHa, false, true, true, 8, 192, 5, 0x3F7, 2e-9},
    {"sCdfNormInv_LA_Table", kSCdfLa, false, false, true, 8, 192, 3, 0x3F7, 2e-7},
    {"sCdfNormInv_EP_Table", kSCdfEp, false, false, true, 16, 384, 1, 0x7EF, 1e-4},
};

TEST(ErfInvTables, RowsHoldTheirRuleOnTheirIntervals) {
  mpfr_t f, p, c, d;
  mpfr_inits2(160, f, p, c, d, (mpfr_ptr)0);
  for (const Table& t : kTables) {
    EXPECT_EQ(sizeof(kDErfInvHa) / sizeof(kDErfInvHa[0]), 212u);
    double worst = 0;
    // Every row near the ends and a stride between (the rule is costly).
    const int stride = emulated() ? 97 : 23;
    for (int r = 0; r < t.count; r += (!emulated() && (r < 12 || r > t.count - 12)) ? 1 : stride) {
      long e;
      double base;
      place(t, r, e, base);
      const double h = 0.5 / t.n;
      for (double v : {-h, -h * 0.375, 0.0, h / 2, h * (1 - 0x1p-20)}) {  // base + v exact
        rule(f, t, e, base, v);
        mpfr_set_zero(p, 1);
        for (int k = t.degree; k >= 0; --k) {
          mpfr_mul_d(p, p, v, MPFR_RNDN);
          coefficient(c, t, r, k);
          mpfr_add(p, p, c, MPFR_RNDN);
        }
        mpfr_sub(d, p, f, MPFR_RNDN);
        mpfr_div(d, d, f, MPFR_RNDN);
        const double rel = std::fabs(mpfr_get_d(d, MPFR_RNDN));
        worst = std::max(worst, rel);
        EXPECT_LE(rel, t.tolerance) << t.name << " row " << r << " v " << v;
      }
    }
    std::printf("%-22s worst relative error %.3g\n", t.name, worst);
  }
  mpfr_clears(f, p, c, d, (mpfr_ptr)0);
}

TEST(ErfInvTables, CompensatedRowsCarryTheCentreInTwoParts) {
  // c0hi + c0lo = F(centre), c1hi + c1lo = F'(centre) (one-sided difference
  // quotient as the check), c1hi (and c0hi on binary64) cleared.
  mpfr_t f, g, c;
  mpfr_inits2(160, f, g, c, (mpfr_ptr)0);
  for (const Table& t : kTables) {
    if (!t.compensated) continue;
    const uint64_t clear = t.is64 ? 0x7FFFFFFull : 0xFFFull;
    for (int r = 0; r < t.count; r += emulated() ? 61 : 7) {
      long e;
      double base;
      place(t, r, e, base);
      rule(f, t, e, base, 0.0);
      coefficient(c, t, r, 0);
      mpfr_sub(c, c, f, MPFR_RNDN);
      mpfr_div(c, c, f, MPFR_RNDN);
      // The published binary32 row 0 is a fit: its c0 is 3e-12 off F.
      EXPECT_LE(std::fabs(mpfr_get_d(c, MPFR_RNDN)), t.is64   ? 1e-20
                                                     : r == 0 ? 1e-11
                                                              : 1e-12)
          << t.name << " c0 row " << r;
      rule(g, t, e, base, 0x1p-40);
      mpfr_sub(g, g, f, MPFR_RNDN);
      mpfr_mul_2ui(g, g, 40, MPFR_RNDN);
      coefficient(c, t, r, 1);
      mpfr_sub(c, c, g, MPFR_RNDN);
      EXPECT_LE(std::fabs(mpfr_get_d(c, MPFR_RNDN)), 1e-9) << t.name << " c1 row " << r;
      EXPECT_EQ(at(t, r, t.degree + 2) & clear, 0u) << t.name << " c1hi row " << r;
      if (t.is64) {
        EXPECT_EQ(at(t, r, t.degree + 1) & clear, 0u) << t.name << " c0hi row " << r;
      }
    }
  }
  mpfr_clears(f, g, c, (mpfr_ptr)0);
}

TEST(ErfInvTables, CdfNormInvRowsAreSqrt2TimesTheErfInvRows) {
  // Bit for bit on the generated rows of the plain coefficients; on the
  // compensated pairs the sums are scaled and split anew, so the sums are
  // compared.
  mpfr_t a, b, s2;
  mpfr_inits2(160, a, b, s2, (mpfr_ptr)0);
  mpfr_sqrt_ui(s2, 2, MPFR_RNDN);
  for (int i = 0; i < 6; ++i) {
    const Table& erf = kTables[i];
    const Table& cdf = kTables[i + 6];
    for (int r = 0; r < erf.count; ++r)
      for (int k = 0; k <= erf.degree; ++k) {
        coefficient(a, erf, r, k);
        mpfr_mul(a, a, s2, MPFR_RNDN);
        coefficient(b, cdf, r, k);
        if (erf.compensated && k < 2) {
          mpfr_sub(b, b, a, MPFR_RNDN);
          mpfr_div(b, b, a, MPFR_RNDN);
          EXPECT_LE(std::fabs(mpfr_get_d(b, MPFR_RNDN)), erf.is64 ? 1e-20 : 6e-11)
              << cdf.name << " " << r;  // c1hi: 12 bits
        } else {
          const double want = erf.is64 ? mpfr_get_d(a, MPFR_RNDN) : double(mpfr_get_flt(a, MPFR_RNDN));
          const double got = word(at(cdf, r, k), cdf.is64);
          if (r == 0) {
            // The published rows 0 agree to within one unit of the last place.
            const double ulp = std::ldexp(1.0, std::ilogb(want) - (erf.is64 ? 52 : 23));
            EXPECT_LE(std::fabs(got - want), ulp) << cdf.name << " row 0 c" << k;
          } else {
            EXPECT_EQ(got, want) << cdf.name << " row " << r << " c" << k;
          }
        }
      }
  }
  mpfr_clears(a, b, s2, (mpfr_ptr)0);
}

TEST(ErfInvTables, PublishedRowsStand) {
  // Row 0 of each table as published (the sweeps and the rule test above
  // measure them with the rest).
  EXPECT_EQ(kDErfInvHa[0][0], 0x3E2597E16EE728C9u);
  EXPECT_EQ(kDErfInvHa[0][16], 0xBF8DD36898000000u);
  EXPECT_EQ(kDErfInvLa[0][0], 0x3FEC636951597E17u);
  EXPECT_EQ(kDErfInvLa[0][11], 0xBEF26EF99FBB0678u);
  EXPECT_EQ(kDErfInvEp[0][3], 0xBF5058B7FD7D1AE9u);
  EXPECT_EQ(kSErfInvHa[0][1], 0x359A2B9Fu);
  EXPECT_EQ(kSErfInvLa[0][3], 0xBB033D31u);
  EXPECT_EQ(kSErfInvEp[0][1], 0xBB6DB3B8u);
  EXPECT_EQ(kDCdfHa[0][2], 0x3FB545994AFDA387u);
  EXPECT_EQ(kDCdfLa[0][0], 0x3FF412D5FC4A071Au);
  EXPECT_EQ(kDCdfEp[0][0], 0x3FF40DE721F43708u);
  EXPECT_EQ(kSCdfHa[0][7], 0xBC283000u);
  EXPECT_EQ(kSCdfLa[0][1], 0xBC282D24u);
  EXPECT_EQ(kSCdfEp[0][0], 0x3FA07089u);
  EXPECT_EQ(kErfcInvTail[0][13], 0xBFEFEFE000000000u);
  EXPECT_EQ(kCdfTail[0][2], 0xBFFCD449A03CE2A5u);
  EXPECT_EQ(kRt[0][0], 0x3FEFF0003F600401u);
  EXPECT_EQ(kRt[0][1], 0x3E0575622779C19Cu);
  // Published values of F at other centres (LA rows 1, 4, 211).
  EXPECT_EQ(word(kDErfInvLa[1][0], true), 0.89454517343007256);
  EXPECT_EQ(word(kDErfInvLa[4][0], true), 0.96434641625344442);
  EXPECT_EQ(word(kDErfInvLa[211][0], true), 5.8536731060396479);
}

TEST(ErfInvTables, LogarithmTableFollowsItsRule) {
  mpfr_t l, h;
  mpfr_inits2(160, l, h, (mpfr_ptr)0);
  for (int i = 0; i < 256; ++i) {
    const double r = std::round(2048.0 / (1.0 + (i + 0.5) / 256.0)) / 2048.0;
    mpfr_set_d(l, r, MPFR_RNDN);
    mpfr_log(l, l, MPFR_RNDN);
    mpfr_neg(l, l, MPFR_RNDN);
    uint64_t lh = 0;
    const double ld = mpfr_get_d(l, MPFR_RNDN);
    std::memcpy(&lh, &ld, 8);
    lh &= 0xFFFFFFFF00000000u;
    mpfr_sub_d(h, l, word(lh, true), MPFR_RNDN);
    uint64_t rb;
    std::memcpy(&rb, &r, 8);
    EXPECT_EQ(kRt[i][0], (rb & 0xFFFFFFFF00000000u) | (lh >> 32)) << i;
    EXPECT_EQ(word(kRt[i][1], true), mpfr_get_d(h, MPFR_RNDN)) << i;
  }
  mpfr_clears(l, h, (mpfr_ptr)0);
}

TEST(ErfInvTables, TailRowsHoldA) {
  // A(s) = -s erfcinv(exp(-1/s^2)) (times -sqrt(2) for CdfNormInv) on
  // s = ib/128 + t, t in [0, 1/128].
  mpfr_t s, q, z, p, d;
  mpfr_inits2(160, s, q, z, p, d, (mpfr_ptr)0);
  for (int cdf = 0; cdf < 2; ++cdf)
    for (int ib = 4; ib <= 31; ib += emulated() ? 9 : 1) {
      const uint64_t* T = cdf ? kCdfTail[ib - 4] : kErfcInvTail[ib - 4];
      EXPECT_EQ(T[13] & 0xFFFFFFFFFu, 0u);
      EXPECT_EQ(T[14] & 0xFFFFFFFFFu, 0u);
      EXPECT_EQ(T[15], 0u);
      for (double t : {0.0, 1.0 / 512, 1.0 / 256, 1.0 / 128}) {
        mpfr_set_d(s, ib / 128.0 + t, MPFR_RNDN);
        mpfr_sqr(q, s, MPFR_RNDN);
        mpfr_ui_div(q, 1, q, MPFR_RNDN);
        mpfr_neg(q, q, MPFR_RNDN);
        mpfr_exp(q, q, MPFR_RNDN);
        luxmp::erfcinv(z, q);
        mpfr_mul(z, z, s, MPFR_RNDN);
        mpfr_neg(z, z, MPFR_RNDN);
        if (cdf) {
          mpfr_sqrt_ui(q, 2, MPFR_RNDN);
          mpfr_mul(z, z, q, MPFR_RNDN);
          mpfr_neg(z, z, MPFR_RNDN);
        }
        mpfr_set_zero(p, 1);
        for (int k = 12; k >= 0; --k) {
          mpfr_mul_d(p, p, t, MPFR_RNDN);
          mpfr_add_d(p, p, word(T[k], true), MPFR_RNDN);
          if (k < 2) mpfr_add_d(p, p, word(T[13 + k], true), MPFR_RNDN);
        }
        mpfr_sub(d, p, z, MPFR_RNDN);
        mpfr_div(d, d, z, MPFR_RNDN);
        EXPECT_LE(std::fabs(mpfr_get_d(d, MPFR_RNDN)), 1e-19)
            << (cdf ? "cdf" : "erfc") << " ib " << ib << " t " << t;
      }
    }
  mpfr_clears(s, q, z, p, d, (mpfr_ptr)0);
}

}  // namespace
