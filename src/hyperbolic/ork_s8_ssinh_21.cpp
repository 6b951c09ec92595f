// luxsSinh_32f_A21: sinh x on binary32 arrays, within 8 ulp; max error 4.03 ulp at x = 0x1.c67cd8p-3 (luxvm
// accuracy Sinh --points=200000).
//
// e^a/2 and e^-a/2 from one reduction and one table row
// (hyperbolic/ssinhcosh_la.h), no lane branch below 89.41; the lane routine
// scales the top zone and stores the overflows.
#include "hyperbolic/ssinhcosh_la.h"

namespace {

constexpr lux::ssinhcosh_la::Table kC = lux::ssinhcosh_la::constants(true);

}  // namespace

LUXVM_EXPORT luxStatus luxsSinh_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::hyp::run<lux::ssinhcosh_la::Tier<true, true, kC>>(src, dst, len);
}
