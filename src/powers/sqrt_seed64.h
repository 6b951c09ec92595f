// The binary64 seed of the square root kernels: c ~ 1/sqrt(x) to the 12 bits
// of the binary32 reciprocal-square-root estimate, made without a division.
//
// For a positive normal x = f * 4^k with f in [1, 4):
//  1. m = bits 29..52 of x: the top 23 significand bits and the lowest
//     exponent bit;
//  2. f has the binary32 pattern (m XOR 0x00800000) + 0x3F800000, which is
//     1.s for an odd biased exponent and 2 * 1.s for an even one;
//  3. g = rsqrtps(f), in (1/2, 1];
//  4. H = (bits(g) >> 3) + 0x57F00000 - (((hi(x) - 0x00100000) & 0xFFE00000) >> 1):
//     >> 3 turns g's pattern into a binary64 high word (binary32 exponent
//     bias + 0x38000000), and the rest subtracts k with the bias 511;
//  5. c = (H : 0), so c has at most 21 significant bits and c^2 is exact.
// Each kernel brings the constants in its own table (rows named below).
//
// Below the seed: the block loop and the lane routine shared by the Sqrt and
// InvSqrt kernels, which differ only in their vector arithmetic and in what
// +-0 and +Inf give.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux {

// Tab rows: dbSeedSigMask (0x0000000000FFFFFF), dbSeedExpFlip (0x0000000000800000),
// dbSeedOne32 (0x000000003F800000), dbSeedExpOne (0x0010000000000000),
// dbSeedExpMask (0xFFE0000000000000), dbSeedBias (0x57F0000000000000).
template <class Tab>
inline __m128d rsqrt_seed(__m128d x, const Tab& t) {
  const __m128i xi = as_int(x);
  const __m128i m = _mm_and_si128(_mm_srli_epi64(xi, 29), t.dbSeedSigMask.pi());
  const __m128i f = _mm_add_epi32(_mm_xor_si128(m, t.dbSeedExpFlip.pi()), t.dbSeedOne32.pi());
  // Odd binary32 positions hold 0 and estimate to +Inf: no flag, unused.
  const __m128i g = as_int(_mm_rsqrt_ps(as_ps(f)));
  const __m128i gh = _mm_slli_epi64(_mm_srli_epi32(g, 3), 32);
  const __m128i k2 = _mm_and_si128(_mm_sub_epi32(xi, t.dbSeedExpOne.pi()), t.dbSeedExpMask.pi());
  return as_pd(_mm_sub_epi32(_mm_add_epi32(gh, t.dbSeedBias.pi()), _mm_srli_epi32(k2, 1)));
}

#define LUX_SQRT_SEED64_ROWS                                 \
  lux::Row64 dbSeedSigMask = lux::row64(0x0000000000FFFFFF); \
  lux::Row64 dbSeedExpFlip = lux::row64(0x0000000000800000); \
  lux::Row64 dbSeedOne32 = lux::row64(0x000000003F800000);   \
  lux::Row64 dbSeedExpOne = lux::row64(0x0010000000000000);  \
  lux::Row64 dbSeedExpMask = lux::row64(0xFFE0000000000000); \
  lux::Row64 dbSeedBias = lux::row64(0x57F0000000000000);

// Lane classes of the binary64 lane routines, from the bit pattern.
enum class Sqrt64Class { kNormal, kDenormal, kZero, kPlusInf, kNaN, kNegative };

inline Sqrt64Class classify_sqrt64(uint64_t bits) {
  const uint32_t hi = uint32_t(bits >> 32), lo = uint32_t(bits);
  const uint32_t mag_hi = hi & 0x7FFFFFFF;
  if (mag_hi > 0x7FF00000 || (mag_hi == 0x7FF00000 && lo != 0)) return Sqrt64Class::kNaN;
  if ((mag_hi | lo) == 0) return Sqrt64Class::kZero;
  if (hi & 0x80000000u) return Sqrt64Class::kNegative;
  if (hi == 0x7FF00000) return Sqrt64Class::kPlusInf;
  if (hi < 0x00100000) return Sqrt64Class::kDenormal;
  return Sqrt64Class::kNormal;
}

// Block test of four binary64 lanes (two vectors): every lane a positive
// normal, w = hi - 0x80100000 signed at most 0xFFDFFFFF; `zero_ok` lets
// +-0 pass as well.  Returns true when the block may stay on the vector path.
template <class Tab>
inline __m128i positive_normal_fails(__m128d v0, __m128d v1, const Tab& t) {
  const __m128i hi = _mm_unpacklo_epi64(high_words(v0), high_words(v1));
  return _mm_cmpgt_epi32(_mm_sub_epi32(hi, t.flNormalBase.pi()), t.flNormalLimit.pi());
}
// Lanes (binary64, all-ones pairs) that are +-0.
template <class Tab>
inline __m128i zero_lanes64(__m128d v, const Tab& t) {
  const __m128i z = _mm_cmpeq_epi32(_mm_and_si128(as_int(v), t.dbAbsMask.pi()), _mm_setzero_si128());
  return _mm_and_si128(z, _mm_shuffle_epi32(z, _MM_SHUFFLE(2, 3, 0, 1)));
}

