// The binary64 cube-root kernel behind Cbrt, InvCbrt and Pow2o3: two lanes
// at a time, the exponent divided by three with integer operations, the
// significand through a 32-entry table and a short polynomial.
//
// For x = 2^(e - 1023) * z, z in [1, 2), e = 3q + rem:
//   cbrt(x)  = 2^(q - 341) * (2^rem * z)^(1/3)
//   1/cbrt(x) = 2^(341 - q) * (2^rem * z)^(-1/3)
// The top five significand bits pick c_i, the midpoint of the i-th of 32
// intervals of [1, 2); r = (z - c_i)/c_i, |r| <= 1/64, is made from the
// exact difference and a stored -1/c_i.  T + TL holds (2^rem * c_i)^(+-1/3)
// to about 2^-120, so y = T*s*(1 + r*P(r)) with s = 2^(q - 341) or
// 2^(341 - q), and P approximates ((1 + r)^(+-1/3) - 1)/r.  The power of two
// s carries the sign of x, so T*s and TL*s are exact and the small terms are
// summed first: y = (P*(Ts*r) + Tls) + Ts.
// floor(e/3) = (e*0x1556) >> 14 for every e in 1..0x7FE.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux {

// What a unit finishes its lanes with.
enum class CbrtFinish {
  kRoot,           // y (Cbrt, InvCbrt)
  kRootSquared,    // y*y, y without the low table part (Pow2o3 fast tier)
  kSquareTwoWord,  // the square of y carried as head and rounding error
};

// Rows every unit of this kernel holds (the unit adds dRcp, dT and its
// polynomial dbPoly[U::kDegree]).
#define LUX_CBRT64_ROWS                                                                       \
  lux::Row64 dbSigMask = lux::row64(0x000FFFFFFFFFFFFF);                                      \
  lux::Row64 dbMinusOne = lux::row64(0xBFF0000000000000);   /* -z: sign and exponent of -1 */ \
  lux::Row64 dbTopSixMask = lux::row64(0x000FC00000000000); /* top six significand bits */    \
  lux::Row64 dbMinusMid = lux::row64(0xBFF0400000000000);   /* -c_i: sixth bit forced to 1 */ \
  lux::Row64 dbTwo996 = lux::row64(0x7E30000000000000);     /* denormal scale 2^996 */        \
  lux::Row64 dbSplit27 = lux::row64(0xFFFFFFFFF8000000);    /* 26 significand bits */         \
  lux::Row32 flExpMask = lux::row32(0x7FF00000);                                              \
  lux::Row32 flExpOne = lux::row32(0x00100000);                                               \
  lux::Row32 flExpTop = lux::row32(0x7FE00000);                                               \
  lux::Row64 dbAbsMask = lux::row64(0x7FFFFFFFFFFFFFFF);                                      \
  lux::Row64 dbInf = lux::row64(0x7FF0000000000000);                                          \
  lux::Row64 dbExpField = lux::row64(0x7FF);                                                  \
  lux::Row64 dbThirdMul = lux::row64(0x1556);    /* floor(e/3) = (e*0x1556) >> 14 */          \
  lux::Row64 dbRcpOffMask = lux::row64(31 << 3); /* 8*i */

