// luxsInv_32f_A11: 1/x from the 12-bit reciprocal estimate, unrefined.
// max error 4.74e+03 ulp at x = 0x1.0d2fe6p-81 (native sweep; estimate-seeded tiers vary by processor)
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/recip_pipeline.h"
#include "powers/recip_x87.h"

namespace {

// Lane test: w = (bits - 0x00800000) & 0x7FFFFFFF fails when, signed, it is
// above 0x7E000000; so magnitudes 2^-126 to 2^126 inclusive pass, and zero,
// denormals, infinities and NaNs fail.  The estimate of 1/x stays normal.
constexpr uint32_t kMinNormal = 0x00800000;
constexpr uint32_t kRangeWidth = 0x7E000000;

struct alignas(16) InvTable {
  lux::Row32 flMinNormal = lux::row32(kMinNormal);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flRangeWidth = lux::row32(kRangeWidth);
};
constexpr InvTable kTab{};

inline __m128i outside(__m128 x) {
  const __m128i w = _mm_and_si128(_mm_sub_epi32(lux::as_int(x), kTab.flMinNormal.pi()), kTab.flAbsMask.pi());
  return _mm_cmpgt_epi32(w, kTab.flRangeWidth.pi());
}

struct InvKernel {
  const float* src;
  float* dst;
  lux::CallState<float>& call;

  bool block(int i) {
    const __m128 x0 = lux::load4(src + i);
    const __m128 x1 = lux::load4(src + i + 4);
    const __m128i bad0 = outside(x0);
    lux::store4(dst + i, _mm_rcp_ps(x0));
    const __m128i bad1 = outside(x1);
    const __m128 r1 = _mm_rcp_ps(x1);
    if (_mm_movemask_ps(lux::as_ps(_mm_or_si128(bad0, bad1))) != 0) return false;
    lux::store4(dst + i + 4, r1);
    return true;
  }

  // _orksInv_11_scalar: the estimate strictly inside [2^-126, 2^126), the
  // x87 division elsewhere (so 2^126 itself is divided here).
  void lane(int i) {
    const uint32_t bits = __builtin_bit_cast(uint32_t, src[i]);
    const uint32_t mag = bits & 0x7FFFFFFF;
    if (mag - kMinNormal < kRangeWidth) {
      lux::store1(dst + i, _mm_rcp_ss(lux::load1(src + i)));
      return;
    }
    lux::x87_inv_to_f32(dst + i, src + i);
    if (mag == 0) call.warn(luxWarnSingularity, i);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInv_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  InvKernel k{src, dst, call};
  lux::run_pipelined_realigning<lux32f>(src, nullptr, dst, len, k);
  return call.status();
}
