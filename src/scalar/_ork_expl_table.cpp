// ork_ork_expl_table_256: 2^(j/256) for j = -128..128 as hi + lo, hi with
// 32 significant bits so that its product by a 32-bit reduced argument is
// exact; lo = RN(2^(j/256) - hi).  Shared by the extended exponential and
// hyperbolic routines.
#include "scalar/extended.h"

extern "C" alignas(16) const uint64_t ork_ork_expl_table_256[257][2] = {
#include "scalar/expl_table.inc"
};
