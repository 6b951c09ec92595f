// The binary64 Sinh and Cosh kernels within 8 ulp (A50; A26 runs the same
// code on an equal table): the layout of their constant tables (each unit
// holds its own copy) and the arithmetic.
//
// a = |x| = N ln 2/128 + r, k = N >> 7, j = N & 127; P = 2^(k-1) 2^(j/128)
// and M = 2^(-k-1) 2^(-j/128) are one rounded table word each under an
// exponent built from N and from -N (the 64-bit negative of the shifter
// sum); row 128 - j holds twice 2^(-j/128), which makes up for floor(-N/128)
// being one lower when j != 0, and row 128 is 1.0 for j = 0.
//   sinh a = (P - M)(1 + C) + (P + M) S,   cosh a = (P + M)(1 + C) + (P - M) S
// with S = sinh r and C = cosh r - 1.  Beyond 708.39892578125, M is dropped
// and P is built as 2^(k-4) 2^(j/128), the result scaled by 8 at the end.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/hyp_frame.h"

namespace lux::dsinhcosh_la {

using lux::row64;
using lux::Row64;

// hi32(a) at which the top zone starts: |x| >= 708.39892578125.
inline constexpr uint32_t kTopZoneHigh = 0x40862331;
// Sinh: below hi32(a) = 0x3FC00000 (|x| < 0.125) the near-zero path.
inline constexpr uint32_t kNearZeroHigh = 0x3FC00000;
// 710.475860073944: the first double whose sinh and cosh overflow.
inline constexpr uint64_t kOverflowBound = 0x408633CE8FB9F87E;
inline constexpr uint32_t kInfHigh = 0x7FF00000;
inline constexpr uint64_t kPlusInf = 0x7FF0000000000000;
inline constexpr uint64_t kSignBit = 0x8000000000000000;

// What both functions' tables begin with.
struct Reduction {
  Row64 dbR;        // 128/ln 2
  Row64 dbShifter;  // 1.5*2^52
  Row64 dbL1;       // ln 2/128 to 32 bits: Nf*L1 exact for N < 2^21
  Row64 dbL2;       // ln 2/128 - L1
  Row64 dbBias;     // 1022*128 in the low word: exponent fields of 2^(k-1) and 2^(-k-1)
  Row64 dbTopBias;  // 1019*128: the exponent field of 2^(k-4)
  Row64 dbExpMask;  // exponent field
  Row64 dbAbsMask;  // all but the sign
  Row64 dbEight;    // 8.0, the top zone's final factor
};

struct SinhTable {
  Reduction red;
  // The main path's polynomial: 1/120, 1/6, 1/24, 1/2 (Taylor, rounded).
  Row64 db120, db6, db24, dbHalf;
  // The near-zero path: Taylor to y^7 and y^6 on |y| < 1/32, and 1.0.
  Row64 dbNz6, dbNzHalf, dbNz120, dbNz24, dbNz5040, dbNz720, dbOne;
  Row64 dbTwo11;   // 2048.0: a + 2048 truncated to 1/32 by a mask
  Row64 dbNzMask;  // sign, exponent and the 16 leading fraction bits
  // RN(2^(j/128)) for j = 0..127; row 128 = 1.0.
  alignas(16) uint64_t dSinhCosh_LA_Table[129];
  // (RN(cosh(i/32)), RN(sinh(i/32))), i = 0..31; rows 0 to 3 are reached.
  alignas(16) uint64_t dSinh_Nz_Table[32][2];
};

struct CoshTable {
  Reduction red;
  Row64 dbC4, dbC3, dbC2;  // those of the binary64 Exp within 8 ulp: e^r - 1 to r^4
  alignas(16) uint64_t dSinhCosh_LA_Table[129];
};

// The constants, for the units' own copies.
constexpr Reduction reduction_constants() {
  return {
      .dbR = row64(0x40671547652B82FE),        // 184.6649652337873
      .dbShifter = row64(0x4338000000000000),  // 6755399441055744.0
      .dbL1 = row64(0x3F762E42FEE00000),       // 0.00541521234663378
      .dbL2 = row64(0x3D7A39EF35793C76),       // 1.4907929134926466e-12
      .dbBias = row64(0x000000000001FF00),     // 1022*128
      .dbTopBias = row64(0x000000000001FD80),  // 1019*128
      .dbExpMask = row64(0x7FF0000000000000),  //
      .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF),  //
      .dbEight = row64(0x4020000000000000),    // 8.0
  };
}

