// The exception reporter.  A warning's IEEE flag is raised the honest way, by
// carrying out one binary64 operation of the right kind in the vector unit:
//   19 invalid            0/0
//   18 divide-by-zero     1/0
//   12 overflow, inexact  largest finite squared
//   17 underflow, inexact (smallest normal with its last bit set) squared
// The operands are hidden from the optimiser and the result is kept alive, so
// the operation cannot be folded or removed.
#include <stdint.h>

#include "frame/frame.h"

namespace {

// _orkdSpecialTab: 0x0010000000000001, 0x7FEFFFFFFFFFFFFF, 0.0, 1.0.
struct alignas(16) SpecialTab {
  uint64_t tiny_normal;
  uint64_t largest;
  uint64_t zero;
  uint64_t one;
};
constexpr SpecialTab kOrkdSpecialTab = {0x0010000000000001ull, 0x7FEFFFFFFFFFFFFFull, 0ull,
                                        0x3FF0000000000000ull};

inline double bits_to_double(uint64_t b) { return __builtin_bit_cast(double, b); }

// Opaque to the compiler: a value whose origin it cannot see.
inline double opaque(double v) {
  asm volatile("" : "+x"(v));
  return v;
}
inline void keep(double v) { asm volatile("" : : "x"(v)); }

void raise_for(int code) {
  switch (code) {
    case luxWarnDomain:
      keep(opaque(bits_to_double(kOrkdSpecialTab.zero)) / opaque(bits_to_double(kOrkdSpecialTab.zero)));
      break;
    case luxWarnSingularity:
      keep(opaque(bits_to_double(kOrkdSpecialTab.one)) / opaque(bits_to_double(kOrkdSpecialTab.zero)));
      break;
    case luxWarnOverflow:
      keep(opaque(bits_to_double(kOrkdSpecialTab.largest)) * opaque(bits_to_double(kOrkdSpecialTab.largest)));
      break;
    case luxWarnUnderflow:
      keep(opaque(bits_to_double(kOrkdSpecialTab.tiny_normal)) *
           opaque(bits_to_double(kOrkdSpecialTab.tiny_normal)));
      break;
    default:
      break;
  }
}

}  // namespace

extern "C" void orksError(int code, int, const void*, const void*, void*, void*, const char*) {
  raise_for(code);
}
extern "C" void orkdError(int code, int, const void*, const void*, void*, void*, const char*) {
  raise_for(code);
}
