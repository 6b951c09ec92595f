// luxsAbs_32f_A24: |x| on binary32 lanes, exact (0 ulp), computed as the product
// x * (+-1.0 with the sign of x).
//
// A product, not a mask: it goes through the rounding unit, so a signalling
// NaN comes out quiet with the invalid flag, a NaN keeps its sign, and a
// caller's flush-to-zero turns a subnormal into +0.  -0 * -1.0 is +0, so every
// other result has a clear sign bit.
#include "arith/plain_loop.h"
#include "frame/lanes.h"

namespace {

constexpr int kBlock = 8;  // two vectors a pass

struct alignas(16) Table {
  lux::Row32 flOne;      // 1.0
  lux::Row32 flAbsMask;  // the sign bit
};
constexpr Table kTab = {
    .flOne = lux::row32(0x3F800000),
    .flAbsMask = lux::row32(0x80000000),
};

struct Abs {
  static __m128 vec(__m128 x) {
    // The factor is hidden from the optimiser: it must not see that
    // x * (+-1.0) could be a sign-bit operation.
    const __m128 s = lux::opaque(_mm_or_ps(_mm_and_ps(x, kTab.flAbsMask.ps()), kTab.flOne.ps()));
    return _mm_mul_ps(x, s);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAbs_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::arith::blocked_with_rest<lux32f, float, kBlock, Abs>(src, dst, len);
  return luxOk;
}
