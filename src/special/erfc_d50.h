// The binary64 Erfc kernel of the A50 and A26 tiers (one tier in two names:
// each unit holds its own copy of the table and instantiates this body).
//
// erfc(|x|) = exp(-x^2) * G(|x|), G(y) = exp(y^2) erfc(y), and
// erfc(-|x|) = 2 - erfc(|x|):
//   -x^2 = aH + low2 from 26-bit halves of |x|;
//   exp(-x^2) = 2^k * 2^(j/128) * e^r, r = -x^2 - N*ln 2/128 (two words),
//   E = T + T*p with p = e^r - 1 to degree 5 and T = RN(2^(j/128));
//   G by plain Horner of degree 12 in t = |x| - A on 28 rows from the high
//   word (left ends 0, 0.25, ..., 24);
//   result = (G*E)*(+-2^k) + Base, 2^k built from an exponent field biased
//   by 154 times 2^-154, so that it falls gradually into the subnormals.
// |x| >= 27.226017111108366 gives Base (0 or 2), a NaN itself.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace lux::erf {

struct alignas(16) ErfcLaTable {
  Row64 dbAbsMask, dbSignMask, dbClear27, dbTwo;
  Row64 dbInvL, dbShifter, dbNegShifter, dbL1, dbL2;
  Row64 dbP[5];  // 1, 1/2, 1/6, 1/24, 1/120
  Row64 dbExpMask, dbBias154, dbTwoM154;
  Row64 dbA[28];                                // left ends of the rows
  alignas(16) uint64_t dErfc_LA_Pow2[128];      // RN(2^(j/128))
  alignas(16) uint64_t dErfc_LA_Table[28][16];  // {c0..c12, 0, 0, 0}
};

// |x| >= 27.226017111108366: erfc is 0 (or 2).
inline constexpr uint64_t kErfcLaZeroFrom = 0x403B39DC41E48BFD;
inline constexpr uint32_t kErfcLaPlainUpTo = 0x403B39DC;              // block stores unselected
inline constexpr int64_t kErfcLaUnderflowAbove = 0x403A8B12FC6E4891;  // x > 26.543258454250978

template <const ErfcLaTable& T>
struct ErfcLa {
  static uint32_t row_of(uint32_t hi) { return row_index(hi, 0x7FFC0000, 0x3FCC0000, 18, 27, 0); }

  static __m128d pair(__m128d x) {
    const __m128d clear = T.dbClear27.pd();
    const __m128d sgn = _mm_and_pd(x, T.dbSignMask.pd());
    const __m128d neg = wide_mask(_mm_cmplt_epi32(high_pair(x), _mm_setzero_si128()));
    const __m128d base = _mm_and_pd(neg, T.dbTwo.pd());
    const __m128d ax = _mm_and_pd(x, T.dbAbsMask.pd());
    const __m128d xH = _mm_and_pd(ax, clear);
    const __m128d xL = _mm_sub_pd(ax, xH);
    const __m128d nxH = _mm_xor_pd(xH, T.dbSignMask.pd());
    const __m128d a = _mm_mul_pd(nxH, xH);
    const __m128d low = _mm_sub_pd(_mm_mul_pd(_mm_mul_pd(nxH, xL), T.dbTwo.pd()), _mm_mul_pd(xL, xL));
    const __m128d aH = _mm_and_pd(a, clear);
    const __m128d low2 = _mm_add_pd(_mm_sub_pd(a, aH), low);
    const __m128d v = _mm_add_pd(_mm_mul_pd(aH, T.dbInvL.pd()), T.dbShifter.pd());
    const __m128d Nd = _mm_add_pd(v, T.dbNegShifter.pd());
    const int j0 = _mm_cvtsi128_si32(as_int(v)) & 127;
    const int j1 = _mm_cvtsi128_si32(_mm_srli_si128(as_int(v), 8)) & 127;
    const __m128i field = _mm_and_si128(_mm_slli_epi64(as_int(v), 45), T.dbExpMask.pi());
    const __m128d M =
        _mm_mul_pd(_mm_or_pd(as_pd(_mm_add_epi64(field, T.dbBias154.pi())), sgn), T.dbTwoM154.pd());
    const __m128d r = _mm_add_pd(
        _mm_sub_pd(_mm_sub_pd(aH, _mm_mul_pd(T.dbL1.pd(), Nd)), _mm_mul_pd(T.dbL2.pd(), Nd)), low2);
    __m128d p = T.dbP[4].pd();
    for (int k = 3; k >= 0; --k) p = _mm_add_pd(T.dbP[k].pd(), _mm_mul_pd(r, p));
    p = _mm_mul_pd(r, p);
    const double* pw = reinterpret_cast<const double*>(T.dErfc_LA_Pow2);
    const __m128d Tj = gather(pw + j0, pw + j1, 0);
    const __m128d E = _mm_add_pd(Tj, _mm_mul_pd(Tj, p));
    const uint32_t i0 = row_of(high_word(x, 0)), i1 = row_of(high_word(x, 1));
    const double* g0 = reinterpret_cast<const double*>(T.dErfc_LA_Table[i0]);
    const double* g1 = reinterpret_cast<const double*>(T.dErfc_LA_Table[i1]);
    const __m128d A =
        gather(reinterpret_cast<const double*>(&T.dbA[i0]), reinterpret_cast<const double*>(&T.dbA[i1]), 0);
    const __m128d t = _mm_sub_pd(ax, A);
    __m128d G = gather(g0, g1, 12);
    for (int k = 11; k >= 0; --k) G = _mm_add_pd(gather(g0, g1, k), _mm_mul_pd(t, G));
    const __m128d y = _mm_or_pd(_mm_mul_pd(_mm_mul_pd(G, E), M), sgn);
    return _mm_add_pd(y, base);
  }

