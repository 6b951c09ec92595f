// The rules of the inverse hyperbolic functions' tables, in MPFR:
// tools/gen/invhyp_tables.cpp prints them as the .inc files beside the units
// in src/hyperbolic, and tests/invhyp_tables_test.cpp compares those files
// with these rules row by row.  Every word is a binary64 encoding.
#pragma once

#include <gmp.h>
#include <mpfr.h>

#include <cstdint>
#include <string>
#include <vector>

#include "gen/gen_common.h"

namespace invhypgen {

using Row = std::vector<uint64_t>;

struct TableInfo {
  const char* name;     // argument of gen_invhyp_tables
  const char* file;     // .inc beside the units, relative to the source root
  const char* columns;  // the words of a row
  int rows;
};

inline constexpr TableInfo kTables[] = {
    {"ln256", "src/hyperbolic/invhyp_ln256_table.inc", "logHi, logLo, rcp", 256},
    {"asinh_la", "src/hyperbolic/invhyp_asinh_la_table.inc", "rcp, logHi, logLo", 65},
    {"ln_cubic", "src/hyperbolic/invhyp_ln_cubic_table.inc", "k0, k1, k2, k3", 256},
};

// ln 2 in two words as the binary64 top-tier logarithm carries it: LN2_HI is
// ln 2 truncated to a multiple of 2^-42 (e*LN2_HI exact for every exponent),
// LN2_LO the rounded rest.
inline constexpr uint64_t kLn2Hi = 0x3FE62E42FEFA3800ull;
inline constexpr uint64_t kLn2Lo = 0x3D2EF35793C76730ull;

class Big {
 public:
  Big() { mpfr_init2(v_, 256); }
  ~Big() { mpfr_clear(v_); }
  Big(const Big&) = delete;
  Big& operator=(const Big&) = delete;
  operator mpfr_ptr() { return v_; }

 private:
  mpfr_t v_;
};

inline uint64_t rn64(mpfr_ptr x) { return mpfr_zero_p(x) ? 0 : gen::bits_of(mpfr_get_d(x, MPFR_RNDN)); }

// x to a multiple of 2^-k, toward zero, in place.
inline void trunc_to_grid(mpfr_ptr x, int k) {
  mpfr_mul_2si(x, x, k, MPFR_RNDN);
  mpfr_trunc(x, x);
  mpfr_mul_2si(x, x, -k, MPFR_RNDN);
}

// c = 1 + i/256: logHi = ln c truncated to binary64, logLo = RN(ln c -
// logHi), rcp = RN(1/c).
// The pair is ln c to about 2^-106 relative.  The extended-precision tail of
// the three binary64 top-tier units and the far form of Acosh at A50/A26
// each carry a copy of it in their own table.
inline Row ln256(int i) {
  Big c, l, hi, lo, rcp;
  mpfr_set_ui(c, 256 + i, MPFR_RNDN);
  mpfr_div_2ui(c, c, 8, MPFR_RNDN);
  mpfr_log(l, c, MPFR_RNDN);
  mpfr_set_d(hi, mpfr_get_d(l, MPFR_RNDZ), MPFR_RNDN);
  mpfr_sub(lo, l, hi, MPFR_RNDN);
  mpfr_ui_div(rcp, 1, c, MPFR_RNDN);
  return {rn64(hi), rn64(lo), rn64(rcp)};
}

// c = 1 + i/64: rcp = the multiple of 2^-12 nearest 1/c (12 significant bits,
// so that a 31-bit head of m times rcp is exact); v = -ln(rcp); logHi = v
// truncated to a multiple of 2^-42; logLo = RN(v - logHi).  Row 64 (rcp =
// 1/2) is LN2_HI, LN2_LO, so that e*ln 2 and the row cancel exactly for w
// just below 2.
inline Row asinh_la(int i) {
  Big rcp, v, hi, lo;
  mpfr_set_ui(rcp, 64, MPFR_RNDN);
  mpfr_div_ui(rcp, rcp, 64 + i, MPFR_RNDN);
  mpfr_mul_2si(rcp, rcp, 12, MPFR_RNDN);
  mpfr_round(rcp, rcp);  // no ties: 2^18/(64+i) is never a half-integer
  mpfr_mul_2si(rcp, rcp, -12, MPFR_RNDN);
  mpfr_log(v, rcp, MPFR_RNDN);
  mpfr_neg(v, v, MPFR_RNDN);
  mpfr_set(hi, v, MPFR_RNDN);
  trunc_to_grid(hi, 42);
  mpfr_sub(lo, v, hi, MPFR_RNDN);
  return {rn64(rcp), rn64(hi), rn64(lo)};
}

// Row i covers m in [1 + i/256, 1 + (i+1)/256): the Taylor cubic of ln at a
// point c, expanded in powers of m and each coefficient rounded to binary64:
//   ln c + (m-c)/c - (m-c)^2/(2c^2) + (m-c)^3/(3c^3)
//   = (ln c - 11/6) + (3/c) m - (3/(2c^2)) m^2 + (1/(3c^3)) m^3.
// c is the middle of the interval, except in the first row (c = 1, where
// ln m is small and the cubic is exact to third order there) and the last
// (c = 2, so that the cubic meets ln 2 at the end of the range).  The
// truncation error on a row of width 2^-8 is below 2^-40.
inline Row ln_cubic(int i) {
  Big c, l, k0, k1, k2, k3, t;
  if (i == 0)
    mpfr_set_ui(c, 1, MPFR_RNDN);
  else if (i == 255)
    mpfr_set_ui(c, 2, MPFR_RNDN);
  else {
    mpfr_set_ui(c, 2 * (256 + i) + 1, MPFR_RNDN);
    mpfr_div_2ui(c, c, 9, MPFR_RNDN);
  }
  mpfr_log(l, c, MPFR_RNDN);
  mpfr_set_ui(t, 11, MPFR_RNDN);
  mpfr_div_ui(t, t, 6, MPFR_RNDN);
  mpfr_sub(k0, l, t, MPFR_RNDN);
  mpfr_ui_div(k1, 3, c, MPFR_RNDN);
  mpfr_sqr(t, c, MPFR_RNDN);
  mpfr_ui_div(k2, 3, t, MPFR_RNDN);
  mpfr_div_2ui(k2, k2, 1, MPFR_RNDN);
  mpfr_neg(k2, k2, MPFR_RNDN);
  mpfr_mul(t, t, c, MPFR_RNDN);
  mpfr_mul_ui(t, t, 3, MPFR_RNDN);
  mpfr_ui_div(k3, 1, t, MPFR_RNDN);
  return {rn64(k0), rn64(k1), rn64(k2), rn64(k3)};
}

inline Row row_of(const std::string& table, int i) {
  if (table == "ln256") return ln256(i);
  if (table == "asinh_la") return asinh_la(i);
  if (table == "ln_cubic") return ln_cubic(i);
  return {};
}

inline const TableInfo* find_table(const std::string& name) {
  for (const TableInfo& t : kTables)
    if (name == t.name) return &t;
  return nullptr;
}

inline std::vector<Row> table_of(const TableInfo& t) {
  std::vector<Row> rows;
  for (int i = 0; i < t.rows; ++i) rows.push_back(row_of(t.name, i));
  return rows;
}

}  // namespace invhypgen
