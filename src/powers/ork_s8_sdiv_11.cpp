// luxsDiv_32f_A11: a/b as a times the 12-bit reciprocal estimate of b.
// max error 5.14e+03 ulp at a = -0x1.ecfc2cp-43, b = 0x1.f95feap+33 (native sweep; estimate-seeded tiers vary
// by processor)
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
};
constexpr DivTable kTab{};

// _orksDiv_11_scalar takes the same product on one lane.
struct Estimate {
  static __m128 vec(__m128 a, __m128 b) { return _mm_mul_ps(_mm_rcp_ps(b), a); }
  static __m128 one(__m128 a, __m128 b) { return _mm_mul_ss(_mm_rcp_ss(b), a); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsDiv_32f_A11(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  return lux::recip::run_div_estimate<kTab, Estimate>(src1, src2, dst, len);
}
