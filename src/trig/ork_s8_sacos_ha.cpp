// luxsAcos_32f_A24: inverse cosine of binary32 within 1 ulp.
// max error 0.774 ulp at x = -0x1.0972a2p-1 (luxvm accuracy).
//
// a = |x|, R the inverse sine's polynomial.  Below 1/2:
// acos x = pi/2 - sign(x)(a + a R(a^2)); from 1/2, with t = sqrt((1 - a)/2)
// (the square-root instruction), acos |x| = 2(t + t R(u)) and acos x = pi -
// that for negative x.  t goes in as head Th (8 bits) and tail
// Tl = (u - Th^2)/(t + Th); pi/2 and pi as head and a shared tail.
#include "trig/sasincos.h"

namespace {

struct alignas(16) Table {
  lux::Row32 o1, o3, o5, e2, e4;
  lux::Row32 flHalf, flOne, flTwo, flMinusOne, flMinusTwo;
  lux::Row32 flAbsMask, flSignMask, flHeadMask;
  lux::Row32 flPio2Head, flPiHead, flPio2Tail;
};

constexpr Table kTable = {
    lux::row32(0x3E2AAAE6),  // 0.166667551
    lux::row32(0x3D3A4C23),  // 0.0454827659
    lux::row32(0x3D2D33ED),  // 0.0422858484
    lux::row32(0x3D998079),  // 0.0749520734
    lux::row32(0x3CC589DB),  // 0.0241135862
    lux::row32(0x3F000000), lux::row32(0x3F800000), lux::row32(0x40000000), lux::row32(0xBF800000),
    lux::row32(0xC0000000), lux::row32(0x7FFFFFFF), lux::row32(0x80000000), lux::row32(0xFFFF0000),
    lux::row32(0x3FC90FDA),  // 1.57079625: pi/2 rounded down
    lux::row32(0x40490FDA),  // 3.14159250: twice that
    lux::row32(0x33A22168),  // 7.54979013e-08: pi/2 - head
};

struct AcosHA {
  using Elem = lux32f;
  static constexpr bool kAsin = false, kKeepNaN = true, kX87Invalid = true;

  static __m128 eval(__m128 x) {
    using lux::asincos::select;
    const Table& T = kTable;
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128 a = _mm_min_ps(T.flOne.ps(), _mm_and_ps(x, T.flAbsMask.ps()));
    const __m128 neg = _mm_cmplt_ps(x, _mm_setzero_ps());
    const __m128 big = _mm_cmpnlt_ps(a, T.flHalf.ps());
    const __m128 u = _mm_mul_ps(_mm_sub_ps(T.flOne.ps(), a), T.flHalf.ps());
    const __m128 z = select(big, u, _mm_mul_ps(a, a));
    const __m128 z2 = _mm_mul_ps(z, z);
    const __m128 t = select(big, _mm_sqrt_ps(u), a);
    const __m128 th = _mm_and_ps(t, select(big, T.flHeadMask.ps(), lux::as_ps(_mm_set1_epi32(-1))));
    const __m128 tl = _mm_and_ps(big, lux::asincos::root_tail(u, t, th, T.flTwo.ps()));
    const __m128 odd = lux::sincos::horner(z2, T.o5, T.o3, T.o1);
    const __m128 even = lux::sincos::horner(z2, T.e4, T.e2);
    const __m128 r = lux::asincos::odd_even(z, z2, odd, even);
    //            small                 big
    //   x >= 0   M = -1, pi/2, +lo     M = 2, 0, 0
    //   x < 0    M = 1,  pi/2, -lo     M = -2, pi, +lo
    const __m128 m = select(big, select(neg, T.flMinusTwo.ps(), T.flTwo.ps()),
                            select(neg, T.flOne.ps(), T.flMinusOne.ps()));
    const __m128 k = select(big, _mm_and_ps(neg, T.flPiHead.ps()), T.flPio2Head.ps());
    const __m128 lo_mag = _mm_andnot_ps(_mm_andnot_ps(neg, big), T.flPio2Tail.ps());
    const __m128 lo = _mm_xor_ps(lo_mag, _mm_and_ps(_mm_andnot_ps(big, neg), T.flSignMask.ps()));
    __m128 v = _mm_add_ps(_mm_add_ps(_mm_mul_ps(r, t), _mm_sub_ps(tl, lo)), th);
    return _mm_add_ps(_mm_mul_ps(v, m), k);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcos_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::asincos::run<AcosHA>(src, dst, len);
}
