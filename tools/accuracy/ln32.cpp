// Accuracy sweep of Ln on binary32: the whole positive finite range with the
// denormals, the neighbourhood of 1 where ln x is small and the sum must not
// cancel, and the places where the kernels change row, exponent or path.
#include <cfloat>
#include <vector>

#include "common/oracle.h"

namespace {

// x = 1 + t and 1 - t with |t| log-uniform in [0x1p-24, 2^-7]: the results
// closest to zero, where relative accuracy is hardest to keep.
luxtk::Region around_one() {
  return {"1 +- tiny", [](luxtk::Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            for (long i = 0; i < n; ++i) {
              const double t = rng.log_uniform(0x1p-24, 0x1p-7, true);
              a.push_back(bits == 32 ? double(float(1.0 + t)) : 1.0 + t);
            }
          }};
}

const luxtk::AccuracyFamily kLn32 = {
    .family = "Ln",
    .bits = 32,
    .f1 = mpfr_log,
    .regions =
        {
            luxtk::log_uniform_region("all positive", 0x1p-149, FLT_MAX, false),
            luxtk::log_uniform_region("denormal", 0x1p-149, 0x1p-126, false),
            luxtk::uniform_region("[0.5, 2]", 0.5, 2.0),
            luxtk::uniform_region("1 +- 2^-8", 1.0 - 0x1p-8, 1.0 + 0x1p-8),
            around_one(),
            luxtk::splits_region("splits",
                                 {
                                     1.0,  // row 0 / 512, e = 0
                                     0x1.7fcp+0,
                                     0x1.7fp+0,  // where e steps (Ln A53, Log10 A24)
                                     0x1.ffp+0,
                                     0x1.ff8p+0,  // last rows before 2
                                     0x1.01p+0,
                                     0x1.008p+0,  // first row steps
                                     0x1.fcp-1,
                                     0x1.04p+0,      // near-one window of A24
                                     0x1.6a09e6p+0,  // sqrt 2, A11's range split
                                     0x1p-126,       // smallest normal
                                     2.0,
                                     0.5,
                                     10.0,
                                     FLT_MAX,
                                 },
                                 16),
        },
    .bound = nullptr,  // the tier bounds
};
const luxtk::AccuracyRegistrar kRegistered(&kLn32);

}  // namespace
