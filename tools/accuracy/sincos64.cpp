// Accuracy sweep of SinCos on binary64: the regions of the sine and cosine
// sweeps (tools/accuracy/sincos_regions.h) and the A50 tier's own limit,
// both result arrays measured.
#include "accuracy/sincos_regions.h"

namespace {

luxtk::AccuracyFamily make() {
  std::vector<luxtk::Region> regions = luxtk::sincos::regions64();
  regions.push_back(luxtk::uniform_region("|x| <= 128000 (A50 vector path)", -128000.0, 128000.0));
  regions.push_back(luxtk::splits_region("A50 limit and neighbours", {128000.0, -128000.0, 128000.0625}, 4));
  luxtk::AccuracyFamily f = luxtk::sincos::family("SinCos", 64, mpfr_sin, std::move(regions));
  f.f1_second = mpfr_cos;
  return f;
}
const luxtk::AccuracyFamily kSinCos64 = make();
const luxtk::AccuracyRegistrar kRegistered(&kSinCos64);

}  // namespace
