// luxsInvSqrt_32f_A11: 1/sqrt(x) as the 12-bit reciprocal-square-root
// estimate itself.
// max error 2.91e+03 ulp at x = 0x1.10cfc6p+0 (native sweep; estimate-seeded tiers vary by processor)
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// Lane test: (bits + 0x7F800000), signed, above 0xFEFFF001 fails; only
// positive x with bits from 0x00800000 to 0x7F7FF001 pass.  Everything else,
// the largest finite values among them, goes through the four-lane special
// routine, which keeps every special value inside the vector.
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

inline int failing(__m128 x) {
  const __m128i t = _mm_add_epi32(lux::as_int(x), kTab.flTestOffset.pi());
  return _mm_movemask_ps(lux::as_ps(_mm_cmpgt_epi32(t, kTab.flTestLimit.pi())));
}

inline __m128 inv_root(__m128 x) { return _mm_rsqrt_ps(x); }

struct InvSqrtKernel {
  const float* src;
  float* dst;
  lux::CallState<float>& call;

  // _orksInvSqrt4 and _orksInvSqrtSpec: `n` lanes of x (1 to 4) from lane i.
  // Small lanes (not above 0x007FFFFF as signed bits: denormals, zeros and
  // all negatives) are scaled by 2^126 before the estimate and the result by
  // 2^63.  +Inf gets +0, +-0 the infinity of its sign; negatives and NaNs
  // keep what the estimate gives.  Then, lane by lane in ascending order, a
  // negative lane reports 19, else a zero lane 18.
  void special4(int i, __m128 x, int n) {
    const __m128i xi = lux::as_int(x);
    const __m128i big = _mm_cmpgt_epi32(xi, kTab.flMaxDenormal.pi());
    const __m128 s1 = _mm_or_ps(_mm_and_ps(lux::as_ps(big), kTab.flOne.ps()),
                                _mm_andnot_ps(lux::as_ps(big), kTab.flTwo126.ps()));
    const __m128 s2 = _mm_or_ps(_mm_and_ps(lux::as_ps(big), kTab.flOne.ps()),
                                _mm_andnot_ps(lux::as_ps(big), kTab.flTwo63.ps()));
    const __m128 z = _mm_mul_ps(x, s1);
    const __m128i zi = lux::as_int(z);
    const __m128i zmag = _mm_and_si128(zi, kTab.flAbsMask.pi());
    const __m128i zinf = _mm_cmpeq_epi32(zi, kTab.flInf.pi());
    const __m128i zzero = _mm_cmpeq_epi32(zmag, _mm_setzero_si128());
    const __m128i fixed = _mm_or_si128(zinf, zzero);
    // Poles and +Inf are set below; a harmless 1.0 in their place keeps the
    // refinement from raising flags of its own.
    const __m128 zz =
        _mm_or_ps(_mm_andnot_ps(lux::as_ps(fixed), z), _mm_and_ps(lux::as_ps(fixed), kTab.flOne.ps()));
    __m128 y = _mm_mul_ps(inv_root(zz), s2);
    const __m128 pole = _mm_or_ps(kTab.flInf.ps(), _mm_and_ps(x, kTab.flSignMask.ps()));
    y = _mm_andnot_ps(lux::as_ps(fixed), y);
    y = _mm_or_ps(y, _mm_and_ps(lux::as_ps(zzero), pole));
    alignas(16) float out[4];
    _mm_store_ps(out, y);
    lux::copy_lanes_raw(out, dst + i, n);
    // Negative: sign set, not a NaN, not a zero.
    const __m128i xmag = _mm_and_si128(xi, kTab.flAbsMask.pi());
    const __m128i nan = _mm_cmpgt_epi32(xmag, kTab.flInf.pi());
    const __m128i neg = _mm_andnot_si128(_mm_or_si128(nan, zzero), _mm_cmpgt_epi32(_mm_setzero_si128(), xi));
    const unsigned negm = unsigned(_mm_movemask_ps(lux::as_ps(neg)));
    const unsigned zerom = unsigned(_mm_movemask_ps(lux::as_ps(zzero)));
    for (int j = 0; j < n; ++j) {
      if (negm & (1u << j))
        call.warn(luxWarnDomain, i + j);
      else if (zerom & (1u << j))
        call.warn(luxWarnSingularity, i + j);
    }
  }

  void run(int len) {
    int i = 0;
    for (; len - i >= 8; i += 8) {
      const __m128 x0 = lux::load4(src + i), x1 = lux::load4(src + i + 4);
      if (__builtin_expect((failing(x0) | failing(x1)) == 0, 1)) {
        lux::store4(dst + i, inv_root(x0));
        lux::store4(dst + i + 4, inv_root(x1));
      } else {
        special4(i, x0, 4);
        special4(i + 4, x1, 4);
      }
    }
    if (len - i >= 4) {
      const __m128 x = lux::load4(src + i);
      if (failing(x) == 0)
        lux::store4(dst + i, inv_root(x));
      else
        special4(i, x, 4);
      i += 4;
    }
    if (i < len) {
      // The last 1 to 3 lanes in one vector, the other positions 3.0.
      const int n = len - i;
      alignas(16) float buf[4];
      _mm_store_ps(buf, kTab.flThree.ps());
      lux::copy_lanes_raw(src + i, buf, n);
      const __m128 x = _mm_load_ps(buf);
      if (failing(x) == 0) {
        _mm_store_ps(buf, inv_root(x));
        lux::copy_lanes_raw(buf, dst + i, n);
      } else {
        special4(i, x, n);
      }
    }
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInvSqrt_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::X87Guard53 x87_guard;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  InvSqrtKernel k{src, dst, call};
  k.run(len);
  return call.status();
}
