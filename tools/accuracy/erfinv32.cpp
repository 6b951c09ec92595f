// Accuracy sweeps of ErfInv, ErfcInv and CdfNormInv on binary32 against the
// MPFR-built inverses of tools/common/erfinv_mp.h (Newton's method at the
// oracle's precision; CdfNormInv as -sqrt(2)*erfcinv(2x) in MPFR).
#include "accuracy/erfinv_regions.h"

namespace {

namespace R = luxtk::erfinv_regions;

const luxtk::AccuracyFamily kErfInv = {"ErfInv", 32, luxtk::mpfr_erfinv, nullptr, R::erfinv(32), nullptr};
const luxtk::AccuracyFamily kErfcInv = {"ErfcInv", 32, luxtk::mpfr_erfcinv, nullptr, R::erfcinv(32), nullptr};
const luxtk::AccuracyFamily kCdfNormInv = {"CdfNormInv",      32,     luxtk::mpfr_cdfnorminv, nullptr,
                                           R::cdfnorminv(32), nullptr};
const luxtk::AccuracyRegistrar kReg1(&kErfInv);
const luxtk::AccuracyRegistrar kReg2(&kErfcInv);
const luxtk::AccuracyRegistrar kReg3(&kCdfNormInv);

}  // namespace
