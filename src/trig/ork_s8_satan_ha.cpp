// luxsAtan_32f_A24: inverse tangent of binary32 within 1 ulp.
// max error 0.924 ulp at x = -0x1.8a4dcep+0 (luxvm accuracy).
//
// a = |x| in four classes (limits 0.4375, 0.72, 2.29 on the bits, strict);
// in each, t = (a - b)/(1 + b a) with b = 0, 0.53125, 1 and t = -1/a in the
// last, |t| <= 0.44, and atan a = head + tail + t + t P(t^2), the angle atan b
// split into a short head (at most 7 significant bits, so head + t is nearly
// exact) and a tail.  P of degree 5 in z = t^2, fitted on [0, 0.44^2].
#include "trig/satan.h"

namespace {

struct alignas(16) Table {
  lux::Row32 p5, p4, p3, p2, p1;
  lux::Row32 limit1, limit2, limit3;  // 0.4375, 0.72, 2.29
  lux::Row32 b1;                      // 0.53125
  lux::Row32 head1, tail1, head2, tail2, head3, tail3;
  lux::Row32 flOne, flMinusOne, flAbsMask, flSignMask;
};

constexpr Table kTable = {
    lux::row32(0xBD6E4E11),  // -0.0582105033
    lux::row32(0x3DD6D79A),  // 0.104903415
    lux::row32(0xBE11B5D2),  // -0.142294675
    lux::row32(0x3E4CC6DC),  // 0.199977547
    lux::row32(0xBEAAAAA1),  // -0.333333045
    lux::row32(0x3EE00000),  // 0.4375
    lux::row32(0x3F3851EC),  // 0.72
    lux::row32(0x40128F5C),  // 2.29
    lux::row32(0x3F080000),  // 0.53125
    lux::row32(0x3EF80000),  // 0.484375
    lux::row32(0x3B81BA17),  // 0.00395895122: atan 0.53125 - 0.484375
    lux::row32(0x3F400000),  // 0.75
    lux::row32(0x3D10FDAA),  // 0.0353981629: pi/4 - 0.75
    lux::row32(0x3FC80000),  // 1.5625
    lux::row32(0x3C07ED51),  // 0.00829632673: pi/2 - 1.5625
    lux::row32(0x3F800000), lux::row32(0xBF800000), lux::row32(0x7FFFFFFF), lux::row32(0x80000000),
};

struct AtanHA {
  static int needs_x87(__m128) { return 0; }

  static __m128 eval(__m128 x) {
    using lux::atan32::select;
    const Table& T = kTable;
    const __m128 s = _mm_and_ps(x, T.flSignMask.ps());
    const __m128 a = _mm_and_ps(x, T.flAbsMask.ps());
    const __m128i ai = lux::as_int(a);
    const __m128 c1 = lux::as_ps(_mm_cmpgt_epi32(ai, T.limit1.pi()));
    const __m128 c2 = lux::as_ps(_mm_cmpgt_epi32(ai, T.limit2.pi()));
    const __m128 c3 = lux::as_ps(_mm_cmpgt_epi32(ai, T.limit3.pi()));
    const __m128 n1 = _mm_sub_ps(a, T.b1.ps());
    const __m128 d1 = _mm_add_ps(_mm_mul_ps(T.b1.ps(), a), T.flOne.ps());
    const __m128 n2 = _mm_sub_ps(a, T.flOne.ps());
    const __m128 d2 = _mm_add_ps(a, T.flOne.ps());
    const __m128 n = select(c3, T.flMinusOne.ps(), select(c2, n2, select(c1, n1, a)));
    const __m128 d = select(c3, a, select(c2, d2, select(c1, d1, T.flOne.ps())));
    const __m128 head = select(c3, T.head3.ps(), select(c2, T.head2.ps(), _mm_and_ps(c1, T.head1.ps())));
    const __m128 tail = select(c3, T.tail3.ps(), select(c2, T.tail2.ps(), _mm_and_ps(c1, T.tail1.ps())));
    const __m128 t = _mm_div_ps(n, d);
    const __m128 z = _mm_mul_ps(t, t);
    const __m128 p = _mm_mul_ps(lux::sincos::horner(z, T.p5, T.p4, T.p3, T.p2, T.p1), z);
    const __m128 v = _mm_add_ps(_mm_add_ps(_mm_add_ps(_mm_mul_ps(p, t), tail), t), head);
    return _mm_or_ps(v, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtan_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::atan32::run<AtanHA>(src, dst, len);
}
