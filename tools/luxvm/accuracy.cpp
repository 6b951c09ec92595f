// luxvm accuracy: runs the MPFR sweep of every implemented real export of the
// registered families and writes the measured maxima as a Markdown report.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "common/census.h"
#include "common/numbers.h"
#include "common/oracle.h"
#include "luxvm/commands.h"
#include "luxvm/options.h"

namespace luxcli {

namespace {
// "1", "8", "2^13": bounds are small integers or powers of two.
std::string bound_text(double bound) {
  int e = 0;
  if (bound > 64 && std::frexp(bound, &e) == 0.5) return "2^" + std::to_string(e - 1);
  char buf[32];
  std::snprintf(buf, sizeof buf, "%g", bound);
  return buf;
}
}  // namespace

int cmd_accuracy(int argc, char** argv) {
  Options opt = parse_options(argc, argv);
  if (!opt.ok) return 2;
  luxtk::SweepOptions so;
  if (opt.seed) so.seed = opt.seed;
  if (opt.points) so.points = opt.points;
  const std::string out = opt.out.empty() ? std::string(LUXVM_SOURCE_DIR "/docs/accuracy.md") : opt.out;

  // Previous summary rows and per-region details survive for exports not
  // re-measured in this run.  A detail block runs from its "#### `name`"
  // heading to the next blank line after its table.
  std::map<std::string, std::string> rows, details;
  std::string kept;  // the sections other commands write (peers, core-accuracy), kept as they are
  {
    std::ifstream in(out);
    std::string line, current;
    bool in_details = false, in_kept = false;
    while (std::getline(in, line)) {
      if (line.rfind("## ", 0) == 0) in_kept = line.rfind("## Per region", 0) != 0;
      if (in_kept) {
        kept += line + "\n";
        continue;
      }
      if (line.rfind("## Per region", 0) == 0) in_details = true;
      if (!in_details && line.rfind("| `luxs", 0) == 0) rows[line.substr(3, line.find('`', 3) - 3)] = line;
      if (in_details && line.rfind("#### `", 0) == 0) current = line.substr(6, line.find('`', 6) - 6);
      if (in_details && !current.empty()) {
        if (line.empty() && details[current].find("\n|") != std::string::npos) {
          current.clear();
          continue;
        }
        details[current] += line + "\n";
      }
    }
  }
  int failures = 0, measured = 0;
  for (const luxtk::CensusEntry* e : luxtk::implemented()) {
    if (!opt.family.empty() && opt.family != e->family) continue;
    const luxtk::AccuracyFamily* fam = luxtk::find_accuracy_family(e->family, e->component_bits());
    if (!fam || e->complex_src() || e->complex_dst()) continue;
    const luxtk::SweepResult r = luxtk::sweep_export(*e, *fam, so);
    const bool pass = r.overall.ulps <= r.bound;
    failures += !pass;
    ++measured;
    std::printf("%-22s bound %-10g %s%s\n", e->name, r.bound,
                luxtk::describe(r.overall, e->inputs() == 2).c_str(), pass ? "" : "  ** ABOVE BOUND **");
    for (const auto& [name, w] : r.regions)
      std::printf("    %-28s %s\n", name.c_str(), luxtk::describe(w, e->inputs() == 2).c_str());
    char row[512];
    const bool two = e->inputs() == 2;
    std::snprintf(row, sizeof row, "| `%s` | %s | %s | %.5g | `%s%s%s` | %ld |", e->name, e->tier,
                  bound_text(r.bound).c_str(), r.overall.ulps, luxtk::hexfloat(r.overall.a).c_str(),
                  two ? ", " : "", two ? luxtk::hexfloat(r.overall.b).c_str() : "", r.overall.count);
    rows[e->name] = row;
    std::string d = "#### `" + std::string(e->name) +
                    "`\n\n| Region | Max error (ulp) | Worst input | Points |\n|---|---|---|---|\n";
    for (const auto& [name, w] : r.regions) {
      std::string cell;  // a '|' inside a region's name would end its table cell
      for (char c : name) cell += c == '|' ? std::string("\\|") : std::string(1, c);
      std::snprintf(row, sizeof row, "| %s | %.5g | `%s%s%s` | %ld |\n", cell.c_str(), w.ulps,
                    luxtk::hexfloat(w.a).c_str(), two ? ", " : "", two ? luxtk::hexfloat(w.b).c_str() : "",
                    w.count);
      d += row;
    }
    details[e->name] = d;
  }
  if (measured == 0) {
    std::fprintf(stderr, "luxvm: nothing to measure%s%s\n", opt.family.empty() ? "" : " for ",
                 opt.family.c_str());
    return 2;
  }
  std::ofstream f(out);
  f << "# Accuracy\n\n"
    << "Maximum error in ulps of the result format, measured against GNU MPFR (" << luxtk::kOraclePrecision
    << "-bit exact values, error taken before rounding) by `luxvm accuracy` on the native x86-64 build. "
    << "Each export is swept over random log-uniform magnitudes across its domain, uniform points in its "
    << "usual range, and every range split with its neighbours (seed " << so.seed
    << "; the Points column counts each export's inputs, runs differ in size). Tier bounds: A24/A53 1 ulp, "
       "A21/A50 8 ulp, A11 2^13 ulp, A26 2^27 "
       "ulp. The exact families (element-wise arithmetic, rounding) are not listed: their tests check every "
       "bit against the C library and IEEE arithmetic.\n\n"
    << "Regenerate with `./luxvm accuracy [FAMILY]`.\n\n"
    << "| Export | Tier | Bound (ulp) | Max error (ulp) | Worst input | Points |\n"
    << "|---|---|---|---|---|---|\n";
  for (const auto& [name, row] : rows) f << row << "\n";
  f << "\n## Per region\n\nThe same sweeps, region by region: where in the domain each maximum lies.\n\n";
  for (const auto& [name, d] : details) f << d << "\n";
  f << kept;
  std::printf("wrote %s (%d exports measured, %d above bound)\n", out.c_str(), measured, failures);
  return failures ? 1 : 0;
}

}  // namespace luxcli
