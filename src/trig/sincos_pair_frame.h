// The block-redo frame of the SinCos kernels, which write two arrays: sines
// to dst1, cosines to dst2.  A block is two registers of lanes, every lane
// tested before anything is stored; a block with a lane beyond the range
// limit (NaN and the infinities among them) goes lane by lane to the scalar
// routine, which writes both arrays; tail lanes run the same arithmetic one
// at a time.  Each result array may be the source: a block reads all its
// lanes before it stores, and the scalar routine reads its lane first.
//
// A unit U provides Elem, X87, Sse, kPassBelow as for lux::sincos::run, and
//   static void eval(V x, V& s, V& c);
//   static void call_out(int i, const Elem* src, Elem* dst1, Elem* dst2, luxStatus* status);
#pragma once

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux::sincos {

template <class U>
struct PairRedoKernel {
  using Elem = typename U::Elem;
  using S = LaneShape<Elem>;
  using V = typename S::V;
  static constexpr int kBlock = 2 * S::kPerReg;

  const Elem* src;
  Elem* dst1;
  Elem* dst2;
  luxStatus* status;

  bool block(int i) {
    const V a = S::load(src + i);
    const V b = S::load(src + i + S::kPerReg);
    const bool pass =
        all_below(S::words(a), U::kPassBelow, S::kPerReg) & all_below(S::words(b), U::kPassBelow, S::kPerReg);
    if (__builtin_expect(!pass, 0)) return false;
    V sa, ca, sb, cb;
    U::eval(a, sa, ca);
    U::eval(b, sb, cb);
    S::store(dst1 + i, sa);
    S::store(dst1 + i + S::kPerReg, sb);
    S::store(dst2 + i, ca);
    S::store(dst2 + i + S::kPerReg, cb);
    return true;
  }

  void lane(int i) { U::call_out(i, src, dst1, dst2, status); }

  void tail(int i) {
    const V a = load1(src + i);
    if (__builtin_expect(!all_below(S::words(a), U::kPassBelow, 1), 0)) {
      lane(i);
      return;
    }
    V s, c;
    U::eval(a, s, c);
    store1(dst1 + i, s);
    store1(dst2 + i, c);
  }
};

template <class U>
inline luxStatus run_pair(const typename U::Elem* src, typename U::Elem* dst1, typename U::Elem* dst2,
                          int len) {
  if (const luxStatus e = check_entry(len, src, dst1, dst2)) return e;
  [[maybe_unused]] typename U::X87 x87;
  [[maybe_unused]] typename U::Sse sse;
  luxStatus status = luxOk;
  PairRedoKernel<U> k{src, dst1, dst2, &status};
  run_block_redo<PairRedoKernel<U>::kBlock>(len, k);
  return status;
}

}  // namespace lux::sincos

namespace lux::sincos {

// The quadrant step of the polynomial tiers: x = n pi/2 + r, S ~ sin r and
// C ~ cos r; for n mod 4 = 0, 1, 2, 3 the sine is S, C, -S, -C and the
// cosine C, -S, -C, S.  q holds n in its low bits (the shifter sum's pattern,
// or the integer itself): the swap is bit 0 of q, the sine's sign bit 1 of
// q - (q & 1), the cosine's bit 1 of q + (q & 1); `extra` is exclusive-ored
// into the sine's sign.
inline void quadrant(__m128i q, __m128 S, __m128 C, __m128& s, __m128& c) {
  const __m128i b = _mm_and_si128(q, _mm_set1_epi32(1));
  const __m128 swap = as_ps(_mm_sub_epi32(_mm_setzero_si128(), b));
  const __m128 ssign = as_ps(_mm_slli_epi32(_mm_sub_epi32(q, b), 30));
  const __m128 csign = as_ps(_mm_slli_epi32(_mm_add_epi32(q, b), 30));
  s = _mm_xor_ps(_mm_or_ps(_mm_and_ps(swap, C), _mm_andnot_ps(swap, S)), ssign);
  c = _mm_xor_ps(_mm_or_ps(_mm_and_ps(swap, S), _mm_andnot_ps(swap, C)), csign);
}
inline void quadrant(__m128i q, __m128d S, __m128d C, __m128d extra, __m128d& s, __m128d& c) {
  const __m128i b = _mm_and_si128(q, _mm_set_epi32(0, 1, 0, 1));
  const __m128d swap = as_pd(_mm_sub_epi64(_mm_setzero_si128(), b));
  const __m128d ssign = _mm_xor_pd(as_pd(_mm_slli_epi64(_mm_sub_epi64(q, b), 62)), extra);
  const __m128d csign = as_pd(_mm_slli_epi64(_mm_add_epi64(q, b), 62));
  s = _mm_xor_pd(_mm_or_pd(_mm_and_pd(swap, C), _mm_andnot_pd(swap, S)), ssign);
  c = _mm_xor_pd(_mm_or_pd(_mm_and_pd(swap, S), _mm_andnot_pd(swap, C)), csign);
}

}  // namespace lux::sincos
