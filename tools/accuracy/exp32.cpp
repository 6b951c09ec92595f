// Accuracy sweep of Exp on binary32 (luxsExp_32f_A11, _A21, _A24) against
// mpfr_exp.
//
// The tier bounds hold as they are.  One strip needs a word: A24 and A21 give
// +0 for ln 2^-150 < x <= -103.27893829345703, where the correctly rounded
// result is the smallest denormal 2^-149.  There e^x lies in (2^-150, 2^-149),
// so +0 is less than one denormal ulp away (0.99999 at the strip's top), and
// the 1-ulp bound of A24 still covers it; the strip's neighbours are swept.
#include <mpfr.h>

#include <cfloat>

#include "common/oracle.h"

namespace {

using luxtk::log_uniform_region;
using luxtk::splits_region;
using luxtk::uniform_region;

const luxtk::AccuracyFamily kExp32 = {
    .family = "Exp",
    .bits = 32,
    .f1 = mpfr_exp,
    .regions =
        {
            log_uniform_region("all finite |x|", 0x1p-149, FLT_MAX, true),
            uniform_region("[-103.3, 88.73]", -103.3, 88.73),
            uniform_region("denormal results", -103.98, -87.33),
            uniform_region("near overflow", 87.2, 88.73),
            splits_region("range splits",
                          {
                              87.25, -87.25,                             // A11 narrow path
                              87.3365478515625, -87.3365478515625,       // main path, underflow status
                              -87.3365447505531,                         // ln 2^-126
                              88.72013150549894,                         // N reaches 16384: k = 128
                              88.72283935546875,                         // overflow
                              -103.27893829345703, -103.27892990343184,  // zero from here (A24, A21)
                              -103.97207708399179,                       // ln 2^-150
                              160.0, -160.0,                             // A11 clamps
                          },
                          6),
            splits_region("tiny |x|", {0x1p-25, -0x1p-25, 0x1p-24, -0x1p-24, 0x1p-126, -0x1p-126}, 3),
        },
    .bound = nullptr,
};

const luxtk::AccuracyRegistrar kRegister(&kExp32);

}  // namespace
