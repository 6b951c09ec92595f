// Accuracy sweep of Pow on binary64.  The hard region is a base near 1 with an
// exponent large enough to carry the result across the whole range: there the
// error of log2 a is multiplied by |b| up to ~2^60.  Most regions therefore
// choose the result's exponent y first and set b = y / log2 a.
#include <cmath>

#include "common/oracle.h"

namespace {

using luxtk::Region;
using luxtk::Rng;

double width(double v, int bits) { return bits == 32 ? double(float(v)) : v; }

// a from `pick_a`, b = y / log2 a with y uniform in [ylo, yhi].
template <class A>
Region by_result(std::string name, A pick_a, double ylo, double yhi) {
  return {std::move(name), [=](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
            for (long i = 0; i < n; ++i) {
              const double x = width(pick_a(rng), bits);
              a.push_back(x);
              b.push_back(width(rng.uniform(ylo, yhi) / std::log2(std::fabs(x)), bits));
            }
          }};
}

const luxtk::AccuracyFamily kPow64 = {
    .family = "Pow",
    .bits = 64,
    .f2 = mpfr_pow,
    .regions =
        {
            luxtk::pair_region("a in [2^-8,2^8], |b| in [2^-8,2^6]",
                               luxtk::log_uniform_region("", 0x1p-8, 0x1p8, false),
                               luxtk::log_uniform_region("", 0x1p-8, 0x1p6, true)),
            by_result(
                "a over the normal range, any result",
                [](Rng& r) { return r.log_uniform(0x1p-1022, 0x1p1023, false); }, -1080, 1025),
            by_result(
                "a near 1, large b", [](Rng& r) { return 1.0 + r.log_uniform(0x1p-52, 0x1p-3, true); }, -1080,
                1025),
            by_result(
                "a denormal", [](Rng& r) { return r.log_uniform(0x1p-1074, 0x1p-1022, false); }, -1080, 1025),
            by_result(
                "results near overflow", [](Rng& r) { return r.log_uniform(0.25, 4.0, false); }, 1015,
                1024.5),
            by_result(
                "results denormal", [](Rng& r) { return r.log_uniform(0.25, 4.0, false); }, -1076, -1015),
            {"negative a, integer b",
             [](Rng& rng, int bits, long n, std::vector<double>& a, std::vector<double>& b) {
               for (long i = 0; i < n; ++i) {
                 a.push_back(-width(rng.log_uniform(0.5, 8.0, false), bits));
                 b.push_back(std::nearbyint(rng.uniform(-340.0, 340.0)));
               }
             }},
        },
    .bound = nullptr,
};
const luxtk::AccuracyRegistrar kRegister(&kPow64);

}  // namespace