  // Lanes at or beyond the zero point take Base, NaNs themselves; they are
  // computed as x = 0 meanwhile (no spurious overflow).
  static __m128d select_pair(__m128d x) {
    const __m128d ax = _mm_and_pd(x, T.dbAbsMask.pd());
    const __m128d nan = _mm_cmpunord_pd(x, x);
    const __m128d huge = _mm_cmpge_pd(no_nan(ax), as_pd(_mm_set1_epi64x(int64_t(kErfcLaZeroFrom))));
    const __m128d off = _mm_or_pd(nan, huge);
    const __m128d y = pair(_mm_andnot_pd(off, x));
    const __m128d neg = wide_mask(_mm_cmplt_epi32(high_pair(x), _mm_setzero_si128()));
    const __m128d base = _mm_and_pd(neg, T.dbTwo.pd());
    return select(nan, x, select(huge, base, y));
  }

  static bool all_plain(__m128d a, __m128d b) {
    const __m128i h =
        _mm_and_si128(_mm_unpacklo_epi64(high_pair(a), high_pair(b)), _mm_set1_epi32(0x7FFFFFFF));
    return _mm_movemask_epi8(_mm_cmpgt_epi32(h, _mm_set1_epi32(int32_t(kErfcLaPlainUpTo)))) == 0;
  }

  static bool underflows(uint64_t bits) {
    return int64_t(bits) > kErfcLaUnderflowAbove && int64_t(bits) < int64_t(0x7FF0000000000000);
  }

  struct Kernel {
    const double* src;
    double* dst;
    CallState<lux64f>& call;
    unsigned block(int i) {
      const __m128d a = load2(src + i), b = load2(src + i + 2);
      const unsigned mask =
          unsigned(underflows(lane_bits(a, 0))) | unsigned(underflows(lane_bits(a, 1))) << 1 |
          unsigned(underflows(lane_bits(b, 0))) << 2 | unsigned(underflows(lane_bits(b, 1))) << 3;
      if (__builtin_expect(all_plain(a, b), 1)) {
        store2(dst + i, pair(a));
        store2(dst + i + 2, pair(b));
      } else {
        store2(dst + i, select_pair(a));
        store2(dst + i + 2, select_pair(b));
      }
      return mask;
    }
    unsigned tail(int i) {
      const __m128d x = load1(src + i);
      const bool u = underflows(lane_bits(x, 0));
      store1(dst + i, select_pair(x));
      return u;
    }
    void offend(int i) { call.warn(luxWarnUnderflow, i); }
  };

  static luxStatus run(const lux64f* src, lux64f* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    CallState<lux64f> call(src, src, dst, dst);
    Kernel k{src, dst, call};
    run_masked<4>(len, k);
    return call.status();
  }
};

// The table's constants, the same in both units (the rows and powers come
// from the .inc files the unit includes).
#define LUX_ERFC_LA_CONSTANTS                                                              \
  .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF), .dbSignMask = row64(0x8000000000000000),         \
  .dbClear27 = row64(0xFFFFFFFFF8000000), .dbTwo = row64(0x4000000000000000),              \
  .dbInvL = row64(0x40671547652B82FE), .dbShifter = row64(0x4338000000000000),             \
  .dbNegShifter = row64(0xC338000000000000), .dbL1 = row64(0x3F762E4300000000),            \
  .dbL2 = row64(0xBDB05C610CA86C39),                                                       \
  .dbP = {row64(0x3FF0000000000000), row64(0x3FE0000000000000), row64(0x3FC5555555555555), \
          row64(0x3FA5555555555555), row64(0x3F81111111111111)},                           \
  .dbExpMask = row64(0xFFF0000000000000), .dbBias154 = row64(0x4990000000000000),          \
  .dbTwoM154 = row64(0x3650000000000000),                                                  \
  .dbA = {row64(0x0000000000000000), row64(0x3FD0000000000000), row64(0x3FD4000000000000), \
          row64(0x3FD8000000000000), row64(0x3FDC000000000000), row64(0x3FE0000000000000), \
          row64(0x3FE4000000000000), row64(0x3FE8000000000000), row64(0x3FEC000000000000), \
          row64(0x3FF0000000000000), row64(0x3FF4000000000000), row64(0x3FF8000000000000), \
          row64(0x3FFC000000000000), row64(0x4000000000000000), row64(0x4004000000000000), \
          row64(0x4008000000000000), row64(0x400C000000000000), row64(0x4010000000000000), \
          row64(0x4014000000000000), row64(0x4018000000000000), row64(0x401C000000000000), \
          row64(0x4020000000000000), row64(0x4024000000000000), row64(0x4028000000000000), \
          row64(0x402C000000000000), row64(0x4030000000000000), row64(0x4034000000000000), \
          row64(0x4038000000000000)}

}  // namespace lux::erf
