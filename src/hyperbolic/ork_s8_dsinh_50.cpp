// luxsSinh_64f_A50: sinh x on binary64 arrays, within 8 ulp; max error 3.21 ulp at x = 0x1.f4160d4eb60a9p-3
// (luxvm accuracy Sinh --points=200000).
//
// One reduction and one table for e^a/2 and e^-a/2 (hyperbolic/dsinhcosh_la.h);
// the same code and an equal table as luxsSinh_64f_A26.
#include "hyperbolic/dsinhcosh_la.h"

namespace {

constexpr lux::dsinhcosh_la::SinhTable kC = lux::dsinhcosh_la::sinh_constants();

}  // namespace

LUXVM_EXPORT luxStatus luxsSinh_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::hyp::run<lux::dsinhcosh_la::Sinh<kC>>(src, dst, len);
}
