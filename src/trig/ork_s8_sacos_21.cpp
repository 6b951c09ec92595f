// luxsAcos_32f_A21: inverse cosine of binary32 within 8 ulp.
// max error 2.57 ulp at x = 0x1.1948e4p-1 (luxvm accuracy).
//
// a = |x|; below 1/2 acos x = pi/2 - sign(x)(a + a R(a^2)); from 1/2, with
// u = (1 - a)/2 and t = sqrt(u) (the square-root instruction), acos |x| =
// 2(t + t R(u)), and pi - that for negative x; all as (R t + t) M + A.  R is
// of degree 2 in z, fitted for the cosine.
#include "trig/sasincos.h"

namespace {

struct alignas(16) Table {
  lux::Row32 o1, o3, e2, e4;
  lux::Row32 flHalf, flOne, flTwo, flMinusOne, flMinusTwo, flAbsMask, flPio2, flPi;
};

constexpr Table kTable = {
    lux::row32(0x3E2AA7C4),  // 0.1666556
    lux::row32(0x3D23CA80),  // 0.0399880409
    lux::row32(0x3D9A712E),  // 0.0754111856
    lux::row32(0x3D4D100E),  // 0.0500641391
    lux::row32(0x3F000000), lux::row32(0x3F800000), lux::row32(0x40000000),
    lux::row32(0xBF800000), lux::row32(0xC0000000), lux::row32(0x7FFFFFFF),
    lux::row32(0x3FC90FDB),  // 1.57079637
    lux::row32(0x40490FDB),  // 3.14159274
};

struct AcosLA {
  using Elem = lux32f;
  static constexpr bool kAsin = false, kKeepNaN = true, kX87Invalid = true;

  static __m128 eval(__m128 x) {
    using lux::asincos::select;
    const Table& T = kTable;
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128 a = _mm_min_ps(T.flOne.ps(), _mm_and_ps(x, T.flAbsMask.ps()));
    const __m128 neg = _mm_cmplt_ps(x, _mm_setzero_ps());
    const __m128 big = _mm_cmple_ps(T.flHalf.ps(), a);
    const __m128 u = _mm_mul_ps(_mm_sub_ps(T.flOne.ps(), a), T.flHalf.ps());
    const __m128 z = select(big, u, _mm_mul_ps(a, a));
    const __m128 z2 = _mm_mul_ps(z, z);
    const __m128 t = select(big, _mm_sqrt_ps(u), a);
    const __m128 odd = lux::sincos::horner(z2, T.o3, T.o1);
    const __m128 even = lux::sincos::horner(z2, T.e4, T.e2);
    const __m128 r = lux::asincos::odd_even(z, z2, odd, even);
    const __m128 m = select(big, select(neg, T.flMinusTwo.ps(), T.flTwo.ps()),
                            select(neg, T.flOne.ps(), T.flMinusOne.ps()));
    const __m128 k = select(big, _mm_and_ps(neg, T.flPi.ps()), T.flPio2.ps());
    return _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(r, t), t), m), k);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcos_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::asincos::run<AcosLA>(src, dst, len);
}
