// Pow3o2 on binary64 and binary32: x^(3/2) from the reciprocal-square-root
// seed c ~ x^(-1/2) (the binary64 seed of the Sqrt kernels, rsqrtps on
// binary32) and the Taylor polynomial of (1 + e)^(-1/2) in e = x*c^2 - 1,
// with no logarithm, exponential, division or square-root instruction.
//
// The fast tiers take the root s ~ sqrt(x) and return s*s*s (A26, A11) or
// s*x (A50, A21).  The full tiers write x = z*E (z in [1, 2), E a power of
// two) and form z^2*(c + u), u = p(e)*e*c the correction of c toward
// x^(-1/2), as a sum of exact head products and small terms, applying E
// twice at the very end: x^(3/2) = z^2*E^2 / sqrt(zE).
//
// Lanes that are not positive normal numbers or zeros (negatives, -Inf,
// +Inf, NaN, denormals) leave the vector path for sqrt_scalar: the
// negatives get the default NaN and status 19, a positive denormal runs the
// arithmetic on x scaled (its x^(3/2) is far below the smallest denormal,
// so the result is +0).
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/sqrt_lane32.h"
#include "powers/sqrt_seed64.h"

namespace lux::pow3o2 {

// ---------------------------------------------------------------------------
// binary64

struct alignas(16) Table64 {
  LUX_SQRT_SEED64_ROWS
  LUX_SQRT_TEST64_ROWS
  Row64 dbOne = row64(0x3FF0000000000000);
  // Taylor coefficients of (1 + e)^(-1/2) - 1 over e, innermost first.
  Row64 dbE5 = row64(0xBFCF800000000000);  // -63/256
  Row64 dbE4 = row64(0x3FD1800000000000);  // 35/128
  Row64 dbE3 = row64(0xBFD4000000000000);  // -5/16
  Row64 dbE2 = row64(0x3FD8000000000000);  // 3/8
  Row64 dbE1 = row64(0xBFE0000000000000);  // -1/2
  Row64 dbTwo54 = row64(0x4350000000000000);
  Row64 dbTwo27 = row64(0x41A0000000000000);
  Row64 dbHighWordMask = row64(0xFFFFFFFF00000000);
  Row64 dbSeedSplit = row64(0xFFFFFC0000000000);
  Row64 dbSigMask = row64(0x000FFFFFFFFFFFFF);
  Row64 dbExpMask = row64(0xFFF0000000000000);
  Row64 dbDefaultNaN = row64(0xFFF8000000000000);
};
inline constexpr Table64 kTab64{};

// x^(3/2) of two lanes: seed and residual from xs, the rest from xf
// (xs = xf but for a denormal, where xs = xf*2^54 and t = 2^27).
template <int Tier>
inline __m128d root64(__m128d xs, __m128d xf, __m128d t) {
  const Table64& k = kTab64;
  const __m128d c = _mm_andnot_pd(as_pd(zero_lanes64(xs, k)), rsqrt_seed(xs, k));
  const __m128d c2 = _mm_mul_pd(c, c);
  if constexpr (Tier == 26) {
    const __m128d e = _mm_sub_pd(_mm_mul_pd(xs, c2), k.dbOne.pd());
    __m128d p = _mm_add_pd(_mm_mul_pd(k.dbE4.pd(), e), k.dbE3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE1.pd());
    const __m128d s = _mm_mul_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, e), c), c), xf), t);
    return _mm_mul_pd(_mm_mul_pd(s, s), s);
  } else {
    const __m128d xsh = _mm_and_pd(xs, k.dbHighWordMask.pd());
    const __m128d xsl = _mm_sub_pd(xs, xsh);
    const __m128d e = _mm_add_pd(_mm_sub_pd(_mm_mul_pd(xsh, c2), k.dbOne.pd()), _mm_mul_pd(xsl, c2));
    __m128d p = _mm_add_pd(_mm_mul_pd(k.dbE5.pd(), e), k.dbE4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE2.pd());
    p = _mm_add_pd(_mm_mul_pd(p, e), k.dbE1.pd());
    const __m128d u = _mm_mul_pd(_mm_mul_pd(p, e), c);
    if constexpr (Tier == 50) {
      const __m128d xh = _mm_and_pd(xf, k.dbHighWordMask.pd());
      const __m128d xl = _mm_sub_pd(xf, xh);
      const __m128d s =
          _mm_mul_pd(_mm_add_pd(_mm_add_pd(_mm_mul_pd(u, xf), _mm_mul_pd(xl, c)), _mm_mul_pd(xh, c)), t);
      // |x| as the last factor: -0 gives +0 like the full tier.
      return _mm_mul_pd(s, _mm_and_pd(xf, k.dbAbsMask.pd()));
    } else {
      const __m128d z = _mm_or_pd(_mm_and_pd(xf, k.dbSigMask.pd()), k.dbOne.pd());
      const __m128d E = _mm_and_pd(xf, k.dbExpMask.pd());
      const __m128d zh = _mm_and_pd(z, k.dbHighWordMask.pd());
      const __m128d zl = _mm_sub_pd(z, zh);
      const __m128d ch = _mm_and_pd(c, k.dbSeedSplit.pd());
      const __m128d cl = _mm_sub_pd(c, ch);
      const __m128d zh2 = _mm_mul_pd(zh, zh);
      __m128d acc = _mm_mul_pd(_mm_mul_pd(u, z), z);
      acc = _mm_add_pd(acc, _mm_mul_pd(_mm_mul_pd(c, z), zl));
      acc = _mm_add_pd(acc, _mm_mul_pd(_mm_mul_pd(zl, zh), c));
      // The exact head product ch*zh^2 is added last, so that the sum
      // rounds once at the size of the result.
      acc = _mm_add_pd(acc, _mm_mul_pd(zh2, cl));
      acc = _mm_add_pd(acc, _mm_mul_pd(ch, zh2));
      return _mm_mul_pd(_mm_mul_pd(_mm_mul_pd(acc, t), E), E);
    }
  }
}

