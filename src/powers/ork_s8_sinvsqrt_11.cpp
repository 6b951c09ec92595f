// luxsInvSqrt_32f_A11: 1/sqrt(x) as the 12-bit reciprocal-square-root
// estimate itself.
// max error 2.91e+03 ulp at x = 0x1.10cfc6p+0 (native sweep; estimate-seeded tiers vary by processor)
#include "powers/invsqrt_estimate32.h"

namespace {

// The lane test and the special routine are those of invsqrt_estimate32.h.
struct alignas(16) InvSqrtTable {
  lux::Row32 flTestOffset = lux::row32(0x7F800000);
  lux::Row32 flTestLimit = lux::row32(0xFEFFF001u);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flMaxDenormal = lux::row32(0x007FFFFF);
  lux::Row32 flInf = lux::row32(0x7F800000);
  lux::Row32 flSignMask = lux::row32(0x80000000u);
  lux::Row32 flOne = lux::row32(0x3F800000);
  lux::Row32 flThree = lux::row32(0x40400000);   // filler of a partial vector
  lux::Row32 flTwo126 = lux::row32(0x7E800000);  // denormal scale 2^126
  lux::Row32 flTwo63 = lux::row32(0x5F000000);   // and back, 2^63
};
constexpr InvSqrtTable kTab{};

struct InvSqrt {
  static constexpr const InvSqrtTable& tab = kTab;
  static __m128 inv_root(__m128 x) { return _mm_rsqrt_ps(x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInvSqrt_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_invsqrt_estimate<InvSqrt>(src, dst, len);
}
