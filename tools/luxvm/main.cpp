// luxvm: the command-line face of the library.
//   luxvm version                       the version record
//   luxvm list [FAMILY]                 exports from the census, implemented or not
//   luxvm eval EXPORT V1 [V2 ...]       evaluate lanes; prints results, status, flags
//   luxvm accuracy [FAMILY] [--seed=N] [--points=N] [--out=FILE]
//                                       MPFR sweeps; writes docs/accuracy.md
//   luxvm core-accuracy [ROUTINE] [--seed=N] [--points=N] [--out=FILE]
//                                       sweeps of the extended core (internal)
//   luxvm digest [FAMILY]               hash of each export's results, status, flags
//   luxvm peers [FAMILY] [--points=N] [--out=FILE]
//                                       exports against the peers' reference data;
//                                       writes the peer section of docs/accuracy.md
//   luxvm bench [FAMILY] [--out=FILE] [--small=N] [--large=N] [--runs=N]
//                                       cycles per element beside the peers (native)
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "common/census.h"
#include "common/fpenv.h"
#include "common/invoke.h"
#include "common/numbers.h"
#include "luxvm.h"
#include "luxvm/commands.h"

namespace {

int usage() {
  std::fprintf(stderr,
               "usage: luxvm version\n"
               "       luxvm list [FAMILY]\n"
               "       luxvm eval EXPORT V1 [V2 ...]   (B shape: a:b; X shape: first value is x=V)\n"
               "       luxvm accuracy [FAMILY] [--seed=N] [--points=N] [--out=FILE]\n"
               "       luxvm core-accuracy [ROUTINE] [--seed=N] [--points=N] [--out=FILE]\n"
               "       luxvm digest [FAMILY]\n"
               "       luxvm peers [FAMILY] [--points=N] [--out=FILE]\n"
               "       luxvm bench [FAMILY] [--out=FILE] [--small=N] [--large=N] [--runs=N]\n");
  return 2;
}

int cmd_version() {
  const LuxLibraryVersion* v = luxvmGetLibVersion();
  std::printf("%s %d.%d (build %d.%d), target %.4s, version \"%s\", built %s\n", v->name, v->major, v->minor,
              v->buildMajor, v->buildMinor, v->targetTag, v->version, v->buildDate);
  return 0;
}

int cmd_list(const char* family) {
  int shown = 0;
  for (const luxtk::CensusEntry& e : luxtk::census()) {
    if (family && std::strcmp(family, e.family) != 0) continue;
    const bool have = luxtk::export_address(e.name) != nullptr;
    std::printf("%-22s %-10s %-4s %-3s %-2s %-12s %s\n", e.name, e.family, e.type, e.tier, e.shape,
                have ? "implemented" : "-", e.statuses);
    ++shown;
  }
  if (shown == 0) {
    std::fprintf(stderr, "luxvm: no family named '%s'\n", family);
    return 2;
  }
  return 0;
}

int cmd_eval(int argc, char** argv) {
  if (argc < 2) return usage();
  const luxtk::CensusEntry* e = luxtk::find_export(argv[0]);
  if (!e) {
    std::fprintf(stderr, "luxvm: unknown export '%s'\n", argv[0]);
    return 2;
  }
  void* fn = luxtk::export_address(e->name);
  if (!fn) {
    std::fprintf(stderr, "luxvm: export '%s' is not implemented in this build\n", e->name);
    return 2;
  }
  const std::string_view shape = e->shape;
  const int bits = e->component_bits();
  const size_t ssz = e->src_size(), dsz = e->dst_size();
  std::vector<unsigned char> x(16, 0);
  int first = 1;
  if (shape == "X") {
    std::string_view t = argv[1];
    if (t.substr(0, 2) == "x=") t.remove_prefix(2);
    if (!luxtk::parse_lane(t, bits, e->complex_src(), x.data())) {
      std::fprintf(stderr, "luxvm: malformed number '%s'\n", argv[1]);
      return 2;
    }
    first = 2;
  }
  const int len = argc - first;
  if (len < 1) return usage();
  std::vector<unsigned char> s1(ssz * len), s2(ssz * len), d1(dsz * len), d2(dsz * len);
  for (int i = 0; i < len; ++i) {
    std::string_view t = argv[first + i];
    std::string_view a = t, b;
    if (shape == "B") {
      const size_t colon = t.find(':');
      if (colon == std::string_view::npos) {
        std::fprintf(stderr, "luxvm: '%s': two-argument exports take lanes as a:b\n", argv[first + i]);
        return 2;
      }
      a = t.substr(0, colon);
      b = t.substr(colon + 1);
    }
    const bool ok = luxtk::parse_lane(a, bits, e->complex_src(), &s1[ssz * i]) &&
                    (shape != "B" || luxtk::parse_lane(b, bits, e->complex_src(), &s2[ssz * i]));
    if (!ok) {
      std::fprintf(stderr, "luxvm: malformed number '%s'\n", argv[first + i]);
      return 2;
    }
  }
  const luxtk::Outcome o = luxtk::run_clean(
      [&] { return luxtk::invoke(*e, fn, s1.data(), s2.data(), x.data(), d1.data(), d2.data(), len); });
  if (shape == "X") std::printf("x = %s\n", luxtk::format_lane(x.data(), bits, e->complex_src()).c_str());
  for (int i = 0; i < len; ++i) {
    std::string in = luxtk::format_lane(&s1[ssz * i], bits, e->complex_src());
    if (shape == "B") in += " : " + luxtk::format_lane(&s2[ssz * i], bits, e->complex_src());
    std::string out = luxtk::format_lane(&d1[dsz * i], bits, e->complex_dst());
    if (shape == "D") out += " ; " + luxtk::format_lane(&d2[dsz * i], bits, e->complex_dst());
    std::printf("[%d] %s -> %s\n", i, in.c_str(), out.c_str());
  }
  std::printf("status %d, flags %s\n", o.status, luxtk::flag_names(o.flags).c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage();
  const std::string_view cmd = argv[1];
  if (cmd == "version") return cmd_version();
  if (cmd == "list") return cmd_list(argc > 2 ? argv[2] : nullptr);
  if (cmd == "eval") return cmd_eval(argc - 2, argv + 2);
  if (cmd == "accuracy") return luxcli::cmd_accuracy(argc - 2, argv + 2);
  if (cmd == "core-accuracy") return luxcli::cmd_core_accuracy(argc - 2, argv + 2);
  if (cmd == "digest") return luxcli::cmd_digest(argc - 2, argv + 2);
  if (cmd == "peers") return luxcli::cmd_peers(argc - 2, argv + 2);
  if (cmd == "bench") return luxcli::cmd_bench(argc - 2, argv + 2);
  std::fprintf(stderr, "luxvm: unknown command '%s'\n", argv[1]);
  return usage();
}
