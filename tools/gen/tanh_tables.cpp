// Prints the tables of the Tanh kernels, one row of polynomial coefficients
// per interval of |x|, with MPFR at 256 bits:
//
//   gen_tanh_tables d53   60 rows of 16 doubles: c0lo, c0hi, c1, c2..c10, -c,
//                         three zero words.  Row 0 is [0, 1/8), rows 1..58
//                         split each binade from 1/8 to 20 in 8, row 59 is
//                         |x| >= 20: (0, 1, 0...).  c is the interval's
//                         midpoint, c0hi + c0lo = tanh(c) to double-double,
//                         c1 = RN(1 - tanh(c)^2); c2..c10 fit
//                         (tanh(c + v) - tanh(c) - (1 - tanh(c)^2) v)/v^2.
//   gen_tanh_tables d50   31 rows of 16 doubles: c0..c13, c, g.  4 intervals
//                         a binade from 1/8 to 16, then [16, 20); row 30 is
//                         |x| >= 20: c0 = 1, all else 0.  c is the midpoint,
//                         g = 1, c0 = RN(tanh(c)); c1..c13 fit
//                         (tanh(c + v) - tanh(c))/v.
//   gen_tanh_tables s24   27 rows of 8 doubles: c0..c6 of a polynomial in |x|
//                         itself, and a zero word.  4 intervals a binade from
//                         1/8 to 8, then [8, 10); row 26 is (1, 0...).  Row 0
//                         has c0 = 0 and c1..c6 fit tanh(x)/x.
//   gen_tanh_tables s21   134 rows of c0..c3; 16 intervals a binade from 1/32
//                         to 8, then [8, 10) in four; row 133 is (1, 0...).
//   gen_tanh_tables s11   the same intervals, rows of c0, c1.
//
// Fits are least squares on 64 Chebyshev nodes of the interval, computed at
// 256 bits and rounded to double.  The rows listed in kPinned keep the
// coefficients of the kernels' first fit, which meet their rule.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

#include "gen/gen_common.h"

