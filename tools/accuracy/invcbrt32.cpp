// Accuracy sweep of InvCbrt on binary32: x^(-1/3) against MPFR.
#include "accuracy/cbrt_regions.h"

namespace {

const luxtk::AccuracyFamily kInvCbrt32 = {
    "InvCbrt", 32, luxtk::mpfr_inv_cbrt, nullptr, luxtk::cbrt_regions(32), nullptr};
const luxtk::AccuracyRegistrar kReg(&kInvCbrt32);

}  // namespace
