#include <algorithm>

#include "bench.h"

namespace luxbench {

namespace {
std::vector<const FamilyBench*>& registry() {
  static std::vector<const FamilyBench*> r;
  return r;
}
}  // namespace

unsigned type_bit(std::string_view t) {
  if (t == "32f") return k32f;
  if (t == "64f") return k64f;
  if (t == "32fc") return k32fc;
  if (t == "64fc") return k64fc;
  return 0;
}

void register_family(const FamilyBench* fam) { registry().push_back(fam); }

const FamilyBench* find_family(std::string_view family) {
  for (const FamilyBench* f : registry())
    if (family == f->family) return f;
  return nullptr;
}

std::vector<const FamilyBench*> families() {
  std::vector<const FamilyBench*> v = registry();
  std::sort(v.begin(), v.end(), [](const FamilyBench* a, const FamilyBench* b) {
    return std::string_view(a->family) < std::string_view(b->family);
  });
  return v;
}

}  // namespace luxbench
