// Accuracy sweep of Div on binary32: a/b against MPFR.
#include <cmath>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::pair_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kDiv32 = {
    "Div",
    32,
    nullptr,
    mpfr_div,
    {
        pair_region("usual", uniform_region("a", -4.0, 4.0), uniform_region("b", 0.5, 2.0)),
        pair_region("wide", log_uniform_region("a", 0x1p-60, 0x1p+60, true),
                    log_uniform_region("b", 0x1p-60, 0x1p+60, true)),
        // Quotients up to 2^127.9, just short of overflow (kept off the
        // boundary by more than the estimate tiers' error).
        pair_region("near overflow", log_uniform_region("a", 0x1p+120, 0x1p+127, true),
                    log_uniform_region("b", 0x1.0cp-1, 1.0, true)),
        // Quotients in the denormal range.
        pair_region("near underflow", log_uniform_region("a", 0x1p-140, 0x1p-120, true),
                    log_uniform_region("b", 2.0, 0x1p+20, true)),
        // Divisors outside the estimate range [2^-126, 2^126].
        pair_region("divisor out of range", log_uniform_region("a", 0x1p-20, 0x1p+1, true),
                    log_uniform_region("b", 0x1p-149, 0x1p-126, true)),
        pair_region("divisor at the top", log_uniform_region("a", 0x1p+100, 0x1p+127, true),
                    log_uniform_region("b", 0x1p+120, 0x1.fffffep+127, true)),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kDiv32);

}  // namespace
