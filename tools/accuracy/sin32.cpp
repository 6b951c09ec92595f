// Accuracy sweep of luxsSin_32f_*: MPFR's sine against every tier, over the
// regions in sincos_regions.h (sin x = x down to the subnormals).
//
// Over every float of the A11 vector path (|x| <= 4000) the sine's worst
// error is 2551 ulp at 0x1.e7edbcp+11, from the polynomial's 1.5e-4 at the
// ends of [-pi/2, pi/2]; the reduction is exact enough that the floats
// nearest to multiples of pi keep their relative accuracy.
#include "accuracy/sincos_regions.h"

namespace {

const luxtk::AccuracyFamily kSin32 =
    luxtk::sincos::family("Sin", 32, mpfr_sin, luxtk::sincos::regions32("|x| <= 4000 (A11 vector path)"));
const luxtk::AccuracyRegistrar kRegister(&kSin32);

}  // namespace
