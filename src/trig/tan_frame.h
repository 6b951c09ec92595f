// The block-redo frame of the binary32 and the binary64 EP/LA tangent
// kernels: one register of lanes per block, every lane tested before
// anything is stored, a failing block sent lane by lane to the scalar
// routine, and tail lanes through the same arithmetic one at a time.
//
// A unit U provides what lux::sincos::RedoKernel asks for (Elem, X87, Sse,
// kPassBelow, eval, call_out) and
//   static constexpr int kGrid;  // the main loop covers len & ~(kGrid - 1)
#pragma once

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux::tan {

template <class U>
struct OneRegisterKernel {
  using Elem = typename U::Elem;
  using S = sincos::LaneShape<Elem>;

  const Elem* src;
  Elem* dst;
  luxStatus* status;

  bool block(int i) {
    const typename S::V a = S::load(src + i);
    if (__builtin_expect(!all_below(S::words(a), U::kPassBelow, S::kPerReg), 0)) return false;
    S::store(dst + i, U::eval(a));
    return true;
  }
  void lane(int i) { U::call_out(i, src, dst, status); }
  void tail(int i) {
    const typename S::V a = load1(src + i);
    if (__builtin_expect(!all_below(S::words(a), U::kPassBelow, 1), 0)) {
      lane(i);
      return;
    }
    store1(dst + i, U::eval(a));
  }
};

template <class U>
inline luxStatus run(const typename U::Elem* src, typename U::Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  [[maybe_unused]] typename U::X87 x87;
  [[maybe_unused]] typename U::Sse sse;
  luxStatus status = luxOk;
  OneRegisterKernel<U> k{src, dst, &status};
  constexpr int kBlock = sincos::LaneShape<typename U::Elem>::kPerReg;
  const int n = main_loop_end<U::kGrid>(len);
  for (int i = 0; i < n; i += kBlock)
    if (__builtin_expect(!k.block(i), 0))
      for (int j = i; j < i + kBlock; ++j) k.lane(j);
  for (int i = n; i < len; ++i) k.tail(i);
  return status;
}

// Odd multiples of pi/2 turn the quotient upside down: tan(r + pi/2) =
// -1/tan r.  `odd` is all ones in the lanes to swap.
inline void swap_where(__m128d odd, __m128d& top, __m128d& bottom) {
  const __m128d t = _mm_or_pd(_mm_and_pd(odd, bottom), _mm_andnot_pd(odd, top));
  bottom = _mm_or_pd(_mm_and_pd(odd, top), _mm_andnot_pd(odd, bottom));
  top = t;
}
inline void swap_where(__m128 odd, __m128& top, __m128& bottom) {
  const __m128 t = _mm_or_ps(_mm_and_ps(odd, bottom), _mm_andnot_ps(odd, top));
  bottom = _mm_or_ps(_mm_and_ps(odd, top), _mm_andnot_ps(odd, bottom));
  top = t;
}

// Binary64, on |x|: t = |x| 2/pi + 2^52 with n's parity in bit 0 of its
// pattern, r = |x| - n pi/2 by the unit's parts (`reduce(ax, n)`), and the
// unit's numerator and denominator (`fraction(r, num, den)`); the quotient
// is taken the other way up for odd n and signed by the parity and x.
//
// Table: rows two_over_pi, shifter (2^52), sign.
template <class Table, class Reduce, class Fraction>
inline __m128d quotient_on_abs(__m128d x, const Table& T, Reduce reduce, Fraction fraction) {
  const __m128d ax = _mm_andnot_pd(T.sign.pd(), x);
  const __m128d t = _mm_add_pd(_mm_mul_pd(ax, T.two_over_pi.pd()), T.shifter.pd());
  const __m128d n = _mm_sub_pd(t, T.shifter.pd());
  __m128d top, bottom;
  fraction(reduce(ax, n), top, bottom);
  // Bit 1 of t lands in the sign of t << 62, and -0 == 0: the lane is odd
  // exactly when the shifted pattern compares unequal to zero.
  const __m128i ti = as_int(t);
  swap_where(_mm_cmpneq_pd(as_pd(_mm_slli_epi64(ti, 62)), _mm_setzero_pd()), top, bottom);
  const __m128d sign = _mm_xor_pd(as_pd(_mm_slli_epi64(ti, 63)), _mm_and_pd(x, T.sign.pd()));
  return _mm_xor_pd(_mm_div_pd(top, bottom), sign);
}

// Binary32, on signed x in single precision: t = x 2/pi + 1.5 2^23, r = x -
// n pi/2 by the unit's parts, s = r signed by n's parity; numerator
// `numerator(z, s)` over 1 + D2 z + D4 z^2, turned over for odd n (bits of t
// shifted by 30, compared with zero), then `divide(top, bottom)`.
//
// Table: rows two_over_pi, shifter, d4, d2, one.
template <class Table, class Reduce, class Numerator, class Divide>
inline __m128 quotient_signed(__m128 x, const Table& T, Reduce reduce, Numerator numerator, Divide divide) {
  const __m128 t = _mm_add_ps(_mm_mul_ps(x, T.two_over_pi.ps()), T.shifter.ps());
  const __m128 n = _mm_sub_ps(t, T.shifter.ps());
  const __m128 r = reduce(x, n);
  const __m128 s = sincos::flip_sign_if_odd(r, as_int(t));
  const __m128 z = _mm_mul_ps(r, r);
  __m128 top = numerator(z, s);
  __m128 bottom = sincos::horner(z, T.d4, T.d2, T.one);
  swap_where(_mm_cmpneq_ps(as_ps(_mm_slli_epi32(as_int(t), 30)), _mm_setzero_ps()), top, bottom);
  return divide(top, bottom);
}

}  // namespace lux::tan
