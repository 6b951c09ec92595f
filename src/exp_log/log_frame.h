// Frame pieces of the real logarithm units (Ln, Log10) that the generic
// drivers of frame/frame.h do not cover: the loop that, after a failed block,
// takes lanes one at a time only until the remaining count is a multiple of
// the block again, the export body every tier runs, and the x87 FYL2X lane
// helpers of the fallbacks.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::logs {

// The export body of every tier: entry checks, round-to-nearest for the call,
// the status latch, and the tier's block loop over its kernel.  kRedo sends a
// failed block's lanes through the lane routine (run_block_redo); kResume
// goes lane by lane only until the remaining count is a multiple of the block
// (run_block_resume).
enum class BlockLoop { kRedo, kResume };

template <class Kernel, int Block, BlockLoop Loop, class Elem, class Table>
inline luxStatus run_export(const Table& t, const Elem* src, Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  CallState<Elem> call(src, src, dst, dst);
  Kernel k{src, dst, call, t};
  if constexpr (Loop == BlockLoop::kResume)
    run_block_resume<Block>(len, k);
  else
    run_block_redo<Block>(len, k);
  return call.status();
}

// Table gathers: one word of each lane's row, as raw bits (no floating-point
// move, no aliasing through double*).
inline __m128i load_word64(const uint64_t* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); }
inline __m128d gather2(const uint64_t* a, const uint64_t* b) {
  return as_pd(_mm_unpacklo_epi64(load_word64(a), load_word64(b)));
}
inline __m128 gather4(const uint32_t* a, const uint32_t* b, const uint32_t* c, const uint32_t* d) {
  const __m128i ab = _mm_unpacklo_epi32(_mm_cvtsi32_si128(int(*a)), _mm_cvtsi32_si128(int(*b)));
  const __m128i cd = _mm_unpacklo_epi32(_mm_cvtsi32_si128(int(*c)), _mm_cvtsi32_si128(int(*d)));
  return as_ps(_mm_unpacklo_epi64(ab, cd));
}

// 32-bit word k of a vector, to the integer unit.
template <int K>
inline uint32_t word(__m128i v) {
  return uint32_t(_mm_cvtsi128_si32(_mm_srli_si128(v, 4 * K)));
}

// Keeps a value whose computation is wanted for its flags alone.
inline void keep(__m128d v) { asm volatile("" : : "x"(v)); }
inline void keep(__m128 v) { asm volatile("" : : "x"(v)); }

// FYL2X: out = y * log2(x), y from FLDLN2 / FLDLG2 or memory, x loaded
// exactly, at the x87's current precision (the callers do not set it) and
// rounded once more by the store.  Zero gives -Inf, a negative number or -Inf
// the x87's default NaN, +Inf gives +Inf, a NaN comes back quieted, and a
// denormal gets its full logarithm.  The source is read before the result is
// written, so out may be x.
inline void fyl2x_ln2(const double* x, double* out) {
  asm volatile("fldln2\n\tfldl %1\n\tfyl2x\n\tfstpl %0" : "=m"(*out) : "m"(*x) : "st", "st(1)", "memory");
}
inline void fyl2x_ln2(const float* x, float* out) {
  asm volatile("fldln2\n\tflds %1\n\tfyl2x\n\tfstps %0" : "=m"(*out) : "m"(*x) : "st", "st(1)", "memory");
}
inline void fyl2x_lg2(const double* x, double* out) {
  asm volatile("fldlg2\n\tfldl %1\n\tfyl2x\n\tfstpl %0" : "=m"(*out) : "m"(*x) : "st", "st(1)", "memory");
}
inline void fyl2x_lg2(const float* x, float* out) {
  asm volatile("fldlg2\n\tflds %1\n\tfyl2x\n\tfstps %0" : "=m"(*out) : "m"(*x) : "st", "st(1)", "memory");
}
inline void fyl2x(const float* y, const float* x, float* out) {
  asm volatile("flds %1\n\tflds %2\n\tfyl2x\n\tfstps %0"
               : "=m"(*out)
               : "m"(*y), "m"(*x)
               : "st", "st(1)", "memory");
}

}  // namespace lux::logs
