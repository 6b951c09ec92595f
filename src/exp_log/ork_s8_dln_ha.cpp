// luxsLn_64f_A53: natural logarithm of binary64 lanes, tier A53 (bound 1 ulp).
// max error 0.579 ulp at x = 0x1.ffe00da67113bp-1 (luxvm accuracy, 10^6 points)
//
// x = 2^e * m, m in [1, 2).  Row i of the table, from the top ten fraction
// bits rounded to nine, holds rcp ~ 512/(512+i) (a multiple of 2^-23) and
// -ln(rcp) in two words; from row 256 on e counts one more and the row's
// logarithm one ln 2 less, so m*rcp stays in about [0.75, 1.5) and rows 0 and
// 512 both stand for m*rcp = 1.  m is split so that m_hi*rcp - 1 is exact,
// and ln(1 + r), |r| < 2^-10, is r + r^2*P(r) with P of degree 3.  The sum
// runs from the smallest term to the largest; near 1 (e = 0 in rows 0 and
// 512, where the logarithm terms C vanish) the low part of r is folded into
// the leading sum instead, so there the result keeps full relative accuracy.
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

struct LnRow {
  uint64_t rcp, log_hi, log_lo;
};

struct alignas(16) DLnHaTable {
  lux::Row64 ln2_hi, ln2_lo;
  lux::Row64 c5, c4, c3, c2;
  lux::Row64 frac_mask, one, high_mask, magic;
  lux::Row32 exp_offset, normal_bias, normal_limit;
  lux::Row64 denorm_scale, denorm_offset;
  lux::Row64 pos_inf, domain_nan, neg_inf;
  LnRow rows[513];  // dLn_HA_Table
};

constexpr DLnHaTable kTable = {
    // ln 2 with its last 11 bits zero, so e*LN2_HI is exact for every e.
    .ln2_hi = lux::row64(0x3FE62E42FEFA3800),  // 0.6931471805598903
    .ln2_lo = lux::row64(0x3D2EF35793C76730),  // 5.497923018708371e-14
    // ln(1+r) ~ r + r^2*(c2 + c3 r + c4 r^2 + c5 r^3) on |r| < 2^-10.
    .c5 = lux::row64(0x3FC9999B39037E04),  // 0.2000001934420511
    .c4 = lux::row64(0xBFD00000D588D052),  // -0.2500001988694339
    .c3 = lux::row64(0x3FD555555555512A),  // 0.3333333333332741
    .c2 = lux::row64(0xBFDFFFFFFFFFFCA9),  // -0.49999999999995254
    .frac_mask = lux::row64(0x000FFFFFFFFFFFFF),
    .one = lux::row64(0x3FF0000000000000),
    .high_mask = lux::row64(0x7FFFFFFF00000000),  // m_hi: 20 fraction bits, m_hi*rcp exact
    .magic = lux::row64(0x4138000000000000),      // 1.5*2^20: e added to its high word
    .exp_offset = lux::row32(0x3FE7FC00),         // carries into e from row 256 on
    .normal_bias = lux::row32(kNormalBias),
    .normal_limit = lux::row32(kNormalLimit),
    .denorm_scale = lux::row64(0x4330000000000000),   // 2^52
    .denorm_offset = lux::row64(0x404205966F2B4F12),  // 36.04365338911715 = 52 ln 2
    .pos_inf = lux::row64(0x7FF0000000000000),
    .domain_nan = lux::row64(0xFFF8000000000000),
    .neg_inf = lux::row64(0xFFF0000000000000),
    .rows =
        {
#include "exp_log/ln_d53_table.inc"
        },
};

inline uint32_t row_index(uint32_t hi) { return (((hi & kRowBits) + kRowHalf) & kRowMask) >> kRowShift; }

