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

#include "exp_log/log_kernels.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// A lane stays on the vector path when it is a positive normal number:
// hi32(x) - 0x80100000 < 0xFFE00000 as signed integers.
constexpr uint32_t kNormalBias = 0x80100000;
constexpr uint32_t kNormalLimit = 0xFFE00000;

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

// The vector path; blocks, the lane routine and its special values are
// lux::logs::DHaKernel (exp_log/log_kernels.h).
struct LnUnit {
  using Table = DLnHaTable;
  static constexpr uint32_t kNormalBias = ::kNormalBias, kNormalLimit = ::kNormalLimit;

  // Two lanes of positive normal numbers (or, Scaled, of denormals times 2^52).
  template <bool Scaled>
  static __m128d pair(const Table& t, __m128d x) {
    const lux::logs::DHaSplit s =
        lux::logs::d_ha_split<LnRow>(t, x, t.one.pd(), t.ln2_hi.pd(), t.ln2_lo.pd());
    __m128d p = _mm_add_pd(_mm_mul_pd(t.c5.pd(), s.r), t.c4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.c3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, s.r), t.c2.pd());
    const __m128d u = _mm_mul_pd(s.r, _mm_mul_pd(p, s.r));
    return lux::logs::d_ha_sum<Scaled>(t, s, u);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsLn_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::logs::DHaKernel<LnUnit>::run(kTable, src, dst, len);
}
