// luxsErf_32f_A11: erf(x) on binary32 arrays, within 2^13 ulp.
// max error 1.92e+03 ulp at x = 0x1.788392p+1 (luxvm accuracy Erf --points=4000).
//
// In single precision, one polynomial for the whole range: erf(x) = x*p(x^2)
// with p of degree 7 in w = x^2, fitted on |x| <= 3; beyond 3 the result is
// +-1 (erfc(3) = 2.2e-5 is within the tier's 2^-11).  The test is integer:
// (|bits| + 0x007FFFFF) > 0x40BFFFFF signed holds for |x| > 3 and +-Inf, and
// wraps negative for a NaN, which leaves through p*x.
#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace {

using lux::row32;
using lux::Row32;

struct alignas(16) ErfEpTable {
  Row32 flP[8];  // p0..p7
  Row32 flAbsMask, flSignMask, flOne;
  Row32 flWrap, flThree;  // 0x007FFFFF added, then compared against 0x40BFFFFF
};

constexpr ErfEpTable kT = {
    .flP = {row32(0x3F906A96),   // 1.12825274
            row32(0xBEBFBD73),   // -0.374492258
            row32(0x3DDF6459),   // 0.109078117
            row32(0xBCBF4D5E),   // -0.0233523212
            row32(0x3B64AF55),   // 0.00348945451
            row32(0xB9B15ECB),   // -0.000338306971
            row32(0x379E229C),   // 1.8851184e-05
            row32(0xB4F3CA91)},  // -4.54096636e-07
    .flAbsMask = row32(0x7FFFFFFF),
    .flSignMask = row32(0x80000000),
    .flOne = row32(0x3F800000),
    .flWrap = row32(0x007FFFFF),
    .flThree = row32(0x40BFFFFF),
};

inline __m128 four(__m128 x) {
  const __m128 w = _mm_mul_ps(x, x);
  __m128 p = kT.flP[7].ps();
  for (int k = 6; k >= 0; --k) p = _mm_add_ps(kT.flP[k].ps(), _mm_mul_ps(w, p));
  const __m128 y = _mm_mul_ps(p, x);
  const __m128i key = _mm_add_epi32(_mm_and_si128(lux::as_int(x), kT.flAbsMask.pi()), kT.flWrap.pi());
  const __m128 big = lux::as_ps(_mm_cmpgt_epi32(key, kT.flThree.pi()));
  const __m128 unit = _mm_or_ps(kT.flOne.ps(), _mm_and_ps(x, kT.flSignMask.ps()));
  return lux::erf::select(big, unit, y);
}

struct ErfKernel {
  const float* src;
  float* dst;
  void block(int i) {
    lux::store4(dst + i, four(lux::load4(src + i)));
    lux::store4(dst + i + 4, four(lux::load4(src + i + 4)));
  }
  void tail(int i) { lux::store1(dst + i, four(lux::load1(src + i))); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsErf_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  ErfKernel k{src, dst};
  lux::run_closed<8>(len, k);
  return luxOk;
}
