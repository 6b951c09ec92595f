// luxsLog10_64f_A53: decimal logarithm of binary64 lanes, tier A53 (bound 1 ulp).
// max error 0.580 ulp at x = 0x1.ffdc1524be849p-1 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2), e the plain exponent.  Row i (top ten fraction
// bits rounded to nine) holds rcp = K*q with q ~ 512/(512+i) a multiple of
// 2^-13 and K = 0.43359375 a short stand-in for log10 e, and -log10 q in two
// words.  Because rcp carries K, m*rcp - K is about K*r and
// log10(m) = -log10 q + log10(1 + (m*rcp - K)/K) needs no multiplication by
// log10 e: with r = m*rcp - K, log10(1 + r/K) = r + a1 r + a2 r^2 + ... + a5
// r^5, a1 = log10(e)/K - 1.  m is split so that m_hi*rcp - K is exact.  Near 1
// (e = 0 in row 0, e = -1 in row 512, where the logarithm terms C cancel to
// zero) the low part of r joins the leading sum, for full relative accuracy.
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_frame.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// hi32(x) - 0x80100000 < 0xFFE00000 as signed integers.
constexpr uint32_t kNormalBias = 0x80100000;
constexpr uint32_t kNormalLimit = 0xFFE00000;
// Row index: top ten fraction bits of the high word, rounded half up to nine.
constexpr uint32_t kRowBits = 0x000FFC00, kRowHalf = 0x00000400, kRowMask = 0x001FF800;
constexpr int kRowShift = 11;

struct LgRow {
  uint64_t rcp, log_hi, log_lo;
};

struct alignas(16) DLog10HaTable {
  lux::Row64 l10_hi, l10_lo, k;
  lux::Row64 a5, a4, a3, a2, a1;
  lux::Row64 frac_mask, one, high_mask, magic;
  lux::Row32 exp_offset, normal_bias, normal_limit;
  lux::Row64 denorm_scale, denorm_offset;
  lux::Row64 pos_inf, domain_nan, neg_inf;
  LgRow rows[513];  // dLog10_HA_Table
};

constexpr DLog10HaTable kTable = {
    // log10 2 truncated to a multiple of 2^-43 (42 bits): e*L10_HI is exact.
    .l10_hi = lux::row64(0x3FD34413509F7800),  // 0.30102999566395283
    .l10_lo = lux::row64(0x3D1FEF311F12B358),  // 2.8363394551044964e-14
    .k = lux::row64(0x3FDBC00000000000),       // K = 0.43359375
    // log10(1 + r/K) - r ~ a1 r + a2 r^2 + a3 r^3 + a4 r^4 + a5 r^5, |r| < K 2^-10.
    .a5 = lux::row64(0x4016ABA0F9751EC1),  // 5.667606256268926
    .a4 = lux::row64(0xC008930AAC7D7C50),  // -3.0717977023883023
    .a3 = lux::row64(0x3FFC6A02DC962E0F),  // 1.7758816353479039
    .a2 = lux::row64(0xBFF27AF2DC77AF28),  // -1.1550167667400704
    .a1 = lux::row64(0x3F5A7A6CBF2E4108),  // 0.0016161024074997105 = log10(e)/K - 1
    .frac_mask = lux::row64(0x000FFFFFFFFFFFFF),
    .one = lux::row64(0x3FF0000000000000),
    .high_mask = lux::row64(0x7FFFFFFF80000000),  // m_hi: 21 fraction bits, m_hi*rcp exact
    .magic = lux::row64(0x4138000000000000),      // 1.5*2^20: e added to its high word
    .exp_offset = lux::row32(0x3FF00000),
    .normal_bias = lux::row32(kNormalBias),
    .normal_limit = lux::row32(kNormalLimit),
    .denorm_scale = lux::row64(0x4330000000000000),   // 2^52
    .denorm_offset = lux::row64(0x402F4E9F6303263E),  // 15.653559774527022 = 52 log10 2
    .pos_inf = lux::row64(0x7FF0000000000000),
    .domain_nan = lux::row64(0xFFF8000000000000),
    .neg_inf = lux::row64(0xFFF0000000000000),
    .rows =
        {
#include "exp_log/log10_d53_table.inc"
        },
};

inline uint32_t row_index(uint32_t hi) { return (((hi & kRowBits) + kRowHalf) & kRowMask) >> kRowShift; }

