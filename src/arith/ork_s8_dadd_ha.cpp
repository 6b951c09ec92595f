// luxsAdd_64f_A53: a + b on binary64 lanes, one IEEE addition each in the caller's
// rounding mode: correctly rounded, 0 ulp.
//
// Short or overlapping arrays go lane by lane in ascending order; the rest
// peel to an aligned dst and run 8 lanes a pass.
#include "arith/plain_loop.h"

namespace {

struct Add {
  static __m128d lane(__m128d a, __m128d b) { return _mm_add_sd(a, b); }
  static __m128d vec(__m128d a, __m128d b) { return _mm_add_pd(a, b); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAdd_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::arith::binary_flow<double, Add>(src1, src2, dst, len);
  return luxOk;
}
