// Prints the tables of the Expm1 and Log1p kernels from their rules, with MPFR
// at 256 bits (far beyond what the roundings need):
//
//   gen_expm1_log1p_tables exp128   j = -64..64, pairs {Tlo[j], Thi[j]}:
//                                   Thi[j] = 2^(j/128) truncated to 32
//                                   significant bits (the low 21 bits of the
//                                   double clear), Tlo[j] = RN(2^(j/128) - Thi[j])
//   gen_expm1_log1p_tables rcp256   i = 0..255, the float
//                                   r_i = RN(2048 / (1 + (i + 0.5)/256)) / 2048
//   gen_expm1_log1p_tables log256   i = 0..255, pairs {Llo_i, Lhi_i}:
//                                   Lhi_i = -ln r_i rounded to nearest with
//                                   the low 32 bits of the double clear,
//                                   Llo_i = RN(-ln r_i - Lhi_i)
//
// The output is the body of a C++ initialiser, to be included inside the
// unit's constant table.
#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

void print_exp128() {
  mpfr_t v, h, l;
  mpfr_inits2(256, v, h, l, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "expm1_log1p_tables",
                          "gen_expm1_log1p_tables exp128 > src/exp_log/expm1_table.inc");
  std::printf(
      "// {Tlo[j], Thi[j]}: Thi[j] = 2^(j/128) truncated to 32 bits, Tlo[j] = RN(2^(j/128) - Thi[j]).\n");
  for (int j = -64; j <= 64; ++j) {
    mpfr_set_si(v, j, MPFR_RNDN);
    mpfr_div_si(v, v, 128, MPFR_RNDN);
    mpfr_exp2(v, v, MPFR_RNDN);
    const double hd = gen::round_to(v, 32, MPFR_RNDZ);
    mpfr_set_d(h, hd, MPFR_RNDN);
    mpfr_sub(l, v, h, MPFR_RNDN);
    const double ld = mpfr_get_d(l, MPFR_RNDN);
    gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(ld), bits_of(hd)}, "j = %d", j);
  }
  mpfr_clears(v, h, l, (mpfr_ptr)0);
}

// r_i = 2^20/(513 + 2i) rounded to an integer, over 2048: at most 12
// significant bits.  The quotient is never within 1/1026 of a half-integer,
// so the double division cannot mislead the rounding.
float rcp(int i) { return float(std::nearbyint(2048.0 / (1.0 + (i + 0.5) / 256.0)) / 2048.0); }

void print_rcp256() {
  gen::print_generated_by(stdout, "expm1_log1p_tables",
                          "gen_expm1_log1p_tables rcp256 > src/exp_log/log1p_rcp_table.inc");
  std::printf("// r_i = RN(2048/(1 + (i + 0.5)/256))/2048, as binary32.\n");
  for (int i = 0; i < 256; i += 4)
    std::printf("    0x%08X, 0x%08X, 0x%08X, 0x%08X,  // i = %d..%d\n", bits_of(rcp(i)), bits_of(rcp(i + 1)),
                bits_of(rcp(i + 2)), bits_of(rcp(i + 3)), i, i + 3);
}

void print_log256() {
  mpfr_t v, h, l;
  mpfr_inits2(256, v, h, l, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "expm1_log1p_tables",
                          "gen_expm1_log1p_tables log256 > src/exp_log/log1p_log_table.inc");
  std::printf("// {Llo_i, Lhi_i}: -ln r_i = Lhi_i + Llo_i, Lhi_i to 21 significant bits (low word clear).\n");
  for (int i = 0; i < 256; ++i) {
    mpfr_set_d(v, double(rcp(i)), MPFR_RNDN);
    mpfr_log(v, v, MPFR_RNDN);
    mpfr_neg(v, v, MPFR_RNDN);
    const double hd = gen::round_to(v, 21, MPFR_RNDN);
    mpfr_set_d(h, hd, MPFR_RNDN);
    mpfr_sub(l, v, h, MPFR_RNDN);
    const double ld = mpfr_get_d(l, MPFR_RNDN);
    gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(ld), bits_of(hd)}, "i = %d", i);
  }
  mpfr_clears(v, h, l, (mpfr_ptr)0);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_expm1_log1p_tables exp128|rcp256|log256",
                          {{"exp128", print_exp128}, {"rcp256", print_rcp256}, {"log256", print_log256}});
}
