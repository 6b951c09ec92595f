// The large-argument reductions against MPFR: their digit tables against the
// binary expansion of 4/pi, and their remainders over the whole range of
// doubles and extended values, the doubles closest to multiples of pi/2
// included.  The remainder's error is measured relative to the remainder.
#include "scalar/reduce.h"

#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "common/numbers.h"
#include "common/oracle.h"
#include "frame/frame.h"
#include "pi_multiples.h"
#include "support/test_options.h"

namespace {

using luxtest::g_sweep;
using luxtk::bits_to_double;
using luxtk::double_bits;

constexpr long kFourOverPiBits = 17000;

// floor(4/pi 2^(kFourOverPiBits-1)): bit b has weight 2^(b - kFourOverPiBits + 1).
struct FourOverPi {
  mpz_t z;
  FourOverPi() {
    mpz_init(z);
    mpfr_t v;
    mpfr_init2(v, kFourOverPiBits + 64);
    mpfr_const_pi(v, MPFR_RNDN);
    mpfr_ui_div(v, 4, v, MPFR_RNDN);
    mpfr_mul_2si(v, v, kFourOverPiBits - 1, MPFR_RNDN);
    mpfr_get_z(z, v, MPFR_RNDD);
    mpfr_clear(v);
  }
  ~FourOverPi() { mpz_clear(z); }
  // The `width` bits of weights 2^-first .. 2^(-first-width+1), as an integer.
  uint64_t digit(long first, int width) const {
    uint64_t d = 0;
    for (int b = 0; b < width; ++b) d = (d << 1) | uint64_t(mpz_tstbit(z, kFourOverPiBits - 1 - first - b));
    return d;
  }
};

TEST(ReductionTables, DoubleDigitsAreTheBitsOfFourOverPi) {
  const FourOverPi fop;
  const uint64_t* D = _orkReductionTab.digits;
  EXPECT_EQ(D[0], 0u);
  for (int i = 1; i < 50; ++i) {
    const uint64_t dig = fop.digit(25L * (i - 1), 25);
    EXPECT_EQ(bits_to_double(D[i]), std::ldexp(double(dig), 176 - 25 * (i - 1))) << "D[" << i << "]";
  }
  EXPECT_EQ(D[1], 0x4C745F3060000000ull);
  EXPECT_EQ(D[2], 0x4AEB939100000000ull);
  EXPECT_EQ(D[3], 0x494529FC20000000ull);
}

TEST(ReductionTables, ExtendedDigitsAreTheBitsOfFourOverPi) {
  const FourOverPi fop;
  EXPECT_EQ(__4onpi_31l[0].w[0] | __4onpi_31l[0].w[1] | __4onpi_31l[0].w[2], 0u);
  for (int i = 1; i < 537; ++i) {
    const OrkX80Slot& s = __4onpi_31l[i];
    const uint64_t sig = (uint64_t(s.w[1]) << 32) | s.w[0];
    const uint64_t dig = fop.digit(31L * (i - 1), 31);
    ASSERT_EQ(s.w[2] >> 16, 0u) << "E[" << i << "]: the slot's last two bytes are zero";
    if (dig == 0) {
      EXPECT_EQ(sig | s.w[2], 0u) << "E[" << i << "]";
      continue;
    }
    // Normalised 80-bit value dig 2^(217 - 31(i-1) - 30).
    const int msb = 63 - __builtin_clzll(dig);
    EXPECT_EQ(sig, dig << (63 - msb)) << "E[" << i << "]";
    EXPECT_EQ(s.w[2], unsigned(16383 + 187 - 31 * (i - 1) + msb)) << "E[" << i << "]";
  }
  EXPECT_EQ(__4onpi_31l[1].w[2], 0x40D8u);
  EXPECT_EQ((uint64_t(__4onpi_31l[1].w[1]) << 32) | __4onpi_31l[1].w[0], 0xA2F9836E00000000ull);
  EXPECT_EQ(__4onpi_31l[2].w[2], 0x40B7u);
  EXPECT_EQ((uint64_t(__4onpi_31l[2].w[1]) << 32) | __4onpi_31l[2].w[0], 0x9C882A5000000000ull);
}

// Significant bits of a double (from the leading bit to the last set bit).
int significant_bits(uint64_t b) {
  const uint64_t m = (b & 0x000FFFFFFFFFFFFFull) | 0x0010000000000000ull;
  return 53 - __builtin_ctzll(m);
}

TEST(ReductionTables, PiOverFourPartsSumToPiOverFourWithExactProducts) {
  mpfr_t pio4, s, r;
  mpfr_inits2(600, pio4, s, r, (mpfr_ptr) nullptr);
  mpfr_const_pi(pio4, MPFR_RNDN);
  mpfr_div_2ui(pio4, pio4, 2, MPFR_RNDN);
  auto rel_log2 = [&](const uint64_t* parts, int n) {
    mpfr_set_zero(s, 1);
    for (int i = 0; i < n; ++i) mpfr_add_d(s, s, bits_to_double(parts[i]), MPFR_RNDN);
    mpfr_sub(r, s, pio4, MPFR_RNDN);
    mpfr_div(r, r, pio4, MPFR_RNDN);
    return std::log2(std::fabs(mpfr_get_d(r, MPFR_RNDN)));
  };
  const OrkReductionTab& T = _orkReductionTab;
  EXPECT_LT(rel_log2(T.pio4_4, 4), -142.0);
  EXPECT_LT(rel_log2(T.pio4_5, 5), -142.0);
  EXPECT_LT(rel_log2(T.pio4_2, 2), -78.0);
  // n Pi exact: n < 2^24 with the four parts (|x| < 2^23), n < 2^31 with five.
  for (int i = 0; i < 3; ++i) EXPECT_LE(significant_bits(T.pio4_4[i]) + 24, 53) << i;
  for (int i = 0; i < 4; ++i) EXPECT_LE(significant_bits(T.pio4_5[i]) + 31, 53) << i;
  EXPECT_LE(significant_bits(T.pio4_2[0]) + 27, 53);  // times the 27-bit head of the fraction
  mpfr_clears(pio4, s, r, (mpfr_ptr) nullptr);
}

// ---------------------------------------------------------------------------
// The oracle: x = N pi/2^s + r exactly, for the N congruent to the routine's
// count that makes |r| smallest; the error of head + tail relative to r.

struct Measure {
  double worst_rel_log2 = -1e9;  // log2 of max |got - r| / |r|
  double worst_abs_log2 = -1e9;  // log2 of max |got - r|
  long double worst_x = 0;
  long failures = 0;  // wrong count or remainder beyond the bound
  long count = 0;
  void merge_one(double rel, double abs_err, long double x) {
    ++count;
    if (rel > worst_rel_log2) {
      worst_rel_log2 = rel;
      worst_x = x;
    }
    if (abs_err > worst_abs_log2) worst_abs_log2 = abs_err;
  }
};

// x = N pi/2^shift + r, N congruent to `count` modulo `modulus`; false if no
// such N next to x 2^shift/pi leaves |r| within (1 + 2^-30) pi/4.
bool measure_one(mpfr_srcptr x, int shift, unsigned count, unsigned modulus, const double* out, Measure& m,
                 long double xv) {
  const mpfr_prec_t prec = 400 + (mpfr_get_exp(x) > 0 ? mpfr_get_exp(x) : 0);
  mpfr_t pis, q, N, r, got, err, bound;
  mpfr_inits2(prec, pis, q, N, r, (mpfr_ptr) nullptr);
  mpfr_inits2(400, got, err, bound, (mpfr_ptr) nullptr);
  mpfr_const_pi(pis, MPFR_RNDN);
  mpfr_div_2ui(pis, pis, shift, MPFR_RNDN);
  mpfr_div(q, x, pis, MPFR_RNDN);
  mpfr_round(N, q);
  // N mod modulus, from the integer N.
  mpz_t z;
  mpz_init(z);
  mpfr_get_z(z, N, MPFR_RNDN);
  const int64_t nmod = int64_t(mpz_fdiv_ui(z, modulus));
  mpz_clear(z);
  const int64_t want = int64_t(count % modulus), mod = int64_t(modulus);
  int64_t delta = want - nmod;  // -modulus < delta < modulus
  if (delta > mod / 2) delta -= mod;
  if (delta < -mod / 2) delta += mod;
  bool ok = delta >= -1 && delta <= 1;
  mpfr_add_si(N, N, long(delta), MPFR_RNDN);
  mpfr_mul(r, N, pis, MPFR_RNDN);
  mpfr_sub(r, x, r, MPFR_RNDN);
  mpfr_set_d(got, out[0], MPFR_RNDN);
  mpfr_add_d(got, got, out[1], MPFR_RNDN);
  mpfr_sub(err, got, r, MPFR_RNDN);
  mpfr_abs(err, err, MPFR_RNDN);
  // |r| <= pi/4 up to a rounding error.
  mpfr_const_pi(bound, MPFR_RNDN);
  mpfr_div_2ui(bound, bound, 2, MPFR_RNDN);
  mpfr_mul_d(bound, bound, 1 + 0x1p-30, MPFR_RNDN);
  if (mpfr_cmpabs(got, bound) > 0) ok = false;
  const double abs_l = mpfr_zero_p(err) ? -1e9 : std::log2(mpfr_get_d(err, MPFR_RNDN));
  double rel_l;
  if (mpfr_zero_p(err))
    rel_l = -1e9;
  else if (mpfr_zero_p(r))
    rel_l = 1e9;
  else {
    mpfr_div(err, err, r, MPFR_RNDN);
    rel_l = std::log2(std::fabs(mpfr_get_d(err, MPFR_RNDN)));
  }
  m.merge_one(rel_l, abs_l, xv);
  if (!ok) ++m.failures;
  mpfr_clears(pis, q, N, r, got, err, bound, (mpfr_ptr) nullptr);
  return ok;
}

void check_pio2d(double x, Measure& m) {
  double out[2];
  const unsigned q = orkreduce_pio2d(x, out);
  mpfr_t mx;
  mpfr_init2(mx, 64);
  mpfr_set_d(mx, x, MPFR_RNDN);
  if (!measure_one(mx, 1, q, 4, out, m, x))
    ADD_FAILURE() << "x = " << luxtk::hexfloat(x) << ": quadrant " << q << ", remainder "
                  << luxtk::hexfloat(out[0]) << " + " << luxtk::hexfloat(out[1]);
  // Odd symmetry.
  double neg[2];
  const unsigned qn = orkreduce_pio2d(-x, neg);
  EXPECT_EQ(qn, (4 - q) & 3) << luxtk::hexfloat(x);
  EXPECT_EQ(double_bits(neg[0]), double_bits(-out[0])) << luxtk::hexfloat(x);
  EXPECT_EQ(neg[1], -out[1]) << luxtk::hexfloat(x);  // a zero tail may come out either sign
  mpfr_clear(mx);
}

// Bound on the remainder's error relative to the remainder (see the report
// printed by each sweep); the routine's design target is about 2^-75.
constexpr double kPio2dRelBound = -70.0;

void report(const char* what, const Measure& m) {
  std::printf("%s: %ld arguments, max error 2^%.1f relative (at %La), 2^%.1f absolute\n", what, m.count,
              m.worst_rel_log2, m.worst_x, m.worst_abs_log2);
}

TEST(ReducePio2d, EveryExponentFromOneToTheLargestDouble) {
  luxtk::Rng rng(g_sweep.seed);
  Measure m;
  // Per binary exponent 0..1023 a few random significands; the native build
  // takes many more.
  const int per_exponent = g_sweep.points >= 100000 ? 64 : 2;
  for (int e = 0; e <= 1023; ++e)
    for (int k = 0; k < per_exponent; ++k) {
      const double x = bits_to_double((uint64_t(e + 1023) << 52) | (rng.next() & 0x000FFFFFFFFFFFFFull));
      check_pio2d(x, m);
    }
  report("pio2d random", m);
  EXPECT_LT(m.worst_rel_log2, kPio2dRelBound);
  EXPECT_EQ(m.failures, 0);
}

TEST(ReducePio2d, PathBoundariesAndTheirNeighbours) {
  Measure m;
  for (const double p : {1.0, 0x1p23, 0x1p30, 0x1p1023, 0x1.fffffffffffffp1023})
    for (int k = -4; k <= 4; ++k) {
      const double x = bits_to_double(double_bits(p) + int64_t(k));
      if (x >= 1.0 && std::isfinite(x)) check_pio2d(x, m);
    }
  // Every digit offset rem = 1..25 (rem = 25 when e - 1052 is a multiple of 25).
  for (int e = 1053; e <= 2046; ++e)
    check_pio2d(bits_to_double((uint64_t(e) << 52) | 0x000FFFFFFFFFFFFFull), m);
  report("pio2d boundaries", m);
  EXPECT_LT(m.worst_rel_log2, kPio2dRelBound);
  EXPECT_EQ(m.failures, 0);
}

TEST(ReducePio2d, DoublesClosestToMultiplesOfPiOverTwo) {
  // The classic worst case over all doubles, 6381956970095103 2^797,
  // lies within 2^-60.9 of a multiple of pi/2.
  const double worst = std::ldexp(6381956970095103.0, 797);
  Measure m;
  check_pio2d(worst, m);
  const int step = g_sweep.points >= 100000 ? 1 : 31;
  const auto hard = luxtest::nearest_multiples_of_pio2(53, 0, 1023, step);
  bool found_worst = false;
  for (const auto& h : hard) {
    const double x = std::ldexp(double(h.M), h.exponent - 52);
    found_worst |= x == worst;
    check_pio2d(x, m);
  }
  if (step == 1) {
    EXPECT_TRUE(found_worst) << "the search misses the known worst case";
  }
  report("pio2d nearest multiples", m);
  // Here the remainder is as small as 2^-61 and the absolute error of the
  // moderate path shows: pi/4 in five parts is good to 2^-142.4, so n < 2^31
  // leaves up to 2^-112 absolute, 2^-59 relative to the smallest remainders
  // of [2^23, 2^30).  The large path stays within 2^-66 relative.
  EXPECT_LT(m.worst_rel_log2, -58.0);
  EXPECT_LT(m.worst_abs_log2, -110.0);
  EXPECT_EQ(m.failures, 0);
}

// ---------------------------------------------------------------------------
// orkreduce_pi04l, under x87 guard 64.

long double make_x80(uint64_t sig, unsigned expo) {
  struct Img {
    uint64_t sig;
    uint16_t se;
    char pad[sizeof(long double) - 10];
  } img{};
  img.sig = sig;
  img.se = uint16_t(expo);
  return __builtin_bit_cast(long double, img);
}

// Checks the count (exact below 2^30, mod 8 above; next to an integer
// 4x/pi either neighbour) and the remainder for n, the even neighbour.
void check_pi04l(long double x, unsigned offset, Measure& m) {
  double out[2];
  unsigned c;
  {
    lux::X87Guard64 g;
    c = orkreduce_pi04l(x, offset, out);
  }
  mpfr_t mx;
  mpfr_init2(mx, 64);
  mpfr_set_ld(mx, x, MPFR_RNDN);
  // n = the count rounded to the parity that makes n + offset even.
  const unsigned n = c - offset + ((c)&1);
  const bool exact = x < 0x1p30L;
  const bool ok = measure_one(mx, 2, n, exact ? 0x80000000u : 8u, out, m, x);
  // floor(4x/pi) against the count.
  mpfr_t y;
  mpfr_init2(y, 400 + (mpfr_get_exp(mx) > 0 ? mpfr_get_exp(mx) : 0));
  mpfr_const_pi(y, MPFR_RNDN);
  mpfr_div_2ui(y, y, 2, MPFR_RNDN);
  mpfr_div(y, mx, y, MPFR_RNDN);
  mpfr_t fl;
  mpfr_init2(fl, mpfr_get_prec(y));
  mpfr_floor(fl, y);
  mpz_t z;
  mpz_init(z);
  mpfr_get_z(z, fl, MPFR_RNDN);
  const unsigned modulus = exact ? 0 : 8;
  const unsigned want = modulus ? unsigned(mpz_fdiv_ui(z, 8)) : unsigned(mpz_get_ui(z));
  const unsigned got = modulus ? ((c - offset) & 7) : (c - offset);
  // Next to an integer the count may be either neighbour (both give the same
  // n): below 2^30 within rounding, above within the rounding of the 64-bit
  // sum that the count is read from, up to 2^-11.
  mpfr_sub(fl, y, fl, MPFR_RNDN);
  const double tol = exact ? 0x1p-50 : 0x1p-8;
  const bool near_int = mpfr_cmp_d(fl, tol) < 0 || mpfr_cmp_d(fl, 1 - tol) > 0;
  const bool count_ok =
      got == want ||
      (near_int && (got == ((want + 1) & (modulus ? 7 : ~0u)) || got == ((want - 1) & (modulus ? 7 : ~0u))));
  if (!ok || !count_ok)
    ADD_FAILURE() << "x = " << std::hexfloat << x << " offset " << offset << ": count " << c << " (want "
                  << want << " mod " << (modulus ? 8 : 0) << "), remainder " << luxtk::hexfloat(out[0])
                  << " + " << luxtk::hexfloat(out[1]);
  mpz_clear(z);
  mpfr_clears(mx, y, fl, (mpfr_ptr) nullptr);
}

// The extended routine carries more of the product; its target is 2^-75 too.
constexpr double kPi04lRelBound = -70.0;

TEST(ReducePi04l, ModeratePathMeetsItsContractFromPiOverFour) {
  // y = 4x/pi in [1, 2) is where the integer part needs the full shift.
  luxtk::Rng rng(g_sweep.seed + 1);
  Measure m;
  for (const long double x : {0.785398163397448309628L, 0.8L, 1.0L, 1.5707963267948966L, 2.0L, 3.14159L,
                              0x1p17L, 0x1p17L - 0x1p-46L, 0x1p30L - 0x1p-34L, 1e9L})
    check_pi04l(x, 0, m);
  const long n = g_sweep.points / 10;
  for (long i = 0; i < n; ++i) {
    const unsigned expo = 16382 + unsigned(rng.next() % 31);  // [0.5, 2^30)
    const long double x = make_x80(rng.next() | 0x8000000000000000ull, expo);
    if (x >= 0.7853981633974483096L) check_pi04l(x, 0, m);
  }
  // Offsets change the count and the parity of n.
  for (const unsigned off : {1u, 2u, 3u, 7u})
    for (const long double x : {1.0L, 2.5L, 100.0L, 0x1.8p20L}) check_pi04l(x, off, m);
  report("pi04l moderate", m);
  EXPECT_LT(m.worst_rel_log2, kPi04lRelBound);
  EXPECT_EQ(m.failures, 0);
}

TEST(ReducePi04l, LargePathOverTheExtendedRange) {
  luxtk::Rng rng(g_sweep.seed + 2);
  Measure m;
  const long n = g_sweep.points >= 100000 ? 20000 : 60;
  for (long i = 0; i < n; ++i) {
    const unsigned expo = 0x401D + unsigned(rng.next() % (0x7FFF - 0x401D));
    check_pi04l(make_x80(rng.next() | 0x8000000000000000ull, expo), 0, m);
  }
  // Every rho = t mod 31 and both sides of the leading step (rho 16, 17).
  for (unsigned expo = 0x401D; expo < 0x401D + 64; ++expo) check_pi04l(make_x80(~0ull, expo), 0, m);
  // The largest value uses E[534].
  check_pi04l(make_x80(~0ull, 0x7FFE), 0, m);
  for (const unsigned off : {1u, 5u}) check_pi04l(make_x80(0xC90FDAA22168C234ull, 0x4100), off, m);
  report("pi04l large", m);
  EXPECT_LT(m.worst_rel_log2, kPi04lRelBound);
  EXPECT_EQ(m.failures, 0);
}

TEST(ReducePi04l, ValuesClosestToMultiplesOfPiOverTwo) {
  Measure m;
  // Doubles (53-bit significands) over their range, and 64-bit significands
  // over a sample of the extended exponents.
  const int step53 = g_sweep.points >= 100000 ? 3 : 97;
  for (const auto& h : luxtest::nearest_multiples_of_pio2(53, 0, 1023, step53))
    check_pi04l(std::ldexp((long double)h.M, h.exponent - 52), 0, m);
  const int step64 = g_sweep.points >= 100000 ? 61 : 2039;
  for (const auto& h : luxtest::nearest_multiples_of_pio2(64, 0, 16383, step64))
    check_pi04l(std::ldexp((long double)h.M, h.exponent - 63), 0, m);
  report("pi04l nearest multiples", m);
  EXPECT_LT(m.worst_rel_log2, kPi04lRelBound);
  EXPECT_EQ(m.failures, 0);
}

}  // namespace
