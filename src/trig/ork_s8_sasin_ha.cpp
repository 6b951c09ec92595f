// luxsAsin_32f_A24: inverse sine of binary32 within 1 ulp.
// max error 0.866 ulp at x = 0x1.11413ep-1 (luxvm accuracy).
//
// a = |x|.  Below 1/2: asin a = a + a R(a^2).  From 1/2: with u = (1 - a)/2
// and t = sqrt(u), asin a = pi/2 - 2(t + t R(u)); t comes from the estimate
// and a Newton step, then as head Th (8 bits) and tail Tl = (u - Th^2)/(t + Th)
// so that the final sum keeps about 30 bits of the root; pi/2 enters as its
// head pi/4 doubled and its tail.  R is of degree 3 in z, fitted on [0, 1/4].
#include "trig/sasincos.h"

namespace {

struct alignas(16) Table {
  lux::Row32 o1, o3, o5, e2, e4;
  lux::Row32 flHalf, flOne, flTwo, flThree, flMinusHalf, flMinusTwo;
  lux::Row32 flAbsMask, flSignMask, flHeadMask;
  lux::Row32 flPio4Head, flPio4Tail;
};

constexpr Table kTable = {
    lux::row32(0x3E2AAAE6),  // 0.166667551
    lux::row32(0x3D3A4C23),  // 0.0454827659
    lux::row32(0x3D2D33ED),  // 0.0422858484
    lux::row32(0x3D998079),  // 0.0749520734
    lux::row32(0x3CC589DB),  // 0.0241135862
    lux::row32(0x3F000000), lux::row32(0x3F800000), lux::row32(0x40000000),
    lux::row32(0x40400000), lux::row32(0xBF000000), lux::row32(0xC0000000),
    lux::row32(0x7FFFFFFF), lux::row32(0x80000000), lux::row32(0xFFFF0000),
    lux::row32(0x3F490FDA),  // 0.785398126: pi/4 rounded down
    lux::row32(0x33222168),  // 3.77489505e-08: pi/4 - head
};

struct AsinHA {
  using Elem = lux32f;
  static constexpr bool kAsin = true, kKeepNaN = true, kX87Invalid = false;

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
    const __m128 t = select(big, lux::asincos::newton_root(u, T.flMinusHalf.ps(), T.flThree.ps()), a);
    const __m128 th = _mm_and_ps(t, select(big, T.flHeadMask.ps(), lux::as_ps(_mm_set1_epi32(-1))));
    const __m128 tl = _mm_and_ps(big, lux::asincos::root_tail(u, t, th, T.flTwo.ps()));
    const __m128 odd = lux::sincos::horner(z2, T.o5, T.o3, T.o1);
    const __m128 even = lux::sincos::horner(z2, T.e4, T.e2);
    const __m128 r = lux::asincos::odd_even(z, z2, odd, even);
    const __m128 m = select(big, T.flMinusTwo.ps(), T.flOne.ps());
    const __m128 pa = _mm_and_ps(big, T.flPio4Head.ps());
    const __m128 pl = _mm_and_ps(big, T.flPio4Tail.ps());
    __m128 v = _mm_add_ps(_mm_mul_ps(r, t), _mm_sub_ps(tl, pl));
    v = _mm_sub_ps(v, _mm_sub_ps(_mm_mul_ps(T.flHalf.ps(), pa), th));
    v = _mm_add_ps(_mm_mul_ps(v, m), pa);
    return _mm_or_ps(v, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsin_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::asincos::run<AsinHA>(src, dst, len);
}
