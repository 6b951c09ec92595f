// Prints the tables of the error-function and normal-distribution kernels
// (src/special) from their rules, with MPFR at 256 bits:
//
//   gen_erf_tables erf_d53      Erf binary64 A53: 46 rows {c0lo, c0hi, c1..c10, S, 0, 0, 0}
//   gen_erf_tables erf_d50      Erf binary64 A50: 24 rows {c0..c13, b, a}
//   gen_erf_tables erf_d26      Erf binary64 A26: 24 rows {c0..c7, 0 x 6, b, a}
//   gen_erf_tables erf_s24      Erf binary32 A24: 22 rows {c0..c6, 0}, in |x| itself
//   gen_erf_tables erf_s21      Erf binary32 A21: 114 rows {c0..c3}, in |x| itself
//   gen_erf_tables erfc_d53     Erfc binary64 A53: 28 rows {c0lo, c0hi, c1lo, c1hi, c2..c13}
//   gen_erf_tables erfc_d50     Erfc binary64 A50 and A26: 28 rows {c0..c12, 0, 0, 0}
//   gen_erf_tables erfc_s24     Erfc binary32 A24: 23 rows {c0..c6, centre}
//   gen_erf_tables erfc_s21     Erfc binary32 A21: 150 rows {c0..c3}, in |x| itself
//   gen_erf_tables cdf_d53      CdfNorm binary64 A53: 30 rows {c, c0lo, c0hi, c1lo, c1hi, c2..c13}
//   gen_erf_tables cdf_d50      CdfNorm binary64 A50: 30 rows {c, c0..c12}
//   gen_erf_tables cdf_d26      CdfNorm binary64 A26: 30 rows {c, c0..c6}
//   gen_erf_tables cdf_s24      CdfNorm binary32 A24: the first 25 rows of cdf_d26
//   gen_erf_tables cdf_s21      CdfNorm binary32 A21 and A11: 159 rows {c, c0..c3}
//   gen_erf_tables exp2_128     RN(2^(j/128)), j = 0..127
//   gen_erf_tables exp2_129     RN(2^(j/128)), j = 0..128
//   gen_erf_tables exp2_pairs   {T0, T1}, j = 0..127: T0 = 2^(j/128) truncated to 26 bits, T1 = RN(rest)
//   gen_erf_tables exp2_pairs_rn {Thi, Tlo}, j = 0..128: Thi = 2^(j/128) rounded to 26 bits, Tlo = RN(rest)
//
// The functions fitted: erf(x); G(y) = exp(y^2) erfc(y), the scaled
// complement; R(a) = Phi(-a) exp(a^2/2) = erfc(a/sqrt 2) exp(a^2/2) / 2, the
// scaled normal tail.  A row belongs to the interval of |x| that its key
// selects (the key is the high word, or the binary32 pattern, masked and
// offset); its polynomial is in t = |x| - centre.  Constant terms the kernels
// split in two words come from the rule (f at the centre, f' beside it where
// the kernel takes both); the other coefficients are a minimax fit of the
// relative error (fit_row), each then rounded to double.
// Row 0 of each table (the fit at the origin, in its own shape) and a few
// reference rows are fixed words, listed below; the last rows of Erf are the
// constant 1.
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;
using gen::double_of;

constexpr mpfr_prec_t kPrec = 256;

// ---------------------------------------------------------------------------
// The functions.

void f_erf(mpfr_t r, mpfr_srcptr x) { mpfr_erf(r, x, MPFR_RNDN); }

void f_scaled_erfc(mpfr_t r, mpfr_srcptr y) {
  mpfr_t e;
  mpfr_init2(e, kPrec);
  mpfr_sqr(e, y, MPFR_RNDN);
  mpfr_exp(e, e, MPFR_RNDN);
  mpfr_erfc(r, y, MPFR_RNDN);
  mpfr_mul(r, r, e, MPFR_RNDN);
  mpfr_clear(e);
}

void f_scaled_tail(mpfr_t r, mpfr_srcptr a) {
  mpfr_t e, s;
  mpfr_inits2(kPrec, e, s, (mpfr_ptr)0);
  mpfr_sqr(e, a, MPFR_RNDN);
  mpfr_div_2ui(e, e, 1, MPFR_RNDN);
  mpfr_exp(e, e, MPFR_RNDN);
  mpfr_sqrt_ui(s, 2, MPFR_RNDN);
  mpfr_div(s, a, s, MPFR_RNDN);
  mpfr_erfc(r, s, MPFR_RNDN);
  mpfr_mul(r, r, e, MPFR_RNDN);
  mpfr_div_2ui(r, r, 1, MPFR_RNDN);
  mpfr_clears(e, s, (mpfr_ptr)0);
}

using Fn = void (*)(mpfr_t, mpfr_srcptr);

