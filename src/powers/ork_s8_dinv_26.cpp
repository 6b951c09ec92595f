// luxsInv_64f_A26 and luxsInv_64f_A50 (the same code): 1/x by batch
// inversion, one vector division for eight lanes.
// max error 2.78 ulp at x = 0x1.041dc2aaf412p+51
//
// A block is four vectors of two lanes, V0..V3.  With P = V0*V1, Q = V2*V3
// and R = 1/(P*Q):  A = Q*R = 1/P and B = P*R = 1/Q, and
//   1/V0 = V1*A,  1/V1 = V0*A,  1/V2 = V3*B,  1/V3 = V2*B.
// Six roundings stand between a lane and its reciprocal, so the result is
// within a few ulps, and its last bits depend on the three other lanes of
// its vector position.
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// Lane test on the high word of |x|: from 0x2FF6A09F (|x| ~ 2^-255.5) to below
// 0x4FEFFFFF (2^256).  Then any product of four lanes lies inside the normal
// range, so R neither overflows nor underflows.  Zero, denormals, infinities
// and NaNs fail.  Folded into one unsigned compare: |hi| - kLow < kWidth.
constexpr uint32_t kLow = 0x2FF6A09F;
constexpr uint32_t kHigh = 0x4FEFFFFF;
constexpr uint32_t kWidth = kHigh - kLow;

struct alignas(16) InvTable {
  lux::Row64 dbOne = lux::row64(0x3FF0000000000000);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flLow = lux::row32(kLow);
  // (|hi| - kLow) + 2^31 signed above this means unsigned at or above kWidth.
  lux::Row32 flWidthBiased = lux::row32(kWidth - 1 + 0x80000000u);
  lux::Row32 flSignBit = lux::row32(0x80000000u);
};
constexpr InvTable kTab{};

// Failing-lane mask of four high words.
inline __m128i outside(__m128i hi) {
  const __m128i w = _mm_sub_epi32(_mm_and_si128(hi, kTab.flAbsMask.pi()), kTab.flLow.pi());
  return _mm_cmpgt_epi32(_mm_xor_si128(w, kTab.flSignBit.pi()), kTab.flWidthBiased.pi());
}
inline __m128i high_words4(__m128d v0, __m128d v1) {
  return _mm_unpacklo_epi64(lux::high_words(v0), lux::high_words(v1));
}

inline bool in_batch_range(uint32_t hi) { return (hi & 0x7FFFFFFF) - kLow < kWidth; }

struct InvKernel {
  const double* src;
  double* dst;
  lux::CallState<double>& call;

  bool block(int i) {
    const __m128d v0 = lux::load2(src + i), v1 = lux::load2(src + i + 2);
    const __m128d v2 = lux::load2(src + i + 4), v3 = lux::load2(src + i + 6);
    const __m128i bad = _mm_or_si128(outside(high_words4(v0, v1)), outside(high_words4(v2, v3)));
    if (__builtin_expect(_mm_movemask_epi8(bad) != 0, 0)) return false;
    const __m128d p = _mm_mul_pd(v0, v1);
    const __m128d q = _mm_mul_pd(v2, v3);
    const __m128d r = _mm_div_pd(kTab.dbOne.pd(), _mm_mul_pd(p, q));
    const __m128d inv_p = _mm_mul_pd(q, r);
    const __m128d inv_q = _mm_mul_pd(p, r);
    lux::store2(dst + i, _mm_mul_pd(v1, inv_p));
    lux::store2(dst + i + 2, _mm_mul_pd(v0, inv_p));
    lux::store2(dst + i + 4, _mm_mul_pd(v3, inv_q));
    lux::store2(dst + i + 6, _mm_mul_pd(v2, inv_q));
    return true;
  }

  // _dInv_scalar: the call-out of a failing block and every tail lane.  In
  // the batch range it keeps the batch's shape, (1/x^4) * x^2 * x, so a
  // lane's error is of the same kind wherever it lands.
  void lane(int i) {
    const uint64_t bits = __builtin_bit_cast(uint64_t, src[i]);
    const uint32_t hi = uint32_t(bits >> 32), lo = uint32_t(bits);
    const __m128d x = lux::load1(src + i);
    __m128d y = _mm_div_sd(kTab.dbOne.pd(), x);
    if (in_batch_range(hi)) {
      const __m128d s = _mm_mul_sd(x, x);
      const __m128d q = _mm_mul_sd(s, s);
      y = _mm_mul_sd(_mm_mul_sd(_mm_div_sd(kTab.dbOne.pd(), q), s), x);
    }
    const bool pole = ((hi & 0x7FFFFFFF) | lo) == 0;
    lux::store1(dst + i, y);
    if (pole) call.warn(luxWarnSingularity, i);
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInv_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  InvKernel k{src, dst, call};
  lux::run_block_redo<8>(len, k);
  return call.status();
}

// Tier A50 is tier A26, bit for bit.
extern "C" __attribute__((visibility("default"), alias("luxsInv_64f_A26"))) luxStatus luxsInv_64f_A50(
    const lux64f* src, lux64f* dst, int len);
