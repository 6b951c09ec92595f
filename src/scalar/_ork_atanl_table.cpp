// ork_ork_atanl_table_128: atan over the table points of the upper half
// plane, pair n for the angle of (128 - ..., n): atan(n/128) to n = 128,
// pi/2 - atan((256 - n)/128) to 256, pi minus pair 512 - n above.  hi has 32
// significant bits, lo is the rest rounded to double.
#include "scalar/extended_atan.h"

extern "C" alignas(16) const uint64_t ork_ork_atanl_table_128[513][2] = {
#include "scalar/atanl_table.inc"
};