// f'(x) by the closed forms: G' = 2yG - 2/sqrt(pi), R' = aR - 1/sqrt(2 pi).
void derivative(mpfr_t r, Fn f, mpfr_srcptr x) {
  mpfr_t v, k;
  mpfr_inits2(kPrec, v, k, (mpfr_ptr)0);
  f(v, x);
  mpfr_mul(r, v, x, MPFR_RNDN);
  mpfr_const_pi(k, MPFR_RNDN);
  if (f == f_scaled_erfc) {
    mpfr_mul_2ui(r, r, 1, MPFR_RNDN);
    mpfr_sqrt(k, k, MPFR_RNDN);
    mpfr_ui_div(k, 2, k, MPFR_RNDN);
  } else {
    mpfr_mul_2ui(k, k, 1, MPFR_RNDN);
    mpfr_sqrt(k, k, MPFR_RNDN);
    mpfr_ui_div(k, 1, k, MPFR_RNDN);
  }
  mpfr_sub(r, r, k, MPFR_RNDN);
  mpfr_clears(v, k, (mpfr_ptr)0);
}

// ---------------------------------------------------------------------------
// The fit.  Coefficients 0..fixed-1 are given (exact values); the others are
// found one at a time as described above.

struct Fit {
  Fn f;
  double lo, hi;  // interval of |x|
  double centre;  // t = |x| - centre
  int degree;
};

// Solves the m x m system a x = b in place (Gaussian elimination with
// partial pivoting); the solution is left in b.
void solve(std::vector<mpfr_t>& a, std::vector<mpfr_t>& b, int m) {
  mpfr_t q, tmp;
  mpfr_inits2(kPrec, q, tmp, (mpfr_ptr)0);
  for (int c = 0; c < m; ++c) {
    int p = c;
    for (int r = c + 1; r < m; ++r)
      if (mpfr_cmpabs(a[r * m + c], a[p * m + c]) > 0) p = r;
    if (p != c) {
      for (int k = 0; k < m; ++k) mpfr_swap(a[c * m + k], a[p * m + k]);
      mpfr_swap(b[c], b[p]);
    }
    for (int r = c + 1; r < m; ++r) {
      mpfr_div(q, a[r * m + c], a[c * m + c], MPFR_RNDN);
      for (int k = c; k < m; ++k) {
        mpfr_mul(tmp, q, a[c * m + k], MPFR_RNDN);
        mpfr_sub(a[r * m + k], a[r * m + k], tmp, MPFR_RNDN);
      }
      mpfr_mul(tmp, q, b[c], MPFR_RNDN);
      mpfr_sub(b[r], b[r], tmp, MPFR_RNDN);
    }
  }
  for (int c = m - 1; c >= 0; --c) {
    for (int k = c + 1; k < m; ++k) {
      mpfr_mul(tmp, a[c * m + k], b[k], MPFR_RNDN);
      mpfr_sub(b[c], b[c], tmp, MPFR_RNDN);
    }
    mpfr_div(b[c], b[c], a[c * m + c], MPFR_RNDN);
  }
  mpfr_clears(q, tmp, (mpfr_ptr)0);
}

