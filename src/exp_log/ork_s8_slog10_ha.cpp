// luxsLog10_32f_A24: decimal logarithm of binary32 lanes, tier A24 (bound 1 ulp).
// max error 0.748 ulp at x = 0x1.019d12p+0 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2).  Row i (top eight fraction bits rounded to seven)
// holds rcp = K*128/(128+i) cut to 8 bits, K = 0.43359375 a short stand-in
// for log10 e, and log10(K/rcp) in a 9-bit head and a rounded tail; from row
// 64 on e counts one more and the row's logarithm one log10 2 less, so the
// reduced argument stays in about [0.75, 1.5).  With r = m*rcp - K (m split
// so that m_hi*rcp - K is exact), log10(1 + r/K) = r + a1 r + ... + a4 r^4,
// a1 = log10(e)/K - 1: no product by log10 e is needed.  log10 2 is carried
// as 0.3125 plus a negative tail, so e*L10_HI is exact.  Where the logarithm
// terms C cancel to zero (e = 0 in rows 0, 127 and 128) the low part of r
// joins the leading sum, for full relative accuracy near 1.
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_frame.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// bits(x) - 0x00800000 < 0x7F000000, unsigned.
constexpr uint32_t kNormalBias = 0x00800000;
constexpr uint32_t kNormalSpan = 0x7F000000;

struct HaRow {
  uint32_t rcp, log_hi, log_lo;
};

struct alignas(16) SLog10HaTable {
  lux::Row32 l10_hi, l10_lo, k;
  lux::Row32 a4, a3, a2, a1;
  lux::Row32 frac_mask, one, high_mask, exp_offset, magic;
  lux::Row32 row_bits, row_half;
  lux::Row32 normal_bias, normal_span, sign_flip;
  lux::Row32 denorm_scale, denorm_offset, pos_inf, domain_nan, neg_inf;
  HaRow rows[129];  // sLog10_HA_Table
};

constexpr SLog10HaTable kTable = {
    .l10_hi = lux::row32(0x3EA00000),  // 0.3125, above log10 2: e*L10_HI is exact
    .l10_lo = lux::row32(0xBC3BECAF),  // -0.011470003984868526
    .k = lux::row32(0x3EDE0000),       // K = 0.43359375
    // log10(1 + r/K) - r ~ a1 r + a2 r^2 + a3 r^3 + a4 r^4.
    .a4 = lux::row32(0xC04498E8),  // -3.0718326568603516
    .a3 = lux::row32(0x3FE3509F),  // 1.7758978605270386
    .a2 = lux::row32(0xBF93D797),  // -1.1550167798995972
    .a1 = lux::row32(0x3AD3D366),  // 0.00161610241048038 = log10(e)/K - 1
    .frac_mask = lux::row32(0x007FFFFF),
    .one = lux::row32(0x3F800000),
    .high_mask = lux::row32(0xFFFF8000),   // m_hi: 8 fraction bits, m_hi*rcp exact
    .exp_offset = lux::row32(0x3F3F8000),  // carries into e from row 64 on
    .magic = lux::row32(0x4B400000),       // 12582912.0 = 1.5*2^23: e added to its bits
    .row_bits = lux::row32(0x007F8000),
    .row_half = lux::row32(0x00008000),
    .normal_bias = lux::row32(kNormalBias),
    .normal_span = lux::row32(kNormalSpan),
    .sign_flip = lux::row32(0x80000000),
    .denorm_scale = lux::row32(0x4B000000),   // 2^23
    .denorm_offset = lux::row32(0x40DD8EDE),  // 6.923689842224121 = 23 log10 2
    .pos_inf = lux::row32(0x7F800000),
    .domain_nan = lux::row32(0xFFC00000),
    .neg_inf = lux::row32(0xFF800000),
    .rows =
        {
#include "exp_log/log10_s24_table.inc"
        },
};

