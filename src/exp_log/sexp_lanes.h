// Mechanics shared by the binary32 Exp kernels at A24 and A21: the argument
// reduction, the block of 8 with its range test, the lane routine that every
// lane of a failed block and every tail lane goes through, and the export
// body.  The two tiers differ only in what their table word holds and the
// formula that turns it and r into the result (with its split product at
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

// x = N·ln2/128 + r, N = nearest integer to x·128/ln2, on four lanes: r, the
// table index j = N & 127 and the exponent field of 2^k, k = N >> 7.  The unit's
// table supplies flR, flShifter, flL1, flL2, flLowSeven and flBias.
struct Reduced4 {
  __m128 r;
  __m128i j, e;
};

template <class Tab>
inline Reduced4 reduce4(__m128 x, const Tab& T) {
  const __m128 t = _mm_add_ps(_mm_mul_ps(x, T.flR.ps()), T.flShifter.ps());
  const __m128 nf = _mm_sub_ps(t, T.flShifter.ps());
  const __m128 r = _mm_sub_ps(_mm_sub_ps(x, _mm_mul_ps(nf, T.flL1.ps())), _mm_mul_ps(nf, T.flL2.ps()));
  // bits(t) = bits(S) + N, and bits(S) has its low 20 bits clear.
  const __m128i tb = as_int(t);
  const __m128i j = _mm_and_si128(tb, T.flLowSeven.pi());
  const __m128i e = _mm_slli_epi32(_mm_add_epi32(_mm_srli_epi32(tb, 7), T.flBias.pi()), 23);
  return {r, j, e};
}

// The same reduction on lane 0 in scalar operations: r, j and the exponent
// field of 2^k as an integer (all ones for k = 128, which the unit splits).
struct Reduced1 {
  __m128 r;
  uint32_t j, e;
};

template <class Tab>
inline Reduced1 reduce1(__m128 x, const Tab& T) {
  const __m128 t = _mm_add_ss(_mm_mul_ss(x, T.flR.ps()), T.flShifter.ps());
  const __m128 nf = _mm_sub_ss(t, T.flShifter.ps());
  const __m128 r = _mm_sub_ss(_mm_sub_ss(x, _mm_mul_ss(nf, T.flL1.ps())), _mm_mul_ss(nf, T.flL2.ps()));
  const uint32_t tb = lane_bits(t);
  return {r, tb & 0x7F, ((tb >> 7) + 0x7F) << 23};
}

// The kernel of a binary32 Exp tier.  `Tier` gives
//   Table                             its constant table
//   __m128 quad(x, T)                 the main path on four lanes
//   __m128 single(x, T)               the main path on lane 0, with the split
//                                     product for k = 128
// Blocks of 8 stay on the vector path when every |x| is below the main-path
// bound; a block with any other lane, and the tail, go lane by lane through
// scalar_exp.
template <class Tier>
struct Kernel {
  const float* src;
  float* dst;
  CallState<lux32f>& call;
  const typename Tier::Table& T;

  bool block(int i) {
    const __m128 x0 = load4(src + i);
    const __m128 x1 = load4(src + i + 4);
    if (!(all_below(as_int(x0), kMainPathBound, 4) & all_below(as_int(x1), kMainPathBound, 4))) return false;
    const __m128 y0 = Tier::quad(x0, T);
    const __m128 y1 = Tier::quad(x1, T);
    store4(dst + i, y0);
    store4(dst + i + 4, y1);
    return true;
  }
  void lane(int i) {
    scalar_exp(src, dst, i, call, T, [this](__m128 x) { return Tier::single(x, T); });
  }
  void tail(int i) { lane(i); }

  static luxStatus run(const typename Tier::Table& T, const lux32f* src, lux32f* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    CallState<lux32f> call(src, src, dst, dst);
    Kernel k{src, dst, call, T};
    run_block_redo<8>(len, k);
    return call.status();
  }
};

}  // namespace lux::sexp
