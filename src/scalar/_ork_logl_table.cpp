// ork_ork_logl_table_256: -ln c_i as hi + lo (hi with 40 significant bits,
// lo = RN(-ln c_i - hi), together within 2^-93 of -ln c_i), the table term
// of the logarithm step.
#include "scalar/extended.h"

extern "C" alignas(16) const uint64_t ork_ork_logl_table_256[256][2] = {
#include "scalar/logl_table.inc"
};
