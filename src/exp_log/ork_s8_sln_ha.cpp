// luxsLn_32f_A24: natural logarithm of binary32 lanes, tier A24 (bound 1 ulp).
// max error 0.531 ulp at x = 0x1.f8c5eep-1 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  Row i (top seven fraction
// bits rounded to six) holds rcp, the multiple of 2^-8 nearest 64/(64+i), and
// -ln(rcp) in a head on the 2^-14 grid and a rounded tail; just below 1,
// e = -1 meets row 64, which is ln 2 itself, so the logarithm terms cancel.
// m is split at nine fraction bits, so m_hi*rcp - 1 is exact, and
// ln(1 + r) = r - r^2/2 + r^3/3 - r^4/4 for |r| < 2^-7.  Terms are summed
// from the smallest; for x in (0.9921875, 1.015625) the low part of r joins
// the leading sum instead, for full relative accuracy near 1.
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_kernels.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// bits(x) - 0x00800000 < 0x7F000000, unsigned.
constexpr uint32_t kNormalBias = 0x00800000;
constexpr uint32_t kNormalSpan = 0x7F000000;
// Near-one window: bits(x) + 0x407E0000 > 0x7FFC0000 as signed integers,
// that is 0x3F7E0000 < bits(x) < 0x3F820000.
constexpr uint32_t kNearBias = 0x407E0000;
constexpr uint32_t kNearLimit = 0x7FFC0000;

struct HaRow {
  uint32_t log_hi, log_lo, rcp;
};

struct alignas(16) SLnHaTable {
  lux::Row32 ln2_hi, ln2_lo;
  lux::Row32 c4, c3, c2;
  lux::Row32 frac_mask, one, high_mask;
  lux::Row32 row_mask, row_half, exp_bias, near_bias, near_limit;
  lux::Row32 normal_bias, normal_span, sign_flip;
  HaRow rows[65];  // sLn_HA_Table
};

constexpr SLnHaTable kTable = {
    // ln 2 on the 2^-14 grid (12 significant bits): e*LN2_HI is exact.
    .ln2_hi = lux::row32(0x3F317000),  // 0.693115234375
    .ln2_lo = lux::row32(0x3805FDF4),  // 3.194618329871446e-05
    // ln(1+r) ~ r + c2 r^2 + c3 r^3 + c4 r^4 on |r| < 2^-7 (Taylor).
    .c4 = lux::row32(0xBE800000),  // -0.25
    .c3 = lux::row32(0x3EAAAAAB),  // 0.3333333432674408
    .c2 = lux::row32(0xBF000000),  // -0.5
    .frac_mask = lux::row32(0x007FFFFF),
    .one = lux::row32(0x3F800000),
    .high_mask = lux::row32(0x7FFFC000),  // m_hi: 9 fraction bits, m_hi*rcp exact
    .row_mask = lux::row32(0x7F),
    .row_half = lux::row32(1),
    .exp_bias = lux::row32(127),
    .near_bias = lux::row32(kNearBias),
    .near_limit = lux::row32(kNearLimit),
    .normal_bias = lux::row32(kNormalBias),
    .normal_span = lux::row32(kNormalSpan),
    .sign_flip = lux::row32(0x80000000),
    .rows =
        {
#include "exp_log/ln_s24_table.inc"
        },
};

