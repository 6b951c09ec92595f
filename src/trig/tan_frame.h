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

}  // namespace lux::tan
