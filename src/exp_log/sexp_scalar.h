// The lane routine of the binary32 Exp kernels at A24 and A21: every lane of
// a block that left the main path, and every tail lane, goes through it.  The
// two tiers differ only in the main formula (and its split product at
// k = 128), which the unit passes in; the order of the tests, the products
// that raise the flags and the wide path for denormal results are the same.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::sexp {

// Encodings at which the lane routine changes case.
inline constexpr uint32_t kAbsMask = 0x7FFFFFFF;
inline constexpr uint32_t kInfBits = 0x7F800000;
// |x| < 87.3365478515625: e^x normal and finite, N of the main path fits.
inline constexpr uint32_t kMainPathBound = 0x42AEAC50;
// x >= 88.72283935546875: the first float whose e^x rounds to +Inf.
inline constexpr uint32_t kOverflowBound = 0x42B17218;
// x <= -103.27893829345703: one float beyond ln 2^-149; zero from here on.
inline constexpr uint32_t kUnderflowToZero = 0xC2CE8ED1;

inline uint32_t lane_bits(__m128 v) { return uint32_t(_mm_cvtsi128_si32(as_int(v))); }

// e^x into the denormal range, -103.27893829345703 < x <= -87.3365478515625:
// x·log2 e = N + f in doubles, 2^f by a degree 6 polynomial run as two
// chains (odd and even powers of s = f²), and the one rounding into the
// denormal range is the final conversion to float.  The double is within
// about 2e-9 relative, so the float is within 0.514 ulp (measured over every
// float of the strip).  The unit's table supplies dbLog2e, dbShifter, dbBias
// and dbP0..dbP6.
template <class Tab>
inline __m128 wide_denormal(__m128 x, const Tab& T) {
  const __m128d xd = _mm_cvtss_sd(_mm_setzero_pd(), x);
  const __m128d y = _mm_mul_sd(xd, T.dbLog2e.pd());
  const __m128d t = _mm_add_sd(T.dbShifter.pd(), y);
  const __m128d f = _mm_add_sd(_mm_sub_sd(T.dbShifter.pd(), t), y);
  const __m128d s = _mm_mul_sd(f, f);
  // 2^N: N sits in t's low word; the bias makes it an exponent field.
  const __m128d two_n = as_pd(_mm_slli_epi64(_mm_add_epi32(as_int(t), T.dbBias.pi()), 52));
  __m128d a = _mm_add_sd(_mm_mul_sd(T.dbP5.pd(), s), T.dbP3.pd());
  a = _mm_add_sd(_mm_mul_sd(a, s), T.dbP1.pd());
  a = _mm_add_sd(_mm_mul_sd(a, f), T.dbP0.pd());
  __m128d b = _mm_add_sd(_mm_mul_sd(T.dbP6.pd(), s), T.dbP4.pd());
  b = _mm_add_sd(_mm_mul_sd(b, s), T.dbP2.pd());
  b = _mm_mul_sd(b, s);
  return _mm_cvtsd_ss(_mm_setzero_ps(), _mm_mul_sd(_mm_add_sd(b, a), two_n));
}

// One lane, i: reads src[i], stores dst[i], then latches and reports a
// warning.  main_formula(x) is the unit's main path on lane 0, with the split
// product for k = 128.  The unit's table supplies flTwo127 and flTwoM126.
template <class Tab, class Main>
inline void scalar_exp(const float* src, float* dst, int i, CallState<lux32f>& call, const Tab& T,
                       Main main_formula) {
  const __m128 x = load1(src + i);
  const uint32_t bits = lane_bits(x);
  const uint32_t abs = bits & kAbsMask;
  if (abs > kInfBits) {  // NaN: quieted, sign and payload kept
    store1(dst + i, _mm_add_ss(x, x));
    return;
  }
  if (abs == kInfBits) {  // +Inf stays, -Inf gives +0
    store1(dst + i, (bits >> 31) ? _mm_setzero_ps() : x);
    return;
  }
  if (abs < kMainPathBound) {
    store1(dst + i, main_formula(x));
    return;
  }
  if ((bits >> 31) == 0) {
    if (bits >= kOverflowBound) {  // +Inf, and the product raises overflow itself
      store1(dst + i, _mm_mul_ss(opaque(T.flTwo127.ps()), opaque(T.flTwo127.ps())));
      call.warn(luxWarnOverflow, i);
      return;
    }
    store1(dst + i, main_formula(x));
    return;
  }
  if (bits >= kUnderflowToZero) {  // +0, and the product raises underflow itself
    store1(dst + i, _mm_mul_ss(opaque(T.flTwoM126.ps()), opaque(T.flTwoM126.ps())));
    call.warn(luxWarnUnderflow, i);
    return;
  }
  store1(dst + i, wide_denormal(x, T));
  call.warn(luxWarnUnderflow, i);
}

}  // namespace lux::sexp
