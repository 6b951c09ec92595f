// luxsLog10_64f_A50: decimal logarithm of binary64 lanes, tier A50 (bound 8 ulp).
// max error 3.728 ulp at x = 0x1.ffb680155bc68p-1 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  c = 1 + i/256 is m rounded
// to eight fraction bits (ties up); d = m - c is exact and r = d/c comes from
// one product with the row's rcp, so r (|r| <= 2^-9) carries a double's full
// relative accuracy without a head/tail split.  The row holds log10 c in a head
// on the 2^-39 grid (so e*L10_HI + head is exact) and a rounded tail.
// Just below 1, e = -1 takes row 256 (c = 2), whose head and tail cancel
// e*log 2 exactly, so the sum keeps its relative accuracy there.
// The polynomial is in r; r*log10 e joins the sum as the linear term.
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
  lux::Row64 l10_hi, l10_lo;
  lux::Row64 log10_e;
  lux::Row64 c5, c4, c3, c2;
  lux::Row64 frac_mask, one, tie_up, rounder;
  lux::Row32 normal_bias, normal_span;
  LaRow rows[257];  // dLog10_LA_Table
};

constexpr Table kTable = {
    // log10 2 on the 2^-39 grid: e*L10_HI is exact for every e.
    .l10_hi = lux::row64(0x3FD34413509F8000),   // 0.3010299956640665
    .l10_lo = lux::row64(0xBD380433B83B532A),   // -8.532344317057107e-14
    .log10_e = lux::row64(0x3FDBCB7B1526E50E),  // 0.4342944819032518
    // log10(1+r) - r log10 e ~ r^2 (c2 + c3 r + c4 r^2 + c5 r^3) on |r| <= 2^-9.
    .c5 = lux::row64(0x3FB63C6841B96ED4),  // 0.08685924152944874
    .c4 = lux::row64(0xBFBBCB80DF8C56D7),  // -0.10857396562309006
    .c3 = lux::row64(0x3FC287A7636F0131),  // 0.1447648273006137
    .c2 = lux::row64(0xBFCBCB7B1526B6BB),  // -0.21714724095129675
    .frac_mask = lux::row64(0x000FFFFFFFFFFFFF),
    .one = lux::row64(0x3FF0000000000000),
    .tie_up = lux::row64(0x000003FF000003FF),   // sticky bits: a tie rounds up
    .rounder = lux::row64(0x42B0000000000000),  // 2^44: ulp 2^-8 at m
    .normal_bias = lux::row32(kNormalBias),
    .normal_span = lux::row32(kNormalSpan),
    .rows =
        {
#include "exp_log/log10_d50_table.inc"
        },
};

// The vector path and the x87 fallback; blocks, lanes and statuses are
// lux::logs::DLaKernel (exp_log/log_kernels.h).
struct Log10Unit {
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
    const __m128d h = _mm_add_pd(_mm_mul_pd(s.e, t.l10_hi.pd()), s.log_hi());
    const __m128d r1 = _mm_mul_pd(s.r, t.log10_e.pd());
    const __m128d l = _mm_add_pd(_mm_mul_pd(s.e, t.l10_lo.pd()), s.log_lo());
    return _mm_add_pd(_mm_add_pd(_mm_add_pd(u, l), r1), h);
  }

  // Every lane that is not a positive normal number: FYL2X with y = log10 2 from FLDLG2.
  static void x87(const Table&, const lux64f* x, lux64f* out) { lux::logs::fyl2x_lg2(x, out); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLog10_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::logs::DLaKernel<Log10Unit>::run(kTable, src, dst, len);
}
