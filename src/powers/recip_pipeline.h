// The pipelined block loop of the binary32 estimate tiers of Inv and Div.
//
// A block is 8 lanes, two vectors of 4.  The kernel stores the first vector
// of a block before it has looked at the lane mask of the second one, so a
// failing block may have overwritten its first four inputs already in an
// in-place call.  Those inputs are kept aside here and put back (only into a
// source that is also the result array) before the lane routine redoes the
// block from the arrays.
//
// After a failing block the lane routine runs one lane at a time until the
// count of lanes still to do is a multiple of 8, and the vector loop resumes
// from there: block boundaries move, and no tail is left over.  This decides
// which lanes a vector sees (a lane of magnitude exactly 2^126 passes the
// vector test, but takes the division in the lane routine).  With fewer than
// 8 lanes left every lane takes the lane routine.
#pragma once

#include "frame/frame.h"

namespace lux {

// K provides:
//   bool block(int i)  lanes i..i+7; stores the first four, then returns false
//                      without storing the rest if any lane fails its test;
//   void lane(int i)   the lane routine: computes, stores, and reports.
// src2 is null for one-source functions.
template <class T, class K>
inline void run_pipelined_realigning(const T* src1, const T* src2, T* dst, int len, K& k) {
  constexpr int kBlock = 8, kHalf = 4;
  int i = 0;
  while (len - i >= kBlock) {
    alignas(16) T kept1[kHalf];
    alignas(16) T kept2[kHalf];
    copy_lanes_raw(src1 + i, kept1, kHalf);
    if (src2) copy_lanes_raw(src2 + i, kept2, kHalf);
    if (__builtin_expect(k.block(i), 1)) {
      i += kBlock;
      continue;
    }
    if (static_cast<const T*>(dst) == src1) copy_lanes_raw(kept1, dst + i, kHalf);
    if (src2 && static_cast<const T*>(dst) == src2) copy_lanes_raw(kept2, dst + i, kHalf);
    do {
      k.lane(i);
      ++i;
    } while ((len - i) % kBlock != 0);
  }
  for (; i < len; ++i) k.lane(i);
}

}  // namespace lux
