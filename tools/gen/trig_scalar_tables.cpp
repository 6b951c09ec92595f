// Tables of the scalar double-precision sine, cosine and tangent, from MPFR.
//
//   gen_trig_scalar_tables sincos > src/scalar/_ork_dsincos_entries.inc
//   gen_trig_scalar_tables tan    > src/scalar/_ork_dtan_entries.inc
//
// sincos: 64 entries for a = k pi/32, each {CosTail, SinHead, SinTail, CosHead}:
//   SinHead = RN(sin a); SinTail = RN24(sin a - SinHead) as a double;
//   CosHead = the signed power of two nearest to cos a (the midpoint between
//   2^m and 2^(m+1) taken as 1.5 2^m), 0 where cos a = 0;
//   CosTail = RN(cos a - CosHead).
// tan: 32 entries of twenty doubles for a = k pi/32 describing g on the interval
//   around a, g(x) = tan x in rows 0..8 and 24..31 and g(x) = tan x + 1/(x - pi/2)
//   in rows 9..23 (regular at the pole).  With c_n = RN(g^(n)(a)/n!):
//   c8, c9, c10, c2, c11, c3, c12, c4, c13, c5, c14, c6, c15, c7, Head, Tail,
//   SlopeHead, SlopeTail, PoleFactor, PoleMask, where g(a) = Head + Tail (Head
//   rounded to 40 bits in the pole rows), SlopeHead = 1 (2 in rows 7, 8, 24, 25;
//   0 in the pole rows), SlopeTail = RN(g'(a) - SlopeHead), PoleFactor 1 and
//   PoleMask 0xFFFFFFF800000000 in the pole rows, else 0.  Rows 17..31 are
//   rows 15..1 with the even coefficients and Head, Tail negated (tan is odd
//   and has period pi), so the two halves are exact mirrors.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;
using gen::round_to;

constexpr mpfr_prec_t kPrec = 600;

// Values below 2^-500 are the rounding noise of an exact zero (sin pi, cos pi/2).
void snap_zero(mpfr_t v) {
  if (!mpfr_zero_p(v) && mpfr_get_exp(v) < -500) mpfr_set_zero(v, 1);
}

void print_sincos() {
  gen::print_generated_by(stdout, "trig_scalar_tables", "gen_trig_scalar_tables sincos.  Do not edit.");
  std::printf(
      "// Entry k, a = k pi/32: {CosTail, SinHead, SinTail, CosHead}; see the generator for the rule.\n");
  mpfr_t a, s, c, t;
  mpfr_inits2(kPrec, a, s, c, t, (mpfr_ptr) nullptr);
  for (int k = 0; k < 64; ++k) {
    mpfr_const_pi(a, MPFR_RNDN);
    mpfr_mul_si(a, a, k, MPFR_RNDN);
    mpfr_div_ui(a, a, 32, MPFR_RNDN);
    mpfr_sin_cos(s, c, a, MPFR_RNDN);
    snap_zero(s);
    snap_zero(c);
    const double sin_head = mpfr_get_d(s, MPFR_RNDN);
    mpfr_sub_d(t, s, sin_head, MPFR_RNDN);
    const double sin_tail = round_to(t, 24);
    double cos_head = 0.0;
    if (!mpfr_zero_p(c)) {
      // |cos a| in [2^m, 2^(m+1)): 2^m below 1.5 2^m, else 2^(m+1).
      mpfr_abs(t, c, MPFR_RNDN);
      const long m = mpfr_get_exp(t) - 1;
      mpfr_set_ui_2exp(a, 3, m - 1, MPFR_RNDN);  // 1.5 2^m (a is free now)
      const long p = mpfr_cmp(t, a) < 0 ? m : m + 1;
      mpfr_set_si_2exp(t, mpfr_sgn(c) < 0 ? -1 : 1, p, MPFR_RNDN);
      cos_head = mpfr_get_d(t, MPFR_RNDN);
    }
    mpfr_sub_d(t, c, cos_head, MPFR_RNDN);
    const double cos_tail = mpfr_get_d(t, MPFR_RNDN);
    gen::print_hex_row(stdout, "", gen::kHex64Ull,
                       {bits_of(cos_tail), bits_of(sin_head), bits_of(sin_tail), bits_of(cos_head)}, "k = %d",
                       k);
  }
  mpfr_clears(a, s, c, t, (mpfr_ptr) nullptr);
}

constexpr int kTerms = 16;  // c0 .. c15

// Taylor coefficients of tan at a with tan a = T: y' = 1 + y^2 gives
// (n+1) y_{n+1} = [n = 0] + sum_{i+j=n} y_i y_j.
void tan_series(mpfr_t* y, const mpfr_t T) {
  mpfr_t acc, p;
  mpfr_inits2(kPrec, acc, p, (mpfr_ptr) nullptr);
  mpfr_set(y[0], T, MPFR_RNDN);
  for (int n = 0; n + 1 < kTerms; ++n) {
    mpfr_set_ui(acc, n == 0 ? 1 : 0, MPFR_RNDN);
    for (int i = 0; i <= n; ++i) {
      mpfr_mul(p, y[i], y[n - i], MPFR_RNDN);
      mpfr_add(acc, acc, p, MPFR_RNDN);
    }
    mpfr_div_ui(y[n + 1], acc, n + 1, MPFR_RNDN);
  }
  mpfr_clears(acc, p, (mpfr_ptr) nullptr);
}

