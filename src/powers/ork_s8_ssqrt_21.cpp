// luxsSqrt_32f_A21: sqrt(x) from the 12-bit reciprocal-square-root estimate
// r and one Newton step on s = x*r:  (r*s - 3) * (-0.5*s).
// max error 2.95 ulp at x = 0x1.f7612ep+49 (native sweep; estimate-seeded tiers vary by processor)
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_lane32.h"

namespace {

// The lane test looks at s = x*r: the estimate of a negative x is a NaN and
// that of +Inf is 0 (0*Inf), so every lane that needs help has an all-ones
// exponent in s.  Processors estimate a denormal as +Inf, which fails the
// same way; some emulators return a finite estimate instead, so a denormal
// x is also failed outright, which changes nothing where the estimate is
// infinite.  r is zeroed for x = +-0, which gives s = x.
struct alignas(16) SqrtTable {
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flMaxFinite = lux::row32(0x7F7FFFFF);
  lux::Row32 flMinNormal = lux::row32(0x00800000);
  lux::Row32 flOne = lux::row32(0x3F800000);
  lux::Row32 flThree = lux::row32(0x40400000);
  lux::Row32 flMinusHalf = lux::row32(0xBF000000);
  lux::Row32 flTwo26 = lux::row32(0x4C800000);   // denormal scale 2^26
  lux::Row32 flTwoM13 = lux::row32(0x39000000);  // and back, 2^-13
  lux::Row32 flDefaultNaN = lux::row32(0xFFC00000);
};
constexpr SqrtTable kTab{};

struct Sqrt {
  static constexpr const SqrtTable& tab = kTab;
  static lux::Sqrt32Root root(__m128 x) {
    const __m128i mag = _mm_and_si128(lux::as_int(x), kTab.flAbsMask.pi());
    const __m128i zero = _mm_cmpeq_epi32(mag, _mm_setzero_si128());
    const __m128i denormal = _mm_andnot_si128(zero, _mm_cmpgt_epi32(kTab.flMinNormal.pi(), mag));
    const __m128 r = _mm_andnot_ps(lux::as_ps(zero), _mm_rsqrt_ps(x));
    const __m128 s = _mm_mul_ps(x, r);
    const __m128i smag = _mm_and_si128(lux::as_int(s), kTab.flAbsMask.pi());
    const __m128 y =
        _mm_mul_ps(_mm_sub_ps(_mm_mul_ps(r, s), kTab.flThree.ps()), _mm_mul_ps(kTab.flMinusHalf.ps(), s));
    return {y, _mm_or_si128(_mm_cmpgt_epi32(smag, kTab.flMaxFinite.pi()), denormal)};
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqrt_32f_A21(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_sqrt32<Sqrt, 4>(src, dst, len);
}
