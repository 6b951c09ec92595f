// luxsAsin_32f_A21: inverse sine of binary32 within 8 ulp.
// max error 2.23 ulp at x = 0x1.008c12p-1 (luxvm accuracy).
//
// a = |x|; below 1/2 asin a = a + a R(a^2), from 1/2 asin a = pi/2 - 2(t +
// t R(u)) with u = (1 - a)/2, t = sqrt(u) by the square-root instruction;
// both as (R t + t) M + A.  R of degree 3, fitted on [0, 1/4].
#include "trig/sasincos.h"

namespace {

struct alignas(16) Table {
  lux::Row32 o1, o3, o5, e2, e4;
  lux::Row32 flHalf, flOne, flMinusTwo, flAbsMask, flSignMask, flPio2;
};

constexpr Table kTable = {
    lux::row32(0x3E2AAAE6),  // 0.166667551
    lux::row32(0x3D3A4C23),  // 0.0454827659
    lux::row32(0x3D2D33ED),  // 0.0422858484
    lux::row32(0x3D998079),  // 0.0749520734
    lux::row32(0x3CC589DB),  // 0.0241135862
    lux::row32(0x3F000000), lux::row32(0x3F800000), lux::row32(0xC0000000),
    lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
    lux::row32(0x3FC90FDB),  // 1.57079637
};

struct AsinLA {
  using Elem = lux32f;
  static constexpr bool kAsin = true, kKeepNaN = true, kX87Invalid = true;

  static __m128 eval(__m128 x) {
    using lux::asincos::select;
    const Table& T = kTable;
    const __m128 s = _mm_and_ps(x, T.flSignMask.ps());
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128 a = _mm_min_ps(T.flOne.ps(), _mm_and_ps(x, T.flAbsMask.ps()));
    const __m128 big = _mm_cmpnlt_ps(a, T.flHalf.ps());
    const __m128 u = _mm_mul_ps(_mm_sub_ps(T.flOne.ps(), a), T.flHalf.ps());
    const __m128 z = select(big, u, _mm_mul_ps(a, a));
    const __m128 z2 = _mm_mul_ps(z, z);
    const __m128 t = select(big, _mm_sqrt_ps(u), a);
    const __m128 odd = lux::sincos::horner(z2, T.o5, T.o3, T.o1);
    const __m128 even = lux::sincos::horner(z2, T.e4, T.e2);
    const __m128 r = lux::asincos::odd_even(z, z2, odd, even);
    const __m128 m = select(big, T.flMinusTwo.ps(), T.flOne.ps());
    const __m128 k = _mm_and_ps(big, T.flPio2.ps());
    const __m128 v = _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(r, t), t), m), k);
    return _mm_or_ps(v, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsin_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::asincos::run<AsinLA>(src, dst, len);
}
