// luxsErfc_32f_A11: erfc(x) on binary32 arrays, within 2^13 ulp.
// max error 4.28e+03 ulp at x = 0x1.877e0ep+1 (luxvm accuracy Erfc --points=4000).
//
// In single precision, one polynomial for the whole range:
// erfc(|x|) = exp(-x^2) * P(|x| - 5), P of degree 13 fitted to
// G(y) = exp(y^2) erfc(y) on [0, 10.054], evaluated as even and odd chains
// in u^2 side by side; exp(-w), w = x^2, is 2^-N * e^r with
// N = RN(w/ln 2), r = N ln 2 - w and e^r to degree 4.  2^-N is built as
// (147 - N) in the exponent field times 2^-20, which reaches the subnormals.
// erfc(-|x|) = 2 - erfc(|x|).  |x| > 10.054195 drops the product (the
// lane is computed as x = 0 meanwhile); a NaN gives itself, +-0 gives 1
// exactly (the polynomial alone gives 0.99979 there).
#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace {

using lux::row32;
using lux::Row32;

constexpr uint32_t kZeroAbove = 0x4120DDFC;      // |x| > 10.054195404052734
constexpr uint32_t kUnderflowFrom = 0x41131CE0;  // x >= 9.194549560546875
constexpr uint32_t kPlusInf = 0x7F800000;

struct alignas(16) ErfcEpTable {
  Row32 flAbsMask, flSignMask, flFive, flTwo, flOne, flHalf;
  Row32 flLog2e, flNegShifter, flLn2, flC3, flC4;
  Row32 flExpBase, flTwoM20;
  Row32 flE[7], flO[7];
};

constexpr ErfcEpTable kT = {
    .flAbsMask = row32(0x7FFFFFFF),
    .flSignMask = row32(0x80000000),
    .flFive = row32(0x40A00000),
    .flTwo = row32(0x40000000),
    .flOne = row32(0x3F800000),
    .flHalf = row32(0x3F000000),
    .flLog2e = row32(0x3FB8AA3B),       // 1.44269502
    .flNegShifter = row32(0xCB400000),  // -1.5*2^23
    .flLn2 = row32(0x3F317218),         // 0.693147182
    .flC3 = row32(0x3E2AAAAB),          // 1/6
    .flC4 = row32(0x3D2AAAAB),          // 1/24
    .flExpBase = row32(0x00000093),     // 147 = 127 + 20
    .flTwoM20 = row32(0x35800000),      // 2^-20
    .flE = {row32(0x3DE2C41A), row32(0x3B8181D0), row32(0x394E6D00), row32(0xB7219E7B), row32(0x35DEFF32),
            row32(0xB39F2C66), row32(0x30ECDC6F)},
    .flO = {row32(0xBCAE943C), row32(0xBA49E7ED), row32(0xB7C310BD), row32(0xB4556AA3), row32(0xB41BDC61),
            row32(0x32012C1D), row32(0xAF6E2A65)},
};

inline __m128 four(__m128 x_in) {
  const __m128i bits = lux::as_int(x_in);
  const __m128i abs = _mm_and_si128(bits, kT.flAbsMask.pi());
  const __m128 far = lux::as_ps(_mm_cmpgt_epi32(abs, _mm_set1_epi32(int32_t(kZeroAbove))));
  const __m128 x = _mm_andnot_ps(far, x_in);
  const __m128 w = _mm_mul_ps(x, x);
  const __m128 u = _mm_sub_ps(_mm_and_ps(x, kT.flAbsMask.ps()), kT.flFive.ps());
  const __m128 u2 = _mm_mul_ps(u, u);
  const __m128 base = _mm_and_ps(lux::as_ps(_mm_srai_epi32(bits, 31)), kT.flTwo.ps());
  const __m128 v = _mm_sub_ps(_mm_mul_ps(w, kT.flLog2e.ps()), kT.flNegShifter.ps());
  const __m128 Nf = _mm_add_ps(v, kT.flNegShifter.ps());
  const __m128i pow_bits = _mm_slli_epi32(_mm_sub_epi32(kT.flExpBase.pi(), lux::as_int(v)), 23);
  const __m128 scale =
      _mm_or_ps(_mm_mul_ps(lux::as_ps(pow_bits), kT.flTwoM20.ps()), _mm_and_ps(x_in, kT.flSignMask.ps()));
  const __m128 r = _mm_sub_ps(_mm_mul_ps(Nf, kT.flLn2.ps()), w);
  __m128 e = _mm_add_ps(kT.flC3.ps(), _mm_mul_ps(r, kT.flC4.ps()));
  e = _mm_add_ps(kT.flHalf.ps(), _mm_mul_ps(r, e));
  e = _mm_add_ps(kT.flOne.ps(), _mm_mul_ps(r, e));
  e = _mm_add_ps(kT.flOne.ps(), _mm_mul_ps(r, e));
  const __m128 E = _mm_mul_ps(e, scale);
  __m128 pe = kT.flE[6].ps(), po = kT.flO[6].ps();
  for (int k = 5; k >= 0; --k) {
    pe = _mm_add_ps(kT.flE[k].ps(), _mm_mul_ps(u2, pe));
    po = _mm_add_ps(kT.flO[k].ps(), _mm_mul_ps(u2, po));
  }
  const __m128 P = _mm_add_ps(pe, _mm_mul_ps(u, po));
  const __m128 product = _mm_andnot_ps(far, _mm_mul_ps(P, E));
  __m128 y = _mm_add_ps(base, product);
  // The single polynomial is 2.1e-4 low at the origin; erfc(+-0) is 1.
  const __m128 zero = lux::as_ps(_mm_cmpeq_epi32(abs, _mm_setzero_si128()));
  y = lux::erf::select(zero, kT.flOne.ps(), y);
  return lux::erf::select(_mm_cmpunord_ps(x_in, x_in), x_in, y);
}

inline unsigned underflow_mask(__m128 x) {
  const __m128i b = lux::as_int(x);
  // Positive patterns only: a signed compare keeps negatives out.
  const __m128i ge = _mm_cmpgt_epi32(b, _mm_set1_epi32(int32_t(kUnderflowFrom - 1)));
  const __m128i lt = _mm_cmplt_epi32(b, _mm_set1_epi32(int32_t(kPlusInf)));
  return unsigned(_mm_movemask_ps(lux::as_ps(_mm_and_si128(ge, lt))));
}

struct ErfcKernel {
  const float* src;
  float* dst;
  lux::CallState<lux32f>& call;
  unsigned block(int i) {
    const __m128 a = lux::load4(src + i), b = lux::load4(src + i + 4);
    const unsigned mask = underflow_mask(a) | underflow_mask(b) << 4;
    lux::store4(dst + i, four(a));
    lux::store4(dst + i + 4, four(b));
    return mask;
  }
  unsigned tail(int i) {
    const __m128 x = lux::load1(src + i);
    const unsigned mask = underflow_mask(x) & 1;
    lux::store1(dst + i, four(x));
    return mask;
  }
  void offend(int i) { call.warn(luxWarnUnderflow, i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsErfc_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  ErfcKernel k{src, dst, call};
  lux::run_masked<8>(len, k);
  return call.status();
}
