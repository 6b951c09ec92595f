// Results of a run: printed as tables and written to docs/performance.md,
// where the sections of families not measured in this run survive, and drawn
// as a chart into the PNG file beside it (performance.png).  Each section
// carries its numbers in a comment, from which the chart of the surviving
// sections is drawn again.
#pragma once

#include <string>
#include <vector>

namespace luxbench {

struct Row {
  std::string export_name, range;
  long n = 0;
  double cycles = 0;          // the export, cycles per element
  std::vector<double> peers;  // each peer of the table, same arrays
  double bound = -1;          // memory-bandwidth bound; < 0 where not shown
};

// One family at one element type: its peers are the table's columns.
struct Table {
  std::string type;
  std::vector<std::string> peers;
  bool bound = false;
  std::vector<Row> rows;
};

struct FamilyResult {
  std::string family;
  std::string notes;  // what limits the family's speed; may be empty
  std::vector<Table> tables;
};

struct Machine {
  std::string cpu, caches, compiler, libraries, library, date;
  double tsc_ghz = 0;
  double copy_bytes_per_tick = 0;  // 0 when not measured
  long small = 0, large = 0;
  int runs_small = 0, runs_large = 0;
};

Machine describe_machine();
void print_family(const FamilyResult& r);
// The section of one family: notes, tables and the data comment.
std::string family_section(const FamilyResult& r, const Machine& m);
// The family's tables read back from a section's data comment; no tables
// when the section has none.
FamilyResult parse_section(const std::string& family, const std::string& section);

void write_report(const std::string& path, const Machine& m, const std::vector<FamilyResult>& results);

}  // namespace luxbench
