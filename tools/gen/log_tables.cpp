// Prints one logarithm table from its rule (tools/gen/log_rules.h) as the
// rows of an initialiser, for the .inc file beside the unit:
//   gen_log_tables <table>  > <file>     (tables and files: gen_log_tables list)
//   gen_log_tables all <source root>     writes every file
#include <cstdio>
#include <string>

#include "gen/gen_common.h"
#include "gen/log_rules.h"

namespace {

void print(const loggen::TableInfo& t, std::FILE* out) {
  gen::print_generated_by(out, "log_tables", "gen_log_tables %s > %s", t.name, t.file);
  std::fprintf(out, "// %d rows of (%s); the rule stands in tools/gen/log_rules.h.  Do not edit.\n", t.rows,
               t.columns);
  int i = 0;
  for (const loggen::Row& r : loggen::table_of(t)) {
    gen::print_hex_row(out, "", t.word_bits == 64 ? gen::kHex64Ull : gen::kHex32U, {r[0], r[1], r[2]}, "%d",
                       i);
    ++i;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "list";
  if (what == "list") {
    for (const loggen::TableInfo& t : loggen::kTables) std::printf("%-10s %s\n", t.name, t.file);
    return 0;
  }
  if (what == "all" && argc > 2) {
    for (const loggen::TableInfo& t : loggen::kTables) {
      const std::string path = std::string(argv[2]) + "/" + t.file;
      std::FILE* f = std::fopen(path.c_str(), "w");
      if (!f) {
        std::perror(path.c_str());
        return 1;
      }
      print(t, f);
      std::fclose(f);
    }
    return 0;
  }
  const loggen::TableInfo* t = loggen::find_table(what);
  if (!t) {
    std::fprintf(stderr, "gen_log_tables: unknown table %s (try: list)\n", what.c_str());
    return 2;
  }
  print(*t, stdout);
  return 0;
}
