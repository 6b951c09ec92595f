// Shared scaffolding of the Pow and Powx tests on both widths: calls that
// return result words, status and flags, the special-value rows (the same
// rows for both types, in their order of test), and what Powx gives for a
// row where its product shortcuts apply.
#pragma once

#include <mpfr.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "support/testing.h"

namespace pow_cases {

template <class F>
struct PowCases {
  static constexpr bool kSingle = std::is_same_v<F, float>;
  using U = std::conditional_t<kSingle, uint32_t, uint64_t>;

  static constexpr U kSign = U(1) << (8 * sizeof(U) - 1);
  static constexpr U kPInf = kSingle ? U(0x7F800000) : U(0x7FF0000000000000);
  static constexpr U kNInf = kSign | kPInf, kNZero = kSign;
  static constexpr U kQuietBit = kSingle ? U(0x00400000) : U(0x0008000000000000);
  static constexpr U kQNaN = kPInf | kQuietBit | 0x123, kSNaN = kPInf | (kQuietBit >> 1) | 0x456;
  static constexpr U kDefaultNaN = kNInf | kQuietBit;
  static constexpr U kOne = kSingle ? U(0x3F800000) : U(0x3FF0000000000000), kNOne = kSign | kOne;

  static U d(double v) {
    if constexpr (kSingle)
      return luxtest::bits(float(v));
    else
      return luxtest::bits(v);
  }

  struct Out {
    std::vector<U> r;
    int status;
    uint32_t flags;
  };

  static Out pow_call(const char* name, const std::vector<U>& a, const std::vector<U>& b) {
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    void* fn = luxtk::export_address(name);
    Out o{std::vector<U>(a.size()), 0, 0};
    if (!e || !fn) {
      ADD_FAILURE() << name << " missing";
      return o;
    }
    const luxtk::Outcome c = luxtk::run_clean([&] {
      return luxtk::invoke(*e, fn, a.data(), b.data(), nullptr, o.r.data(), nullptr, int(a.size()));
    });
    o.status = c.status;
    o.flags = c.flags;
    return o;
  }

  static Out powx_call(const char* name, const std::vector<U>& a, U x) {
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    void* fn = luxtk::export_address(name);
    Out o{std::vector<U>(a.size()), 0, 0};
    if (!e || !fn) {
      ADD_FAILURE() << name << " missing";
      return o;
    }
    // Called directly rather than through the toolkit's invoker: the tests are built for
    // the vector unit, so a signalling NaN x reaches the export unquieted on i386 too.
    F xv;
    std::memcpy(&xv, &x, sizeof xv);
    auto* f = reinterpret_cast<int (*)(const F*, F, F*, int)>(fn);
    const luxtk::Outcome c = luxtk::run_clean([&] {
      return f(reinterpret_cast<const F*>(a.data()), xv, reinterpret_cast<F*>(o.r.data()), int(a.size()));
    });
    o.status = c.status;
    o.flags = c.flags;
    return o;
  }

  // One row of the special-value table: inputs, the result of Pow, the status.
  struct Row {
    const char* what;
    U a, b, want;
    int status;
  };

  static std::vector<Row> special_rows() {
    const U kNTiny = kSign | 1, kNMax = kNInf - 1;
    const double kTinyPower = kSingle ? -1e-30 : -1e-300;
    return {
        {"1: NaN^0", kQNaN, 0, kOne, 0},
        {"1: sNaN^-0", kSNaN, kNZero, kOne, 0},
        {"1: Inf^0", kPInf, 0, kOne, 0},
        {"2: (-1)^Inf", kNOne, kPInf, kOne, 0},
        {"2: (-1)^-Inf", kNOne, kNInf, kOne, 0},
        {"3: 1^NaN", kOne, kQNaN, kOne, 0},
        {"3: 1^sNaN", kOne, kSNaN, kOne, 0},
        {"3: 1^-Inf", kOne, kNInf, kOne, 0},
        {"4: qNaN^2.5 copied", kQNaN, d(2.5), kQNaN, 0},
        {"4: sNaN^2.5 copied unquieted", kSNaN, d(2.5), kSNaN, 0},
        {"4: sNaN^2 copied", kSNaN, d(2.0), kSNaN, 0},
        {"4: sNaN^4 copied", kSNaN, d(4.0), kSNaN, 0},
        {"4: NaN^NaN gives a", kSNaN, kQNaN, kSNaN, 0},
        {"5: 2^sNaN copied", d(2.0), kSNaN, kSNaN, 0},
        {"5: -3^qNaN copied", d(-3.0), kQNaN, kQNaN, 0},
        {"6: 0^-Inf", 0, kNInf, kPInf, 19},
        {"6: -0^-Inf", kNZero, kNInf, kPInf, 19},
        {"7: 2^-Inf", d(2.0), kNInf, 0, 0},
        {"7: -Inf^-Inf", kNInf, kNInf, 0, 0},
        {"8: -2^Inf", d(-2.0), kPInf, kPInf, 0},
        {"8: Inf^Inf", kPInf, kPInf, kPInf, 0},
        {"9: 0.5^-Inf", d(0.5), kNInf, kPInf, 0},
        {"9: -tiny^-Inf", kNTiny, kNInf, kPInf, 0},
        {"10: -0.5^Inf", d(-0.5), kPInf, 0, 0},
        {"10: 0^Inf", 0, kPInf, 0, 0},
        {"11: Inf^0.5", kPInf, d(0.5), kPInf, 0},
        {"11: Inf^tiny", kPInf, 1, kPInf, 0},
        {"12: Inf^-3", kPInf, d(-3.0), 0, 0},
        {"13: 0^-1", 0, kNOne, kPInf, 19},
        {"13: 0^-0.5", 0, d(-0.5), kPInf, 19},
        {"14: 0^3", 0, d(3.0), 0, 0},
        {"15: -Inf^3", kNInf, d(3.0), kNInf, 0},
        {"16: -Inf^2", kNInf, d(2.0), kPInf, 0},
        {"16: -Inf^0.5", kNInf, d(0.5), kPInf, 0},
        {"17: -Inf^-3", kNInf, d(-3.0), kNZero, 0},
        {"18: -Inf^-2", kNInf, d(-2.0), 0, 0},
        {"18: -Inf^-2.5", kNInf, d(-2.5), 0, 0},
        {"19: -8^(1/3)", d(-8.0), d(1.0 / 3.0), kDefaultNaN, 19},
        {"19: -tiny^0.5", kNTiny, d(0.5), kDefaultNaN, 19},
        {"19: -max^-tiny power", kNMax, d(kTinyPower), kDefaultNaN, 19},
        {"20: -0^-3", kNZero, d(-3.0), kNInf, 19},
        {"21: -0^-2", kNZero, d(-2.0), kPInf, 19},
        {"21: -0^-0.5", kNZero, d(-0.5), kPInf, 19},
        {"22: -0^3", kNZero, d(3.0), kNZero, 0},
        {"23: -0^2", kNZero, d(2.0), 0, 0},
        {"23: -0^0.5", kNZero, d(0.5), 0, 0},
    };
  }

