// luxsInvSqrt_64f_A53: 1/sqrt(x) from the 12-bit seed c and a degree-5
// polynomial in e = x*c^2 - 1:  1/sqrt(x) = c*(1 + e)^(-1/2) = (p(e)*e)*c + c.
// e is formed from x = xh + xl (xh: the high word) as (xh*c^2 - 1) + xl*c^2,
// c^2 being exact, so that its error stays far below the final rounding.
// max error 0.5 ulp at x = 0x1.4fd2ddc5be591p+0
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_seed64.h"

namespace {

struct alignas(16) InvSqrtTable {
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
  lux::Row64 dbZero = lux::row64(0);
  lux::Row64 dbInf = lux::row64(0x7FF0000000000000);
  lux::Row64 dbSignMask = lux::row64(0x8000000000000000);
  lux::Row64 dbDefaultNaN = lux::row64(0xFFF8000000000000);
};
constexpr InvSqrtTable kTab{};

inline __m128d inv_root(__m128d x) {
  const __m128d c = lux::rsqrt_seed(x, kTab);
  const __m128d c2 = _mm_mul_pd(c, c);
  const __m128d xh = _mm_and_pd(x, kTab.dbHighWordMask.pd());
  const __m128d xl = _mm_sub_pd(x, xh);
  const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(xh, c2), kTab.dbOne.pd()), _mm_mul_pd(xl, c2));
  __m128d p = _mm_add_pd(_mm_mul_pd(kTab.dbE5.pd(), e), kTab.dbE4.pd());
  p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE2.pd());
  p = _mm_add_pd(_mm_mul_pd(p, e), kTab.dbE1.pd());
  return _mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, e), c), c);
}

struct InvSqrtKernel {
  const double* src;
  double* dst;
  lux::CallState<double>& call;

  bool block(int i) {
    const __m128d v0 = lux::load2(src + i), v1 = lux::load2(src + i + 2);
    const __m128d v2 = lux::load2(src + i + 4), v3 = lux::load2(src + i + 6);
    const __m128i bad =
        _mm_or_si128(lux::positive_normal_fails(v0, v1, kTab), lux::positive_normal_fails(v2, v3, kTab));
    if (__builtin_expect(_mm_movemask_epi8(bad) != 0, 0)) return false;
    lux::store2(dst + i, inv_root(v0));
    lux::store2(dst + i + 2, inv_root(v1));
    lux::store2(dst + i + 4, inv_root(v2));
    lux::store2(dst + i + 6, inv_root(v3));
    return true;
  }

  // invsqrt_scalar: the vector arithmetic on one lane for positive numbers
  // (denormals on x*2^54, the result scaled by 2^27), the poles and the
  // other special values by the table of the family.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    __m128d y;
    luxStatus code = luxOk;
    switch (lux::classify_sqrt64(__builtin_bit_cast(uint64_t, src[i]))) {
      case lux::Sqrt64Class::kNormal:
        y = inv_root(x);
        break;
      case lux::Sqrt64Class::kDenormal:
        y = _mm_mul_pd(inv_root(_mm_mul_pd(x, kTab.dbTwo54.pd())), kTab.dbTwo27.pd());
        break;
      case lux::Sqrt64Class::kZero:
        y = _mm_or_pd(kTab.dbInf.pd(), _mm_and_pd(x, kTab.dbSignMask.pd()));
        code = luxWarnSingularity;
        break;
      case lux::Sqrt64Class::kPlusInf:
        y = kTab.dbZero.pd();
        break;
      case lux::Sqrt64Class::kNaN:
        y = _mm_mul_pd(x, lux::opaque(kTab.dbOne.pd()));
        break;
      default:  // negative, -Inf
        y = kTab.dbDefaultNaN.pd();
        code = luxWarnDomain;
        break;
    }
    lux::store1(dst + i, y);
    if (code != luxOk) call.warn(code, i);
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsInvSqrt_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src, src, dst, dst);
  InvSqrtKernel k{src, dst, call};
  lux::run_block_redo<8>(len, k);
  return call.status();
}
