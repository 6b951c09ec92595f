// Accuracy sweep of Inv on binary64: 1/x against MPFR.
#include <cmath>

#include "common/oracle.h"

namespace {

int mpfr_inv(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) { return mpfr_ui_div(r, 1, x, rnd); }

const luxtk::AccuracyFamily kInv64 = {
    "Inv",
    64,
    mpfr_inv,
    nullptr,
    {
        luxtk::uniform_region("usual [0.5, 2]", 0.5, 2.0),
        // The batch-inversion range of the fast tiers: 2^-255.5 .. 2^256.
        luxtk::log_uniform_region("batch range", 0x1p-255, 0x1p+255, true),
        luxtk::log_uniform_region("all finite", 0x1p-1074, 0x1.fffffffffffffp+1023, true),
        // 1/x overflows (denormal x) or is denormal (x near the top).
        luxtk::log_uniform_region("near overflow", 0x1p-1074, 0x1p-1018, true),
        luxtk::log_uniform_region("near underflow", 0x1p+1018, 0x1.fffffffffffffp+1023, true),
        luxtk::splits_region("edges",
                             {1.0, 0x1.6a09fp-256, 0x1p+256, 0x1p-1022, 0x1p-1024, 0x1p+1022, 0x1p+1023}, 8),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kInv64);

}  // namespace
