// Lane classes, one-lane vectors and the block loop of the binary32 square
// root kernels.  Each unit brings its table and its vector arithmetic; what
// lives here is how a block is tested and how a lane that leaves the vector
// path is finished.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux {

enum class Sqrt32Class { kNormal, kDenormal, kZero, kPlusInf, kNaN, kNegative };

inline Sqrt32Class classify_sqrt32(uint32_t bits) {
  const uint32_t mag = bits & 0x7FFFFFFF;
  if (mag > 0x7F800000) return Sqrt32Class::kNaN;
  if (mag == 0) return Sqrt32Class::kZero;
  if (bits & 0x80000000u) return Sqrt32Class::kNegative;
  if (mag == 0x7F800000) return Sqrt32Class::kPlusInf;
  if (mag < 0x00800000) return Sqrt32Class::kDenormal;
  return Sqrt32Class::kNormal;
}

// One lane in all four positions, so that the other positions compute
// nothing that could raise a flag of their own.
inline __m128 broadcast1(const float* p) {
  const __m128 v = _mm_load_ss(p);
  return _mm_shuffle_ps(v, v, _MM_SHUFFLE(0, 0, 0, 0));
}

// Four roots and the lanes among them that must leave the vector path.
struct Sqrt32Root {
  __m128 value;
  __m128i bad;
};

// The block-redo kernel.  U is the unit:
//   U::tab                 its table, with rows flTwo26 and flTwoM13 (the
//                          denormal scale and back), flOne, flDefaultNaN;
//   U::root(x)             the vector arithmetic on four lanes;
// kVectors vectors of four lanes make a block.
template <class U, int kVectors>
struct Sqrt32Kernel {
  static constexpr int kBlock = 4 * kVectors;

  const float* src;
  float* dst;
  CallState<float>& call;

  // The whole block is computed and tested before anything is stored.
  bool block(int i) {
    Sqrt32Root r[kVectors];
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) r[v] = U::root(load4(src + i + 4 * v));
    __m128i bad = r[0].bad;
#pragma GCC unroll 4
    for (int v = 1; v < kVectors; ++v) bad = _mm_or_si128(bad, r[v].bad);
    if (__builtin_expect(_mm_movemask_epi8(bad) != 0, 0)) return false;
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) store4(dst + i + 4 * v, r[v].value);
    return true;
  }

  // sqrt_scalar, also the tail: positive numbers through the vector
  // arithmetic on one lane (a denormal scaled by 2^26 first and its root by
  // 2^-13 after), +-0 and +Inf as they are, NaN quieted by x*1.0, the rest
  // the default NaN.
  void lane(int i) {
    const __m128 x = broadcast1(src + i);
    __m128 y;
    bool domain = false;
    switch (classify_sqrt32(__builtin_bit_cast(uint32_t, src[i]))) {
      case Sqrt32Class::kNormal:
        y = U::root(x).value;
        break;
      case Sqrt32Class::kDenormal:
        y = _mm_mul_ps(U::root(_mm_mul_ps(x, U::tab.flTwo26.ps())).value, U::tab.flTwoM13.ps());
        break;
      case Sqrt32Class::kNaN:
        y = _mm_mul_ps(x, opaque(U::tab.flOne.ps()));
        break;
      case Sqrt32Class::kNegative:
        y = U::tab.flDefaultNaN.ps();
        domain = true;
        break;
      default:  // +-0, +Inf
        y = x;
        break;
    }
    store1(dst + i, y);
    if (domain) call.warn(luxWarnDomain, i);
  }
  void tail(int i) { lane(i); }
};

// The export's body after its entry checks.
template <class U, int kVectors>
inline luxStatus run_sqrt32(const lux32f* src, lux32f* dst, int len) {
  RoundNearestGuard guard;
  CallState<lux32f> call(src, src, dst, dst);
  Sqrt32Kernel<U, kVectors> k{src, dst, call};
  run_block_redo<Sqrt32Kernel<U, kVectors>::kBlock>(len, k);
  return call.status();
}

}  // namespace lux
