// The binary32 Sinh and Cosh kernels within 8 ulp (A21) and 2^13 ulp (A11):
// the layout of their constant table (each unit holds its own copy) and the
// arithmetic.
//
// a = |x| = N ln 2/64 + r, k = N >> 6, j = N & 63; P = 2^(k-1) RNf(2^(j/64))
// and M = 2^(-k-1) RNf(2^(-j/64)), the two exponents built from N as
// integers.  M is cut to zero above a = 16, where it is below P's last bit.
//   A21:  cosh a = r (P - M) + ((P + M) + c2 r^2 (P + M))
//         sinh a = r (P + M) + ((P - M) + c2 r^2 (P - M))
//   A11:  cosh a = r (P - M) + (P + M),   sinh a = r (P + M) + (P - M)
// Sinh A21 takes a + d3 a^3 + d5 a^5 below 0.216, where P - M cancels.
// Above 89.41056060791016 2^(k-1) has no exponent field: P is built as
// 2^(k-5) 2^(j/64) and the result scaled by 16.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/hyp_frame.h"

namespace lux::ssinhcosh_la {

using lux::row32;
using lux::Row32;

// bits(a) above which P is scaled down by 2^4 (a > 89.41056060791016).
inline constexpr uint32_t kTopZoneBits = 0x42B2D235;
// bits(a) above which sinh and cosh overflow (a > 89.41598510742188).
inline constexpr uint32_t kLastFiniteBits = 0x42B2D4FC;
// bits(a) of 16.0: from here M is zero.
inline constexpr uint32_t kMCutBits = 0x41800000;
// Sinh A21: below bits(a) = 0x3E5D2F1B (a < 0.2160000056028366) the odd
// polynomial.
inline constexpr uint32_t kSmallBits = 0x3E5D2F1B;
inline constexpr uint32_t kInfBits = 0x7F800000;
inline constexpr uint32_t kSignBit = 0x80000000;

struct Table {
  Row32 flR;          // 64/ln 2
  Row32 flShifter;    // 1.5*2^23: bits(a*R + S) hold N in the low bits
  Row32 flL1;         // A21: ln 2/64 to 16 bits (Nf*L1 exact); A11: ln 2/64 rounded
  Row32 flL2;         // A21: ln 2/64 - L1; A11: unused
  Row32 flC2;         // A21: cosh r - 1 ~ c2 r^2 on |r| <= ln 2/128
  Row32 flD3, flD5;   // Sinh A21: sinh a ~ a + d3 a^3 + d5 a^5 on [0, 0.216)
  Row32 flBias;       // 126*64: the exponent field of 2^(k-1) from bits(t)
  Row32 flMExp;       // 0x7E000000 - EP's bits is the exponent of 2^(-k-1)
  Row32 flMCut;       // bits(16.0)
  Row32 flExpMask;    // exponent field
  Row32 flTopDrop;    // 4 exponent units
  Row32 flSixteen;    // 16.0
  Row32 flMaxOver16;  // FLT_MAX/16
  Row32 flAbsMask;    // all but the sign
  // (RNf(2^(j/64)), RNf(2^(-j/64))).
  alignas(16) uint32_t sSinhCosh_LA_Table[64][2];
};

constexpr Table constants(bool a21) {
  return {
      .flR = row32(0x42B8AA3B),                      // 92.33248138427734
      .flShifter = row32(0x4B400000),                // 12582912.0
      .flL1 = row32(a21 ? 0x3C316000 : 0x3C317218),  // 0.01082611083984375 : 0.010830424726009369
      .flL2 = row32(a21 ? 0x3690BFBF : 0),           // 4.313856607041089e-06
      .flC2 = row32(0x3F000015),                     // 0.5000012516975403
      .flD3 = row32(0x3E2AAAAB),                     // 0.1666666716337204
      .flD5 = row32(0x3C088889),                     // 0.008333333767950535
      .flBias = row32(0x00001F80),                   // 126*64
      .flMExp = row32(0x7E000000),                   //
      .flMCut = row32(kMCutBits),                    // 16.0
      .flExpMask = row32(0x7F800000),                //
      .flTopDrop = row32(0x02000000),                //
      .flSixteen = row32(0x41800000),                // 16.0
      .flMaxOver16 = row32(0x7D7FFFFF),              // 2.1267647e+37
      .flAbsMask = row32(0x7FFFFFFF),                //
      .sSinhCosh_LA_Table =
          {
#include "hyperbolic/ssinhcosh_la_table.inc"
          },
  };
}

// The main formula on four lanes of a; `top` lanes (all ones) take P
// lowered by 2^4 (the caller multiplies by 16).
template <bool kSinh, bool kA21>
inline __m128 main_quad(__m128 a, __m128i top, const Table& T) {
  const __m128 t = _mm_add_ps(_mm_mul_ps(a, T.flR.ps()), T.flShifter.ps());
  const __m128 nn = _mm_sub_ps(T.flShifter.ps(), t);  // -N
  __m128 r = _mm_add_ps(a, _mm_mul_ps(nn, T.flL1.ps()));
  if constexpr (kA21) r = _mm_add_ps(r, _mm_mul_ps(nn, T.flL2.ps()));
  const __m128i tb = as_int(t);
  __m128i ep = _mm_and_si128(_mm_slli_epi32(_mm_add_epi32(tb, T.flBias.pi()), 17), T.flExpMask.pi());
  ep = _mm_sub_epi32(ep, _mm_and_si128(top, T.flTopDrop.pi()));
  const __m128i small = _mm_cmplt_epi32(as_int(a), T.flMCut.pi());
  const __m128i em = _mm_and_si128(_mm_sub_epi32(T.flMExp.pi(), ep), small);
  const int j0 = _mm_cvtsi128_si32(tb) & 63, j1 = _mm_extract_epi16(tb, 2) & 63;
  const int j2 = _mm_extract_epi16(tb, 4) & 63, j3 = _mm_extract_epi16(tb, 6) & 63;
  const auto row = [&](int j) {
    return _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(T.sSinhCosh_LA_Table[j])));
  };
  // (T0, T'0, T1, T'1) and (T2, T'2, T3, T'3), then split.
  const __m128 r01 = _mm_unpacklo_ps(row(j0), row(j1));  // T0 T1 T'0 T'1
  const __m128 r23 = _mm_unpacklo_ps(row(j2), row(j3));  // T2 T3 T'2 T'3
  const __m128 tp = _mm_movelh_ps(r01, r23);
  const __m128 tm = _mm_movehl_ps(r23, r01);
  const __m128 p = _mm_mul_ps(tp, as_ps(ep));
  const __m128 m = _mm_mul_ps(tm, as_ps(em));
  const __m128 sm = _mm_add_ps(p, m);
  const __m128 dm = _mm_sub_ps(p, m);
  const __m128 even = kSinh ? dm : sm;  // the factor of 1 + C
  const __m128 odd = kSinh ? sm : dm;   // the factor of S
  if constexpr (kA21) {
    const __m128 c = _mm_mul_ps(T.flC2.ps(), _mm_mul_ps(r, r));
    return _mm_add_ps(_mm_mul_ps(r, odd), _mm_add_ps(even, _mm_mul_ps(c, even)));
  } else if constexpr (kSinh) {
    return _mm_add_ps(_mm_mul_ps(odd, r), even);
  } else {
    return _mm_add_ps(_mm_mul_ps(r, odd), even);
  }
}

