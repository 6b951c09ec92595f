// luxsSqr_64f_A53: x * x on binary64 lanes, one IEEE multiplication each in the
// caller's rounding mode: correctly rounded, 0 ulp.
//
// Short or overlapping arrays go lane by lane in ascending order; the rest
// peel to an aligned src and run 8 lanes a pass.
#include "arith/plain_loop.h"

namespace {

struct Sqr {
  static __m128d lane(__m128d x) { return _mm_mul_sd(x, x); }
  static __m128d vec(__m128d x) { return _mm_mul_pd(x, x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqr_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::arith::unary_flow<double, Sqr>(src, dst, len);
  return luxOk;
}