// Returns the coefficients c0..degree as doubles; `fixed` holds the exact
// values of the first k coefficients (their doubles are the caller's).  The
// free ones minimise the largest relative error over the interval: with
// y = f - (c0 + ... + c(k-1) t^(k-1)) and g = y/t^k, the fit is a minimax
// polynomial q of degree n - k to g under the weight f/|t|^k (Remez exchange
// on a grid of Chebyshev points of the interval, which never holds t = 0).
std::vector<double> fit_row(const Fit& fit, const std::vector<mpfr_srcptr>& fixed) {
  const int n = fit.degree, known = int(fixed.size()), m = n - known + 1;
  std::vector<double> out(n + 1, 0.0);
  for (int i = 0; i < known; ++i) out[i] = mpfr_get_d(fixed[i], MPFR_RNDN);
  if (m <= 0) return out;
  const int grid = 16 * (m + 1);
  std::vector<mpfr_t> t(grid), g(grid), w(grid);
  mpfr_t x, y, p, tmp, pi;
  mpfr_inits2(kPrec, x, y, p, tmp, pi, (mpfr_ptr)0);
  mpfr_const_pi(pi, MPFR_RNDN);
  for (int k = 0; k < grid; ++k) {
    mpfr_inits2(kPrec, t[k], g[k], w[k], (mpfr_ptr)0);
    // x = mid - half*cos((2k+1) pi / (2 grid)): rising, interior points.
    mpfr_mul_ui(tmp, pi, 2 * k + 1, MPFR_RNDN);
    mpfr_div_ui(tmp, tmp, 2 * grid, MPFR_RNDN);
    mpfr_cos(tmp, tmp, MPFR_RNDN);
    mpfr_mul_d(tmp, tmp, (fit.hi - fit.lo) / 2, MPFR_RNDN);
    mpfr_set_d(x, (fit.lo + fit.hi) / 2, MPFR_RNDN);
    mpfr_sub(x, x, tmp, MPFR_RNDN);
    mpfr_sub_d(t[k], x, fit.centre, MPFR_RNDN);
    fit.f(w[k], x);
    mpfr_set(y, w[k], MPFR_RNDN);
    mpfr_set_ui(p, 1, MPFR_RNDN);
    for (int l = 0; l < known; ++l) {
      mpfr_mul(tmp, fixed[l], p, MPFR_RNDN);
      mpfr_sub(y, y, tmp, MPFR_RNDN);
      mpfr_mul(p, p, t[k], MPFR_RNDN);
    }
    // p = t^known: g = y/p, weight f/|p|.
    mpfr_div(g[k], y, p, MPFR_RNDN);
    mpfr_abs(p, p, MPFR_RNDN);
    mpfr_div(w[k], w[k], p, MPFR_RNDN);
  }
  std::vector<int> ref(m + 1);
  for (int j = 0; j <= m; ++j) ref[j] = int((long(j) * (grid - 1) + m / 2) / m);
  std::vector<mpfr_t> a((m + 1) * (m + 1)), b(m + 1), q(m);
  for (auto& v : a) mpfr_init2(v, kPrec);
  for (auto& v : b) mpfr_init2(v, kPrec);
  for (auto& v : q) mpfr_init2(v, kPrec);
  std::vector<double> err(grid);
  for (int iter = 0; iter < 12; ++iter) {
    for (int j = 0; j <= m; ++j) {
      const int k = ref[j];
      mpfr_set_ui(p, 1, MPFR_RNDN);
      for (int i = 0; i < m; ++i) {
        mpfr_set(a[j * (m + 1) + i], p, MPFR_RNDN);
        mpfr_mul(p, p, t[k], MPFR_RNDN);
      }
      mpfr_set(a[j * (m + 1) + m], w[k], MPFR_RNDN);
      if (j & 1) mpfr_neg(a[j * (m + 1) + m], a[j * (m + 1) + m], MPFR_RNDN);
      mpfr_set(b[j], g[k], MPFR_RNDN);
    }
    solve(a, b, m + 1);
    for (int i = 0; i < m; ++i) mpfr_set(q[i], b[i], MPFR_RNDN);
    // Errors on the grid (relative, as doubles: only their signs and sizes
    // steer the exchange).
    for (int k = 0; k < grid; ++k) {
      mpfr_set(p, q[m - 1], MPFR_RNDN);
      for (int i = m - 2; i >= 0; --i) {
        mpfr_mul(p, p, t[k], MPFR_RNDN);
        mpfr_add(p, p, q[i], MPFR_RNDN);
      }
      mpfr_sub(p, g[k], p, MPFR_RNDN);
      mpfr_div(p, p, w[k], MPFR_RNDN);
      err[k] = mpfr_get_d(p, MPFR_RNDN);
    }
    // One extremum per run of equal sign; keep m + 1 consecutive ones
    // around the largest.
    std::vector<int> ext;
    for (int k = 0; k < grid; ++k) {
      if (!ext.empty() && (err[k] < 0) == (err[ext.back()] < 0)) {
        if (std::fabs(err[k]) > std::fabs(err[ext.back()])) ext.back() = k;
      } else {
        ext.push_back(k);
      }
    }
    if (int(ext.size()) < m + 1) break;
    while (int(ext.size()) > m + 1) {
      // Drop the smallest extremum; inside the list, with its smaller
      // neighbour, so that the signs keep alternating.
      size_t s = 0;
      for (size_t i = 1; i < ext.size(); ++i)
        if (std::fabs(err[ext[i]]) < std::fabs(err[ext[s]])) s = i;
      if (int(ext.size()) == m + 2 || s == 0 || s + 1 == ext.size()) {
        if (s != 0 && s + 1 != ext.size())
          s = std::fabs(err[ext.front()]) < std::fabs(err[ext.back()]) ? 0 : ext.size() - 1;
        ext.erase(ext.begin() + long(s));
      } else {
        const size_t n2 = std::fabs(err[ext[s - 1]]) < std::fabs(err[ext[s + 1]]) ? s - 1 : s + 1;
        ext.erase(ext.begin() + long(std::max(s, n2)));
        ext.erase(ext.begin() + long(std::min(s, n2)));
      }
    }
    if (ext == ref) break;
    ref = ext;
  }
  for (int i = 0; i < m; ++i) out[known + i] = mpfr_get_d(q[i], MPFR_RNDN);
  for (auto& v : a) mpfr_clear(v);
  for (auto& v : b) mpfr_clear(v);
  for (auto& v : q) mpfr_clear(v);
  for (int k = 0; k < grid; ++k) mpfr_clears(t[k], g[k], w[k], (mpfr_ptr)0);
  mpfr_clears(x, y, p, tmp, pi, (mpfr_ptr)0);
  return out;
}

// ---------------------------------------------------------------------------
// Interval keys: row r >= 1 starts where the masked key reaches BASE + r*STEP.

