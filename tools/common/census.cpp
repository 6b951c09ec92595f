#include "census.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "luxvm.h"

namespace luxtk {

namespace {
const CensusEntry kCensus[] = {
#define LUXVM_CENSUS(...) {__VA_ARGS__},
#include "luxvm_census.inc"
#undef LUXVM_CENSUS
};

void* library_handle() {
  static void* handle = [] {
    void* h = dlopen(library_path(), RTLD_NOW | RTLD_LOCAL);
    if (!h) {
      std::fprintf(stderr, "cannot load %s: %s\n", library_path(), dlerror());
      std::exit(2);
    }
    return h;
  }();
  return handle;
}
}  // namespace

bool CensusEntry::complex_src() const {
  const bool ctype = type[std::strlen(type) - 1] == 'c';
  return ctype && std::strcmp(shape, "RC") != 0;
}
bool CensusEntry::complex_dst() const { return std::strcmp(result, "complex") == 0; }
int CensusEntry::component_bits() const { return type[0] == '3' ? 32 : 64; }
size_t CensusEntry::src_size() const { return size_t(component_bits() / 8) * (complex_src() ? 2 : 1); }
size_t CensusEntry::dst_size() const { return size_t(component_bits() / 8) * (complex_dst() ? 2 : 1); }
int CensusEntry::sources() const { return std::strcmp(shape, "B") == 0 ? 2 : 1; }
int CensusEntry::inputs() const { return sources() == 2 || std::strcmp(shape, "X") == 0 ? 2 : 1; }
int CensusEntry::results() const { return std::strcmp(shape, "D") == 0 ? 2 : 1; }
bool CensusEntry::sse_guarded() const { return guard[0] == 'S' && (guard[1] == '\0' || guard[1] == '+'); }
bool CensusEntry::any_sse_guard() const { return guard[0] == 'S'; }
bool CensusEntry::may_return(int status) const {
  if (status == 0) return true;
  char buf[8];
  std::snprintf(buf, sizeof buf, "%d", status);
  const char* p = std::strstr(statuses, buf);
  return p != nullptr;
}

std::span<const CensusEntry> census() { return kCensus; }

const CensusEntry* find_export(std::string_view name) {
  for (const CensusEntry& e : kCensus)
    if (name == e.name) return &e;
  return nullptr;
}

const char* library_path() {
  const char* env = std::getenv("LUXVM_LIBRARY");
  return env ? env : LUXVM_LIBRARY_PATH;
}

void* export_address(const char* name) { return dlsym(library_handle(), name); }

std::span<const CensusEntry* const> implemented() {
  static const std::vector<const CensusEntry*> list = [] {
    std::vector<const CensusEntry*> v;
    for (const CensusEntry& e : kCensus)
      if (export_address(e.name)) v.push_back(&e);
    return v;
  }();
  return list;
}

double tier_bound_ulps(std::string_view tier) {
  if (tier == "A24" || tier == "A53" || tier == "-") return 1.0;
  if (tier == "A21" || tier == "A50") return 8.0;
  if (tier == "A11") return 8192.0;
  if (tier == "A26") return 134217728.0;
  return 0.0;
}

}  // namespace luxtk
