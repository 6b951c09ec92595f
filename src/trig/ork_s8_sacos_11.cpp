// luxsAcos_32f_A11: inverse cosine of binary32 to about 11 bits.
// max error 623 ulp at x = 0x1.c1797ep-1 (luxvm accuracy).
//
// a = |x|, R(z) = (c1 z + c2) z.  Below 1/2: acos x = pi/2 + (R T + T) with
// T = -x.  From 1/2: T = sqrt(2(1 - a)) with the sign of x, from the 12-bit
// estimate of 1/sqrt(1 - a) and one Newton step scaled by sqrt(2), and
// acos x = A + (R(u) T + T) with A = 0 for positive x, pi for negative.
#include "trig/sasincos.h"

namespace {

struct alignas(16) Table {
  lux::Row32 c1, c2;
  lux::Row32 flHalf, flOne, flThree, flMinusHalfSqrt2, flAbsMask, flSignMask, flPio2, flPi;
};

constexpr Table kTable = {
    lux::row32(0x3DC15217),  // 0.0943948552
    lux::row32(0x3E2900F6),  // 0.165042728
    lux::row32(0x3F000000), lux::row32(0x3F800000), lux::row32(0x40400000),
    lux::row32(0xBF3504F3),  // -0.70710677: -sqrt(2)/2
    lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
    lux::row32(0x3FC90FDB),  // 1.57079637
    lux::row32(0x40490FDB),  // 3.14159274
};

struct AcosEP {
  using Elem = lux32f;
  static constexpr bool kAsin = false, kKeepNaN = true, kX87Invalid = true;

  static __m128 eval(__m128 x) {
    using lux::asincos::select;
    const Table& T = kTable;
    const __m128 s = _mm_and_ps(x, T.flSignMask.ps());
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128 a = _mm_min_ps(T.flOne.ps(), _mm_and_ps(x, T.flAbsMask.ps()));
    const __m128 neg = _mm_cmplt_ps(x, _mm_setzero_ps());
    const __m128 big = _mm_cmple_ps(T.flHalf.ps(), a);
    const __m128 d = _mm_sub_ps(T.flOne.ps(), a);
    const __m128 u = _mm_mul_ps(d, T.flHalf.ps());
    const __m128 z = select(big, u, _mm_mul_ps(a, a));
    const __m128 root2 = lux::asincos::newton_root(d, T.flMinusHalfSqrt2.ps(), T.flThree.ps());
    const __m128 t = select(big, _mm_or_ps(root2, s), _mm_xor_ps(x, T.flSignMask.ps()));
    const __m128 r = _mm_mul_ps(lux::sincos::horner(z, T.c1, T.c2), z);
    const __m128 k = select(big, _mm_and_ps(neg, T.flPi.ps()), T.flPio2.ps());
    return _mm_add_ps(k, _mm_add_ps(_mm_mul_ps(r, t), t));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcos_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::asincos::run<AcosEP>(src, dst, len);
}