struct Key {
  bool single;  // the key is a binary32 pattern, else a binary64 high word
  uint32_t base, step;
  double left(int r) const {
    const uint32_t w = base + uint32_t(r) * step;
    if (single) {
      float f;
      std::memcpy(&f, &w, 4);
      return f;
    }
    return double_of(uint64_t(w) << 32);
  }
};

// Value split as the kernels take it: hi with its low `clear` bits zero
// (rounded by `rnd`), lo = RN(rest).
void split(mpfr_srcptr v, int clear, mpfr_rnd_t rnd, double& hi, double& lo) {
  hi = gen::round_to(v, 53 - clear, rnd);
  mpfr_t r;
  mpfr_init2(r, kPrec);
  mpfr_sub_d(r, v, hi, MPFR_RNDN);
  lo = mpfr_get_d(r, MPFR_RNDN);
  mpfr_clear(r);
}

void print_row(const std::vector<double>& row, const char* label, int r) {
  std::printf("    {");
  for (size_t i = 0; i < row.size(); ++i) {
    const char* sep = i == 0 ? "" : i % 4 == 0 ? ",\n     " : ", ";
    std::printf("%s0x%016llX", sep, (unsigned long long)bits_of(row[i]));
  }
  std::printf("},  // %s %d\n", label, r);
}

std::vector<double> words(std::initializer_list<uint64_t> w) {
  std::vector<double> v;
  for (uint64_t b : w) v.push_back(double_of(b));
  return v;
}

void header(const char* arg, const char* file, const char* rule) {
  gen::print_generated_by(stdout, "erf_tables", "gen_erf_tables %s > src/special/%s", arg, file);
  std::printf("// %s\n", rule);
}

// ---------------------------------------------------------------------------
// Erf.

// The upper point of the last fitted row of Erf binary64 A53: from here erf
// rounds to 1; the row's centre is the midpoint of [5.5, it].
constexpr uint64_t kErfD53LastCentre = 0xC016D7DA46E4B314;  // -5.710793597897254 (stored negated)

void print_erf_d53() {
  header("erf_d53", "erf_d53_table.inc",
         "Row r: {c0lo, c0hi, c1..c10, S = -centre, 0, 0, 0}; c0hi + c0lo = erf(centre), c0hi rounded down.");
  const Key key{false, 0x3FBE0000, 0x20000};
  mpfr_t v;
  mpfr_init2(v, kPrec);
  print_row(words({0, 0, 0x3FF20DD750429B6D, 0, 0xBFD812746B036D44, 0xBDC127B360367005, 0x3FBCE2F223001AFF,
                   0xBE738B24C46C7763, 0xBF9B826BA710B835, 0xBEF2B16AF0A3904C, 0x3F75ECA138D6D06F,
                   0xBF40AF1F9C582F3D, 0, 0, 0, 0}),
            "row", 0);
  for (int r = 1; r <= 44; ++r) {
    double lo = key.left(r), hi = key.left(r + 1), centre = (lo + hi) / 2;
    if (r == 44) {
      centre = -double_of(kErfD53LastCentre);
      hi = 2 * centre - lo;
    }
    mpfr_set_d(v, centre, MPFR_RNDN);
    mpfr_erf(v, v, MPFR_RNDN);
    double c0hi, c0lo;
    split(v, 0, MPFR_RNDD, c0hi, c0lo);
    std::vector<mpfr_srcptr> fixed = {v};
    std::vector<double> c;
    if (r == 1) {
      // Reference row: its c1 is a fixed word, the rest fitted to it.
      mpfr_t c1;
      mpfr_init2(c1, kPrec);
      mpfr_set_d(c1, double_of(0x3FF1BD07CDD189AC), MPFR_RNDN);
      c = fit_row({f_erf, lo, hi, centre, 10}, {v, c1});
      mpfr_clear(c1);
    } else {
      c = fit_row({f_erf, lo, hi, centre, 10}, fixed);
    }
    std::vector<double> row = {c0lo, c0hi};
    for (int i = 1; i <= 10; ++i) row.push_back(c[i]);
    row.insert(row.end(), {-centre, 0.0, 0.0, 0.0});
    print_row(row, "row", r);
  }
  print_row(words({0, 0x3FF0000000000000, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}), "row", 45);
  mpfr_clear(v);
}

