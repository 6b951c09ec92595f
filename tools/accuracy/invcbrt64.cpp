// Accuracy sweep of InvCbrt on binary64: x^(-1/3) against MPFR.
#include "accuracy/cbrt_regions.h"

namespace {

const luxtk::AccuracyFamily kInvCbrt64 = {
    "InvCbrt", 64, luxtk::mpfr_inv_cbrt, nullptr, luxtk::cbrt_regions(64), nullptr};
const luxtk::AccuracyRegistrar kReg(&kInvCbrt64);

}  // namespace
