// luxvm core-accuracy: sweeps the extended-precision core (internal routines
// under the complex functions) against MPFR and writes their maxima into
// their own section of docs/accuracy.md (a run of one ROUTINE only prints).
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "extended/core_sweep.h"
#include "luxvm/commands.h"
#include "luxvm/options.h"

namespace luxcli {

int cmd_core_accuracy(int argc, char** argv) {
  Options opt = parse_options(argc, argv);
  if (!opt.ok) return 2;
  const uint64_t seed = opt.seed ? opt.seed : 0x6c75787675ull;
  const long points = opt.points ? opt.points : 200000;
  const std::string out = opt.out.empty() ? std::string(LUXVM_SOURCE_DIR "/docs/accuracy.md") : opt.out;

  std::ostringstream sec;
  sec << kCoreSectionHeading << "\n\n"
      << "Internal routines, not exported: the 80-bit core under the complex functions, run on the x87 unit "
         "at "
         "64-bit precision. Error in ulps of the 64-bit significand against GNU MPFR rounded to the 80-bit "
         "format, measured by `luxvm core-accuracy` on the native build (seed "
      << seed << ", " << points
      << " points per random region). The complex kernels round their results to binary64 once, so an error "
         "of 1 ulp here is 2^-11 ulp of the final result.\n\n"
      << "| Routine | Bound (ulp) | Max error (ulp) | Worst input | Points | Used by "
         "|\n|---|---|---|---|---|---|\n";
  std::ostringstream regions;
  int failures = 0;
  for (const luxcore::Routine& r : luxcore::routines()) {
    if (!opt.family.empty() && std::string(r.name).rfind(opt.family, 0) != 0) continue;
    const luxcore::Result res = luxcore::sweep(r, seed, points);
    const bool pass = res.overall.ulps <= r.bound;
    failures += !pass;
    const auto input = [&r](const luxcore::Worst& w) {
      return luxcore::hex80(w.x) + (r.fn2 ? ", " + luxcore::hex80(w.y) : std::string());
    };
    std::printf("%-18s max %.4g ulp at %s%s\n", r.name, res.overall.ulps, input(res.overall).c_str(),
                pass ? "" : "  ** ABOVE BOUND **");
    char row[512];
    std::snprintf(row, sizeof row, "| `%s` | %g | %.4g | `%s` | %ld | %s |\n", r.name, r.bound,
                  res.overall.ulps, input(res.overall).c_str(), res.overall.count, r.use);
    sec << row;
    regions << "#### `" << r.name
            << "`\n\n| Region | Max error (ulp) | Worst input | Points |\n|---|---|---|---|\n";
    for (const auto& [name, w] : res.regions) {
      std::printf("    %-42s %.4g ulp at %s\n", name.c_str(), w.ulps, input(w).c_str());
      std::snprintf(row, sizeof row, "| %s | %.4g | `%s` | %ld |\n", name.c_str(), w.ulps, input(w).c_str(),
                    w.count);
      regions << row;
    }
    regions << "\n";
  }
  sec << "\n" << regions.str();
  if (!opt.family.empty()) {  // a partial run reports, the section keeps every routine
    std::printf("(one routine measured: %s left as it stands)\n", out.c_str());
    return failures ? 1 : 0;
  }

  // Replace the section (from its heading to the next "## " heading) or
  // append it.
  std::string doc;
  {
    std::ifstream in(out);
    std::ostringstream all;
    all << in.rdbuf();
    doc = all.str();
  }
  const size_t start = doc.find(std::string(kCoreSectionHeading) + "\n");
  if (start == std::string::npos) {
    if (!doc.empty() && doc.back() != '\n') doc += "\n";
    doc += (doc.empty() ? "" : "\n") + sec.str();
  } else {
    const size_t next = doc.find("\n## ", start + 1);
    doc.replace(start, next == std::string::npos ? std::string::npos : next + 1 - start, sec.str());
  }
  while (doc.size() > 1 && doc[doc.size() - 1] == '\n' && doc[doc.size() - 2] == '\n') doc.pop_back();
  std::ofstream(out) << doc;
  std::printf("wrote %s (%d above bound)\n", out.c_str(), failures);
  return failures ? 1 : 0;
}

}  // namespace luxcli
