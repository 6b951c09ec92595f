// luxsMul_32f_A24: a * b on binary32 lanes, one IEEE multiplication each in the caller's
// rounding mode: correctly rounded, 0 ulp.
//
// Short or overlapping arrays go lane by lane in ascending order; the rest
// peel to an aligned dst and run 8 lanes a pass.
#include "arith/plain_loop.h"

namespace {

struct Mul {
  static __m128 lane(__m128 a, __m128 b) { return _mm_mul_ss(a, b); }
  static __m128 vec(__m128 a, __m128 b) { return _mm_mul_ps(a, b); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsMul_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::arith::binary_flow<float, Mul>(src1, src2, dst, len);
  return luxOk;
}
