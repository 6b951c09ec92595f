// Prints the angle tables of the inverse tangent kernels from their rules,
// evaluated in MPFR at 256 bits:
//
//   d_classes  binary64 Atan and Atan2, b = inf, 1.5, 1, 0.5, 0 (classes 0-4):
//              head = RN(atan b), tail = RN(atan b - head), as two columns.
//   s_atan2    binary32 Atan2 A24, b = 0, 0.5, 1, 2, inf: head = atan b and
//              tail = atan b - head, each rounded to 21 significant bits, so
//              that the head's sums with t and the angle's tail stay short.
//
// Usage: gen_atan_tables d_classes|s_atan2 > src/trig/atan_<table>.inc
#include <mpfr.h>

#include <cmath>
#include <cstdio>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;

constexpr mpfr_prec_t kPrec = 256;

// atan b, b < 0 standing for infinity.
void atan_of(mpfr_t r, double b) {
  if (b < 0) {
    mpfr_const_pi(r, MPFR_RNDN);
    mpfr_div_2ui(r, r, 1, MPFR_RNDN);
  } else {
    mpfr_set_d(r, b, MPFR_RNDN);
    mpfr_atan(r, r, MPFR_RNDN);
  }
}

void print_d_classes() {
  gen::print_generated_by(stdout, "atan_tables", "gen_atan_tables d_classes");
  const double b[5] = {-1, 1.5, 1.0, 0.5, 0.0};
  uint64_t head[6] = {}, tail[6] = {};
  mpfr_t a, d;
  mpfr_inits2(kPrec, a, d, (mpfr_ptr)0);
  for (int i = 0; i < 5; ++i) {
    atan_of(a, b[i]);
    const double h = mpfr_get_d(a, MPFR_RNDN);
    mpfr_sub_d(d, a, h, MPFR_RNDN);
    head[i] = bits_of(h);
    tail[i] = bits_of(mpfr_get_d(d, MPFR_RNDN));
  }
  mpfr_clears(a, d, (mpfr_ptr)0);
  gen::print_hex_row(stdout, "    ", gen::kHex64, {head[0], head[1], head[2], head[3], head[4], head[5]},
                     "head: RN(atan b), b = inf, 1.5, 1, 0.5, 0");
  gen::print_hex_row(stdout, "    ", gen::kHex64, {tail[0], tail[1], tail[2], tail[3], tail[4], tail[5]},
                     "tail: RN(atan b - head)");
}

// One row per class of the binary32 two-argument table: {head, tail}.
void print_s_atan2() {
  gen::print_generated_by(stdout, "atan_tables", "gen_atan_tables s_atan2");
  const double b[5] = {0.0, 0.5, 1.0, 2.0, -1};
  const int n = 5;
  mpfr_t a, d;
  mpfr_inits2(kPrec, a, d, (mpfr_ptr)0);
  for (int i = 0; i < n; ++i) {
    atan_of(a, b[i]);
    const double h = gen::round_to(a, 21);
    mpfr_sub_d(d, a, h, MPFR_RNDN);
    const float hf = float(h), tf = float(gen::round_to(d, 21));
    gen::print_hex_row(stdout, "    ", gen::kHex32U, {bits_of(hf), bits_of(tf)}, "b = %g: %.9g, %.9g",
                       b[i] < 0 ? INFINITY : b[i], double(hf), double(tf));
  }
  mpfr_clears(a, d, (mpfr_ptr)0);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(argc, argv, "gen_atan_tables d_classes|s_atan2",
                          {{"d_classes", print_d_classes}, {"s_atan2", print_s_atan2}});
}
