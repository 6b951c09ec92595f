// GNU MPFR as the oracle: exact values of real functions, and the error of a
// result in ulps of its format, measured against the unrounded value.
#pragma once

#include <mpfr.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "census.h"

namespace luxtk {

using MpfrUnary = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
using MpfrBinary = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

inline constexpr mpfr_prec_t kOraclePrecision = 256;

// Error of `got` (a binary32 or binary64 value, `bits` 32 or 64) against the
// exact value, in ulps of the format at the exact value (subnormal ulps below
// the normal range).  NaN against NaN and an infinity against the same
// infinity count 0; a NaN or an infinity against anything else counts
// infinity, as does a finite result where the rounded exact value overflows
// to infinity... except the largest finite, which gets its real distance.
double ulp_error(double got, mpfr_srcptr exact, int bits);

// The correctly rounded value of `exact` in the format (with gradual underflow).
double round_to_format(mpfr_srcptr exact, int bits);

// Deterministic generator (xoshiro256**), seeded by splitmix64.
class Rng {
 public:
  explicit Rng(uint64_t seed);
  uint64_t next();
  double uniform01();  // [0, 1)
  double uniform(double lo, double hi);
  // |x| log-uniform in [lo, hi] (0 < lo < hi), sign + or both.
  double log_uniform(double lo, double hi, bool both_signs);

 private:
  uint64_t s_[4];
};

// One region of a sweep: a name for the report and the inputs it draws.
struct Region {
  std::string name;
  // Appends n inputs (b ignored for one-argument functions) of `bits` width.
  std::function<void(Rng&, int bits, long n, std::vector<double>& a, std::vector<double>& b)> draw;
};

// Ready-made regions.
Region log_uniform_region(std::string name, double lo, double hi, bool both_signs);
Region uniform_region(std::string name, double lo, double hi);
// Each split point and its neighbours up to `k` representable steps away
// (in the format of the export), both signs if asked.  n is ignored.
Region splits_region(std::string name, std::vector<double> points, int k);
// The special values of the format: +-0, +-Inf, quiet NaN, the smallest
// subnormal and normal, the largest finite, +-1, each with both signs.
Region specials_region(std::string name = "special values");
// Shape X: the by-value scalar is fixed per run; for each of `scalars` the
// region draws n / scalars.size() first arguments from `a`.
Region fixed_scalar_region(std::string name, Region a, std::vector<double> scalars);
// Two-argument region built from one region per argument.
Region pair_region(std::string name, Region a, Region b);

// What the accuracy sweep of one family at one component width needs
// (tools/accuracy/<family><bits>.cpp registers one of these).
struct AccuracyFamily {
  std::string family;
  int bits = 64;            // component width: 32 or 64
  MpfrUnary f1 = nullptr;   // one-argument functions
  MpfrBinary f2 = nullptr;  // two-argument functions
  std::vector<Region> regions;
  // The bound of an export is its tier's unless this says otherwise.
  std::function<double(const CensusEntry&)> bound;
  // Shape D (two result arrays): the function of the second array, f1 being
  // that of the first; a lane's error is the larger of the two.
  MpfrUnary f1_second = nullptr;
};

void register_accuracy_family(const AccuracyFamily* fam);
const AccuracyFamily* find_accuracy_family(std::string_view family, int bits);
std::vector<const AccuracyFamily*> accuracy_families();

struct Worst {
  double ulps = 0;
  double a = 0, b = 0;  // the input (b for two-argument functions)
  double got = 0;
  long count = 0;
  void merge(const Worst& w);
};

struct SweepResult {
  std::string export_name;
  double bound = 0;
  Worst overall;
  std::vector<std::pair<std::string, Worst>> regions;
};

struct SweepOptions {
  uint64_t seed = 0x6c75787675ull;
  long points = 20000;  // per random region
};

// Runs the export (from a clean MXCSR) over every region's inputs and measures
// each result against MPFR.  Real shapes U, B and X (the scalar of X is the
// region's second input, one call per run of equal scalars), and D with both
// result arrays measured.
SweepResult sweep_export(const CensusEntry& e, const AccuracyFamily& fam, const SweepOptions& opt);

// "max error 0.512 ulp at x = 0x1.62e42fefa39efp+9 (got 0x...)".
std::string describe(const Worst& w, bool two_args);

// Registers a family at static-initialisation time.
struct AccuracyRegistrar {
  explicit AccuracyRegistrar(const AccuracyFamily* fam) { register_accuracy_family(fam); }
};

}  // namespace luxtk
