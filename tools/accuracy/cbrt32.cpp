// Accuracy sweep of Cbrt on binary32: cbrt(x) against MPFR.
#include "accuracy/cbrt_regions.h"

namespace {

const luxtk::AccuracyFamily kCbrt32 = {"Cbrt", 32, mpfr_cbrt, nullptr, luxtk::cbrt_regions(32), nullptr};
const luxtk::AccuracyRegistrar kReg(&kCbrt32);

}  // namespace
