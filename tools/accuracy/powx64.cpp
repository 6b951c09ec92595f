// Accuracy sweep of Powx on binary64: a few fixed exponents (each a run of
// one call, so the block path is measured), bases spread over the range the
// result stays finite in, and bases near 1 where log2 a is hardest.
#include <cmath>

#include "accuracy/pow_regions.h"
#include "common/oracle.h"

namespace {

using luxtk::Region;
using luxtk::Rng;

// Half of the bases 2^u with u uniform in +-lim (lim keeps x*u inside the
// range), half 1 + d with |d| log-uniform in [2^-50, 2^-4].
Region bases(double lim) {
  return {"", [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>&) {
            for (long i = 0; i < n; ++i) {
              const double v =
                  i % 2 ? std::exp2(rng.uniform(-lim, lim)) : 1.0 + rng.log_uniform(0x1p-50, 0x1p-4, true);
              a.push_back(bits == 32 ? double(float(v)) : v);
            }
          }};
}

const luxtk::AccuracyFamily kPowx64 = {
    .family = "Powx",
    .bits = 64,
    .f2 = mpfr_pow,
    .regions =
        {
            luxtk::fixed_scalar_region("x in {0.5, -1.5, 2, 3, 4, 7.25}", bases(130),
                                       {0.5, -1.5, 2.0, 3.0, 4.0, 7.25}),
            luxtk::fixed_scalar_region("x in {-1/3, 123.456, -1000.5, 1e-5}", bases(0.95),
                                       {-0.3333333333333333, 123.456, -1000.5, 1e-5}),
            luxtk::fixed_scalar_region("bases next to the largest finite, x = 1", powacc::top_bases(1.0),
                                       {1.0}),
            luxtk::fixed_scalar_region("bases next to the largest finite square root, x = 1.9999999",
                                       powacc::top_bases(1.9999999), {1.9999999}),
        },
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kPowx64);

}  // namespace