  // The same rows through Powx, with x = b.  Where x is 2 (all tiers) or 3
  // and 4 (every tier but the top one, named by top_tier) the shortcut
  // multiplies, and a NaN a comes out quieted.
  static U powx_expected(const Row& r, const std::string& name, const char* top_tier) {
    const bool products = name.find(top_tier) == std::string::npos;
    const bool shortcut = r.b == d(2.0) || (products && (r.b == d(3.0) || r.b == d(4.0)));
    if (shortcut && (r.a & ~kSign) > kPInf) return r.a | kQuietBit;
    return r.want;
  }

  // Bases next to the largest finite value with small exponents: the exact
  // results are finite, a few ulps below the largest or at it, where one
  // rounded product b log2 a can reach the overflow threshold.  Every tier
  // must give a finite value within its bound, alone and in a block, through
  // Pow and through Powx.
  struct TopRow {
    U a, b;
  };
  static std::vector<TopRow> top_rows() {
    if constexpr (kSingle)
      return {{0x7F7FFFFF, kOne},   {0x7F7FFF00, kOne},   {0x7F7FFFFF, 0x3F7FFFFF}, {0x5F7FFFFF, d(2.0)},
              {0x5F7FFFF0, d(2.0)}, {0x4F7FFFFF, d(4.0)}, {0x7EFFFFFF, kOne}};
    else
      return {{0x7FEFFFFFFFFFFFFF, kOne},   {0x7FEFFFFFFFFFFF7F, kOne},
              {0x7FEFFFFFFFFFF000, kOne},   {0x7FEFFFFFFFFFFFFF, 0x3FEFFFFFFFFFFFFF},
              {0x5FEFFFFFFFFFFFFF, d(2.0)}, {0x5FEFFFFFFFFFFFF0, d(2.0)},
              {0x4FEFFFFFFFFFFFFF, d(4.0)}, {0x7FDFFFFFFFFFFFFF, kOne}};
  }

  static void expect_finite_at_the_top(const char* name, bool fixed) {
    const luxtk::CensusEntry* e = luxtk::find_export(name);
    ASSERT_NE(e, nullptr) << name;
    const double bound = luxtk::tier_bound_ulps(e->tier);
    mpfr_t ma, mb, exact;
    mpfr_inits2(luxtk::kOraclePrecision, ma, mb, exact, (mpfr_ptr)0);
    for (const TopRow& row : top_rows()) {
      const auto value = [](U u) {
        F f;
        std::memcpy(&f, &u, sizeof f);
        return double(f);
      };
      mpfr_set_d(ma, value(row.a), MPFR_RNDN);
      mpfr_set_d(mb, value(row.b), MPFR_RNDN);
      mpfr_pow(exact, ma, mb, MPFR_RNDN);
      for (const size_t len : {size_t(1), size_t(8)}) {
        const std::vector<U> a(len, row.a), b(len, row.b);
        const Out o = fixed ? powx_call(name, a, row.b) : pow_call(name, a, b);
        for (size_t i = 0; i < len; ++i) {
          F got;
          std::memcpy(&got, &o.r[i], sizeof got);
          EXPECT_LE(luxtk::ulp_error(double(got), exact, 8 * sizeof(F)), bound)
              << name << " a " << std::hex << row.a << " b " << row.b << " lane " << std::dec << i << " of "
              << len << " got " << double(got);
        }
        EXPECT_EQ(o.status, 0) << name;
      }
    }
    mpfr_clears(ma, mb, exact, (mpfr_ptr)0);
  }
};

}  // namespace pow_cases
