// luxsDiv_32f_A21: a/b as a times the reciprocal estimate of b after one
// Newton step, (r * (2 - b * r)) * a.
// max error 3.26 ulp at a = -0x1.ee6728p+123, b = 0x1.f51facp-1 (native sweep; estimate-seeded tiers vary by
// processor)
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/recip_pipeline.h"
#include "powers/recip_x87.h"

namespace {

// Lane test on the divisor: w = (bits - 0x00800000) & 0x7FFFFFFF fails when,
// signed, it is above 0x7E000000; |b| from 2^-126 to 2^126 inclusive passes.
// The dividend is not tested: its specials pass through the product.
constexpr uint32_t kMinNormal = 0x00800000;
constexpr uint32_t kRangeWidth = 0x7E000000;
constexpr uint32_t kInfBits = 0x7F800000;  // magnitudes above are NaN

struct alignas(16) DivTable {
  lux::Row32 flTwo = lux::row32(0x40000000);  // 2.0
  lux::Row32 flMinNormal = lux::row32(kMinNormal);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flRangeWidth = lux::row32(kRangeWidth);
};
constexpr DivTable kTab{};

inline __m128i outside(__m128 b) {
  const __m128i w = _mm_and_si128(_mm_sub_epi32(lux::as_int(b), kTab.flMinNormal.pi()), kTab.flAbsMask.pi());
  return _mm_cmpgt_epi32(w, kTab.flRangeWidth.pi());
}

inline __m128 quotient(__m128 a, __m128 b) {
  const __m128 r = _mm_rcp_ps(b);
  const __m128 r1 = _mm_mul_ps(r, _mm_sub_ps(kTab.flTwo.ps(), _mm_mul_ps(b, r)));
  return _mm_mul_ps(r1, a);
}

struct DivKernel {
  const float* a;
  const float* b;
  float* dst;
  lux::CallState<float>& call;

  bool block(int i) {
    const __m128 a0 = lux::load4(a + i), a1 = lux::load4(a + i + 4);
    const __m128 b0 = lux::load4(b + i), b1 = lux::load4(b + i + 4);
    const __m128i bad0 = outside(b0);
    lux::store4(dst + i, quotient(a0, b0));
    const __m128i bad1 = outside(b1);
    const __m128 q1 = quotient(a1, b1);
    if (_mm_movemask_ps(lux::as_ps(_mm_or_si128(bad0, bad1))) != 0) return false;
    lux::store4(dst + i + 4, q1);
    return true;
  }

  // _orksDiv_21_scalar: the vector arithmetic on one lane strictly inside
  // [2^-126, 2^126), the x87 division elsewhere.  A zero divisor reports
  // unless a is a NaN.
  void lane(int i) {
    const uint32_t bmag = __builtin_bit_cast(uint32_t, b[i]) & 0x7FFFFFFF;
    const uint32_t amag = __builtin_bit_cast(uint32_t, a[i]) & 0x7FFFFFFF;
    if (bmag - kMinNormal < kRangeWidth) {
      const __m128 bv = lux::load1(b + i);
      const __m128 r = _mm_rcp_ss(bv);
      const __m128 r1 = _mm_mul_ss(r, _mm_sub_ss(kTab.flTwo.ps(), _mm_mul_ss(bv, r)));
      lux::store1(dst + i, _mm_mul_ss(r1, lux::load1(a + i)));
      return;
    }
    lux::x87_div_to_f32(dst + i, a + i, b + i);
    if (bmag == 0 && amag <= kInfBits) call.warn(luxWarnSingularity, i);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsDiv_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src1, src2, dst, dst);
  DivKernel k{src1, src2, dst, call};
  lux::run_pipelined_realigning<lux32f>(src1, src2, dst, len, k);
  return call.status();
}
