// luxsCosh_32f_A11: cosh x on binary32 arrays, within 2^13 ulp; max error 298 ulp at x = 0x1.57b154p+6 (luxvm
// accuracy Cosh --points=200000).
//
// e^a/2 and e^-a/2 from one reduction and one table row
// (hyperbolic/ssinhcosh_la.h), no lane branch below 89.41; the lane routine
// scales the top zone and stores the overflows.
#include "hyperbolic/ssinhcosh_la.h"

namespace {

constexpr lux::ssinhcosh_la::Table kC = lux::ssinhcosh_la::constants(false);

}  // namespace

LUXVM_EXPORT luxStatus luxsCosh_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::hyp::run<lux::ssinhcosh_la::Tier<false, false, kC>>(src, dst, len);
}
