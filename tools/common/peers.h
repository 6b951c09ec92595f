// Checking exports against peer reference data: correctly rounded results that
// other projects publish (glibc's libm test tables, hard cases for correct
// rounding), kept outside this repository.  One file per function,
// "<name>.txt", complex ones c-prefixed; each line
//   FUNC TYPE IN [IN2] RN DIR SOURCE              real
//   FUNC TYPE IN RNSIN DIRSIN RNCOS DIRCOS SOURCE  sincos
//   FUNC TYPE RE IM RN DIR SOURCE                  cabs, carg
//   FUNC TYPE RE IM RNRE DIRRE RNIM DIRIM SOURCE [nosign]
//   FUNC TYPE ZRE ZIM WRE WIM RNRE DIRRE RNIM DIRIM SOURCE [nosign]  cpow
// with bit patterns in hex and DIR '0' (RN is exact), '+' (the exact value
// lies above RN) or '-' (below).
//
// Which files serve an export follows from its family and type alone, so a
// family is checked as soon as its exports exist.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "census.h"

namespace luxtk {

// The data directory: $LUXVM_PEERDATA, else shared/peerdata beside the
// source tree (or beside the directory that holds it, for a worktree).
// Empty when none exists.
std::string peer_data_dir();

// One expected component: the correctly rounded value and where the exact one lies.
struct PeerValue {
  uint64_t rn = 0;
  int dir = 0;  // -1, 0, +1
};

struct PeerRow {
  uint64_t in[4] = {};  // input components in argument order (a, b; re, im; z, w)
  int inputs = 0;
  PeerValue out[2];  // result components: one real, or (re, im), or (sin, cos)
  int outputs = 0;
  bool nosign = false;  // the sign of a zero or infinite part is not fixed
  bool glibc = false;   // from glibc's tables (the rest are hard cases for correct rounding)
  int line = 0;
};

// The rows of a peer file for one type ("32f", "64f", "32fc", "64fc").
std::vector<PeerRow> read_peer_file(const std::string& path, const std::string& type);

// Peer files (base names) that serve the export, with the row type to read.
struct PeerSource {
  std::string file;  // "exp", "cexp", "sincos", ...
  std::string type;  // the rows' type
};
std::vector<PeerSource> peer_sources(const CensusEntry& e);

// Upper bound of the error of `got` in ulps of the format (bits 32 or 64)
// against a value known only as RN and DIR: the exact value lies between RN
// and the midpoint to RN's neighbour on the DIR side, and the bound takes the
// end of that interval farther from `got`.  NaN against NaN and equal
// infinities count 0; anything else against a NaN or an infinity counts
// infinity.  The sign of a zero is not an error in ulps: see zero_sign_differs.
double peer_error(uint64_t got, const PeerValue& want, int bits, bool nosign);
// A zero result whose sign differs from an exact zero of the peers that fixes it.
bool zero_sign_differs(uint64_t got, const PeerValue& want, int bits, bool nosign);

struct PeerWorst {
  double ulps = 0;
  PeerRow row;
  uint64_t got[2] = {};
};

struct PeerResult {
  std::string export_name;
  double bound = 0;
  long rows = 0;
  PeerWorst worst;
  long zero_signs = 0;  // rows with a zero of the other sign, and the first of them
  PeerWorst zero_sign_example;
  std::vector<std::string> files;
};

// Runs the export over every row of its peer files in `dir` (one call per
// file for the array shapes, one per row for Powx with its fixed x).
// rows == 0 when no file serves it.  A positive `sample` keeps every glibc
// row and an even sample of at most that many other rows per file.
PeerResult peer_check(const CensusEntry& e, const std::string& dir, long sample = 0);

// "a = 0x1.8p+1, b = ..." of a row's inputs, and its expected and got values.
std::string describe_peer(const CensusEntry& e, const PeerWorst& w);

}  // namespace luxtk
