#include <cstdio>

#include "luxvm/commands.h"

namespace luxcli {
int cmd_bench(int, char**) {
  std::fprintf(stderr, "luxvm: no benchmarks registered yet\n");
  return 2;
}
}  // namespace luxcli
