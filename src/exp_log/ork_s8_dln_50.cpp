// luxsLn_64f_A50: natural logarithm of binary64 lanes, tier A50 (bound 8 ulp).
// max error 3.244 ulp at x = 0x1.008001dba4f94p+0 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  c = 1 + i/256 is m rounded
// to eight fraction bits (ties up); d = m - c is exact and r = d/c comes from
// one product with the row's rcp, so r (|r| <= 2^-9) carries a double's full
// relative accuracy without a head/tail split.  The row holds ln c in a head
// on the 2^-39 grid (so e*LN2_HI + head is exact) and a rounded tail.
// Just below 1, e = -1 takes row 256 (c = 2), whose head and tail cancel
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
  lux::Row64 ln2_hi, ln2_lo;
  lux::Row64 c5, c4, c3, c2;
  lux::Row64 frac_mask, one, tie_up, rounder;
  lux::Row32 normal_bias, normal_span;
  LaRow rows[257];  // dLn_LA_Table
};

constexpr Table kTable = {
    // log 2 on the 2^-39 grid: e*LN2_HI is exact for every e.
    .ln2_hi = lux::row64(0x3FE62E42FEFA4000),  // 0.6931471805601177
    .ln2_lo = lux::row64(0xBD48432A1B0E2634),  // -1.7239444525614835e-13
    // ln(1+r) - r ~ r^2 (c2 + c3 r + c4 r^2 + c5 r^3) on |r| <= 2^-9.
    .c5 = lux::row64(0x3FC999A0159DA4B6),  // 0.20000077300509184
    .c4 = lux::row64(0xBFD000035546C299),  // -0.25000079467558006
    .c3 = lux::row64(0x3FD55555555512C8),  // 0.33333333333238757
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
    __m128d p = _mm_add_pd(_mm_mul_pd(t.c5.pd(), s.r), t.c4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.c3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.c2.pd());
    const __m128d u = _mm_mul_pd(_mm_mul_pd(p, s.r), s.r);
    const __m128d h = _mm_add_pd(_mm_mul_pd(s.e, t.ln2_hi.pd()), s.log_hi());
    const __m128d l = _mm_add_pd(_mm_mul_pd(s.e, t.ln2_lo.pd()), s.log_lo());
    return _mm_add_pd(_mm_add_pd(_mm_add_pd(u, l), s.r), h);
  }

  // Every lane that is not a positive normal number: FYL2X with y = log 2 from FLDLN2.
  static void x87(const Table&, const lux64f* x, lux64f* out) { lux::logs::fyl2x_ln2(x, out); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::logs::DLaKernel<LnUnit>::run(kTable, src, dst, len);
}