constexpr SinhTable sinh_constants() {
  return {
      .red = reduction_constants(),
      .db120 = row64(0x3F81111111111111),     // 1/120
      .db6 = row64(0x3FC5555555555555),       // 1/6
      .db24 = row64(0x3FA5555555555555),      // 1/24
      .dbHalf = row64(0x3FE0000000000000),    // 0.5
      .dbNz6 = row64(0x3FC5555555555555),     // 1/6
      .dbNzHalf = row64(0x3FE0000000000000),  // 1/2
      .dbNz120 = row64(0x3F81111111111111),   // 1/120
      .dbNz24 = row64(0x3FA5555555555555),    // 1/24
      .dbNz5040 = row64(0x3F2A01A01A01A01A),  // 1/5040
      .dbNz720 = row64(0x3F56C16C16C16C17),   // 1/720
      .dbOne = row64(0x3FF0000000000000),     // 1.0
      .dbTwo11 = row64(0x40A0000000000000),   // 2048.0
      .dbNzMask = row64(0x7FFFFFF000000000),  // 2048 + a keeps its multiple of 1/32
      .dSinhCosh_LA_Table =
          {
#include "hyperbolic/dsinhcosh_la_table.inc"
          },
      .dSinh_Nz_Table =
          {
#include "hyperbolic/dsinh_nz_table.inc"
          },
  };
}

constexpr CoshTable cosh_constants() {
  return {
      .red = reduction_constants(),
      .dbC4 = row64(0x3FA55555C2A9C0FA),  // 0.041666679394326736
      .dbC3 = row64(0x3FC55555B7BAE976),  // 0.16666671248624326
      .dbC2 = row64(0x3FDFFFFFFFFFFEB0),  // 0.49999999999998135
      .dSinhCosh_LA_Table =
          {
#include "hyperbolic/dsinhcosh_la_table.inc"
          },
  };
}

struct Reduced {
  __m128d r, p, m;
};

// r, P and M of a pair; `top` lanes (all ones) take P = 2^(k-4) 2^(j/128)
// and M = 0.
inline Reduced reduce(__m128d a, __m128i top, const Reduction& T, const uint64_t* table) {
  const __m128d t = _mm_add_pd(_mm_mul_pd(a, T.dbR.pd()), T.dbShifter.pd());
  const __m128d nf = _mm_sub_pd(t, T.dbShifter.pd());
  const __m128d r = _mm_sub_pd(_mm_sub_pd(a, _mm_mul_pd(nf, T.dbL1.pd())), _mm_mul_pd(nf, T.dbL2.pd()));
  const __m128i tn = as_int(t);
  const __m128i neg = _mm_sub_epi64(_mm_setzero_si128(), tn);
  const __m128i bias =
      _mm_or_si128(_mm_and_si128(top, T.dbTopBias.pi()), _mm_andnot_si128(top, T.dbBias.pi()));
  // Biased N in bits 7..17 of the low word: a left shift by 45 puts them in
  // the exponent field, the mask drops j and the rest.
  const __m128i ep = _mm_and_si128(_mm_slli_epi64(_mm_add_epi32(tn, bias), 45), T.dbExpMask.pi());
  const __m128i em = _mm_andnot_si128(
      top, _mm_and_si128(_mm_slli_epi64(_mm_add_epi32(neg, T.dbBias.pi()), 45), T.dbExpMask.pi()));
  const int j0 = _mm_cvtsi128_si32(tn) & 127;
  const int j1 = _mm_cvtsi128_si32(_mm_shuffle_epi32(tn, _MM_SHUFFLE(3, 2, 3, 2))) & 127;
  const auto word = [&](int j) { return _mm_load_sd(reinterpret_cast<const double*>(table + j)); };
  const __m128d tp = _mm_unpacklo_pd(word(j0), word(j1));
  const __m128d tm = _mm_unpacklo_pd(word(128 - j0), word(128 - j1));
  return {r, _mm_mul_pd(tp, as_pd(ep)), _mm_mul_pd(tm, as_pd(em))};
}