template <int Tier>
struct Kernel64 {
  static constexpr int kVectors = Tier == 26 ? 4 : 2;
  const double* src;
  double* dst;
  CallState<double>& call;

  // Positive normal lanes and zeros stay.
  static bool passes(__m128d v0, __m128d v1) {
    const __m128i bad = _mm_andnot_si128(zero_words(v0, v1, kTab64), positive_normal_fails(v0, v1, kTab64));
    return _mm_movemask_epi8(bad) == 0;
  }

  bool block(int i) {
    __m128d x[kVectors];
    for (int v = 0; v < kVectors; ++v) x[v] = load2(src + i + 2 * v);
    bool ok = true;
    for (int v = 0; v < kVectors; v += 2) ok &= passes(x[v], x[v + 1]);
    if (__builtin_expect(!ok, 0)) return false;
    const __m128d one = kTab64.dbOne.pd();
    for (int v = 0; v < kVectors; ++v) store2(dst + i + 2 * v, root64<Tier>(x[v], x[v], one));
    return true;
  }

  // sqrt_scalar.
  void lane(int i) {
    const Table64& k = kTab64;
    const __m128d x = _mm_loaddup_pd(src + i);
    __m128d y;
    bool domain = false;
    switch (classify_sqrt64(__builtin_bit_cast(uint64_t, src[i]))) {
      case Sqrt64Class::kNormal:
        y = root64<Tier>(x, x, k.dbOne.pd());
        break;
      case Sqrt64Class::kDenormal:
        y = root64<Tier>(_mm_mul_pd(x, k.dbTwo54.pd()), x, k.dbTwo27.pd());
        break;
      case Sqrt64Class::kNaN:
        y = _mm_mul_pd(x, opaque(k.dbOne.pd()));
        break;
      case Sqrt64Class::kNegative:
        y = k.dbDefaultNaN.pd();
        domain = true;
        break;
      default:  // +-0, +Inf
        y = x;
        break;
    }
    store1(dst + i, y);
    if (domain) call.warn(luxWarnDomain, i);
  }

