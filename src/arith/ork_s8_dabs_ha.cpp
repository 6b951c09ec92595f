// luxsAbs_64f_A53: |x| on binary64 lanes, exact (0 ulp), computed as the product
// x * (+-1.0 with the sign of x).
//
// A product, not a mask: it goes through the rounding unit, so a signalling
// NaN comes out quiet with the invalid flag, a NaN keeps its sign, and a
// caller's flush-to-zero turns a subnormal into +0.  -0 * -1.0 is +0, so every
// other result has a clear sign bit.
#include "arith/plain_loop.h"
#include "frame/lanes.h"

namespace {

constexpr int kBlock = 4;  // two vectors a pass

struct alignas(16) Table {
  lux::Row64 dbOne;      // 1.0
  lux::Row64 dbAbsMask;  // the sign bit
};
constexpr Table kTab = {
    .dbOne = lux::row64(0x3FF0000000000000),
    .dbAbsMask = lux::row64(0x8000000000000000),
};

struct Abs {
  static __m128d vec(__m128d x) {
    // The factor is hidden from the optimiser: it must not see that
    // x * (+-1.0) could be a sign-bit operation.
    const __m128d s = lux::opaque(_mm_or_pd(_mm_and_pd(x, kTab.dbAbsMask.pd()), kTab.dbOne.pd()));
    return _mm_mul_pd(x, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAbs_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::arith::blocked_with_rest<lux64f, double, kBlock, Abs>(src, dst, len);
  return luxOk;
}
