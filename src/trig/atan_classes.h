// The five argument classes of the binary64 inverse tangent and two-argument
// inverse tangent: per class the subtracted tangent b, a mask that keeps or
// drops the argument in the numerator, and atan b as head and tail:
//   head = RN(atan b), tail = RN(atan b - head), b = inf (pi/2), 1.5, 1, 0.5, 0.
// Columns rather than rows: the kernels fetch one entry per lane.
#pragma once

#include <stdint.h>

namespace lux {

struct alignas(16) AtanClasses64 {
  uint64_t shift[6];     // b (class 0: 1.0, to form -1/a)
  uint64_t mask[6];      // all ones, or none in class 0
  uint64_t mask_one[6];  // mask & 1.0: the denominator's constant
  uint64_t head[6];
  uint64_t tail[6];
};

inline constexpr AtanClasses64 kAtanClasses64 = {
    {0x3FF0000000000000, 0x3FF8000000000000, 0x3FF0000000000000, 0x3FE0000000000000, 0, 0},
    {0, ~0ull, ~0ull, ~0ull, ~0ull, 0},
    {0, 0x3FF0000000000000, 0x3FF0000000000000, 0x3FF0000000000000, 0x3FF0000000000000, 0},
#include "trig/atan_classes64.inc"
};

}  // namespace lux
