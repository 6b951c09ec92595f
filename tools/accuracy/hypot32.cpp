// Accuracy sweep of Hypot on binary32: sqrt(x^2 + y^2) against MPFR.
#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::pair_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kHypot32 = {
    "Hypot",
    32,
    nullptr,
    mpfr_hypot,
    {
        pair_region("usual", uniform_region("x", -10.0, 10.0), uniform_region("y", -10.0, 10.0)),
        // The range of the block test, and across its ends.
        pair_region("in range", log_uniform_region("x", 0x1p-62, 0x1p+63, true),
                    log_uniform_region("y", 0x1p-62, 0x1p+63, true)),
        pair_region("whole range", log_uniform_region("x", 0x1p-149, 0x1.fffffep+127, true),
                    log_uniform_region("y", 0x1p-149, 0x1.fffffep+127, true)),
        // Operands of like size: both split, the sum's rounding error matters.
        pair_region("close", uniform_region("x", 1.0, 2.0), uniform_region("y", 0.5, 2.0)),
        pair_region("near overflow", log_uniform_region("x", 0x1p-2 * 0x1.fffffep+127, 0x1.fffffep+127, true),
                    log_uniform_region("y", 0x1p-8 * 0x1.fffffep+127, 0x1.fffffep+127, true)),
        pair_region("denormal", log_uniform_region("x", 0x1p-149, 0x1p-126, true),
                    log_uniform_region("y", 0x1p-149, 0x1p+4 * 0x1p-126, true)),
        pair_region("range ends", log_uniform_region("x", 0x1p-4 * 0x1p-62, 0x1p+4 * 0x1p-62, true),
                    log_uniform_region(
                        "y", 0x1p-4 * 0x1p+63,
                        0x1p+4 * 0x1p+63 < 0x1.fffffep+127 ? 0x1p+4 * 0x1p+63 : 0x1.fffffep+127, true)),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kHypot32);

}  // namespace
