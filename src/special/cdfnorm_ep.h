// The CdfNorm arithmetic of the 64f A26 tier and of the binary32 tiers (in
// double on widened lanes): y = (x*x)*(-1/2) rounded, exp(y) = 2^k * T *
// e^r with one word of ln 2/128 and e^r to degree 4 (|r| <= ln 2/256:
// 2^-39 relative), 2^k as a plain exponent field (k >= -1022 wherever the
// product is kept), R by plain Horner in v = |x| - c, and
// Phi = base - R*(E*(+-2^k)).  A unit gives its rows, degree, key and
// thresholds.
#pragma once

#include "special/cdfnorm.h"

namespace lux::erf {

// Rows of `Width` doubles {c, c0..cDegree}; the key on `Word` (the high word
// of binary64 lanes, or the float pattern) masked, offset and shifted.
template <int Degree, int Width>
struct CdfEpRows {
  const uint64_t (*rows)[Width];
  const uint64_t* pow2;  // RN(2^(j/128)), j = 0..128
  uint32_t key_mask, key_base;
  int key_shift;
  uint32_t last_row;
  Row64 zero_below, one_above;

  const double* row_of(uint32_t w) const {
    return reinterpret_cast<const double*>(rows[row_index(w, key_mask, key_base, key_shift, last_row, 0)]);
  }
  // Two lanes in double, with their keys.
  __m128d pair(__m128d x_in, uint32_t w0, uint32_t w1) const {
    const CdfConstants& C = kCdf;
    const __m128d drop = dropped(x_in, zero_below, one_above);
    const __m128d x = _mm_andnot_pd(drop, x_in);
    const __m128d sgn = _mm_and_pd(x_in, C.dbSignMask.pd());
    const __m128d y = _mm_mul_pd(_mm_mul_pd(x, x), C.dbMinusHalf.pd());
    const Reduced red = reduce(y);
    const __m128d r = _mm_sub_pd(y, _mm_mul_pd(red.N, C.dbL.pd()));
    const __m128d sc = scale(red.S, sgn, C.dbBias);
    __m128d e = C.dbP[3].pd();
    for (int k = 2; k >= 0; --k) e = _mm_add_pd(C.dbP[k].pd(), _mm_mul_pd(r, e));
    e = _mm_add_pd(C.dbOne.pd(), _mm_mul_pd(r, e));
    const double* pw = reinterpret_cast<const double*>(pow2);
    const __m128d E = _mm_mul_pd(gather(pw + red.j0, pw + red.j1, 0), e);
    const double* g0 = row_of(w0);
    const double* g1 = row_of(w1);
    const __m128d a = _mm_and_pd(x, C.dbAbsMask.pd());
    const __m128d v = _mm_sub_pd(a, gather(g0, g1, 0));
    __m128d R = gather(g0, g1, Degree + 1);
    for (int k = Degree; k >= 1; --k) R = _mm_add_pd(gather(g0, g1, k), _mm_mul_pd(v, R));
    const __m128d P = _mm_andnot_pd(drop, _mm_mul_pd(R, _mm_mul_pd(E, sc)));
    return nan_is_its_own(x_in, _mm_sub_pd(base_of(x_in), P));
  }
};

// The binary32 bodies: four floats widened, computed in pairs, narrowed.
template <class Rows, const Rows& K>
struct CdfFloatBody {
  using Four = __m128;
  static void compute(const float* p, int n, Four& y) {
    const __m128 x = n == 4 ? load4(p) : load1(p);
    alignas(16) uint32_t b[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(b), as_int(x));
    __m128d lo, hi;
    widen(x, lo, hi);
    y = narrow(K.pair(lo, b[0], b[1]), K.pair(hi, b[2], b[3]));
  }
  // Finite x below the zero threshold -14.170185089111328 (0xC162B914):
  // patterns in (0xC162B914, 0xFF800000).
  static unsigned underflow(const float* p, int n) {
    unsigned m = 0;
    for (int b = 0; b < n; ++b) {
      uint32_t bits;
      __builtin_memcpy(&bits, p + b, 4);
      if (bits > 0xC162B914u && bits < 0xFF800000u) m |= 1u << b;
    }
    return m;
  }
  static void store(float* p, int n, const Four& y) {
    if (n == 4)
      store4(p, y);
    else
      store1(p, y);
  }
};

// Binary32 thresholds, compared in double.
inline constexpr uint64_t kCdfFloatZeroBelow = 0xC02C572280000000;  // -14.170185089111328
inline constexpr uint64_t kCdfFloatOneAbove = 0x4015AE1000000000;   // 5.41998291015625

}  // namespace lux::erf
