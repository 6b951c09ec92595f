// Prints the shared tables of the extended-precision core from their rules,
// with MPFR at 256 bits (far beyond what the roundings need):
//
//   gen_extended_tables exp    ork_ork_expl_table_256, j = -128..128:
//                              hi = RN(2^(j/256)) to 32 significant bits,
//                              lo = RN(2^(j/256) - hi)
//   gen_extended_tables rcp    ork_ork_rcp_table_256, i = 0..255:
//                              c_i = round(2048 / (1 + (i + 1/2)/256)) / 2048
//   gen_extended_tables log    ork_ork_logl_table_256, i = 0..255:
//                              hi = RN(-ln c_i) to 40 significant bits,
//                              lo = RN(-ln c_i - hi)  (|hi + lo + ln c_i| < 2^-93)
//   gen_extended_tables log2   ork_ork_log_table_256, i = 0..255, in the
//                              reverse order: T1 = RN(-ln c_i) to 21
//                              significant bits, T0 = RN(-ln c_i - T1)
//   gen_extended_tables tt|gg|tg  the tangent tables, k = -17..17, a = k pi/64:
//                              tan a, -cot a, tan a + cot a as hi (24
//                              significant bits) + lo (the rest, rounded);
//                              row k = 0 zero
//   gen_extended_tables atan   ork_ork_atanl_table_128, n = 0..512: atan(n/128)
//                              to n = 128, pi/2 - atan((256 - n)/128) to 256,
//                              pi - atan-value(512 - n) above; hi 32 bits
//   gen_extended_tables rsqrt  the reciprocal square roots of orksqrtl_scalar,
//                              n = 0..512, a_n = 1 + n/256 (n <= 256),
//                              2 + (n - 256)/128 above:
//                              y_n = round(2048 / sqrt(a_n)) / 2048, 11 bits
//
// The output is the body of a C++ initialiser.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

// (hi, lo) of v: hi rounded to `hi_bits` significant bits, lo the rest
// rounded to double.
void print_pair(mpfr_srcptr v, int hi_bits, const char* label, int index) {
  mpfr_t h, l;
  mpfr_init2(h, hi_bits);
  mpfr_init2(l, 256);
  mpfr_set(h, v, MPFR_RNDN);
  mpfr_sub(l, v, h, MPFR_RNDN);  // exact at 256 bits
  // An exact value (tan pi/4) leaves only the working precision's noise.
  if (!mpfr_zero_p(l) && mpfr_get_exp(l) < mpfr_get_exp(v) - 200) mpfr_set_zero(l, 1);
  const double hd = mpfr_get_d(h, MPFR_RNDN), ld = mpfr_get_d(l, MPFR_RNDN);
  gen::print_hex_row(stdout, "    ", gen::kHex64Ull, {bits_of(hd), bits_of(ld)}, "%s = %d", label, index);
  mpfr_clears(h, l, (mpfr_ptr)0);
}

void print_exp() {
  mpfr_t v;
  mpfr_init2(v, 256);
  gen::print_generated_by(stdout, "extended_tables", "gen_extended_tables exp > src/scalar/expl_table.inc");
  std::printf("// {hi, lo}: hi = 2^(j/256) rounded to 32 significant bits, lo = RN(2^(j/256) - hi).\n");
  for (int j = -128; j <= 128; ++j) {
    mpfr_set_si(v, j, MPFR_RNDN);
    mpfr_div_si(v, v, 256, MPFR_RNDN);
    mpfr_exp2(v, v, MPFR_RNDN);
    print_pair(v, 32, "j", j);
  }
  mpfr_clear(v);
}

// c_i on its grid of 2^-11, exactly.
double rcp(int i) {
  const double mid = 1.0 + (i + 0.5) / 256.0;  // exact
  mpfr_t v;
  mpfr_init2(v, 256);
  mpfr_set_d(v, 2048.0, MPFR_RNDN);
  mpfr_div_d(v, v, mid, MPFR_RNDN);
  mpfr_rint(v, v, MPFR_RNDN);
  const double c = mpfr_get_d(v, MPFR_RNDN) / 2048.0;
  mpfr_clear(v);
  return c;
}

void print_rcp() {
  gen::print_generated_by(stdout, "extended_tables", "gen_extended_tables rcp > src/scalar/rcp_table.inc");
  std::printf("// c_i = round(2048 / (1 + (i + 1/2)/256)) / 2048, as binary32 bits.\n");
  for (int i = 0; i < 256; ++i)
    std::printf("    0x%08Xu,  // i = %d: %.12g\n", (unsigned)bits_of(float(rcp(i))), i, rcp(i));
}

void print_log() {
  mpfr_t v;
  mpfr_init2(v, 256);
  gen::print_generated_by(stdout, "extended_tables", "gen_extended_tables log > src/scalar/logl_table.inc");
  std::printf("// {hi, lo}: hi = -ln c_i rounded to 40 significant bits, lo = RN(-ln c_i - hi).\n");
  for (int i = 0; i < 256; ++i) {
    mpfr_set_d(v, rcp(i), MPFR_RNDN);
    mpfr_log(v, v, MPFR_RNDN);
    mpfr_neg(v, v, MPFR_RNDN);
    print_pair(v, 40, "i", i);
  }
  mpfr_clear(v);
}

