// luxsAcosh_32f_A24: inverse hyperbolic cosine of binary32 lanes, tier A24 (bound 1 ulp).
// max error 0.882 ulp at x = 0x1.69a678p+90 (luxvm accuracy, 800297 points)
//
// acosh x = ln(sqrt(x^2 - 1) + x); the arithmetic stands in
// hyperbolic/sinvhyp_ha.h.  A block of 8 stays on the vector path when every
// x is at least 4.0 and finite; otherwise its 8 lanes, and the tail, take the
// scalar routine: below 1 (and -Inf) the NaN 0x7FFFFFFF with a domain
// status, except a NaN with the sign set, which is copied; +Inf and the
// positive NaNs copied; from 1 up to 4.0 the double path on the table of
// cubics (1 gives +0); above, the vector path's formula on the one lane.
#include "hyperbolic/sinvhyp_ha.h"

namespace {

constexpr int32_t kOne = 0x3F800000;
constexpr int32_t kInf = 0x7F800000;
constexpr uint32_t kNegInf = 0xFF800000;
constexpr uint32_t kDomainNaN = 0x7FFFFFFF;

struct Unit {
  using Table = InvHypHaTable;

  static bool vector_range(const Table&, __m128 x0, __m128 x1) {
    return vector_lanes(as_int(x0), as_int(x1));
  }
  static __m128 quad(const Table& t, __m128 x) { return invhyp_quad<true>(t, x); }

  static void scalar(const Table& t, const float* x, float* out, lux::CallState<lux32f>& call, int i) {
    uint32_t b;
    __builtin_memcpy(&b, x, 4);
    const int32_t sb = int32_t(b);
    if (sb < kOne) {
      if (b > kNegInf) {
        __builtin_memcpy(out, &b, 4);
      } else {
        __builtin_memcpy(out, &kDomainNaN, 4);
        call.warn(luxWarnDomain, i);
      }
    } else if (sb >= kInf) {
      __builtin_memcpy(out, &b, 4);
    } else if (b <= kVectorFrom) {
      cubic_path<true>(t, x, out, 0);
    } else {
      lux::store1(out, invhyp_quad<true>(t, lux::invhyp::broadcast(x)));
    }
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcosh_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::ScalarFallbackKernel<Unit>::run(kTable, src, dst, len);
}
