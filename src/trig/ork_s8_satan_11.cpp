// luxsAtan_32f_A11: inverse tangent of binary32 to about 11 bits.
// max error 2.82e+03 ulp at x = 0x1.31eee8p+0 (luxvm accuracy).
//
// Two classes: for a = |x| < 1, atan a = a P(a^2); from 1 up, atan a =
// pi/2 + r P(r^2) with r = -(12-bit reciprocal estimate of a), no Newton
// step (the estimate of 1/Inf is 0, so infinities need no test).  P of
// degree 4 in z as an even and an odd chain in w = z^2, fitted on [0, 1].
#include "trig/satan.h"

namespace {

struct alignas(16) Table {
  lux::Row32 a2, a1, a0;  // even chain in w
  lux::Row32 b1, b0;      // odd chain in w, times z
  lux::Row32 flBelowOne, flAboveInf, flOne, flAbsMask, flSignMask, flPio2;
};

constexpr Table kTable = {
    lux::row32(0x3CBEDCD4),  // 0.0233013
    lux::row32(0x3E3D1CD1),  // 0.184680
    lux::row32(0x3F7FFDE4),  // 0.999968
    lux::row32(0xBDBA3A94),  // -0.0909320
    lux::row32(0xBEA9C8F7),  // -0.331611
    lux::row32(0x3F7FFFFF), lux::row32(0x7F800001), lux::row32(0x3F800000),
    lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
    lux::row32(0x3FC90FDB),  // 1.57079637
};

struct AtanEP {
  static int needs_x87(__m128) { return 0; }

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
    const __m128 r = _mm_or_ps(_mm_rcp_ps(a), T.flSignMask.ps());
    const __m128 t = select(small, a, r);
    const __m128 k = _mm_andnot_ps(small, T.flPio2.ps());
    const __m128 z = _mm_mul_ps(t, t);
    const __m128 w = _mm_mul_ps(z, z);
    const __m128 even = lux::sincos::horner(w, T.a2, T.a1, T.a0);
    const __m128 odd = lux::sincos::horner(w, T.b1, T.b0);
    const __m128 p = _mm_add_ps(even, _mm_mul_ps(odd, z));
    return _mm_or_ps(_mm_add_ps(_mm_mul_ps(p, t), k), s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtan_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::atan32::run<AtanEP>(src, dst, len);
}
