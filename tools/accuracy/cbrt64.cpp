// Accuracy sweep of Cbrt on binary64: cbrt(x) against MPFR.
#include "accuracy/cbrt_regions.h"

namespace {

const luxtk::AccuracyFamily kCbrt64 = {"Cbrt", 64, mpfr_cbrt, nullptr, luxtk::cbrt_regions(64), nullptr};
const luxtk::AccuracyRegistrar kReg(&kCbrt64);

}  // namespace
