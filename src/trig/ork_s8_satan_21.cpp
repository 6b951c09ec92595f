// luxsAtan_32f_A21: inverse tangent of binary32 within 8 ulp.
// max error 3.24 ulp at x = 0x1.1bf0bep+0 (luxvm accuracy).
//
// Two classes: for a = |x| < 1, atan a = a P(a^2); from 1 up, atan a =
// pi/2 + r P(r^2) with r = -1/a from the 12-bit reciprocal estimate and one
// Newton step.  P(z) = (1 + z c1(w) + ...) split into an odd-even pair of
// chains in w = z^2, fitted on [0, 1].  An infinite lane, where the Newton
// step would give 0 * Inf, is computed by the x87 unit instead.
#include "trig/satan.h"

namespace {

struct alignas(16) Table {
  lux::Row32 a4, a3, a2, a1;  // even chain: ((a4 w + a3) w + a2) w + a1) w + 1
  lux::Row32 b3, b2, b1, b0;  // odd chain, times z
  lux::Row32 flBelowOne, flAboveInf, flOne, flTwo, flAbsMask, flSignMask, flInf, flMax, flPio2;
};

constexpr Table kTable = {
    lux::row32(0x3B3AC537),  // 0.00284988177
    lux::row32(0x3D2EDD4E),  // 0.0427173897
    lux::row32(0x3DD9ED24),  // 0.106409587
    lux::row32(0x3E4CB974),  // 0.199926391
    lux::row32(0xBC83A25C),  // -0.0160686793
    lux::row32(0xBD99B01E),  // -0.0750438124
    lux::row32(0xBE117200),  // -0.142036438
    lux::row32(0xBEAAAA53),  // -0.333330721
    lux::row32(0x3F7FFFFF), lux::row32(0x7F800001), lux::row32(0x3F800000), lux::row32(0x40000000),
    lux::row32(0x7FFFFFFF), lux::row32(0x80000000), lux::row32(0x7F800000), lux::row32(0x7F7FFFFF),
    lux::row32(0x3FC90FDB),  // 1.57079637
};

struct AtanLA {
  static int needs_x87(__m128 x) {
    return _mm_movemask_ps(
        lux::as_ps(_mm_cmpeq_epi32(lux::as_int(_mm_and_ps(x, kTable.flAbsMask.ps())), kTable.flInf.pi())));
  }

  static __m128 eval(__m128 x) {
    using lux::atan32::select;
    const Table& T = kTable;
    const __m128 s = _mm_and_ps(x, T.flSignMask.ps());
    const __m128 a = _mm_and_ps(x, T.flAbsMask.ps());
    // small: not 1 <= a, NaN included; on the bits, since an ordered compare
    // raises the invalid flag on a quiet NaN.
    const __m128i ai = lux::as_int(a);
    const __m128 small = lux::as_ps(_mm_xor_si128(
        _mm_and_si128(_mm_cmpgt_epi32(ai, T.flBelowOne.pi()), _mm_cmpgt_epi32(T.flAboveInf.pi(), ai)),
        _mm_set1_epi32(-1)));
    // The reciprocal of 1 in small lanes, and of the largest finite for an
    // infinity (which the x87 unit redoes): they (zeros among them) do not use
    // must not meet 0 * Inf.
    const __m128 big_a = _mm_min_ps(lux::atan32::select(small, T.flOne.ps(), a), T.flMax.ps());
    const __m128 y = _mm_rcp_ps(big_a);
    const __m128 r = _mm_mul_ps(_mm_sub_ps(_mm_mul_ps(big_a, y), T.flTwo.ps()), y);
    const __m128 t = select(small, a, r);
    const __m128 k = _mm_andnot_ps(small, T.flPio2.ps());
    const __m128 z = _mm_mul_ps(t, t);
    const __m128 w = _mm_mul_ps(z, z);
    const __m128 even = lux::sincos::horner(w, T.a4, T.a3, T.a2, T.a1, T.flOne);
    const __m128 odd = lux::sincos::horner(w, T.b3, T.b2, T.b1, T.b0);
    const __m128 p = _mm_add_ps(even, _mm_mul_ps(odd, z));
    return _mm_or_ps(_mm_add_ps(_mm_mul_ps(p, t), k), s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtan_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::atan32::run<AtanLA>(src, dst, len);
}
