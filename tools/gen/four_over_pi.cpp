// Digits of 4/pi for the large-argument reductions, from MPFR.
//
//   gen_four_over_pi pio2d  > src/scalar/_ork_reduce_pio2_digits.inc
//   gen_four_over_pi pi04l  > src/scalar/_ork_reduce_pi04l_digits.inc
//
// pio2d: D[0] = 0; for i >= 1, D[i] = the 25 bits of 4/pi of weights
//   2^(-25(i-1)) .. 2^(-25(i-1)-24), times 2^200, as an exact binary64
//   (i = 1..49, the first 1224 bits).
// pi04l: E[0] = 0; for i >= 1, E[i] = the 31 bits of 4/pi of weights
//   2^(-31(i-1)) .. 2^(-31(i-1)-30), times 2^217, as an exact x87 extended
//   value (i = 1..536, the first 16615 bits), printed as the three 32-bit
//   words of its 12-byte slot: significand low, significand high, sign and
//   exponent.
#include <gmp.h>
#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "gen/gen_common.h"

namespace {

constexpr long kBits = 17000;  // digits of 4/pi needed: 16615, plus a margin

// floor(4/pi * 2^(kBits-1)): bit b of the result has weight 2^(b-(kBits-1)).
void four_over_pi_bits(mpz_t z) {
  mpfr_t v;
  mpfr_init2(v, kBits + 64);
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_ui_div(v, 4, v, MPFR_RNDN);
  mpfr_mul_2si(v, v, kBits - 1, MPFR_RNDN);
  mpfr_get_z(z, v, MPFR_RNDD);
  mpfr_clear(v);
}

// The `width` bits of 4/pi with weights 2^(-first) .. 2^(-first-width+1).
uint64_t digit(const mpz_t z, long first, int width) {
  uint64_t d = 0;
  for (int b = 0; b < width; ++b) {
    const long weight = -first - b;  // weight of this bit
    d = (d << 1) | uint64_t(mpz_tstbit(z, kBits - 1 + weight));
  }
  return d;
}

void print_pio2d(const mpz_t z) {
  gen::print_generated_by(stdout, "four_over_pi", "gen_four_over_pi pio2d.  Do not edit.");
  std::printf("// D[i] = bits of 4/pi of weights 2^(-25(i-1)) .. 2^(-25(i-1)-24), times 2^200; D[0] = 0.\n");
  std::printf("0x0000000000000000ull,  // D[0]\n");
  for (int i = 1; i < 50; ++i) {
    const uint64_t d = digit(z, 25L * (i - 1), 25);
    const double v = std::ldexp(double(d), 200 - 25 * (i - 1) - 24);
    std::printf("0x%016llXull,  // D[%d] = 0x%07llX * 2^%d\n", (unsigned long long)gen::bits_of(v), i,
                (unsigned long long)d, 200 - 25 * (i - 1) - 24);
  }
}

void print_pi04l(const mpz_t z) {
  gen::print_generated_by(stdout, "four_over_pi", "gen_four_over_pi pi04l.  Do not edit.");
  std::printf(
      "// E[i] = bits of 4/pi of weights 2^(-31(i-1)) .. 2^(-31(i-1)-30), times 2^217; E[0] = 0.\n"
      "// Each slot: {significand low word, significand high word, sign and exponent}.\n");
  std::printf("{{0x00000000, 0x00000000, 0x0000}},  // E[0]\n");
  for (int i = 1; i < 537; ++i) {
    const uint64_t d = digit(z, 31L * (i - 1), 31);
    uint64_t sig = 0;
    unsigned expo = 0;
    if (d != 0) {
      const int msb = 63 - __builtin_clzll(d);
      sig = d << (63 - msb);
      // d has weight 2^(217 - 31(i-1) - 30) for its lowest bit.
      expo = unsigned(16383 + 217 - 31 * (i - 1) - 30 + msb);
    }
    std::printf("{{0x%08X, 0x%08X, 0x%04X}},  // E[%d]\n", unsigned(sig & 0xFFFFFFFFu), unsigned(sig >> 32),
                expo, i);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || (std::strcmp(argv[1], "pio2d") != 0 && std::strcmp(argv[1], "pi04l") != 0)) {
    std::fprintf(stderr, "usage: gen_four_over_pi pio2d|pi04l\n");
    return 2;
  }
  mpz_t z;
  mpz_init(z);
  four_over_pi_bits(z);
  if (std::strcmp(argv[1], "pio2d") == 0)
    print_pio2d(z);
  else
    print_pi04l(z);
  mpz_clear(z);
  return 0;
}
