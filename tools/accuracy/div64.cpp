// Accuracy sweep of Div on binary64: a/b against MPFR.
#include <cmath>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::pair_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kDiv64 = {
    "Div",
    64,
    nullptr,
    mpfr_div,
    {
        pair_region("usual", uniform_region("a", -4.0, 4.0), uniform_region("b", 0.5, 2.0)),
        pair_region("wide", log_uniform_region("a", 0x1p-500, 0x1p+500, true),
                    log_uniform_region("b", 0x1p-500, 0x1p+500, true)),
        // Quotients up to 2^1023.9, just short of overflow.
        pair_region("near overflow", log_uniform_region("a", 0x1p+1016, 0x1p+1023, true),
                    log_uniform_region("b", 0x1.0cp-1, 1.0, true)),
        // Quotients in the denormal range.
        pair_region("near underflow", log_uniform_region("a", 0x1p-1060, 0x1p-1016, true),
                    log_uniform_region("b", 2.0, 0x1p+40, true)),
        // Divisors whose fourth power leaves the binary64 range: the batch
        // relies on the x87 exponent range there.
        pair_region("huge divisors", log_uniform_region("a", 0x1p+700, 0x1p+1000, true),
                    log_uniform_region("b", 0x1p+300, 0x1p+1000, true)),
        pair_region("tiny divisors", log_uniform_region("a", 0x1p-1000, 0x1p-700, true),
                    log_uniform_region("b", 0x1p-1074, 0x1p-300, true)),
    },
    nullptr,
};
const luxtk::AccuracyRegistrar kReg(&kDiv64);

}  // namespace
