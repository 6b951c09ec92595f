// Accuracy of the extended-precision core (internal routines, no exports)
// against GNU MPFR: the exact value rounded to a 64-bit significand with the
// 80-bit format's exponent range, the error in units of that significand.
#pragma once

#include <mpfr.h>

#include <functional>
#include <string>
#include <vector>

#include "common/oracle.h"

namespace luxcore {

using ld = long double;

// Error of `got` against the exact value in ulps of the 80-bit format at the
// exact value (denormal ulps below 2^-16382).  NaN against NaN and equal
// infinities count 0; any other mismatch of class counts infinity.
double ulp_error80(ld got, mpfr_srcptr exact);

// The exact value rounded to the 80-bit format (gradual underflow, overflow).
ld round_to_80(mpfr_srcptr exact);

// Random extended values: |x| log-uniform over [2^lo_exp, 2^hi_exp) with a
// random 64-bit significand, or uniform in [lo, hi).
ld log_uniform80(luxtk::Rng& rng, int lo_exp, int hi_exp, bool both_signs);
ld uniform80(luxtk::Rng& rng, ld lo, ld hi);

// The inputs of one region; a two-argument routine's points stand as pairs
// (first argument, second argument) one after the other.
struct Region {
  std::string name;
  std::function<void(luxtk::Rng&, long n, std::vector<ld>& out)> draw;
};

struct Routine {
  const char* name;
  ld (*fn)(ld);
  luxtk::MpfrUnary exact;
  std::vector<Region> regions;
  double bound;     // ulps of the 64-bit significand
  const char* use;  // what stands on it, for the report
  // Two-argument routines (atan2) instead of fn and exact.
  ld (*fn2)(ld, ld) = nullptr;
  luxtk::MpfrBinary exact2 = nullptr;
};

// The routines of the core and their sweep regions.
const std::vector<Routine>& routines();

struct Worst {
  double ulps = 0;
  ld x = 0, y = 0, got = 0;  // y: the second argument of a two-argument routine
  long count = 0;
};
struct Result {
  Worst overall;
  std::vector<std::pair<std::string, Worst>> regions;
};

// Runs the routine under x87 guard 64 over every region (n points each).
Result sweep(const Routine& r, uint64_t seed, long n);

// "0x1.8p+3" style text of an extended value (%La).
std::string hex80(ld v);

}  // namespace luxcore
