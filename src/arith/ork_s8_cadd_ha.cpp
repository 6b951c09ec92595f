// luxsAdd_32fc_A24: a + b on binary32 complex lanes, part by part, one IEEE addition per
// part in the caller's rounding mode: correctly rounded, 0 ulp.
//
// The parts are a real array of 2 * len binary32 values: peel to an aligned dst,
// 8 components a pass, the rest one by one.  No overlap test: an in-place call
// reads each pass before it stores it.
#include "arith/plain_loop.h"

namespace {

struct Add {
  static __m128 lane(__m128 a, __m128 b) { return _mm_add_ss(a, b); }
  static __m128 vec(__m128 a, __m128 b) { return _mm_add_ps(a, b); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAdd_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::arith::complex_flow<float, Add>(reinterpret_cast<const float*>(src1),
                                       reinterpret_cast<const float*>(src2), reinterpret_cast<float*>(dst),
                                       len);
  return luxOk;
}
