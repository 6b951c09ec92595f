// The binary32 estimate tiers of Inv and Div (A11, A21): the lane test, the
// block of two vectors and the lane routine, written once.  Each unit brings
// its table and its arithmetic on the 12-bit reciprocal estimate; this header
// decides which lanes get that arithmetic and which go to the x87 division.
//
// Lane test on x (Inv) or the divisor (Div): w = (bits - kMinNormal) AND
// 0x7FFFFFFF fails when, signed, it is above kRangeWidth.  With the tables'
// 0x00800000 and 0x7E000000, magnitudes 2^-126 to 2^126 inclusive pass and
// zero, denormals, infinities and NaNs fail, so the estimate stays normal.
// The lane routine runs the arithmetic strictly inside [2^-126, 2^126) and
// the x87 division elsewhere (2^126 itself is divided there).
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/recip_x87.h"

namespace lux::recip {

// kTab holds the rows flMinNormal, flAbsMask and flRangeWidth.
template <const auto& kTab>
inline __m128i outside(__m128 x) {
  const __m128i w = _mm_and_si128(_mm_sub_epi32(lux::as_int(x), kTab.flMinNormal.pi()), kTab.flAbsMask.pi());
  return _mm_cmpgt_epi32(w, kTab.flRangeWidth.pi());
}

// Op provides vec(x), the unit's 1/x on four lanes, and one(x), the same
// arithmetic on the low lane.
template <const auto& kTab, class Op>
struct InvEstimateKernel {
  static constexpr uint32_t kMinNormal = kTab.flMinNormal.v[0];
  static constexpr uint32_t kRangeWidth = kTab.flRangeWidth.v[0];

  const float* src;
  float* dst;
  lux::CallState<float>& call;

  bool block(int i) {
    const __m128 x0 = lux::load4(src + i);
    const __m128 x1 = lux::load4(src + i + 4);
    const __m128i bad0 = outside<kTab>(x0);
    lux::store4(dst + i, Op::vec(x0));
    const __m128i bad1 = outside<kTab>(x1);
    const __m128 r1 = Op::vec(x1);
    if (_mm_movemask_ps(lux::as_ps(_mm_or_si128(bad0, bad1))) != 0) return false;
    lux::store4(dst + i + 4, r1);
    return true;
  }

  void lane(int i) {
    const uint32_t mag = __builtin_bit_cast(uint32_t, src[i]) & 0x7FFFFFFF;
    if (mag - kMinNormal < kRangeWidth) {
      lux::store1(dst + i, Op::one(lux::load1(src + i)));
      return;
    }
    lux::x87_inv_to_f32(dst + i, src + i);
    if (mag == 0) call.warn(luxWarnSingularity, i);
  }
};

// Op provides vec(a, b), the unit's a/b on four lanes, and one(a, b), the
// same arithmetic on the low lane.  The dividend is not tested: its specials
// pass through the product.  A zero divisor reports unless a is a NaN.
template <const auto& kTab, class Op>
struct DivEstimateKernel {
  static constexpr uint32_t kMinNormal = kTab.flMinNormal.v[0];
  static constexpr uint32_t kRangeWidth = kTab.flRangeWidth.v[0];
  static constexpr uint32_t kInfBits = 0x7F800000;  // magnitudes above are NaN

  const float* a;
  const float* b;
  float* dst;
  lux::CallState<float>& call;

  bool block(int i) {
    const __m128 a0 = lux::load4(a + i), a1 = lux::load4(a + i + 4);
    const __m128 b0 = lux::load4(b + i), b1 = lux::load4(b + i + 4);
    const __m128i bad0 = outside<kTab>(b0);
    lux::store4(dst + i, Op::vec(a0, b0));
    const __m128i bad1 = outside<kTab>(b1);
    const __m128 q1 = Op::vec(a1, b1);
    if (_mm_movemask_ps(lux::as_ps(_mm_or_si128(bad0, bad1))) != 0) return false;
    lux::store4(dst + i + 4, q1);
    return true;
  }

  void lane(int i) {
    const uint32_t bmag = __builtin_bit_cast(uint32_t, b[i]) & 0x7FFFFFFF;
    const uint32_t amag = __builtin_bit_cast(uint32_t, a[i]) & 0x7FFFFFFF;
    if (bmag - kMinNormal < kRangeWidth) {
      lux::store1(dst + i, Op::one(lux::load1(a + i), lux::load1(b + i)));
      return;
    }
    lux::x87_div_to_f32(dst + i, a + i, b + i);
    if (bmag == 0 && amag <= kInfBits) call.warn(luxWarnSingularity, i);
  }
};

// The export bodies after the entry checks.
template <const auto& kTab, class Op>
inline luxStatus run_inv_estimate(const float* src, float* dst, int len) {
  lux::RoundNearestGuard guard;
  lux::CallState<float> call(src, src, dst, dst);
  InvEstimateKernel<kTab, Op> k{src, dst, call};
  lux::run_pipelined_resume<8, float>(src, nullptr, dst, len, k);
  return call.status();
}

template <const auto& kTab, class Op>
inline luxStatus run_div_estimate(const float* src1, const float* src2, float* dst, int len) {
  lux::RoundNearestGuard guard;
  lux::CallState<float> call(src1, src2, dst, dst);
  DivEstimateKernel<kTab, Op> k{src1, src2, dst, call};
  lux::run_pipelined_resume<8, float>(src1, src2, dst, len, k);
  return call.status();
}

}  // namespace lux::recip
