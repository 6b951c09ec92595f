// The masked-lanes loop (frame kind F5) of the hardware-division tiers, with
// the offending lanes walked by a plain loop: a bit scan by __builtin_ctz
// is encoded as tzcnt (rep bsf), which the instruction-set check refuses.
#pragma once

#include "frame/frame.h"

namespace lux {

// K provides unsigned block(int i), unsigned tail(int i), void offend(int i)
// as for run_masked.
template <int Block, class K>
inline void run_masked_walk(int len, K& k) {
  const int n = main_loop_end<Block>(len);
  for (int i = 0; i < n; i += Block) {
    const unsigned mask = k.block(i);
    if (__builtin_expect(mask != 0, 0))
      for (int b = 0; b < Block; ++b)
        if (mask & (1u << b)) k.offend(i + b);
  }
  for (int i = n; i < len; ++i)
    if (k.tail(i)) k.offend(i);
}

}  // namespace lux
