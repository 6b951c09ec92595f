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

#include "exp_log/log_kernels.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// hi32(x) - 0x80100000 < 0xFFE00000 as signed integers.
constexpr uint32_t kNormalBias = 0x80100000;
constexpr uint32_t kNormalLimit = 0xFFE00000;

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

// The vector path; blocks, the lane routine and its special values are
// lux::logs::DHaKernel (exp_log/log_kernels.h).
struct Log10Unit {
  using Table = DLog10HaTable;
  static constexpr uint32_t kNormalBias = ::kNormalBias, kNormalLimit = ::kNormalLimit;

  // Two lanes of positive normal numbers (or, Scaled, of denormals times 2^52).
  template <bool Scaled>
  static __m128d pair(const Table& t, __m128d x) {
    const lux::logs::DHaSplit s = lux::logs::d_ha_split<LgRow>(t, x, t.k.pd(), t.l10_hi.pd(), t.l10_lo.pd());
    __m128d p = _mm_add_pd(_mm_mul_pd(t.a5.pd(), s.r), t.a4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.a3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.a2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.a1.pd());
    const __m128d u = _mm_mul_pd(s.r, p);
    return lux::logs::d_ha_sum<Scaled>(t, s, u);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLog10_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::logs::DHaKernel<Log10Unit>::run(kTable, src, dst, len);
}
