// Sweeps of the extended-precision core against MPFR (see core_sweep.h).
#include "extended/core_sweep.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "frame/frame.h"
#include "scalar/extended.h"

namespace luxcore {

namespace {

// MPFR's exponent e of a value in [2^(e-1), 2^e): the 80-bit format holds
// e from -16444 (the least denormal, 2^-16445) to 16384.
constexpr mpfr_exp_t kEmin80 = -16444, kEmax80 = 16384;

struct Mp {
  mpfr_t v;
  explicit Mp(mpfr_prec_t p = luxtk::kOraclePrecision) { mpfr_init2(v, p); }
  ~Mp() { mpfr_clear(v); }
};

bool finite80(ld v) { return std::isfinite(v); }

int exact_exp(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_exp(r, x, m); }
int exact_log(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_log(r, x, m); }
int exact_log1p(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_log1p(r, x, m); }
int exact_sqrt(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_sqrt(r, x, m); }
int exact_abs(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_abs(r, x, m); }
int exact_sinh(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_sinh(r, x, m); }
int exact_cosh(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_cosh(r, x, m); }
int exact_tanh(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_tanh(r, x, m); }
int exact_asinh(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_asinh(r, x, m); }
int exact_acosh(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_acosh(r, x, m); }
int exact_atanh(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_atanh(r, x, m); }
int exact_sin(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_sin(r, x, m); }
int exact_cos(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_cos(r, x, m); }
int exact_tan(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_tan(r, x, m); }
int exact_atan(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_atan(r, x, m); }
int exact_asin(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_asin(r, x, m); }
int exact_acos(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t m) { return mpfr_acos(r, x, m); }

// One of the two results of a combined routine (sinh-cosh, sin-cos).
template <void (*Both)(ld, ld*, ld*), int Which>
ld one_of_pair(ld x) {
  ld r[2];
  Both(x, &r[0], &r[1]);
  return r[Which];
}
constexpr auto sinh_of_pair = one_of_pair<orksinhcoshl_scalar, 0>;
constexpr auto cosh_of_pair = one_of_pair<orksinhcoshl_scalar, 1>;
constexpr auto sin_of_pair = one_of_pair<orksincosl_scalar, 0>;
constexpr auto cos_of_pair = one_of_pair<orksincosl_scalar, 1>;

Region log_region(std::string name, int lo_exp, int hi_exp, bool both) {
  return {std::move(name), [=](luxtk::Rng& rng, long n, std::vector<ld>& out) {
            for (long i = 0; i < n; ++i) out.push_back(log_uniform80(rng, lo_exp, hi_exp, both));
          }};
}
Region uniform_region(std::string name, ld lo, ld hi) {
  return {std::move(name), [=](luxtk::Rng& rng, long n, std::vector<ld>& out) {
            for (long i = 0; i < n; ++i) out.push_back(uniform80(rng, lo, hi));
          }};
}
// Points and their neighbours up to k steps of the 80-bit format away.
Region splits_region(std::string name, std::vector<ld> points, int k) {
  return {std::move(name), [=](luxtk::Rng&, long, std::vector<ld>& out) {
            for (ld p : points) {
              ld up = p, down = p;
              out.push_back(p);
              for (int i = 0; i < k; ++i) {
                up = std::nextafter(up, std::numeric_limits<ld>::infinity());
                down = std::nextafter(down, -std::numeric_limits<ld>::infinity());
                out.push_back(up);
                out.push_back(down);
              }
            }
          }};
}

// The regions of sinh and cosh (and of their combined routine).
std::vector<Region> sinh_cosh_regions() {
  return {log_region("tiny, below 2^-75", -16445, -75, true),
          log_region("2^-75 to 2^-5", -75, -5, true),
          log_region("2^-5 to 0.5", -5, -1, true),
          uniform_region("0.5 to 26.17", -26.17L, 26.17L),
          uniform_region("26.17 to 11357.2", 26.17L, 11357.2L),
          uniform_region("-11357.2 to -26.17", -11357.2L, -26.17L),
          splits_region("path splits",
                        {0x1p-75L, 0x1p-18L, 0x1p-17L, 0x1p-11L, 0x1p-10L, 0x1p-5L, 0.5L, -0.5L,
                         26.166015625L, -26.166015625L, 11357.216553474703687L, -11357.216553474703687L},
                        64)};
}

// The trigonometric regions: the short paths, the reduction's three forms,
// and the arguments nearest multiples of pi/2 that fit the format.
std::vector<Region> trig_regions() {
  return {log_region("tiny, below 2^-75", -16445, -75, true),
          log_region("2^-75 to 2^-5", -75, -5, true),
          uniform_region("-pi/4 to pi/4", -0.78539816339744830962L, 0.78539816339744830962L),
          uniform_region("-100 to 100", -100.0L, 100.0L),
          log_region("2^-5 to 2^17", -5, 17, true),
          log_region("2^17 to 2^30", 17, 30, true),
          log_region("2^30 to 2^16384", 30, 16384, true),
          splits_region("near multiples of pi/2",
                        {1.57079632679489661923L, 3.14159265358979323846L, 4.71238898038468985769L,
                         0x1.921fb54442d18469898cc51701b8p+16L, 0x1.921fb54442d18469898cc51701b8p+20L,
                         0x1p17L, 0x1p30L, 0xc.90fdaa22168c235p+16380L},
                        64)};
}

// (y, x) pairs for atan2: both magnitudes log-uniform over [2^lo, 2^hi),
// all four quadrants.
Region pair_region(std::string name, int lo, int hi) {
  return {std::move(name), [=](luxtk::Rng& rng, long n, std::vector<ld>& out) {
            for (long i = 0; i < n; ++i) {
              out.push_back(log_uniform80(rng, lo, hi, true));
              out.push_back(log_uniform80(rng, lo, hi, true));
            }
          }};
}
// Pairs whose ratio |y/x| is 2^d with d uniform in [dlo, dhi].
Region ratio_region(std::string name, int dlo, int dhi) {
  return {std::move(name), [=](luxtk::Rng& rng, long n, std::vector<ld>& out) {
            for (long i = 0; i < n; ++i) {
              const ld x = log_uniform80(rng, -100, 100, true);
              const int d = dlo + int(rng.next() % uint64_t(dhi - dlo + 1));
              const ld y = std::ldexp(log_uniform80(rng, 0, 1, true), d) * std::fabs(x);
              out.push_back(y);
              out.push_back(x);
            }
          }};
}

// 1 - t with t log-uniform in [2^-64, 2^-20]: where atanh x grows like a pole.
Region near_one_region(std::string name) {
  return {std::move(name), [](luxtk::Rng& rng, long n, std::vector<ld>& out) {
            for (long i = 0; i < n; ++i) out.push_back(1.0L - log_uniform80(rng, -64, -20, false));
          }};
}

}  // namespace

ld round_to_80(mpfr_srcptr exact) {
  if (mpfr_nan_p(exact)) return __builtin_nanl("");
  if (mpfr_inf_p(exact) || mpfr_zero_p(exact)) return mpfr_get_ld(exact, MPFR_RNDN);
  // Significant bits available at this magnitude: 64 from the least normal
  // 2^-16382 up, one fewer per binade below, down to the least denormal.
  const mpfr_exp_t e = mpfr_get_exp(exact);  // exact in [2^(e-1), 2^e)
  const long bits = e - 1 >= -16382 ? 64 : long(e) + 16445;
  const bool neg = mpfr_signbit(exact);
  if (bits <= 0) {  // below 2^-16445: 0 or the least denormal
    Mp half;
    mpfr_set_ui_2exp(half.v, 1, -16446, MPFR_RNDN);
    const bool up = bits == 0 && mpfr_cmpabs(exact, half.v) > 0;
    const ld v = up ? lux::x80::from_image(1, 0) : 0.0L;
    return neg ? -v : v;
  }
  Mp r(bits);
  mpfr_set(r.v, exact, MPFR_RNDN);
  if (mpfr_get_exp(r.v) > kEmax80) return neg ? -__builtin_infl() : __builtin_infl();
  return mpfr_get_ld(r.v, MPFR_RNDN);  // representable: exact
}

double ulp_error80(ld got, mpfr_srcptr exact) {
  const ld rounded = round_to_80(exact);
  if (std::isnan(got) || std::isnan(rounded)) return std::isnan(got) && std::isnan(rounded) ? 0 : INFINITY;
  if (!finite80(got) || !finite80(rounded)) return got == rounded ? 0 : INFINITY;
  mpfr_exp_t e = mpfr_zero_p(exact) ? kEmin80 : mpfr_get_exp(exact);
  if (e - 1 < -16382) e = -16381;
  Mp d;
  mpfr_set_ld(d.v, got, MPFR_RNDN);
  mpfr_sub(d.v, d.v, exact, MPFR_RNDN);
  mpfr_mul_2si(d.v, d.v, -(e - 1 - 63), MPFR_RNDN);
  return std::fabs(mpfr_get_d(d.v, MPFR_RNDN));
}

ld log_uniform80(luxtk::Rng& rng, int lo_exp, int hi_exp, bool both_signs) {
  const uint64_t sig = rng.next() | 0x8000000000000000ull;
  const int e = lo_exp + int(rng.next() % uint64_t(hi_exp - lo_exp));
  const bool neg = both_signs && (rng.next() & 1);
  if (e < -16382) {  // denormal: the integer bit and the bits below the least denormal go
    const int shift = -16382 - e;
    const uint64_t dsig = shift >= 64 ? 1 : (sig >> shift ? sig >> shift : 1);
    return lux::x80::from_image(dsig, uint16_t(neg ? 0x8000 : 0));
  }
  return lux::x80::from_image(sig, uint16_t((neg ? 0x8000 : 0) | (e + 16383)));
}

ld uniform80(luxtk::Rng& rng, ld lo, ld hi) {
  const ld u = ld(rng.next() >> 1) * 0x1p-63L;  // [0, 1) with 63 random bits
  return lo + (hi - lo) * u;
}

std::string hex80(ld v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%La", v);
  return buf;
}

const std::vector<Routine>& routines() {
  static const std::vector<Routine> r = {
      {"orkexpl_scalar",
       orkexpl_scalar,
       exact_exp,
       {log_region("tiny, below 2^-67 in magnitude", -90, -67, true),
        log_region("2^-67 to 2^-26", -67, -26, true), log_region("2^-26 to 2^-11", -26, -11, true),
        log_region("2^-11 to 2^-5", -11, -5, true), uniform_region("middle, -64 to 64", -64.0L, 64.0L),
        uniform_region("large, 64 to 11356.5", 64.0L, 11356.5L),
        uniform_region("large, -11355 to -64", -11355.0L, -64.0L),
        uniform_region("denormal results, -11400.19 to -11355.14", -11400.19L, -11355.14L),
        splits_region(
            "path splits",
            {0x1p-67L, -0x1p-67L, 0x1p-26L, 0x1p-18L, -0x1p-11L, 0x1p-5L, -0x1p-5L, 64.0L, -64.0L, 4096.0L,
             -4096.0L, 11356.52340629414357L, -11355.137111933023334L, -11400.191678669420071L},
            64)},
       1.0,
       "complex Exp, Sinh/Cosh/Tanh, Pow"},
      {"orklogl_scalar",
       orklogl_scalar,
       exact_log,
       {log_region("all positive, 2^-16445 to 2^16384", -16445, 16384, false),
        log_region("denormals", -16445, -16382, false), uniform_region("0.5 to 2", 0.5L, 2.0L),
        uniform_region("0.96875 to 1.0625", 0.96875L, 1.0625L),
        uniform_region("1 - 2^-16 to 1 + 2^-15", 1.0L - 0x1p-16L, 1.0L + 0x1p-15L),
        splits_region("path splits", {0.96875L, 1.0625L + 0x1p-15L, 1.0L - 0x1p-16L, 1.0L + 0x1p-15L, 1.0L},
                      64)},
       1.0,
       "complex Ln, Log10, Pow, the inverse functions"},
      {"orklog1pl_scalar",
       orklog1pl_scalar,
       exact_log1p,
       {uniform_region("-1 to -0.5", -1.0L, -0.5L), uniform_region("-0.5 to 1", -0.5L, 1.0L),
        log_region("1/16 to 2^32", -4, 32, false), log_region("2^32 to 2^16384", 32, 16384, false),
        log_region("2^-14 to 1/16, both signs", -14, -4, true),
        log_region("2^-75 to 2^-14, both signs", -75, -14, true),
        log_region("tiny, 2^-16445 to 2^-75", -16445, -75, true),
        splits_region("path splits",
                      {-0.5L, 0x1p-4L, -0x1p-4L, 0x1p-14L, -0x1p-14L, 0x1p-25L, 0x1p-38L, 0x1p-75L, -0x1p-75L,
                       0x1p32L, 0x1p74L},
                      64)},
       1.0,
       "complex Ln near the unit circle, the inverse hyperbolics"},
      {"orksqrtl_scalar",
       orksqrtl_scalar,
       exact_sqrt,
       {log_region("all positive, 2^-16445 to 2^16384", -16445, 16384, false),
        log_region("denormals", -16445, -16382, false), uniform_region("1 to 4", 1.0L, 4.0L),
        splits_region("table ends", {1.0L, 2.0L, 4.0L, 0x1p-16382L}, 64)},
       1.0,
       "complex Sqrt, Abs, the inverse functions"},
      {"orksinhl_scalar", orksinhl_scalar, exact_sinh, sinh_cosh_regions(), 1.0, "complex Sin, Sinh, Cos"},
      {"orkcoshl_scalar", orkcoshl_scalar, exact_cosh, sinh_cosh_regions(), 1.0, "complex Cos, Cosh, Sin"},
      {"orksinhcoshl_scalar (sinh)", sinh_of_pair, exact_sinh, sinh_cosh_regions(), 1.0,
       "complex Sin, Cos, Sinh, Cosh"},
      {"orksinhcoshl_scalar (cosh)", cosh_of_pair, exact_cosh, sinh_cosh_regions(), 1.0,
       "complex Sin, Cos, Sinh, Cosh"},
      {"orktanhl_scalar",
       orktanhl_scalar,
       exact_tanh,
       {log_region("tiny, below 2^-75", -16445, -75, true), log_region("2^-75 to 2^-7", -75, -7, true),
        log_region("2^-7 to 0.5", -7, -1, true), uniform_region("0.5 to 4.7", -4.7L, 4.7L),
        uniform_region("4.7 to 32", 4.7L, 32.0L), log_region("from 32", 5, 16384, true),
        splits_region("path splits",
                      {0x1p-75L, 0x1p-18L, 0x1p-12L, 0x1p-7L, 0.5L, -0.5L, 4.699951171875L, 32.0L}, 64)},
       1.0,
       "complex Tan, Tanh"},
      {"orkasinhl_scalar",
       orkasinhl_scalar,
       exact_asinh,
       {log_region("tiny, below 2^-75", -16445, -75, true), log_region("2^-75 to 2^-7", -75, -7, true),
        log_region("2^-7 to 0.5", -7, -1, true), uniform_region("0.5 to 32", -32.0L, 32.0L),
        log_region("32 to 2^38", 5, 38, true), log_region("2^38 to 2^16384", 38, 16384, true),
        splits_region("path splits", {0x1p-75L, 0x1p-7L, 0.5L, -0.5L, 32.0L, 0x1p11L, 0x1p18L, 0x1p38L}, 64)},
       // The leading part of its table term enters the low-order sum of the
       // logarithm step, which costs up to an ulp beside the others.
       2.0,
       "complex Asinh, Asin"},
      {"orkacoshl_scalar",
       orkacoshl_scalar,
       exact_acosh,
       {uniform_region("1 to 1 + 2^-9", 1.0L, 1.0L + 0x1p-9L),
        uniform_region("1 + 2^-9 to 1.25", 1.0L + 0x1p-9L, 1.25L), uniform_region("1.25 to 32", 1.25L, 32.0L),
        log_region("32 to 2^34", 5, 34, false), log_region("2^34 to 2^16384", 34, 16384, false),
        splits_region("path splits", {1.0L, 1.0L + 0x1p-9L, 1.25L, 32.0L, 0x1p11L, 0x1p18L, 0x1p34L}, 64)},
       1.0,
       "complex Acosh, Acos"},
      {"orkatanhl_scalar",
       orkatanhl_scalar,
       exact_atanh,
       {log_region("tiny, below 2^-75", -16445, -75, true), log_region("2^-75 to 2^-7", -75, -7, true),
        log_region("2^-7 to 0.25", -7, -2, true), uniform_region("0.25 to 1", 0.25L, 1.0L),
        uniform_region("-1 to -0.25", -1.0L, -0.25L), near_one_region("1 - 2^-20 to 1 - 2^-64"),
        splits_region("path splits", {0x1p-75L, 0x1p-7L, 0.25L, -0.25L, 0.5L, std::nextafter(1.0L, 0.0L)},
                      64)},
       1.0,
       "complex Atanh, Atan"},
      {"orksinl_scalar", orksinl_scalar, exact_sin, trig_regions(), 1.0, "complex Sin, Cos, Sinh, Cosh, Exp"},
      {"orkcosl_scalar", orkcosl_scalar, exact_cos, trig_regions(), 1.0, "complex Sin, Cos, Sinh, Cosh, Exp"},
      {"orksincosl_scalar (sin)", sin_of_pair, exact_sin, trig_regions(), 1.0, "complex Exp, Sin, Cos"},
      {"orksincosl_scalar (cos)", cos_of_pair, exact_cos, trig_regions(), 1.0, "complex Exp, Sin, Cos"},
      {"orktanl_scalar", orktanl_scalar, exact_tan, trig_regions(), 1.0, "complex Tan, Tanh"},
      {"orkatanl_scalar",
       orkatanl_scalar,
       exact_atan,
       {log_region("tiny, below 2^-75", -16445, -75, true), log_region("2^-75 to 2^-7", -75, -7, true),
        uniform_region("-1 to 1", -1.0L, 1.0L), log_region("2^-7 to 2^11", -7, 11, true),
        log_region("2^11 to 2^65", 11, 65, true), log_region("from 2^65", 65, 16384, true),
        splits_region("path splits", {0x1p-12L, 0x1p-7L, 1.0L, -1.0L, 0x1p11L, 0x1p65L}, 64)},
       1.0,
       "complex Atan, Atanh, Ln"},
      {"orkatan2l_scalar",
       nullptr,
       nullptr,
       {pair_region("moderate, 2^-20 to 2^20", -20, 20),
        pair_region("any, 2^-16445 to 2^16384", -16445, 16384), ratio_region("ratios 2^-12 to 2^12", -12, 12),
        ratio_region("ratios 2^-80 to 2^-12", -80, -12), ratio_region("ratios 2^12 to 2^80", 12, 80),
        pair_region("both tiny, below 2^-16000", -16445, -16000),
        pair_region("both huge, from 2^16000", 16000, 16384)},
       1.0,
       "complex Arg, Ln, Atan, Asin, Acos",
       orkatan2l_scalar,
       mpfr_atan2},
      {"orkasinl_scalar",
       orkasinl_scalar,
       exact_asin,
       {log_region("tiny, below 2^-75", -16445, -75, true), log_region("2^-75 to 2^-7", -75, -7, true),
        uniform_region("-0.5 to 0.5", -0.5L, 0.5L), uniform_region("0.5 to 1", 0.5L, 1.0L),
        uniform_region("-1 to -0.5", -1.0L, -0.5L), near_one_region("1 - 2^-20 to 1 - 2^-64"),
        splits_region("path splits", {0x1p-12L, 0x1p-7L, 0.25L, 0.5L, -0.5L, 1.0L}, 64)},
       1.0,
       "complex Asin, Acos"},
      {"orkacosl_scalar",
       orkacosl_scalar,
       exact_acos,
       {log_region("tiny, below 2^-75", -16445, -75, true), log_region("2^-75 to 2^-7", -75, -7, true),
        uniform_region("-0.5 to 0.5", -0.5L, 0.5L), uniform_region("0.5 to 1", 0.5L, 1.0L),
        uniform_region("-1 to -0.5", -1.0L, -0.5L), near_one_region("1 - 2^-20 to 1 - 2^-64"),
        splits_region("path splits", {0x1p-12L, 0x1p-7L, 0.25L, 0.5L, -0.5L, 1.0L, -1.0L}, 64)},
       1.0,
       "complex Acos, Asin"},
      {"orkfabsl_scalar",
       orkfabsl_scalar,
       exact_abs,
       {log_region("all, both signs", -16445, 16384, true)},
       0.0,
       "the complex kernels"},
  };
  return r;
}

Result sweep(const Routine& r, uint64_t seed, long n) {
  Result res;
  luxtk::Rng rng(seed);
  Mp x, x2, y;
  lux::X87Guard64 guard;
  for (const Region& reg : r.regions) {
    std::vector<ld> in;
    reg.draw(rng, n, in);
    Worst w;
    const size_t step = r.fn2 ? 2 : 1;
    for (size_t k = 0; k + step <= in.size(); k += step) {
      const ld v = in[k], v2 = r.fn2 ? in[k + 1] : 0;
      mpfr_set_ld(x.v, v, MPFR_RNDN);
      ld got;
      if (r.fn2) {
        got = r.fn2(v, v2);
        mpfr_set_ld(x2.v, v2, MPFR_RNDN);
        r.exact2(y.v, x.v, x2.v, MPFR_RNDN);
      } else {
        got = r.fn(v);
        r.exact(y.v, x.v, MPFR_RNDN);
      }
      const double err = ulp_error80(got, y.v);
      ++w.count;
      if (err > w.ulps || (w.count == 1 && err == 0)) {
        w.ulps = err;
        w.x = v;
        w.y = v2;
        w.got = got;
      }
    }
    if (w.ulps > res.overall.ulps || res.overall.count == 0) {
      res.overall.ulps = w.ulps;
      res.overall.x = w.x;
      res.overall.y = w.y;
      res.overall.got = w.got;
    }
    res.overall.count += w.count;
    res.regions.emplace_back(reg.name, w);
  }
  return res;
}

}  // namespace luxcore