// Four lanes of positive normal numbers, given as their bits, their exponent
// e as floats and the near-one mask.  The scalar routine forms the head sum
// as (logHi + a) + e*LN2_HI; the block as (e*LN2_HI + logHi) + a.
template <bool ScalarOrder>
inline __m128 ln_quad(const SLnHaTable& t, __m128i xb, __m128 e, __m128 near) {
  // Row: top seven fraction bits rounded half up to six (0..64).
  const __m128i i = _mm_srli_epi32(
      _mm_add_epi32(_mm_and_si128(_mm_srli_epi32(xb, 16), t.row_mask.pi()), t.row_half.pi()), 1);
  const HaRow& r0 = t.rows[lux::logs::word<0>(i)];
  const HaRow& r1 = t.rows[lux::logs::word<1>(i)];
  const HaRow& r2 = t.rows[lux::logs::word<2>(i)];
  const HaRow& r3 = t.rows[lux::logs::word<3>(i)];
  const __m128 log_hi = lux::logs::gather4(&r0.log_hi, &r1.log_hi, &r2.log_hi, &r3.log_hi);
  const __m128 log_lo = lux::logs::gather4(&r0.log_lo, &r1.log_lo, &r2.log_lo, &r3.log_lo);
  const __m128 rcp = lux::logs::gather4(&r0.rcp, &r1.rcp, &r2.rcp, &r3.rcp);
  const __m128 m = lux::as_ps(_mm_or_si128(_mm_and_si128(xb, t.frac_mask.pi()), t.one.pi()));
  const __m128 mh = _mm_and_ps(m, t.high_mask.ps());
  const __m128 ml = _mm_sub_ps(m, mh);
  const __m128 a = _mm_sub_ps(_mm_mul_ps(mh, rcp), t.one.ps());  // exact
  const __m128 b = _mm_mul_ps(ml, rcp);
  const __m128 r = _mm_add_ps(a, b);
  __m128 a2;
  if constexpr (ScalarOrder)
    a2 = _mm_add_ps(_mm_add_ps(log_hi, a), _mm_mul_ps(e, t.ln2_hi.ps()));
  else
    a2 = _mm_add_ps(_mm_add_ps(_mm_mul_ps(e, t.ln2_hi.ps()), log_hi), a);
  const __m128 bc = _mm_add_ps(_mm_mul_ps(e, t.ln2_lo.ps()), log_lo);
  a2 = _mm_or_ps(_mm_and_ps(near, _mm_add_ps(a2, b)), _mm_andnot_ps(near, a2));
  const __m128 w = _mm_andnot_ps(near, b);
  __m128 p = _mm_add_ps(_mm_mul_ps(t.c4.ps(), r), t.c3.ps());
  p = _mm_add_ps(_mm_mul_ps(p, r), t.c2.ps());
  const __m128 u = _mm_mul_ps(_mm_mul_ps(p, r), r);
  return _mm_add_ps(_mm_add_ps(_mm_add_ps(u, bc), w), a2);
}

inline __m128 exponent_of(const SLnHaTable& t, __m128i xb) {
  return _mm_cvtepi32_ps(_mm_sub_epi32(_mm_srli_epi32(xb, 23), t.exp_bias.pi()));
}
inline __m128 near_one(const SLnHaTable& t, __m128i xb) {
  return lux::as_ps(_mm_cmpgt_epi32(_mm_add_epi32(xb, t.near_bias.pi()), t.near_limit.pi()));
}

struct LnKernel {
  const lux32f* src;
  lux32f* dst;
  lux::CallState<lux32f>& call;
  const SLnHaTable& t;

  bool passes(__m128i xb) const {
    const __m128i d = _mm_xor_si128(_mm_sub_epi32(xb, t.normal_bias.pi()), t.sign_flip.pi());
    const __m128i ok = _mm_cmplt_epi32(d, _mm_xor_si128(t.normal_span.pi(), t.sign_flip.pi()));
    return _mm_movemask_ps(lux::as_ps(ok)) == 0xF;
  }

  // Eight lanes, tested before anything is computed.
  bool block(int i) {
    const __m128i x0 = lux::as_int(lux::load4(src + i)), x1 = lux::as_int(lux::load4(src + i + 4));
    if (!passes(x0) || !passes(x1)) return false;
    lux::store4(dst + i, ln_quad<false>(t, x0, exponent_of(t, x0), near_one(t, x0)));
    lux::store4(dst + i + 4, ln_quad<false>(t, x1, exponent_of(t, x1), near_one(t, x1)));
    return true;
  }

  // _orksLn_HA_scalar: one lane.
  void lane(int i) {
    const __m128i xb = lux::as_int(_mm_load1_ps(src + i));
    const uint32_t b = lux::logs::word<0>(xb);
    if (b - kNormalBias < kNormalSpan) {
      lux::store1(dst + i, ln_quad<true>(t, xb, exponent_of(t, xb), near_one(t, xb)));
    } else if (b - 1 < kNormalBias - 1) {
      // Positive denormal: shift the top set bit of the fraction to bit 23 and
      // drop it; the exponent field p + 1 makes the value x*2^23, and e is the
      // true exponent p - 149.  The near-one window does not apply.
      const int p = 31 - __builtin_clz(b);
      const uint32_t scaled = (uint32_t(p + 1) << 23) | ((b << (23 - p)) & 0x007FFFFF);
      const __m128i sb = _mm_set1_epi32(int32_t(scaled));
      const __m128 e = _mm_cvtepi32_ps(_mm_set1_epi32(p - 149));
      lux::store1(dst + i, ln_quad<true>(t, sb, e, _mm_setzero_ps()));
    } else {
      // Zero, negative, +Inf, NaN: the x87's FYL2X with y = ln 2.
      lux::logs::fyl2x_ln2(src + i, dst + i);
      lux::logs::warn_x87_lane(call, i, b);
    }
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_32f_A24(const lux32f* src, lux32f* dst, int len) {
  // After a failed block, lanes go through the scalar routine until the
  // remaining count is a multiple of 8 (exp_log/log_frame.h); the tail too.
  return lux::logs::run_export<LnKernel, 8, lux::logs::BlockLoop::kResume>(kTable, src, dst, len);
}
