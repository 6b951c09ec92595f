// The loop and the four-lane special routine of the binary32 InvSqrt tiers
// that return the reciprocal-square-root estimate, refined or not (A11, A21).
//
// Lane test: (bits + 0x7F800000), signed, above 0xFEFFF001 fails; only
// positive x with bits from 0x00800000 to 0x7F7FF001 pass.  Everything else,
// the largest finite values among them, goes through the four-lane special
// routine, which keeps every special value inside the vector.
//
// U is the unit: U::tab its table (rows flTestOffset, flTestLimit,
// flAbsMask, flMaxDenormal, flInf, flSignMask, flOne, flThree, flTwo126,
// flTwo63), U::inv_root(x) its arithmetic on four lanes.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux {

template <class U>
inline int invsqrt_failing(__m128 x) {
  const __m128i t = _mm_add_epi32(as_int(x), U::tab.flTestOffset.pi());
  return _mm_movemask_ps(as_ps(_mm_cmpgt_epi32(t, U::tab.flTestLimit.pi())));
}

template <class U>
struct InvSqrtEstimateKernel {
  const float* src;
  float* dst;
  CallState<float>& call;

  // _orksInvSqrt4 and _orksInvSqrtSpec: `n` lanes of x (1 to 4) from lane i.
  // Small lanes (not above 0x007FFFFF as signed bits: denormals, zeros and
  // all negatives) are scaled by 2^126 before the estimate and the result by
  // 2^63.  +Inf gets +0, +-0 the infinity of its sign; negatives and NaNs
  // keep what the estimate gives.  Then, lane by lane in ascending order, a
  // negative lane reports 19, else a zero lane 18.
  void special4(int i, __m128 x, int n) {
    const __m128i xi = as_int(x);
    const __m128i big = _mm_cmpgt_epi32(xi, U::tab.flMaxDenormal.pi());
    const __m128 s1 =
        _mm_or_ps(_mm_and_ps(as_ps(big), U::tab.flOne.ps()), _mm_andnot_ps(as_ps(big), U::tab.flTwo126.ps()));
    const __m128 s2 =
        _mm_or_ps(_mm_and_ps(as_ps(big), U::tab.flOne.ps()), _mm_andnot_ps(as_ps(big), U::tab.flTwo63.ps()));
    const __m128 z = _mm_mul_ps(x, s1);
    const __m128i zi = as_int(z);
    const __m128i zmag = _mm_and_si128(zi, U::tab.flAbsMask.pi());
    const __m128i zinf = _mm_cmpeq_epi32(zi, U::tab.flInf.pi());
    const __m128i zzero = _mm_cmpeq_epi32(zmag, _mm_setzero_si128());
    const __m128i fixed = _mm_or_si128(zinf, zzero);
    // Poles and +Inf are set below; a harmless 1.0 in their place keeps the
    // refinement from raising flags of its own.
    const __m128 zz = _mm_or_ps(_mm_andnot_ps(as_ps(fixed), z), _mm_and_ps(as_ps(fixed), U::tab.flOne.ps()));
    __m128 y = _mm_mul_ps(U::inv_root(zz), s2);
    const __m128 pole = _mm_or_ps(U::tab.flInf.ps(), _mm_and_ps(x, U::tab.flSignMask.ps()));
    y = _mm_andnot_ps(as_ps(fixed), y);
    y = _mm_or_ps(y, _mm_and_ps(as_ps(zzero), pole));
    alignas(16) float out[4];
    _mm_store_ps(out, y);
    copy_lanes_raw(out, dst + i, n);
    // Negative: sign set, not a NaN, not a zero.
    const __m128i xmag = _mm_and_si128(xi, U::tab.flAbsMask.pi());
    const __m128i nan = _mm_cmpgt_epi32(xmag, U::tab.flInf.pi());
    const __m128i neg = _mm_andnot_si128(_mm_or_si128(nan, zzero), _mm_cmpgt_epi32(_mm_setzero_si128(), xi));
    const unsigned negm = unsigned(_mm_movemask_ps(as_ps(neg)));
    const unsigned zerom = unsigned(_mm_movemask_ps(as_ps(zzero)));
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
      const __m128 x0 = load4(src + i), x1 = load4(src + i + 4);
      if (__builtin_expect((invsqrt_failing<U>(x0) | invsqrt_failing<U>(x1)) == 0, 1)) {
        store4(dst + i, U::inv_root(x0));
        store4(dst + i + 4, U::inv_root(x1));
      } else {
        special4(i, x0, 4);
        special4(i + 4, x1, 4);
      }
    }
    if (len - i >= 4) {
      const __m128 x = load4(src + i);
      if (invsqrt_failing<U>(x) == 0)
        store4(dst + i, U::inv_root(x));
      else
        special4(i, x, 4);
      i += 4;
    }
    if (i < len) {
      // The last 1 to 3 lanes in one vector, the other positions 3.0.
      const int n = len - i;
      alignas(16) float buf[4];
      _mm_store_ps(buf, U::tab.flThree.ps());
      copy_lanes_raw(src + i, buf, n);
      const __m128 x = _mm_load_ps(buf);
      if (invsqrt_failing<U>(x) == 0) {
        _mm_store_ps(buf, U::inv_root(x));
        copy_lanes_raw(buf, dst + i, n);
      } else {
        special4(i, x, n);
      }
    }
  }
};

// The export's body after its entry checks.
template <class U>
inline luxStatus run_invsqrt_estimate(const lux32f* src, lux32f* dst, int len) {
  X87Guard53 x87_guard;
  RoundNearestGuard guard;
  CallState<lux32f> call(src, src, dst, dst);
  InvSqrtEstimateKernel<U> k{src, dst, call};
  k.run(len);
  return call.status();
}

}  // namespace lux
