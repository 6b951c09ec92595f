// luxsInvSqrt_32f_A24: 1/sqrt(x) from the reciprocal-square-root estimate r,
// cut to 9 significant bits so that r^2 is exact in binary32, and the
// degree-3 Taylor polynomial of (1 + e)^(-1/2) in e = x*r^2 - 1:
//   p = ((-0.3125*e + 0.375)*e - 0.5)*e,  result p*r + r.
// max error 0.956 ulp at x = 0x1.10d42p+0
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// Lane test: (bits - 0x80800000), signed, above 0xFEFFFFFF fails: only
// positive normal x pass.  A block with a failing lane is recomputed whole
// in binary64 as sqrt(x)/x, so its good lanes' bits depend on the block.
struct alignas(16) InvSqrtTable {
  lux::Row32 flTestOffset = lux::row32(0x80800000u);
  lux::Row32 flTestLimit = lux::row32(0xFEFFFFFFu);
  lux::Row32 flEstimateCut = lux::row32(0xFFFF8000u);
  lux::Row32 flOne = lux::row32(0x3F800000);
  lux::Row32 flE3 = lux::row32(0xBEA00000);  // -0.3125 = -5/16
  lux::Row32 flE2 = lux::row32(0x3EC00000);  // 0.375 = 3/8
  lux::Row32 flE1 = lux::row32(0xBF000000);  // -0.5
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flInf = lux::row32(0x7F800000);
  lux::Row32 flSignMask = lux::row32(0x80000000u);
};
constexpr InvSqrtTable kTab{};

inline int failing(__m128 x) {
  const __m128i t = _mm_sub_epi32(lux::as_int(x), kTab.flTestOffset.pi());
  return _mm_movemask_ps(lux::as_ps(_mm_cmpgt_epi32(t, kTab.flTestLimit.pi())));
}

inline __m128 inv_root(__m128 x) {
  const __m128 r = _mm_and_ps(_mm_rsqrt_ps(x), kTab.flEstimateCut.ps());
  const __m128 e = _mm_sub_ps(_mm_mul_ps(x, _mm_mul_ps(r, r)), kTab.flOne.ps());
  const __m128 p = _mm_mul_ps(
      _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(kTab.flE3.ps(), e), kTab.flE2.ps()), e), kTab.flE1.ps()),
      e);
  return _mm_add_ps(_mm_mul_ps(p, r), r);
}

struct Special {
  __m128 y;
  unsigned zero;  // lane masks
  unsigned neg;
};

// The fallback of a failing block, four lanes: sqrt(x)/x in binary64 by the
// hardware square root and division, narrowed.  +-0 gives the infinity of
// its sign and +Inf gives +0 (both replaced by 1.0 before the arithmetic, so
// that it raises nothing for them); NaNs and negatives keep the arithmetic's
// NaN.
inline Special fallback(__m128 x) {
  const __m128i xi = lux::as_int(x);
  const __m128i mag = _mm_and_si128(xi, kTab.flAbsMask.pi());
  const __m128i zero = _mm_cmpeq_epi32(mag, _mm_setzero_si128());
  const __m128i inf = _mm_cmpeq_epi32(xi, kTab.flInf.pi());
  const __m128i fixed = _mm_or_si128(zero, inf);
  const __m128 xx =
      _mm_or_ps(_mm_andnot_ps(lux::as_ps(fixed), x), _mm_and_ps(lux::as_ps(fixed), kTab.flOne.ps()));
  const __m128d lo = _mm_cvtps_pd(xx);
  const __m128d hi = _mm_cvtps_pd(_mm_movehl_ps(xx, xx));
  const __m128d ylo = _mm_div_pd(_mm_sqrt_pd(lo), lo);
  const __m128d yhi = _mm_div_pd(_mm_sqrt_pd(hi), hi);
  __m128 y = _mm_movelh_ps(_mm_cvtpd_ps(ylo), _mm_cvtpd_ps(yhi));
  const __m128 pole = _mm_or_ps(kTab.flInf.ps(), _mm_and_ps(x, kTab.flSignMask.ps()));
  y = _mm_or_ps(_mm_andnot_ps(lux::as_ps(fixed), y), _mm_and_ps(lux::as_ps(zero), pole));
  const __m128i nan = _mm_cmpgt_epi32(mag, kTab.flInf.pi());
  const __m128i neg = _mm_andnot_si128(_mm_or_si128(nan, zero), _mm_cmpgt_epi32(_mm_setzero_si128(), xi));
  return {y, unsigned(_mm_movemask_ps(lux::as_ps(zero))), unsigned(_mm_movemask_ps(lux::as_ps(neg)))};
}

struct InvSqrtKernel {
  const float* src;
  float* dst;
  lux::CallState<float>& call;

  // Reports of a fallback block: first every zero lane, then every negative
  // lane, each in ascending order, so a block holding both ends at 19.
  void report(int i, unsigned zero, unsigned neg) {
    if (zero != 0)
      for (int b = 0; b < 8; ++b)
        if (zero & (1u << b)) call.warn(luxWarnSingularity, i + b);
    if (neg != 0)
      for (int b = 0; b < 8; ++b)
        if (neg & (1u << b)) call.warn(luxWarnDomain, i + b);
  }

  void block(int i) {
    const __m128 x0 = lux::load4(src + i), x1 = lux::load4(src + i + 4);
    if (__builtin_expect((failing(x0) | failing(x1)) == 0, 1)) {
      lux::store4(dst + i, inv_root(x0));
      lux::store4(dst + i + 4, inv_root(x1));
      return;
    }
    const Special a = fallback(x0), b = fallback(x1);
    lux::store4(dst + i, a.y);
    lux::store4(dst + i + 4, b.y);
    report(i, a.zero | (b.zero << 4), a.neg | (b.neg << 4));
  }

  // A tail lane: the vector code on one lane, with the same fallback.
  void tail(int i) {
    const __m128 v = _mm_load_ss(src + i);
    const __m128 x = _mm_shuffle_ps(v, v, _MM_SHUFFLE(0, 0, 0, 0));
    if ((failing(x) & 1) == 0) {
      lux::store1(dst + i, inv_root(x));
      return;
    }
    const Special s = fallback(x);
    lux::store1(dst + i, s.y);
    report(i, s.zero & 1, s.neg & 1);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInvSqrt_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  InvSqrtKernel k{src, dst, call};
  lux::run_closed<8>(len, k);
  return call.status();
}
