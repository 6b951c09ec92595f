// The binary64 two-argument inverse tangent (A53 and A50 run the same code on
// the same constants; A26 divides directly and has a shorter polynomial).
// Included by the units of those tiers, each with its own copy of the table.
//
// With ay = |y|, ax = |x|: the ratio ay/ax falls in one of five classes
// (ay against 0.4375, 0.6875, 1.1875 and 2.4375 times ax, on the high words),
// and t = (ay - b ax)/(ax + b ay), class 0 taking -ax/ay against pi/2.
// Numerator and denominator are formed as head and tail from 26-bit halves
// of ay and ax (the products by b = 0.5, 1, 1.5 are exact); the quotient
// takes a 12-bit reciprocal estimate of the denominator's head and the
// series of 1/(1 + e) to e^6, the head of t being r * Nh, exact.  Then
// atan(ay/ax) = head + (tail + tl + th + t S(t^2)); for x < 0 the result is
// pi - that, with a short tail of pi inside the sum, and y's sign goes on
// last.  Lanes with a magnitude outside [2^-1020, 2^1009) (zeros,
// subnormals, huge values, infinities, NaN), or a ratio |y/x| below about
// 2^-1000 (a result near the subnormals), take the x87 partial arctangent.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/atan_classes.h"
#include "trig/sincos_kernel.h"

