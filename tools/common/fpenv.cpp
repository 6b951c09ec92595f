#include "fpenv.h"

namespace luxtk {

std::string flag_names(uint32_t flags) {
  static const char* const kNames[] = {"invalid",  "denormal",  "divide-by-zero",
                                       "overflow", "underflow", "inexact"};
  std::string s;
  for (int b = 0; b < 6; ++b)
    if (flags & (1u << b)) {
      if (!s.empty()) s += ',';
      s += kNames[b];
    }
  return s.empty() ? "none" : s;
}

}  // namespace luxtk
