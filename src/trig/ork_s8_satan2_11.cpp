// luxsAtan2_32f_A11: two-argument inverse tangent of binary32 to about 11 bits.
// max error 3.77e+03 ulp at y = 0x1.dce64cp-113, x = 0x1.dcec42p-26 (luxvm accuracy).
//
// Two classes: with ay = |y|, ax = |x|, t = ay/ax when ax > ay, else
// t = -ax/ay against pi/2; atan(ay/ax) = K1 + t P(t^2); for x < 0 the result
// is pi minus that, and y's sign goes on last.
// The quotient from the 12-bit reciprocal estimate and one Newton step; P of
// degree 4 in z as two chains in w = z^2, fitted on [0, 1].
#include "trig/satan2.h"

namespace {

struct alignas(16) Table {
  lux::Row32 a1, a0;  // even chain in w
  lux::Row32 b1, b0;  // odd chain in w, times z
  lux::Row32 flTwo, flAbsMask, flSignMask, flPio2, flPi;
};

constexpr Table kTable = {
    lux::row32(0x3E1E481B),  // 0.154571
    lux::row32(0x3F7FF145),  // 0.999776
    lux::row32(0xBD324820),  // -0.0435257
    lux::row32(0xBEA6A8A3),  // -0.325505
    lux::row32(0x40000000), lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
    lux::row32(0x3FC90FDB),  // 1.57079637
    lux::row32(0x40490FDB),  // 3.14159274
};

struct Atan2EP {
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
    const __m128 y0 = _mm_rcp_ps(den);
    const __m128 y1 = _mm_mul_ps(y0, _mm_sub_ps(T.flTwo.ps(), _mm_mul_ps(den, y0)));
    const __m128 t = _mm_mul_ps(num, y1);
    const __m128 z = _mm_mul_ps(t, t);
    const __m128 w = _mm_mul_ps(z, z);
    const __m128 p =
        _mm_add_ps(lux::sincos::horner(w, T.a1, T.a0), _mm_mul_ps(lux::sincos::horner(w, T.b1, T.b0), z));
    __m128 v = _mm_add_ps(_mm_mul_ps(p, t), k1);
    v = _mm_add_ps(_mm_or_ps(v, sx), k2);
    return _mm_or_ps(v, sy);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtan2_32f_A11(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  return lux::atan2_32::run<Atan2EP>(src1, src2, dst, len);
}
