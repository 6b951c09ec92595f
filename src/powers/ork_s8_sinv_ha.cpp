// luxsInv_32f_A24: 1/x by the hardware division, correctly rounded.
// max error 0.5 ulp at x = 0x1.fffffep-1
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

struct alignas(16) InvHATable {
  lux::Row32 flOne = lux::row32(0x3F800000);
  lux::Row32 flAbsMask = lux::row32(0x7FFFFFFF);
  lux::Row32 flZero = lux::row32(0);
};
constexpr InvHATable kTab{};

// Lanes whose magnitude compares equal to 0.0: the poles.
inline unsigned zero_lanes(__m128 x, int lanes) {
  const __m128 mag = _mm_and_ps(x, kTab.flAbsMask.ps());
  return unsigned(_mm_movemask_ps(_mm_cmpeq_ps(mag, kTab.flZero.ps()))) & ((1u << lanes) - 1);
}

struct InvKernel {
  const float* src;
  float* dst;
  lux::CallState<float>& call;

  unsigned block(int i) {
    const __m128 x = lux::load4(src + i);
    const unsigned poles = zero_lanes(x, 4);
    lux::store4(dst + i, _mm_div_ps(kTab.flOne.ps(), x));
    return poles;
  }
  unsigned tail(int i) {
    const __m128 x = lux::load1(src + i);
    const unsigned pole = zero_lanes(x, 1);
    lux::store1(dst + i, _mm_div_ss(kTab.flOne.ps(), x));
    return pole;
  }
  // _orksInv_HA_special
  void offend(int i) { call.warn(luxWarnSingularity, i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInv_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  InvKernel k{src, dst, call};
  lux::run_masked<4>(len, k);
  return call.status();
}
