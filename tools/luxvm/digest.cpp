// luxvm digest: a 64-bit FNV-1a hash of every implemented export's results,
// status and raised flags over a fixed set of inputs (random bit patterns,
// special values and ordinary arguments, in several lengths).  Two builds or
// two versions of a kernel agree bit for bit exactly when their digests do;
// kernels seeded by the hardware reciprocal estimates differ between
// processors (and under emulation) by design.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "common/census.h"
#include "common/fpenv.h"
#include "common/invoke.h"
#include "common/oracle.h"
#include "luxvm/commands.h"
#include "luxvm/options.h"

namespace luxcli {

namespace {

struct Fnv {
  uint64_t h = 0xcbf29ce484222325ull;
  void add(const void* p, size_t n) {
    const unsigned char* b = static_cast<const unsigned char*>(p);
    for (size_t i = 0; i < n; ++i) h = (h ^ b[i]) * 0x100000001b3ull;
  }
};

// Component bit patterns: a third random bits, a third special values, a
// third ordinary magnitudes of both signs.
std::vector<uint64_t> components(int bits, size_t n, uint64_t seed) {
  luxtk::Rng rng(seed);
  const bool is32 = bits == 32;
  const uint64_t specials32[] = {0,          0x80000000, 0x7F800000, 0xFF800000, 0x7FC00000, 0x7FA00000,
                                 0x00000001, 0x00800000, 0x7F7FFFFF, 0x3F800000, 0xBF800000, 0x3F000000};
  const uint64_t specials64[] = {0,
                                 0x8000000000000000ull,
                                 0x7FF0000000000000ull,
                                 0xFFF0000000000000ull,
                                 0x7FF8000000000000ull,
                                 0x7FF4000000000000ull,
                                 1,
                                 0x0010000000000000ull,
                                 0x7FEFFFFFFFFFFFFFull,
                                 0x3FF0000000000000ull,
                                 0xBFF0000000000000ull,
                                 0x3FE0000000000000ull};
  std::vector<uint64_t> v;
  for (size_t i = 0; i < n; ++i) {
    const uint64_t r = rng.next();
    switch (i % 3) {
      case 0:
        v.push_back(is32 ? (r & 0xFFFFFFFF) : r);
        break;
      case 1:
        v.push_back(is32 ? specials32[r % 12] : specials64[r % 12]);
        break;
      default: {
        const double x = rng.log_uniform(1e-3, 1e3, true);
        uint64_t b;
        if (is32) {
          const float f = float(x);
          uint32_t w;
          std::memcpy(&w, &f, 4);
          b = w;
        } else {
          std::memcpy(&b, &x, 8);
        }
        v.push_back(b);
      }
    }
  }
  return v;
}

// no_nan: the second source never holds a NaN, so two NaNs never meet
// (which NaN comes out then differs between processors and emulators).
void fill(std::vector<unsigned char>& buf, std::vector<uint64_t> comps, int bits, bool no_nan = false) {
  const size_t w = size_t(bits / 8);
  for (uint64_t& c : comps) {
    const bool nan = bits == 32 ? (c & 0x7FFFFFFF) > 0x7F800000 : (c & ~(1ull << 63)) > 0x7FF0000000000000ull;
    if (no_nan && nan) c = bits == 32 ? 0x3FC00000 : 0x3FF8000000000000ull;  // 1.5
  }
  for (size_t i = 0; i * w < buf.size(); ++i) std::memcpy(&buf[i * w], &comps[i % comps.size()], w);
}

uint64_t digest(const luxtk::CensusEntry& e) {
  void* fn = luxtk::export_address(e.name);
  const int bits = e.component_bits();
  Fnv h;
  for (int len : {1, 3, 4, 7, 8, 9, 16, 17, 300, 1024}) {
    std::vector<unsigned char> s1(e.src_size() * len), s2(e.src_size() * len), d1(e.dst_size() * len),
        d2(e.dst_size() * len), x(16);
    fill(s1, components(bits, 2 * len + 2, 11 + len), bits);
    fill(s2, components(bits, 2 * len + 2, 97 + len), bits, true);
    fill(x, components(bits, 2, 5 + len), bits, true);
    const luxtk::Outcome o = luxtk::run_clean(
        [&] { return luxtk::invoke(e, fn, s1.data(), s2.data(), x.data(), d1.data(), d2.data(), len); });
    h.add(d1.data(), d1.size());
    if (e.results() == 2) h.add(d2.data(), d2.size());
    h.add(&o.status, sizeof o.status);
    // The denormal-operand flag is left out: emulators do not raise it.
    const uint32_t flags = o.flags & ~luxtk::kDenormal;
    h.add(&flags, sizeof flags);
  }
  return h.h;
}

}  // namespace

int cmd_digest(int argc, char** argv) {
  const Options opt = parse_options(argc, argv);
  if (!opt.ok) return 2;
  int shown = 0;
  for (const luxtk::CensusEntry* e : luxtk::implemented()) {
    if (!opt.family.empty() && opt.family != e->family) continue;
    std::printf("%-22s %016llx\n", e->name, static_cast<unsigned long long>(digest(*e)));
    ++shown;
  }
  if (shown == 0) {
    std::fprintf(stderr, "luxvm: no implemented export%s%s\n", opt.family.empty() ? "" : " in family ",
                 opt.family.c_str());
    return 2;
  }
  return 0;
}

}  // namespace luxcli
