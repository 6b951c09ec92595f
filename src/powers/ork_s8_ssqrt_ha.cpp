// luxsSqrt_32f_A24: sqrt(x) from the 12-bit reciprocal-square-root estimate
// r, all in binary32: a coupled Newton step on s = x*r and h = r/2,
//   d = 0.5 - h*s,  h1 = h + h*d,  s1 = s + s*d,
// then one correction by the residual E = s1^2 - x, formed exactly enough by
// splitting s1 = sh + sl (sh: 8 significant bits, so sh*sh and sh*sl are
// exact):  E = sl*s1 + ((sh*sh - x) + sh*sl),  result s1 - h1*E.
// x's sign bit ORed into s1 makes -0 come out as -0.
// max error 0.764 ulp at x = 0x1.63bffep-126
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
  lux::Row32 flHalf = lux::row32(0x3F000000);
  lux::Row32 flSplitMask = lux::row32(0xFFFF0000);
  lux::Row32 flSignMask = lux::row32(0x80000000);
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
    const __m128 h = _mm_mul_ps(kTab.flHalf.ps(), r);
    const __m128 d = _mm_sub_ps(kTab.flHalf.ps(), _mm_mul_ps(h, s));
    const __m128 h1 = _mm_add_ps(h, _mm_mul_ps(h, d));
    const __m128 s1 = _mm_add_ps(s, _mm_mul_ps(s, d));
    const __m128 sh = _mm_and_ps(s1, kTab.flSplitMask.ps());
    const __m128 sl = _mm_sub_ps(s1, sh);
    const __m128 e =
        _mm_add_ps(_mm_mul_ps(sl, s1), _mm_add_ps(_mm_sub_ps(_mm_mul_ps(sh, sh), x), _mm_mul_ps(sh, sl)));
    const __m128 s1_signed = _mm_or_ps(s1, _mm_and_ps(x, kTab.flSignMask.ps()));
    const __m128 y = _mm_sub_ps(s1_signed, _mm_mul_ps(h1, e));
    return {y, _mm_or_si128(_mm_cmpgt_epi32(smag, kTab.flMaxFinite.pi()), denormal)};
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqrt_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_sqrt32<Sqrt, 2>(src, dst, len);
}
