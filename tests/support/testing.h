// Helpers shared by the family tests: typed calls from a clean MXCSR, and the
// accuracy assertion that prints the measured maximum with its worst input.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "common/census.h"
#include "common/fpenv.h"
#include "common/invoke.h"
#include "common/numbers.h"
#include "common/oracle.h"
#include "support/test_options.h"

namespace luxtest {

template <class T>
struct Result {
  std::vector<T> out;
  int status = 0;
  uint32_t flags = 0;
};

// One call of a one-argument export (shape U) from MXCSR `mxcsr` with clear
// flags; returns the results, the status and the flags raised.
template <class T>
Result<T> call_unary(const char* name, const std::vector<T>& in, uint32_t mxcsr = luxtk::kDefaultMxcsr) {
  const luxtk::CensusEntry* e = luxtk::find_export(name);
  void* fn = luxtk::export_address(name);
  Result<T> r;
  if (!e || !fn) {
    ADD_FAILURE() << name << " is not implemented";
    return r;
  }
  r.out.assign(in.size(), T{});
  const luxtk::Outcome o = luxtk::run_clean(
      [&] {
        return luxtk::invoke(*e, fn, in.data(), nullptr, nullptr, r.out.data(), nullptr, int(in.size()));
      },
      mxcsr);
  r.status = o.status;
  r.flags = o.flags;
  return r;
}

// Bit patterns, for exact comparisons that see NaN payloads and zero signs.
inline uint64_t bits(double d) { return luxtk::double_bits(d); }
inline uint32_t bits(float f) { return luxtk::float_bits(f); }
inline double f64(uint64_t b) { return luxtk::bits_to_double(b); }
inline float f32(uint32_t b) { return luxtk::bits_to_float(b); }

// Sweeps every implemented export of `family` of the given component width
// and checks it against its tier bound, printing the maxima.
void expect_family_accuracy(const char* family, int component_bits);

}  // namespace luxtest