inline __m128d sinh_main(__m128d a, __m128i top, const SinhTable& T) {
  const Reduced d = reduce(a, top, T.red, T.dSinhCosh_LA_Table);
  const __m128d s = _mm_mul_pd(d.r, d.r);
  const __m128d dm = _mm_sub_pd(d.p, d.m);
  const __m128d sm = _mm_add_pd(d.p, d.m);
  const __m128d o = _mm_mul_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(s, T.db120.pd()), T.db6.pd()), s), d.r);
  const __m128d e = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(s, T.db24.pd()), T.dbHalf.pd()), s);
  return _mm_add_pd(_mm_add_pd(_mm_mul_pd(_mm_add_pd(d.r, o), sm), _mm_mul_pd(e, dm)), dm);
}

inline __m128d cosh_main(__m128d a, __m128i top, const CoshTable& T) {
  const Reduced d = reduce(a, top, T.red, T.dSinhCosh_LA_Table);
  const __m128d s = _mm_mul_pd(d.r, d.r);
  const __m128d dm = _mm_sub_pd(d.p, d.m);
  const __m128d sm = _mm_add_pd(d.p, d.m);
  const __m128d rd = _mm_mul_pd(d.r, dm);
  const __m128d e = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.dbC4.pd(), s), T.dbC2.pd()), s);
  return _mm_add_pd(_mm_add_pd(_mm_mul_pd(e, sm), sm),
                    _mm_add_pd(_mm_mul_pd(_mm_mul_pd(T.dbC3.pd(), s), rd), rd));
}

// sinh a for a < 0.125: a = b + y with b = a truncated to a multiple of 1/32,
// sinh a = cosh y sinh b + sinh y cosh b, both of y by Taylor (|y| < 1/32).
inline __m128d sinh_near_zero(__m128d a, const SinhTable& T) {
  const __m128d cleared = as_pd(_mm_and_si128(as_int(a), _mm_set_epi32(-1, 0, -1, 0)));
  const __m128d b = _mm_sub_sd(
      as_pd(_mm_and_si128(as_int(_mm_add_sd(cleared, T.dbTwo11.pd())), T.dbNzMask.pi())), T.dbTwo11.pd());
  const int i = _mm_cvtsd_si32(_mm_mul_sd(b, _mm_set_sd(32.0)));
  const __m128d y = _mm_sub_sd(a, b);
  const __m128d s = _mm_mul_sd(y, y);
  const __m128d sy = _mm_add_sd(
      y, _mm_mul_sd(_mm_add_sd(_mm_mul_sd(_mm_add_sd(_mm_mul_sd(s, T.dbNz5040.pd()), T.dbNz120.pd()), s),
                               T.dbNz6.pd()),
                    _mm_mul_sd(s, y)));
  const __m128d cy = _mm_add_sd(
      T.dbOne.pd(),
      _mm_mul_sd(_mm_add_sd(_mm_mul_sd(_mm_add_sd(_mm_mul_sd(s, T.dbNz720.pd()), T.dbNz24.pd()), s),
                            T.dbNzHalf.pd()),
                 s));
  const __m128d cb = _mm_load_sd(reinterpret_cast<const double*>(&T.dSinh_Nz_Table[i][0]));
  const __m128d sb = _mm_load_sd(reinterpret_cast<const double*>(&T.dSinh_Nz_Table[i][1]));
  return _mm_add_sd(_mm_mul_sd(cy, sb), _mm_mul_sd(sy, cb));
}

// The four lanes, and all ones in those outside [low, bound) by their high
// words; a block with such lanes keeps its inputs.
inline __m128i block_outside(const double* x, double* keep, uint32_t low, uint32_t bound, __m128d* xa,
                             __m128d* xb) {
  *xa = load2(x);
  *xb = load2(x + 2);
  const __m128i hi = as_int(_mm_shuffle_ps(_mm_castpd_ps(*xa), _mm_castpd_ps(*xb), _MM_SHUFFLE(3, 1, 3, 1)));
  const __m128i m = hyp::outside(hi, low, bound);
  if (__builtin_expect(hyp::lane_mask(m) != 0, 0)) {
    store2(keep, *xa);
    store2(keep + 2, *xb);
  }
  return m;
}

