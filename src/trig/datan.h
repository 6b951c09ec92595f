// The binary64 inverse tangent kernels (A53 and A50 run the same code on the
// same constants; A26 has a shorter polynomial and no tail).  Included by the
// units of those tiers, each of which gets its own copy of the tables.
//
// a = |x| falls in one of five classes by the high word of a against the
// limits 7/16, 11/16, 19/16 and 39/16 (strict: a high word equal to a limit
// stays below it).  In class i the angle atan b_i is subtracted by the
// addition theorem, t = (a - b)/(1 + b a), so that |t| <= 0.44; class 4 has
// b = 0 (t = a), class 0 works with -1/a against pi/2.  Then
// atan a = atan b + t + t S(t^2), S odd-even split into two chains in w = t^4.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/atan_classes.h"
#include "trig/sincos_kernel.h"

namespace lux::atan64 {
namespace {

struct alignas(16) Table {
  AtanClasses64 cls;
  Row64 zp[6];  // z chain, constant term first
  Row64 wp[5];  // w chain, constant term first
  Row64 dbAbsMask, dbSignMask;
  Row32 limits[4];  // high words of 7/16, 11/16, 19/16, 39/16
};

constexpr Table kTableHA = {
    kAtanClasses64,
    {row64(0xBFD5555555555509), row64(0xBFC2492491FDFC9C), row64(0xBFB745CDAE905490),
     row64(0xBFB10D58403897A0), row64(0xBFA9785816AC714D), row64(0xBF90A0140B247B6E)},
    {row64(0x3FC999999998E492), row64(0x3FBC71C6FD40E520), row64(0x3FB3B0F1459B9FD4),
     row64(0x3FADDD7216B6A1B8), row64(0x3FA2AD8F0C29B3CB)},
    row64(0x7FFFFFFFFFFFFFFF),
    row64(0x8000000000000000),
    {row32(0x3FDC0000), row32(0x3FE60000), row32(0x3FF30000), row32(0x40038000)},
};

constexpr Table kTableEP = {
    kAtanClasses64,
    {row64(0xBFD555540DA51CB9), row64(0xBFC23687C538BDA2), row64(0xBFADBCA6813CEB52), row64(0), row64(0),
     row64(0)},
    {row64(0x3FC998D8BCC8FE69), row64(0x3FBAD831BD486D98), row64(0), row64(0), row64(0)},
    row64(0x7FFFFFFFFFFFFFFF),
    row64(0x8000000000000000),
    {row32(0x3FDC0000), row32(0x3FE60000), row32(0x3FF30000), row32(0x40038000)},
};

// Class index of two lanes (0 to 4): 4 minus the limits exceeded.
inline void class_of(__m128d a, const Table& T, int* i0, int* i1) {
  const __m128i h = high_words(a);
  __m128i n = _mm_set1_epi32(4);
  for (const Row32& l : T.limits) n = _mm_add_epi32(n, _mm_cmpgt_epi32(h, l.pi()));
  *i0 = _mm_cvtsi128_si32(n);
  *i1 = _mm_cvtsi128_si32(_mm_shuffle_epi32(n, _MM_SHUFFLE(1, 1, 1, 1)));
}

inline __m128d fetch(const uint64_t* column, int i0, int i1) {
  const double* c = reinterpret_cast<const double*>(column);
  return _mm_loadh_pd(_mm_load_sd(c + i0), c + i1);
}

template <bool kHA>
inline __m128d eval(__m128d x) {
  const Table& T = kHA ? kTableHA : kTableEP;
  const __m128d s = _mm_and_pd(x, T.dbSignMask.pd());
  const __m128d a = _mm_and_pd(x, T.dbAbsMask.pd());
  int i0, i1;
  class_of(a, T, &i0, &i1);
  const __m128d b = fetch(T.cls.shift, i0, i1);
  const __m128d m = fetch(T.cls.mask, i0, i1);
  const __m128d one = fetch(T.cls.mask_one, i0, i1);
  const __m128d t = _mm_div_pd(_mm_sub_pd(_mm_and_pd(a, m), b), _mm_add_pd(_mm_mul_pd(b, a), one));
  const __m128d z = _mm_mul_pd(t, t);
  const __m128d w = _mm_mul_pd(z, z);
  __m128d sp;
  if constexpr (kHA) {
    const __m128d zc = sincos::horner(w, T.zp[5], T.zp[4], T.zp[3], T.zp[2], T.zp[1], T.zp[0]);
    const __m128d wc = sincos::horner(w, T.wp[4], T.wp[3], T.wp[2], T.wp[1], T.wp[0]);
    sp = _mm_add_pd(_mm_mul_pd(z, zc), _mm_mul_pd(w, wc));
    const __m128d tail = fetch(T.cls.tail, i0, i1);
    const __m128d v = _mm_add_pd(_mm_add_pd(_mm_mul_pd(sp, t), tail), t);
    return _mm_or_pd(_mm_add_pd(v, fetch(T.cls.head, i0, i1)), s);
  } else {
    const __m128d zc = sincos::horner(w, T.zp[2], T.zp[1], T.zp[0]);
    const __m128d wc = sincos::horner(w, T.wp[1], T.wp[0]);
    sp = _mm_add_pd(_mm_mul_pd(z, zc), _mm_mul_pd(w, wc));
    const __m128d v = _mm_add_pd(_mm_mul_pd(sp, t), t);
    return _mm_or_pd(_mm_add_pd(v, fetch(T.cls.head, i0, i1)), s);
  }
}

// F3: every lane, infinities and NaN included, on the vector path.
template <bool kHA>
struct Kernel {
  const lux64f* src;
  lux64f* dst;
  void block(int i) {
    const __m128d ra = eval<kHA>(load2(src + i));
    const __m128d rb = eval<kHA>(load2(src + i + 2));
    store2(dst + i, ra);
    store2(dst + i + 2, rb);
  }
  void tail(int i) { store1(dst + i, eval<kHA>(load1(src + i))); }
};

template <bool kHA>
inline luxStatus run(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  Kernel<kHA> k{src, dst};
  run_closed<4>(len, k);
  return luxOk;
}

}  // namespace
}  // namespace lux::atan64