  // The full tier finishes its tail in sqrt_scalar; the others run the
  // one-lane vector code when the lane passes the block test.
  void tail(int i) {
    if constexpr (Tier != 53) {
      const __m128d x = _mm_loaddup_pd(src + i);
      if (passes(x, x)) {
        store1(dst + i, root64<Tier>(x, x, kTab64.dbOne.pd()));
        return;
      }
    }
    lane(i);
  }
};

template <int Tier>
inline luxStatus run64(const lux64f* src, lux64f* dst, int len) {
  RoundNearestGuard guard;
  CallState<lux64f> call(src, src, dst, dst);
  Kernel64<Tier> k{src, dst, call};
  run_block_redo<2 * Kernel64<Tier>::kVectors>(len, k);
  return call.status();
}

// ---------------------------------------------------------------------------
// binary32

struct alignas(16) Table32 {
  Row32 flOne = row32(0x3F800000);
  Row32 flThree = row32(0x40400000);
  Row32 flMinusHalf = row32(0xBF000000);
  Row32 flP3 = row32(0xBEA00000);  // -0.3125
  Row32 flP2 = row32(0x3EC00000);  // 0.375
  Row32 flP1 = row32(0xBF000000);  // -0.5
  Row32 flSplit21 = row32(0xFFFF8000);
  Row32 flSplit24 = row32(0xFFFF0000);
  Row32 flSigMask = row32(0x007FFFFF);
  Row32 flExpMask = row32(0x7F800000);
  Row32 flSignMask = row32(0x80000000);
  Row32 flAbsMask = row32(0x7FFFFFFF);
  Row32 flNormalBase = row32(0x80800000u);
  Row32 flNormalLimit = row32(0xFEFFFFFFu);
  Row32 flTwo26 = row32(0x4C800000);
  Row32 flTwoM13 = row32(0x39000000);
  Row32 flDefaultNaN = row32(0xFFC00000);
};
inline constexpr Table32 kTab32{};

template <int Tier>
inline __m128 root32(__m128 xs, __m128 xf, __m128 t) {
  const Table32& k = kTab32;
  const __m128 r = _mm_andnot_ps(_mm_cmpeq_ps(xs, _mm_setzero_ps()), _mm_rsqrt_ps(xs));
  if constexpr (Tier == 11) {
    const __m128 a = _mm_mul_ps(xs, r);
    const __m128 s = _mm_mul_ps(
        _mm_mul_ps(_mm_sub_ps(_mm_mul_ps(r, a), k.flThree.ps()), _mm_mul_ps(a, k.flMinusHalf.ps())), t);
    return _mm_mul_ps(_mm_mul_ps(s, s), s);
  } else {
    const __m128 mask = Tier == 21 ? k.flSplit21.ps() : k.flSplit24.ps();
    const __m128 r0 = _mm_and_ps(r, mask);
    const __m128 xh = _mm_and_ps(xs, mask);
    const __m128 xl = _mm_sub_ps(xs, xh);
    const __m128 r02 = _mm_mul_ps(r0, r0);
    const __m128 e = _mm_add_ps(_mm_sub_ps(_mm_mul_ps(xh, r02), k.flOne.ps()), _mm_mul_ps(xl, r02));
    __m128 p = _mm_add_ps(_mm_mul_ps(k.flP3.ps(), e), k.flP2.ps());
    p = _mm_add_ps(_mm_mul_ps(p, e), k.flP1.ps());
    const __m128 u = _mm_mul_ps(_mm_mul_ps(p, e), r0);
    if constexpr (Tier == 21) {
      __m128 s = _mm_add_ps(_mm_add_ps(_mm_mul_ps(u, xs), _mm_mul_ps(xl, r0)), _mm_mul_ps(xh, r0));
      s = _mm_or_ps(_mm_mul_ps(s, t), _mm_and_ps(xs, k.flSignMask.ps()));
      return _mm_mul_ps(s, xf);
    } else {
      const __m128 z = _mm_or_ps(_mm_and_ps(xf, k.flSigMask.ps()), k.flOne.ps());
      const __m128 E = _mm_and_ps(xf, k.flExpMask.ps());
      const __m128 zh = _mm_and_ps(z, mask);
      const __m128 zl = _mm_sub_ps(z, zh);
      const __m128 ch = _mm_and_ps(r0, mask);
      const __m128 cl = _mm_sub_ps(r0, ch);
      const __m128 zh2 = _mm_mul_ps(zh, zh);
      __m128 acc = _mm_mul_ps(_mm_mul_ps(u, z), z);
      acc = _mm_add_ps(acc, _mm_mul_ps(_mm_mul_ps(r0, z), zl));
      acc = _mm_add_ps(acc, _mm_mul_ps(_mm_mul_ps(zl, zh), r0));
      acc = _mm_add_ps(acc, _mm_mul_ps(zh2, cl));
      acc = _mm_add_ps(acc, _mm_mul_ps(ch, zh2));
      return _mm_mul_ps(_mm_mul_ps(_mm_mul_ps(acc, t), E), E);
    }
  }
}