// Two lanes of positive normal numbers (or, Scaled, of denormals times 2^52).
template <bool Scaled>
inline __m128d log10_pair(const DLog10HaTable& t, __m128d x) {
  const __m128i hi = lux::high_words(x);
  const LgRow& r0 = t.rows[row_index(lux::logs::word<0>(hi))];
  const LgRow& r1 = t.rows[row_index(lux::logs::word<1>(hi))];
  // e = (hi32 - 0x3FF00000) >> 20, to a double through the high word of 1.5*2^20.
  const __m128i e = _mm_srai_epi32(_mm_sub_epi32(hi, t.exp_offset.pi()), 20);
  const __m128d ef = _mm_sub_pd(
      lux::as_pd(_mm_add_epi32(_mm_unpacklo_epi32(_mm_setzero_si128(), e), t.magic.pi())), t.magic.pd());
  const __m128d m = _mm_or_pd(_mm_and_pd(x, t.frac_mask.pd()), t.one.pd());
  const __m128d mh = _mm_and_pd(m, t.high_mask.pd());
  const __m128d ml = _mm_sub_pd(m, mh);
  const __m128d rcp = lux::logs::gather2(&r0.rcp, &r1.rcp);
  const __m128d log_hi = lux::logs::gather2(&r0.log_hi, &r1.log_hi);
  const __m128d log_lo = lux::logs::gather2(&r0.log_lo, &r1.log_lo);
  const __m128d rh = _mm_sub_pd(_mm_mul_pd(mh, rcp), t.k.pd());  // exact
  const __m128d rl = _mm_mul_pd(ml, rcp);
  const __m128d r = _mm_add_pd(rl, rh);
  const __m128d a = _mm_add_pd(_mm_mul_pd(ef, t.l10_hi.pd()), log_hi);
  __m128d b = _mm_add_pd(rh, a);
  const __m128d c = _mm_add_pd(_mm_mul_pd(ef, t.l10_lo.pd()), log_lo);
  // Near 1, C = 0: fold rl into the leading sum, and add no separate w.
  const __m128d near = _mm_cmpeq_pd(c, _mm_setzero_pd());
  b = _mm_or_pd(_mm_and_pd(near, _mm_add_pd(b, rl)), _mm_andnot_pd(near, b));
  const __m128d w = _mm_andnot_pd(near, rl);
  __m128d p = _mm_add_pd(_mm_mul_pd(t.a5.pd(), r), t.a4.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.a3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.a2.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.a1.pd());
  const __m128d u = _mm_mul_pd(r, p);
  __m128d s = _mm_add_pd(_mm_add_pd(u, c), w);
  if constexpr (Scaled) s = _mm_sub_pd(s, t.denorm_offset.pd());
  return _mm_add_pd(s, b);
}

struct Log10Kernel {
  const lux64f* src;
  lux64f* dst;
  lux::CallState<lux64f>& call;
  const DLog10HaTable& t;

  // Four lanes: both pairs pass the test before anything is computed.
  bool block(int i) {
    const __m128d x0 = lux::load2(src + i), x1 = lux::load2(src + i + 2);
    const __m128i hi =
        _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(x0), _mm_castpd_ps(x1), _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i ok = _mm_cmplt_epi32(_mm_sub_epi32(hi, t.normal_bias.pi()), t.normal_limit.pi());
    if (_mm_movemask_ps(_mm_castsi128_ps(ok)) != 0xF) return false;
    lux::store2(dst + i, log10_pair<false>(t, x0));
    lux::store2(dst + i + 2, log10_pair<false>(t, x1));
    return true;
  }

  // _dLg_Scalar: one lane, the vector steps for positive normal numbers.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    const uint32_t hi = lux::logs::word<1>(lux::as_int(x)), lo = lux::logs::word<0>(lux::as_int(x));
    const uint32_t ahi = hi & 0x7FFFFFFF;
    if (int32_t(hi - kNormalBias) < int32_t(kNormalLimit)) {
      lux::store1(dst + i, log10_pair<false>(t, x));
    } else if (ahi > 0x7FF00000 || (ahi == 0x7FF00000 && lo != 0)) {
      // NaN: stored as it came; the product raises invalid for a signalling one.
      lux::store1(dst + i, x);
      lux::logs::keep(_mm_mul_sd(lux::opaque(x), t.one.pd()));
    } else if (hi == 0x7FF00000) {
      lux::store1(dst + i, t.pos_inf.pd());
    } else if ((ahi | lo) == 0) {
      lux::store1(dst + i, t.neg_inf.pd());
      call.warn(luxWarnSingularity, i);
    } else if (hi & 0x80000000) {
      lux::store1(dst + i, t.domain_nan.pd());
      call.warn(luxWarnDomain, i);
    } else {
      // Positive denormal: x*2^52 is normal and exact; 52 log10 2 comes off last.
      lux::store1(dst + i, log10_pair<true>(t, _mm_mul_pd(x, t.denorm_scale.pd())));
    }
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLog10_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  Log10Kernel k{src, dst, call, kTable};
  // A failed block runs its four lanes through the scalar routine; so does the tail.
  lux::run_block_redo<4>(len, k);
  return call.status();
}
