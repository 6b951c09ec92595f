// luxsAtan2_32f_A21: two-argument inverse tangent of binary32 within 8 ulp.
// max error 3.59 ulp at y = -0x1.381722p-35, x = 0x1.3773f6p-35 (luxvm accuracy).
//
// Two classes: with ay = |y|, ax = |x|, t = ay/ax when ax > ay, else
// t = -ax/ay against pi/2; atan(ay/ax) = K1 + t P(t^2); for x < 0 the result
// is pi minus that, and y's sign goes on last.
// The quotient by division; P of degree 8 in z as two chains in w = z^2,
// fitted on [0, 1].
#include "trig/satan2.h"

namespace {

struct alignas(16) Table {
  lux::Row32 a4, a3, a2, a1;  // even chain: (((a4 w + a3) w + a2) w + a1) w + 1
  lux::Row32 b3, b2, b1, b0;  // odd chain, times z
  lux::Row32 flOne, flAbsMask, flSignMask, flPio2, flPi;
};

constexpr Table kTable = {
    lux::row32(0x3B322CC0),  // 0.00271873176
    lux::row32(0x3D2BC384),  // 0.0419345051
    lux::row32(0x3DD96474),  // 0.106148392
    lux::row32(0x3E4CB79F),  // 0.199919447
    lux::row32(0xBC7F2631),  // -0.0155730741
    lux::row32(0xBD987629),  // -0.0744441971
    lux::row32(0xBE1161F8),  // -0.141975284
    lux::row32(0xBEAAAA49),  // -0.333330423
    lux::row32(0x3F800000), lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
    lux::row32(0x3FC90FDB),  // 1.57079637
    lux::row32(0x40490FDB),  // 3.14159274
};

struct Atan2LA {
  static __m128 eval(__m128 y, __m128 x) {
    using lux::atan2_32::select;
    const Table& T = kTable;
    const __m128 sy = _mm_and_ps(y, T.flSignMask.ps()), sx = _mm_and_ps(x, T.flSignMask.ps());
    const __m128 ay = _mm_and_ps(y, T.flAbsMask.ps()), ax = _mm_and_ps(x, T.flAbsMask.ps());
    const __m128 swap = _mm_cmple_ps(ax, ay);
    const __m128 num = select(swap, _mm_xor_ps(ax, T.flSignMask.ps()), ay);
    const __m128 den = select(swap, ay, ax);
    const __m128 k1 = _mm_and_ps(swap, T.flPio2.ps());
    const __m128 k2 = _mm_and_ps(lux::as_ps(_mm_srai_epi32(lux::as_int(x), 31)), T.flPi.ps());
    const __m128 t = _mm_div_ps(num, den);
    const __m128 z = _mm_mul_ps(t, t);
    const __m128 w = _mm_mul_ps(z, z);
    const __m128 even = lux::sincos::horner(w, T.a4, T.a3, T.a2, T.a1, T.flOne);
    const __m128 odd = lux::sincos::horner(w, T.b3, T.b2, T.b1, T.b0);
    const __m128 p = _mm_add_ps(even, _mm_mul_ps(odd, z));
    __m128 v = _mm_add_ps(_mm_mul_ps(p, t), k1);
    v = _mm_add_ps(_mm_or_ps(v, sx), k2);
    return _mm_or_ps(v, sy);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtan2_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  return lux::atan2_32::run<Atan2LA>(src1, src2, dst, len);
}
