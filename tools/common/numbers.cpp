#include "numbers.h"

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace luxtk {

namespace {
bool is_hex_digits(std::string_view s) {
  if (s.empty()) return false;
  for (char c : s)
    if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
  return true;
}
}  // namespace

bool parse_component(std::string_view text, int bits, uint64_t* encoding) {
  std::string t(text);
  for (char& c : t) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const bool is32 = bits == 32;
  const uint64_t qnan = is32 ? 0x7FC00000u : 0x7FF8000000000000ull;
  const uint64_t snan = is32 ? 0x7FA00000u : 0x7FF4000000000000ull;
  const uint64_t sign = is32 ? 0x80000000u : 0x8000000000000000ull;
  const uint64_t inf = is32 ? 0x7F800000u : 0x7FF0000000000000ull;
  if (t == "nan" || t == "+nan") return *encoding = qnan, true;
  if (t == "-nan") return *encoding = qnan | sign, true;
  if (t == "snan") return *encoding = snan, true;
  if (t == "-snan") return *encoding = snan | sign, true;
  if (t == "inf" || t == "+inf") return *encoding = inf, true;
  if (t == "-inf") return *encoding = inf | sign, true;
  // A raw bit pattern: 0x followed by hex digits only, no point or exponent.
  if (t.size() > 2 && t[0] == '0' && t[1] == 'x' && is_hex_digits(std::string_view(t).substr(2))) {
    if (t.size() - 2 > size_t(bits / 4)) return false;
    *encoding = std::strtoull(t.c_str() + 2, nullptr, 16);
    return true;
  }
  if (t.empty()) return false;
  char* end = nullptr;
  errno = 0;
  if (is32) {
    const float f = std::strtof(t.c_str(), &end);
    if (end != t.c_str() + t.size()) return false;
    *encoding = float_bits(f);
  } else {
    const double d = std::strtod(t.c_str(), &end);
    if (end != t.c_str() + t.size()) return false;
    *encoding = double_bits(d);
  }
  return true;
}

bool parse_lane(std::string_view text, int bits, bool complex, void* out) {
  uint64_t re = 0, im = 0;
  if (complex) {
    const size_t comma = text.find(',');
    if (comma == std::string_view::npos) return false;
    if (!parse_component(text.substr(0, comma), bits, &re)) return false;
    if (!parse_component(text.substr(comma + 1), bits, &im)) return false;
  } else if (!parse_component(text, bits, &re)) {
    return false;
  }
  if (bits == 32) {
    const uint32_t w[2] = {uint32_t(re), uint32_t(im)};
    std::memcpy(out, w, complex ? 8 : 4);
  } else {
    const uint64_t w[2] = {re, im};
    std::memcpy(out, w, complex ? 16 : 8);
  }
  return true;
}

std::string format_component(uint64_t encoding, int bits) {
  char buf[96];
  if (bits == 32)
    std::snprintf(buf, sizeof buf, "%.9g [0x%08x]", double(bits_to_float(uint32_t(encoding))),
                  unsigned(encoding));
  else
    std::snprintf(buf, sizeof buf, "%.17g [0x%016llx]", bits_to_double(encoding),
                  static_cast<unsigned long long>(encoding));
  return buf;
}

std::string format_lane(const void* lane, int bits, bool complex) {
  uint64_t w[2] = {0, 0};
  if (bits == 32) {
    uint32_t v[2] = {0, 0};
    std::memcpy(v, lane, complex ? 8 : 4);
    w[0] = v[0];
    w[1] = v[1];
  } else {
    std::memcpy(w, lane, complex ? 16 : 8);
  }
  std::string s = format_component(w[0], bits);
  if (complex) s += ", " + format_component(w[1], bits);
  return s;
}

std::string hexfloat(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%a", v);
  return buf;
}

}  // namespace luxtk