#define LUX_SQRT_TEST64_ROWS                          \
  lux::Row32 flNormalBase = lux::row32(0x80100000u);  \
  lux::Row32 flNormalLimit = lux::row32(0xFFDFFFFFu); \
  lux::Row64 dbAbsMask = lux::row64(0x7FFFFFFFFFFFFFFF);

// +-0 lanes of two vectors, one 32-bit word a lane, as the block test needs.
template <class Tab>
inline __m128i zero_words(__m128d v0, __m128d v1, const Tab& t) {
  return _mm_unpacklo_epi64(high_words(as_pd(zero_lanes64(v0, t))), high_words(as_pd(zero_lanes64(v1, t))));
}

// The block-redo kernel, 8 lanes a block.  U is the unit:
//   U::tab             its table: the seed and test rows above, dbOne,
//                      dbTwo54 and dbTwo27 (the denormal scale and back),
//                      dbDefaultNaN; for InvSqrt also dbZero, dbInf, dbSignMask;
//   U::kInverse        1/sqrt(x): +-0 is a pole (the infinity of its sign,
//                      status 18) and +Inf gives +0; else sqrt(x), where both
//                      come out as they went in;
//   U::kZeroOnVectorPath  +-0 passes the block test (its arithmetic gives it);
//   U::root(xs, xf)    the vector arithmetic: seed and residual from xs, the
//                      result for xf (xs = xf but for a denormal, where
//                      xs = xf*2^54 and the result is scaled by 2^27 after).
template <class U>
struct Seed64Kernel {
  const double* src;
  double* dst;
  CallState<double>& call;

  bool block(int i) {
    const __m128d v0 = load2(src + i), v1 = load2(src + i + 2);
    const __m128d v2 = load2(src + i + 4), v3 = load2(src + i + 6);
    __m128i bad01 = positive_normal_fails(v0, v1, U::tab), bad23 = positive_normal_fails(v2, v3, U::tab);
    if constexpr (U::kZeroOnVectorPath) {
      bad01 = _mm_andnot_si128(zero_words(v0, v1, U::tab), bad01);
      bad23 = _mm_andnot_si128(zero_words(v2, v3, U::tab), bad23);
    }
    if (__builtin_expect(_mm_movemask_epi8(_mm_or_si128(bad01, bad23)) != 0, 0)) return false;
    store2(dst + i, U::root(v0, v0));
    store2(dst + i + 2, U::root(v1, v1));
    store2(dst + i + 4, U::root(v2, v2));
    store2(dst + i + 6, U::root(v3, v3));
    return true;
  }

  // sqrt_scalar and invsqrt_scalar, also the tail: the vector arithmetic on
  // one lane for positive numbers (denormals scaled by 2^54 for the seed and
  // the residual, the result scaled by 2^27), the special values by the
  // family's table.
  void lane(int i) {
    const __m128d x = _mm_loaddup_pd(src + i);
    __m128d y;
    luxStatus code = luxOk;
    switch (classify_sqrt64(__builtin_bit_cast(uint64_t, src[i]))) {
      case Sqrt64Class::kNormal:
        y = U::root(x, x);
        break;
      case Sqrt64Class::kDenormal:
        y = _mm_mul_pd(U::root(_mm_mul_pd(x, U::tab.dbTwo54.pd()), x), U::tab.dbTwo27.pd());
        break;
      case Sqrt64Class::kZero:
        if constexpr (U::kInverse) {
          y = _mm_or_pd(U::tab.dbInf.pd(), _mm_and_pd(x, U::tab.dbSignMask.pd()));
          code = luxWarnSingularity;
        } else {
          y = x;
        }
        break;
      case Sqrt64Class::kPlusInf:
        if constexpr (U::kInverse)
          y = U::tab.dbZero.pd();
        else
          y = x;
        break;
      case Sqrt64Class::kNaN:
        y = _mm_mul_pd(x, opaque(U::tab.dbOne.pd()));
        break;
      default:  // negative, -Inf
        y = U::tab.dbDefaultNaN.pd();
        code = luxWarnDomain;
        break;
    }
    store1(dst + i, y);
    if (code != luxOk) call.warn(code, i);
  }
  void tail(int i) { lane(i); }
};

// The export's body after its entry checks.
template <class U>
inline luxStatus run_seed64(const lux64f* src, lux64f* dst, int len) {
  RoundNearestGuard guard;
  CallState<lux64f> call(src, src, dst, dst);
  Seed64Kernel<U> k{src, dst, call};
  run_block_redo<8>(len, k);
  return call.status();
}

}  // namespace lux