template <const SinhTable& T>
struct Sinh {
  using Elem = lux64f;
  static constexpr int kBlock = 4;

  // Lanes off the main path are set to 0 before the arithmetic (no flag is
  // raised there); the lane routine gives their value.
  static unsigned block(const double* x, double* y, double* keep) {
    __m128d xa, xb;
    const __m128i m = block_outside(x, keep, kNearZeroHigh, kTopZoneHigh, &xa, &xb);
    const __m128i none = _mm_setzero_si128();
    const __m128d abs = T.red.dbAbsMask.pd();
    const __m128d ra =
        sinh_main(_mm_and_pd(xa, _mm_andnot_pd(as_pd(_mm_unpacklo_epi32(m, m)), abs)), none, T);
    const __m128d rb =
        sinh_main(_mm_and_pd(xb, _mm_andnot_pd(as_pd(_mm_unpackhi_epi32(m, m)), abs)), none, T);
    store2(y, _mm_or_pd(ra, _mm_andnot_pd(abs, xa)));
    store2(y + 2, _mm_or_pd(rb, _mm_andnot_pd(abs, xb)));
    return hyp::lane_mask(m);
  }

  static void lane(const double* x, double* y, CallState<lux64f>& call, int i) {
    const uint64_t bits = hyp::word(x);
    const uint64_t abs = bits & ~kSignBit;
    const uint32_t hi = uint32_t(abs >> 32);
    const __m128d a = _mm_and_pd(_mm_load1_pd(x), T.red.dbAbsMask.pd());
    double v;
    if (hi >= kInfHigh) {  // NaN or +-Inf: x itself, all its bits
      hyp::store_bits(y, bits);
      return;
    }
    if (abs >= kOverflowBound) {
      hyp::store_bits(y, kPlusInf | (bits & kSignBit));
      call.warn(luxWarnOverflow, i);
      return;
    }
    if (hi < kNearZeroHigh) {
      store1(&v, sinh_near_zero(a, T));
    } else if (hi >= kTopZoneHigh) {
      store1(&v, _mm_mul_sd(sinh_main(a, _mm_set1_epi32(-1), T), T.red.dbEight.pd()));
    } else {
      store1(&v, sinh_main(a, _mm_setzero_si128(), T));
    }
    hyp::store_bits(y, hyp::word(&v) | (bits & kSignBit));
  }
};

template <const CoshTable& T>
struct Cosh {
  using Elem = lux64f;
  static constexpr int kBlock = 4;

  static unsigned block(const double* x, double* y, double* keep) {
    __m128d xa, xb;
    const __m128i m = block_outside(x, keep, 0, kTopZoneHigh, &xa, &xb);
    const __m128i none = _mm_setzero_si128();
    const __m128d abs = T.red.dbAbsMask.pd();
    store2(y, cosh_main(_mm_and_pd(xa, _mm_andnot_pd(as_pd(_mm_unpacklo_epi32(m, m)), abs)), none, T));
    store2(y + 2, cosh_main(_mm_and_pd(xb, _mm_andnot_pd(as_pd(_mm_unpackhi_epi32(m, m)), abs)), none, T));
    return hyp::lane_mask(m);
  }

  static void lane(const double* x, double* y, CallState<lux64f>& call, int i) {
    const uint64_t abs = hyp::word(x) & ~kSignBit;
    const __m128d a = _mm_and_pd(_mm_load1_pd(x), T.red.dbAbsMask.pd());
    if (uint32_t(abs >> 32) >= kInfHigh) {  // |x| quieted: a NaN keeps its payload, +Inf stays
      store1(y, _mm_add_sd(a, a));
      return;
    }
    if (abs >= kOverflowBound) {
      hyp::store_bits(y, kPlusInf);
      call.warn(luxWarnOverflow, i);
      return;
    }
    if (uint32_t(abs >> 32) >= kTopZoneHigh)
      store1(y, _mm_mul_sd(cosh_main(a, _mm_set1_epi32(-1), T), T.red.dbEight.pd()));
    else
      store1(y, cosh_main(a, _mm_setzero_si128(), T));
  }
};

}  // namespace lux::dsinhcosh_la
