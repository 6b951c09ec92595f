// The accuracy check of the inverse error families.  Their oracle iterates
// (Newton's method on MPFR's erf and erfc), so the native build sweeps a
// two-hundredth of the usual points per region, and the emulated one only a
// few points of each random region and the edges.
#pragma once

#include <algorithm>
#include <cstring>

#include "support/testing.h"

namespace luxtest {

inline void expect_inverse_accuracy(const char* family, int bits) {
  const luxtk::SweepOptions saved = g_sweep;
  if (saved.points >= 10000) {
    g_sweep.points = saved.points / 200;
    expect_family_accuracy(family, bits);
    g_sweep = saved;
    return;
  }
  const luxtk::AccuracyFamily* fam = luxtk::find_accuracy_family(family, bits);
  ASSERT_NE(fam, nullptr);
  luxtk::AccuracyFamily small = *fam;
  std::erase_if(small.regions, [](const luxtk::Region& r) {
    return r.name == "row boundaries" || r.name == "special values";
  });
  luxtk::SweepOptions opt = saved;
  opt.points = 4;
  for (const luxtk::CensusEntry* e : luxtk::implemented()) {
    if (std::strcmp(e->family, family) != 0 || e->component_bits() != bits) continue;
    const luxtk::SweepResult r = luxtk::sweep_export(*e, small, opt);
    std::printf("%-22s bound %g: %s\n", e->name, r.bound, luxtk::describe(r.overall, false).c_str());
    EXPECT_LE(r.overall.ulps, r.bound) << e->name << ": " << luxtk::describe(r.overall, false);
  }
}

}  // namespace luxtest
