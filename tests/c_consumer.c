/* A C99 program against the public header and the shared library. */
#include <stdio.h>
#include <string.h>

#include "luxvm.h"

int main(void) {
  const LuxLibraryVersion* v = luxvmGetLibVersion();
  if (v != luxvmGetLibVersion() || v->major != 6 || v->minor != 1) return 1;
  printf("%s %s\n", v->name, v->version);
  return strncmp(v->name, "libluxvm", 8) == 0 ? 0 : 4;
}
