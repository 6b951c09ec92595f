// What `luxvm bench` knows about a family: the input ranges its exports are
// timed on and the peers timed beside them on the same arrays.  Each family is
// one FamilyBench, registered from bench/families/<group>.cpp; adding a family
// is adding one such table.
#pragma once

#include <string_view>
#include <vector>

namespace luxbench {

// Element types a range or peer applies to (bit set).
enum Types : unsigned {
  k32f = 1,
  k64f = 2,
  k32fc = 4,
  k64fc = 8,
  kReal = k32f | k64f,
  kComplex = k32fc | k64fc,
  kAllTypes = kReal | kComplex,
};
unsigned type_bit(std::string_view census_type);

// How one source array is filled: uniform in [lo, hi], or log-uniform
// magnitudes in [lo, hi] (0 < lo < hi) of one or both signs.  Complex
// elements draw both parts from the same fill.
struct Fill {
  enum Kind { kNone, kUniform, kMagnitude, kSignedMagnitude } kind = kNone;
  double lo = 0, hi = 0;
};
constexpr Fill uniform(double lo, double hi) { return {Fill::kUniform, lo, hi}; }
constexpr Fill magnitudes(double lo, double hi) { return {Fill::kMagnitude, lo, hi}; }
constexpr Fill signed_magnitudes(double lo, double hi) { return {Fill::kSignedMagnitude, lo, hi}; }

// One input range: a label for the report, the element types it is for, the
// first source, the second source of two-argument exports, and the scalar
// argument of Powx (a complex scalar gets a zero imaginary part).
struct Range {
  const char* name;
  unsigned types;
  Fill a;
  Fill b = {};
  double x = 0;
};

// The arrays of one timed call, in the export's argument order.  Sources and
// results hold elements of the export's types; `x` points at one element.
struct Arrays {
  const void* a;
  const void* b;
  const void* x;
  void* d1;
  void* d2;
};
using PeerFn = void (*)(const Arrays&, int n);

// Another implementation of the same operation: a label naming the routine,
// the element types it stands beside, and the loop that runs it over arrays.
struct Peer {
  const char* name;
  unsigned types;
  PeerFn run;
};

struct FamilyBench {
  const char* family;
  // Exact families (arithmetic, rounding) are bounded by memory traffic on
  // large arrays; for them the report adds the copy-bandwidth bound.
  bool exact = false;
  std::vector<Range> ranges;
  std::vector<Peer> peers;
  // What bounds the exports' speed, for the reader of the report: printed
  // under the family's heading.
  const char* notes = nullptr;
};

void register_family(const FamilyBench* fam);
const FamilyBench* find_family(std::string_view family);
std::vector<const FamilyBench*> families();

struct Registrar {
  explicit Registrar(const FamilyBench* fam) { register_family(fam); }
};

}  // namespace luxbench
