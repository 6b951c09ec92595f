// The binary32 Erfc kernels of the A21 and A24 tiers, in double: each unit
// gives its rows (A21 a cubic in |x| itself, A24 a degree 6 polynomial in
// |x| minus the row's left end) and instantiates this body.
//
// erfc(|x|) = exp(-x^2) * G(|x|), G(y) = exp(y^2) erfc(y):
//   z = -x^2 exact in double (48 bits at most);
//   exp(z) = 2^k * 2^(j/128) * e^r, r = z - N*RN(ln 2/128), e^r to degree 4
//   (|r| <= ln 2/256: 2^-39 relative), T = RN(2^(j/128));
//   result = RN32(Base + G*E), Base 2 for negative x.
// x <= -3.8325066566467285 gives 2, x >= 10.054195404052734 gives +0, a NaN
// gives x*2; 9.194549560546875 <= x < Inf reports underflow.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace lux::erf {

struct alignas(16) ErfcSConstants {
  Row64 dbAbsMask, dbSignMask, dbTwo, dbOne;
  Row64 dbInvL, dbShifter, dbNegShifter, dbL;
  Row64 dbP[4];  // 1, 1/2, 1/6, 1/24
  Row64 dbExpMask, dbBias;
};

inline constexpr ErfcSConstants kErfcSConstants = {
    .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF),
    .dbSignMask = row64(0x8000000000000000),
    .dbTwo = row64(0x4000000000000000),
    .dbOne = row64(0x3FF0000000000000),
    .dbInvL = row64(0x40671547652B82FE),        // 128/ln 2
    .dbShifter = row64(0x4338000000000000),     // 1.5*2^52
    .dbNegShifter = row64(0xC338000000000000),  //
    .dbL = row64(0x3F762E42FEFA39EF),           // RN(ln 2/128)
    .dbP = {row64(0x3FF0000000000000), row64(0x3FE0000000000000), row64(0x3FC5555555555555),
            row64(0x3FA5555555555555)},
    .dbExpMask = row64(0xFFF0000000000000),
    .dbBias = row64(0x3FF0000000000000),
};

// Float patterns of the selections.
inline constexpr uint32_t kErfcSTwoFrom = 0xC07547CA;        // x <= -3.8325066566467285: 2
inline constexpr uint32_t kErfcSZeroFrom = 0x4120DDFC;       // x >= 10.054195404052734: +0
inline constexpr uint32_t kErfcSUnderflowFrom = 0x41131CE0;  // x >= 9.194549560546875

// Rows: `Width` doubles; A24 centres at position 7, A21 none.
template <int Degree, int Width, bool Centred, uint32_t KeyMask, uint32_t KeyBase, int KeyShift,
          uint32_t LastRow>
struct ErfcS {
  const uint64_t (*rows)[Width];
  const uint64_t* pow2;  // RN(2^(j/128)), 128 words

  const double* row_of(uint32_t bits) const {
    return reinterpret_cast<const double*>(rows[row_index(bits, KeyMask, KeyBase, KeyShift, LastRow, 0)]);
  }

  // Two lanes; b0, b1 their float patterns (x already replaced where the
  // caller wants it).
  __m128d pair(__m128d x, uint32_t b0, uint32_t b1) const {
    const ErfcSConstants& C = kErfcSConstants;
    const __m128d sgn = _mm_and_pd(x, C.dbSignMask.pd());
    const __m128d base =
        _mm_and_pd(wide_mask(_mm_cmplt_epi32(high_pair(x), _mm_setzero_si128())), C.dbTwo.pd());
    const __m128d y = _mm_and_pd(x, C.dbAbsMask.pd());
    const __m128d z = _mm_xor_pd(_mm_mul_pd(y, y), C.dbSignMask.pd());
    const __m128d v = _mm_add_pd(_mm_mul_pd(z, C.dbInvL.pd()), C.dbShifter.pd());
    const int j0 = _mm_cvtsi128_si32(as_int(v)) & 127;
    const int j1 = _mm_cvtsi128_si32(_mm_srli_si128(as_int(v), 8)) & 127;
    const __m128d Nd = _mm_add_pd(v, C.dbNegShifter.pd());
    const __m128d r = _mm_sub_pd(z, _mm_mul_pd(Nd, C.dbL.pd()));
    const __m128i field = _mm_and_si128(_mm_slli_epi64(as_int(v), 45), C.dbExpMask.pi());
    const __m128d M = _mm_or_pd(as_pd(_mm_add_epi64(field, C.dbBias.pi())), sgn);
    __m128d p = C.dbP[3].pd();
    for (int k = 2; k >= 0; --k) p = _mm_add_pd(C.dbP[k].pd(), _mm_mul_pd(r, p));
    p = _mm_add_pd(C.dbOne.pd(), _mm_mul_pd(r, p));
    const double* pw = reinterpret_cast<const double*>(pow2);
    const __m128d E = _mm_mul_pd(_mm_mul_pd(p, M), gather(pw + j0, pw + j1, 0));
    const double* g0 = row_of(b0);
    const double* g1 = row_of(b1);
    const __m128d t = Centred ? _mm_sub_pd(y, gather(g0, g1, 7)) : y;
    __m128d G = gather(g0, g1, Degree);
    for (int k = Degree - 1; k >= 0; --k) G = _mm_add_pd(gather(g0, g1, k), _mm_mul_pd(t, G));
    return _mm_add_pd(base, _mm_mul_pd(G, E));
  }