// Binary64 A50 and A26: the odd fit at the origin, then centred fits.
void print_erf_d(int degree) {
  const bool la = degree == 13;
  header(la ? "erf_d50" : "erf_d26", la ? "erf_d50_table.inc" : "erf_d26_table.inc",
         la ? "Row r: {c0..c13, b, a}, t = a|x| - b; c0 = RN(erf(b)), the rest fitted."
            : "Row r: {c0..c7, 0 x 6, b, a}, t = a|x| - b; all coefficients fitted.");
  const Key key{false, 0x3FBC0000, 0x40000};
  std::vector<double> row0(16, 0.0);
  row0[15] = 1.0;
  if (la) {
    const uint64_t odd[] = {0x3FF20DD750429B6D, 0xBFD812746B0379E7, 0x3FBCE2F21A042BE2, 0xBF9B82CE31288B51,
                            0x3F7565BCD0E6A53F, 0xBF4C02DB40040B86, 0x3F1F9A326F9B89B7};
    for (int i = 0; i < 7; ++i) row0[2 * i + 1] = double_of(odd[i]);
  } else {
    const uint64_t odd[] = {0x3FF20DD750429B6D, 0xBFD812746B0379E7, 0x3FBCE2F21A042BE2, 0xBF9B82CE31288B51};
    for (int i = 0; i < 4; ++i) row0[2 * i + 1] = double_of(odd[i]);
  }
  print_row(row0, "row", 0);
  mpfr_t v;
  mpfr_init2(v, kPrec);
  for (int r = 1; r <= 22; ++r) {
    const double lo = key.left(r), hi = key.left(r + 1), centre = (lo + hi) / 2;
    std::vector<double> c;
    if (la) {
      mpfr_set_d(v, centre, MPFR_RNDN);
      mpfr_erf(v, v, MPFR_RNDN);
      mpfr_set_d(v, mpfr_get_d(v, MPFR_RNDN), MPFR_RNDN);
      c = fit_row({f_erf, lo, hi, centre, 13}, {v});
    } else {
      c = fit_row({f_erf, lo, hi, centre, 7}, {});
      c.resize(14, 0.0);
    }
    c.push_back(centre);
    c.push_back(1.0);
    print_row(c, "row", r);
  }
  std::vector<double> last(16, 0.0);
  last[0] = 1.0;
  print_row(last, "row", 23);
  mpfr_clear(v);
}

// Binary32: polynomials in |x| itself over each interval.
void print_erf_s(int degree) {
  const bool ha = degree == 6;
  header(ha ? "erf_s24" : "erf_s21", ha ? "erf_s24_table.inc" : "erf_s21_table.inc",
         ha ? "Row r: {c0..c6, 0}, a polynomial in |x| fitted to erf on the row's interval."
            : "Row r: {c0..c3}, a cubic in |x| fitted to erf on the row's interval.");
  const Key key = ha ? Key{true, 0x3DE00000, 0x200000} : Key{true, 0x3CF80000, 0x80000};
  const int last = ha ? 21 : 113;
  const int width = ha ? 8 : 4;
  for (int r = 0; r < last; ++r) {
    std::vector<double> row;
    if (ha && r == 0)
      row = words({0, 0x3FF20DD75045FEAD, 0xBE5E800F127E5583, 0xBFD812694AE6167A, 0xBF17C198EA9C0C06,
                   0x3FBD3EBD3A77A98E, 0xBF847870EF12A536, 0});
    else if (ha && r == 20)
      row = words({0x3FED8F8FB9230C42, 0x3FBDBA58CA3E6686, 0xBFB2E6921E3DEA59, 0x3F99AC8EA7A18AF2,
                   0xBF73A4E0175A645F, 0x3F400D7BD5513F4E, 0xBEF5E386FF78FFF4, 0});
    else if (!ha && r == 0)
      row = words({0, 0x3FF20DD75219A6F2, 0xBECB2F12984E1F1F, 0xBFD80F2DA9B2F44B});
    else if (!ha && r == 1)
      row = words({0xBE50CD326725E255, 0x3FF20DD9395B7A26, 0xBF13C5B2900D0F54, 0xBFD7FF45E70D3E0A});
    else {
      row = fit_row({f_erf, key.left(r), key.left(r + 1), 0.0, degree}, {});
      row.resize(width, 0.0);
    }
    print_row(row, "row", r);
  }
  std::vector<double> one(width, 0.0);
  one[0] = 1.0;
  print_row(one, "row", last);
}

// ---------------------------------------------------------------------------
// Erfc: fits of G(y) = exp(y^2) erfc(y), from each interval's left end.

// The binary64 left ends (and the upper end of the last row's use).
constexpr double kErfcD64Ends[] = {0,    0.25, 0.3125, 0.375, 0.4375, 0.5, 0.625, 0.75, 0.875, 1,
                                   1.25, 1.5,  1.75,   2,     2.5,    3,   3.5,   4,    5,     6,
                                   7,    8,    10,     12,    14,     16,  20,    24,   27.25};

