// Accuracy sweep of Inv on binary32: 1/x against MPFR.
#include <cmath>

#include "common/oracle.h"

namespace {

int mpfr_inv(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) { return mpfr_ui_div(r, 1, x, rnd); }

const luxtk::AccuracyFamily kInv32 = {
    "Inv",
    32,
    mpfr_inv,
    nullptr,
    {
        luxtk::uniform_region("usual [0.5, 2]", 0.5, 2.0),
        // The estimate range of the fast tiers: 2^-126 .. 2^126.
        luxtk::log_uniform_region("estimate range", 0x1p-126, 0x1p+126, true),
        luxtk::log_uniform_region("all finite", 0x1p-149, 0x1.fffffep+127, true),
        luxtk::log_uniform_region("near overflow", 0x1p-149, 0x1p-124, true),
        luxtk::log_uniform_region("near underflow", 0x1p+124, 0x1.fffffep+127, true),
        luxtk::splits_region("edges", {1.0, 0x1p-126, 0x1p+126, 0x1p-128, 0x1p+127}, 8),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kInv32);

}  // namespace