// Two lanes of positive normal numbers (or, Scaled, of denormals times 2^52).
template <bool Scaled>
inline __m128d ln_pair(const DLnHaTable& t, __m128d x) {
  const __m128i hi = lux::high_words(x);
  const LnRow& r0 = t.rows[row_index(lux::logs::word<0>(hi))];
  const LnRow& r1 = t.rows[row_index(lux::logs::word<1>(hi))];
  // e = (hi32 - 0x3FE7FC00) >> 20, to a double through the high word of 1.5*2^20.
  const __m128i e = _mm_srai_epi32(_mm_sub_epi32(hi, t.exp_offset.pi()), 20);
  const __m128d ef = _mm_sub_pd(
      lux::as_pd(_mm_add_epi32(_mm_unpacklo_epi32(_mm_setzero_si128(), e), t.magic.pi())), t.magic.pd());
  const __m128d m = _mm_or_pd(_mm_and_pd(x, t.frac_mask.pd()), t.one.pd());
  const __m128d mh = _mm_and_pd(m, t.high_mask.pd());
  const __m128d ml = _mm_sub_pd(m, mh);
  const __m128d rcp = lux::logs::gather2(&r0.rcp, &r1.rcp);
  const __m128d log_hi = lux::logs::gather2(&r0.log_hi, &r1.log_hi);
  const __m128d log_lo = lux::logs::gather2(&r0.log_lo, &r1.log_lo);
  const __m128d rh = _mm_sub_pd(_mm_mul_pd(mh, rcp), t.one.pd());  // exact
  const __m128d rl = _mm_mul_pd(ml, rcp);
  const __m128d r = _mm_add_pd(rl, rh);
  const __m128d a = _mm_add_pd(_mm_mul_pd(ef, t.ln2_hi.pd()), log_hi);  // exact
  __m128d b = _mm_add_pd(rh, a);
  const __m128d c = _mm_add_pd(_mm_mul_pd(ef, t.ln2_lo.pd()), log_lo);
  // Near 1, C = 0: fold rl into the leading sum, and add no separate w.
  const __m128d near = _mm_cmpeq_pd(c, _mm_setzero_pd());
  b = _mm_or_pd(_mm_and_pd(near, _mm_add_pd(b, rl)), _mm_andnot_pd(near, b));
  const __m128d w = _mm_andnot_pd(near, rl);
  __m128d p = _mm_add_pd(_mm_mul_pd(t.c5.pd(), r), t.c4.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.c3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), t.c2.pd());
  const __m128d u = _mm_mul_pd(r, _mm_mul_pd(p, r));
  __m128d s = _mm_add_pd(_mm_add_pd(u, c), w);
  if constexpr (Scaled) s = _mm_sub_pd(s, t.denorm_offset.pd());
  return _mm_add_pd(s, b);
}

struct LnKernel {
  const lux64f* src;
  lux64f* dst;
  lux::CallState<lux64f>& call;
  const DLnHaTable& t;

  // Four lanes: both pairs pass the test before anything is computed.
  bool block(int i) {
    const __m128d x0 = lux::load2(src + i), x1 = lux::load2(src + i + 2);
    const __m128i hi =
        _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(x0), _mm_castpd_ps(x1), _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i ok = _mm_cmplt_epi32(_mm_sub_epi32(hi, t.normal_bias.pi()), t.normal_limit.pi());
    if (_mm_movemask_ps(_mm_castsi128_ps(ok)) != 0xF) return false;
    lux::store2(dst + i, ln_pair<false>(t, x0));
    lux::store2(dst + i + 2, ln_pair<false>(t, x1));
    return true;
  }

  // _dLn_Scalar: one lane, the vector steps for positive normal numbers.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    const uint32_t hi = lux::logs::word<1>(lux::as_int(x)), lo = lux::logs::word<0>(lux::as_int(x));
    const uint32_t ahi = hi & 0x7FFFFFFF;
    if (int32_t(hi - kNormalBias) < int32_t(kNormalLimit)) {
      lux::store1(dst + i, ln_pair<false>(t, x));
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
      // Positive denormal: x*2^52 is normal and exact; 52 ln 2 comes off last.
      lux::store1(dst + i, ln_pair<true>(t, _mm_mul_pd(x, t.denorm_scale.pd())));
    }
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  LnKernel k{src, dst, call, kTable};
  // A failed block runs its four lanes through the scalar routine; so does the tail.
  lux::run_block_redo<4>(len, k);
  return call.status();
}