void print_erfc_d53() {
  header("erfc_d53", "erfc_d53_table.inc",
         "Row r: {c0lo, c0hi, c1lo, c1hi, c2..c13}, t = |x| - A[r]; c0 = G(A[r]), c1 = G'(A[r]), hi parts "
         "RN to 21 bits.");
  print_row(words({0x3EAFFFFFFFFFFFE6, 0x3FEFFFFE00000000, 0xBEB50429B6D0C1D5, 0xBFF20DD600000000,
                   0x3FEFFFFFFFFFFFF5, 0xBFE812746B037553, 0x3FDFFFFFFFFE16ED, 0xBFD341F6BBC5A411,
                   0x3FC555554B6ACBD3, 0xBFB6023D75B0822C, 0x3FA5553FBD8AB611, 0xBF938F09FDD433F6,
                   0x3F81056F93BC3964, 0xBF6BD4FFDCC383C5, 0x3F53E2B6F9CF15E5, 0xBF32852E4A61B26E}),
            "row", 0);
  mpfr_t v, d, x;
  mpfr_inits2(kPrec, v, d, x, (mpfr_ptr)0);
  for (int r = 1; r < 28; ++r) {
    const double a = kErfcD64Ends[r];
    mpfr_set_d(x, a, MPFR_RNDN);
    f_scaled_erfc(v, x);
    derivative(d, f_scaled_erfc, x);
    double c0hi, c0lo, c1hi, c1lo;
    split(v, 32, MPFR_RNDN, c0hi, c0lo);
    split(d, 32, MPFR_RNDN, c1hi, c1lo);
    const std::vector<double> c = fit_row({f_scaled_erfc, a, kErfcD64Ends[r + 1], a, 13}, {v, d});
    std::vector<double> row = {c0lo, c0hi, c1lo, c1hi};
    row.insert(row.end(), c.begin() + 2, c.end());
    print_row(row, "row", r);
  }
  mpfr_clears(v, d, x, (mpfr_ptr)0);
}

void print_erfc_d50() {
  header("erfc_d50", "erfc_d50_table.inc", "Row r: {c0..c12, 0, 0, 0}, t = |x| - A[r], fitted to G.");
  print_row(words({0x3FF0000000000000, 0xBFF20DD750429B6C, 0x3FEFFFFFFFFFFE88, 0xBFE812746B02F8BF,
                   0x3FDFFFFFFFD1E5ED, 0xBFD341F6B71C0EF5, 0x3FC55554A9C1F2F3, 0xBFB6022EC96F85C5,
                   0x3FA554565E86C323, 0xBF9385159FFEBDBF, 0x3F80BC0B949AA5CF, 0xBF691AD6C04892C9,
                   0x3F48A93B0D7F7809, 0, 0, 0}),
            "row", 0);
  for (int r = 1; r < 28; ++r) {
    const double a = kErfcD64Ends[r];
    std::vector<double> c = fit_row({f_scaled_erfc, a, kErfcD64Ends[r + 1], a, 12}, {});
    c.resize(16, 0.0);
    print_row(c, "row", r);
  }
}

void print_erfc_s(int degree) {
  const bool ha = degree == 6;
  header(ha ? "erfc_s24" : "erfc_s21", ha ? "erfc_s24_table.inc" : "erfc_s21_table.inc",
         ha ? "Row r: {c0..c6, centre}, t = |x| - centre (the left end), fitted to G."
            : "Row r: {c0..c3}, a cubic in |x| itself fitted to G on the row's interval.");
  const Key key = ha ? Key{true, 0x3E600000, 0x200000} : Key{true, 0x3C780000, 0x80000};
  const int rows = ha ? 23 : 150;
  for (int r = 0; r < rows; ++r) {
    std::vector<double> row;
    if (ha && r == 0)
      row = words({0x3FEFFFFFFFC35FD9, 0xBFF20DD721880960, 0x3FEFFFE8B7820B6A, 0xBFE81043B1C391A9,
                   0x3FDFCD3226E370B2, 0xBFD20D7E0B100A77, 0x3FBB7C6786B86F81, 0});
    else if (ha && r == 1)
      row = words({0x3FE8A6ADCDA2EA24, 0xBFE7C857B9B0D5CD, 0x3FE2B497DC3CBDD6, 0xBFD979956DBC9269,
                   0x3FCF09FAECE3FF8B, 0xBFC13372E05C4D0F, 0x3FB00A95E62788C3, 0x3FD0000000000000});
    else if (!ha && r == 0)
      row = words({0x3FF0000000000000, 0xBFF20DD750429B6D, 0x3FF0000000000000, 0xBFE812746B0379E7});
    else if (!ha && r == 1)
      row = words({0x3FEFFFFFEE9B5096, 0xBFF20DCEDB24785B, 0x3FEFF9D27F94B1CA, 0xBFE710BE147F4F30});
    else {
      const double lo = key.left(r), hi = std::fmin(key.left(r + 1), 10.1);
      row = fit_row({f_scaled_erfc, lo, hi, ha ? lo : 0.0, degree}, {});
      if (ha) row.push_back(lo);
    }
    print_row(row, "row", r);
  }
}

// ---------------------------------------------------------------------------
// CdfNorm: fits of R(a) = Phi(-a) exp(a^2/2) from each interval's left end.

constexpr double kCdfQuarterEnds[] = {0,   0.25, 0.3125, 0.375, 0.4375, 0.5, 0.625, 0.75, 0.875, 1, 1.25,
                                      1.5, 1.75, 2,      2.5,   3,      3.5, 4,     5,    6,     7, 8,
                                      10,  12,   14,     16,    20,     24,  28,    32,   38.5};

