// The binary32 kernels seeded by the processor's reciprocal and
// reciprocal-square-root estimates (Inv, Div, Sqrt, InvSqrt) at the edges of
// their lane tests: every binade boundary near the ends of the range, both
// signs, denormals, and quotients next to the overflow threshold.  Each value
// is checked against its tier bound alone and inside a vector block of
// ordinary lanes at every position, and the two must agree bit for bit.
// Under emulation the estimates are near exact, so these tests matter on the
// native build, where the estimate is the processor's own (a reciprocal
// estimate below the least normal comes back as zero there); they check
// bounds and identities, never the estimate's bits.
#include <mpfr.h>

#include <cmath>
#include <string>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtest::bits;
using luxtest::f32;

enum class Fn { kInv, kDiv, kSqrt, kInvSqrt };

struct Export {
  const char* name;
  Fn fn;
};
const Export kExports[] = {
    {"luxsInv_32f_A11", Fn::kInv},         {"luxsInv_32f_A21", Fn::kInv},
    {"luxsDiv_32f_A11", Fn::kDiv},         {"luxsDiv_32f_A21", Fn::kDiv},
    {"luxsSqrt_32f_A11", Fn::kSqrt},       {"luxsSqrt_32f_A21", Fn::kSqrt},
    {"luxsSqrt_32f_A24", Fn::kSqrt},       {"luxsInvSqrt_32f_A11", Fn::kInvSqrt},
    {"luxsInvSqrt_32f_A21", Fn::kInvSqrt}, {"luxsInvSqrt_32f_A24", Fn::kInvSqrt},
};

// Patterns within `reach` steps of the first value of each listed binade
// (exponent fields), both signs; the native build reaches further.
std::vector<uint32_t> edge_patterns(std::initializer_list<uint32_t> fields) {
  const int reach = luxtest::g_sweep.points >= 100000 ? 2100 : 48;
  std::vector<uint32_t> v;
  for (const uint32_t e : fields)
    for (int d = -reach; d <= reach; ++d) {
      const uint32_t p = (e << 23) + uint32_t(d);
      if (p > 0x7F800000u && e != 0) continue;  // the NaNs beyond +Inf come from other rows
      v.push_back(p);
      v.push_back(p | 0x80000000u);
    }
  return v;
}

double exact_error(Fn fn, float a, float x, float got) {
  if (fn == Fn::kInvSqrt && x == 0)  // the pole keeps the zero's sign
    return bits(got) == (bits(x) | 0x7F800000u) ? 0.0 : INFINITY;
  mpfr_t m, r;
  mpfr_inits2(luxtk::kOraclePrecision, m, r, (mpfr_ptr)0);
  mpfr_set_d(m, double(x), MPFR_RNDN);
  switch (fn) {
    case Fn::kInv:
      mpfr_ui_div(r, 1, m, MPFR_RNDN);
      break;
    case Fn::kDiv:
      mpfr_set_d(r, double(a), MPFR_RNDN);
      mpfr_div(r, r, m, MPFR_RNDN);
      break;
    case Fn::kSqrt:
      mpfr_sqrt(r, m, MPFR_RNDN);
      break;
    case Fn::kInvSqrt:
      mpfr_rec_sqrt(r, m, MPFR_RNDN);
      break;
  }
  const double u = luxtk::ulp_error(double(got), r, 32);
  mpfr_clears(m, r, (mpfr_ptr)0);
  return u;
}

struct Lane {
  float alone, in_block;
};

// x (and dividend a) alone, and at position `at` of 16 lanes of 1.5 (and 3.0).
Lane run(const Export& ex, float a, float x, int at) {
  const luxtk::CensusEntry* e = luxtk::find_export(ex.name);
  void* fn = luxtk::export_address(ex.name);
  std::vector<float> xs(16, 1.5f), as(16, 3.0f), out(16);
  xs[at] = x;
  as[at] = a;
  float alone = 0;
  luxtk::run_clean(
      [&] { return luxtk::invoke(*e, fn, &(ex.fn == Fn::kDiv ? a : x), &x, nullptr, &alone, nullptr, 1); });
  luxtk::run_clean([&] {
    return luxtk::invoke(*e, fn, ex.fn == Fn::kDiv ? as.data() : xs.data(), xs.data(), nullptr, out.data(),
                         nullptr, 16);
  });
  return {alone, out[at]};
}

// Runs every (a, x) pair; returns how many broke the bound or the identity.
int check(const Export& ex, const std::vector<float>& dividends, const std::vector<uint32_t>& xs) {
  const luxtk::CensusEntry* e = luxtk::find_export(ex.name);
  if (!e || !luxtk::export_address(ex.name)) {
    ADD_FAILURE() << ex.name << " is not implemented";
    return 1;
  }
  const double bound = luxtk::tier_bound_ulps(e->tier);
  int faults = 0, k = 0;
  for (const float a : dividends)
    for (const uint32_t xb : xs) {
      const float x = f32(xb);
      const Lane l = run(ex, a, x, k++ % 16);
      const double err = exact_error(ex.fn, a, x, l.in_block);
      const bool same = bits(l.alone) == bits(l.in_block) || (std::isnan(l.alone) && std::isnan(l.in_block));
      if (err <= bound && same) continue;
      if (++faults <= 5)
        ADD_FAILURE() << ex.name << " a " << std::hexfloat << a << " x " << x << ": in a block " << l.in_block
                      << " (" << std::defaultfloat << err << " ulp, bound " << bound << "), alone "
                      << std::hexfloat << l.alone;
    }
  return faults;
}

TEST(EstimateEdges, ReciprocalAndRootsAtTheEndsOfTheRange) {
  // Binades 0 to 3 (denormals, the least normals), around 1, and the top
  // ones (2^125 to 2^127 and infinity).
  const std::vector<uint32_t> xs = edge_patterns({0, 1, 2, 3, 127, 252, 253, 254, 255});
  for (const Export& ex : kExports) {
    if (ex.fn != Fn::kDiv) {
      EXPECT_EQ(check(ex, {1.0f}, xs), 0) << ex.name;
    }
  }
}

TEST(EstimateEdges, QuotientsAtTheEndsOfTheDivisorRange) {
  const std::vector<uint32_t> xs = edge_patterns({1, 2, 253, 254});
  const std::vector<float> dividends = {1.0f, -3.0f, f32(0x7F7FFFFFu), f32(0x00800000u), f32(0x00000001u)};
  for (const Export& ex : kExports) {
    if (ex.fn == Fn::kDiv) {
      EXPECT_EQ(check(ex, dividends, xs), 0) << ex.name;
    }
  }
}

TEST(EstimateEdges, QuotientsNextToTheOverflowThreshold) {
  // a/b within a few ulps of FLT_MAX, on both sides of it: the estimate's
  // error must neither carry a finite quotient to infinity nor keep an
  // overflowing one finite.
  const std::vector<uint32_t> xs = edge_patterns({127});
  const std::vector<float> dividends = {f32(0x7F7FFFFFu), f32(0x7F7FFF00u), f32(0xFF7FF001u),
                                        f32(0x7F000000u), f32(0x7EFFFFFFu)};
  for (const Export& ex : kExports) {
    if (ex.fn == Fn::kDiv) {
      EXPECT_EQ(check(ex, dividends, xs), 0) << ex.name;
    }
  }
}

}  // namespace