// U, the unit:
//   U::tab         its table: the rows above, dRcp[32] (RCP bits), dT[96][2]
//                  ({T, TL} bits), dbPoly[U::kDegree] (Horner, innermost
//                  first) and dbBack (the denormal result's factor, 2^-332
//                  or 2^332);
//   U::kInverse    1/cbrt (exponent field 0x554 - q) or cbrt (0x2AA + q),
//                  with dbScaleBias 0x554 or 0x2AA;
//   U::kWithLow    whether TL enters the sum;
//   U::kFinish     the finish above.
template <class U>
struct Cbrt64 {
  // The arithmetic of two normal lanes (any sign).  The exponent's third,
  // the scale and the table offsets are made in the vector unit, one
  // binary64 lane a 64-bit integer lane; only the two row addresses leave it.
  static __m128d core(__m128d x) {
    const auto& t = U::tab;
    const __m128i xi = as_int(x);
    const __m128i e = _mm_and_si128(_mm_srli_epi64(xi, 52), t.dbExpField.pi());
    const __m128i q = _mm_srli_epi64(_mm_mul_epu32(e, t.dbThirdMul.pi()), 14);
    const __m128i rem = _mm_sub_epi64(e, _mm_add_epi64(_mm_add_epi64(q, q), q));
    const __m128i field =
        U::kInverse ? _mm_sub_epi64(t.dbScaleBias.pi(), q) : _mm_add_epi64(q, t.dbScaleBias.pi());
    const __m128d s = as_pd(_mm_or_si128(_mm_slli_epi64(field, 52), _mm_andnot_si128(t.dbAbsMask.pi(), xi)));
    // i = top five significand bits: byte offsets 8*i into RCP and
    // 16*(32*rem + i) into the rows of {T, TL}.
    const __m128i i8 = _mm_and_si128(_mm_srli_epi64(xi, 44), t.dbRcpOffMask.pi());
    const __m128i off = _mm_unpacklo_epi64(i8, _mm_or_si128(_mm_slli_epi64(rem, 9), _mm_slli_epi64(i8, 1)));
    const __m128i offh = _mm_unpackhi_epi64(i8, _mm_or_si128(_mm_slli_epi64(rem, 9), _mm_slli_epi64(i8, 1)));
    const char* rcp = reinterpret_cast<const char*>(t.dRcp);
    const char* rows = reinterpret_cast<const char*>(t.dT);
    const int r0 = _mm_cvtsi128_si32(off), r1 = _mm_cvtsi128_si32(offh);
    const int t0 = _mm_cvtsi128_si32(_mm_srli_si128(off, 8)), t1 = _mm_cvtsi128_si32(_mm_srli_si128(offh, 8));
    const __m128d rc = _mm_loadh_pd(_mm_load_sd(reinterpret_cast<const double*>(rcp + r0)),
                                    reinterpret_cast<const double*>(rcp + r1));
    const __m128d row0 = _mm_load_pd(reinterpret_cast<const double*>(rows + t0));
    const __m128d row1 = _mm_load_pd(reinterpret_cast<const double*>(rows + t1));
    const __m128d tt = _mm_unpacklo_pd(row0, row1), tl = _mm_unpackhi_pd(row0, row1);

    const __m128d negz = as_pd(_mm_or_si128(_mm_and_si128(xi, t.dbSigMask.pi()), t.dbMinusOne.pi()));
    const __m128d negc = as_pd(_mm_or_si128(_mm_and_si128(xi, t.dbTopSixMask.pi()), t.dbMinusMid.pi()));
    const __m128d r = _mm_mul_pd(rc, _mm_sub_pd(negz, negc));
    const __m128d ts = _mm_mul_pd(tt, s);
    __m128d p = t.dbPoly[0].pd();
    for (int k = 1; k < U::kDegree; ++k) p = _mm_add_pd(_mm_mul_pd(p, r), t.dbPoly[k].pd());
    const __m128d pt = _mm_mul_pd(p, _mm_mul_pd(ts, r));
    if constexpr (U::kFinish == CbrtFinish::kSquareTwoWord) {
      // (Yh + L)^2 with Y + Err = A + Ts exactly and Yh of 26 bits, so that
      // Yh*Yh is exact and comes last.
      const __m128d a = _mm_add_pd(pt, _mm_mul_pd(tl, s));
      const __m128d y = _mm_add_pd(a, ts);
      const __m128d d = _mm_sub_pd(ts, y);
      const __m128d b = _mm_add_pd(y, d);
      const __m128d err = _mm_add_pd(_mm_add_pd(d, a), _mm_sub_pd(ts, b));
      const __m128d yh = _mm_and_pd(y, t.dbSplit27.pd());
      const __m128d l = _mm_add_pd(err, _mm_sub_pd(y, yh));
      return _mm_add_pd(_mm_add_pd(_mm_mul_pd(_mm_add_pd(yh, l), l), _mm_mul_pd(l, yh)), _mm_mul_pd(yh, yh));
    } else {
      const __m128d y = U::kWithLow ? _mm_add_pd(_mm_add_pd(pt, _mm_mul_pd(tl, s)), ts) : _mm_add_pd(pt, ts);
      if constexpr (U::kFinish == CbrtFinish::kRootSquared) return _mm_mul_pd(y, y);
      return y;
    }
  }

