// luxsCosh_64f_A26: cosh x on binary64 arrays, within 2^27 ulp; max error 3.96 ulp at x =
// 0x1.62e1c2f3daf97p+9 (luxvm accuracy Cosh --points=200000).
//
// One reduction and one table for e^a/2 and e^-a/2 (hyperbolic/dsinhcosh_la.h);
// the same code and an equal table as luxsCosh_64f_A50.
#include "hyperbolic/dsinhcosh_la.h"

namespace {

constexpr lux::dsinhcosh_la::CoshTable kC = lux::dsinhcosh_la::cosh_constants();

}  // namespace

LUXVM_EXPORT luxStatus luxsCosh_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::hyp::run<lux::dsinhcosh_la::Cosh<kC>>(src, dst, len);
}
