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

// c and e from xs, the final sum with xf (xs = xf but for denormals).
inline __m128d root(__m128d xs, __m128d xf) {
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

// +-0 lanes of two vectors, one 32-bit word a lane, as the block test needs.
inline __m128i zero_words(__m128d v0, __m128d v1) {
  return _mm_unpacklo_epi64(lux::high_words(lux::as_pd(lux::zero_lanes64(v0, kTab))),
                            lux::high_words(lux::as_pd(lux::zero_lanes64(v1, kTab))));
}

struct SqrtKernel {
  const double* src;
  double* dst;
  lux::CallState<double>& call;

  bool block(int i) {
    const __m128d v0 = lux::load2(src + i), v1 = lux::load2(src + i + 2);
    const __m128d v2 = lux::load2(src + i + 4), v3 = lux::load2(src + i + 6);
    const __m128i bad =
        _mm_or_si128(_mm_andnot_si128(zero_words(v0, v1), lux::positive_normal_fails(v0, v1, kTab)),
                     _mm_andnot_si128(zero_words(v2, v3), lux::positive_normal_fails(v2, v3, kTab)));
    if (__builtin_expect(_mm_movemask_epi8(bad) != 0, 0)) return false;
    lux::store2(dst + i, root(v0, v0));
    lux::store2(dst + i + 2, root(v1, v1));
    lux::store2(dst + i + 4, root(v2, v2));
    lux::store2(dst + i + 6, root(v3, v3));
    return true;
  }

  // sqrt_scalar: the vector arithmetic on one lane for positive numbers
  // (denormals scaled by 2^54 for the seed and the residual, the root scaled
  // back by 2^27), the special values as they are.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    __m128d y;
    bool domain = false;
    switch (lux::classify_sqrt64(__builtin_bit_cast(uint64_t, src[i]))) {
      case lux::Sqrt64Class::kNormal:
        y = root(x, x);
        break;
      case lux::Sqrt64Class::kDenormal:
        y = _mm_mul_pd(root(_mm_mul_pd(x, kTab.dbTwo54.pd()), x), kTab.dbTwo27.pd());
        break;
      case lux::Sqrt64Class::kNaN:
        y = _mm_mul_pd(x, lux::opaque(kTab.dbOne.pd()));
        break;
      case lux::Sqrt64Class::kNegative:
        y = kTab.dbDefaultNaN.pd();
        domain = true;
        break;
      default:  // +-0, +Inf
        y = x;
        break;
    }
    lux::store1(dst + i, y);
    if (domain) call.warn(luxWarnDomain, i);
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSqrt_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  SqrtKernel k{src, dst, call};
  lux::run_block_redo<8>(len, k);
  return call.status();
}
