// The frame of the Sinh and Cosh kernels: a masked block (F5) whose lanes
// off the main path are settled afterwards, one by one, by the unit's lane
// routine.  A block with such lanes keeps a copy of its inputs (from the
// registers it loaded them into), so the lane routine reads the right x even
// when the call is in place; a tail lane runs the block's own arithmetic on
// a block of copies of itself, so a lane's value never depends on its
// neighbours.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::hyp {

// `Tier` gives
//   Elem, kBlock
//   unsigned block(const Elem* x, Elem* y, Elem* keep)   the main path on
//        kBlock lanes of x, stored to y; returns the mask of lanes off the
//        main path (their stored value is a placeholder) and, when it is not
//        zero, has stored the block's inputs to keep first
//   void lane(const Elem* x, Elem* y, CallState<Elem>&, int i)   the lane
//        routine: stores the lane's value to *y, then its warning if any.
template <class Tier>
class MaskedKernel {
 public:
  using Elem = typename Tier::Elem;
  static constexpr int kBlock = Tier::kBlock;

  MaskedKernel(const Elem* src, Elem* dst, CallState<Elem>& call) : src_(src), dst_(dst), call_(call) {}

  unsigned block(int i) { return Tier::block(src_ + i, dst_ + i, kept_); }
  unsigned tail(int i) {
    for (int l = 0; l < kBlock; ++l) copy_lanes_raw(src_ + i, kept_ + l, 1);
    alignas(16) Elem out[kBlock];
    const unsigned mask = Tier::block(kept_, out, kept_);
    copy_lanes_raw(out, dst_ + i, 1);
    return mask & 1;
  }
  void offend(int i) { Tier::lane(kept_ + (i & (kBlock - 1)), dst_ + i, call_, i); }

 private:
  const Elem* src_;
  Elem* dst_;
  CallState<Elem>& call_;
  alignas(16) Elem kept_[kBlock];
};

// The export's body: entry checks, the SSE guard (and `X87`, an x87 guard or
// NoGuard), the masked driver, the status.
template <class Tier, class X87 = NoGuard>
inline luxStatus run(const typename Tier::Elem* src, typename Tier::Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  [[maybe_unused]] X87 x87_guard;
  CallState<typename Tier::Elem> call(src, src, dst, dst);
  MaskedKernel<Tier> k(src, dst, call);
  run_masked<Tier::kBlock>(len, k);
  return call.status();
}

// All ones in the lanes whose word (sign cleared) is at or above `bound` or
// below `low` (0: none); and the same as a mask of four bits.
inline __m128i outside(__m128i words, uint32_t low, uint32_t bound) {
  const __m128i abs = _mm_and_si128(words, _mm_set1_epi32(0x7FFFFFFF));
  const __m128i out = _mm_cmpgt_epi32(abs, _mm_set1_epi32(int32_t(bound - 1)));
  return _mm_or_si128(out, _mm_cmplt_epi32(abs, _mm_set1_epi32(int32_t(low))));
}
inline unsigned lane_mask(__m128i lanes) { return unsigned(_mm_movemask_ps(_mm_castsi128_ps(lanes))); }

// The mask of `lanes`; when it is not zero the block's inputs x go to keep.
inline unsigned keep_if_any(__m128i lanes, __m128 x, float* keep) {
  const unsigned mask = lane_mask(lanes);
  if (__builtin_expect(mask != 0, 0)) store4(keep, x);
  return mask;
}

// Raw 32-bit words of lanes, for the lane routines' tests.
inline uint32_t word(const float* p) {
  uint32_t w;
  __builtin_memcpy(&w, p, 4);
  return w;
}
inline uint64_t word(const double* p) {
  uint64_t w;
  __builtin_memcpy(&w, p, 8);
  return w;
}
inline void store_bits(float* p, uint32_t bits) { __builtin_memcpy(p, &bits, 4); }
inline void store_bits(double* p, uint64_t bits) { __builtin_memcpy(p, &bits, 8); }

}  // namespace lux::hyp
