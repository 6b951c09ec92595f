// luxsLn_64f_A26: natural logarithm of binary64 lanes, tier A26 (bound 2^27 ulp).
// max error 18503438.529 ulp at x = 0x1.008p+0 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  c = 1 + i/256 is m rounded
// to eight fraction bits (ties up); d = m - c is exact and r = d/c comes from
// one product with the row's rcp, so r (|r| <= 2^-9) carries a double's full
// relative accuracy without a head/tail split.  The row holds ln c in a head
// on the 2^-39 grid (so e*LN2_HI + head is exact); this tier reads no tail.
// Just below 1, e = -1 takes row 256 (c = 2), whose head cancels
// e*log 2 exactly, so the sum keeps its relative accuracy there.
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_kernels.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// hi32(x) - 0x00100000 < 0x7FE00000, unsigned.
constexpr uint32_t kNormalBias = 0x00100000;
constexpr uint32_t kNormalSpan = 0x7FE00000;

struct LaRow {
  uint64_t log_hi, log_lo, rcp;
};

struct alignas(16) Table {
  lux::Row64 ln2_hi;
  lux::Row64 c3, c2;
  lux::Row64 frac_mask, one, tie_up, rounder;
  lux::Row32 normal_bias, normal_span;
  LaRow rows[257];  // dLn_LA_Table
};

constexpr Table kTable = {
    // log 2 on the 2^-39 grid: e*LN2_HI is exact for every e.
    .ln2_hi = lux::row64(0x3FE62E42FEFA4000),  // 0.6931471805601177
    // ln(1+r) - r ~ r^2 (c2 + c3 r) on |r| <= 2^-9: Taylor
    // terms; the r^4 term left out is below 2^-29 of the result, inside 26 bits.
    .c3 = lux::row64(0x3FD5555555555555),  // 0.3333333333333333 = RN(1/3)
    .c2 = lux::row64(0xBFDFFFFFFFFFCAAE),  // -0.4999999999992423
    .frac_mask = lux::row64(0x000FFFFFFFFFFFFF),
    .one = lux::row64(0x3FF0000000000000),
    .tie_up = lux::row64(0x000003FF000003FF),   // sticky bits: a tie rounds up
    .rounder = lux::row64(0x42B0000000000000),  // 2^44: ulp 2^-8 at m
    .normal_bias = lux::row32(kNormalBias),
    .normal_span = lux::row32(kNormalSpan),
    .rows =
        {
#include "exp_log/ln_d50_table.inc"
        },
};

// The vector path and the x87 fallback; blocks, lanes and statuses are
// lux::logs::DLaKernel (exp_log/log_kernels.h).
struct LnUnit {
  using Table = ::Table;
  using Row = LaRow;
  static constexpr uint32_t kNormalBias = ::kNormalBias, kNormalSpan = ::kNormalSpan;

  // Two lanes of positive normal numbers.
  static __m128d pair(const Table& t, __m128d x) {
    const auto s = lux::logs::d_la_split<Row>(t, x);
    const __m128d p = _mm_add_pd(_mm_mul_pd(t.c3.pd(), s.r), t.c2.pd());
    const __m128d u = _mm_mul_pd(_mm_mul_pd(p, s.r), s.r);
    const __m128d h = _mm_add_pd(_mm_mul_pd(s.e, t.ln2_hi.pd()), s.log_hi());
    return _mm_add_pd(_mm_add_pd(u, s.r), h);
  }

  // Every lane that is not a positive normal number: FYL2X with y = log 2 from FLDLN2.
  static void x87(const Table&, const lux64f* x, lux64f* out) { lux::logs::fyl2x_ln2(x, out); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_64f_A26(const lux64f* src, lux64f* dst, int len) {
  return lux::logs::DLaKernel<LnUnit>::run(kTable, src, dst, len);
}
