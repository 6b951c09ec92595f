// The block-redo frame of the sine and cosine kernels, written once: a unit
// supplies its vector arithmetic on one register of lanes, its range bound
// and its call-out; this adapter turns them into the block, lane and tail
// steps of lux::run_block_redo.
//
// A unit U provides
//   using Elem = lux32f or lux64f;
//   static constexpr uint32_t kPassBelow;  // lane stays when |x| bits (high
//                                          // word in 64f) are below this
//   static V eval(V x);                    // V = __m128 or __m128d
//   static void call_out(int i, const Elem* src, Elem* dst, luxStatus* status);
// and may ask for a non-temporal prefetch of the input so many bytes ahead
//   static constexpr int kPrefetchAhead;
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::sincos {

template <class Elem>
struct LaneShape;
template <>
struct LaneShape<lux32f> {
  using V = __m128;
  static constexpr int kPerReg = 4;
  static V load(const lux32f* p) { return load4(p); }
  static void store(lux32f* p, V v) { store4(p, v); }
  // The test words: the whole binary32 pattern of each lane.
  static __m128i words(V v) { return as_int(v); }
};
template <>
struct LaneShape<lux64f> {
  using V = __m128d;
  static constexpr int kPerReg = 2;
  static V load(const lux64f* p) { return load2(p); }
  static void store(lux64f* p, V v) { store2(p, v); }
  // The test words: the high 32 bits of each binary64 lane.
  static __m128i words(V v) { return high_words(v); }
};

// Two registers per block, evaluated as two independent chains.
template <class U>
struct RedoKernel {
  using Elem = typename U::Elem;
  using S = LaneShape<Elem>;
  static constexpr int kBlock = 2 * S::kPerReg;

  const Elem* src;
  Elem* dst;
  luxStatus* status;

  // Every lane is tested before anything is stored: a block with one lane
  // out of range goes whole to the call-out.
  bool block(int i) {
    if constexpr (requires { U::kPrefetchAhead; })
      _mm_prefetch(reinterpret_cast<const char*>(src + i) + U::kPrefetchAhead, _MM_HINT_NTA);
    const typename S::V a = S::load(src + i);
    const typename S::V b = S::load(src + i + S::kPerReg);
    const bool pass =
        all_below(S::words(a), U::kPassBelow, S::kPerReg) & all_below(S::words(b), U::kPassBelow, S::kPerReg);
    if (__builtin_expect(!pass, 0)) return false;
    const typename S::V ra = U::eval(a);
    const typename S::V rb = U::eval(b);
    S::store(dst + i, ra);
    S::store(dst + i + S::kPerReg, rb);
    return true;
  }

  void lane(int i) { U::call_out(i, src, dst, status); }

  // One lane in the low element of a register (the others hold 0): the same
  // arithmetic, with the test and the call-out for that lane alone.
  void tail(int i) {
    const typename S::V a = load1(src + i);
    if (__builtin_expect(!all_below(S::words(a), U::kPassBelow, 1), 0)) {
      lane(i);
      return;
    }
    store1(dst + i, U::eval(a));
  }
};

}  // namespace lux::sincos
