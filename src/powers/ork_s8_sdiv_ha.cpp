// luxsDiv_32f_A24: a/b by the hardware division, correctly rounded.
// max error 0.5 ulp at a = -0x1.354754p+100, b = -0x1.f5a56p+123
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

constexpr uint32_t kInfBits = 0x7F800000;  // dividend magnitudes above are NaN

struct alignas(16) DivHATable {
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flZero = lux::row32(0);
  lux::Row32 flAboveInf = lux::row32(kInfBits + 1);
};
constexpr DivHATable kTab{};

// Lanes with a zero divisor and a dividend that is not a NaN (an infinite
// dividend reports too).
inline unsigned pole_lanes(__m128 a, __m128 b, int lanes) {
  const __m128 bmag = _mm_and_ps(b, kTab.flAbsMask.ps());
  const __m128i amag = _mm_and_si128(lux::as_int(a), kTab.flAbsMask.pi());
  const __m128i not_nan = _mm_cmpgt_epi32(kTab.flAboveInf.pi(), amag);
  const __m128 m = _mm_and_ps(_mm_cmpeq_ps(bmag, kTab.flZero.ps()), lux::as_ps(not_nan));
  return unsigned(_mm_movemask_ps(m)) & ((1u << lanes) - 1);
}

struct DivKernel {
  const float* a;
  const float* b;
  float* dst;
  lux::CallState<float>& call;

  unsigned block(int i) {
    const __m128 av = lux::load4(a + i), bv = lux::load4(b + i);
    const unsigned poles = pole_lanes(av, bv, 4);
    lux::store4(dst + i, _mm_div_ps(av, bv));
    return poles;
  }
  unsigned tail(int i) {
    const __m128 av = lux::load1(a + i), bv = lux::load1(b + i);
    const unsigned pole = pole_lanes(av, bv, 1);
    lux::store1(dst + i, _mm_div_ss(av, bv));
    return pole;
  }
  // _orksDiv_HA_special
  void offend(int i) { call.warn(luxWarnSingularity, i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsDiv_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src1, src2, dst, dst);
  DivKernel k{src1, src2, dst, call};
  lux::run_masked<4>(len, k);
  return call.status();
}
