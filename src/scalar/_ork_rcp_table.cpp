// ork_ork_rcp_table_256: c_i = round(2048 / (1 + (i + 1/2)/256)) / 2048, the
// reciprocal of the middle of the i-th 1/256 step of [1, 2) on a grid of
// 2^-11; 12 significant bits, so that c_i times a 32-bit value is exact in
// the 64-bit significand.  The logarithm step's first factor.
#include "scalar/extended.h"

extern "C" alignas(16) const uint32_t ork_ork_rcp_table_256[256] = {
#include "scalar/rcp_table.inc"
};
