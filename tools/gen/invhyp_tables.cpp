// Prints one table of the inverse hyperbolic functions from its rule
// (tools/gen/invhyp_rules.h) as the rows of an initialiser:
//   gen_invhyp_tables <table>  > <file>     (tables and files: gen_invhyp_tables list)
//   gen_invhyp_tables all <source root>     writes every file
#include <cstdio>
#include <string>

#include "gen/gen_common.h"
#include "gen/invhyp_rules.h"

namespace {

void print(const invhypgen::TableInfo& t, std::FILE* out) {
  gen::print_generated_by(out, "invhyp_tables", "gen_invhyp_tables %s > %s", t.name, t.file);
  std::fprintf(out, "// %d rows of (%s); the rule stands in tools/gen/invhyp_rules.h.  Do not edit.\n",
               t.rows, t.columns);
  int i = 0;
  for (const invhypgen::Row& r : invhypgen::table_of(t)) {
    if (r.size() == 3)
      gen::print_hex_row(out, "", gen::kHex64Ull, {r[0], r[1], r[2]}, "%d", i);
    else
      gen::print_hex_row(out, "", gen::kHex64Ull, {r[0], r[1], r[2], r[3]}, "%d", i);
    ++i;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "list";
  if (what == "list") {
    for (const invhypgen::TableInfo& t : invhypgen::kTables) std::printf("%-10s %s\n", t.name, t.file);
    return 0;
  }
  if (what == "all" && argc > 2) {
    for (const invhypgen::TableInfo& t : invhypgen::kTables) {
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
  const invhypgen::TableInfo* t = invhypgen::find_table(what);
  if (!t) {
    std::fprintf(stderr, "gen_invhyp_tables: unknown table %s (try: list)\n", what.c_str());
    return 2;
  }
  print(*t, stdout);
  return 0;
}