void print_cdf_d53() {
  header("cdf_d53", "cdfnorm_d53_table.inc",
         "Row r: {c, c0lo, c0hi, c1lo, c1hi, c2..c13}, v = |x| - c; c0 = R(c), c1 = R'(c), hi parts RN to 26 "
         "bits.");
  print_row(words({0, 0x3EA0000000000000, 0x3FDFFFFE00000000, 0xBE933D436508CF5C, 0xBFD9884400000000,
                   0x3FD0000000000000, 0xBFC1058377E2CECB, 0x3FAFFFFFFFFFEE03, 0xBF9B3C058C9997D4,
                   0x3F855555549A8390, 0xBF6F20062E623D0D, 0x3F5555522A1D6B51, 0xBF3BAA5817171AE1,
                   0x3F210DAF44882327, 0xBF03F10FDE76F533, 0x3EE5217C0FEAF002, 0xBEBF7BB3A55423FC}),
            "row", 0);
  print_row(words({0x3FD0000000000000, 0x3E802D3CAE0990B2, 0x3FDA7F8000000000, 0xBE91379BCF479EE6,
                   0xBFD2E86400000000, 0x3FC5C5673C8B7633, 0xBFB594F58FE0683D, 0x3FA312C88A8F692B,
                   0xBF8EB760CA7D91BF, 0x3F76DF18A7DF69FB, 0xBF5FD646864A57CC, 0x3F44E1B43F4570D3,
                   0xBF29FAB8CB038063, 0x3F0ED006E3F34C8B, 0xBEF17D9B76ED285A, 0x3ED2FBBC82F8FECB,
                   0xBEB1F5C3151E22A0}),
            "row", 1);
  mpfr_t v, d, x;
  mpfr_inits2(kPrec, v, d, x, (mpfr_ptr)0);
  for (int r = 2; r < 30; ++r) {
    const double a = kCdfQuarterEnds[r];
    mpfr_set_d(x, a, MPFR_RNDN);
    f_scaled_tail(v, x);
    derivative(d, f_scaled_tail, x);
    double c0hi, c0lo, c1hi, c1lo;
    split(v, 27, MPFR_RNDN, c0hi, c0lo);
    split(d, 27, MPFR_RNDN, c1hi, c1lo);
    const std::vector<double> c = fit_row({f_scaled_tail, a, kCdfQuarterEnds[r + 1], a, 13}, {v, d});
    std::vector<double> row = {a, c0lo, c0hi, c1lo, c1hi};
    row.insert(row.end(), c.begin() + 2, c.end());
    print_row(row, "row", r);
  }
  mpfr_clears(v, d, x, (mpfr_ptr)0);
}

void print_cdf_d50() {
  header("cdf_d50", "cdfnorm_d50_table.inc",
         "Row r: {c, c0..c12}, v = |x| - c; c0 = RN(R(c)), c1 = RN(R'(c)), the rest fitted.");
  mpfr_t v, d, x;
  mpfr_inits2(kPrec, v, d, x, (mpfr_ptr)0);
  for (int r = 0; r < 30; ++r) {
    std::vector<double> row;
    if (r == 1) {
      row = words({0x3FD0000000000000, 0x3FDA7F808169E570, 0xBFD2E8651379BCF4, 0x3FC5C5673C8B7633,
                   0xBFB594F58FE0683D, 0x3FA312C88A8F692B, 0xBF8EB760CA7D9135, 0x3F76DF18A7DF1EB0,
                   0xBF5FD64686132B69, 0x3F44E1B43174E8E2, 0xBF29FAB40C971D83, 0x3F0ECEED9966A388,
                   0xBEF1689B16161DA8, 0x3ED12873323C5F36});
    } else {
      const double a = kCdfQuarterEnds[r];
      mpfr_set_d(x, a, MPFR_RNDN);
      f_scaled_tail(v, x);
      derivative(d, f_scaled_tail, x);
      mpfr_set_d(v, mpfr_get_d(v, MPFR_RNDN), MPFR_RNDN);
      mpfr_set_d(d, mpfr_get_d(d, MPFR_RNDN), MPFR_RNDN);
      row = {a};
      const std::vector<double> c = fit_row({f_scaled_tail, a, kCdfQuarterEnds[r + 1], a, 12}, {v, d});
      row.insert(row.end(), c.begin(), c.end());
    }
    print_row(row, "row", r);
  }
  mpfr_clears(v, d, x, (mpfr_ptr)0);
}

void print_cdf_d26(int rows, const char* arg, const char* file) {
  header(arg, file, "Row r: {c, c0..c6}, v = |x| - c, every coefficient fitted to R.");
  for (int r = 0; r < rows; ++r) {
    std::vector<double> row;
    if (r == 1) {
      row = words({0x3FD0000000000000, 0x3FDA7F808169E563, 0xBFD2E86513796446, 0x3FC5C5673BD6D7F7,
                   0xBFB594F5075F2FD2, 0x3FA312978341649F, 0xBF8EA54578A30B3D, 0x3F7533D56AE37979});
    } else {
      const double a = kCdfQuarterEnds[r];
      row = {a};
      const std::vector<double> c = fit_row({f_scaled_tail, a, kCdfQuarterEnds[r + 1], a, 6}, {});
      row.insert(row.end(), c.begin(), c.end());
    }
    print_row(row, "row", r);
  }
}