// a + d3 a^3 + d5 a^5 as (d5 z + d3)(z a) + a, z = a^2.
inline __m128 small_quad(__m128 a, const Table& T) {
  const __m128 z = _mm_mul_ps(a, a);
  return _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(T.flD5.ps(), z), T.flD3.ps()), _mm_mul_ps(z, a)), a);
}

template <bool kSinh, bool kA21, const Table& T>
struct Tier {
  using Elem = lux32f;
  static constexpr int kBlock = 4;
  static constexpr bool kSmallPath = kSinh && kA21;

  // Lanes above the top-zone bound go to the lane routine and are set to 0
  // here, so that they raise no flag; Sinh A21's small lanes are blended in.
  static unsigned block(const float* x, float* y, float* keep) {
    const __m128 xv = load4(x);
    const __m128 a = _mm_and_ps(xv, T.flAbsMask.ps());
    const __m128i high = _mm_cmpgt_epi32(as_int(a), _mm_set1_epi32(int32_t(kTopZoneBits)));
    const __m128 safe = _mm_andnot_ps(as_ps(high), a);
    __m128 v;
    if constexpr (kSmallPath) {
      const __m128i small = _mm_cmplt_epi32(as_int(a), _mm_set1_epi32(int32_t(kSmallBits)));
      const int smalls = _mm_movemask_ps(as_ps(small));
      if (smalls == 15) {
        v = small_quad(a, T);
      } else {
        v = main_quad<kSinh, kA21>(_mm_andnot_ps(as_ps(small), safe), _mm_setzero_si128(), T);
        if (smalls) v = _mm_or_ps(_mm_and_ps(as_ps(small), small_quad(a, T)), _mm_andnot_ps(as_ps(small), v));
      }
    } else {
      v = main_quad<kSinh, kA21>(safe, _mm_setzero_si128(), T);
    }
    if constexpr (kSinh) v = _mm_or_ps(v, _mm_andnot_ps(T.flAbsMask.ps(), xv));
    store4(y, v);
    return hyp::keep_if_any(high, xv, keep);
  }

  // A lane above the top-zone bound.
  static void lane(const float* x, float* y, CallState<lux32f>& call, int i) {
    const uint32_t bits = hyp::word(x);
    const uint32_t sign = kSinh ? bits & kSignBit : 0;
    const __m128 a = _mm_and_ps(_mm_load1_ps(x), T.flAbsMask.ps());
    float v;
    if ((bits & ~kSignBit) > kLastFiniteBits) {
      if ((bits & ~kSignBit) >= kInfBits) {
        store1(&v, _mm_add_ss(a, a));  // +Inf, or the NaN quieted
      } else {
        hyp::store_bits(y, kInfBits | sign);
        call.warn(luxWarnOverflow, i);
        return;
      }
    } else {
      // The last floats below overflow have results within an ulp or so of
      // FLT_MAX: the formula's own error must not push them to infinity, so
      // the unscaled value is held to FLT_MAX/16.
      const __m128 w = main_quad<kSinh, kA21>(a, _mm_set1_epi32(-1), T);
      store1(&v, _mm_mul_ss(_mm_min_ss(w, T.flMaxOver16.ps()), T.flSixteen.ps()));
    }
    hyp::store_bits(y, hyp::word(&v) | sign);
  }
};

}  // namespace lux::ssinhcosh_la
