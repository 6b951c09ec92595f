// Prints the tables of the Sinh and Cosh kernels from their rules, with MPFR
// at 256 bits (far beyond what the roundings need):
//
//   gen_sinhcosh_tables d53    dSinhCosh_HA_Table, j = 0..64: rows 0..63 are
//                              H[j] = 2^(j/64) truncated to 44 fraction bits,
//                              L[j] = RN(2^(j/64) - H[j]); row 64 = (1.0, 0),
//                              the row of -N when N is a multiple of 64
//   gen_sinhcosh_tables d50    dSinhCosh_LA_Table, j = 0..128:
//                              RN(2^(j/128)), row 128 = 1.0
//   gen_sinhcosh_tables dnz    dSinh_Nz_Table, i = 0..31:
//                              (RN(cosh(i/32)), RN(sinh(i/32)))
//   gen_sinhcosh_tables s21    sSinhCosh_LA_Table, j = 0..63:
//                              (RNf(2^(j/64)), RNf(2^(-j/64)))
//   gen_sinhcosh_tables s24    sCosh_HA_Table, j = 0..63: (Mlo, Plo, Mhi, Phi)
//                              Phi = 2^(j/64) truncated to a multiple of 2^-17,
//                              Plo = RNf(2^(j/64) - Phi), Mhi = Phi[64 - j]/2
//                              (1.0 for j = 0), Mlo = RNf(2^(-j/64) - Mhi)
//
// RN rounds to double, RNf to float.  The output is the body of a C++
// initialiser, included inside a unit's constant table.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

constexpr mpfr_prec_t kPrec = 256;

// 2^(j/n) into `v`.
void pow2_fraction(mpfr_t v, long j, long n) {
  mpfr_set_si(v, j, MPFR_RNDN);
  mpfr_div_si(v, v, n, MPFR_RNDN);
  mpfr_exp2(v, v, MPFR_RNDN);
}

float to_float(mpfr_srcptr v) { return float(gen::round_to(v, 24)); }

void print_d53() {
  mpfr_t v, h, l;
  mpfr_inits2(kPrec, v, h, l, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "sinhcosh_tables",
                          "gen_sinhcosh_tables d53 > src/hyperbolic/dsinhcosh_ha_table.inc");
  std::printf(
      "// {H[j], L[j]}: H[j] = 2^(j/64) truncated to 44 fraction bits, L[j] = RN(2^(j/64) - H[j]);\n");
  std::printf("// row 64 = (1.0, 0).\n");
  for (int j = 0; j < 64; ++j) {
    pow2_fraction(v, j, 64);
    const double hd = gen::round_to(v, 45, MPFR_RNDZ);  // 44 fraction bits of a value in [1, 2)
    mpfr_sub_d(l, v, hd, MPFR_RNDN);
    gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(hd), bits_of(gen::round_to(l, 53))}, "j = %d",
                       j);
  }
  gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(1.0), 0}, "j = 64");
  mpfr_clears(v, h, l, (mpfr_ptr)0);
}

void print_d50() {
  mpfr_t v;
  mpfr_init2(v, kPrec);
  gen::print_generated_by(stdout, "sinhcosh_tables",
                          "gen_sinhcosh_tables d50 > src/hyperbolic/dsinhcosh_la_table.inc");
  std::printf("// T[j] = RN(2^(j/128)); T[128] = 1.0.\n");
  for (int j = 0; j < 128; ++j) {
    pow2_fraction(v, j, 128);
    std::printf("    0x%016llX,  // j = %d\n", (unsigned long long)bits_of(gen::round_to(v, 53)), j);
  }
  std::printf("    0x%016llX,  // j = 128\n", (unsigned long long)bits_of(1.0));
  mpfr_clear(v);
}

void print_dnz() {
  mpfr_t b, c, s;
  mpfr_inits2(kPrec, b, c, s, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "sinhcosh_tables",
                          "gen_sinhcosh_tables dnz > src/hyperbolic/dsinh_nz_table.inc");
  std::printf("// {RN(cosh(i/32)), RN(sinh(i/32))}.\n");
  for (int i = 0; i < 32; ++i) {
    mpfr_set_si(b, i, MPFR_RNDN);
    mpfr_div_si(b, b, 32, MPFR_RNDN);
    mpfr_sinh_cosh(s, c, b, MPFR_RNDN);
    gen::print_hex_row(stdout, "    ", gen::kHex64,
                       {bits_of(gen::round_to(c, 53)), bits_of(gen::round_to(s, 53))}, "i = %d", i);
  }
  mpfr_clears(b, c, s, (mpfr_ptr)0);
}

void print_s21() {
  mpfr_t p, m;
  mpfr_inits2(kPrec, p, m, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "sinhcosh_tables",
                          "gen_sinhcosh_tables s21 > src/hyperbolic/ssinhcosh_la_table.inc");
  std::printf("// {RNf(2^(j/64)), RNf(2^(-j/64))}.\n");
  for (int j = 0; j < 64; ++j) {
    pow2_fraction(p, j, 64);
    pow2_fraction(m, -j, 64);
    gen::print_hex_row(stdout, "    ", gen::kHex32U, {bits_of(to_float(p)), bits_of(to_float(m))}, "j = %d",
                       j);
  }
  mpfr_clears(p, m, (mpfr_ptr)0);
}

// 2^(j/64) truncated to a multiple of 2^-17, for j = 0..64.
double phi(mpfr_t v, int j) {
  pow2_fraction(v, j, 64);
  mpfr_mul_2si(v, v, 17, MPFR_RNDN);
  mpfr_rint_trunc(v, v, MPFR_RNDN);
  mpfr_div_2si(v, v, 17, MPFR_RNDN);
  return mpfr_get_d(v, MPFR_RNDN);  // at most 19 significant bits: exact
}

void print_s24() {
  mpfr_t v, d;
  mpfr_inits2(kPrec, v, d, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "sinhcosh_tables",
                          "gen_sinhcosh_tables s24 > src/hyperbolic/scosh_ha_table.inc");
  std::printf("// {Mlo, Plo, Mhi, Phi}: Phi = 2^(j/64) truncated to a multiple of 2^-17,\n");
  std::printf(
      "// Plo = RNf(2^(j/64) - Phi), Mhi = Phi[64 - j]/2 (1.0 for j = 0), Mlo = RNf(2^(-j/64) - Mhi).\n");
  for (int j = 0; j < 64; ++j) {
    const double ph = phi(v, j);
    pow2_fraction(v, j, 64);
    mpfr_sub_d(d, v, ph, MPFR_RNDN);
    const float plo = to_float(d);
    const double mh = j == 0 ? 1.0 : phi(v, 64 - j) / 2;
    pow2_fraction(v, -j, 64);
    mpfr_sub_d(d, v, mh, MPFR_RNDN);
    const float mlo = to_float(d);
    gen::print_hex_row(stdout, "    ", gen::kHex32U,
                       {bits_of(mlo), bits_of(plo), bits_of(float(mh)), bits_of(float(ph))}, "j = %d", j);
  }
  mpfr_clears(v, d, (mpfr_ptr)0);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(
      argc, argv, "gen_sinhcosh_tables d53|d50|dnz|s21|s24",
      {{"d53", print_d53}, {"d50", print_d50}, {"dnz", print_dnz}, {"s21", print_s21}, {"s24", print_s24}});
}
