// The call frame every array function runs in: entry checks, floating-point
// environment guards, the status latch, the exception reporter and the block
// drivers of the frame kinds.  A kernel supplies its block arithmetic, its
// lane test and its call-out; everything else lives here, once.
#pragma once

#include <stdint.h>

#include "frame/control_registers.h"
#include "luxvm.h"

namespace lux {

// ---------------------------------------------------------------------------
// Control registers.

// MXCSR bits 15..13: flush-to-zero and the two rounding-control bits.
inline constexpr uint32_t kSseControlMask = 0xE000;
inline constexpr uint32_t kSseNearest = 0x0000;
inline constexpr uint32_t kSseDown = 0x2000;
inline constexpr uint32_t kSseUp = 0x4000;
inline constexpr uint32_t kSseTowardZero = 0x6000;
// x87 control word bits 11..8: rounding control and precision control.
inline constexpr uint16_t kX87ControlMask = 0x0F00;
inline constexpr uint16_t kX87Nearest53 = 0x0200;
inline constexpr uint16_t kX87Nearest64 = 0x0300;

// Forces MXCSR's rounding and flush-to-zero bits for the life of the object;
// the register is written only if it differs, and reloaded whole at exit
// (dropping the flags raised meanwhile) only if it was written.
template <uint32_t Target>
class SseGuard {
 public:
  SseGuard() : entry_(read_mxcsr()), changed_((entry_ & kSseControlMask) != Target) {
    if (changed_) write_mxcsr((entry_ & ~kSseControlMask) | Target);
  }
  ~SseGuard() {
    if (changed_) write_mxcsr(entry_);
  }
  SseGuard(const SseGuard&) = delete;
  SseGuard& operator=(const SseGuard&) = delete;

 private:
  uint32_t entry_;
  bool changed_;
};

// Forces the x87 precision and rounding control, same rule.
template <uint16_t Target>
class X87Guard {
 public:
  X87Guard() : entry_(read_x87_cw()), changed_((entry_ & kX87ControlMask) != Target) {
    if (changed_) write_x87_cw(static_cast<uint16_t>((entry_ & ~kX87ControlMask) | Target));
  }
  ~X87Guard() {
    if (changed_) write_x87_cw(entry_);
  }
  X87Guard(const X87Guard&) = delete;
  X87Guard& operator=(const X87Guard&) = delete;

 private:
  uint16_t entry_;
  bool changed_;
};

using RoundNearestGuard = SseGuard<kSseNearest>;
using RoundDownGuard = SseGuard<kSseDown>;
using RoundUpGuard = SseGuard<kSseUp>;
using RoundTowardZeroGuard = SseGuard<kSseTowardZero>;
using X87Guard53 = X87Guard<kX87Nearest53>;
using X87Guard64 = X87Guard<kX87Nearest64>;

// No guard at all (the plain-loop and caller-rounding families).
struct NoGuard {};

// ---------------------------------------------------------------------------
// Entry checks: len first, then every pointer in argument order.

template <class... P>
inline luxStatus check_entry(int len, const P*... ptrs) {
  if (len < 1) return luxErrSize;
  if (((ptrs == nullptr) || ...)) return luxErrNullPtr;
  return luxOk;
}

}  // namespace lux

// ---------------------------------------------------------------------------
// The exception reporter: raises the IEEE flag of a warning code by carrying
// out one operation of that kind.  It has no memory and writes no lane.
extern "C" {
__attribute__((visibility("hidden"))) void orksError(int code, int index, const void* src1, const void* src2,
                                                     void* dst1, void* dst2, const char* name);
__attribute__((visibility("hidden"))) void orkdError(int code, int index, const void* src1, const void* src2,
                                                     void* dst1, void* dst2, const char* name);
}

namespace lux {

// The name a kernel gives the reporter: empty in the kernels; the scalar
// trigonometric wrappers pass a short text of their own.
inline constexpr const char kThisFuncName[] = "";

// The status latch and the arrays of one call, as the reporter sees them.
// warn() is called after the offending lane's result is stored: it overwrites
// the latch (no comparison: the last offending lane wins) and then reports.
template <class Elem>
class CallState {
 public:
  CallState(const void* src1, const void* src2, void* dst1, void* dst2)
      : src1_(src1), src2_(src2), dst1_(dst1), dst2_(dst2) {}

  void warn(luxStatus code, int index, const char* name = kThisFuncName) {
    latch_ = code;
    if constexpr (sizeof(Elem) == 4)
      orksError(code, index, src1_, src2_, dst1_, dst2_, name);
    else
      orkdError(code, index, src1_, src2_, dst1_, dst2_, name);
  }
  luxStatus status() const { return latch_; }