// Coefficients of 1/h - cot h (the row at the pole).  With v = cot h - 1/h =
// sum b_n h^n: v' = -1 - v^2 - 2v/h, so (n+2) b_n = -[n = 1] - sum_{i+j=n-1} b_i b_j.
void pole_series(mpfr_t* g) {
  mpfr_t acc, p;
  mpfr_inits2(kPrec, acc, p, (mpfr_ptr) nullptr);
  mpfr_set_zero(g[0], 1);
  for (int n = 1; n < kTerms; ++n) {
    mpfr_set_si(acc, n == 1 ? -1 : 0, MPFR_RNDN);
    for (int i = 0; i <= n - 1; ++i) {
      mpfr_mul(p, g[i], g[n - 1 - i], MPFR_RNDN);  // g = -b, so b_i b_j = g_i g_j
      mpfr_sub(acc, acc, p, MPFR_RNDN);
    }
    mpfr_div_ui(acc, acc, n + 2, MPFR_RNDN);
    mpfr_neg(g[n], acc, MPFR_RNDN);  // g_n = -b_n
  }
  mpfr_clears(acc, p, (mpfr_ptr) nullptr);
}

struct TanRow {
  double c[kTerms];
  double head, tail, slope_head, slope_tail, pole_factor;
  uint64_t pole_mask;
};

TanRow tan_row(int k) {
  TanRow r{};
  mpfr_t g[kTerms], a, T, d, p, t;
  for (auto& v : g) mpfr_init2(v, kPrec);
  mpfr_inits2(kPrec, a, T, d, p, t, (mpfr_ptr) nullptr);
  const bool pole = k >= 9 && k <= 23;
  if (k == 16) {
    pole_series(g);
  } else {
    mpfr_const_pi(a, MPFR_RNDN);
    mpfr_mul_si(a, a, k, MPFR_RNDN);
    mpfr_div_ui(a, a, 32, MPFR_RNDN);
    if (k == 0)
      mpfr_set_zero(T, 1);
    else if (k == 8)
      mpfr_set_ui(T, 1, MPFR_RNDN);  // tan pi/4 = 1 exactly
    else
      mpfr_tan(T, a, MPFR_RNDN);
    tan_series(g, T);
    if (pole) {
      // + 1/(d + h) = sum (-1)^n h^n / d^(n+1), d = a - pi/2.
      mpfr_const_pi(d, MPFR_RNDN);
      mpfr_div_ui(d, d, 2, MPFR_RNDN);
      mpfr_sub(d, a, d, MPFR_RNDN);
      mpfr_ui_div(p, 1, d, MPFR_RNDN);  // 1/d^(n+1)
      for (int n = 0; n < kTerms; ++n) {
        if (n % 2 == 0)
          mpfr_add(g[n], g[n], p, MPFR_RNDN);
        else
          mpfr_sub(g[n], g[n], p, MPFR_RNDN);
        mpfr_div(p, p, d, MPFR_RNDN);
      }
    }
  }
  for (int n = 2; n < kTerms; ++n) r.c[n] = mpfr_get_d(g[n], MPFR_RNDN);
  r.head = round_to(g[0], pole ? 40 : 53);
  mpfr_sub_d(t, g[0], r.head, MPFR_RNDN);
  r.tail = mpfr_get_d(t, MPFR_RNDN);
  r.slope_head = pole ? 0.0 : (k == 7 || k == 8 || k == 24 || k == 25) ? 2.0 : 1.0;
  mpfr_sub_d(t, g[1], r.slope_head, MPFR_RNDN);
  r.slope_tail = mpfr_get_d(t, MPFR_RNDN);
  r.pole_factor = pole ? 1.0 : 0.0;
  r.pole_mask = pole ? 0xFFFFFFF800000000ull : 0;
  for (auto& v : g) mpfr_clear(v);
  mpfr_clears(a, T, d, p, t, (mpfr_ptr) nullptr);
  return r;
}

void print_tan() {
  gen::print_generated_by(stdout, "trig_scalar_tables", "gen_trig_scalar_tables tan.  Do not edit.");
  std::printf(
      "// Entry k, a = k pi/32: c8, c9, c10, c2, c11, c3, c12, c4, c13, c5, c14, c6, c15, c7, Head, Tail,\n"
      "// SlopeHead, SlopeTail, PoleFactor, PoleMask; see the generator for the rule.\n");
  TanRow rows[32];
  for (int k = 0; k <= 16; ++k) rows[k] = tan_row(k);
  for (int k = 17; k < 32; ++k) {
    // g(-a + h) = -g(a - h): odd coefficients kept, even ones negated.
    rows[k] = rows[32 - k];
    for (int n = 2; n < kTerms; n += 2) rows[k].c[n] = -rows[k].c[n];
    rows[k].head = -rows[k].head;
    rows[k].tail = -rows[k].tail;
  }
  for (int k = 0; k < 32; ++k) {
    const TanRow& r = rows[k];
    const int order[14] = {8, 9, 10, 2, 11, 3, 12, 4, 13, 5, 14, 6, 15, 7};
    std::printf("{{");
    for (int i = 0; i < 14; ++i) std::printf("0x%016llXull, ", (unsigned long long)bits_of(r.c[order[i]]));
    std::printf(
        "0x%016llXull, 0x%016llXull, 0x%016llXull, 0x%016llXull, 0x%016llXull, 0x%016llXull}},  // k = %d\n",
        (unsigned long long)bits_of(r.head), (unsigned long long)bits_of(r.tail),
        (unsigned long long)bits_of(r.slope_head), (unsigned long long)bits_of(r.slope_tail),
        (unsigned long long)bits_of(r.pole_factor), (unsigned long long)r.pole_mask, k);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_trig_scalar_tables sincos|tan",
                          {{"sincos", print_sincos}, {"tan", print_tan}});
}
