// The block-redo frame of the sine and cosine kernels, written once: a unit
// supplies its vector arithmetic on one register of lanes, its range bound,
// its guards and its call-out; this adapter turns them into the block, lane
// and tail steps of lux::run_block_redo and into the body of the export.
//
// A unit U provides
//   using Elem = lux32f or lux64f;
//   using X87 = lux::X87Guard53 or lux::X87Guard64;
//   using Sse = lux::RoundNearestGuard, or lux::NoGuard where the arithmetic
//               follows the caller's MXCSR;
//   static constexpr uint32_t kPassBelow;  // lane stays when |x| bits (high
//                                          // word in 64f) are below this
//   static V eval(V x);                    // V = __m128 or __m128d
//   static void call_out(int i, const Elem* src, Elem* dst, luxStatus* status);
// and may ask for a non-temporal prefetch of the input so many bytes ahead
//   static constexpr int kPrefetchAhead;
//
// Below the frame, the few steps every unit writes the same way: Horner's
// scheme on constant rows, the reduction by a constant split in parts, and
// the sign flip by the parity of a multiple.  They fix the order of the
// operations exactly as written out by hand.
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

// The body of an export: entry checks, then the unit's guards for the whole
// call, then the block-redo driver.
template <class U>
inline luxStatus run(const typename U::Elem* src, typename U::Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  [[maybe_unused]] typename U::X87 x87;
  [[maybe_unused]] typename U::Sse sse;
  luxStatus status = luxOk;
  RedoKernel<U> k{src, dst, &status};
  run_block_redo<RedoKernel<U>::kBlock>(len, k);
  return status;
}

// Horner's scheme, highest coefficient first:
//   horner(z, c_n, ..., c_1, c_0) = ((c_n z + c_{n-1}) z + ... + c_1) z + c_0.
inline __m128d horner_from(__m128d acc, __m128d) { return acc; }
template <class... Rows>
inline __m128d horner_from(__m128d acc, __m128d z, const Row64& c, const Rows&... rest) {
  return horner_from(_mm_add_pd(_mm_mul_pd(acc, z), c.pd()), z, rest...);
}
template <class... Rows>
inline __m128d horner(__m128d z, const Row64& top, const Rows&... rest) {
  return horner_from(top.pd(), z, rest...);
}
inline __m128 horner_from(__m128 acc, __m128) { return acc; }
template <class... Rows>
inline __m128 horner_from(__m128 acc, __m128 z, const Row32& c, const Rows&... rest) {
  return horner_from(_mm_add_ps(_mm_mul_ps(acc, z), c.ps()), z, rest...);
}
template <class... Rows>
inline __m128 horner(__m128 z, const Row32& top, const Rows&... rest) {
  return horner_from(top.ps(), z, rest...);
}

// x - n (p1 + p2 + ...) as ((x - n p1) - n p2) - ..., the constant split so
// that the leading products are exact on the unit's range.
inline __m128d subtract_multiples(__m128d x, __m128d) { return x; }
template <class... Rows>
inline __m128d subtract_multiples(__m128d x, __m128d n, const Row64& p, const Rows&... rest) {
  return subtract_multiples(_mm_sub_pd(x, _mm_mul_pd(n, p.pd())), n, rest...);
}
inline __m128 subtract_multiples(__m128 x, __m128) { return x; }
template <class... Rows>
inline __m128 subtract_multiples(__m128 x, __m128 n, const Row32& p, const Rows&... rest) {
  return subtract_multiples(_mm_sub_ps(x, _mm_mul_ps(n, p.ps())), n, rest...);
}

// v with its sign flipped in the lanes where the integer in the low bit of
// the matching word of k is odd: (-1)^k v.
inline __m128 flip_sign_if_odd(__m128 v, __m128i k) {
  return as_ps(_mm_xor_si128(as_int(v), _mm_slli_epi32(k, 31)));
}

}  // namespace lux::sincos