template <int Tier>
struct Kernel32 {
  static constexpr int kVectors = Tier == 11 ? 4 : 2;
  const float* src;
  float* dst;
  CallState<float>& call;

  // Positive normal lanes and zeros stay: an integer test on the patterns,
  // made before any arithmetic so that the estimate of a negative, infinite
  // or denormal lane raises no flag of its own.
  static __m128i fails(__m128 x) {
    const Table32& k = kTab32;
    const __m128i xi = as_int(x);
    const __m128i bad = _mm_cmpgt_epi32(_mm_sub_epi32(xi, k.flNormalBase.pi()), k.flNormalLimit.pi());
    const __m128i zero = _mm_cmpeq_epi32(_mm_and_si128(xi, k.flAbsMask.pi()), _mm_setzero_si128());
    return _mm_andnot_si128(zero, bad);
  }

  bool block(int i) {
    __m128 x[kVectors];
    __m128i bad = _mm_setzero_si128();
    for (int v = 0; v < kVectors; ++v) {
      x[v] = load4(src + i + 4 * v);
      bad = _mm_or_si128(bad, fails(x[v]));
    }
    if (__builtin_expect(_mm_movemask_epi8(bad) != 0, 0)) return false;
    const __m128 one = kTab32.flOne.ps();
    for (int v = 0; v < kVectors; ++v) store4(dst + i + 4 * v, root32<Tier>(x[v], x[v], one));
    return true;
  }

  // sqrt_scalar, also every tail lane.
  void lane(int i) {
    const Table32& k = kTab32;
    const __m128 x = broadcast1(src + i);
    __m128 y;
    bool domain = false;
    switch (classify_sqrt32(__builtin_bit_cast(uint32_t, src[i]))) {
      case Sqrt32Class::kNormal:
        y = root32<Tier>(x, x, k.flOne.ps());
        break;
      case Sqrt32Class::kDenormal:
        y = root32<Tier>(_mm_mul_ps(x, k.flTwo26.ps()), x, k.flTwoM13.ps());
        break;
      case Sqrt32Class::kNaN:
        y = _mm_mul_ps(x, opaque(k.flOne.ps()));
        break;
      case Sqrt32Class::kNegative:
        y = k.flDefaultNaN.ps();
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

template <int Tier>
inline luxStatus run32(const lux32f* src, lux32f* dst, int len) {
  RoundNearestGuard guard;
  CallState<lux32f> call(src, src, dst, dst);
  Kernel32<Tier> k{src, dst, call};
  run_block_redo<4 * Kernel32<Tier>::kVectors>(len, k);
  return call.status();
}

}  // namespace lux::pow3o2
