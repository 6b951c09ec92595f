#include "report.h"

#include <gnu/libc-version.h>
#include <sleef.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <map>
#include <sstream>

#include "common/census.h"
#include "luxvm.h"
#include "plot.h"

namespace luxbench {

namespace {

std::string cpu_model() {
  std::ifstream in("/proc/cpuinfo");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind("model name", 0) == 0) {
      const size_t colon = line.find(':');
      if (colon != std::string::npos) return line.substr(line.find_first_not_of(" \t", colon + 1));
    }
  return "unknown";
}

// "L1d 48K, L2 1024K, L3 32768K" from the kernel's description of cpu0's caches.
std::string caches() {
  std::string out;
  for (int i = 0; i < 8; ++i) {
    const std::string dir = "/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(i) + "/";
    std::string level, type, size;
    std::ifstream(dir + "level") >> level;
    std::ifstream(dir + "type") >> type;
    std::ifstream(dir + "size") >> size;
    if (level.empty() || type == "Instruction") continue;
    if (!out.empty()) out += ", ";
    out += "L" + level + (type == "Data" ? "d " : " ") + size;
  }
  return out.empty() ? "caches unknown" : out;
}

std::string fixed(double v) {
  char b[32];
  std::snprintf(b, sizeof b, v < 10 ? "%.2f" : v < 100 ? "%.1f" : "%.0f", v);
  return b;
}

std::string cell(double peer, double ours, const char* times) {
  return fixed(peer) + " (" + fixed(peer / ours) + times + ")";
}

// Range labels hold '|' (|x| < 10), which would split a Markdown cell.
std::string md_escape(const std::string& s) {
  std::string o;
  for (char c : s) {
    if (c == '|') o += '\\';
    o += c;
  }
  return o;
}

// "## Title" sections of an earlier report, by title.
std::map<std::string, std::string> previous_sections(const std::string& path) {
  std::map<std::string, std::string> s;
  std::ifstream in(path);
  std::string line, title, body;
  auto keep = [&] {
    if (!title.empty()) {
      while (body.size() > 1 && body.ends_with("\n\n")) body.pop_back();
      s[title] = body;
    }
  };
  while (std::getline(in, line)) {
    if (line.rfind("## ", 0) == 0) {
      keep();
      title = line.substr(3);
      body.clear();
    }
    if (!title.empty()) body += line + "\n";
  }
  keep();
  return s;
}

constexpr const char* kDataOpen = "<!-- chart data";

std::string exact_number(double v) {
  char b[32];
  std::snprintf(b, sizeof b, "%.6g", v);
  return b;
}

std::vector<std::string> split_tabs(const std::string& line) {
  std::vector<std::string> f;
  size_t start = 0;
  for (size_t tab; (tab = line.find('\t', start)) != std::string::npos; start = tab + 1)
    f.push_back(line.substr(start, tab - start));
  f.push_back(line.substr(start));
  return f;
}

// "docs/performance.md" -> "docs/performance.png".
std::string chart_path(const std::string& report) {
  const size_t slash = report.find_last_of('/');
  const size_t dot = report.find_last_of('.');
  const bool has_ext = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  return (has_ext ? report.substr(0, dot) : report) + ".png";
}

std::string file_name(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

std::string family_section(const FamilyResult& r, const Machine& m) {
  std::ostringstream o;
  o << "## " << r.family << "\n\n"
    << "Measured " << m.date << " on " << m.cpu << " (TSC " << fixed(m.tsc_ghz) << " GHz), " << m.compiler
    << "; median of " << m.runs_small << " calls on " << m.small << " elements and " << m.runs_large
    << " calls on " << m.large << ".\n";
  if (!r.notes.empty()) o << "\n" << r.notes << "\n";
  for (const Table& t : r.tables) {
    o << "\n### " << r.family << ", " << t.type << "\n\n| Export | Range | n | luxvm |";
    for (const std::string& p : t.peers) o << " " << p << " |";
    if (t.bound) o << " memory bound |";
    o << "\n|---|---|--:|--:|";
    for (size_t k = 0; k < t.peers.size(); ++k) o << "--:|";
    if (t.bound) o << "--:|";
    o << "\n";
    for (const Row& row : t.rows) {
      o << "| `" << row.export_name << "` | " << md_escape(row.range) << " | " << row.n << " | "
        << fixed(row.cycles) << " |";
      for (double p : row.peers) o << " " << cell(p, row.cycles, "×") << " |";
      if (t.bound) o << " " << (row.bound < 0 ? std::string("–") : fixed(row.bound)) << " |";
      o << "\n";
    }
  }
  // The same numbers unrounded, one tab-separated line each, for drawing the
  // chart again when a later run keeps this section.
  o << "\n" << kDataOpen << "\n";
  for (const Table& t : r.tables) {
    o << "table\t" << t.type << "\t" << (t.bound ? 1 : 0) << "\npeers";
    for (const std::string& p : t.peers) o << "\t" << p;
    o << "\n";
    for (const Row& row : t.rows) {
      o << "row\t" << row.export_name << "\t" << row.range << "\t" << row.n << "\t"
        << exact_number(row.cycles) << "\t" << exact_number(row.bound);
      for (double p : row.peers) o << "\t" << exact_number(p);
      o << "\n";
    }
  }
  o << "-->\n";
  return o.str();
}

FamilyResult parse_section(const std::string& family, const std::string& section) {
  FamilyResult r{family, {}, {}};
  std::istringstream in(section);
  std::string line;
  bool inside = false;
  while (std::getline(in, line)) {
    if (!inside) {
      inside = line == kDataOpen;
      continue;
    }
    if (line == "-->") break;
    const std::vector<std::string> f = split_tabs(line);
    if (f[0] == "table" && f.size() == 3) {
      r.tables.push_back({f[1], {}, f[2] == "1", {}});
    } else if (r.tables.empty()) {
      continue;
    } else if (f[0] == "peers") {
      r.tables.back().peers.assign(f.begin() + 1, f.end());
    } else if (f[0] == "row" && f.size() >= 6) {
      Row row;
      row.export_name = f[1];
      row.range = f[2];
      row.n = std::strtol(f[3].c_str(), nullptr, 10);
      row.cycles = std::strtod(f[4].c_str(), nullptr);
      row.bound = std::strtod(f[5].c_str(), nullptr);
      for (size_t k = 6; k < f.size(); ++k) row.peers.push_back(std::strtod(f[k].c_str(), nullptr));
      r.tables.back().rows.push_back(row);
    }
  }
  return r;
}

Machine describe_machine() {
  Machine m;
  m.cpu = cpu_model();
  m.caches = caches();
  m.compiler = "g++ " __VERSION__;
  m.libraries = std::string("glibc ") + gnu_get_libc_version() + " (libm, libmvec), SLEEF " +
                std::to_string(SLEEF_VERSION_MAJOR) + "." + std::to_string(SLEEF_VERSION_MINOR) + "." +
                std::to_string(SLEEF_VERSION_PATCHLEVEL);
  const LuxLibraryVersion* v = luxvmGetLibVersion();
  m.library = std::string(v->name) + " " + v->version;
  char date[32];
  const std::time_t now = std::time(nullptr);
  std::strftime(date, sizeof date, "%Y-%m-%d", std::gmtime(&now));
  m.date = date;
  return m;
}

void print_family(const FamilyResult& r) {
  for (const Table& t : r.tables) {
    std::printf("\n%s, %s: cycles per element (peer / luxvm)\n", r.family.c_str(), t.type.c_str());
    std::printf("%-22s %-34s %8s %9s", "export", "range", "n", "luxvm");
    for (const std::string& p : t.peers) std::printf("  %-22s", p.c_str());
    if (t.bound) std::printf("  %s", "memory bound");
    std::printf("\n");
    for (const Row& row : t.rows) {
      std::printf("%-22s %-34s %8ld %9s", row.export_name.c_str(), row.range.c_str(), row.n,
                  fixed(row.cycles).c_str());
      for (double p : row.peers) std::printf("  %-22s", cell(p, row.cycles, "x").c_str());
      if (t.bound && row.bound >= 0) std::printf("  %s", fixed(row.bound).c_str());
      std::printf("\n");
    }
  }
}

void write_report(const std::string& path, const Machine& m, const std::vector<FamilyResult>& results) {
  std::map<std::string, std::string> sections = previous_sections(path);
  sections.erase("Machine");
  sections.erase("Method");
  for (const FamilyResult& r : results) sections[r.family] = family_section(r, m);
  const std::string chart = chart_path(path);

  std::ofstream f(path);
  f << "# Performance\n\n"
    << "Throughput of the native x86-64 build in cycles per element, beside other implementations of the "
       "same "
    << "operation timed on the same arrays in the same run. Written by `luxvm bench [FAMILY]`, which "
       "replaces "
    << "the sections of the families it measures and keeps the others; do not edit by hand.\n\n"
    << "![Cycles per element of each export beside its peers, arrays in cache](" << file_name(chart)
    << ")\n\n"
    << "The chart: for each family and element type, the first range of its table on arrays in cache, one "
    << "bar per export and per peer on one logarithmic scale; dotted lines carry the exports' times through "
    << "the peers' bars.\n\n"
    << "## Machine\n\n"
    << "Last run " << m.date << ":\n\n"
    << "- CPU: " << m.cpu << " (" << m.caches << ")\n"
    << "- Time stamp counter: " << fixed(m.tsc_ghz) << " GHz, measured against CLOCK_MONOTONIC_RAW\n";
  if (m.copy_bytes_per_tick > 0)
    f << "- Copy bandwidth, arrays out of cache: " << fixed(m.copy_bytes_per_tick) << " bytes per tick ("
      << fixed(m.copy_bytes_per_tick * m.tsc_ghz) << " GB/s, read plus written)\n";
  f << "- Library: " << m.library << "\n"
    << "- Compiler: " << m.compiler << "\n"
    << "- Peers: " << m.libraries << "\n\n"
    << "## Method\n\n"
    << "- A cycle is one tick of the time stamp counter, read with `lfence; rdtsc; lfence` before and "
    << "`rdtscp; lfence` after one call; the cost of an empty timed region is subtracted. The counter runs "
       "at a "
    << "constant rate, so on a core that boosts above it the figures overstate the core cycles spent.\n"
    << "- Every call, of the export and of each peer, starts from a clean MXCSR (0x1F80: round to nearest, "
       "all "
    << "exceptions masked, flags clear).\n"
    << "- In cache: arrays of " << m.small << " elements, from a pool of up to 64 sets of arrays with "
    << "different inputs (within 512 KiB, so in L2 at most), each warmed by one untimed call, then cycled "
    << "through by " << m.runs_small
    << " timed calls, median taken. Cycling keeps the branch predictors from "
    << "learning a short input sequence, which would flatter routines that branch on their input. Out of "
       "cache: arrays of "
    << m.large
    << " elements, every source and result array flushed from all cache levels (`clflush`) before each of "
    << m.runs_large << " timed calls, median taken.\n"
    << "- Inputs are drawn once per range with a fixed seed (uniform, or log-uniform magnitudes where the "
       "range "
    << "says \"|x| in\"); complex elements draw both parts from the range.\n"
    << "- Peers run as a caller would use them: glibc libm in a scalar loop, libmvec (`_ZGVbN2v_*`, "
    << "`_ZGVbN4v_*`, the SSE variants) and SLEEF (`*_sse2`) two or four lanes at a time, complex functions "
    << "through `std::complex` (glibc `cexp`, `clog`, ... and libgcc's `__muldc3`/`__divdc3`), and plain "
       "loops "
    << "compiled by g++ -O3 for baseline x86-64 (SSE2), vectorised where the compiler manages. In brackets: "
    << "the peer's time over the export's; above 1 the export is faster.\n"
    << "- Memory bound (exact families, large arrays): the bytes an element reads and writes, divided by the "
    << "copy bandwidth above (a plain SSE2 copy between two flushed arrays).\n";
  std::vector<FamilyResult> charted;
  for (const auto& [title, body] : sections) {
    f << "\n" << body;
    FamilyResult r = parse_section(title, body);
    if (!r.tables.empty()) charted.push_back(std::move(r));
  }
  f.close();
  std::printf("\nwrote %s\n", path.c_str());
  const Canvas c = draw_chart(
      charted, "Last run " + m.date + " on " + m.cpu + "; " + m.library + " beside " + m.libraries + ".");
  if (write_png(chart, c.image()))
    std::printf("wrote %s\n", chart.c_str());
  else
    std::fprintf(stderr, "luxvm: cannot write %s\n", chart.c_str());
}

}  // namespace luxbench
