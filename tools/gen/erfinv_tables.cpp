// Prints the row tables of the inverse error functions and of the inverse
// normal distribution, and the tables of their logarithmic tails, from their
// rules, with MPFR (erfcinv from tools/common/erfinv_mp.h).
//
// Rows.  With y = 1 - |x| the ratio F(y) = erfinv(1 - y)/(1 - y) is smooth on
// each 1/n of a binade of y.  Row r holds the interval of y whose leading
// bits read code = top - r: binade 2^E with E = (code >> log2 n) - bias and
// interval j = code & (n - 1), so y = 2^E (j/n + Cn + v), Cn = 1 + 1/(2n),
// v in [-1/(2n), 1/(2n)).  A row is a polynomial in v:
//   ha  c0lo, c1lo, c2 ... cd, c0hi, c1hi: c0 = F at the centre, c1 = dF/dv
//       there, both to the working precision, split into a high part (c1hi
//       and, on binary64, c0hi rounded to the cleared width: 26 bits on
//       binary64, 12 on binary32; c0hi on binary32 is c0 rounded to float)
//       and the rounded rest; c2 ... cd from the Chebyshev interpolant of
//       degree d on the interval (near-minimax);
//   la  c0 ... cd, c0 = F at the centre rounded, c1 ... cd from the
//       interpolant;
//   ep  c0 ... cd, the interpolant as it is (c0 fitted too).
// The CdfNormInv rows are sqrt(2) times the ErfInv rows of the same type and
// tier: sqrt(2)*ck rounded, and in ha sqrt(2)*(c0hi + c0lo) and
// sqrt(2)*(c1hi + c1lo) split anew.  Row 0 of each table is the published
// row, which this rule reproduces to within its fit (the family test
// measures both); ErfcInv units negate the ErfInv rows when they compile.
//
// Tails.  rt: entry i of the table of logarithms, r_i = round(2048/(1 +
// (i + 0.5)/256))/2048, Lh_i = -ln r_i rounded to double with its low 32 bits
// cut off, Ll_i = the rest rounded; the first word packs the high words of
// r_i and Lh_i.  erfcinv_p / cdfnorminv_p: 28 rows for ib = 4 .. 31 of
// A(s) = -s*erfcinv(exp(-1/s^2)) (times sqrt(2) for CdfNormInv) in t = s -
// ib/128 on [0, 1/128]: T0 = c0lo, T1 = c1lo, T2 ... T12 = c2 ... c12, T13 =
// c0hi, T14 = c1hi (17 significant bits), T15 = 0; c0 and c1 exact, c2 ...
// c12 from the interpolant; row ib = 4 is the published one.
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "common/erfinv_mp.h"
#include "gen/gen_common.h"

