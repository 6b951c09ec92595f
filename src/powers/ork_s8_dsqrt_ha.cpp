// luxsSqrt_64f_A53: sqrt(x) from the 12-bit seed c ~ 1/sqrt(x) and a
// degree-5 polynomial in e = x*c^2 - 1:  sqrt(x) = x*c*(1 + e)^(-1/2).
// x is split as xh + xl (xh: the high word, 21 bits), so that xh*c is exact
// and e carries the low part too; the root is summed small terms first,
//   ((p*e)*c*x + xl*c) + xh*c,
// and the only rounding of size is the last addition.
// +-0 stays on the vector path: c is forced to 0 and x's sign is ORed into
// xl, so the sum is a zero of x's sign.
// max error 0.75 ulp at x = 0x0.00002e7c8a3ffp-1022
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_seed64.h"

namespace {

struct alignas(16) SqrtTable {
  LUX_SQRT_SEED64_ROWS
  LUX_SQRT_TEST64_ROWS
  lux::Row64 dbOne = lux::row64(0x3FF0000000000000);
  // Taylor coefficients of (1 + e)^(-1/2) - 1 over e, innermost first.
  lux::Row64 dbE5 = lux::row64(0xBFCF800000000000);     // -63/256
  lux::Row64 dbE4 = lux::row64(0x3FD1800000000000);     // 35/128
  lux::Row64 dbE3 = lux::row64(0xBFD4000000000000);     // -5/16
  lux::Row64 dbE2 = lux::row64(0x3FD8000000000000);     // 3/8
  lux::Row64 dbE1 = lux::row64(0xBFE0000000000000);     // -1/2
  lux::Row64 dbTwo54 = lux::row64(0x4350000000000000);  // denormal scale 2^54
  lux::Row64 dbTwo27 = lux::row64(0x41A0000000000000);  // and back, 2^27
  lux::Row64 dbHighWordMask = lux::row64(0xFFFFFFFF00000000);
  lux::Row64 dbSignMask = lux::row64(0x8000000000000000);
  lux::Row64 dbDefaultNaN = lux::row64(0xFFF8000000000000);
};
constexpr SqrtTable kTab{};

struct Sqrt {
  static constexpr const SqrtTable& tab = kTab;
  static constexpr bool kInverse = false;
  static constexpr bool kZeroOnVectorPath = true;
  // c and e from xs, the final sum with xf (xs = xf but for denormals).
  static __m128d root(__m128d xs, __m128d xf) {
    const __m128d c = _mm_andnot_pd(lux::as_pd(lux::zero_lanes64(xs, kTab)), lux::rsqrt_seed(xs, kTab));
    const __m128d c2 = _mm_mul_pd(c, c);
    const __m128d xsh = _mm_and_pd(xs, kTab.dbHighWordMask.pd());
    const __m128d xsl = _mm_sub_pd(xs, xsh);
    const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(xsh, c2), kTab.dbOne.pd()), _mm_mul_pd(xsl, c2));
    __m128d p = _mm_add_pd(_mm_mul_pd(kTab.dbE5.pd(), e), kTab.dbE4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE1.pd());
    const __m128d xh = _mm_and_pd(xf, kTab.dbHighWordMask.pd());
    const __m128d xl = _mm_or_pd(_mm_sub_pd(xf, xh), _mm_and_pd(xf, kTab.dbSignMask.pd()));
    const __m128d small = _mm_add_pd(_mm_mul_pd(_mm_mul_pd(_mm_mul_pd(p, e), c), xf), _mm_mul_pd(xl, c));
    return _mm_add_pd(small, _mm_mul_pd(xh, c));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqrt_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::run_seed64<Sqrt>(src, dst, len);
}
