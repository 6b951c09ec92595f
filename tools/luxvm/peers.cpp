// luxvm peers: runs every implemented export over the peer reference data
// that serves its family and type (see common/peers.h), prints the largest
// error and its input per export, and writes them as the "Peer data" section
// of docs/accuracy.md.  --points=N keeps every glibc row and at most N others
// per file (the emulated build's test runs a sample).  Exit status: 0 when every export is within its tier
// bound, 1 when one is not, 77 when the data directory is absent.
#include "common/peers.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "common/census.h"
#include "luxvm/commands.h"
#include "luxvm/options.h"

namespace luxcli {

namespace {

constexpr const char* kHeading = "## Peer data";

std::string bound_cell(double bound) {
  int e = 0;
  if (bound > 64 && std::frexp(bound, &e) == 0.5) return "2^" + std::to_string(e - 1);
  char buf[32];
  std::snprintf(buf, sizeof buf, "%g", bound);
  return buf;
}

// Replaces the peer section of the report (from its heading to the next
// "## " heading or the end) and keeps everything else as it was.
void write_section(const std::string& path, const std::map<std::string, std::string>& rows) {
  std::string before, after, line;
  std::map<std::string, std::string> all;
  {
    std::ifstream in(path);
    int part = 0;  // 0 before the section, 1 inside, 2 after
    while (std::getline(in, line)) {
      if (part == 0 && line == kHeading)
        part = 1;
      else if (part == 1 && line.rfind("## ", 0) == 0)
        part = 2;
      if (part == 0) before += line + "\n";
      if (part == 2) after += line + "\n";
      if (part == 1 && line.rfind("| `luxs", 0) == 0) all[line.substr(3, line.find('`', 3) - 3)] = line;
    }
  }
  for (const auto& [name, row] : rows) all[name] = row;
  std::ofstream f(path);
  f << before;
  if (!before.empty() && before.size() >= 2 && before.substr(before.size() - 2) != "\n\n") f << "\n";
  f << kHeading << "\n\n"
    << "The same exports on data that this project did not produce: the correctly rounded results of glibc's "
       "libm test tables and of CORE-MATH's hard-to-round inputs, read from `../shared/peerdata` by `luxvm "
       "peers [FAMILY]` on the native build. Those values are known only as the rounded result and the side "
       "on which the exact value lies, so the error shown is an upper bound: it takes the end of that "
       "half-ulp interval farther from the result (a correctly rounded result may show 0.5). The sign of a "
       "zero is no error in ulps; the rows where a zero result has the other sign than the peers' exact zero "
       "are counted apart, with the first of them.\n\n"
    << "| Export | Tier | Bound (ulp) | Max error (ulp, at most) | Worst input -> result (peer) | Rows | "
       "Zeros of the other sign | Files |\n"
    << "|---|---|---|---|---|---|---|---|\n";
  for (const auto& [name, row] : all) f << row << "\n";
  if (!after.empty()) f << "\n" << after;
}

}  // namespace

int cmd_peers(int argc, char** argv) {
  Options opt = parse_options(argc, argv);
  if (!opt.ok) return 2;
  const std::string dir = luxtk::peer_data_dir();
  if (dir.empty()) {
    std::printf(
        "luxvm: no peer data (shared/peerdata beside the source tree, or $LUXVM_PEERDATA): skipped\n");
    return 77;
  }
  const std::string out = opt.out.empty() ? std::string(LUXVM_SOURCE_DIR "/docs/accuracy.md") : opt.out;
  std::map<std::string, std::string> rows;
  int failures = 0, checked = 0;
  for (const luxtk::CensusEntry* e : luxtk::implemented()) {
    if (!opt.family.empty() && opt.family != e->family) continue;
    const luxtk::PeerResult r = luxtk::peer_check(*e, dir, opt.points);
    if (r.rows == 0) continue;
    ++checked;
    const bool pass = r.worst.ulps <= r.bound;
    failures += !pass;
    std::string files;
    for (const std::string& s : r.files) files += (files.empty() ? "" : ", ") + s;
    const std::string where = luxtk::describe_peer(*e, r.worst);
    const std::string zeros = r.zero_signs ? std::to_string(r.zero_signs) + " (`" +
                                                 luxtk::describe_peer(*e, r.zero_sign_example) + "`)"
                                           : std::string("0");
    std::printf("%-22s bound %-10g max %-10.4g %6ld rows  %s%s\n", e->name, r.bound, r.worst.ulps, r.rows,
                where.c_str(), pass ? "" : "  ** ABOVE BOUND **");
    if (r.zero_signs) std::printf("    zeros of the other sign: %s\n", zeros.c_str());
    std::ostringstream row;
    char err[32];
    std::snprintf(err, sizeof err, "%.4g", r.worst.ulps);
    row << "| `" << e->name << "` | " << e->tier << " | " << bound_cell(r.bound) << " | " << err << " | `"
        << where << "` (line " << r.worst.row.line << ") | " << r.rows << " | " << zeros << " | " << files
        << " |";
    rows[e->name] = row.str();
  }
  if (checked == 0) {
    std::fprintf(stderr, "luxvm: no implemented export%s%s has peer data\n", opt.family.empty() ? "" : " of ",
                 opt.family.c_str());
    return opt.family.empty() ? 0 : 2;
  }
  write_section(out, rows);
  std::printf("wrote the peer section of %s (%d exports checked, %d above bound)\n", out.c_str(), checked,
              failures);
  return failures ? 1 : 0;
}

}  // namespace luxcli
