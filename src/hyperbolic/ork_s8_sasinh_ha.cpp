// luxsAsinh_32f_A24: inverse hyperbolic sine of binary32 lanes, tier A24 (bound 1 ulp).
// max error 0.881 ulp at x = 0x1.30e47ep+76 (luxvm accuracy, 800660 points)
//
// asinh |x| = ln(sqrt(x^2 + 1) + |x|), the sign of x ORed in; the arithmetic
// stands in hyperbolic/sinvhyp_ha.h.  A block of 8 stays on the vector path
// when every |x| is at least 4.0 and finite; otherwise its 8 lanes, and the
// tail, take the scalar routine: below 2^-27 (asinh x = x to a float) and
// for infinities and NaNs x itself, bits copied; up to 4.0 the double path
// on the table of cubics; above, the vector path's formula on the one lane.
// No status.
#include "hyperbolic/sinvhyp_ha.h"

namespace {

// Scalar routine: x itself below 2^-27 (bits 0x32000000) and from Inf on;
// the double path up to and including 4.0.
constexpr uint32_t kTinyBelow = 0x32000000;
constexpr uint32_t kInf = 0x7F800000;

struct Unit {
  using Table = InvHypHaTable;

  static bool vector_range(const Table& t, __m128 x0, __m128 x1) {
    return vector_lanes(_mm_and_si128(as_int(x0), t.abs_mask.pi()),
                        _mm_and_si128(as_int(x1), t.abs_mask.pi()));
  }
  static __m128 quad(const Table& t, __m128 x) { return invhyp_quad<false>(t, x); }

  static void scalar(const Table& t, const float* x, float* out, lux::CallState<lux32f>&, int) {
    uint32_t b;
    __builtin_memcpy(&b, x, 4);
    const uint32_t ab = b & 0x7FFFFFFF;
    if (ab < kTinyBelow || ab >= kInf)
      __builtin_memcpy(out, &b, 4);
    else if (ab <= kVectorFrom)
      cubic_path<false>(t, x, out, b & 0x80000000);
    else
      lux::store1(out, invhyp_quad<false>(t, lux::invhyp::broadcast(x)));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsinh_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::ScalarFallbackKernel<Unit>::run(kTable, src, dst, len);
}
