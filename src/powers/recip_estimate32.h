// The binary32 estimate tiers of Inv and Div (A11, A21): the lane test, the
// block of two vectors and the lane routine, written once.  Each unit brings
// its table and its arithmetic on the 12-bit reciprocal estimate; this header
// decides which lanes get that arithmetic and which go to the x87 division.
//
// Lane test on x (Inv) or the divisor (Div): w = (bits - kMinNormal) AND
// 0x7FFFFFFF fails when, signed, it is above kRangeWidth.  With the tables'
// 0x00800000 and 0x7DFFEFFF, magnitudes from 2^-126 up to 0x1.ffdffep+125
// pass; zero, denormals, infinities, NaNs and the 2^12 values just below
// 2^126 fail.  The estimate is within 1.5 * 2^-12 of 1/x, so over the
// passing range it stays at or above 2^-126: a processor returns an estimate
// below the least normal as zero (2^126 itself gives 0 on some), whatever
// the flush-to-zero setting.  The lane routine takes the arithmetic on
// exactly the lanes that pass, so a lane's value does not depend on its
// position in the array.
//
// Div tests the quotient too: a result of magnitude 2^127 or more (or an
// infinity or NaN) fails.  Below it the exact quotient is far from the
// overflow threshold; at it, the estimate's error can carry a finite
// quotient past FLT_MAX (0x1.fffep+127 / 0x1.fffe02p-1 gave +Inf at A21)
// or keep an overflowing one finite, so such lanes take the x87
// division.  Infinite and NaN dividends get the same value there.
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

// Div's quotient test; kTab holds flAbsMask and flQuotientLimit.
template <const auto& kTab>
inline __m128i large(__m128 q) {
  return _mm_cmpgt_epi32(_mm_and_si128(lux::as_int(q), kTab.flAbsMask.pi()), kTab.flQuotientLimit.pi());
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
    if (mag - kMinNormal <= kRangeWidth) {
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
  static constexpr uint32_t kQuotientLimit = kTab.flQuotientLimit.v[0];

  const float* a;
  const float* b;
  float* dst;
  lux::CallState<float>& call;

  bool block(int i) {
    const __m128 a0 = lux::load4(a + i), a1 = lux::load4(a + i + 4);
    const __m128 b0 = lux::load4(b + i), b1 = lux::load4(b + i + 4);
    const __m128 q0 = Op::vec(a0, b0);
    const __m128i bad0 = _mm_or_si128(outside<kTab>(b0), large<kTab>(q0));
    lux::store4(dst + i, q0);
    const __m128 q1 = Op::vec(a1, b1);
    const __m128i bad1 = _mm_or_si128(outside<kTab>(b1), large<kTab>(q1));
    if (_mm_movemask_ps(lux::as_ps(_mm_or_si128(bad0, bad1))) != 0) return false;
    lux::store4(dst + i + 4, q1);
    return true;
  }

  void lane(int i) {
    const uint32_t bmag = __builtin_bit_cast(uint32_t, b[i]) & 0x7FFFFFFF;
    const uint32_t amag = __builtin_bit_cast(uint32_t, a[i]) & 0x7FFFFFFF;
    if (bmag - kMinNormal <= kRangeWidth) {
      const __m128 q = Op::one(lux::load1(a + i), lux::load1(b + i));
      if ((__builtin_bit_cast(uint32_t, _mm_cvtss_f32(q)) & 0x7FFFFFFF) <= kQuotientLimit) {
        lux::store1(dst + i, q);
        return;
      }
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
