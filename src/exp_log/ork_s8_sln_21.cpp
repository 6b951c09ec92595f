// luxsLn_32f_A21: natural logarithm of binary32 lanes, tier A21 (bound 8 ulp).
// max error 1.227 ulp at x = 0x1.fdefdap-1 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  c = 1 + i/64 is m rounded
// to six fraction bits (ties up, by an integer add and mask); d = m - c is
// exact and r = d*rcp, |r| <= 2^-7, is one rounding from d/c.  The row holds
// ln c as a head on the 2^-16 grid and a rounded tail; just below 1, e = -1
// meets row 64 (c = 2), whose words cancel e*log 2 exactly.
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

struct LaRow {
  uint32_t log_hi, log_lo, rcp;
};

struct alignas(16) Table {
  lux::Row32 ln2_hi, ln2_lo;
  lux::Row32 c3, c2;
  lux::Row32 frac_mask, one, round_add, round_mask;
  lux::Row32 row_mask, row_half, exp_bias, normal_bias, normal_limit;
  LaRow rows[65];  // sLn_LA_Table
};

constexpr Table kTable = {
    // ln 2 on the 2^-16 grid: e*LN2_HI is exact.
    .ln2_hi = lux::row32(0x3F317200),  // 0.693145751953125
    .ln2_lo = lux::row32(0x35BFBE8E),  // 1.428606765330187e-06
    // ln(1+r) - r ~ r^2 (c2 + c3 r) on |r| <= 2^-7.
    .c3 = lux::row32(0x3EAAAC04),  // 0.333343625
    .c2 = lux::row32(0xBF0000C0),  // -0.500011444
    .frac_mask = lux::row32(0x007FFFFF),
    .one = lux::row32(0x3F800000),
    .round_add = lux::row32(0x00010000),   // half of 2^-6 at m
    .round_mask = lux::row32(0xFFFE0000),  // keeps six fraction bits
    .row_mask = lux::row32(0x7F),
    .row_half = lux::row32(1),
    .exp_bias = lux::row32(127),
    .normal_bias = lux::row32(kNormalBias),
    .normal_limit = lux::row32(kNormalLimit),
    .rows =
        {
#include "exp_log/ln_s21_table.inc"
        },
};

// The vector path and the x87 fallback; blocks, lanes and statuses are
// lux::logs::SLaKernel (exp_log/log_kernels.h).
struct LnUnit {
  using Table = ::Table;
  static constexpr uint32_t kNormalBias = ::kNormalBias, kNormalLimit = ::kNormalLimit;

  // Four lanes of positive normal numbers.
  static __m128 quad(const Table& t, __m128 x) {
    const auto s = lux::logs::s_la_split<LaRow>(t, x);
    const __m128 u = _mm_mul_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(s.r, t.c3.ps()), t.c2.ps()), s.r), s.r);
    const __m128 l = _mm_add_ps(_mm_mul_ps(s.e, t.ln2_lo.ps()), s.log_lo());
    const __m128 h = _mm_add_ps(_mm_mul_ps(s.e, t.ln2_hi.ps()), s.log_hi());
    return _mm_add_ps(_mm_add_ps(_mm_add_ps(u, l), s.r), h);
  }

  // Every lane that is not a positive normal number, positive denormals too:
  // FYL2X with y = log 2 from FLDLN2, rounded to binary32 by the store.
  static void x87(const Table&, const lux32f* x, lux32f* out) { lux::logs::fyl2x_ln2(x, out); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::logs::SLaKernel<LnUnit>::run(kTable, src, dst, len);
}
