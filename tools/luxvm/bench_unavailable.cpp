// The 32-bit build runs under emulation, where timings mean nothing.
#include <cstdio>

#include "luxvm/commands.h"

namespace luxcli {
int cmd_bench(int, char**) {
  std::fprintf(stderr, "luxvm: bench runs on the native x86-64 build only\n");
  return 2;
}
}  // namespace luxcli
