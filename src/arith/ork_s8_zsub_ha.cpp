// luxsSub_64fc_A53: a - b on binary64 complex lanes, part by part, one IEEE subtraction per
// part in the caller's rounding mode: correctly rounded, 0 ulp.
//
// The parts are a real array of 2 * len binary64 values: peel to an aligned dst,
// 8 components a pass, the rest one by one.  No overlap test: an in-place call
// reads each pass before it stores it.
#include "arith/plain_loop.h"

namespace {

struct Sub {
  static __m128d lane(__m128d a, __m128d b) { return _mm_sub_sd(a, b); }
  static __m128d vec(__m128d a, __m128d b) { return _mm_sub_pd(a, b); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSub_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::arith::complex_flow<double, Sub>(reinterpret_cast<const double*>(src1),
                                        reinterpret_cast<const double*>(src2), reinterpret_cast<double*>(dst),
                                        len);
  return luxOk;
}
