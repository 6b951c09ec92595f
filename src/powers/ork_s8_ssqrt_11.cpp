// luxsSqrt_32f_A11: sqrt(x) as x times the 12-bit reciprocal-square-root
// estimate, unrefined.
// max error 4.14e+03 ulp at x = 0x1.df2faep+1 (native sweep; estimate-seeded tiers vary by processor)
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
  lux::Row32 flTwo26 = lux::row32(0x4C800000);   // denormal scale 2^26
  lux::Row32 flTwoM13 = lux::row32(0x39000000);  // and back, 2^-13
  lux::Row32 flDefaultNaN = lux::row32(0xFFC00000);
};
constexpr SqrtTable kTab{};

struct Root {
  __m128 value;
  __m128i bad;
};

inline Root root(__m128 x) {
  const __m128i mag = _mm_and_si128(lux::as_int(x), kTab.flAbsMask.pi());
  const __m128i zero = _mm_cmpeq_epi32(mag, _mm_setzero_si128());
  const __m128i denormal = _mm_andnot_si128(zero, _mm_cmpgt_epi32(kTab.flMinNormal.pi(), mag));
  const __m128 r = _mm_andnot_ps(lux::as_ps(zero), _mm_rsqrt_ps(x));
  const __m128 s = _mm_mul_ps(x, r);
  const __m128i smag = _mm_and_si128(lux::as_int(s), kTab.flAbsMask.pi());
  return {s, _mm_or_si128(_mm_cmpgt_epi32(smag, kTab.flMaxFinite.pi()), denormal)};
}

struct SqrtKernel {
  const float* src;
  float* dst;
  lux::CallState<float>& call;

  bool block(int i) {
    const Root a = root(lux::load4(src + i));
    const Root b = root(lux::load4(src + i + 4));
    if (__builtin_expect(_mm_movemask_epi8(_mm_or_si128(a.bad, b.bad)) != 0, 0)) return false;
    lux::store4(dst + i, a.value);
    lux::store4(dst + i + 4, b.value);
    return true;
  }

  // sqrt_scalar: positive numbers through the vector arithmetic on one lane
  // (a denormal scaled by 2^26 first and its root by 2^-13 after), +-0 and
  // +Inf as they are, NaN quieted by x*1.0, the rest the default NaN.
  void lane(int i) {
    const __m128 x = lux::broadcast1(src + i);
    __m128 y;
    bool domain = false;
    switch (lux::classify_sqrt32(__builtin_bit_cast(uint32_t, src[i]))) {
      case lux::Sqrt32Class::kNormal:
        y = root(x).value;
        break;
      case lux::Sqrt32Class::kDenormal:
        y = _mm_mul_ps(root(_mm_mul_ps(x, kTab.flTwo26.ps())).value, kTab.flTwoM13.ps());
        break;
      case lux::Sqrt32Class::kNaN:
        y = _mm_mul_ps(x, lux::opaque(kTab.flOne.ps()));
        break;
      case lux::Sqrt32Class::kNegative:
        y = kTab.flDefaultNaN.ps();
        domain = true;
        break;
      default:  // +-0, +Inf
        y = x;
        break;
    }
    lux::store1(dst + i, y);
    if (domain) call.warn(luxWarnDomain, i);
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqrt_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  SqrtKernel k{src, dst, call};
  lux::run_block_redo<8>(len, k);
  return call.status();
}
