// The masked-lane frame of the inverse sine and cosine kernels, written once.
//
// Every lane of a block runs the unit's straight-line arithmetic; the unit's
// lane test picks out the blocks that hold |x| >= 1 or a NaN, and only those
// take the selecting pass, which overwrites, lane by lane:
//   |x| = 1   asin: +-pi/2 with the sign of x; acos: 0 for 1, pi for -1;
//   NaN       the source lane bit for bit (a signalling NaN stays one), or
//             the source quieted in the units that say so;
//   |x| > 1   the default NaN, and the lane offends: the whole block is
//             stored first, then each offending lane, in ascending order,
//             latches 19 and reports it (the invalid flag).
// The tail runs one lane through the same arithmetic and the same pass, so a
// lane's result never depends on its neighbours.
//
// A unit U provides
//   using Elem = lux32f or lux64f;
//   static constexpr bool kAsin;          // asin or acos values at |x| = 1
//   static constexpr bool kKeepNaN;       // NaN lane keeps its source bits
//                                         // (else gets them quieted)
//   static constexpr bool kX87Invalid;    // after a report, load and drop a
//                                         // signalling NaN on the x87 unit
//   static V eval(V x);                   // V = __m128 or __m128d
// The arithmetic sees NaN lanes as +0 (no_nan below): the ordered compares
// and min/max of SSE raise the invalid flag on a quiet NaN, and a NaN lane's
// value comes from the selecting pass anyway.  The lane test is on integers
// for the same reason: |x| >= 1 and NaN are the lanes whose bits of |x| (the
// high word in binary64) are not below those of 1.0.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux::asincos {

template <class Elem>
struct Bits;
template <>
struct Bits<lux32f> {
  using W = uint32_t;
  static constexpr W kAbs = 0x7FFFFFFF, kSign = 0x80000000, kOne = 0x3F800000, kInf = 0x7F800000;
  static constexpr W kHalfPi = 0x3FC90FDB, kPi = 0x40490FDB, kDefaultNaN = 0xFFC00000;
  static constexpr W kSignalingNaN = 0x7FBFFFFF, kQuietBit = 0x00400000;
  static void x87_load_and_drop(const W* p) { asm volatile("flds %0\n\tfstp %%st(0)" : : "m"(*p) : "st"); }
};
template <>
struct Bits<lux64f> {
  using W = uint64_t;
  static constexpr W kAbs = 0x7FFFFFFFFFFFFFFF, kSign = 0x8000000000000000, kOne = 0x3FF0000000000000;
  static constexpr W kInf = 0x7FF0000000000000, kHalfPi = 0x3FF921FB54442D18, kPi = 0x400921FB54442D18;
  static constexpr W kDefaultNaN = 0xFFF8000000000000, kSignalingNaN = 0x7FF7FFFFFFFFFFFF;
  static constexpr W kQuietBit = 0x0008000000000000;
  static void x87_load_and_drop(const W* p) { asm volatile("fldl %0\n\tfstp %%st(0)" : : "m"(*p) : "st"); }
};

// x with its NaN lanes replaced by +0 (the unordered compare is quiet).
inline __m128d no_nan(__m128d x) { return _mm_andnot_pd(_mm_cmpunord_pd(x, x), x); }
inline __m128 no_nan(__m128 x) { return _mm_andnot_ps(_mm_cmpunord_ps(x, x), x); }

// Movemask of the lanes with |x| >= 1 or NaN, by integer comparison.
inline int leaves_plain_path(__m128d x) {
  const __m128i h = _mm_and_si128(high_words(x), _mm_set1_epi32(0x7FFFFFFF));
  return _mm_movemask_ps(as_ps(_mm_cmpgt_epi32(h, _mm_set1_epi32(0x3FEFFFFF)))) & 3;
}
inline int leaves_plain_path(__m128 x) {
  const __m128i a = _mm_and_si128(as_int(x), _mm_set1_epi32(0x7FFFFFFF));
  return _mm_movemask_ps(as_ps(_mm_cmpgt_epi32(a, _mm_set1_epi32(0x3F7FFFFF))));
}

// Blends: m ? a : b, with m a lane mask.
inline __m128d select(__m128d m, __m128d a, __m128d b) {
  return _mm_or_pd(_mm_and_pd(m, a), _mm_andnot_pd(m, b));
}
inline __m128 select(__m128 m, __m128 a, __m128 b) {
  return _mm_or_ps(_mm_and_ps(m, a), _mm_andnot_ps(m, b));
}

