// Accuracy sweep of Pow2o3 on binary32: x^(2/3) against MPFR.
#include "accuracy/cbrt_regions.h"

namespace {

const luxtk::AccuracyFamily kPow2o332 = {"Pow2o3", 32, luxtk::mpfr_pow2o3, nullptr, luxtk::cbrt_regions(32),
                                         nullptr};
const luxtk::AccuracyRegistrar kReg(&kPow2o332);

}  // namespace
