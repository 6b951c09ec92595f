// luxsLog10_32f_A21: decimal logarithm of binary32 lanes, tier A21 (bound 8 ulp).
// max error 1.755 ulp at x = 0x1.fedbb2p-1 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  c = 1 + i/64 is m rounded
// to six fraction bits (ties up, by an integer add and mask); d = m - c is
// exact and r = d*rcp, |r| <= 2^-7, is one rounding from d/c.  The row holds
// log10 c as a head on the 2^-16 grid and a rounded tail; just below 1, e = -1
// meets row 64 (c = 2), whose words cancel e*log 2 exactly.
// The polynomial is in r; r*log10 e joins the sum as the linear term.
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_frame.h"
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
  lux::Row32 l10_hi, l10_lo;
  lux::Row32 log10_e;
  lux::Row32 c3, c2;
  lux::Row32 frac_mask, one, round_add, round_mask;
  lux::Row32 row_mask, row_half, exp_bias, normal_bias, normal_limit;
  LaRow rows[65];  // sLog10_LA_Table
};

constexpr Table kTable = {
    // log10 2 on the 2^-16 grid: e*L10_HI is exact.
    .l10_hi = lux::row32(0x3E9A2000),   // 0.301025390625
    .l10_lo = lux::row32(0x369A84FC),   // 4.605039066518657e-06
    .log10_e = lux::row32(0x3EDE5BD9),  // 0.434294492
    // log10(1+r) - r log10 e ~ r^2 (c2 + c3 r) on |r| <= 2^-7.
    .c3 = lux::row32(0x3E143E89),  // 0.144769803
    .c2 = lux::row32(0xBE5E5D26),  // -0.217152208
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
#include "exp_log/log10_s21_table.inc"
        },
};

// Four lanes of positive normal numbers.
inline __m128 log10_quad(const Table& t, __m128 x) {
  const __m128i xb = lux::as_int(x);
  // Row: top seven fraction bits rounded half up to six (0..64).
  const __m128i i = _mm_srli_epi32(
      _mm_add_epi32(_mm_and_si128(_mm_srli_epi32(xb, 16), t.row_mask.pi()), t.row_half.pi()), 1);
  const LaRow& row0 = t.rows[lux::logs::word<0>(i)];
  const LaRow& row1 = t.rows[lux::logs::word<1>(i)];
  const LaRow& row2 = t.rows[lux::logs::word<2>(i)];
  const LaRow& row3 = t.rows[lux::logs::word<3>(i)];
  const __m128 e = _mm_cvtepi32_ps(_mm_sub_epi32(_mm_srli_epi32(xb, 23), t.exp_bias.pi()));
  const __m128i mb = _mm_or_si128(_mm_and_si128(xb, t.frac_mask.pi()), t.one.pi());
  const __m128 c = lux::as_ps(_mm_and_si128(_mm_add_epi32(mb, t.round_add.pi()), t.round_mask.pi()));
  const __m128 d = _mm_sub_ps(lux::as_ps(mb), c);  // exact
  const __m128 r = _mm_mul_ps(d, lux::logs::gather4(&row0.rcp, &row1.rcp, &row2.rcp, &row3.rcp));
  const __m128 u = _mm_mul_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(r, t.c3.ps()), t.c2.ps()), r), r);
  const __m128 l = _mm_add_ps(_mm_mul_ps(e, t.l10_lo.ps()),
                              lux::logs::gather4(&row0.log_lo, &row1.log_lo, &row2.log_lo, &row3.log_lo));
  const __m128 h = _mm_add_ps(_mm_mul_ps(e, t.l10_hi.ps()),
                              lux::logs::gather4(&row0.log_hi, &row1.log_hi, &row2.log_hi, &row3.log_hi));
  const __m128 r1 = _mm_mul_ps(r, t.log10_e.ps());
  return _mm_add_ps(_mm_add_ps(_mm_add_ps(u, l), r1), h);
}

struct Kernel {
  const lux32f* src;
  lux32f* dst;
  lux::CallState<lux32f>& call;
  const Table& t;

  // Four lanes, tested before anything is computed.
  bool block(int i) {
    const __m128 x = lux::load4(src + i);
    const __m128i d = _mm_sub_epi32(lux::as_int(x), t.normal_bias.pi());
    if (_mm_movemask_ps(lux::as_ps(_mm_cmpgt_epi32(d, t.normal_limit.pi()))) != 0) return false;
    lux::store4(dst + i, log10_quad(t, x));
    return true;
  }

  // _orksLog10_21_scalar: one lane.  Positive normal numbers take the vector steps; every
  // other lane, positive denormals too, takes the x87's FYL2X with
  // y = log10 2 from FLDLG2, rounded to binary32 by the store.
  void lane(int i) {
    const __m128 x = _mm_load1_ps(src + i);
    const uint32_t b = lux::logs::word<0>(lux::as_int(x));
    if (int32_t(b - kNormalBias) <= int32_t(kNormalLimit)) {
      lux::store1(dst + i, log10_quad(t, x));
      return;
    }
    lux::logs::fyl2x_lg2(src + i, dst + i);
    if ((b & 0x7FFFFFFF) == 0)
      call.warn(luxWarnSingularity, i);
    else if (b - 0x80000000u <= 0x7F800000u)  // negatives and -Inf
      call.warn(luxWarnDomain, i);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLog10_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  Kernel k{src, dst, call, kTable};
  // After a failed block, lanes go through the scalar routine until the
  // remaining count is a multiple of 4 (exp_log/log_frame.h); the tail too.
  lux::logs::run_block_resume<4>(len, k);
  return call.status();
}
