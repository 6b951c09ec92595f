// Prints the grid tables of the binary64 sine and cosine kernels from their
// rules, evaluated in MPFR at 512 bits:
//
//   ha_sin  128 entries, angle a = k pi/64          (luxsSin_64f_A53)
//   ha_cos  128 entries, angle a = k pi/64 + pi/2   (luxsCos_64f_A53)
//   la_sin   64 entries, angle a = k pi/32          (luxsSin_64f_A50)
//   la_cos   64 entries, angle a = k pi/32 + pi/2   (luxsCos_64f_A50)
//   ep       64 rows RN(cos(k pi/32)), RN(sin(k pi/32))  (the A26 kernels)
//
// A four-field entry carries sin a and cos a as head and tail:
//   CosHead  the signed power of two nearest to cos a, the boundary between
//            2^m and 2^(m+1) being 1.5 * 2^m; 0 where cos a = 0.  A product
//            CosHead * r is then exact.
//   CosTail  RN(cos a - CosHead)
//   SinHead  RN(sin a)
//   SinTail  sin a - SinHead rounded to 24 significant bits, as a double
// and is stored in the order CosTail, SinHead, SinTail, CosHead.
//
// Usage: gen_sincos_tables ha_sin|ha_cos|la_sin|la_cos|ep > src/trig/sincos_<name>.inc
#include <mpfr.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;
using gen::round_to;

constexpr mpfr_prec_t kPrec = 512;

// a = k * pi / per_half_turn + quarter * pi/2, exactly enough at 512 bits.
void angle(mpfr_t a, long k, long per_half_turn, int quarter) {
  mpfr_const_pi(a, MPFR_RNDN);
  mpfr_mul_si(a, a, 2 * k + quarter * per_half_turn, MPFR_RNDN);
  mpfr_div_si(a, a, 2 * per_half_turn, MPFR_RNDN);
}

// True when the angle is an odd multiple of pi/2, where the cosine is 0 and
// MPFR's value is only a rounding residue.
bool cos_is_zero(long k, long per_half_turn, int quarter) {
  const long num = 2 * k + quarter * per_half_turn;  // a = num pi / (2 per_half_turn)
  return num % per_half_turn == 0 && (num / per_half_turn) % 2 == 1;
}
bool sin_is_zero(long k, long per_half_turn, int quarter) {
  const long num = 2 * k + quarter * per_half_turn;
  return num % (2 * per_half_turn) == 0;
}

// The signed power of two nearest to c, with 1.5 * 2^m as the boundary.
double nearest_power_of_two(mpfr_srcptr c) {
  if (mpfr_zero_p(c)) return 0.0;
  mpfr_t m, mag;
  mpfr_inits2(kPrec, m, mag, (mpfr_ptr)0);
  mpfr_abs(mag, c, MPFR_RNDN);
  // mag = f * 2^e with 0.5 <= f < 1, so 2^(e-1) <= mag < 2^e.
  const mpfr_exp_t e = mpfr_get_exp(mag);
  mpfr_set_ui_2exp(m, 3, e - 2, MPFR_RNDN);  // 1.5 * 2^(e-1)
  const double lo = std::ldexp(1.0, int(e - 1));
  const double p = mpfr_cmp(mag, m) < 0 ? lo : 2 * lo;
  const double r = mpfr_sgn(c) < 0 ? -p : p;
  mpfr_clears(m, mag, (mpfr_ptr)0);
  return r;
}

void print_entries(long count, long per_half_turn, int quarter, const char* what) {
  std::printf("// %s: %ld entries {CosTail, SinHead, SinTail, CosHead} for a = k pi/%ld%s.\n", what, count,
              per_half_turn, quarter ? " + pi/2" : "");
  mpfr_t a, s, c, d;
  mpfr_inits2(kPrec, a, s, c, d, (mpfr_ptr)0);
  for (long k = 0; k < count; ++k) {
    angle(a, k, per_half_turn, quarter);
    mpfr_sin_cos(s, c, a, MPFR_RNDN);
    if (cos_is_zero(k, per_half_turn, quarter)) mpfr_set_zero(c, 1);
    if (sin_is_zero(k, per_half_turn, quarter)) mpfr_set_zero(s, 1);
    const double cos_head = nearest_power_of_two(c);
    mpfr_sub_d(d, c, cos_head, MPFR_RNDN);
    const double cos_tail = round_to(d, 53);
    const double sin_head = round_to(s, 53);
    mpfr_sub_d(d, s, sin_head, MPFR_RNDN);
    const double sin_tail = round_to(d, 24);
    gen::print_hex_row(stdout, "    ", gen::kHex64,
                       {bits_of(cos_tail), bits_of(sin_head), bits_of(sin_tail), bits_of(cos_head)},
                       "k = %ld", k);
  }
  mpfr_clears(a, s, c, d, (mpfr_ptr)0);
}

void print_ep_rows() {
  std::printf("// 64 rows {RN(cos a), RN(sin a)} for a = k pi/32.\n");
  mpfr_t a, s, c;
  mpfr_inits2(kPrec, a, s, c, (mpfr_ptr)0);
  for (long k = 0; k < 64; ++k) {
    angle(a, k, 32, 0);
    mpfr_sin_cos(s, c, a, MPFR_RNDN);
    if (cos_is_zero(k, 32, 0)) mpfr_set_zero(c, 1);
    if (sin_is_zero(k, 32, 0)) mpfr_set_zero(s, 1);
    gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(round_to(c, 53)), bits_of(round_to(s, 53))},
                       "k = %ld", k);
  }
  mpfr_clears(a, s, c, (mpfr_ptr)0);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: gen_sincos_tables ha_sin|ha_cos|la_sin|la_cos|ep\n");
    return 2;
  }
  const char* which = argv[1];
  gen::print_generated_by(stdout, "sincos_tables", "gen_sincos_tables %s > src/trig/sincos_%s.inc", which,
                          which);
  std::printf("// Do not edit; change the rule in the generator and regenerate.\n");
  if (!std::strcmp(which, "ha_sin"))
    print_entries(128, 64, 0, "HA sine table");
  else if (!std::strcmp(which, "ha_cos"))
    print_entries(128, 64, 1, "HA cosine table");
  else if (!std::strcmp(which, "la_sin"))
    print_entries(64, 32, 0, "LA sine table");
  else if (!std::strcmp(which, "la_cos"))
    print_entries(64, 32, 1, "LA cosine table");
  else if (!std::strcmp(which, "ep"))
    print_ep_rows();
  else {
    std::fprintf(stderr, "unknown table %s\n", which);
    return 2;
  }
  return 0;
}
