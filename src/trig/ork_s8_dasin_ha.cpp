// luxsAsin_64f_A53: inverse sine of binary64 within 1 ulp.
// max error 0.803 ulp at x = -0x1.01a8bec895a1ap-1 (luxvm accuracy).
//
// With a = |x|: for a <= 1/2, asin a = a + a R(a^2); above, with u = (1 - a)/2,
// asin a = pi/2 - 2 asin sqrt(u) = pi/2 - sqrt(w) (1 + R(u)), w = 4u.  The
// root of w comes as head and tail without a square-root instruction: a
// 12-bit estimate, a double y with a 21-bit significand near 1/sqrt(w), and
// the series of (1 + e)^(-1/2) in e = w y^2 - 1 (|e| < 2^-11, so five terms
// leave 2^-66).  pi/2 goes in as pi/4 twice around the head.
#include "trig/asincos_kernel.h"
#include "trig/asincos_root.h"

namespace {

struct alignas(16) Table {
  lux::Row64 o1, o3, o5, o7, o9, o11, o13;  // odd chain of R, fitted to asin on [0, 1/4]
  lux::Row64 e2, e4, e6, e8, e10, e12;      // even chain
  lux::RootSeries64 root;                   // (1 + e)^(-1/2) - 1 and the seed constants
  lux::Row64 dbHalf, dbOne, dbFour;
  lux::Row64 dbAbsMask, dbSignMask;
  lux::Row64 dbPio2Tail;  // pi/2 - RN(pi/2)
  lux::Row64 dbPio4;      // RN(pi/4), added twice
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
    lux::row64(0x3C91A62633145C07),  // 6.123233995736766e-17
    lux::row64(0x3FE921FB54442D18),  // 0.78539816339744828
};

struct AsinHA {
  using Elem = lux64f;
  static constexpr bool kAsin = true, kKeepNaN = false, kX87Invalid = false;

  static __m128d eval(__m128d x) {
    const Table& T = kTable;
    const __m128d s = _mm_and_pd(x, T.dbSignMask.pd());
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128d a = _mm_min_pd(T.dbOne.pd(), _mm_and_pd(x, T.dbAbsMask.pd()));
    const __m128d big = _mm_cmplt_pd(T.dbHalf.pd(), a);
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
    const __m128d cl = _mm_and_pd(big, T.dbPio2Tail.pd());
    const __m128d ch = _mm_and_pd(big, T.dbPio4.pd());
    __m128d v = _mm_add_pd(_mm_add_pd(cl, tl), _mm_mul_pd(r, q));
    v = _mm_add_pd(_mm_add_pd(v, _mm_add_pd(hd, ch)), ch);
    return _mm_or_pd(v, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsin_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::asincos::run<AsinHA>(src, dst, len);
}
