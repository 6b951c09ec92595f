// orkfabsl_scalar: |x| in the 80-bit format; a NaN is quieted and comes back
// with its sign cleared, -0 gives +0.  Exact.
#include "scalar/extended.h"

using namespace lux::x80;

extern "C" long double orkfabsl_scalar(long double x) {
  if (is_nan(x)) {
    const ld q = quiet(x);
    return from_image(image(q).sig, uint16_t(image(q).se & 0x7FFF));
  }
  return x * opaque(value(kOnes[image(x).se >> 15]));
}