// Four lanes of positive normal numbers (or, Scaled, of denormals times 2^23).
template <bool Scaled>
inline __m128 log10_quad(const SLog10HaTable& t, __m128 x) {
  const __m128i xb = lux::as_int(x);
  const __m128i i = _mm_srli_epi32(_mm_add_epi32(_mm_and_si128(xb, t.row_bits.pi()), t.row_half.pi()), 16);
  const HaRow& r0 = t.rows[lux::logs::word<0>(i)];
  const HaRow& r1 = t.rows[lux::logs::word<1>(i)];
  const HaRow& r2 = t.rows[lux::logs::word<2>(i)];
  const HaRow& r3 = t.rows[lux::logs::word<3>(i)];
  const __m128 rcp = lux::logs::gather4(&r0.rcp, &r1.rcp, &r2.rcp, &r3.rcp);
  const __m128 log_hi = lux::logs::gather4(&r0.log_hi, &r1.log_hi, &r2.log_hi, &r3.log_hi);
  const __m128 log_lo = lux::logs::gather4(&r0.log_lo, &r1.log_lo, &r2.log_lo, &r3.log_lo);
  // e = (bits - 0x3F3F8000) >> 23, to a float through the bits of 1.5*2^23.
  const __m128i ei = _mm_srai_epi32(_mm_sub_epi32(xb, t.exp_offset.pi()), 23);
  const __m128 e = _mm_sub_ps(lux::as_ps(_mm_add_epi32(ei, t.magic.pi())), t.magic.ps());
  const __m128 m = lux::as_ps(_mm_or_si128(_mm_and_si128(xb, t.frac_mask.pi()), t.one.pi()));
  const __m128 mh = _mm_and_ps(m, t.high_mask.ps());
  const __m128 ml = _mm_sub_ps(m, mh);
  const __m128 rh = _mm_sub_ps(_mm_mul_ps(mh, rcp), t.k.ps());  // exact
  const __m128 rl = _mm_mul_ps(ml, rcp);
  const __m128 r = _mm_add_ps(rl, rh);
  const __m128 a = _mm_add_ps(_mm_mul_ps(e, t.l10_hi.ps()), log_hi);
  __m128 b = _mm_add_ps(rh, a);
  const __m128 c = _mm_add_ps(_mm_mul_ps(e, t.l10_lo.ps()), log_lo);
  const __m128 near = _mm_cmpeq_ps(c, _mm_setzero_ps());
  b = _mm_or_ps(_mm_and_ps(near, _mm_add_ps(b, rl)), _mm_andnot_ps(near, b));
  const __m128 w = _mm_andnot_ps(near, rl);
  __m128 p = _mm_add_ps(_mm_mul_ps(t.a4.ps(), r), t.a3.ps());
  p = _mm_add_ps(_mm_mul_ps(p, r), t.a2.ps());
  p = _mm_add_ps(_mm_mul_ps(p, r), t.a1.ps());
  const __m128 u = _mm_mul_ps(r, p);
  __m128 s = _mm_add_ps(_mm_add_ps(u, c), w);
  if constexpr (Scaled) s = _mm_sub_ps(s, t.denorm_offset.ps());
  return _mm_add_ps(s, b);
}

struct Log10Kernel {
  const lux32f* src;
  lux32f* dst;
  lux::CallState<lux32f>& call;
  const SLog10HaTable& t;

  bool passes(__m128 x) const {
    const __m128i d = _mm_xor_si128(_mm_sub_epi32(lux::as_int(x), t.normal_bias.pi()), t.sign_flip.pi());
    const __m128i ok = _mm_cmplt_epi32(d, _mm_xor_si128(t.normal_span.pi(), t.sign_flip.pi()));
    return _mm_movemask_ps(lux::as_ps(ok)) == 0xF;
  }

  // Eight lanes, tested before anything is computed.
  bool block(int i) {
    const __m128 x0 = lux::load4(src + i), x1 = lux::load4(src + i + 4);
    if (!passes(x0) || !passes(x1)) return false;
    lux::store4(dst + i, log10_quad<false>(t, x0));
    lux::store4(dst + i + 4, log10_quad<false>(t, x1));
    return true;
  }

  // _sLg_Scalar: one lane; no x87.
  void lane(int i) {
    const __m128 x = _mm_load1_ps(src + i);
    const uint32_t b = lux::logs::word<0>(lux::as_int(x));
    const uint32_t ab = b & 0x7FFFFFFF;
    if (b - kNormalBias < kNormalSpan) {
      lux::store1(dst + i, log10_quad<false>(t, x));
    } else if (ab > 0x7F800000) {
      // NaN: stored as it came; the product raises invalid for a signalling one.
      lux::store1(dst + i, x);
      lux::logs::keep(_mm_mul_ss(lux::opaque(x), t.one.ps()));
    } else if (b == 0x7F800000) {
      lux::store1(dst + i, t.pos_inf.ps());
    } else if (ab == 0) {
      lux::store1(dst + i, t.neg_inf.ps());
      call.warn(luxWarnSingularity, i);
    } else if (b & 0x80000000) {
      lux::store1(dst + i, t.domain_nan.ps());
      call.warn(luxWarnDomain, i);
    } else {
      // Positive denormal: x*2^23 is normal and exact; 23 log10 2 comes off last.
      lux::store1(dst + i, log10_quad<true>(t, _mm_mul_ps(x, t.denorm_scale.ps())));
    }
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLog10_32f_A24(const lux32f* src, lux32f* dst, int len) {
  // A failed block runs its eight lanes through the scalar routine; so does the tail.
  return lux::logs::run_export<Log10Kernel, 8, lux::logs::BlockLoop::kRedo>(kTable, src, dst, len);
}
