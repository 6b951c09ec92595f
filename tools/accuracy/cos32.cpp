// Accuracy sweep of luxsCos_32f_*: MPFR's cosine against every tier, over the
// regions in sincos_regions.h (cos x = 1 - x^2/2 down to the subnormals).
//
// The A11 cosine's polynomial leaves about 1.5e-4 at the ends of its interval
// [-pi/2, pi/2], where the result is near +-1: some 2560 ulp, within the
// tier's 2^13 (an exhaustive run over the floats of its vector path gives
// 2564 ulp at 0x1.2fc0b6p+13).  cos(+-0) is one of these points: the multiple
// of pi rounds to 0 and the polynomial runs at r = pi/2, giving 0x3F7FF60F.
#include "accuracy/sincos_regions.h"

namespace {

const luxtk::AccuracyFamily kCos32 =
    luxtk::sincos::family("Cos", 32, mpfr_cos, luxtk::sincos::regions32("|x| <= 4000"));
const luxtk::AccuracyRegistrar kRegister(&kCos32);

}  // namespace
