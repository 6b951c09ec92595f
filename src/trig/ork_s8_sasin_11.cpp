// luxsAsin_32f_A11: inverse sine of binary32 to about 11 bits.
// max error 626 ulp at x = 0x1.00000ap-1 (luxvm accuracy).
//
// a = |x|; below 1/2 asin a = a + a R(a^2), above asin a = pi/2 - 2(t + t R(u))
// with u = (1 - a)/2 and t = sqrt(u) from the 12-bit estimate and one Newton
// step.  R(z) = (c1 z + c2) z, one short polynomial for both sides.
#include "trig/sasincos.h"

namespace {

struct alignas(16) Table {
  lux::Row32 c1, c2;
  lux::Row32 flHalfBits;  // the bits of 0.5, for the integer class test
  lux::Row32 flHalf, flOne, flThree, flMinusHalf, flMinusTwo, flAbsMask, flSignMask, flPio2;
};

constexpr Table kTable = {
    lux::row32(0x3DC15217),  // 0.0943948552
    lux::row32(0x3E2900F6),  // 0.165042728
    lux::row32(0x3F000000), lux::row32(0x3F000000), lux::row32(0x3F800000), lux::row32(0x40400000),
    lux::row32(0xBF000000), lux::row32(0xC0000000), lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
    lux::row32(0x3FC90FDB),  // 1.57079637
};

struct AsinEP {
  using Elem = lux32f;
  static constexpr bool kAsin = true, kKeepNaN = true, kX87Invalid = true;

  static __m128 eval(__m128 x) {
    using lux::asincos::select;
    const Table& T = kTable;
    const __m128 s = _mm_and_ps(x, T.flSignMask.ps());
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128 a = _mm_min_ps(T.flOne.ps(), _mm_and_ps(x, T.flAbsMask.ps()));
    const __m128 big = lux::as_ps(_mm_cmpgt_epi32(lux::as_int(a), T.flHalfBits.pi()));
    const __m128 u = _mm_mul_ps(_mm_sub_ps(T.flOne.ps(), a), T.flHalf.ps());
    const __m128 z = select(big, u, _mm_mul_ps(a, a));
    const __m128 t = select(big, lux::asincos::newton_root(u, T.flMinusHalf.ps(), T.flThree.ps()), a);
    const __m128 r = _mm_mul_ps(lux::sincos::horner(z, T.c1, T.c2), z);
    const __m128 m = select(big, T.flMinusTwo.ps(), T.flOne.ps());
    const __m128 k = _mm_and_ps(big, T.flPio2.ps());
    const __m128 v = _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(r, t), t), m), k);
    return _mm_or_ps(v, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsin_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::asincos::run<AsinEP>(src, dst, len);
}