// R(z) = z O(z2) + z2 E(z2), the odd and the even chain side by side.
template <class V>
inline V odd_even(V z, V z2, V odd, V even);
template <>
inline __m128d odd_even(__m128d z, __m128d z2, __m128d odd, __m128d even) {
  return _mm_add_pd(_mm_mul_pd(z, odd), _mm_mul_pd(z2, even));
}
template <>
inline __m128 odd_even(__m128 z, __m128 z2, __m128 odd, __m128 even) {
  return _mm_add_ps(_mm_mul_ps(z, odd), _mm_mul_ps(z2, even));
}

// The selecting pass over the lanes of `mask`: x holds the source lanes (read
// before anything was stored), r the results, both as bit patterns.  Returns
// the mask of the lanes with |x| > 1.
template <class U, int N>
inline unsigned select_special(const typename Bits<typename U::Elem>::W* x,
                               typename Bits<typename U::Elem>::W* r, unsigned mask) {
  using B = Bits<typename U::Elem>;
  unsigned domain = 0;
  for (int k = 0; k < N; ++k) {
    if (!(mask >> k & 1)) continue;
    const typename B::W a = x[k] & B::kAbs, s = x[k] & B::kSign;
    if (a == B::kOne) {
      r[k] = U::kAsin ? (B::kHalfPi | s) : (s ? B::kPi : 0);
    } else if (a > B::kInf) {
      r[k] = U::kKeepNaN ? x[k] : (x[k] | B::kQuietBit);
    } else if (a > B::kOne) {
      r[k] = B::kDefaultNaN;
      domain |= 1u << k;
    }
  }
  return domain;
}

template <class U>
struct MaskedKernel {
  using Elem = typename U::Elem;
  using S = sincos::LaneShape<Elem>;
  using V = typename S::V;
  using W = typename Bits<Elem>::W;
  static constexpr int kPerReg = S::kPerReg;
  static constexpr int kBlock = 2 * kPerReg;

  const Elem* src;
  Elem* dst;
  CallState<Elem>& call;

  unsigned block(int i) {
    const V a = S::load(src + i);
    const V b = S::load(src + i + kPerReg);
    V ra = U::eval(no_nan(a));
    V rb = U::eval(no_nan(b));
    const unsigned test = unsigned(leaves_plain_path(a)) | unsigned(leaves_plain_path(b)) << kPerReg;
    unsigned domain = 0;
    if (__builtin_expect(test != 0, 0)) {
      alignas(16) W x[kBlock];
      alignas(16) W r[kBlock];
      S::store(reinterpret_cast<Elem*>(x), a);
      S::store(reinterpret_cast<Elem*>(x) + kPerReg, b);
      S::store(reinterpret_cast<Elem*>(r), ra);
      S::store(reinterpret_cast<Elem*>(r) + kPerReg, rb);
      domain = select_special<U, kBlock>(x, r, test);
      ra = S::load(reinterpret_cast<const Elem*>(r));
      rb = S::load(reinterpret_cast<const Elem*>(r) + kPerReg);
    }
    S::store(dst + i, ra);
    S::store(dst + i + kPerReg, rb);
    return domain;
  }

  unsigned tail(int i) {
    const V a = load1(src + i);
    V ra = U::eval(no_nan(a));
    unsigned domain = 0;
    if (__builtin_expect(leaves_plain_path(a) & 1, 0)) {
      alignas(16) W x[kPerReg];
      alignas(16) W r[kPerReg];
      S::store(reinterpret_cast<Elem*>(x), a);
      S::store(reinterpret_cast<Elem*>(r), ra);
      domain = select_special<U, 1>(x, r, 1);
      ra = S::load(reinterpret_cast<const Elem*>(r));
    }
    store1(dst + i, ra);
    return domain;
  }

  void offend(int i) {
    call.warn(luxWarnDomain, i);
    if constexpr (U::kX87Invalid) {
      static constexpr W kSnan = Bits<Elem>::kSignalingNaN;
      Bits<Elem>::x87_load_and_drop(&kSnan);
    }
  }
};

// The body of an export: entry checks, the SSE guard, the masked driver.
template <class U>
inline luxStatus run(const typename U::Elem* src, typename U::Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  CallState<typename U::Elem> call(src, src, dst, dst);
  MaskedKernel<U> k{src, dst, call};
  run_masked<MaskedKernel<U>::kBlock>(len, k);
  return call.status();
}

}  // namespace lux::asincos
