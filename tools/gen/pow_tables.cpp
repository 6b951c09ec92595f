// Prints the lookup tables of the Pow and Powx kernels from their rules, with
// MPFR at 256 bits.  One table per run:
//
//   gen_pow_tables r1024 | r64   R[i] = log2(e) / (1 + i/K), truncated to 23
//                                significant bits, i = 0..K
//   gen_pow_tables l1024 | l64   L[i] = log2(R[0] / R[i]) (minus 1 from K/2 on),
//                                from the stored R: high part truncated to 20
//                                significant bits, low part RN(L - high)
//   gen_pow_tables dexp          T[j] = 2^(j/128): high RN, low RN(T - high),
//                                j = 0..127
//   gen_pow_tables slog          (RN ln(1 + i/256), RN 1/(1 + i/256)), i = 0..256
//   gen_pow_tables sexp          binary32 (H, E): H = RN 2^(j/128),
//                                E = RN((2^(j/128) - H) / H), j = 0..127
//
// The output is the body of a brace initialiser, to be #included by a unit.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

constexpr mpfr_prec_t kPrec = 256;

// A value cut (truncated toward zero) to `p` significant bits, as a double.
double cut(mpfr_srcptr x, mpfr_prec_t p) { return gen::round_to(x, p, MPFR_RNDZ); }

// R[i] for table size k.
double r_entry(int i, int k) {
  mpfr_t x, one;
  mpfr_inits2(kPrec, x, one, (mpfr_ptr)0);
  mpfr_set_ui(one, 1, MPFR_RNDN);
  mpfr_exp(x, one, MPFR_RNDN);
  mpfr_log2(x, x, MPFR_RNDN);  // log2(e)
  mpfr_set_si(one, i, MPFR_RNDN);
  mpfr_div_si(one, one, k, MPFR_RNDN);
  mpfr_add_ui(one, one, 1, MPFR_RNDN);
  mpfr_div(x, x, one, MPFR_RNDN);
  const double r = cut(x, 23);
  mpfr_clears(x, one, (mpfr_ptr)0);
  return r;
}

void print_r(int k) {
  std::printf("// R[i] ~ log2(e)/(1 + i/%d), significand truncated to 23 bits, i = 0..%d.\n", k, k);
  gen::print_generated_by(stdout, "pow_tables", "gen_pow_tables r%d", k);
  for (int i = 0; i <= k; ++i)
    std::printf("0x%016llXull,%s", (unsigned long long)bits_of(r_entry(i, k)),
                (i % 4 == 3 || i == k) ? "\n" : " ");
}

void print_l(int k) {
  std::printf("// L[i] = log2(R[0]/R[i]) for i < %d, log2(R[0]/R[i]) - 1 from there on, of the stored R;\n",
              k / 2);
  std::printf("// high part truncated to 20 significant bits, low part the rest rounded to nearest.\n");
  gen::print_generated_by(stdout, "pow_tables", "gen_pow_tables l%d", k);
  mpfr_t x, y;
  mpfr_inits2(kPrec, x, y, (mpfr_ptr)0);
  const double r0 = r_entry(0, k);
  for (int i = 0; i <= k; ++i) {
    mpfr_set_d(x, r0, MPFR_RNDN);
    mpfr_set_d(y, r_entry(i, k), MPFR_RNDN);
    mpfr_div(x, x, y, MPFR_RNDN);
    mpfr_log2(x, x, MPFR_RNDN);
    if (i >= k / 2) mpfr_sub_ui(x, x, 1, MPFR_RNDN);
    const double hi = cut(x, 20);
    mpfr_sub_d(x, x, hi, MPFR_RNDN);
    const double lo = mpfr_get_d(x, MPFR_RNDN);
    gen::print_hex_row(stdout, "", gen::kHex64Ull, {bits_of(hi), bits_of(lo)}, "%d", i);
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

void exp2_of(mpfr_ptr x, int j) {
  mpfr_set_si(x, j, MPFR_RNDN);
  mpfr_div_ui(x, x, 128, MPFR_RNDN);
  mpfr_exp2(x, x, MPFR_RNDN);
}

void print_dexp() {
  std::printf("// T[j] = 2^(j/128) as RN high plus RN low, j = 0..127.\n");
  gen::print_generated_by(stdout, "pow_tables", "gen_pow_tables dexp");
  mpfr_t x;
  mpfr_init2(x, kPrec);
  for (int j = 0; j < 128; ++j) {
    exp2_of(x, j);
    const double hi = mpfr_get_d(x, MPFR_RNDN);
    mpfr_sub_d(x, x, hi, MPFR_RNDN);
    const double lo = mpfr_get_d(x, MPFR_RNDN);
    gen::print_hex_row(stdout, "", gen::kHex64Ull, {bits_of(hi), bits_of(lo)}, "%d", j);
  }
  mpfr_clear(x);
}

void print_slog() {
  std::printf("// (ln(1 + i/256), 1/(1 + i/256)), each rounded to nearest, i = 0..256.\n");
  gen::print_generated_by(stdout, "pow_tables", "gen_pow_tables slog");
  mpfr_t x, y;
  mpfr_inits2(kPrec, x, y, (mpfr_ptr)0);
  for (int i = 0; i <= 256; ++i) {
    mpfr_set_si(x, i, MPFR_RNDN);
    mpfr_div_ui(x, x, 256, MPFR_RNDN);
    mpfr_add_ui(x, x, 1, MPFR_RNDN);
    mpfr_ui_div(y, 1, x, MPFR_RNDN);
    mpfr_log(x, x, MPFR_RNDN);
    gen::print_hex_row(stdout, "", gen::kHex64Ull,
                       {bits_of(mpfr_get_d(x, MPFR_RNDN)), bits_of(mpfr_get_d(y, MPFR_RNDN))}, "%d", i);
  }
  mpfr_clears(x, y, (mpfr_ptr)0);
}

void print_sexp() {
  std::printf("// (H, E) in binary32: H = RN 2^(j/128), E = RN((2^(j/128) - H)/H), a relative\n");
  std::printf("// correction, so that 2^(j/128) = H (1 + E).  j = 0..127.\n");
  gen::print_generated_by(stdout, "pow_tables", "gen_pow_tables sexp");
  mpfr_t x, h;
  mpfr_inits2(kPrec, x, h, (mpfr_ptr)0);
  for (int j = 0; j < 128; ++j) {
    exp2_of(x, j);
    const float hi = mpfr_get_flt(x, MPFR_RNDN);
    mpfr_set_flt(h, hi, MPFR_RNDN);
    mpfr_sub(x, x, h, MPFR_RNDN);
    mpfr_div(x, x, h, MPFR_RNDN);
    const float e = mpfr_get_flt(x, MPFR_RNDN);
    std::printf("{0x%08Xu, 0x%08Xu},%s", bits_of(hi), bits_of(e), (j % 4 == 3) ? "\n" : " ");
  }
  mpfr_clears(x, h, (mpfr_ptr)0);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_pow_tables r1024|r64|l1024|l64|dexp|slog|sexp",
                          {{"r1024", [] { print_r(1024); }},
                           {"r64", [] { print_r(64); }},
                           {"l1024", [] { print_l(1024); }},
                           {"l64", [] { print_l(64); }},
                           {"dexp", print_dexp},
                           {"slog", print_slog},
                           {"sexp", print_sexp}});
}
