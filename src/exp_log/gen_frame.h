// The frame of the Expm1 and Log1p units: blocks that run in vector code
// only when every lane lies in the regular range, and otherwise send every
// lane of the block through the unit's scalar routine in rising order; the
// last len mod block lanes are padded with copies of their first lane to a
// whole block in a local buffer, which takes the same test and the same
// paths, so a tail lane gets the value it would get in a block of its own.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::genframe {

// Keeps an operation whose value is wanted for its flag from being folded.
inline double opaque(double x) {
  asm volatile("" : "+x"(x));
  return x;
}

// Two table words, one per lane, as raw bits.
inline __m128d gather2(const uint64_t* a, const uint64_t* b) {
  return as_pd(_mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(a)),
                                  _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b))));
}

// A result that rounds to the tiny argument itself is inexact: 1 + small
// says so; a subnormal argument is also tiny, and small squared (which
// underflows) says that as well.  small = 2^-1000.
inline void flag_rounded_to_tiny(bool subnormal, double small) {
  if (subnormal)
    opaque(opaque(small) * small);
  else
    opaque(1.0 + opaque(small));
}

// K provides
//   using Elem;  static constexpr int kBlock;
//   static bool block(const Elem* in, Elem* out);  // all lanes tested before
//                                                  // anything is stored
//   static int lane(const Elem* in, Elem* out);    // the scalar routine;
//                                                  // returns the lane's status
template <class K>
inline void scalar_pass(const typename K::Elem* src, typename K::Elem* dst, int from, int to,
                        CallState<typename K::Elem>& call) {
  for (int i = from; i < to; ++i) {
    const int st = K::lane(src + i, dst + i);
    if (__builtin_expect(st != 0, 0)) call.warn(luxStatus(st), i);
  }
}

template <class K>
inline luxStatus run(const typename K::Elem* src, typename K::Elem* dst, int len) {
  using Elem = typename K::Elem;
  constexpr int B = K::kBlock;
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  X87Guard53 x87;
  CallState<Elem> call(src, src, dst, dst);
  const int n = main_loop_end<B>(len);
  for (int i = 0; i < n; i += B)
    if (__builtin_expect(!K::block(src + i, dst + i), 0)) scalar_pass<K>(src, dst, i, i + B, call);
  if (n < len) {
    alignas(16) Elem in[B];
    alignas(16) Elem out[B];
    copy_lanes_raw(src + n, in, len - n);
    for (int b = len - n; b < B; ++b) copy_lanes_raw(src + n, in + b, 1);
    if (K::block(in, out))
      copy_lanes_raw(out, dst + n, len - n);
    else
      scalar_pass<K>(src, dst, n, len, call);
  }
  return call.status();
}

// The tier that sends every lane through the scalar routine.
template <class K>
inline luxStatus run_scalar(const typename K::Elem* src, typename K::Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  X87Guard53 x87;
  CallState<typename K::Elem> call(src, src, dst, dst);
  scalar_pass<K>(src, dst, 0, len, call);
  return call.status();
}

}  // namespace lux::genframe
