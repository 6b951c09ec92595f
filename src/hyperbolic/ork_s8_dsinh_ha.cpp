// luxsSinh_64f_A53: sinh x on binary64 arrays, within 1 ulp; max error 0.754 ulp at x = -0x1.564986827fdcp-1
// (luxvm accuracy Sinh --points=200000).
//
// e^a/2 and e^-a/2 from one reduction and two rows of one table, combined
// as in hyperbolic/dsinhcosh_ha.h; below |x| = 0.035 an odd Taylor
// polynomial on the x87 at 64-bit precision; from 708.40 on the lane
// routine: e^a/2 alone, split scale at the top, overflow from
// 710.475860073944.
#include "hyperbolic/dsinhcosh_ha.h"

namespace {

using lux::row64;

constexpr lux::dsinhcosh_ha::Table kC = {
    .dbR = row64(0x40571547652B82FE),         // 92.33248261689366
    .dbShifter = row64(0x4338000000000000),   // 6755399441055744.0
    .dbL1 = row64(0x3F862E42FEF00000),        // 0.010830424695086549
    .dbL2 = row64(0x3D7473DE6AF278ED),        // 1.162596423439437e-12
    .dbC5 = row64(0x3F81111276409C2C),        // 0.008333343728805863
    .dbC4 = row64(0x3FA555574BC3A1BE),        // 0.04166672515731616
    .dbC3 = row64(0x3FC55555555542A1),        // 0.16666666666653376
    .dbC2 = row64(0x3FDFFFFFFFFFD97C),        // 0.49999999999945266
    .dbBias = row64(0x000000000000FF80),      // 1022*64
    .dbExpMask = row64(0x7FF0000000000000),   //
    .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF),   //
    .dbTwoP1023 = row64(0x7FE0000000000000),  // 8.98846567431158e+307
    .dbTwo = row64(0x4000000000000000),       // 2.0
    .ldC3 = 0xAAAAAAAAAAAAAAABp-66L,          // 1/6: 0x3FFC AAAAAAAAAAAAAAAB
    .ldC5 = 0x8888888888888889p-70L,          // 1/120: 0x3FF8 8888888888888889
    .ldC7 = 0xD00D00D00D00D00Dp-76L,          // 1/5040: 0x3FF2 D00D00D00D00D00D
    .dSinhCosh_HA_Table =
        {
#include "hyperbolic/dsinhcosh_ha_table.inc"
        },
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinh_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::hyp::run<lux::dsinhcosh_ha::Bound<true, kC>, lux::X87Guard64>(src, dst, len);
}