  // Lanes of two normal values: w = (((hi & 0x7FF00000) - 0x00100000) &
  // 0x7FF00000) - 0x7FE00000 is negative exactly for exponent fields 1..0x7FE.
  static bool pair_normal(__m128d x) {
    const auto& t = U::tab;
    const __m128i e = _mm_and_si128(high_words(x), t.flExpMask.pi());
    const __m128i w =
        _mm_sub_epi32(_mm_and_si128(_mm_sub_epi32(e, t.flExpOne.pi()), t.flExpMask.pi()), t.flExpTop.pi());
    return (_mm_movemask_ps(as_ps(w)) & 3) == 3;
  }
};

// The block-redo kernel and its lane routine.
template <class U>
struct Cbrt64Kernel {
  const double* src;
  double* dst;
  CallState<double>& call;

  // Two pairs a block, for two independent chains in flight; a pair that
  // fails sends both through the lane routine, whose arithmetic on normal
  // lanes is the same, so a lane's bits do not depend on its block.
  bool block(int i) {
    const __m128d x0 = load2(src + i), x1 = load2(src + i + 2);
    if (__builtin_expect(!(Cbrt64<U>::pair_normal(x0) & Cbrt64<U>::pair_normal(x1)), 0)) return false;
    const __m128d y0 = Cbrt64<U>::core(x0), y1 = Cbrt64<U>::core(x1);
    store2(dst + i, y0);
    store2(dst + i + 2, y1);
    return true;
  }

  // One lane of any value, by its exponent field; the lane in both places of
  // the vector so the other computes nothing of its own.
  void lane(int i) {
    const auto& t = U::tab;
    const __m128d x = _mm_loaddup_pd(src + i);
    const uint64_t b = __builtin_bit_cast(uint64_t, src[i]);
    const uint64_t mag = b & 0x7FFFFFFFFFFFFFFFull;
    const __m128d sign = as_pd(_mm_andnot_si128(t.dbAbsMask.pi(), as_int(x)));
    __m128d y;
    bool pole = false;
    if (mag >= 0x0010000000000000ull && mag < 0x7FF0000000000000ull) {
      y = Cbrt64<U>::core(x);
    } else if (mag != 0 && mag < 0x0010000000000000ull) {
      // The scale's exponent is a multiple of three: exact through the root.
      y = _mm_mul_pd(Cbrt64<U>::core(_mm_mul_pd(x, t.dbTwo996.pd())), t.dbBack.pd());
      if constexpr (U::kFinish == CbrtFinish::kSquareTwoWord) y = _mm_mul_pd(y, t.dbBack.pd());
      if constexpr (U::kFinish == CbrtFinish::kRootSquared) y = _mm_mul_pd(y, t.dbBack.pd());
    } else if (mag == 0) {
      if constexpr (U::kInverse) {
        y = _mm_or_pd(t.dbInf.pd(), sign);
        pole = true;
      } else if constexpr (U::kFinish == CbrtFinish::kRootSquared) {
        y = _mm_mul_pd(x, x);
      } else {
        y = x;
      }
    } else if (mag == 0x7FF0000000000000ull) {
      if constexpr (U::kInverse)
        y = sign;
      else if constexpr (U::kFinish == CbrtFinish::kRoot)
        y = _mm_add_pd(x, x);
      else
        y = _mm_mul_pd(x, x);
    } else {  // NaN, quieted
      if constexpr (U::kFinish == CbrtFinish::kRootSquared) {
        const __m128d q = _mm_add_pd(x, x);
        y = _mm_mul_pd(q, q);
      } else if constexpr (U::kFinish == CbrtFinish::kSquareTwoWord) {
        y = _mm_mul_pd(x, x);
      } else {
        y = _mm_add_pd(x, x);
      }
    }
    store1(dst + i, y);
    if (pole) call.warn(luxWarnSingularity, i);
  }
  void tail(int i) { lane(i); }
};

template <class U>
inline luxStatus run_cbrt64(const lux64f* src, lux64f* dst, int len) {
  RoundNearestGuard guard;
  CallState<lux64f> call(src, src, dst, dst);
  Cbrt64Kernel<U> k{src, dst, call};
  run_block_redo<4>(len, k);
  return call.status();
}

}  // namespace lux