  // Four lanes with their selections.  Lanes past the selection points,
  // and for A24 those below 2^-27, are computed as x = +0.
  __m128 four(__m128 x) const {
    const __m128i bits = as_int(x);
    const __m128i abs = _mm_and_si128(bits, _mm_set1_epi32(0x7FFFFFFF));
    __m128i off = _mm_cmpgt_epi32(abs, _mm_set1_epi32(int32_t(kErfcSZeroFrom)));
    if (Centred) off = _mm_or_si128(off, _mm_cmplt_epi32(abs, _mm_set1_epi32(0x32000000)));
    const __m128 xc = _mm_andnot_ps(as_ps(off), x);
    alignas(16) uint32_t b[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(b), as_int(xc));
    __m128d lo, hi;
    widen(xc, lo, hi);
    __m128 y = narrow(pair(lo, b[0], b[1]), pair(hi, b[2], b[3]));
    // Unsigned ranges by an offset signed compare.
    const __m128i flip = _mm_set1_epi32(int32_t(0x80000000));
    const __m128i bu = _mm_xor_si128(bits, flip);
    const auto in_range = [&](uint32_t from, uint32_t to) {
      return as_ps(_mm_and_si128(_mm_cmpgt_epi32(bu, _mm_set1_epi32(int32_t((from - 1) ^ 0x80000000u))),
                                 _mm_cmplt_epi32(bu, _mm_set1_epi32(int32_t((to + 1) ^ 0x80000000u)))));
    };
    y = select(in_range(kErfcSTwoFrom, 0xFF800000u), _mm_set1_ps(2.0f), y);
    y = _mm_andnot_ps(in_range(kErfcSZeroFrom, 0x7F800000u), y);
    const __m128 nan = _mm_cmpunord_ps(x, x);
    return select(nan, _mm_add_ps(x, x), y);
  }

  static unsigned underflow_mask(__m128 x) {
    const __m128i bu = _mm_xor_si128(as_int(x), _mm_set1_epi32(int32_t(0x80000000)));
    const __m128i ge = _mm_cmpgt_epi32(bu, _mm_set1_epi32(int32_t((kErfcSUnderflowFrom - 1) ^ 0x80000000u)));
    const __m128i le = _mm_cmplt_epi32(bu, _mm_set1_epi32(int32_t(0x7F800000u ^ 0x80000000u)));
    return unsigned(_mm_movemask_ps(as_ps(_mm_and_si128(ge, le))));
  }

  struct Kernel {
    const ErfcS& k;
    const float* src;
    float* dst;
    CallState<lux32f>& call;
    unsigned block(int i) {
      const __m128 x = load4(src + i);
      const unsigned mask = underflow_mask(x);
      store4(dst + i, k.four(x));
      return mask;
    }
    unsigned tail(int i) {
      const __m128 x = load1(src + i);
      const unsigned mask = underflow_mask(x) & 1;
      store1(dst + i, k.four(x));
      return mask;
    }
    void offend(int i) { call.warn(luxWarnUnderflow, i); }
  };

  luxStatus run(const lux32f* src, lux32f* dst, int len) const {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    CallState<lux32f> call(src, src, dst, dst);
    Kernel kern{*this, src, dst, call};
    run_masked<4>(len, kern);
    return call.status();
  }
};

}  // namespace lux::erf
