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

#include "exp_log/log_frame.h"
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

// Row index: top nine fraction bits, rounded half up to eight (0..256).
inline uint32_t row_index(uint32_t hi) { return (((hi >> 11) & 0x1FF) + 1) >> 1; }

// Two lanes of positive normal numbers.
inline __m128d log10_pair(const Table& t, __m128d x) {
  const __m128i hi = lux::high_words(x);
  const LaRow& row0 = t.rows[row_index(lux::logs::word<0>(hi))];
  const LaRow& row1 = t.rows[row_index(lux::logs::word<1>(hi))];
  const __m128d e = _mm_cvtepi32_pd(_mm_sub_epi32(_mm_srli_epi32(hi, 20), _mm_set1_epi32(1023)));
  const __m128d m = _mm_or_pd(_mm_and_pd(x, t.frac_mask.pd()), t.one.pd());
  const __m128d c = _mm_sub_pd(_mm_add_pd(_mm_or_pd(m, t.tie_up.pd()), t.rounder.pd()), t.rounder.pd());
  const __m128d d = _mm_sub_pd(m, c);  // exact
  const __m128d r = _mm_mul_pd(d, lux::logs::gather2(&row0.rcp, &row1.rcp));
  __m128d p = _mm_add_pd(_mm_mul_pd(t.c5.pd(), r), t.c4.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.c3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.c2.pd());
  const __m128d u = _mm_mul_pd(_mm_mul_pd(p, r), r);
  const __m128d h = _mm_add_pd(_mm_mul_pd(e, t.l10_hi.pd()), lux::logs::gather2(&row0.log_hi, &row1.log_hi));
  const __m128d r1 = _mm_mul_pd(r, t.log10_e.pd());
  const __m128d l = _mm_add_pd(_mm_mul_pd(e, t.l10_lo.pd()), lux::logs::gather2(&row0.log_lo, &row1.log_lo));
  return _mm_add_pd(_mm_add_pd(_mm_add_pd(u, l), r1), h);
}

struct Kernel {
  const lux64f* src;
  lux64f* dst;
  lux::CallState<lux64f>& call;
  const Table& t;

  // Four lanes, tested before anything is computed.
  bool block(int i) {
    const __m128d x0 = lux::load2(src + i), x1 = lux::load2(src + i + 2);
    const __m128i hi =
        _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(x0), _mm_castpd_ps(x1), _MM_SHUFFLE(3, 1, 3, 1)));
    // Unsigned hi - bias < span, as a signed compare after flipping the sign bits.
    const __m128i flip = _mm_set1_epi32(int32_t(0x80000000));
    const __m128i ok = _mm_cmplt_epi32(_mm_xor_si128(_mm_sub_epi32(hi, t.normal_bias.pi()), flip),
                                       _mm_xor_si128(t.normal_span.pi(), flip));
    if (_mm_movemask_ps(_mm_castsi128_ps(ok)) != 0xF) return false;
    lux::store2(dst + i, log10_pair(t, x0));
    lux::store2(dst + i + 2, log10_pair(t, x1));
    return true;
  }

  // _orkdLog10_50_scalar: one lane.  Positive normal numbers take the vector steps; every
  // other lane takes FYL2X with y = log10 2 from FLDLG2, at the x87's current
  // precision, rounded to binary64 by the store.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    const uint32_t hi = lux::logs::word<1>(lux::as_int(x)), lo = lux::logs::word<0>(lux::as_int(x));
    if (hi - kNormalBias < kNormalSpan) {
      lux::store1(dst + i, log10_pair(t, x));
      return;
    }
    lux::logs::fyl2x_lg2(src + i, dst + i);
    if (((hi & 0x7FFFFFFF) | lo) == 0)
      call.warn(luxWarnSingularity, i);
    else if (hi - 0x80000000u <= 0x7FF00000u)  // negatives, -Inf, NaNs with high word 0xFFF00000
      call.warn(luxWarnDomain, i);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLog10_64f_A50(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  Kernel k{src, dst, call, kTable};
  // After a failed block, lanes go through the scalar routine only until the
  // remaining count is a multiple of 4 (exp_log/log_frame.h); the tail too.
  lux::logs::run_block_resume<4>(len, k);
  return call.status();
}