void print_log2() {
  mpfr_t v, h, l;
  mpfr_init2(v, 256);
  mpfr_init2(h, 21);
  mpfr_init2(l, 256);
  gen::print_generated_by(stdout, "extended_tables", "gen_extended_tables log2 > src/scalar/log_table.inc");
  std::printf("// {T0, T1}: T1 = -ln c_i rounded to 21 significant bits, T0 = RN(-ln c_i - T1).\n");
  for (int i = 0; i < 256; ++i) {
    mpfr_set_d(v, rcp(i), MPFR_RNDN);
    mpfr_log(v, v, MPFR_RNDN);
    mpfr_neg(v, v, MPFR_RNDN);
    mpfr_set(h, v, MPFR_RNDN);
    mpfr_sub(l, v, h, MPFR_RNDN);
    const double hd = mpfr_get_d(h, MPFR_RNDN), ld = mpfr_get_d(l, MPFR_RNDN);
    gen::print_hex_row(stdout, "    ", gen::kHex64Ull, {bits_of(ld), bits_of(hd)}, "i = %d", i);
  }
  mpfr_clears(v, h, l, (mpfr_ptr)0);
}

// The tangent tables: which = 0 tan a, 1 -cot a, 2 tan a + cot a.
void print_tan_table(int which, const char* command) {
  mpfr_t a, t, v;
  mpfr_inits2(256, a, t, v, (mpfr_ptr)0);
  gen::print_generated_by(stdout, "extended_tables", "gen_extended_tables %s > src/scalar/%s_table.inc",
                          command, command);
  static const char* const kRule[3] = {"tan a", "-cot a", "tan a + cot a"};
  std::printf("// {hi, lo}: %s for a = k pi/64, hi with 24 significant bits, lo = RN(rest).\n", kRule[which]);
  for (int k = -17; k <= 17; ++k) {
    if (k == 0) {
      gen::print_hex_row(stdout, "    ", gen::kHex64Ull, {0, 0}, "k = 0, never read");
      continue;
    }
    mpfr_const_pi(a, MPFR_RNDN);
    mpfr_mul_si(a, a, k, MPFR_RNDN);
    mpfr_div_si(a, a, 64, MPFR_RNDN);
    mpfr_tan(t, a, MPFR_RNDN);
    if (which == 0) {
      mpfr_set(v, t, MPFR_RNDN);
    } else if (which == 1) {
      mpfr_ui_div(v, 1, t, MPFR_RNDN);
      mpfr_neg(v, v, MPFR_RNDN);
    } else {
      mpfr_ui_div(v, 1, t, MPFR_RNDN);
      mpfr_add(v, v, t, MPFR_RNDN);
    }
    char label[16];
    std::snprintf(label, sizeof label, "k");
    print_pair(v, 24, label, k);
  }
  mpfr_clears(a, t, v, (mpfr_ptr)0);
}
void print_tt() { print_tan_table(0, "tt"); }
void print_gg() { print_tan_table(1, "gg"); }
void print_tg() { print_tan_table(2, "tg"); }

// atan(n/128) over the upper half plane, n = 0..512.
void atan_point(mpfr_t v, int n) {
  mpfr_t pi;
  mpfr_init2(pi, 256);
  mpfr_const_pi(pi, MPFR_RNDN);
  if (n <= 128) {
    mpfr_set_si(v, n, MPFR_RNDN);
    mpfr_div_si(v, v, 128, MPFR_RNDN);
    mpfr_atan(v, v, MPFR_RNDN);
  } else if (n <= 256) {
    mpfr_set_si(v, 256 - n, MPFR_RNDN);
    mpfr_div_si(v, v, 128, MPFR_RNDN);
    mpfr_atan(v, v, MPFR_RNDN);
    mpfr_div_2ui(pi, pi, 1, MPFR_RNDN);
    mpfr_sub(v, pi, v, MPFR_RNDN);
  } else {
    atan_point(v, 512 - n);
    mpfr_sub(v, pi, v, MPFR_RNDN);
  }
  mpfr_clear(pi);
}

void print_atan() {
  mpfr_t v;
  mpfr_init2(v, 256);
  gen::print_generated_by(stdout, "extended_tables", "gen_extended_tables atan > src/scalar/atanl_table.inc");
  std::printf("// {hi, lo}: atan(n/128), pi/2 - atan((256 - n)/128), pi - pair(512 - n); hi with 32 bits.\n");
  for (int n = 0; n <= 512; ++n) {
    atan_point(v, n);
    print_pair(v, 32, "n", n);
  }
  mpfr_clear(v);
}

void print_rsqrt() {
  mpfr_t v;
  mpfr_init2(v, 256);
  gen::print_generated_by(stdout, "extended_tables",
                          "gen_extended_tables rsqrt > src/scalar/sqrtl_table.inc");
  std::printf(
      "// y_n = round(2048 / sqrt(a_n)) / 2048, a_n = 1 + n/256 (n <= 256), 2 + (n - 256)/128 above.\n");
  for (int n = 0; n <= 512; ++n) {
    const double a = n <= 256 ? 1.0 + n / 256.0 : 2.0 + (n - 256) / 128.0;
    mpfr_set_d(v, a, MPFR_RNDN);
    mpfr_rec_sqrt(v, v, MPFR_RNDN);
    mpfr_mul_ui(v, v, 2048, MPFR_RNDN);
    mpfr_rint(v, v, MPFR_RNDN);
    const double y = mpfr_get_d(v, MPFR_RNDN) / 2048.0;
    std::printf("    0x%016llXull,  // n = %d: %.12g\n", (unsigned long long)bits_of(y), n, y);
  }
  mpfr_clear(v);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_extended_tables exp|rcp|log|log2|rsqrt|tt|gg|tg|atan",
                          {{"exp", print_exp},
                           {"rcp", print_rcp},
                           {"log", print_log},
                           {"log2", print_log2},
                           {"rsqrt", print_rsqrt},
                           {"tt", print_tt},
                           {"gg", print_gg},
                           {"tg", print_tg},
                           {"atan", print_atan}});
}
