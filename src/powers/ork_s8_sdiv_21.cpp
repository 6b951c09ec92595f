// luxsDiv_32f_A21: a/b as a times the reciprocal estimate of b after one
// Newton step, (r * (2 - b * r)) * a.
// max error 3.26 ulp at a = -0x1.ee6728p+123, b = 0x1.f51facp-1 (native sweep; estimate-seeded tiers vary by
// processor)
#include "powers/recip_estimate32.h"

namespace {

// Lane test on the divisor: w = (bits - 0x00800000) & 0x7FFFFFFF fails when,
// signed, it is above 0x7DFFEFFF; |b| from 2^-126 to 0x1.ffdffep+125 passes.
// The quotient is tested too: from magnitude 2^127 (bits 0x7F000000 and
// above, infinities and NaNs included) the lane takes the x87 division.
constexpr uint32_t kMinNormal = 0x00800000;
constexpr uint32_t kRangeWidth = 0x7DFFEFFF;

struct alignas(16) DivTable {
  lux::Row32 flMinNormal = lux::row32(kMinNormal);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flRangeWidth = lux::row32(kRangeWidth);
  lux::Row32 flQuotientLimit = lux::row32(0x7EFFFFFF);
  lux::Row32 flTwo = lux::row32(0x40000000);  // 2.0
};
constexpr DivTable kTab{};

// _orksDiv_21_scalar runs the vector arithmetic on one lane.
struct Newton {
  static __m128 vec(__m128 a, __m128 b) {
    const __m128 r = _mm_rcp_ps(b);
    const __m128 r1 = _mm_mul_ps(r, _mm_sub_ps(kTab.flTwo.ps(), _mm_mul_ps(b, r)));
    return _mm_mul_ps(r1, a);
  }
  static __m128 one(__m128 a, __m128 b) {
    const __m128 r = _mm_rcp_ss(b);
    const __m128 r1 = _mm_mul_ss(r, _mm_sub_ss(kTab.flTwo.ps(), _mm_mul_ss(b, r)));
    return _mm_mul_ss(r1, a);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsDiv_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  return lux::recip::run_div_estimate<kTab, Newton>(src1, src2, dst, len);
}
