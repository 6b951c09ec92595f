#include "peers.h"

#include <mpfr.h>
#include <sys/stat.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "fpenv.h"
#include "invoke.h"
#include "numbers.h"
#include "oracle.h"

namespace luxtk {

namespace {

bool is_dir(const std::string& p) {
  struct stat st;
  return !p.empty() && stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool is_file(const std::string& p) {
  struct stat st;
  return stat(p.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool is_dir_token(const std::string& t) { return t == "0" || t == "+" || t == "-"; }

// The base name of a family's peer files: its name in lower case, except
// where the peers call the function otherwise.
std::string peer_base(const std::string& family) {
  if (family == "Ln") return "log";
  if (family == "InvSqrt") return "rsqrt";
  if (family == "Powx") return "pow";
  std::string s = family;
  for (char& c : s) c = char(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

double value_of(uint64_t u, int bits) {
  return bits == 32 ? double(bits_to_float(uint32_t(u))) : bits_to_double(u);
}

// The neighbour of a finite value in the format, one step up or down.
double neighbour(double v, int bits, int dir) {
  if (bits == 32) return double(std::nextafter(float(v), dir > 0 ? INFINITY : -INFINITY));
  return std::nextafter(v, dir > 0 ? INFINITY : -INFINITY);
}

void store_component(unsigned char* p, uint64_t u, int bits) {
  if (bits == 32) {
    const uint32_t w = uint32_t(u);
    std::memcpy(p, &w, 4);
  } else {
    std::memcpy(p, &u, 8);
  }
}

uint64_t load_component(const unsigned char* p, int bits) {
  if (bits == 32) {
    uint32_t w;
    std::memcpy(&w, p, 4);
    return w;
  }
  uint64_t u;
  std::memcpy(&u, p, 8);
  return u;
}

}  // namespace

std::string peer_data_dir() {
  if (const char* env = std::getenv("LUXVM_PEERDATA")) return is_dir(env) ? std::string(env) : std::string();
  // Beside the checkout, or beside the directory that holds a worktree.
  for (const char* d : {LUXVM_SOURCE_DIR "/../shared/peerdata", LUXVM_SOURCE_DIR "/../../shared/peerdata"})
    if (is_dir(d)) return d;
  return {};
}

std::vector<PeerRow> read_peer_file(const std::string& path, const std::string& type) {
  std::vector<PeerRow> rows;
  std::ifstream in(path);
  std::string line;
  int n = 0;
  while (std::getline(in, line)) {
    ++n;
    if (line.empty() || line[0] == '#') continue;
    std::istringstream ls(line);
    std::string func, t, tok;
    ls >> func >> t;
    if (t != type) continue;
    std::vector<std::string> toks;
    PeerRow r;
    r.line = n;
    while (ls >> tok) {
      if (tok == "nosign")
        r.nosign = true;
      else if (tok.find(':') == std::string::npos)
        toks.push_back(tok);
      else
        r.glibc = tok.rfind("glibc:", 0) == 0;
    }
    // Inputs, then (RN, DIR) pairs.
    size_t first_dir = 0;
    while (first_dir < toks.size() && !is_dir_token(toks[first_dir])) ++first_dir;
    if (first_dir == 0 || first_dir >= toks.size()) continue;
    r.inputs = int(first_dir) - 1;
    if (r.inputs < 1 || r.inputs > 4) continue;
    for (int i = 0; i < r.inputs; ++i) r.in[i] = std::strtoull(toks[i].c_str(), nullptr, 16);
    bool ok = true;
    for (size_t k = first_dir - 1; k < toks.size(); k += 2) {
      if (k + 1 >= toks.size() || r.outputs == 2 || !is_dir_token(toks[k + 1])) {
        ok = false;
        break;
      }
      PeerValue& v = r.out[r.outputs++];
      v.rn = std::strtoull(toks[k].c_str(), nullptr, 16);
      v.dir = toks[k + 1] == "+" ? 1 : toks[k + 1] == "-" ? -1 : 0;
    }
    if (ok && r.outputs > 0) rows.push_back(r);
  }
  return rows;
}

std::vector<PeerSource> peer_sources(const CensusEntry& e) {
  const std::string type = e.type;
  const std::string family = e.family;
  const bool complex_type = type.back() == 'c';
  const std::string real_type = complex_type ? type.substr(0, type.size() - 1) : type;
  // cos x + i sin x from the rows of sin and cos together.
  if (family == "CIS") return {{"sincos", real_type}};
  const std::string base = peer_base(family);
  return {{complex_type ? "c" + base : base, type}};
}

bool zero_sign_differs(uint64_t got, const PeerValue& want, int bits, bool nosign) {
  const uint64_t sign = bits == 32 ? 0x80000000ull : 0x8000000000000000ull;
  const bool zeros = value_of(got, bits) == 0 && value_of(want.rn, bits) == 0;
  return zeros && !nosign && want.dir == 0 && ((got ^ want.rn) & sign) != 0;
}

double peer_error(uint64_t got, const PeerValue& want, int bits, bool nosign) {
  const double g = value_of(got, bits), rn = value_of(want.rn, bits);
  if (std::isnan(rn)) return std::isnan(g) ? 0.0 : INFINITY;
  if (std::isnan(g)) return INFINITY;
  if (std::isinf(rn)) {
    if (nosign) return std::isinf(g) ? 0.0 : INFINITY;
    return g == rn ? 0.0 : INFINITY;
  }
  mpfr_t exact;
  mpfr_init2(exact, 128);
  mpfr_set_d(exact, rn, MPFR_RNDN);
  const int side = g > rn ? 1 : g < rn ? -1 : 0;
  if (want.dir != 0 && side != want.dir) {
    // The exact value may lie as far as the midpoint on the other side.
    mpfr_t nb;
    mpfr_init2(nb, 128);
    mpfr_set_d(nb, neighbour(rn, bits, want.dir), MPFR_RNDN);
    if (mpfr_inf_p(nb)) {  // above the largest finite: its ulp continued
      mpfr_set_d(nb, rn - neighbour(rn, bits, -want.dir), MPFR_RNDN);
      mpfr_add_d(nb, nb, rn, MPFR_RNDN);
    }
    mpfr_add(exact, exact, nb, MPFR_RNDN);
    mpfr_div_2ui(exact, exact, 1, MPFR_RNDN);
    mpfr_clear(nb);
  }
  double u;
  if (mpfr_zero_p(exact)) {  // steps of the denormal grid from zero
    u = std::fabs(g) / (bits == 32 ? 0x1p-149 : 0x1p-1074);
  } else {
    u = ulp_error(g, exact, bits);
  }
  mpfr_clear(exact);
  return u;
}

PeerResult peer_check(const CensusEntry& e, const std::string& dir, long sample) {
  PeerResult res;
  res.export_name = e.name;
  res.bound = tier_bound_ulps(e.tier);
  if (const AccuracyFamily* fam = find_accuracy_family(e.family, e.component_bits()); fam && fam->bound)
    res.bound = fam->bound(e);
  void* fn = export_address(e.name);
  if (!fn || dir.empty()) return res;
  const std::string shape = e.shape;
  const int bits = e.component_bits();
  const int cb = bits / 8;
  const int src_parts = e.complex_src() ? 2 : 1, dst_parts = e.complex_dst() ? 2 : 1;
  const int in_parts = shape == "X" || shape == "B" ? 2 * src_parts : src_parts;
  const int out_parts = shape == "D" ? 2 : dst_parts;
  const bool cis = std::string(e.family) == "CIS";
  for (const PeerSource& s : peer_sources(e)) {
    const std::string path = dir + "/" + s.file + ".txt";
    if (!is_file(path)) continue;
    // The files serve several exports each: read once per type.
    static std::map<std::string, std::vector<PeerRow>> cache;
    const std::string key = path + " " + s.type;
    if (!cache.count(key)) cache[key] = read_peer_file(path, s.type);
    std::vector<PeerRow> rows = cache[key];
    std::erase_if(rows, [&](const PeerRow& r) { return r.inputs != in_parts || r.outputs != out_parts; });
    if (sample > 0) {
      long others = 0, k = 0;
      for (const PeerRow& r : rows) others += !r.glibc;
      const long stride = (others + sample - 1) / sample;
      std::erase_if(rows, [&](const PeerRow& r) { return !r.glibc && k++ % stride != 0; });
    }
    if (rows.empty()) continue;
    res.files.push_back(s.file);
    const size_t n = rows.size();
    std::vector<unsigned char> s1(n * e.src_size()), s2(n * e.src_size()), d1(n * e.dst_size()),
        d2(n * e.dst_size());
    for (size_t i = 0; i < n; ++i)
      for (int p = 0; p < in_parts; ++p) {
        // Second-source components go to src2 (B) or stay for the scalar (X).
        const bool second = p >= src_parts;
        unsigned char* base = second ? &s2[i * e.src_size()] : &s1[i * e.src_size()];
        store_component(base + cb * (p % src_parts), rows[i].in[p], bits);
      }
    if (shape == "X") {
      for (size_t i = 0; i < n; ++i)
        run_clean([&] {
          return invoke(e, fn, &s1[i * e.src_size()], nullptr, &s2[i * e.src_size()], &d1[i * e.dst_size()],
                        nullptr, 1);
        });
    } else {
      run_clean([&] { return invoke(e, fn, s1.data(), s2.data(), nullptr, d1.data(), d2.data(), int(n)); });
    }
    for (size_t i = 0; i < n; ++i) {
      const PeerRow& r = rows[i];
      uint64_t got[2];
      if (shape == "D") {
        got[0] = load_component(&d1[i * e.dst_size()], bits);
        got[1] = load_component(&d2[i * e.dst_size()], bits);
      } else {
        for (int p = 0; p < dst_parts; ++p) got[p] = load_component(&d1[i * e.dst_size() + cb * p], bits);
      }
      // CIS: (cos, sin) against the rows' (sin, cos).
      const PeerValue w0 = cis ? r.out[1] : r.out[0], w1 = cis ? r.out[0] : r.out[1];
      double err = peer_error(got[0], w0, bits, r.nosign);
      if (out_parts == 2) err = std::fmax(err, peer_error(got[1], w1, bits, r.nosign));
      ++res.rows;
      if (zero_sign_differs(got[0], w0, bits, r.nosign) ||
          (out_parts == 2 && zero_sign_differs(got[1], w1, bits, r.nosign))) {
        if (res.zero_signs++ == 0) {
          res.zero_sign_example.row = r;
          res.zero_sign_example.got[0] = got[0];
          res.zero_sign_example.got[1] = got[1];
        }
      }
      if (err > res.worst.ulps || res.rows == 1) {
        res.worst.ulps = err;
        res.worst.row = r;
        res.worst.got[0] = got[0];
        res.worst.got[1] = got[1];
      }
    }
  }
  return res;
}

std::string describe_peer(const CensusEntry& e, const PeerWorst& w) {
  const int bits = e.component_bits();
  const auto hex = [&](uint64_t u) { return hexfloat(value_of(u, bits)); };
  std::string s;
  for (int i = 0; i < w.row.inputs; ++i) s += (i ? ", " : "") + hex(w.row.in[i]);
  s += " -> ";
  for (int i = 0; i < w.row.outputs; ++i) s += (i ? ", " : "") + hex(w.got[i]);
  s += " (peer ";
  const bool cis = std::string(e.family) == "CIS";
  for (int i = 0; i < w.row.outputs; ++i) {
    const PeerValue& v = w.row.out[cis ? w.row.outputs - 1 - i : i];
    s += (i ? ", " : "") + hex(v.rn) + (v.dir > 0 ? "+" : v.dir < 0 ? "-" : "");
  }
  return s + ")";
}

}  // namespace luxtk
