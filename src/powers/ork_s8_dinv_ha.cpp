// luxsInv_64f_A53: 1/x by the hardware division, correctly rounded.
// max error 0.5 ulp at x = 0x1.fffffffffffffp-1
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// _orkdInvHATab: 1.0 and 0.0.
struct alignas(16) InvHATable {
  lux::Row64 dbOne = lux::row64(0x3FF0000000000000);
  lux::Row64 dbZero = lux::row64(0);
  lux::Row64 dbAbsMask = lux::row64(0x7FFFFFFFFFFFFFFF);
};
constexpr InvHATable kTab{};

inline unsigned zero_lanes(__m128d x, int lanes) {
  const __m128d mag = _mm_and_pd(x, kTab.dbAbsMask.pd());
  return unsigned(_mm_movemask_pd(_mm_cmpeq_pd(mag, kTab.dbZero.pd()))) & ((1u << lanes) - 1);
}

struct InvKernel {
  const double* src;
  double* dst;
  lux::CallState<double>& call;

  // The zero test is taken from the loaded pair, before the store, so an
  // in-place call reports its poles like any other.
  unsigned block(int i) {
    const __m128d x = lux::load2(src + i);
    const unsigned poles = zero_lanes(x, 2);
    lux::store2(dst + i, _mm_div_pd(kTab.dbOne.pd(), x));
    return poles;
  }
  unsigned tail(int i) {
    const __m128d x = lux::load1(src + i);
    const unsigned pole = zero_lanes(x, 1);
    lux::store1(dst + i, _mm_div_sd(kTab.dbOne.pd(), x));
    return pole;
  }
  void offend(int i) { call.warn(luxWarnSingularity, i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInv_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  InvKernel k{src, dst, call};
  lux::run_masked<2>(len, k);
  return call.status();
}
