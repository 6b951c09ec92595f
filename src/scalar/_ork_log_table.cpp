// ork_ork_log_table_256: -ln c_i as T0 + T1 within 2^-75, T1 the leading part
// with 21 significant bits, T0 the rest (below 5e-7); the table term of the
// inverse hyperbolic sine's logarithm step.
#include "scalar/extended.h"

extern "C" alignas(16) const uint64_t ork_ork_log_table_256[256][2] = {
#include "scalar/log_table.inc"
};
