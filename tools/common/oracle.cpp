#include "oracle.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "fpenv.h"
#include "invoke.h"
#include "numbers.h"

namespace luxtk {

namespace {
struct Format {
  int precision;  // significand bits
  long emin;      // exponent of the smallest subnormal's ulp
  long emax;      // values at or above 2^emax overflow
};
Format format_of(int bits) { return bits == 32 ? Format{24, -149, 128} : Format{53, -1074, 1024}; }
}  // namespace

double round_to_format(mpfr_srcptr exact, int bits) {
  const Format f = format_of(bits);
  mpfr_t r;
  mpfr_init2(r, f.precision);
  // Round to the format's precision, then again to its subnormal grid.
  const mpfr_exp_t old_emin = mpfr_get_emin(), old_emax = mpfr_get_emax();
  // MPFR writes x = m * 2^e with 0.5 <= |m| < 1: the smallest subnormal
  // 2^emin is 0.5 * 2^(emin+1), and the format overflows at 2^emax.
  mpfr_set_emin(f.emin + 1);
  mpfr_set_emax(f.emax);
  int t = mpfr_set(r, exact, MPFR_RNDN);
  t = mpfr_check_range(r, t, MPFR_RNDN);
  mpfr_subnormalize(r, t, MPFR_RNDN);
  mpfr_set_emin(old_emin);
  mpfr_set_emax(old_emax);
  const double d = mpfr_get_d(r, MPFR_RNDN);
  mpfr_clear(r);
  return bits == 32 ? double(float(d)) : d;
}

double ulp_error(double got, mpfr_srcptr exact, int bits) {
  const Format f = format_of(bits);
  if (mpfr_nan_p(exact)) return std::isnan(got) ? 0.0 : INFINITY;
  if (std::isnan(got)) return INFINITY;
  if (mpfr_inf_p(exact)) return (std::isinf(got) && (got > 0) == (mpfr_sgn(exact) > 0)) ? 0.0 : INFINITY;
  const double rounded = round_to_format(exact, bits);
  if (std::isinf(got)) return (rounded == got) ? 0.0 : INFINITY;
  if (mpfr_zero_p(exact)) return got == 0.0 ? 0.0 : INFINITY;
  // ulp at the exact value: 2^(e - p) with exact = m * 2^e, 0.5 <= |m| < 1,
  // never below the subnormal spacing; above the range, the largest's ulp.
  long e = mpfr_get_exp(exact);
  if (e > f.emax) e = f.emax;
  long ulp_exp = e - f.precision;
  if (ulp_exp < f.emin) ulp_exp = f.emin;
  mpfr_t diff;
  mpfr_init2(diff, kOraclePrecision + 64);
  mpfr_set_d(diff, got, MPFR_RNDN);
  mpfr_sub(diff, diff, exact, MPFR_RNDN);
  mpfr_abs(diff, diff, MPFR_RNDN);
  mpfr_mul_2si(diff, diff, -ulp_exp, MPFR_RNDN);
  const double u = mpfr_get_d(diff, MPFR_RNDU);
  mpfr_clear(diff);
  return u;
}

// ---------------------------------------------------------------------------

namespace {
uint64_t splitmix(uint64_t& x) {
  uint64_t z = (x += 0x9E3779B97F4A7C15ull);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}
uint64_t rotl(uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
}  // namespace

Rng::Rng(uint64_t seed) {
  for (uint64_t& s : s_) s = splitmix(seed);
}
uint64_t Rng::next() {
  const uint64_t r = rotl(s_[1] * 5, 7) * 9;
  const uint64_t t = s_[1] << 17;
  s_[2] ^= s_[0];
  s_[3] ^= s_[1];
  s_[1] ^= s_[2];
  s_[0] ^= s_[3];
  s_[2] ^= t;
  s_[3] = rotl(s_[3], 45);
  return r;
}
double Rng::uniform01() { return double(next() >> 11) * 0x1p-53; }
double Rng::uniform(double lo, double hi) { return lo + (hi - lo) * uniform01(); }
double Rng::log_uniform(double lo, double hi, bool both_signs) {
  const double v = std::exp2(std::log2(lo) + (std::log2(hi) - std::log2(lo)) * uniform01());
  const double c = std::fmin(std::fmax(v, lo), hi);
  return (both_signs && (next() & 1)) ? -c : c;
}

namespace {
double to_width(double v, int bits) { return bits == 32 ? double(float(v)) : v; }
double step(double v, int bits, int k) {
  for (int i = 0; i < std::abs(k); ++i) {
    const double dir = k > 0 ? INFINITY : -INFINITY;
    v = bits == 32 ? double(std::nextafter(float(v), float(dir))) : std::nextafter(v, dir);
  }
  return v;
}
}  // namespace

Region log_uniform_region(std::string name, double lo, double hi, bool both_signs) {
  return {std::move(name), [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            for (long i = 0; i < n; ++i) a.push_back(to_width(rng.log_uniform(lo, hi, both_signs), bits));
          }};
}

Region uniform_region(std::string name, double lo, double hi) {
  return {std::move(name), [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            for (long i = 0; i < n; ++i) a.push_back(to_width(rng.uniform(lo, hi), bits));
          }};
}

Region splits_region(std::string name, std::vector<double> points, int k) {
  return {std::move(name), [=](Rng&, int bits, long, std::vector<double>& a, std::vector<double>&) {
            for (double p : points) {
              const double c = to_width(p, bits);
              for (int i = -k; i <= k; ++i) a.push_back(step(c, bits, i));
            }
          }};
}

Region specials_region(std::string name) {
  return {std::move(name), [](Rng&, int bits, long, std::vector<double>& a, std::vector<double>&) {
            const bool is32 = bits == 32;
            const double values[] = {0.0,
                                     INFINITY,
                                     NAN,
                                     1.0,
                                     is32 ? double(0x1p-149f) : 0x1p-1074,
                                     is32 ? double(0x1p-126f) : 0x1p-1022,
                                     is32 ? double(0x1.fffffep127f) : 0x1.fffffffffffffp1023};
            for (double v : values) {
              a.push_back(v);
              a.push_back(-v);
            }
          }};
}

Region fixed_scalar_region(std::string name, Region ra, std::vector<double> scalars) {
  return {std::move(name), [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
            std::vector<double> unused;
            const long each = std::max(1L, n / long(scalars.size()));
            for (double x : scalars) {
              const size_t start = a.size();
              ra.draw(rng, bits, each, a, unused);
              b.insert(b.end(), a.size() - start, to_width(x, bits));
            }
          }};
}

Region pair_region(std::string name, Region ra, Region rb) {
  return {std::move(name), [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
            std::vector<double> unused;
            const size_t start = a.size();
            ra.draw(rng, bits, n, a, unused);
            const long got = long(a.size() - start);
            std::vector<double> bs;
            while (long(bs.size()) < got) rb.draw(rng, bits, got - long(bs.size()), bs, unused);
            b.insert(b.end(), bs.begin(), bs.begin() + got);
          }};
}

// ---------------------------------------------------------------------------

namespace {
std::vector<const AccuracyFamily*>& registry() {
  static std::vector<const AccuracyFamily*> r;
  return r;
}
}  // namespace

void register_accuracy_family(const AccuracyFamily* fam) { registry().push_back(fam); }
const AccuracyFamily* find_accuracy_family(std::string_view family, int bits) {
  for (const AccuracyFamily* f : registry())
    if (f->family == family && f->bits == bits) return f;
  return nullptr;
}
std::vector<const AccuracyFamily*> accuracy_families() { return registry(); }

void Worst::merge(const Worst& w) {
  if (count == 0 || w.ulps > ulps) {
    const long c = count;
    *this = w;
    count = c;
  }
  count += w.count;
}

namespace {
// Calls the export on the inputs in chunks, results widened to double.  For
// shape X the second inputs are the by-value exponent: each run of equal
// values is one call, so the block path is what gets measured.
std::vector<double> evaluate(const CensusEntry& e, const std::vector<double>& a, const std::vector<double>& b,
                             std::vector<double>* second = nullptr) {
  void* fn = export_address(e.name);
  const bool is32 = e.component_bits() == 32;
  const bool by_value = std::string_view(e.shape) == "X";
  const size_t n = a.size();
  std::vector<double> out(n);
  constexpr size_t kChunk = 4096;
  std::vector<float> fa(kChunk), fb(kChunk), fo(kChunk);
  std::vector<double> da(kChunk), db(kChunk), dout(kChunk);
  std::vector<float> fo2(second ? kChunk : 0);
  std::vector<double> dout2(second ? kChunk : 0);
  if (second) second->resize(n);
  for (size_t i = 0; i < n;) {
    size_t m = std::min(kChunk, n - i);
    if (by_value)
      for (size_t j = 1; j < m; ++j)
        if (std::memcmp(&b[i + j], &b[i], sizeof(double)) != 0) {
          m = j;
          break;
        }
    for (size_t j = 0; j < m; ++j) {
      if (is32) {
        fa[j] = float(a[i + j]);
        if (!b.empty()) fb[j] = float(b[i + j]);
      } else {
        da[j] = a[i + j];
        if (!b.empty()) db[j] = b[i + j];
      }
    }
    // Shape X reads its scalar from the first element of the second array.
    run_clean([&] {
      return is32 ? invoke(e, fn, fa.data(), fb.data(), fb.data(), fo.data(), second ? fo2.data() : nullptr,
                           int(m))
                  : invoke(e, fn, da.data(), db.data(), db.data(), dout.data(),
                           second ? dout2.data() : nullptr, int(m));
    });
    for (size_t j = 0; j < m; ++j) out[i + j] = is32 ? double(fo[j]) : dout[j];
    if (second)
      for (size_t j = 0; j < m; ++j) (*second)[i + j] = is32 ? double(fo2[j]) : dout2[j];
    i += m;
  }
  return out;
}
}  // namespace

SweepResult sweep_export(const CensusEntry& e, const AccuracyFamily& fam, const SweepOptions& opt) {
  SweepResult res;
  res.export_name = e.name;
  res.bound = fam.bound ? fam.bound(e) : tier_bound_ulps(e.tier);
  const int bits = e.component_bits();
  const bool two = e.inputs() == 2;
  const auto& regions = fam.regions;
  Rng rng(opt.seed);
  mpfr_t x, y, r;
  mpfr_inits2(kOraclePrecision, x, y, r, (mpfr_ptr)0);
  for (const Region& region : regions) {
    std::vector<double> a, b;
    region.draw(rng, bits, opt.points, a, b);
    if (two && b.size() < a.size()) b.resize(a.size(), 1.0);
    const bool pair = fam.f1_second && std::string_view(e.shape) == "D";
    std::vector<double> got2;
    const std::vector<double> got = evaluate(e, a, two ? b : std::vector<double>{}, pair ? &got2 : nullptr);
    Worst w;
    for (size_t i = 0; i < a.size(); ++i) {
      mpfr_set_d(x, a[i], MPFR_RNDN);
      if (two) {
        mpfr_set_d(y, b[i], MPFR_RNDN);
        fam.f2(r, x, y, MPFR_RNDN);
      } else {
        fam.f1(r, x, MPFR_RNDN);
      }
      double u = ulp_error(got[i], r, bits);
      double g = got[i];
      if (pair) {
        fam.f1_second(r, x, MPFR_RNDN);
        const double u2 = ulp_error(got2[i], r, bits);
        if (u2 > u) u = u2, g = got2[i];
      }
      if (w.count == 0 || u > w.ulps) {
        w.ulps = u;
        w.a = a[i];
        w.b = two ? b[i] : 0.0;
        w.got = g;
      }
      ++w.count;
    }
    res.overall.merge(w);
    res.regions.emplace_back(region.name, w);
  }
  mpfr_clears(x, y, r, (mpfr_ptr)0);
  return res;
}

std::string describe(const Worst& w, bool two_args) {
  char buf[256];
  if (two_args)
    std::snprintf(buf, sizeof buf, "max error %.3g ulp at a = %s, b = %s (got %s) over %ld points", w.ulps,
                  hexfloat(w.a).c_str(), hexfloat(w.b).c_str(), hexfloat(w.got).c_str(), w.count);
  else
    std::snprintf(buf, sizeof buf, "max error %.3g ulp at x = %s (got %s) over %ld points", w.ulps,
                  hexfloat(w.a).c_str(), hexfloat(w.got).c_str(), w.count);
  return buf;
}

}  // namespace luxtk
