// Prints the 2^(j/128) tables of the binary32 Exp kernels, from their rules,
// with MPFR at 200 bits:
//   ha  sExp_HA_Table: (Hj, Ej), Hj = 2^(j/128) truncated to 24 significant
//       bits, Ej = RN((2^(j/128) - Hj) / Hj), a relative correction;
//   la  sExp_LA_Table: (Fj, 0), Fj = the 23-bit fraction field of
//       RN(2^(j/128)); the zero word keeps the rows 8 bytes apart, as in ha.
// Usage: gen_sexp_tables ha > src/exp_log/sexp_ha_table.inc
//        gen_sexp_tables la > src/exp_log/sexp_la_table.inc
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

// 2^(j/128) to 200 bits.
void exp2_j(mpfr_t out, int j) {
  mpfr_set_si(out, j, MPFR_RNDN);
  mpfr_div_2ui(out, out, 7, MPFR_RNDN);  // exact
  mpfr_exp2(out, out, MPFR_RNDN);
}

void print_ha() {
  mpfr_t v, h, e;
  mpfr_init2(v, 200);
  mpfr_init2(h, 24);
  mpfr_init2(e, 200);
  std::printf(
      "// sExp_HA_Table: (Hj, Ej), j = 0..127.  Hj = 2^(j/128) truncated to 24\n"
      "// significant bits; Ej = RN((2^(j/128) - Hj) / Hj) as a float.\n");
  gen::print_generated_by(stdout, "sexp_tables", "gen_sexp_tables ha > src/exp_log/sexp_ha_table.inc");
  for (int j = 0; j < 128; ++j) {
    exp2_j(v, j);
    mpfr_set(h, v, MPFR_RNDZ);
    mpfr_sub(e, v, h, MPFR_RNDN);  // exact at 200 bits
    mpfr_div(e, e, h, MPFR_RNDN);
    const float hf = mpfr_get_flt(h, MPFR_RNDN);  // exact
    const float ef = mpfr_get_flt(e, MPFR_RNDN);  // the one rounding of Ej
    gen::print_hex_row(stdout, "", gen::kHex32U, {bits_of(hf), bits_of(ef)}, "j = %d", j);
  }
  mpfr_clears(v, h, e, (mpfr_ptr)0);
}

void print_la() {
  mpfr_t v;
  mpfr_init2(v, 200);
  std::printf(
      "// sExp_LA_Table: (Fj, 0), j = 0..127.  Fj = the 23-bit fraction field of\n"
      "// RN(2^(j/128)) as a float; sign and exponent bits are zero.\n");
  gen::print_generated_by(stdout, "sexp_tables", "gen_sexp_tables la > src/exp_log/sexp_la_table.inc");
  for (int j = 0; j < 128; ++j) {
    exp2_j(v, j);
    const float f = mpfr_get_flt(v, MPFR_RNDN);
    std::printf("{0x%08Xu, 0u},  // j = %d\n", bits_of(f) & 0x007FFFFFu, j);
  }
  mpfr_clear(v);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_sexp_tables ha|la", {{"ha", print_ha}, {"la", print_la}});
}
