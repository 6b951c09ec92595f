// Accuracy sweep of SinCos on binary32: the regions of the sine and cosine
// sweeps (tools/accuracy/sincos_regions.h), both result arrays measured.
#include "accuracy/sincos_regions.h"

namespace {

luxtk::AccuracyFamily make() {
  luxtk::AccuracyFamily f = luxtk::sincos::family(
      "SinCos", 32, mpfr_sin, luxtk::sincos::regions32("|x| <= 4000 (part of the vector path)"));
  f.f1_second = mpfr_cos;
  return f;
}
const luxtk::AccuracyFamily kSinCos32 = make();
const luxtk::AccuracyRegistrar kRegistered(&kSinCos32);

}  // namespace
