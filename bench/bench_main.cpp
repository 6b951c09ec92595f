// luxvm bench [FAMILY] [--out=FILE] [--small=N] [--large=N] [--runs=N]
//
// Times every implemented export of the described families (bench/families/)
// in cycles per element on in-cache and out-of-cache arrays, with each family's
// peers on the same arrays, prints the tables and writes docs/performance.md
// with its chart, docs/performance.png.
// --small and --large set the array lengths (1000 and 1000000), --runs the
// number of timed in-cache calls (101; out of cache a tenth of it, at least 3).
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench.h"
#include "common/census.h"
#include "common/fpenv.h"
#include "common/invoke.h"
#include "common/oracle.h"
#include "luxvm/commands.h"
#include "report.h"
#include "timing.h"

namespace luxbench {
namespace {

struct Options {
  bool ok = true;
  std::string family, out;
  long small = 1000, large = 1000000;
  int runs = 101;
};

Options parse(int argc, char** argv) {
  Options o;
  for (int i = 0; i < argc; ++i) {
    const char* a = argv[i];
    if (std::strncmp(a, "--out=", 6) == 0) {
      o.out = a + 6;
    } else if (std::strncmp(a, "--small=", 8) == 0) {
      o.small = std::strtol(a + 8, nullptr, 0);
    } else if (std::strncmp(a, "--large=", 8) == 0) {
      o.large = std::strtol(a + 8, nullptr, 0);
    } else if (std::strncmp(a, "--runs=", 7) == 0) {
      o.runs = int(std::strtol(a + 7, nullptr, 0));
    } else if (a[0] != '-' && o.family.empty()) {
      o.family = a;
    } else {
      std::fprintf(stderr, "luxvm: unknown option '%s'\n", a);
      o.ok = false;
    }
  }
  if (o.small < 1 || o.large < 1 || o.small > (1 << 30) || o.large > (1 << 30) || o.runs < 1) {
    std::fprintf(stderr, "luxvm: sizes and runs must be positive\n");
    o.ok = false;
  }
  return o;
}

void fill(luxtk::Rng& rng, const Fill& f, int bits, void* out, long count) {
  for (long i = 0; i < count; ++i) {
    double v = 0;
    switch (f.kind) {
      case Fill::kNone:
        break;
      case Fill::kUniform:
        v = rng.uniform(f.lo, f.hi);
        break;
      case Fill::kMagnitude:
        v = rng.log_uniform(f.lo, f.hi, false);
        break;
      case Fill::kSignedMagnitude:
        v = rng.log_uniform(f.lo, f.hi, true);
        break;
    }
    if (bits == 32)
      static_cast<float*>(out)[i] = float(v);
    else
      static_cast<double*>(out)[i] = v;
  }
}

// The arrays of one range at one length, in the layout of the type's exports.
// In cache, a pool of several sets of arrays with different inputs is cycled
// through: a thousand repeated inputs are few enough for the branch predictors
// to learn, which would flatter every routine that branches on its input.
// The pool stays within kPoolBytes, so that it lives in L2.
constexpr size_t kPoolBytes = 512 * 1024;
constexpr int kMaxPool = 64;

struct Workset {
  long n;
  int copies;
  bool cold;
  size_t src_bytes, dst_bytes;  // one set
  Buffer a, b, x, d1, d2;
  Workset(const luxtk::CensusEntry& e, const Range& r, long n_, bool cold_, uint64_t seed)
      : n(n_),
        copies(cold_ ? 1 : pool_size(e, n_)),
        cold(cold_),
        src_bytes(e.src_size() * n_),
        dst_bytes(e.dst_size() * n_),
        a(src_bytes * copies),
        b(src_bytes * copies),
        x(16),
        d1(dst_bytes * copies),
        d2(dst_bytes * copies) {
    luxtk::Rng rng(seed);
    const int bits = e.component_bits();
    const long parts = n * copies * (e.complex_src() ? 2 : 1);
    fill(rng, r.a, bits, a.data(), parts);
    fill(rng, r.b.kind == Fill::kNone ? r.a : r.b, bits, b.data(), parts);
    if (bits == 32)
      *static_cast<float*>(x.data()) = float(r.x);
    else
      *static_cast<double*>(x.data()) = r.x;
  }
  static int pool_size(const luxtk::CensusEntry& e, long n) {
    const size_t set = (2 * e.src_size() + 2 * e.dst_size()) * size_t(n);
    return int(std::clamp<size_t>(kPoolBytes / set, 1, kMaxPool));
  }
  Arrays arrays(int k) const {
    auto at = [k](const Buffer& buf, size_t bytes) { return static_cast<char*>(buf.data()) + bytes * k; };
    return {at(a, src_bytes), at(b, src_bytes), x.data(), at(d1, dst_bytes), at(d2, dst_bytes)};
  }
};

struct Timer {
  double overhead;
  int runs_small, runs_large;

