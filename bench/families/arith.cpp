// Element-wise arithmetic and rounding to integers.  The peer is the plain
// loop a caller would write (g++ -O3 for baseline x86-64, vectorised where the
// compiler manages), or the glibc routine it calls; on large arrays these
// families run into memory bandwidth, which the report shows beside them.
#include <cmath>

#include "loops.h"

namespace luxbench {
namespace {

constexpr Range kOperands = {"a, b in [-1000, 1000]", kAllTypes, uniform(-1000, 1000), uniform(-1000, 1000)};
constexpr Range kValues = {"[-1000, 1000]", kAllTypes, uniform(-1000, 1000)};
// Beyond 2^52 (2^23) every value is an integer already.
constexpr Range kLarge = {"|x| in [1, 1e20]", kReal, signed_magnitudes(1, 1e20)};

const FamilyBench kAdd = {
    .family = "Add",
    .exact = true,
    .ranges = {kOperands},
    .peers =
        {
            {"loop a+b", k64f, binary<double, [](double a, double b) { return a + b; }>},
            {"loop a+b", k32f, binary<float, [](float a, float b) { return a + b; }>},
            {"loop a+b", k64fc, binary<c64, [](c64 a, c64 b) { return a + b; }>},
            {"loop a+b", k32fc, binary<c32, [](c32 a, c32 b) { return a + b; }>},
        },
};
const Registrar kAddReg(&kAdd);

const FamilyBench kSub = {
    .family = "Sub",
    .exact = true,
    .ranges = {kOperands},
    .peers =
        {
            {"loop a-b", k64f, binary<double, [](double a, double b) { return a - b; }>},
            {"loop a-b", k32f, binary<float, [](float a, float b) { return a - b; }>},
            {"loop a-b", k64fc, binary<c64, [](c64 a, c64 b) { return a - b; }>},
            {"loop a-b", k32fc, binary<c32, [](c32 a, c32 b) { return a - b; }>},
        },
};
const Registrar kSubReg(&kSub);

const FamilyBench kMul = {
    .family = "Mul",
    .exact = true,
    .ranges = {kOperands},
    .peers =
        {
            {"loop a*b", k64f, binary<double, [](double a, double b) { return a * b; }>},
            {"loop a*b", k32f, binary<float, [](float a, float b) { return a * b; }>},
            {"std::complex a*b", k64fc, binary<c64, [](c64 a, c64 b) { return a * b; }>},
            {"std::complex a*b", k32fc, binary<c32, [](c32 a, c32 b) { return a * b; }>},
        },
};
const Registrar kMulReg(&kMul);

const FamilyBench kSqr = {
    .family = "Sqr",
    .exact = true,
    .ranges = {kValues},
    .peers =
        {
            {"loop x*x", k64f, unary<double, [](double v) { return v * v; }>},
            {"loop x*x", k32f, unary<float, [](float v) { return v * v; }>},
        },
};
const Registrar kSqrReg(&kSqr);

const FamilyBench kAbs = {
    .family = "Abs",
    .exact = true,
    .ranges = {kValues},
    .peers =
        {
            {"loop fabs", k64f, unary<double, [](double v) { return std::fabs(v); }>},
            {"loop fabsf", k32f, unary<float, [](float v) { return std::fabs(v); }>},
            {"glibc cabs", k64fc, unary_to<c64, double, [](c64 v) { return std::abs(v); }>},
            {"glibc cabsf", k32fc, unary_to<c32, float, [](c32 v) { return std::abs(v); }>},
        },
};
const Registrar kAbsReg(&kAbs);

const FamilyBench kConj = {
    .family = "Conj",
    .exact = true,
    .ranges = {kValues},
    .peers =
        {
            {"loop conj", k64fc, unary<c64, [](c64 v) { return std::conj(v); }>},
            {"loop conj", k32fc, unary<c32, [](c32 v) { return std::conj(v); }>},
        },
};
const Registrar kConjReg(&kConj);

// The rounding families share their ranges; each names its glibc routine.
#define LUXBENCH_ROUNDING(Family, fn)                                                     \
  const FamilyBench k##Family = {                                                         \
      .family = #Family,                                                                  \
      .exact = true,                                                                      \
      .ranges = {kValues, kLarge},                                                        \
      .peers =                                                                            \
          {                                                                               \
              {"glibc " #fn, k64f, unary<double, [](double v) { return std::fn(v); }>},   \
              {"glibc " #fn "f", k32f, unary<float, [](float v) { return std::fn(v); }>}, \
          },                                                                              \
  };                                                                                      \
  const Registrar k##Family##Reg(&k##Family);

LUXBENCH_ROUNDING(Ceil, ceil)
LUXBENCH_ROUNDING(Floor, floor)
LUXBENCH_ROUNDING(Trunc, trunc)
LUXBENCH_ROUNDING(Round, round)
LUXBENCH_ROUNDING(NearbyInt, nearbyint)
LUXBENCH_ROUNDING(Rint, rint)
#undef LUXBENCH_ROUNDING

const FamilyBench kModf = {
    .family = "Modf",
    .exact = true,
    .ranges = {kValues, kLarge},
    .peers =
        {
            {"glibc modf", k64f, two_results<double, [](double v, double* ip) { return std::modf(v, ip); }>},
            {"glibc modff", k32f, two_results<float, [](float v, float* ip) { return std::modf(v, ip); }>},
        },
};
const Registrar kModfReg(&kModf);

}  // namespace
}  // namespace luxbench
