// The rules of the logarithm tables (natural and decimal, both widths), in
// MPFR: tools/gen/log_tables.cpp prints them as the .inc files beside the
// units, and the tests compare those files with these rules row by row.
//
// Every row is three words in the order the unit reads them; 32-bit words
// are stored in the low half of a uint64_t.
#pragma once

#include <gmp.h>
#include <mpfr.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "gen/gen_common.h"

namespace loggen {

using Row = std::array<uint64_t, 3>;

struct TableInfo {
  const char* name;     // argument of gen_log_tables
  const char* file;     // .inc beside the units, relative to the source root
  const char* columns;  // the three words of a row
  int rows;
  int word_bits;  // 64 or 32
};

inline constexpr TableInfo kTables[] = {
    {"dln_ha", "src/exp_log/ln_d53_table.inc", "rcp, logHi, logLo", 513, 64},
    {"dln_la", "src/exp_log/ln_d50_table.inc", "logHi, logLo, rcp", 257, 64},
    {"sln_ha", "src/exp_log/ln_s24_table.inc", "logHi, logLo, rcp", 65, 32},
    {"sln_la", "src/exp_log/ln_s21_table.inc", "logHi, logLo, rcp", 65, 32},
    {"dlog10_ha", "src/exp_log/log10_d53_table.inc", "rcp, logHi, logLo", 513, 64},
    {"dlog10_la", "src/exp_log/log10_d50_table.inc", "logHi, logLo, rcp", 257, 64},
    {"slog10_ha", "src/exp_log/log10_s24_table.inc", "rcp, logHi, logLo", 129, 32},
    {"slog10_la", "src/exp_log/log10_s21_table.inc", "logHi, logLo, rcp", 65, 32},
};

// A scratch number of ample precision.
class Big {
 public:
  Big() { mpfr_init2(v_, 256); }
  explicit Big(double d) : Big() { mpfr_set_d(v_, d, MPFR_RNDN); }
  ~Big() { mpfr_clear(v_); }
  Big(const Big&) = delete;
  Big& operator=(const Big&) = delete;
  mpfr_ptr get() { return v_; }
  operator mpfr_ptr() { return v_; }