void print_cdf_s21() {
  header("cdf_s21", "cdfnorm_s21_table.inc",
         "Row r: {c, c0..c3}, v = |x| - c, every coefficient fitted to R.");
  const Key key{true, 0x3C780000, 0x80000};
  for (int r = 0; r < 159; ++r) {
    std::vector<double> row;
    if (r == 1) {
      row = words({0x3F90000000000000, 0x3FDF9ADCCE797BD0, 0xBFD909D9C0983170, 0x3FCF36B4DAC35BE5,
                   0xBFC083BF89A7B5B3});
    } else {
      const double a = r == 0 ? 0.0 : key.left(r);
      row = {a};
      const std::vector<double> c = fit_row({f_scaled_tail, a, key.left(r + 1), a, 3}, {});
      row.insert(row.end(), c.begin(), c.end());
    }
    print_row(row, "row", r);
  }
}

// ---------------------------------------------------------------------------
// Powers of two.

void pow2(mpfr_t v, int j) {
  mpfr_set_si(v, j, MPFR_RNDN);
  mpfr_div_si(v, v, 128, MPFR_RNDN);
  mpfr_exp2(v, v, MPFR_RNDN);
}

void print_exp2(int count, const char* arg) {
  gen::print_generated_by(stdout, "erf_tables", "gen_erf_tables %s", arg);
  std::printf("// T[j] = RN(2^(j/128)), j = 0..%d.\n", count - 1);
  mpfr_t v;
  mpfr_init2(v, kPrec);
  for (int j = 0; j < count; ++j) {
    pow2(v, j);
    std::printf("    0x%016llX,  // j = %d\n", (unsigned long long)bits_of(mpfr_get_d(v, MPFR_RNDN)), j);
  }
  mpfr_clear(v);
}

void print_exp2_pairs(int count, mpfr_rnd_t rnd, const char* arg, const char* rule) {
  gen::print_generated_by(stdout, "erf_tables", "gen_erf_tables %s", arg);
  std::printf("// %s\n", rule);
  mpfr_t v;
  mpfr_init2(v, kPrec);
  for (int j = 0; j < count; ++j) {
    pow2(v, j);
    double hi, lo;
    split(v, 27, rnd, hi, lo);
    gen::print_hex_row(stdout, "    ", gen::kHex64, {bits_of(hi), bits_of(lo)}, "j = %d", j);
  }
  mpfr_clear(v);
}

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(
      argc, argv,
      "gen_erf_tables erf_d53|erf_d50|erf_d26|erf_s24|erf_s21|erfc_d53|erfc_d50|erfc_s24|erfc_s21|cdf_d53|"
      "cdf_d50|cdf_d26|cdf_s24|cdf_s21|exp2_128|exp2_129|exp2_pairs|exp2_pairs_rn",
      {
          {"erf_d53", print_erf_d53},
          {"erf_d50", [] { print_erf_d(13); }},
          {"erf_d26", [] { print_erf_d(7); }},
          {"erf_s24", [] { print_erf_s(6); }},
          {"erf_s21", [] { print_erf_s(3); }},
          {"erfc_d53", print_erfc_d53},
          {"erfc_d50", print_erfc_d50},
          {"erfc_s24", [] { print_erfc_s(6); }},
          {"erfc_s21", [] { print_erfc_s(3); }},
          {"cdf_d53", print_cdf_d53},
          {"cdf_d50", print_cdf_d50},
          {"cdf_d26", [] { print_cdf_d26(30, "cdf_d26", "cdfnorm_d26_table.inc"); }},
          {"cdf_s24", [] { print_cdf_d26(25, "cdf_s24", "cdfnorm_s24_table.inc"); }},
          {"cdf_s21", print_cdf_s21},
          {"exp2_128", [] { print_exp2(128, "exp2_128 > src/special/erf_exp2_128_table.inc"); }},
          {"exp2_129", [] { print_exp2(129, "exp2_129 > src/special/erf_exp2_129_table.inc"); }},
          {"exp2_pairs",
           [] {
             print_exp2_pairs(128, MPFR_RNDZ, "exp2_pairs > src/special/erf_exp2_pairs_table.inc",
                              "{T0, T1}: T0 = 2^(j/128) truncated to 26 bits, T1 = RN(2^(j/128) - T0).");
           }},
          {"exp2_pairs_rn",
           [] {
             print_exp2_pairs(129, MPFR_RNDN, "exp2_pairs_rn > src/special/erf_exp2_pairs_rn_table.inc",
                              "{Thi, Tlo}: Thi = 2^(j/128) rounded to 26 bits, Tlo = RN(2^(j/128) - Thi).");
           }},
      });
}
