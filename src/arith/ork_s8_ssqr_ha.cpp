// luxsSqr_32f_A24: x * x on binary32 lanes, one IEEE multiplication each in the
// caller's rounding mode: correctly rounded, 0 ulp.
//
// Short or overlapping arrays go lane by lane in ascending order; the rest
// peel to an aligned src and run 8 lanes a pass.
#include "arith/plain_loop.h"

namespace {

struct Sqr {
  static __m128 lane(__m128 x) { return _mm_mul_ss(x, x); }
  static __m128 vec(__m128 x) { return _mm_mul_ps(x, x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqr_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::arith::unary_flow<float, Sqr>(src, dst, len);
  return luxOk;
}
