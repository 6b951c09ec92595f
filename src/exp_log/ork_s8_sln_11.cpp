// luxsLn_32f_A11: natural logarithm of binary32 lanes, tier A11 (bound 2^13 ulp).
// max error 976.274 ulp at x = 0x1.e0fadep-1 (luxvm accuracy, 10^6 points)
//
// No table.  x = 2^n * y with y in [sqrt(2)/2, sqrt(2)): the fraction bits
// decide, by one integer add, whether m = 1.f lies at or above sqrt 2, and
// then y = m/2 and n one more.  z = y - 1 goes into a degree-5 polynomial
// without constant term, and n*log 2 is added last.  A block with any lane
// that is not a positive normal number is computed lane by lane on the x87
// (FYL2X with y = ln 2 from FLDLN2, rounded once to binary32 on the store), its good lanes too;
// a tail lane takes the x87 only when it fails its own test.
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_kernels.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// bits(x) - 0x80800000 not above 0xFEFFFFFF as signed integers.
constexpr uint32_t kNormalBias = 0x80800000;
constexpr uint32_t kNormalLimit = 0xFEFFFFFF;

struct alignas(16) Table {
  lux::Row32 log2;
  lux::Row32 a5, a4, a3, a2, a1;
  lux::Row32 frac_mask, exp_mask, sqrt2_carry, one_exp, half_flip, int_magic, int_bias;
  lux::Row32 normal_bias, normal_limit;
};

constexpr Table kTable = {
    .log2 = lux::row32(0x3F317218),  // 0.6931471824645996 = ln 2
    // ln(1+z) ~ z (a1 + a2 z + a3 z^2 + a4 z^3 + a5 z^4) on [sqrt(2)/2 - 1, sqrt(2) - 1].
    .a5 = lux::row32(0x3E3623C0),  // 0.17787075
    .a4 = lux::row32(0xBE8B912B),  // -0.272591919
    .a3 = lux::row32(0x3EAC4F2A),  // 0.336541474
    .a2 = lux::row32(0xBEFFACF8),  // -0.499366522
    .a1 = lux::row32(0x3F7FFD83),  // 0.999962032
    .frac_mask = lux::row32(0x007FFFFF),
    .exp_mask = lux::row32(0x7F800000),
    .sqrt2_carry = lux::row32(0x004AFB0D),  // f + this reaches 2^23 exactly when 1.f >= sqrt 2
    .one_exp = lux::row32(0x00800000),
    .half_flip = lux::row32(0x3F800000),  // XOR with the carry: exponent of 1 or of 1/2
    .int_magic = lux::row32(0x4B000000),  // 2^23: a small integer ORed into its fraction
    .int_bias = lux::row32(0x4B00007F),   // 8388735.0 = 2^23 + 127
    .normal_bias = lux::row32(kNormalBias),
    .normal_limit = lux::row32(kNormalLimit),
};

// The vector path is lux::logs::s_poly_quad on this table; blocks, lanes and
// statuses are lux::logs::SPolyKernel (exp_log/log_kernels.h).
struct LnUnit {
  using Table = ::Table;
  // The lane routine: FYL2X with y = ln 2 from FLDLN2, rounded once to binary32 by the store.
  static void x87(const Table&, const lux32f* x, lux32f* out) { lux::logs::fyl2x_ln2(x, out); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::logs::SPolyKernel<LnUnit>::run(kTable, src, dst, len);
}
