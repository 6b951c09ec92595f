// luxsAtan2_64f_A26: two-argument inverse tangent of binary64 to about 26
// bits: the classes of datan2.h with a direct division and a short
// polynomial, no tails.
// max error 9.65e+06 ulp at y = 0x1.8b4216c36d542p-4, x = 0x1.c7763c8dc343fp-2 (luxvm accuracy).
#include "trig/datan2.h"

LUXVM_EXPORT luxStatus luxsAtan2_64f_A26(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  return lux::atan2_64::run(src1, src2, dst, len, lux::atan2_64::pass<false>, lux::atan2_64::lane<false>);
}