 private:
  mpfr_t v_;
};

using gen::bits_of;
using gen::double_of;

// Nearest binary64 / binary32 (all values here are normal or zero).
// A zero is stored as +0 (-ln 1 comes out as -0 in MPFR).
inline uint64_t rn64(mpfr_ptr x) { return mpfr_zero_p(x) ? 0 : bits_of(mpfr_get_d(x, MPFR_RNDN)); }
inline uint32_t rn32(mpfr_ptr x) { return mpfr_zero_p(x) ? 0 : bits_of(mpfr_get_flt(x, MPFR_RNDN)); }

// x rounded (to nearest, or toward zero) to a multiple of 2^-k, in place.
inline void to_grid(mpfr_ptr x, int k, bool nearest) {
  mpfr_mul_2si(x, x, k, MPFR_RNDN);
  if (nearest)
    mpfr_round(x, x);  // no ties occur in these tables
  else
    mpfr_trunc(x, x);
  mpfr_mul_2si(x, x, -k, MPFR_RNDN);
}

// x truncated toward zero to at most `sig` significant bits and to a
// multiple of 2^-floor_exp (whichever is coarser), in place.
inline void cut(mpfr_ptr x, int sig, int floor_exp) {
  if (mpfr_zero_p(x)) return;
  const long e = mpfr_get_exp(x);  // x = m * 2^e, 0.5 <= |m| < 1
  const long lsb = e - sig;        // weight of the last kept bit
  to_grid(x, int(lsb > -floor_exp ? -lsb : floor_exp), false);
}

// Natural or decimal logarithm of x.
inline void logf(mpfr_ptr y, mpfr_ptr x, bool decimal) {
  if (decimal)
    mpfr_log10(y, x, MPFR_RNDN);
  else
    mpfr_log(y, x, MPFR_RNDN);
}

// log(2) as the kind's function.
inline void log_two(mpfr_ptr y, bool decimal) {
  Big two(2.0);
  logf(y, two, decimal);
}

// luxsLn_64f_A53: rcp = the multiple of 2^-23 nearest 512/(512+i);
// v = -ln(rcp), less ln 2 from row 256; logHi = v cut to 25 significant
// bits; logLo = RN(v - logHi).
inline Row dln_ha(int i) {
  Big rcp, v, hi, t;
  mpfr_set_ui(rcp, 512, MPFR_RNDN);
  mpfr_div_ui(rcp, rcp, 512 + i, MPFR_RNDN);
  to_grid(rcp, 23, true);
  mpfr_log(v, rcp, MPFR_RNDN);
  mpfr_neg(v, v, MPFR_RNDN);
  if (i >= 256) {
    log_two(t, false);
    mpfr_sub(v, v, t, MPFR_RNDN);
  }
  mpfr_set(hi, v, MPFR_RNDN);
  cut(hi, 25, 1100);
  mpfr_sub(t, v, hi, MPFR_RNDN);
  return {rn64(rcp), rn64(hi), rn64(t)};
}

// The rule of the lower tiers' rows, c = 1 + i/2^b: logHi = the multiple of
// 2^-g nearest log c; logLo = RN(log c - logHi); rcp = RN(1/c), each word
// rounded to the tier's format by `rn`.
template <class Rn>
inline Row la_row(int i, int b, int g, bool decimal, Rn rn) {
  Big c, l, hi, lo, rcp;
  mpfr_set_ui(c, (1u << b) + i, MPFR_RNDN);
  mpfr_div_2ui(c, c, b, MPFR_RNDN);
  logf(l, c, decimal);
  mpfr_set(hi, l, MPFR_RNDN);
  to_grid(hi, g, true);
  mpfr_sub(lo, l, hi, MPFR_RNDN);
  mpfr_ui_div(rcp, 1, c, MPFR_RNDN);
  return {rn(hi), rn(lo), rn(rcp)};
}

// luxsLn/Log10_64f_A50 and A26: c = 1 + i/256, logHi on a grid of 2^-39.
inline Row dla(int i, bool decimal) { return la_row(i, 8, 39, decimal, rn64); }

// luxsLn_32f_A24: rcp = the multiple of 2^-8 nearest 64/(64+i); logHi =
// -ln(rcp) truncated to a multiple of 2^-14; logLo = RN(-ln(rcp) - logHi).
inline Row sln_ha(int i) {
  Big rcp, v, hi, lo;
  mpfr_set_ui(rcp, 64, MPFR_RNDN);
  mpfr_div_ui(rcp, rcp, 64 + i, MPFR_RNDN);
  to_grid(rcp, 8, true);
  mpfr_log(v, rcp, MPFR_RNDN);
  mpfr_neg(v, v, MPFR_RNDN);
  mpfr_set(hi, v, MPFR_RNDN);
  to_grid(hi, 14, false);
  mpfr_sub(lo, v, hi, MPFR_RNDN);
  return {rn32(hi), rn32(lo), rn32(rcp)};
}

// luxsLn/Log10_32f_A21: c = 1 + i/64, logHi on a grid of 2^-16.
inline Row sla(int i, bool decimal) { return la_row(i, 6, 16, decimal, rn32); }

// K = 0.43359375 = 111/256, the short stand-in for log10 e that the two top
// decimal tiers fold into their reciprocals.
inline constexpr double kK = 0.43359375;
// log10 2 in two words as luxsLog10_64f_A53 carries it: L10_HI is log10 2
// truncated to a multiple of 2^-43, L10_LO the rounded rest.
inline constexpr uint64_t kL10HiD53 = 0x3FD34413509F7800ull;

// luxsLog10_64f_A53: q = 512/(512+i) truncated to a multiple of 2^-13;
// rcp = K*q (exact); v = -log10(q); logHi = v cut to 36 significant bits,
// never finer than 2^-44; logLo = RN(v - logHi).  Row 512 (q = 1/2) holds
// the kernel's own L10_HI and L10_LO, so that it cancels e*log10 2 exactly.
inline Row dlog10_ha(int i) {
  Big q, v, hi, lo;
  mpfr_set_ui(q, 512, MPFR_RNDN);
  mpfr_div_ui(q, q, 512 + i, MPFR_RNDN);
  to_grid(q, 13, false);
  const double rcp = kK * mpfr_get_d(q, MPFR_RNDN);  // exact: 7 bits times 14
  mpfr_log10(v, q, MPFR_RNDN);
  mpfr_neg(v, v, MPFR_RNDN);
  mpfr_set(hi, v, MPFR_RNDN);
  if (i == 512)
    mpfr_set_d(hi, double_of(kL10HiD53), MPFR_RNDN);
  else
    cut(hi, 36, 44);
  mpfr_sub(lo, v, hi, MPFR_RNDN);
  return {bits_of(rcp), rn64(hi), rn64(lo)};
}

// luxsLog10_32f_A24: rcp = K*128/(128+i) truncated to 8 significant bits;
// v = log10(K/rcp), less log10 2 from row 64; logHi = v cut to 9 significant
// bits, never finer than 2^-18; logLo = RN(v - logHi).
inline Row slog10_ha(int i) {
  Big rcp, v, hi, lo, t;
  mpfr_set_d(rcp, kK * 128, MPFR_RNDN);
  mpfr_div_ui(rcp, rcp, 128 + i, MPFR_RNDN);
  mpfr_prec_round(rcp, 8, MPFR_RNDZ);
  mpfr_prec_round(rcp, 256, MPFR_RNDN);
  mpfr_set_d(v, kK, MPFR_RNDN);
  mpfr_div(v, v, rcp, MPFR_RNDN);
  mpfr_log10(v, v, MPFR_RNDN);
  if (i >= 64) {
    log_two(t, true);
    mpfr_sub(v, v, t, MPFR_RNDN);
  }
  mpfr_set(hi, v, MPFR_RNDN);
  cut(hi, 9, 18);
  mpfr_sub(lo, v, hi, MPFR_RNDN);
  return {rn32(rcp), rn32(hi), rn32(lo)};
}

inline Row row_of(const std::string& table, int i) {
  if (table == "dln_ha") return dln_ha(i);
  if (table == "dln_la") return dla(i, false);
  if (table == "sln_ha") return sln_ha(i);
  if (table == "sln_la") return sla(i, false);
  if (table == "dlog10_ha") return dlog10_ha(i);
  if (table == "dlog10_la") return dla(i, true);
  if (table == "slog10_ha") return slog10_ha(i);
  if (table == "slog10_la") return sla(i, true);
  return {0, 0, 0};
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

}  // namespace loggen
