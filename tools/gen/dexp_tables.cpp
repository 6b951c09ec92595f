// Prints the powers-of-two tables of the binary64 Exp kernels from their
// rules, with MPFR at 256 bits (far beyond what the roundings need):
//
//   gen_dexp_tables ha   dExp_HA_Table, j = 0..63:
//                        H[j] = 2^(j/64) truncated to 44 fraction bits,
//                        L[j] = RN(2^(j/64) - H[j])  (never negative)
//   gen_dexp_tables la   dExp_LA_Table, j = 0..127:
//                        the 52-bit fraction field of RN(2^(j/128))
//
// The output is the body of a C++ initialiser, to be included inside the
// unit's constant table.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

// 2^(j/n) into `v`, to the working precision.
void pow2_fraction(mpfr_t v, int j, int n) {
  mpfr_set_si(v, j, MPFR_RNDN);
  mpfr_div_si(v, v, n, MPFR_RNDN);
  mpfr_exp2(v, v, MPFR_RNDN);
}

void print_ha() {
  mpfr_t v, h, l;
  mpfr_inits2(256, v, h, l, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "dexp_tables", "gen_dexp_tables ha > src/exp_log/dexp_ha_table.inc");
  std::printf(
      "// {H[j], L[j]}: H[j] = 2^(j/64) truncated to 44 fraction bits, L[j] = RN(2^(j/64) - H[j]).\n");
  for (int j = 0; j < 64; ++j) {
    pow2_fraction(v, j, 64);
    // Truncation to 44 fraction bits of a value in [1, 2): 45 significant bits.
    mpfr_set_prec(h, 45);
    mpfr_set(h, v, MPFR_RNDZ);
    mpfr_sub(l, v, h, MPFR_RNDN);  // exact at 256 bits
    const double hd = mpfr_get_d(h, MPFR_RNDN);
    const double ld = mpfr_get_d(l, MPFR_RNDN);
    gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(hd), bits_of(ld)}, "j = %d", j);
  }
  mpfr_clears(v, h, l, (mpfr_ptr)0);
}

void print_la() {
  mpfr_t v;
  mpfr_init2(v, 256);
  gen::print_generated_by(stdout, "dexp_tables", "gen_dexp_tables la > src/exp_log/dexp_la_table.inc");
  std::printf("// T[j] = fraction field (low 52 bits) of RN(2^(j/128)).\n");
  for (int j = 0; j < 128; ++j) {
    pow2_fraction(v, j, 128);
    const uint64_t f = bits_of(mpfr_get_d(v, MPFR_RNDN)) & 0x000FFFFFFFFFFFFFull;
    std::printf("    0x%016llX,  // j = %d\n", (unsigned long long)f, j);
  }
  mpfr_clear(v);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_dexp_tables ha|la", {{"ha", print_ha}, {"la", print_la}});
}