namespace lux::atan2_64 {
namespace {

struct alignas(16) Table {
  AtanClasses64 cls;
  Row64 zp[6];     // z chain, constant term first
  Row64 wp[6];     // w chain, constant term first
  Row64 ratio[4];  // 0.4375, 0.6875, 1.1875, 2.4375
  Row64 dbAbsMask, dbSignMask, dbSplitMask, dbOne, dbPi, dbPiShortTail;
  Row64 flFractionMask, flOneBits;             // building the estimate's argument
  Row64 exp_fix, exp_mask;                     // 0x7FE00000 - 0x07F00000, 0xFFF00000
  Row32 range_abs, range_offset, range_limit;  // the in-range test on high words
  Row32 ratio_limit;                           // 1000 << 20: |y/x| < 2^-1000
};

#define LUX_ATAN2_COMMON                                                               \
  {row64(0x3FDC000000000000), row64(0x3FE6000000000000), row64(0x3FF3000000000000),    \
   row64(0x4003800000000000)},                                                         \
      row64(0x7FFFFFFFFFFFFFFF), row64(0x8000000000000000), row64(0xFFFFFFFFF8000000), \
      row64(0x3FF0000000000000), row64(0x400921FB54442D18), row64(0xBCA1A64000000000), \
      row64(0x00000000007FFFFF), row64(0x000000003F800000), row64(0x77F0000077F00000), \
      row64(0xFFF00000FFF00000), row32(0x7FFFFFFF), row32(0x80300000), row32(0xFDD00000), row32(0x3E800000)

constexpr Table kTableHA = {
    kAtanClasses64,
    {row64(0xBFD5555555555552), row64(0xBFC2492492441A21), row64(0xBFB745D119677A4F),
     row64(0xBFB1108D326C68ED), row64(0xBFAA9E755CA13D23), row64(0xBFA04CD71F92185E)},
    {row64(0x3FC9999999998F43), row64(0x3FBC71C719F99F96), row64(0x3FB3B132B731E73A),
     row64(0x3FAE12F1EDF7C393), row64(0x3FA6AD5558FE19C9), row64(0x3F8BE4FBE6733718)},
    LUX_ATAN2_COMMON,
};

constexpr Table kTableEP = {
    kAtanClasses64,
    {row64(0xBFD555540DA51CB9), row64(0xBFC23687C538BDA2), row64(0xBFADBCA6813CEB52), row64(0), row64(0),
     row64(0)},
    {row64(0x3FC998D8BCC8FE69), row64(0x3FBAD831BD486D98), row64(0), row64(0), row64(0), row64(0)},
    LUX_ATAN2_COMMON,
};
#undef LUX_ATAN2_COMMON

// The in-range test on registers of high words of y and x (4 lanes):
// 0x00300000 <= h < 0x7E000000 for each magnitude's high word h, as one
// signed comparison; and |y/x| not below about 2^-1000, where the quotient's
// head r * Nh and its tail would lose bits to the subnormal range.
inline int out_of_range(__m128i hy, __m128i hx, const Table& T) {
  const __m128i my = _mm_and_si128(hy, T.range_abs.pi());
  const __m128i mx = _mm_and_si128(hx, T.range_abs.pi());
  const __m128i in_y = _mm_cmplt_epi32(_mm_sub_epi32(my, T.range_offset.pi()), T.range_limit.pi());
  const __m128i in_x = _mm_cmplt_epi32(_mm_sub_epi32(mx, T.range_offset.pi()), T.range_limit.pi());
  const __m128i tiny_ratio = _mm_cmpgt_epi32(_mm_sub_epi32(mx, my), T.ratio_limit.pi());
  return _mm_movemask_ps(as_ps(_mm_andnot_si128(tiny_ratio, _mm_and_si128(in_y, in_x)))) ^ 0xF;
}

// High words of two registers of two doubles each, in one register.
inline __m128i high_words4(__m128d a, __m128d b) {
  return as_int(_mm_shuffle_ps(as_ps(as_int(a)), as_ps(as_int(b)), _MM_SHUFFLE(3, 1, 3, 1)));
}

inline __m128d fetch(const uint64_t* column, int i0, int i1) {
  const double* c = reinterpret_cast<const double*>(column);
  return _mm_loadh_pd(_mm_load_sd(c + i0), c + i1);
}

// 1/Dh to 12 bits with no division: the estimate of Dh's top 23 fraction
// bits under exponent 0, moved into a double with Dh's exponent negated.
inline __m128d reciprocal_seed(__m128d dh, const Table& T) {
  __m128i v = _mm_srli_epi64(as_int(dh), 29);
  v = _mm_or_si128(_mm_and_si128(v, T.flFractionMask.pi()), T.flOneBits.pi());
  const __m128i f = as_int(_mm_rcp_ps(as_ps(_mm_shuffle_epi32(v, _MM_SHUFFLE(2, 0, 2, 0)))));
  const __m128i r = _mm_slli_epi64(_mm_unpacklo_epi32(f, _mm_setzero_si128()), 29);
  const __m128i adj = _mm_sub_epi32(T.exp_fix.pi(), _mm_and_si128(high_words(dh), T.exp_mask.pi()));
  return as_pd(_mm_add_epi32(r, _mm_unpacklo_epi32(_mm_setzero_si128(), adj)));
}

template <bool kHA>
inline __m128d eval(__m128d y, __m128d x) {
  const Table& T = kHA ? kTableHA : kTableEP;
  const __m128d sy = _mm_and_pd(y, T.dbSignMask.pd());
  const __m128d sx = _mm_and_pd(x, T.dbSignMask.pd());
  const __m128d ay = _mm_and_pd(y, T.dbAbsMask.pd());
  const __m128d ax = _mm_and_pd(x, T.dbAbsMask.pd());
  const __m128d neg = as_pd(_mm_srai_epi32(_mm_shuffle_epi32(as_int(x), _MM_SHUFFLE(3, 3, 1, 1)), 31));
  const __m128d kpi = _mm_and_pd(neg, T.dbPi.pd());
  const __m128d kpl = _mm_and_pd(neg, T.dbPiShortTail.pd());
  const __m128d yh = _mm_and_pd(ay, T.dbSplitMask.pd()), yl = _mm_sub_pd(ay, yh);
  const __m128d xh = _mm_and_pd(ax, T.dbSplitMask.pd()), xl = _mm_sub_pd(ax, xh);
  // Class: 4 minus the ratios whose product with ax has a high word below ay's.
  const __m128i hy = high_words(ay);
  __m128i n = _mm_set1_epi32(4);
  for (const Row64& c : T.ratio)
    n = _mm_add_epi32(n, _mm_cmplt_epi32(high_words(_mm_mul_pd(c.pd(), ax)), hy));
  const int i0 = _mm_cvtsi128_si32(n), i1 = _mm_cvtsi128_si32(_mm_shuffle_epi32(n, _MM_SHUFFLE(1, 1, 1, 1)));
  const __m128d b = fetch(T.cls.shift, i0, i1);
  const __m128d m = fetch(T.cls.mask, i0, i1);
  // Numerator (ay & m) - b ax and denominator (ax & m) + b ay, head and tail.
  const __m128d n0 = _mm_sub_pd(_mm_and_pd(yh, m), _mm_mul_pd(xh, b));
  const __m128d n1 = _mm_sub_pd(_mm_and_pd(yl, m), _mm_mul_pd(xl, b));
  const __m128d ns = _mm_add_pd(n0, n1);
  const __m128d ne = _mm_sub_pd(n1, _mm_sub_pd(ns, n0));
  const __m128d d0 = _mm_add_pd(_mm_and_pd(xh, m), _mm_mul_pd(b, yh));
  const __m128d d1 = _mm_add_pd(_mm_and_pd(xl, m), _mm_mul_pd(b, yl));
  const __m128d ds = _mm_add_pd(d0, d1);
  const __m128d de = _mm_add_pd(d1, _mm_sub_pd(d0, ds));
  const __m128d z_head = fetch(T.cls.head, i0, i1);
  if constexpr (kHA) {
    const __m128d nh = _mm_and_pd(ns, T.dbSplitMask.pd());
    const __m128d nl = _mm_add_pd(ne, _mm_sub_pd(ns, nh));
    const __m128d dh = _mm_and_pd(ds, T.dbSplitMask.pd());
    const __m128d dl = _mm_add_pd(de, _mm_sub_pd(ds, dh));
    const __m128d r = reciprocal_seed(dh, T);
    const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(dh, r), T.dbOne.pd()), _mm_mul_pd(dl, r));
    __m128d c = _mm_sub_pd(e, T.dbOne.pd());
    c = _mm_add_pd(_mm_mul_pd(c, e), T.dbOne.pd());
    c = _mm_sub_pd(_mm_mul_pd(c, e), T.dbOne.pd());
    c = _mm_add_pd(_mm_mul_pd(c, e), T.dbOne.pd());
    c = _mm_sub_pd(_mm_mul_pd(c, e), T.dbOne.pd());
    c = _mm_mul_pd(_mm_mul_pd(c, e), r);
    const __m128d th = _mm_mul_pd(r, nh);
    const __m128d tl = _mm_add_pd(_mm_add_pd(_mm_mul_pd(c, nh), _mm_mul_pd(c, nl)), _mm_mul_pd(r, nl));
    const __m128d t = _mm_add_pd(tl, th);
    const __m128d z = _mm_mul_pd(t, t);
    const __m128d w = _mm_mul_pd(z, z);
    const __m128d zc = sincos::horner(w, T.zp[5], T.zp[4], T.zp[3], T.zp[2], T.zp[1], T.zp[0]);
    const __m128d wc = sincos::horner(w, T.wp[5], T.wp[4], T.wp[3], T.wp[2], T.wp[1], T.wp[0]);
    const __m128d s = _mm_add_pd(_mm_mul_pd(z, zc), _mm_mul_pd(w, wc));
    const __m128d low = _mm_add_pd(_mm_add_pd(tl, fetch(T.cls.tail, i0, i1)), kpl);
    __m128d v = _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_mul_pd(s, t), low), th), z_head);
    v = _mm_add_pd(_mm_xor_pd(v, sx), kpi);
    return _mm_or_pd(v, sy);
  } else {
    const __m128d t = _mm_div_pd(_mm_add_pd(ns, ne), _mm_add_pd(ds, de));
    const __m128d z = _mm_mul_pd(t, t);
    const __m128d w = _mm_mul_pd(z, z);
    const __m128d zc = sincos::horner(w, T.zp[2], T.zp[1], T.zp[0]);
    const __m128d wc = sincos::horner(w, T.wp[1], T.wp[0]);
    const __m128d s = _mm_add_pd(_mm_mul_pd(z, zc), _mm_mul_pd(w, wc));
    __m128d v = _mm_add_pd(_mm_add_pd(_mm_mul_pd(s, t), t), z_head);
    v = _mm_add_pd(_mm_xor_pd(v, sx), kpi);
    return _mm_or_pd(v, sy);
  }
}

