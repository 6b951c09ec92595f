#include "support/testing.h"

#include <cstdio>
#include <cstring>

namespace luxtest {

void expect_family_accuracy(const char* family, int component_bits) {
  const luxtk::AccuracyFamily* fam = luxtk::find_accuracy_family(family, component_bits);
  ASSERT_NE(fam, nullptr) << "no accuracy description for " << family << " at " << component_bits << " bits";
  int swept = 0;
  for (const luxtk::CensusEntry* e : luxtk::implemented()) {
    if (std::strcmp(e->family, family) != 0 || e->component_bits() != component_bits) continue;
    if (e->complex_src() || e->complex_dst()) continue;
    const luxtk::SweepResult r = luxtk::sweep_export(*e, *fam, g_sweep);
    const bool two = e->inputs() == 2;
    std::printf("%-22s bound %g: %s\n", e->name, r.bound, luxtk::describe(r.overall, two).c_str());
    for (const auto& [name, w] : r.regions)
      std::printf("    %-28s %s\n", name.c_str(), luxtk::describe(w, two).c_str());
    EXPECT_LE(r.overall.ulps, r.bound) << e->name << ": " << luxtk::describe(r.overall, two);
    ++swept;
  }
  EXPECT_GT(swept, 0) << "no implemented export of " << family;
}

}  // namespace luxtest
