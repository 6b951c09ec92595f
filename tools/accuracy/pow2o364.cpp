// Accuracy sweep of Pow2o3 on binary64: x^(2/3) against MPFR.
#include "accuracy/cbrt_regions.h"

namespace {

const luxtk::AccuracyFamily kPow2o364 = {"Pow2o3", 64, luxtk::mpfr_pow2o3, nullptr, luxtk::cbrt_regions(64),
                                         nullptr};
const luxtk::AccuracyRegistrar kReg(&kPow2o364);

}  // namespace