 private:
  const void* src1_;
  const void* src2_;
  void* dst1_;
  void* dst2_;
  luxStatus latch_ = luxOk;
};

// ---------------------------------------------------------------------------
// Block drivers.  A kernel object K provides, for its frame kind:
//   F3  void block(int i);  void tail(int i);
//   F4  bool block(int i)   computes and stores lanes i..i+B-1 if all pass
//                           the lane test, else stores nothing and says false;
//       void lane(int i)    the call-out for one lane;
//       void tail(int i)    one tail lane (one-lane vector code or call-out).
//   F5  unsigned block(int i)  computes and stores the whole block, returns
//                           the mask of offending lanes (bit b = lane i+b);
//       unsigned tail(int i)   one lane, returns 1 if it offends;
//       void offend(int i)  the lane's status and report (or lane routine).
//   F6  bool block(int i)   as F4, but may have stored the first half of the
//                           block before it knows; the driver puts back the
//                           inputs an in-place call overwrote before the redo.
//   The *_resume drivers move the block grid after a failed block instead
//   of redoing it in place; they need only block() and lane().

template <int Block>
inline int main_loop_end(int len) {
  static_assert((Block & (Block - 1)) == 0, "block sizes are powers of two");
  return len & ~(Block - 1);
}

template <int Block, class K>
inline void run_closed(int len, K& k) {
  const int n = main_loop_end<Block>(len);
  for (int i = 0; i < n; i += Block) k.block(i);
  for (int i = n; i < len; ++i) k.tail(i);
}

template <int Block, class K>
inline void run_block_redo(int len, K& k) {
  const int n = main_loop_end<Block>(len);
  for (int i = 0; i < n; i += Block) {
    if (__builtin_expect(!k.block(i), 0))
      for (int j = i; j < i + Block; ++j) k.lane(j);
  }
  for (int i = n; i < len; ++i) k.tail(i);
}

template <int Block, class K>
inline void run_masked(int len, K& k) {
  const int n = main_loop_end<Block>(len);
  for (int i = 0; i < n; i += Block) {
    // Lowest lane first.  A plain bit walk: __builtin_ctz becomes `rep bsf`,
    // which disassembles as tzcnt and reads as beyond SSE3.
    unsigned mask = k.block(i);
    for (int b = 0; __builtin_expect(mask != 0, 0); ++b, mask >>= 1)
      if (mask & 1) k.offend(i + b);
  }
  for (int i = n; i < len; ++i)
    if (k.tail(i)) k.offend(i);
}

// Copies lanes as raw bits: on i386 a floating-point copy could travel
// through the x87 unit, which would quiet a signalling NaN.
template <class T>
inline void copy_lanes_raw(const T* from, T* to, int count) {
  static_assert(sizeof(T) % 4 == 0);
  const uint32_t* f = reinterpret_cast<const uint32_t*>(from);
  uint32_t* t = reinterpret_cast<uint32_t*>(to);
  for (int w = 0; w < count * int(sizeof(T) / 4); ++w) t[w] = f[w];
}

// The first half of a pipelined block's inputs, kept aside from up to two
// sources: the kernel may store the first half of its results before the
// block's test ends, and an in-place call has then lost those inputs.
template <int Half, class T>
class KeptInputs {
 public:
  KeptInputs(const T* src1, const T* src2, const T* dst) : src1_(src1), src2_(src2), dst_(dst) {}
  void keep(int i) {
    copy_lanes_raw(src1_ + i, a_, Half);
    if (src2_) copy_lanes_raw(src2_ + i, b_, Half);
  }
  // Puts the kept inputs back into a source that is also the result array
  // (an array that is only a source is never stored to).
  void put_back(int i) const {
    T* out = const_cast<T*>(dst_) + i;
    if (dst_ == src1_) copy_lanes_raw(a_, out, Half);
    if (src2_ && dst_ == src2_) copy_lanes_raw(b_, out, Half);
  }

 private:
  const T* src1_;
  const T* src2_;
  const T* dst_;
  alignas(16) T a_[Half];
  alignas(16) T b_[Half];
};

// F6 on a fixed grid: a failed block is redone lane by lane; tail as F4.
template <int Block, class T, class K>
inline void run_pipelined(const T* src, T* dst, int len, K& k) {
  KeptInputs<Block / 2, T> kept(src, nullptr, dst);
  const int n = main_loop_end<Block>(len);
  for (int i = 0; i < n; i += Block) {
    kept.keep(i);
    if (__builtin_expect(!k.block(i), 0)) {
      kept.put_back(i);
      for (int j = i; j < i + Block; ++j) k.lane(j);
    }
  }
  for (int i = n; i < len; ++i) k.tail(i);
}

// F4 on a moving grid: after a failed block the lane routine runs one lane
// at a time only until the lanes left are a multiple of the block, and the
// vector loop resumes from there; fewer than a block left all take the lane
// routine (there is no separate tail).
template <int Block, class K>
inline void run_block_resume(int len, K& k) {
  int i = 0;
  while (len - i >= Block) {
    if (__builtin_expect(k.block(i), 1)) {
      i += Block;
      continue;
    }
    do k.lane(i++);
    while ((len - i) % Block != 0);
  }
  while (i < len) k.lane(i++);
}

// F6 on a moving grid, for up to two sources (src2 null for one): the
// pipelined block of run_pipelined with the resumption of run_block_resume.
template <int Block, class T, class K>
inline void run_pipelined_resume(const T* src1, const T* src2, T* dst, int len, K& k) {
  KeptInputs<Block / 2, T> kept(src1, src2, dst);
  int i = 0;
  while (len - i >= Block) {
    kept.keep(i);
    if (__builtin_expect(k.block(i), 1)) {
      i += Block;
      continue;
    }
    kept.put_back(i);
    do k.lane(i++);
    while ((len - i) % Block != 0);
  }
  while (i < len) k.lane(i++);
}

}  // namespace lux

// Exported entry points: C linkage, default visibility.
#define LUXVM_EXPORT extern "C" __attribute__((visibility("default")))