// atan2(*y, *x) by the x87 partial arctangent, rounded to double.
inline void fpatan(const lux64f* y, const lux64f* x, lux64f* out) {
  asm volatile("fldl %1\n\tfldl %2\n\tfpatan\n\tfstpl %0"
               : "=m"(*out)
               : "m"(*y), "m"(*x)
               : "st", "st(1)", "memory");
}

template <bool kHA>
inline bool pass(const lux64f* y, const lux64f* x, lux64f* dst) {
  const Table& T = kHA ? kTableHA : kTableEP;
  const __m128d y0 = load2(y), y1 = load2(y + 2), x0 = load2(x), x1 = load2(x + 2);
  if (__builtin_expect(out_of_range(high_words4(y0, y1), high_words4(x0, x1), T), 0)) return false;
  const __m128d r0 = eval<kHA>(y0, x0);
  const __m128d r1 = eval<kHA>(y1, x1);
  store2(dst, r0);
  store2(dst + 2, r1);
  return true;
}

// One lane, both of its values duplicated across the register so that the
// idle lane repeats the live one (no flag of its own).
template <bool kHA>
inline void lane(const lux64f* y, const lux64f* x, lux64f* dst) {
  const Table& T = kHA ? kTableHA : kTableEP;
  const __m128d yv = _mm_loaddup_pd(y), xv = _mm_loaddup_pd(x);
  if (__builtin_expect(out_of_range(high_words(yv), high_words(xv), T) & 1, 0)) {
    fpatan(y, x, dst);
    return;
  }
  store1(dst, eval<kHA>(yv, xv));
}

// Passes of four lanes up to len rounded down to a multiple of 16; a pass
// with a lane out of range, and every lane after that point, one at a time.
template <class Pass, class Lane>
inline luxStatus run(const lux64f* y, const lux64f* x, lux64f* dst, int len, Pass pass4, Lane lane1) {
  if (const luxStatus e = check_entry(len, y, x, dst)) return e;
  X87Guard64 x87;
  RoundNearestGuard sse;
  const int n = len & ~15;
  for (int i = 0; i < n; i += 4)
    if (__builtin_expect(!pass4(y + i, x + i, dst + i), 0))
      for (int j = i; j < i + 4; ++j) lane1(y + j, x + j, dst + j);
  for (int i = n; i < len; ++i) lane1(y + i, x + i, dst + i);
  return luxOk;
}

}  // namespace
}  // namespace lux::atan2_64