namespace {

using gen::bits_of;
using gen::double_of;

constexpr mpfr_prec_t kPrec = 256;
constexpr int kNodes = 64;

struct Mp {
  mpfr_t v;
  Mp() {
    mpfr_init2(v, kPrec);
    mpfr_set_zero(v, 1);
  }
  explicit Mp(double d) : Mp() { mpfr_set_d(v, d, MPFR_RNDN); }
  Mp(const Mp& o) : Mp() { mpfr_set(v, o.v, MPFR_RNDN); }
  Mp& operator=(const Mp& o) {
    mpfr_set(v, o.v, MPFR_RNDN);
    return *this;
  }
  ~Mp() { mpfr_clear(v); }
};

// Least-squares coefficients p_0..p_n of sum p_k x^k through the points
// (x_i, y_i), by the normal equations at 256 bits.
std::vector<double> least_squares(const std::vector<Mp>& x, const std::vector<Mp>& y, int n) {
  const int m = n + 1;
  std::vector<Mp> a(m * (m + 1));
  Mp p, t;
  for (size_t i = 0; i < x.size(); ++i) {
    std::vector<Mp> pw(2 * m);
    mpfr_set_ui(pw[0].v, 1, MPFR_RNDN);
    for (int k = 1; k < 2 * m; ++k) mpfr_mul(pw[k].v, pw[k - 1].v, x[i].v, MPFR_RNDN);
    for (int r = 0; r < m; ++r) {
      for (int c = 0; c < m; ++c)
        mpfr_add(a[r * (m + 1) + c].v, a[r * (m + 1) + c].v, pw[r + c].v, MPFR_RNDN);
      mpfr_mul(t.v, pw[r].v, y[i].v, MPFR_RNDN);
      mpfr_add(a[r * (m + 1) + m].v, a[r * (m + 1) + m].v, t.v, MPFR_RNDN);
    }
  }
  for (int col = 0; col < m; ++col) {  // Gauss-Jordan, the matrix is positive definite
    for (int r = 0; r < m; ++r) {
      if (r == col) continue;
      mpfr_div(p.v, a[r * (m + 1) + col].v, a[col * (m + 1) + col].v, MPFR_RNDN);
      for (int c = col; c <= m; ++c) {
        mpfr_mul(t.v, p.v, a[col * (m + 1) + c].v, MPFR_RNDN);
        mpfr_sub(a[r * (m + 1) + c].v, a[r * (m + 1) + c].v, t.v, MPFR_RNDN);
      }
    }
  }
  std::vector<double> out(m);
  for (int r = 0; r < m; ++r) {
    mpfr_div(t.v, a[r * (m + 1) + m].v, a[r * (m + 1) + r].v, MPFR_RNDN);
    out[r] = mpfr_get_d(t.v, MPFR_RNDN);
  }
  return out;
}

// The Chebyshev nodes of [lo, hi] (an even count: none at the midpoint).
std::vector<Mp> nodes(double lo, double hi) {
  std::vector<Mp> x(kNodes);
  Mp t;
  for (int i = 0; i < kNodes; ++i) {
    mpfr_const_pi(t.v, MPFR_RNDN);
    mpfr_mul_si(t.v, t.v, 2 * i + 1, MPFR_RNDN);
    mpfr_div_si(t.v, t.v, 2 * kNodes, MPFR_RNDN);
    mpfr_cos(t.v, t.v, MPFR_RNDN);
    mpfr_mul_d(t.v, t.v, (hi - lo) / 2, MPFR_RNDN);
    mpfr_add_d(x[i].v, t.v, (hi + lo) / 2, MPFR_RNDN);
  }
  return x;
}

// The intervals: row 0 is [0, first); then `per` a binade up to `end_binade`
// (exclusive), then [end_binade, top) cut in the same width.
std::vector<double> left_ends(double first, int per, double end_binade, double top) {
  std::vector<double> ends = {0.0};
  for (double b = first; b < end_binade; b *= 2)
    for (int m = 0; m < per; ++m) ends.push_back(b * (1 + double(m) / per));
  for (double x = end_binade; x < top; x += end_binade / per) ends.push_back(x);
  ends.push_back(top);
  return ends;
}

// Rows kept from the kernels' first fit: (table, row, words).
struct Pinned {
  const char* table;
  int row;
  std::vector<uint64_t> words;
};
const Pinned kPinned[] = {
    {"d53",
     0,
     {0x0000000000000000, 0x0000000000000000, 0x3FF0000000000000, 0xBD197DEAD79668D3, 0xBFD555555553AF3C,
      0xBE052F7CCA134846, 0x3FC11111563849D6, 0xBEB038623673FFB2, 0xBFAB9F685E64022E, 0xBF2A54E2B28F2207,
      0x3F97CFB9328A230E, 0xBF75CA6D61723E02, 0x0000000000000000, 0, 0, 0}},
    {"d53",
     1,
     {0x3C3708A564FAD29A, 0x3FC0E6973998DA48, 0x3FEF712EB25C0888, 0xBFC09B296F7C1EA9, 0xBFD3DD77541EDDA7,
      0x3FB58FFCF4309615, 0x3FBD3ABE845DCF49, 0xBFA791DF538C37FA, 0xBFA4F872F69CD6E8, 0x3F9772E49EF6412B,
      0x3F8CBC0807393909, 0xBF85F06A30F93319, 0xBFC1000000000000, 0, 0, 0}},
    {"d53",
     58,
     {0x3C91BF1D80474F0F, 0x3FEFFFFFFFFFFFFE, 0x3CB72071400E6275, 0xBCB72071400A9F37, 0x3CAED5EC39A77629,
      0xBC9ED5EC3B530600, 0x3C88AB2BFED159DE, 0xBC70721D1220B3FC, 0x3C52C96049721FB8, 0xBC32C971215735DC,
      0x3C112EF658AB41A9, 0xBBEB7B598C6AD3DE, 0xC03287E0C98F84E5, 0, 0, 0}},
    {"d50",
     0,
     {0x0000000000000000, 0x3FF0000000000000, 0, 0xBFD5555555555551, 0, 0x3FC111111110ED4D, 0,
      0xBFABA1BA1ACB0632, 0, 0x3F9664F355233884, 0, 0xBF822601BC42CA2C, 0, 0x3F6CC8780EA6A00B, 0,
      0x3FF0000000000000}},
    {"d50",
     1,
     {0x3FC1E1DD055CD972, 0x3FEF601CAF83B5D3, 0xBFC18883BBF838D5, 0xBFD3B134EBDC5DD1, 0x3FB6B179EF2F42FA,
      0x3FBCA9ECE3C298E3, 0xBFA8B241E7E60CFF, 0xBFA438E61377E6FF, 0x3F986DB66DF590F0, 0x3F8AFDE86B047A98,
      0xBF86B20805DF7AEB, 0xBF70924D32FE90D8, 0x3F741DCBE3888E37, 0x3F519348CA96C0F4, 0x3FC2000000000000,
      0x3FF0000000000000}},
    {"s24",
     1,
     {0xBE68277761C5AF2E, 0x3FF0000263167A05, 0xBF09EBCEDD85B175, 0xBFD54B886E7A59B5, 0xBF71DFA6BC24A233,
      0x3FC388AFBDCFEABF, 0xBFA8AC02C389F5D2, 0}},
    {"s21", 0, {0x0000000000000000, 0x3FF00000022C70EB, 0xBED00E878CFFA194, 0xBFD551766D0607A9}},
    {"s21", 132, {0x3FEFFFEAFE70FCFC, 0x3EC879175E3549F5, 0xBE930E36677D1813, 0x3E43D4005B42D48F}},
    {"s11", 0, {0x0000000000000000, 0x3FEFFEAA0FCD8264}},
    {"s11", 132, {0x3FEFFFFFB1F71098, 0x3E4E6C27B57171E2}},
};

const Pinned* pinned(const char* table, int row) {
  for (const Pinned& p : kPinned)
    if (std::string_view(p.table) == table && p.row == row) return &p;
  return nullptr;
}

void print_row(const std::vector<uint64_t>& w, int row, double lo, double hi) {
  std::printf("    {");
  for (size_t k = 0; k < w.size(); ++k) std::printf("%s0x%016llX", k ? ", " : "", (unsigned long long)w[k]);
  std::printf("},  // row %d: [%.17g, %.17g)\n", row, lo, hi);
}

// Fits of tanh(c + v) about c, on v in [lo - c, hi - c]: the target is
// (tanh(c + v) - head(v))/v^skip for the given head polynomial in v.
std::vector<double> fit_about(double lo, double hi, double c, const std::vector<Mp>& head, int skip,
                              int degree) {
  std::vector<Mp> xs = nodes(lo - c, hi - c), ys(kNodes);
  Mp t, h;
  for (int i = 0; i < kNodes; ++i) {
    mpfr_add_d(t.v, xs[i].v, c, MPFR_RNDN);
    mpfr_tanh(t.v, t.v, MPFR_RNDN);
    mpfr_set_zero(h.v, 1);
    for (int k = int(head.size()) - 1; k >= 0; --k) {
      mpfr_mul(h.v, h.v, xs[i].v, MPFR_RNDN);
      mpfr_add(h.v, h.v, head[k].v, MPFR_RNDN);
    }
    mpfr_sub(t.v, t.v, h.v, MPFR_RNDN);
    for (int k = 0; k < skip; ++k) mpfr_div(t.v, t.v, xs[i].v, MPFR_RNDN);
    ys[i] = t;
  }
  return least_squares(xs, ys, degree);
}

void print_d53() {
  gen::print_generated_by(stdout, "tanh_tables", "gen_tanh_tables d53 > src/hyperbolic/dtanh_ha_table.inc");
  std::printf("// {c0lo, c0hi, c1, c2..c10, -c, 0, 0, 0}: tanh(c + v) ~ c0 + c1 v + ... + c10 v^10.\n");
  const std::vector<double> ends = left_ends(0.125, 8, 16.0, 20.0);
  for (int row = 0; row < 60; ++row) {
    const double lo = ends[row], hi = row + 1 < int(ends.size()) ? ends[row + 1] : 1.0 / 0.0;
    if (const Pinned* p = pinned("d53", row)) {
      print_row(p->words, row, lo, hi);
      continue;
    }
    std::vector<uint64_t> w(16, 0);
    if (row == 59) {
      w[1] = bits_of(1.0);
    } else {
      const double c = (lo + hi) / 2;
      Mp t(c), d;
      mpfr_tanh(t.v, t.v, MPFR_RNDN);
      const double c0hi = mpfr_get_d(t.v, MPFR_RNDN);
      mpfr_sub_d(d.v, t.v, c0hi, MPFR_RNDN);
      const double c0lo = mpfr_get_d(d.v, MPFR_RNDN);
      mpfr_sqr(d.v, t.v, MPFR_RNDN);
      mpfr_ui_sub(d.v, 1, d.v, MPFR_RNDN);
      const double c1 = mpfr_get_d(d.v, MPFR_RNDN);
      // The head is exact: its rounding errors over v or v^2 would be poles
      // that no polynomial fits.
      std::vector<Mp> head(2);
      mpfr_set(head[0].v, t.v, MPFR_RNDN);
      mpfr_set(head[1].v, d.v, MPFR_RNDN);
      const std::vector<double> q = fit_about(lo, hi, c, head, 2, 8);
      w[0] = bits_of(c0lo);
      w[1] = bits_of(c0hi);
      w[2] = bits_of(c1);
      for (int k = 0; k < 9; ++k) w[3 + k] = bits_of(q[k]);
      w[12] = bits_of(-c);
    }
    print_row(w, row, lo, hi);
  }
}

void print_d50() {
  gen::print_generated_by(stdout, "tanh_tables", "gen_tanh_tables d50 > src/hyperbolic/dtanh_la_table.inc");
  std::printf("// {c0..c13, c, g}: tanh(|x|) ~ c0 + c1 v + ... + c13 v^13, v = |x| g - c.\n");
  const std::vector<double> ends = left_ends(0.125, 4, 16.0, 20.0);
  for (int row = 0; row < 31; ++row) {
    const double lo = ends[row], hi = row + 1 < int(ends.size()) ? ends[row + 1] : 1.0 / 0.0;
    if (const Pinned* p = pinned("d50", row)) {
      print_row(p->words, row, lo, hi);
      continue;
    }
    std::vector<uint64_t> w(16, 0);
    if (row == 30) {
      w[0] = bits_of(1.0);
    } else {
      const double c = (lo + hi) / 2;
      std::vector<Mp> head(1);  // exact, as in d53
      mpfr_set_d(head[0].v, c, MPFR_RNDN);
      mpfr_tanh(head[0].v, head[0].v, MPFR_RNDN);
      const double c0 = mpfr_get_d(head[0].v, MPFR_RNDN);
      const std::vector<double> q = fit_about(lo, hi, c, head, 1, 12);
      w[0] = bits_of(c0);
      for (int k = 0; k < 13; ++k) w[1 + k] = bits_of(q[k]);
      w[14] = bits_of(c);
      w[15] = bits_of(1.0);
    }
    print_row(w, row, lo, hi);
  }
}

// The binary32 tables: polynomials in |x| of the given degree; row 0 has
// c0 = 0 and fits tanh(x)/x.
void print_s(const char* name, const char* file, double first, int per, int rows, int degree) {
  gen::print_generated_by(stdout, "tanh_tables", "gen_tanh_tables %s > src/hyperbolic/%s", name, file);
  std::printf("// {c0..c%d%s}: tanh(|x|) ~ c0 + c1 |x| + ... + c%d |x|^%d.\n", degree,
              degree == 6 ? ", 0" : "", degree, degree);
  const std::vector<double> ends = left_ends(first, per, 8.0, 10.0);
  const int words = degree == 6 ? 8 : degree + 1;
  for (int row = 0; row < rows; ++row) {
    const double lo = ends[row], hi = row + 1 < int(ends.size()) ? ends[row + 1] : 1.0 / 0.0;
    if (const Pinned* p = pinned(name, row)) {
      print_row(p->words, row, lo, hi);
      continue;
    }
    std::vector<uint64_t> w(words, 0);
    if (row == rows - 1) {
      w[0] = bits_of(1.0);
    } else if (row == 0) {
      const std::vector<Mp> head;
      const std::vector<double> q = fit_about(lo, hi, 0.0, head, 1, degree - 1);
      for (int k = 0; k < degree; ++k) w[1 + k] = bits_of(q[k]);
    } else {
      const std::vector<Mp> head;
      const std::vector<double> q = fit_about(lo, hi, 0.0, head, 0, degree);
      for (int k = 0; k <= degree; ++k) w[k] = bits_of(q[k]);
    }
    print_row(w, row, lo, hi);
  }
}

void print_s24() { print_s("s24", "stanh_ha_table.inc", 0.125, 4, 27, 6); }
void print_s21() { print_s("s21", "stanh_21_table.inc", 0.03125, 16, 134, 3); }
void print_s11() { print_s("s11", "stanh_11_table.inc", 0.03125, 16, 134, 1); }

}  // namespace

int main(int argc, char** argv) {
  return gen::run_command(
      argc, argv, "gen_tanh_tables d53|d50|s24|s21|s11",
      {{"d53", print_d53}, {"d50", print_d50}, {"s24", print_s24}, {"s21", print_s21}, {"s11", print_s11}});
}
