// The census of exports as the tests and tools see it: every row of
// census/luxvm.census, and the export's address in the built library when it
// is implemented there.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace luxtk {

struct CensusEntry {
  const char* name;
  const char* family;
  const char* type;      // 32f 64f 32fc 64fc
  const char* tier;      // A11..A53, "-" for none
  const char* shape;     // U B X D CR RC
  const char* result;    // real complex
  const char* statuses;  // "12,17" or "-"
  const char* guard;     // - S Sdn Sup Stz 53 64 S+53 S+64
  const char* kind;      // F1..F7

  bool complex_src() const;    // source elements are complex
  bool complex_dst() const;    // result elements are complex
  size_t src_size() const;     // bytes per source element
  size_t dst_size() const;     // bytes per result element
  int component_bits() const;  // 32 or 64
  int sources() const;         // 1 or 2 source arrays
  int inputs() const;          // arguments per lane: 2 for B and for X (its scalar)
  int results() const;         // 1 or 2 result arrays
  bool sse_guarded() const;    // forces round-to-nearest/no-FTZ (not the directed ones)
  bool any_sse_guard() const;
  bool may_return(int status) const;
};

std::span<const CensusEntry> census();
const CensusEntry* find_export(std::string_view name);

// Address of the export in the library (dlopen'd once from its build path,
// or the one this process is linked with); nullptr when not implemented.
void* export_address(const char* name);
// Entries whose export exists in the library.
std::span<const CensusEntry* const> implemented();
// Path of the library the addresses come from.
const char* library_path();

// Accuracy bound of a tier, in ulps of the result type.
double tier_bound_ulps(std::string_view tier);

}  // namespace luxtk