  // Median ticks per element of call(arrays) over the workset.
  template <class F>
  double per_element(const Workset& w, F&& call) const {
    const int runs = w.cold ? runs_large : runs_small;
    std::vector<double> v;
    for (int k = 0; k < w.copies; ++k) {
      luxtk::write_mxcsr(luxtk::kDefaultMxcsr);
      call(w.arrays(k));
    }
    for (int r = 0; r < runs; ++r) {
      if (w.cold) {
        for (const Buffer* buf : {&w.a, &w.b, &w.d1, &w.d2}) flush_from_caches(buf->data(), buf->size());
      }
      const Arrays arr = w.arrays(r % w.copies);
      luxtk::write_mxcsr(luxtk::kDefaultMxcsr);
      const uint64_t t0 = tsc_start();
      call(arr);
      const uint64_t t1 = tsc_stop();
      v.push_back(std::max(0.0, double(t1 - t0) - overhead));
    }
    return median(v) / double(w.n);
  }
};

// All exports of one family at one element type, on every range and length.
Table run_type(const FamilyBench& fam, unsigned type, const std::vector<const luxtk::CensusEntry*>& exports,
               const Options& opt, const Timer& timer, double copy_bytes_per_tick) {
  Table t;
  t.type = exports.front()->type;
  t.bound = fam.exact && copy_bytes_per_tick > 0;
  std::vector<const Peer*> peers;
  for (const Peer& p : fam.peers)
    if (p.types & type) {
      peers.push_back(&p);
      t.peers.push_back(p.name);
    }
  uint64_t seed = 0x6c7578u;
  for (const Range& r : fam.ranges) {
    if (!(r.types & type)) continue;
    for (const bool cold : {false, true}) {
      const long n = cold ? opt.large : opt.small;
      const Workset w(*exports.front(), r, n, cold, ++seed);
      std::vector<double> peer_cycles;
      for (const Peer* p : peers)
        peer_cycles.push_back(timer.per_element(w, [&](const Arrays& arr) { p->run(arr, int(n)); }));
      for (const luxtk::CensusEntry* e : exports) {
        void* fn = luxtk::export_address(e->name);
        Row row;
        row.export_name = e->name;
        row.range = r.name;
        row.n = n;
        row.cycles = timer.per_element(w, [&](const Arrays& arr) {
          luxtk::invoke(*e, fn, arr.a, arr.b, arr.x, arr.d1, arr.d2, int(n));
        });
        row.peers = peer_cycles;
        if (t.bound && cold) {
          const double bytes = double(e->sources() * e->src_size() + e->results() * e->dst_size());
          row.bound = bytes / copy_bytes_per_tick;
        }
        t.rows.push_back(row);
      }
    }
  }
  return t;
}

int run(const Options& opt) {
  std::vector<const FamilyBench*> chosen;
  if (opt.family.empty()) {
    chosen = families();
  } else if (const FamilyBench* f = find_family(opt.family)) {
    chosen.push_back(f);
  } else {
    std::fprintf(stderr, "luxvm: no benchmark described for family '%s'\n", opt.family.c_str());
    return 2;
  }

  // What there is to run: implemented exports of the chosen families, by type.
  struct Work {
    const FamilyBench* fam;
    std::vector<std::pair<unsigned, std::vector<const luxtk::CensusEntry*>>> types;
  };
  std::vector<Work> work;
  bool any_exact = false;
  for (const FamilyBench* fam : chosen) {
    Work w{fam, {}};
    for (const unsigned type : {k32f, k64f, k32fc, k64fc}) {
      std::vector<const luxtk::CensusEntry*> ex;
      for (const luxtk::CensusEntry* e : luxtk::implemented())
        if (std::strcmp(e->family, fam->family) == 0 && type_bit(e->type) == type) ex.push_back(e);
      bool has_range = false;
      for (const Range& r : fam->ranges) has_range |= (r.types & type) != 0;
      if (!ex.empty() && has_range) w.types.emplace_back(type, ex);
    }
    if (!w.types.empty()) {
      any_exact |= fam->exact;
      work.push_back(w);
    }
  }
  if (work.empty()) {
    std::printf("luxvm: no implemented exports in %s; nothing measured\n",
                opt.family.empty() ? "the described families" : opt.family.c_str());
    return 0;
  }

  const uint32_t saved_mxcsr = luxtk::read_mxcsr();
  Machine m = describe_machine();
  m.tsc_ghz = tsc_ghz();
  m.small = opt.small;
  m.large = opt.large;
  m.runs_small = opt.runs;
  m.runs_large = std::max(3, opt.runs / 10 + 1);
  const Timer timer{timer_overhead(), m.runs_small, m.runs_large};
  if (any_exact) m.copy_bytes_per_tick = copy_bytes_per_tick(size_t(opt.large) * 16, m.runs_large);
  std::printf("%s; %s\nTSC %.3f GHz, timer overhead %.0f ticks", m.cpu.c_str(), m.caches.c_str(), m.tsc_ghz,
              timer.overhead);
  if (m.copy_bytes_per_tick > 0) std::printf(", copy bandwidth %.2f bytes/tick", m.copy_bytes_per_tick);
  std::printf("\n");

  std::vector<FamilyResult> results;
  for (const Work& w : work) {
    FamilyResult fr{w.fam->family, w.fam->notes ? w.fam->notes : "", {}};
    for (const auto& [type, ex] : w.types)
      fr.tables.push_back(run_type(*w.fam, type, ex, opt, timer, m.copy_bytes_per_tick));
    print_family(fr);
    results.push_back(std::move(fr));
  }
  luxtk::write_mxcsr(saved_mxcsr);
  write_report(opt.out.empty() ? std::string(LUXVM_SOURCE_DIR "/docs/performance.md") : opt.out, m, results);
  return 0;
}

}  // namespace
}  // namespace luxbench

namespace luxcli {
int cmd_bench(int argc, char** argv) {
  const luxbench::Options opt = luxbench::parse(argc, argv);
  if (!opt.ok) return 2;
  return luxbench::run(opt);
}
}  // namespace luxcli
