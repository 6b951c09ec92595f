#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace luxcli {

// [FAMILY] [--seed=N] [--points=N] [--out=FILE]
struct Options {
  bool ok = true;
  std::string family, out;
  uint64_t seed = 0;
  long points = 0;
};

inline Options parse_options(int argc, char** argv) {
  Options o;
  for (int i = 0; i < argc; ++i) {
    const char* a = argv[i];
    if (std::strncmp(a, "--seed=", 7) == 0) {
      o.seed = std::strtoull(a + 7, nullptr, 0);
    } else if (std::strncmp(a, "--points=", 9) == 0) {
      o.points = std::strtol(a + 9, nullptr, 0);
    } else if (std::strncmp(a, "--out=", 6) == 0) {
      o.out = a + 6;
    } else if (a[0] != '-' && o.family.empty()) {
      o.family = a;
    } else {
      std::fprintf(stderr, "luxvm: unknown option '%s'\n", a);
      o.ok = false;
    }
  }
  return o;
}

}  // namespace luxcli
