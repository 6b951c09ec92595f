// luxsAcos_64f_A53: inverse cosine of binary64 within 1 ulp.
// max error 0.756 ulp at x = -0x1.0b14eca955812p-1 (luxvm accuracy).
//
// With a = |x| and R the polynomial of the inverse sine: for a <= 1/2,
// acos x = pi/2 - sign(x) (a + a R(a^2)), pi/2 carried with its tail; above,
// with w = 2(1 - a), acos |x| = sqrt(w) (1 + R(w/4)), and acos x = pi - that
// for negative x, pi with its tail.  The root of w is formed as head and tail
// from a 12-bit estimate and a series (asincos_root.h).
#include "trig/asincos_kernel.h"
#include "trig/asincos_root.h"

namespace {

struct alignas(16) Table {
  lux::Row64 o1, o3, o5, o7, o9, o11, o13;  // odd chain of R, fitted to asin on [0, 1/4]
  lux::Row64 e2, e4, e6, e8, e10, e12;      // even chain
  lux::RootSeries64 root;
  lux::Row64 dbHalf, dbOne, dbFour;
  lux::Row64 dbAbsMask, dbSignMask;
  lux::Row64 dbMinusPio2Tail;  // -(pi/2 - RN(pi/2))
  lux::Row64 dbPiTail;         // pi - RN(pi)
  lux::Row64 dbPio2, dbPi;
};

constexpr Table kTable = {
    lux::row64(0x3FC5555555555579),  // 0.16666666666666766
    lux::row64(0x3FA6DB6DB724FE19), lux::row64(0x3F96E8BE19F6199D), lux::row64(0x3F8CA247EB6664E5),
    lux::row64(0x3F8622CB270118B0), lux::row64(0x3F96825C16316F03), lux::row64(0x3FA0D60D1986AEC6),
    lux::row64(0x3FB333333332DC42),  // 0.074999999999691119
    lux::row64(0x3F9F1C71A7CEDD43), lux::row64(0x3F91C49BD43E63F7), lux::row64(0x3F8755BDEFC292C9),
    lux::row64(0x3F6D768B20A865AC), lux::row64(0xBF95E9019191BE85), lux::kRootSeries64,
    lux::row64(0x3FE0000000000000),  // 0.5
    lux::row64(0x3FF0000000000000),  // 1.0
    lux::row64(0x4010000000000000),  // 4.0
    lux::row64(0x7FFFFFFFFFFFFFFF), lux::row64(0x8000000000000000),
    lux::row64(0xBC91A62633145C07),  // -6.123233995736766e-17
    lux::row64(0x3CA1A62633145C07),  // 1.2246467991473532e-16
    lux::row64(0x3FF921FB54442D18),  // 1.5707963267948966
    lux::row64(0x400921FB54442D18),  // 3.1415926535897931
};

struct AcosHA {
  using Elem = lux64f;
  static constexpr bool kAsin = false, kKeepNaN = false, kX87Invalid = false;

  static __m128d eval(__m128d x) {
    const Table& T = kTable;
    const __m128d s = _mm_and_pd(x, T.dbSignMask.pd());
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128d a = _mm_min_pd(T.dbOne.pd(), _mm_and_pd(x, T.dbAbsMask.pd()));
    const __m128d big = _mm_cmplt_pd(T.dbHalf.pd(), a);
    const __m128d neg =
        lux::as_pd(_mm_srai_epi32(_mm_shuffle_epi32(lux::as_int(x), _MM_SHUFFLE(3, 3, 1, 1)), 31));
    const __m128d u = _mm_mul_pd(_mm_sub_pd(T.dbOne.pd(), a), T.dbHalf.pd());
    const __m128d z = lux::asincos::select(big, u, _mm_mul_pd(a, a));
    const __m128d z2 = _mm_mul_pd(z, z);
    const __m128d w = _mm_and_pd(big, _mm_mul_pd(u, T.dbFour.pd()));
    __m128d hd, tl;
    lux::minus_root_head_tail(w, T.root, &hd, &tl);
    hd = lux::asincos::select(big, hd, a);
    tl = _mm_and_pd(big, tl);
    const __m128d q = _mm_add_pd(hd, tl);
    const __m128d odd = lux::sincos::horner(z2, T.o13, T.o11, T.o9, T.o7, T.o5, T.o3, T.o1);
    const __m128d even = lux::sincos::horner(z2, T.e12, T.e10, T.e8, T.e6, T.e4, T.e2);
    const __m128d r = lux::asincos::odd_even(z, z2, odd, even);
    // L: the tail of pi/2 against the sign of x in small lanes, the tail of
    // pi in big negative ones; K: pi/2, pi or 0 alike.
    const __m128d big_neg = _mm_and_pd(big, neg);
    const __m128d l = lux::asincos::select(big, _mm_and_pd(big_neg, T.dbPiTail.pd()),
                                           _mm_xor_pd(T.dbMinusPio2Tail.pd(), s));
    const __m128d k = lux::asincos::select(big, _mm_and_pd(big_neg, T.dbPi.pd()), T.dbPio2.pd());
    __m128d v = _mm_add_pd(_mm_add_pd(_mm_add_pd(l, tl), _mm_mul_pd(r, q)), hd);
    v = _mm_xor_pd(_mm_xor_pd(v, T.dbSignMask.pd()), s);
    return _mm_add_pd(v, k);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcos_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::asincos::run<AcosHA>(src, dst, len);
}