namespace {

using gen::bits_of;

constexpr mpfr_prec_t kPrec = 128;

struct Mp {
  mpfr_t v;
  Mp() { mpfr_init2(v, kPrec); }
  ~Mp() { mpfr_clear(v); }
  Mp(const Mp& o) {
    mpfr_init2(v, kPrec);
    mpfr_set(v, o.v, MPFR_RNDN);
  }
  Mp& operator=(const Mp& o) {
    mpfr_set(v, o.v, MPFR_RNDN);
    return *this;
  }
  operator mpfr_ptr() { return v; }
  operator mpfr_srcptr() const { return v; }
};

// ---------------------------------------------------------------------------
// Chebyshev interpolation of degree d on [a, b], as coefficients of the
// monomials of (x - origin).

using Fn = void (*)(mpfr_ptr out, mpfr_srcptr x, const void* ctx);

std::vector<Mp> interpolate(Fn f, const void* ctx, double a, double b, double origin, int d) {
  const int n = d + 1;
  std::vector<Mp> fx(n), cheb(n);
  Mp t, x, pi, ang, tk, mid, half;
  mpfr_const_pi(pi, MPFR_RNDN);
  mpfr_set_d(mid, (a + b) / 2, MPFR_RNDN);  // exact: a, b are short dyadic numbers
  mpfr_set_d(half, (b - a) / 2, MPFR_RNDN);
  std::vector<Mp> nodes(n);
  for (int j = 0; j < n; ++j) {
    mpfr_mul_ui(ang, pi, unsigned(2 * j + 1), MPFR_RNDN);
    mpfr_div_ui(ang, ang, unsigned(2 * n), MPFR_RNDN);
    mpfr_cos(nodes[j], ang, MPFR_RNDN);
    mpfr_mul(x, nodes[j], half, MPFR_RNDN);
    mpfr_add(x, x, mid, MPFR_RNDN);
    f(fx[j], x, ctx);
  }
  // a_k = (2/n) sum f(t_j) T_k(t_j), a_0 halved.
  for (int k = 0; k < n; ++k) {
    mpfr_set_zero(cheb[k], 1);
    for (int j = 0; j < n; ++j) {
      mpfr_mul_ui(ang, pi, unsigned(k * (2 * j + 1)), MPFR_RNDN);
      mpfr_div_ui(ang, ang, unsigned(2 * n), MPFR_RNDN);
      mpfr_cos(tk, ang, MPFR_RNDN);
      mpfr_mul(tk, tk, fx[j], MPFR_RNDN);
      mpfr_add(cheb[k], cheb[k], tk, MPFR_RNDN);
    }
    mpfr_mul_d(cheb[k], cheb[k], (k == 0 ? 1.0 : 2.0) / n, MPFR_RNDN);
  }
  // Monomials of t, from T_{k+1} = 2t T_k - T_{k-1}.
  std::vector<std::vector<Mp>> T(n, std::vector<Mp>(n));
  for (auto& row : T)
    for (auto& c : row) mpfr_set_zero(c, 1);
  mpfr_set_ui(T[0][0], 1, MPFR_RNDN);
  if (n > 1) mpfr_set_ui(T[1][1], 1, MPFR_RNDN);
  for (int k = 2; k < n; ++k)
    for (int i = 0; i < n; ++i) {
      mpfr_set_zero(T[k][i], 1);
      if (i > 0) mpfr_mul_2ui(T[k][i], T[k - 1][i - 1], 1, MPFR_RNDN);
      mpfr_sub(T[k][i], T[k][i], T[k - 2][i], MPFR_RNDN);
    }
  std::vector<Mp> pt(n);
  for (int i = 0; i < n; ++i) {
    mpfr_set_zero(pt[i], 1);
    for (int k = 0; k < n; ++k) {
      mpfr_mul(tk, cheb[k], T[k][i], MPFR_RNDN);
      mpfr_add(pt[i], pt[i], tk, MPFR_RNDN);
    }
  }
  // t = (x - mid)/half = (u + origin - mid)/half with u = x - origin: expand
  // p(t) = sum pt_i ((u + s)/half)^i, s = origin - mid, by Horner on
  // polynomials in u.
  Mp s;
  mpfr_set_d(s, origin, MPFR_RNDN);
  mpfr_sub(s, s, mid, MPFR_RNDN);
  std::vector<Mp> out(n);
  for (auto& c : out) mpfr_set_zero(c, 1);
  for (int i = n - 1; i >= 0; --i) {
    // out = out * (u + s)/half + pt_i
    std::vector<Mp> next(n);
    for (auto& c : next) mpfr_set_zero(c, 1);
    for (int m = 0; m < n; ++m) {
      if (mpfr_zero_p(out[m])) continue;
      mpfr_div(tk, out[m], half, MPFR_RNDN);
      if (m + 1 < n) mpfr_add(next[m + 1], next[m + 1], tk, MPFR_RNDN);
      mpfr_mul(tk, tk, s, MPFR_RNDN);
      mpfr_add(next[m], next[m], tk, MPFR_RNDN);
    }
    mpfr_add(next[0], next[0], pt[i], MPFR_RNDN);
    out = next;
  }
  return out;
}

// ---------------------------------------------------------------------------
// The row function F and its derivative.

struct RowPlace {
  long e;       // y = 2^e (base + v)
  double base;  // j/n + Cn
};

// F(y) = erfcinv(y)/(1 - y) at y = 2^e (base + v).
void row_f(mpfr_ptr out, mpfr_srcptr v, const void* ctx) {
  const RowPlace& p = *static_cast<const RowPlace*>(ctx);
  Mp y, z, w;
  mpfr_add_d(y, v, p.base, MPFR_RNDN);
  mpfr_mul_2si(y, y, p.e, MPFR_RNDN);
  luxmp::erfcinv(z, y);
  mpfr_ui_sub(w, 1, y, MPFR_RNDN);
  mpfr_div(out, z, w, MPFR_RNDN);
}

// dF/dv = 2^e dF/dy, dF/dy = (E'(y)(1 - y) + E(y))/(1 - y)^2, E = erfcinv,
// E'(y) = -sqrt(pi)/2 exp(E^2).
void row_df(mpfr_ptr out, mpfr_srcptr v, const void* ctx) {
  const RowPlace& p = *static_cast<const RowPlace*>(ctx);
  Mp y, z, w, d, c;
  mpfr_add_d(y, v, p.base, MPFR_RNDN);
  mpfr_mul_2si(y, y, p.e, MPFR_RNDN);
  luxmp::erfcinv(z, y);
  mpfr_ui_sub(w, 1, y, MPFR_RNDN);
  mpfr_sqr(d, z, MPFR_RNDN);
  mpfr_exp(d, d, MPFR_RNDN);
  mpfr_const_pi(c, MPFR_RNDN);
  mpfr_sqrt(c, c, MPFR_RNDN);
  mpfr_mul(d, d, c, MPFR_RNDN);
  mpfr_div_2ui(d, d, 1, MPFR_RNDN);
  mpfr_mul(d, d, w, MPFR_RNDN);
  mpfr_sub(d, z, d, MPFR_RNDN);
  mpfr_sqr(w, w, MPFR_RNDN);
  mpfr_div(out, d, w, MPFR_RNDN);
  mpfr_mul_2si(out, out, p.e, MPFR_RNDN);
}

// ---------------------------------------------------------------------------
// Table shapes.

enum class Layout { kHa, kLa, kEp };

struct Shape {
  const char* command;
  const char* table;  // name of the table the rows go into
  const char* file;   // the .inc beside the unit
  int bits;           // 64 or 32
  Layout layout;
  int n;                   // intervals a binade
  int rows;                // binades * n
  int degree;              // of the polynomial
  uint32_t top;            // row = top - (word >> shift)
  int shift;               // of the index word
  bool cdf;                // sqrt(2) times the ErfInv rows
  const uint64_t* quoted;  // row 0 as published
};

// Row 0 of each table as published.
const uint64_t kErfInvD53Row0[] = {
    0x3E2597E16EE728C9, 0x3DCB07C7A181557B, 0x3FAE153D5B9946F6, 0xBF708B9CA446B940, 0x3F80FC3C5DE90746,
    0xBF5114439E36E86B, 0x3F5804EE45B58436, 0xBF316C24EEFE40E9, 0x3F330AC6AF2BC334, 0xBF11C4B42294472E,
    0x3F10378B6335F89B, 0xBEF22D17B22ED423, 0x3EED0878A18D3F9B, 0xBED2F5F4644005A7, 0x3ECB6802D2DA9439,
    0x3FEC636950000000, 0xBF8DD36898000000};
const uint64_t kErfInvD50Row0[] = {0x3FEC636951597E17, 0xBF8DD368964F8386, 0x3FAE153D5B994738,
                                   0xBF708B9CA446BBDA, 0x3F80FC3C5DE6049F, 0xBF5114439E244D7A,
                                   0x3F5804EE5F612CC8, 0xBF316C2528ECD3D0, 0x3F330A953BE96CC6,
                                   0xBF11C45B645107A4, 0x3F1063660DFAEC3B, 0xBEF26EF99FBB0678};
const uint64_t kErfInvD26Row0[] = {0x3FEC5C6F5FC5DFE4, 0xBF6DB4AA3D89D169, 0x3FADB9C5AF5B4154,
                                   0xBF5058B7FD7D1AE9};
const uint64_t kErfInvS24Row0[] = {0xB1BD5936, 0x359A2B9F, 0x3D6E593B, 0xBB030D10,
                                   0x3C040D8A, 0xBA061D39, 0x3F62EEA0, 0xBBEDE000};
const uint64_t kErfInvS21Row0[] = {0x3F62EEA0, 0xBBEDD656, 0x3D6E7A3E, 0xBB033D31};
const uint64_t kErfInvS11Row0[] = {0x3F62E557, 0xBB6DB3B8};
const uint64_t kCdfD53Row0[] = {
    0xBE4DAFC72EF493E1, 0x3DE2E76DB8A2D177, 0x3FB545994AFDA387, 0xBF77660F4CF470C8, 0x3F880555846EB618,
    0xBF582750B33E5EC4, 0x3F60FBF35C91069D, 0xBF38A398B57C36CE, 0x3F3AEDF9781A0329, 0xBF1920D6A12BCA3A,
    0x3F16EF2BA6ADD357, 0xBEF9B47773B03873, 0x3EF4878D010AEC05, 0xBEDAD0874C06A316, 0x3ED36111A86AFCE6,
    0x3FF412D600000000, 0xBF95170C98000000};
const uint64_t kCdfD50Row0[] = {0x3FF412D5FC4A071A, 0xBF95170C95A31249, 0x3FB545994AFDA3B6,
                                0xBF77660F4CF47476, 0x3F880555846A743A, 0xBF582750B3240EF3,
                                0x3F60FBF36EB7E3DE, 0xBF38A3990769D011, 0x3F3AEDB38934A5FA,
                                0xBF19205920B2230B, 0x3F172D308E5098EC, 0xBEFA11A379D58D99};
const uint64_t kCdfD26Row0[] = {0x3FF40DE721F43708, 0xBF75014F68B0FC13, 0x3FB504EBE971EDF7,
                                0xBF571E160143617E};
const uint64_t kCdfS24Row0[] = {0x3340B0E3, 0x3535B04F, 0x3DA889B2, 0xBB39558A,
                                0x3C3AC040, 0xBA3DAA82, 0x3FA0771A, 0xBC283000};
const uint64_t kCdfS21Row0[] = {0x3FA0771A, 0xBC282D24, 0x3DA8A10A, 0xBB39999B};
const uint64_t kCdfS11Row0[] = {0x3FA07089, 0xBBA814AA};

const Shape kShapes[] = {
    {"derfinv_ha", "dErfInv_HA_Table", "derfinv_ha_rows", 64, Layout::kHa, 4, 212, 14, 0xFFB, 18, false,
     kErfInvD53Row0},
    {"derfinv_la", "dErfInv_LA_Table", "derfinv_la_rows", 64, Layout::kLa, 4, 212, 11, 0xFFB, 18, false,
     kErfInvD50Row0},
    {"derfinv_ep", "dErfInv_EP_Table", "derfinv_ep_rows", 64, Layout::kEp, 16, 848, 3, 0x3FEF, 16, false,
     kErfInvD26Row0},
    {"serfinv_ha", "sErfInv_HA_Table", "serfinv_ha_rows", 32, Layout::kHa, 8, 192, 5, 0x3F7, 20, false,
     kErfInvS24Row0},
    {"serfinv_la", "sErfInv_LA_Table", "serfinv_la_rows", 32, Layout::kLa, 8, 192, 3, 0x3F7, 20, false,
     kErfInvS21Row0},
    {"serfinv_ep", "sErfInv_EP_Table", "serfinv_ep_rows", 32, Layout::kEp, 16, 384, 1, 0x7EF, 19, false,
     kErfInvS11Row0},
    {"dcdfnorminv_ha", "dCdfNormInv_HA_Table", "dcdfnorminv_ha_rows", 64, Layout::kHa, 4, 212, 14, 0xFFB, 18,
     true, kCdfD53Row0},
    {"dcdfnorminv_la", "dCdfNormInv_LA_Table", "dcdfnorminv_la_rows", 64, Layout::kLa, 4, 212, 11, 0xFFB, 18,
     true, kCdfD50Row0},
    {"dcdfnorminv_ep", "dCdfNormInv_EP_Table", "dcdfnorminv_ep_rows", 64, Layout::kEp, 16, 848, 3, 0x3FEF, 16,
     true, kCdfD26Row0},
    {"scdfnorminv_ha", "sCdfNormInv_HA_Table", "scdfnorminv_ha_rows", 32, Layout::kHa, 8, 192, 5, 0x3F7, 20,
     true, kCdfS24Row0},
    {"scdfnorminv_la", "sCdfNormInv_LA_Table", "scdfnorminv_la_rows", 32, Layout::kLa, 8, 192, 3, 0x3F7, 20,
     true, kCdfS21Row0},
    {"scdfnorminv_ep", "sCdfNormInv_EP_Table", "scdfnorminv_ep_rows", 32, Layout::kEp, 16, 384, 1, 0x7EF, 19,
     true, kCdfS11Row0},
};

// The encoding of v rounded to the format (and first to `sig` significant
// bits when sig is below the format's).
uint64_t encode(mpfr_srcptr v, int bits, int sig) {
  Mp r;
  mpfr_set(r, v, MPFR_RNDN);
  if (sig < (bits == 64 ? 53 : 24)) mpfr_prec_round(r, sig, MPFR_RNDN);
  if (bits == 64) return bits_of(mpfr_get_d(r, MPFR_RNDN));
  return bits_of(mpfr_get_flt(r, MPFR_RNDN));
}

void decode(mpfr_ptr out, uint64_t w, int bits) {
  if (bits == 64)
    mpfr_set_d(out, gen::double_of(w), MPFR_RNDN);
  else {
    float f;
    const uint32_t b = uint32_t(w);
    std::memcpy(&f, &b, 4);
    mpfr_set_flt(out, f, MPFR_RNDN);
  }
}

// A value as a (hi, lo) pair: hi rounded to `sig` bits, lo the rounded rest.
void split(std::vector<uint64_t>& hi_lo, mpfr_srcptr v, int bits, int sig) {
  const uint64_t hi = encode(v, bits, sig);
  Mp h, rest;
  decode(h, hi, bits);
  mpfr_sub(rest, v, h, MPFR_RNDN);
  hi_lo = {hi, encode(rest, bits, 99)};
}

// The ErfInv row r of a shape, as encodings in stored order.
std::vector<uint64_t> erfinv_row(const Shape& s, int r) {
  const uint32_t code = s.top - uint32_t(r);
  const int log2n = s.n == 4 ? 2 : s.n == 8 ? 3 : 4;
  const long bias = s.bits == 64 ? 1023 : 127;
  RowPlace p;
  p.e = long(code >> log2n) - bias;
  p.base = double(code & uint32_t(s.n - 1)) / s.n + 1.0 + 0.5 / s.n;
  const double h = 0.5 / s.n;
  std::vector<Mp> c = interpolate(row_f, &p, -h, h, 0.0, s.degree);
  Mp zero;
  mpfr_set_zero(zero, 1);
  std::vector<uint64_t> out;
  if (s.layout == Layout::kEp) {
    for (const Mp& ck : c) out.push_back(encode(ck, s.bits, 99));
    return out;
  }
  row_f(c[0], zero, &p);
  if (s.layout == Layout::kLa) {
    for (const Mp& ck : c) out.push_back(encode(ck, s.bits, 99));
    return out;
  }
  row_df(c[1], zero, &p);
  std::vector<uint64_t> c0, c1;
  split(c0, c[0], s.bits, s.bits == 64 ? 26 : 24);
  split(c1, c[1], s.bits, s.bits == 64 ? 26 : 12);
  out.push_back(c0[1]);
  out.push_back(c1[1]);
  for (int k = 2; k <= s.degree; ++k) out.push_back(encode(c[k], s.bits, 99));
  out.push_back(c0[0]);
  out.push_back(c1[0]);
  return out;
}

// sqrt(2) times an ErfInv row (`sign` -1 for the tail rows, which carry -sqrt(2)).
std::vector<uint64_t> scaled_row(const std::vector<uint64_t>& row, int bits, Layout layout, int hi_sig0,
                                 int hi_sig1, int sign) {
  Mp s2, a, b;
  mpfr_sqrt_ui(s2, 2, MPFR_RNDN);
  if (sign < 0) mpfr_neg(s2, s2, MPFR_RNDN);
  std::vector<uint64_t> out(row.size());
  const size_t n = row.size();
  for (size_t k = 0; k < n; ++k) {
    decode(a, row[k], bits);
    mpfr_mul(a, a, s2, MPFR_RNDN);
    out[k] = encode(a, bits, 99);
  }
  if (layout == Layout::kHa) {
    // (lo, hi) pairs at (0, n-2) and (1, n-1), scaled as sums.
    for (int pair = 0; pair < 2; ++pair) {
      const size_t lo = size_t(pair), hi = n - 2 + size_t(pair);
      decode(a, row[hi], bits);
      decode(b, row[lo], bits);
      mpfr_add(a, a, b, MPFR_RNDN);
      mpfr_mul(a, a, s2, MPFR_RNDN);
      std::vector<uint64_t> hl;
      split(hl, a, bits, pair == 0 ? hi_sig0 : hi_sig1);
      out[hi] = hl[0];
      out[lo] = hl[1];
    }
  }
  return out;
}

void print_rows(const Shape& s) {
  std::printf("// %s: %d rows of %d %s, row r for the interval of y read from the\n", s.table, s.rows,
              s.layout == Layout::kHa ? s.degree + 3 : s.degree + 1, s.bits == 64 ? "doubles" : "floats");
  std::printf("// index word %#X - r; row 0 as published.\n", s.top);
  gen::print_generated_by(stdout, "erfinv_tables", "gen_erfinv_tables %s > src/special/%s.inc", s.command,
                          s.file);
  const Shape* base = &s;
  if (s.cdf)
    for (const Shape& t : kShapes)
      if (!t.cdf && t.bits == s.bits && t.layout == s.layout) base = &t;
  const gen::HexWords style = s.bits == 64 ? gen::kHex64Ull : gen::kHex32U;
  const int log2n = s.n == 4 ? 2 : s.n == 8 ? 3 : 4;
  for (int r = 0; r < s.rows; ++r) {
    std::vector<uint64_t> row;
    if (r == 0) {
      row.assign(s.quoted, s.quoted + (s.layout == Layout::kHa ? s.degree + 3 : s.degree + 1));
    } else {
      row = erfinv_row(*base, r);
      if (s.cdf) row = scaled_row(row, s.bits, s.layout, s.bits == 64 ? 26 : 24, s.bits == 64 ? 26 : 12, 1);
    }
    const uint32_t code = s.top - uint32_t(r);
    const long e = long(code >> log2n) - (s.bits == 64 ? 1023 : 127);
    std::printf("{");
    for (size_t k = 0; k < row.size(); ++k)
      std::printf("%s0x%0*llX%s", k ? ", " : "", style.digits, (unsigned long long)row[k], style.suffix);
    std::printf("},  // r = %d: y in 2^%ld * [%g, %g)\n", r, e, 1.0 + double(code & uint32_t(s.n - 1)) / s.n,
                1.0 + double((code & uint32_t(s.n - 1)) + 1) / s.n);
  }
}

// ---------------------------------------------------------------------------
// Tails.

void print_rt() {
  std::printf(
      "// _RT: for i = 0..255, r = round(2048/(1 + (i + 0.5)/256))/2048; Lh = -ln r\n"
      "// rounded to double with its low 32 bits cut off; Ll = RN(-ln r - Lh).\n"
      "// Word 0 packs hi(r) << 32 | hi(Lh); word 1 is Ll.\n");
  gen::print_generated_by(stdout, "erfinv_tables", "gen_erfinv_tables rt > src/special/erfcinv_tail_rt.inc");
  Mp r, l, h;
  for (int i = 0; i < 256; ++i) {
    const double q = 2048.0 / (1.0 + (i + 0.5) / 256.0);
    const double rr = double(long(q + 0.5)) / 2048.0;  // q is never a half-integer
    mpfr_set_d(r, rr, MPFR_RNDN);
    mpfr_log(l, r, MPFR_RNDN);
    mpfr_neg(l, l, MPFR_RNDN);
    const uint64_t lh = bits_of(mpfr_get_d(l, MPFR_RNDN)) & 0xFFFFFFFF00000000ull;
    mpfr_set_d(h, gen::double_of(lh), MPFR_RNDN);
    mpfr_sub(l, l, h, MPFR_RNDN);
    const uint64_t w0 = (bits_of(rr) & 0xFFFFFFFF00000000ull) | (lh >> 32);
    gen::print_hex_row(stdout, "", gen::kHex64Ull, {w0, bits_of(mpfr_get_d(l, MPFR_RNDN))},
                       "i = %d: r = %.0f/2048", i, rr * 2048);
  }
}

// A(s) = -s erfcinv(exp(-1/s^2)) at s = s0 + t.
void tail_a(mpfr_ptr out, mpfr_srcptr t, const void* ctx) {
  const double s0 = *static_cast<const double*>(ctx);
  Mp s, q, z;
  mpfr_add_d(s, t, s0, MPFR_RNDN);
  mpfr_sqr(q, s, MPFR_RNDN);
  mpfr_ui_div(q, 1, q, MPFR_RNDN);
  mpfr_neg(q, q, MPFR_RNDN);
  mpfr_exp(q, q, MPFR_RNDN);
  luxmp::erfcinv(z, q);
  mpfr_mul(out, z, s, MPFR_RNDN);
  mpfr_neg(out, out, MPFR_RNDN);
}

// A'(s) = -E + sqrt(pi) exp(E^2 - 1/s^2)/s^2, E = erfcinv(exp(-1/s^2)).
void tail_da(mpfr_ptr out, mpfr_srcptr t, const void* ctx) {
  const double s0 = *static_cast<const double*>(ctx);
  Mp s, w, q, z, c;
  mpfr_add_d(s, t, s0, MPFR_RNDN);
  mpfr_sqr(w, s, MPFR_RNDN);
  mpfr_ui_div(w, 1, w, MPFR_RNDN);  // W = 1/s^2
  mpfr_neg(q, w, MPFR_RNDN);
  mpfr_exp(q, q, MPFR_RNDN);
  luxmp::erfcinv(z, q);
  mpfr_sqr(c, z, MPFR_RNDN);
  mpfr_sub(c, c, w, MPFR_RNDN);
  mpfr_exp(c, c, MPFR_RNDN);
  mpfr_mul(c, c, w, MPFR_RNDN);
  mpfr_const_pi(q, MPFR_RNDN);
  mpfr_sqrt(q, q, MPFR_RNDN);
  mpfr_mul(c, c, q, MPFR_RNDN);
  mpfr_sub(out, c, z, MPFR_RNDN);
}

const uint64_t kErfcInvTailRow4[] = {
    0x3ED326E2E7F552DF, 0x3E7EF274BD3342BE, 0x3FF462A6C2CDDE7E, 0xC0150E794E602838,
    0x40455E0A577E70C4, 0xC0811D170FF3CC24, 0x40C119438BCF4E70, 0xC103869966673EEE,
    0x41485CD290451DC0, 0xC1900AE43EA42FB3, 0x41D4FFB77C4099B5, 0xC21789FE4ACB7135,
    0x424F75C54FE4EFE3, 0xBFEFEFE000000000, 0x3FBC56C000000000, 0};
const uint64_t kCdfNormInvTailRow4[] = {
    0xBEEE9D820FFA0958, 0xBE9B29CC66FB9A93, 0xBFFCD449A03CE2A5, 0x401DC747FEA595BE,
    0xC04E37CE294057B1, 0x408833CC09740616, 0xC0C82E62CAB73095, 0x410B9D16390E2981,
    0xC1513A1978594375, 0x4196B00592E71781, 0xC1DDB269596C724B, 0x4220A5054F9EDA8B,
    0xC2563EE03BBF9336, 0x3FF6954000000000, 0xBFC409E000000000, 0};

std::vector<uint64_t> tail_row(int ib) {
  const double s0 = ib / 128.0;
  std::vector<Mp> c = interpolate(tail_a, &s0, 0.0, 1.0 / 128, 0.0, 12);
  Mp zero;
  mpfr_set_zero(zero, 1);
  tail_a(c[0], zero, &s0);
  tail_da(c[1], zero, &s0);
  std::vector<uint64_t> c0, c1;
  split(c0, c[0], 64, 17);
  split(c1, c[1], 64, 17);
  std::vector<uint64_t> row = {c0[1], c1[1]};
  for (int k = 2; k <= 12; ++k) row.push_back(encode(c[k], 64, 99));
  row.push_back(c0[0]);
  row.push_back(c1[0]);
  row.push_back(0);
  return row;
}

void print_tail(bool cdf) {
  std::printf(
      "// _P3N128D12P50DS: for ib = 4..31 (row ib - 4), A(s) = %s*erfcinv(exp(-1/s^2))\n"
      "// in t = s - ib/128 on [0, 1/128]: T0 = c0lo, T1 = c1lo, T2..T12 = c2..c12,\n"
      "// T13 = c0hi, T14 = c1hi (17 significant bits), T15 = 0.  Row ib = 4 as published.\n",
      cdf ? "sqrt(2)*s" : "-s");
  gen::print_generated_by(stdout, "erfinv_tables", "gen_erfinv_tables %s > src/special/%s.inc",
                          cdf ? "cdfnorminv_p" : "erfcinv_p", cdf ? "cdfnorminv_tail_p" : "erfcinv_tail_p");
  for (int ib = 4; ib <= 31; ++ib) {
    std::vector<uint64_t> row;
    if (ib == 4) {
      const uint64_t* q = cdf ? kCdfNormInvTailRow4 : kErfcInvTailRow4;
      row.assign(q, q + 16);
    } else {
      row = tail_row(ib);
      if (cdf) {
        row.pop_back();
        // Layout as ha: lo pairs at 0, 1; hi at 13, 14 of the 15 words.
        row = scaled_row(row, 64, Layout::kHa, 17, 17, -1);
        row.push_back(0);
      }
    }
    std::printf("{");
    for (size_t k = 0; k < row.size(); ++k)
      std::printf("%s0x%016llX", k ? ", " : "", (unsigned long long)row[k]);
    std::printf("},  // ib = %d\n", ib);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2) {
    for (const Shape& s : kShapes)
      if (std::strcmp(argv[1], s.command) == 0) {
        print_rows(s);
        return 0;
      }
  }
  return gen::run_command(
      argc, argv,
      "gen_erfinv_tables derfinv_ha|derfinv_la|derfinv_ep|serfinv_ha|serfinv_la|serfinv_ep|"
      "dcdfnorminv_*|scdfnorminv_*|rt|erfcinv_p|cdfnorminv_p",
      {{"rt", print_rt}, {"erfcinv_p", [] { print_tail(false); }}, {"cdfnorminv_p", [] {
                                                                      print_tail(true);
                                                                    }}});
}
