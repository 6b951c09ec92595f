// The binary64 inverse sine and cosine at the reduced tiers (A50, and A26,
// which runs the same code on the same constants).  Included by exactly the
// units of those tiers: each gets its own copy of the table.
//
// With a = |x|: for small a, asin a = a + a R(a^2); for large a, with
// u = (1 - a)/2 and t = sqrt(u) (the square-root instruction),
// asin a = pi/2 - 2(t + t R(u)) and acos a = 2(t + t R(u)).  R is fitted
// separately for each function (degree 12 in z for asin, 11 for acos).
// Every case is (R t + t) M + A with the factor M and the constant A chosen
// per lane.
#pragma once

#include "trig/asincos_kernel.h"

namespace lux::asincos::la64 {
namespace {

struct alignas(16) Table {
  Row64 o1, o3, o5, o7, o9, o11;
  Row64 e2, e4, e6, e8, e10, e12;  // e12 is 0 for the cosine
  Row64 dbHalf, dbOne, dbAbsMask, dbSignMask;
  Row64 dbPio2, dbPi;
  Row64 dbMinusTwo, dbTwo, dbMinusOne;
};

constexpr Table kAsinTable = {
    row64(0x3FC5555555555376), row64(0x3FA6DB6DB406320E), row64(0x3F96E89E3100FCF1),
    row64(0x3F8C6E8C410E2125), row64(0x3F7A6F70A989886B), row64(0xBF90F34C39628E27),
    row64(0x3FB33333333719EB), row64(0x3F9F1C72CEB416D5), row64(0x3F91C6CEB88CA473),
    row64(0x3F88F4FAF7A28C4A), row64(0x3F94354494F57A70), row64(0x3FA074CE2CBCC7DF),
    row64(0x3FE0000000000000), row64(0x3FF0000000000000), row64(0x7FFFFFFFFFFFFFFF),
    row64(0x8000000000000000), row64(0x3FF921FB54442D18), row64(0x400921FB54442D18),
    row64(0xC000000000000000), row64(0x4000000000000000), row64(0xBFF0000000000000),
};

constexpr Table kAcosTable = {
    row64(0x3FC5555555556E3C), row64(0x3FA6DB6DD20120F3), row64(0x3F96E9769038BE6D),
    row64(0x3F8D59EC6E98BFE2), row64(0x3F92D892CC96EFAF), row64(0x3FA03E5B5E516DFB),
    row64(0x3FB33333330711A8), row64(0x3F9F1C697859C3E2), row64(0x3F91BA7CBC3F3A91),
    row64(0x3F831D56BA773964), row64(0xBF8884789EFB5918), row64(0),
    row64(0x3FE0000000000000), row64(0x3FF0000000000000), row64(0x7FFFFFFFFFFFFFFF),
    row64(0x8000000000000000), row64(0x3FF921FB54442D18), row64(0x400921FB54442D18),
    row64(0xC000000000000000), row64(0x4000000000000000), row64(0xBFF0000000000000),
};

inline __m128d r_of(const Table& T, __m128d z) {
  const __m128d z2 = _mm_mul_pd(z, z);
  const __m128d odd = sincos::horner(z2, T.o11, T.o9, T.o7, T.o5, T.o3, T.o1);
  const __m128d even = sincos::horner(z2, T.e12, T.e10, T.e8, T.e6, T.e4, T.e2);
  return odd_even(z, z2, odd, even);
}

struct Asin {
  using Elem = lux64f;
  static constexpr bool kAsin = true, kKeepNaN = true, kX87Invalid = true;

  static __m128d eval(__m128d x) {
    const Table& T = kAsinTable;
    const __m128d s = _mm_and_pd(x, T.dbSignMask.pd());
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128d a = _mm_min_pd(T.dbOne.pd(), _mm_and_pd(x, T.dbAbsMask.pd()));
    const __m128d big = _mm_cmplt_pd(T.dbHalf.pd(), a);
    const __m128d u = _mm_mul_pd(_mm_sub_pd(T.dbOne.pd(), a), T.dbHalf.pd());
    const __m128d z = select(big, u, _mm_mul_pd(a, a));
    const __m128d t = select(big, _mm_sqrt_pd(u), a);
    const __m128d m = select(big, T.dbMinusTwo.pd(), T.dbOne.pd());
    const __m128d k = _mm_and_pd(big, T.dbPio2.pd());
    const __m128d r = r_of(T, z);
    const __m128d v = _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(r, t), t), m), k);
    return _mm_or_pd(v, s);
  }
};

struct Acos {
  using Elem = lux64f;
  static constexpr bool kAsin = false, kKeepNaN = true, kX87Invalid = true;

  static __m128d eval(__m128d x) {
    const Table& T = kAcosTable;
    // |x| > 1 is worked as 1 (its result is replaced): no flag of its own.
    const __m128d a = _mm_min_pd(T.dbOne.pd(), _mm_and_pd(x, T.dbAbsMask.pd()));
    const __m128d neg = _mm_cmplt_pd(x, _mm_setzero_pd());
    const __m128d big = _mm_cmple_pd(T.dbHalf.pd(), a);
    const __m128d u = _mm_mul_pd(_mm_sub_pd(T.dbOne.pd(), a), T.dbHalf.pd());
    const __m128d z = select(big, u, _mm_mul_pd(a, a));
    const __m128d t = select(big, _mm_sqrt_pd(u), a);
    //            small           big
    //   x >= 0   M = -1, pi/2    M = 2, 0
    //   x < 0    M = 1,  pi/2    M = -2, pi
    const __m128d m = select(big, select(neg, T.dbMinusTwo.pd(), T.dbTwo.pd()),
                             select(neg, T.dbOne.pd(), T.dbMinusOne.pd()));
    const __m128d k = select(big, _mm_and_pd(neg, T.dbPi.pd()), T.dbPio2.pd());
    const __m128d r = r_of(T, z);
    return _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(r, t), t), m), k);
  }
};

}  // namespace
}  // namespace lux::asincos::la64
