// The array loops of the complex products and quotients, one per tier kind;
// each export unit instantiates one with its operation.  Every lane's
// arithmetic is the same whatever its position, so blocks and tails agree.
#pragma once

#include "complex/cmul_kernels.h"

namespace lux::cplx {

// ---------------------------------------------------------------------------
// Binary32, lowest tier: the formula in binary32, two lanes a vector.

template <Op K>
inline __m128 low32_vec(__m128 a, __m128 b) {
  if constexpr (K == Op::kMul) {
    return mul_ps(a, b);
  } else {
    const __m128 c = _mm_moveldup_ps(b), d = _mm_movehdup_ps(b);
    const __m128 swapped = _mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1));
    const __m128 t1 = _mm_mul_ps(a, c);
    const __m128 t2 = _mm_xor_ps(_mm_mul_ps(swapped, d), _mm_set1_ps(-0.0f));
    const __m128 n = _mm_addsub_ps(t1, t2);  // (p c + q d, q c - p d)
    if constexpr (K == Op::kMulByConj) return n;
    return _mm_mul_ps(n, recip_norm_ps(c, d));
  }
}

template <Op K>
inline luxStatus low32(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len) {
  if (const luxStatus e = check_entry(len, src1, src2, dst)) return e;
  RoundNearestGuard guard;
  const float* a = reinterpret_cast<const float*>(src1);
  const float* b = reinterpret_cast<const float*>(src2);
  float* out = reinterpret_cast<float*>(dst);
  int i = 0;
  for (; i + 2 <= len; i += 2)
    _mm_storeu_ps(out + 2 * i, low32_vec<K>(_mm_loadu_ps(a + 2 * i), _mm_loadu_ps(b + 2 * i)));
  if (i < len) {
    const __m128 va = _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(a + 2 * i)));
    const __m128 vb = _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(b + 2 * i)));
    _mm_store_sd(reinterpret_cast<double*>(out + 2 * i), _mm_castps_pd(low32_vec<K>(va, vb)));
  }
  return luxOk;
}

// ---------------------------------------------------------------------------
// Binary32, A21 and A24: widened to the x87 unit at 53 bits, where the
// products are exact; narrowed once.

template <Op K>
inline luxStatus wide32(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len) {
  if (const luxStatus e = check_entry(len, src1, src2, dst)) return e;
  X87Guard53 guard;
  for (int i = 0; i < len; ++i) {
    const LdPair r = formula_x87<K>(src1[i].re, src1[i].im, src2[i].re, src2[i].im);
    volatile float re = float(r.re), im = float(r.im);
    dst[i].re = re;
    dst[i].im = im;
  }
  return luxOk;
}

// ---------------------------------------------------------------------------
// Binary64, A26: the formula in binary64, a lane at a time.

template <Op K>
inline __m128d low64_lane(__m128d a, __m128d b) {
  if constexpr (K == Op::kMul) {
    return mul_pd(a, b);
  } else {
    const __m128d c = _mm_movedup_pd(b), d = _mm_unpackhi_pd(b, b);
    const __m128d t1 = _mm_mul_pd(a, c);
    const __m128d t2 = _mm_xor_pd(_mm_mul_pd(_mm_shuffle_pd(a, a, 1), d), _mm_set1_pd(-0.0));
    const __m128d n = _mm_addsub_pd(t1, t2);  // (p c + q d, q c - p d)
    if constexpr (K == Op::kMulByConj) return n;
    // ((p c + q d), ((-p) d + q c)) times 1/(c c + d d).
    const __m128d p = _mm_movedup_pd(a), q = _mm_unpackhi_pd(a, a);
    const __m128d np = _mm_xor_pd(p, _mm_set1_pd(-0.0));
    const __m128d re = _mm_add_pd(_mm_mul_pd(p, c), _mm_mul_pd(q, d));
    const __m128d im = _mm_add_pd(_mm_mul_pd(np, d), _mm_mul_pd(q, c));
    return _mm_mul_pd(_mm_unpacklo_pd(re, im), recip_norm_pd(c, d));
  }
}

template <Op K>
inline luxStatus low64(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len) {
  if (const luxStatus e = check_entry(len, src1, src2, dst)) return e;
  RoundNearestGuard guard;
  const double* a = reinterpret_cast<const double*>(src1);
  const double* b = reinterpret_cast<const double*>(src2);
  double* out = reinterpret_cast<double*>(dst);
  for (int i = 0; i < len; ++i)
    _mm_storeu_pd(out + 2 * i, low64_lane<K>(_mm_loadu_pd(a + 2 * i), _mm_loadu_pd(b + 2 * i)));
  return luxOk;
}

// ---------------------------------------------------------------------------
// Binary64, A50 and A53: pairs of lanes through form A when all eight
// components qualify, otherwise lane by lane.

template <Op K>
inline luxStatus high64(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len) {
  if (const luxStatus e = check_entry(len, src1, src2, dst)) return e;
  X87Guard64 guard;
  const double* a = reinterpret_cast<const double*>(src1);
  const double* b = reinterpret_cast<const double*>(src2);
  double* out = reinterpret_cast<double*>(dst);
  int i = 0;
  for (; i + 2 <= len; i += 2) {
    uint64_t w0[4], w1[4];
    __builtin_memcpy(&w0[0], a + 2 * i, 16);
    __builtin_memcpy(&w0[2], b + 2 * i, 16);
    __builtin_memcpy(&w1[0], a + 2 * i + 2, 16);
    __builtin_memcpy(&w1[2], b + 2 * i + 2, 16);
    if (form_a_lane<K>(w0) && form_a_lane<K>(w1)) {
      const __m128d a0 = _mm_loadu_pd(a + 2 * i), a1 = _mm_loadu_pd(a + 2 * i + 2);
      const __m128d b0 = _mm_loadu_pd(b + 2 * i), b1 = _mm_loadu_pd(b + 2 * i + 2);
      __m128d re, im;
      form_a<K>(_mm_unpacklo_pd(a0, a1), _mm_unpackhi_pd(a0, a1), _mm_unpacklo_pd(b0, b1),
                _mm_unpackhi_pd(b0, b1), &re, &im);
      _mm_storeu_pd(out + 2 * i, _mm_unpacklo_pd(re, im));
      _mm_storeu_pd(out + 2 * i + 2, _mm_unpackhi_pd(re, im));
    } else {
      high_lane<K>(a + 2 * i, b + 2 * i, out + 2 * i);
      high_lane<K>(a + 2 * i + 2, b + 2 * i + 2, out + 2 * i + 2);
    }
  }
  if (i < len) high_lane<K>(a + 2 * i, b + 2 * i, out + 2 * i);
  return luxOk;
}

}  // namespace lux::cplx
