// Prints the tables of the cube-root family (Cbrt, InvCbrt, Pow2o3) from
// their rules, with MPFR at 256 bits.  One table per run:
//
//   gen_cbrt_tables rcp       RCP[i] = RN(-1/c_i), c_i = 1 + i/32 + 1/64, i = 0..31
//   gen_cbrt_tables cbrt      {T, TL}[rem*32 + i] for v = 2^(rem/3) * c_i^(1/3):
//   gen_cbrt_tables invcbrt   {T, TL}[rem*32 + i] for v = 2^(-rem/3) * c_i^(-1/3):
//                             T = v rounded toward zero, TL = RN(v - T), rem = 0..2
//   gen_cbrt_tables rows4     binary32 rows of four multipliers R[d] for the base-4
//                             digits d of the row number (R = 2^(2/3), 1, 2^(1/3);
//                             a digit 3 makes a row of zeros), rows 0..170
//   gen_cbrt_tables rows2     binary64 rows of two multipliers, rows 0..10
//
// The output is the body of a brace initialiser, to be #included by a unit.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

constexpr mpfr_prec_t kPrec = 256;

// c_i = 1 + i/32 + 1/64 = (65 + 2i)/64, exact.
void set_c(mpfr_ptr c, int i) {
  mpfr_set_si(c, 65 + 2 * i, MPFR_RNDN);
  mpfr_div_2ui(c, c, 6, MPFR_RNDN);
}

void print_rcp() {
  gen::print_generated_by(stdout, "cbrt_tables", "gen_cbrt_tables rcp");
  std::printf("// RCP[i] = RN(-1/c_i), c_i = 1 + i/32 + 1/64.\n");
  mpfr_t c;
  mpfr_init2(c, kPrec);
  for (int i = 0; i < 32; ++i) {
    set_c(c, i);
    mpfr_si_div(c, -1, c, MPFR_RNDN);
    std::printf("0x%016llXull,%s", (unsigned long long)bits_of(mpfr_get_d(c, MPFR_RNDN)),
                i % 4 == 3 ? "\n" : " ");
  }
  mpfr_clear(c);
}

// v = (2^rem * c_i)^(+-1/3), the sign of the exponent by `inverse`.
void print_t(bool inverse) {
  gen::print_generated_by(stdout, "cbrt_tables", "gen_cbrt_tables %s", inverse ? "invcbrt" : "cbrt");
  std::printf(
      "// {T, TL} for v = (2^rem * c_i)^(%s1/3), row rem*32 + i: T = v rounded toward zero, TL = RN(v - "
      "T).\n",
      inverse ? "-" : "");
  mpfr_t v, t;
  mpfr_inits2(kPrec, v, t, (mpfr_ptr)0);
  for (int rem = 0; rem < 3; ++rem)
    for (int i = 0; i < 32; ++i) {
      set_c(v, i);
      mpfr_mul_2ui(v, v, rem, MPFR_RNDN);
      mpfr_cbrt(v, v, MPFR_RNDN);
      if (inverse) mpfr_ui_div(v, 1, v, MPFR_RNDN);
      const double hi = mpfr_get_d(v, MPFR_RNDZ);
      mpfr_set_d(t, hi, MPFR_RNDN);
      mpfr_sub(t, v, t, MPFR_RNDN);
      const double lo = mpfr_get_d(t, MPFR_RNDN);
      gen::print_hex_row(stdout, "    ", gen::kHex64Ull, {bits_of(hi), bits_of(lo)}, "rem %d, i = %d", rem,
                         i);
    }
  mpfr_clears(v, t, (mpfr_ptr)0);
}

// R[0] = 2^(2/3), R[1] = 1, R[2] = 2^(1/3), rounded to nearest in the format.
double r_value(int d, mpfr_prec_t prec) {
  if (d == 1) return 1.0;
  mpfr_t v;
  mpfr_init2(v, kPrec);
  mpfr_set_ui(v, d == 0 ? 4 : 2, MPFR_RNDN);
  mpfr_cbrt(v, v, MPFR_RNDN);
  const double r = gen::round_to(v, prec);
  mpfr_clear(v);
  return r;
}

void print_rows(int lanes) {
  gen::print_generated_by(stdout, "cbrt_tables", "gen_cbrt_tables rows%d", lanes);
  std::printf("// Row k holds R[d_j] in place j for the base-4 digits d_j of k, lowest first;\n");
  std::printf("// R = 2^(2/3), 1, 2^(1/3); rows with a digit 3 are never read and hold zeros.\n");
  const int rows = lanes == 4 ? 171 : 11;
  for (int k = 0; k < rows; ++k) {
    uint64_t w[4] = {0, 0, 0, 0};
    bool unused = false;
    for (int j = 0; j < lanes; ++j) unused |= ((k >> (2 * j)) & 3) == 3;
    for (int j = 0; j < lanes && !unused; ++j) {
      const int d = (k >> (2 * j)) & 3;
      w[j] = lanes == 4 ? bits_of(float(r_value(d, 24))) : bits_of(r_value(d, 53));
    }
    if (lanes == 4)
      gen::print_hex_row(stdout, "    ", gen::kHex32U, {w[0], w[1], w[2], w[3]}, "row 0x%02X", k);
    else
      gen::print_hex_row(stdout, "    ", gen::kHex64Ull, {w[0], w[1]}, "row %d", k);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_cbrt_tables rcp|cbrt|invcbrt|rows4|rows2",
                          {{"rcp", print_rcp},
                           {"cbrt", [] { print_t(false); }},
                           {"invcbrt", [] { print_t(true); }},
                           {"rows4", [] { print_rows(4); }},
                           {"rows2", [] { print_rows(2); }}});
}
