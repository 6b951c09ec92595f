// Test entry point: GoogleTest plus the sweep options every test program
// accepts (--seed=N, --points=N), so a sweep can be rerun from another seed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "support/test_options.h"

namespace luxtest {
luxtk::SweepOptions g_sweep;
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "--seed=", 7) == 0)
      luxtest::g_sweep.seed = std::strtoull(argv[i] + 7, nullptr, 0);
    if (std::strncmp(argv[i], "--points=", 9) == 0)
      luxtest::g_sweep.points = std::strtol(argv[i] + 9, nullptr, 0);
  }
  std::printf("sweep seed %llu, %ld points per region\n",
              static_cast<unsigned long long>(luxtest::g_sweep.seed), luxtest::g_sweep.points);
  return RUN_ALL_TESTS();
}
