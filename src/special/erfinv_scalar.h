// The lanes the row scheme leaves out: the lane routines of ErfInv (inline,
// one per type), ErfcInv and CdfNormInv (dErfcInv_SC and kin, in the tail
// units), and the logarithmic tail that serves arguments of ErfcInv and
// CdfNormInv below the rows' reach.  All arithmetic runs on the SSE unit
// (plain doubles under -mfpmath=sse); lane values travel through memory.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/lanes.h"
#include "luxvm.h"

extern "C" {
// erfcinv(x) and Phi^-1(x) for one x > 0, in use below 2^-24 and 2^-25.
__attribute__((visibility("hidden"))) double dErfcInv_Tail(double x);
__attribute__((visibility("hidden"))) double dCdfNormInv_Tail(double x);
// The irregular-lane logic of one value: stores the result, returns 0, 18 or 19.
__attribute__((visibility("hidden"))) int dErfcInv_SC(const lux64f* a, lux64f* r);
__attribute__((visibility("hidden"))) int sErfcInv_SC(const lux32f* a, lux32f* r);
__attribute__((visibility("hidden"))) int dCdfNormInv_SC(const lux64f* a, lux64f* r);
__attribute__((visibility("hidden"))) int sCdfNormInv_SC(const lux32f* a, lux32f* r);
}

namespace lux::erfinv {

inline uint64_t bits_of(double d) { return __builtin_bit_cast(uint64_t, d); }
inline uint32_t bits_of(float f) { return __builtin_bit_cast(uint32_t, f); }
inline double double_of(uint64_t b) { return __builtin_bit_cast(double, b); }
inline float float_of(uint32_t b) { return __builtin_bit_cast(float, b); }

// s/0, really divided, for the pole's divide-by-zero flag.
inline void store_pole(double* out, double s) {
  _mm_store_sd(out, _mm_div_sd(_mm_set_sd(s), opaque(_mm_setzero_pd())));
}
inline void store_pole(float* out, float s) {
  _mm_store_ss(out, _mm_div_ss(_mm_set_ss(s), opaque(_mm_setzero_ps())));
}
// Inf*0, really multiplied, for the invalid flag.
inline void store_domain_nan(double* out) {
  _mm_store_sd(out, _mm_mul_sd(opaque(_mm_set_sd(__builtin_inf())), opaque(_mm_setzero_pd())));
}
inline void store_domain_nan(float* out) {
  _mm_store_ss(out, _mm_mul_ss(opaque(_mm_set_ss(__builtin_inff())), opaque(_mm_setzero_ps())));
}
// x*x: a NaN passes quieted (a signalling one raises invalid).
inline void store_square(double* out, const double* in) {
  const __m128d x = opaque(_mm_load_sd(in));
  _mm_store_sd(out, _mm_mul_sd(x, x));
}
inline void store_square(float* out, const float* in) {
  const __m128 x = opaque(_mm_load_ss(in));
  _mm_store_ss(out, _mm_mul_ss(x, x));
}

// The upper 27 bits cleared away: products of two such values are exact.
inline double cleared(double d) { return double_of(bits_of(d) & 0xFFFFFFFFF8000000ull); }

// ErfInv on binary64 for a lane outside 2^-53 <= |x| < 1.
inline int erfinv_lane64(const double* in, double* out) {
  uint64_t b;
  __builtin_memcpy(&b, in, 8);
  const uint32_t hi = uint32_t(b >> 32), lo = uint32_t(b);
  const uint32_t mag = hi & 0x7FFFFFFF;
  if (mag >= 0x3FF00000) {
    const uint32_t m = mag | (lo != 0 ? 1u : 0u);
    if (m == 0x3FF00000) {  // |x| = 1: the pole
      store_pole(out, (hi >> 31) != 0 ? -1.0 : 1.0);
      return luxWarnSingularity;
    }
    if (m > 0x7FF00000) {  // NaN
      store_square(out, in);
      return luxOk;
    }
    store_domain_nan(out);  // 1 < |x| <= Inf
    return luxWarnDomain;
  }
  if ((b << 1) == 0) {  // +-0: x itself
    __builtin_memcpy(out, &b, 8);
    return luxOk;
  }
  // |x| < 2^-53: erfinv(x) = (sqrt(pi)/2) x (1 + O(x^2)), sqrt(pi)/2 = A + B
  // with A of 17 bits; x is scaled by 2^256 so that the split of y into
  // cleared halves is exact even for denormals.
  const double x = double_of(b);
  const double A = double_of(0x3FEC5C0000000000ull);      // 0.88623046875
  const double B = double_of(0xBECDB92C4255618Full);      // sqrt(pi)/2 - A
  const double y = x * double_of(0x4FF0000000000000ull);  // 2^256
  const double yh = cleared(y);
  const double yl = y - yh;
  const double u = A * yh;  // exact
  const double v = A * yl + B * y;
  const double s = u + v;
  if ((bits_of(s) >> 32 & 0x7FFFFFFF) >= 0x10100000) {  // |s| >= 2^-766: a normal result
    _mm_store_sd(out, _mm_mul_sd(_mm_set_sd(s), _mm_set_sd(double_of(0x2FF0000000000000ull))));  // 2^-256
    return luxOk;
  }
  // A denormal result: raise underflow, then round once at the denormal's
  // last place: adding C = +-2^-766 puts that place at C's last bit.
  const uint64_t sign = b & 0x8000000000000000ull;
  const __m128d t = opaque(_mm_set_sd(double_of(0x0170000000000000ull | sign)));  // +-2^-1000
  opaque(_mm_mul_sd(t, _mm_set_sd(double_of(0x0170000000000000ull))));
  const double c = double_of(0x1010000000000000ull | sign);
  const double wc = cleared(s + c);
  const double d = wc - c;
  const double e = (u - d) + v;
  const double z = wc + e;
  uint64_t r = bits_of(z) & 0x800FFFFFFFFFFFFFull;
  // The rounding carried into C's next binade: the result is the smallest
  // normal, not the empty fraction.
  if ((bits_of(z) & 0x7FF0000000000000ull) != 0x1010000000000000ull) r = sign | 0x0010000000000000ull;
  __builtin_memcpy(out, &r, 8);
  return luxOk;
}

// ErfInv on binary32 for a lane outside 2^-24 <= |x| < 1.
inline int erfinv_lane32(const float* in, float* out) {
  uint32_t b;
  __builtin_memcpy(&b, in, 4);
  const uint32_t mag = b & 0x7FFFFFFF;
  if (mag >= 0x3F800000) {
    if (mag == 0x3F800000) {
      store_pole(out, (b >> 31) != 0 ? -1.0f : 1.0f);
      return luxWarnSingularity;
    }
    if (mag > 0x7F800000) {
      store_square(out, in);
      return luxOk;
    }
    store_domain_nan(out);
    return luxWarnDomain;
  }
  if (mag == 0) {
    __builtin_memcpy(out, &b, 4);
    return luxOk;
  }
  // |x| < 2^-24: (sqrt(pi)/2) x in double, one rounding to float.
  const __m128d x = _mm_cvtss_sd(_mm_setzero_pd(), _mm_load_ss(in));
  const __m128d r = _mm_mul_sd(x, _mm_set_sd(double_of(0x3FEC5BF891B4EF6Bull)));
  _mm_store_ss(out, _mm_cvtsd_ss(_mm_setzero_ps(), r));
  return luxOk;
}

}  // namespace lux::erfinv
