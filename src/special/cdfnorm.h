// Pieces of the CdfNorm units: the factorisation Phi(-a) = R(a) exp(-a^2/2)
// with R(a) = Phi(-a) exp(a^2/2) smooth and slowly varying, the exact half
// square, the scale 2^k that falls gradually into the subnormals, and the
// loop that reports a block's underflowing lanes before it stores the block.
// Tables and tiers stay in the units.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace lux::erf {

// Constants every CdfNorm body reads.
struct alignas(16) CdfConstants {
  Row64 dbAbsMask, dbSignMask, dbClear27, dbOne, dbHalf, dbMinusHalf, dbTwo;
  Row64 dbInvL;  // 128/ln 2
  Row64 dbShifter, dbNegShifter;
  Row64 dbL1, dbL2;  // ln 2/128 in two words (HA, LA)
  Row64 dbL;         // RN(ln 2/128) (EP, binary32)
  Row64 dbP[5];      // 1, 1/2, 1/6, 1/24, 1/120
  Row64 dbExpMask, dbBias154, dbTwoM154, dbBias;
};

inline constexpr CdfConstants kCdf = {
    .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF),
    .dbSignMask = row64(0x8000000000000000),
    .dbClear27 = row64(0xFFFFFFFFF8000000),
    .dbOne = row64(0x3FF0000000000000),
    .dbHalf = row64(0x3FE0000000000000),
    .dbMinusHalf = row64(0xBFE0000000000000),
    .dbTwo = row64(0x4000000000000000),
    .dbInvL = row64(0x40671547652B82FE),        // 184.66496523378731
    .dbShifter = row64(0x4338000000000000),     // 1.5*2^52
    .dbNegShifter = row64(0xC338000000000000),  //
    .dbL1 = row64(0x3F762E4300000000),          // ln 2/128, 21 leading bits
    .dbL2 = row64(0xBDB05C610CA86C39),          // ln 2/128 - L1
    .dbL = row64(0x3F762E42FEFA39EF),           // RN(ln 2/128)
    .dbP = {row64(0x3FF0000000000000), row64(0x3FE0000000000000), row64(0x3FC5555555555555),
            row64(0x3FA5555555555555), row64(0x3F81111111111111)},
    .dbExpMask = row64(0xFFF0000000000000),
    .dbBias154 = row64(0x4990000000000000),  // exponent field of 2^(k+154)
    .dbTwoM154 = row64(0x3650000000000000),  // 2^-154
    .dbBias = row64(0x3FF0000000000000),     // exponent field of 2^k
};

// -x^2/2 = Yh + Yl from 26-bit halves of |x| (HA and LA).
inline void half_square(__m128d a, __m128d& Yh, __m128d& Yl) {
  const __m128d clear = kCdf.dbClear27.pd();
  const __m128d xh = _mm_and_pd(a, clear);
  const __m128d xl = _mm_sub_pd(a, xh);
  const __m128d P = _mm_xor_pd(_mm_mul_pd(xh, xh), kCdf.dbSignMask.pd());
  const __m128d nxh = _mm_xor_pd(xh, kCdf.dbSignMask.pd());
  const __m128d Q = _mm_sub_pd(_mm_mul_pd(_mm_mul_pd(nxh, xl), kCdf.dbTwo.pd()), _mm_mul_pd(xl, xl));
  const __m128d Ph = _mm_and_pd(P, clear);
  Yh = _mm_mul_pd(kCdf.dbHalf.pd(), Ph);
  Yl = _mm_mul_pd(kCdf.dbHalf.pd(), _mm_add_pd(_mm_sub_pd(P, Ph), Q));
}

// The shifter sum S = y*128/ln 2 + 1.5*2^52 and its table index j.
struct Reduced {
  __m128d S, N;
  int j0, j1;
};
inline Reduced reduce(__m128d y) {
  Reduced r;
  r.S = _mm_add_pd(_mm_mul_pd(y, kCdf.dbInvL.pd()), kCdf.dbShifter.pd());
  r.N = _mm_add_pd(r.S, kCdf.dbNegShifter.pd());
  r.j0 = _mm_cvtsi128_si32(as_int(r.S)) & 127;
  r.j1 = _mm_cvtsi128_si32(_mm_srli_si128(as_int(r.S), 8)) & 127;
  return r;
}

// +-2^k, k = the bits of S above j: the exponent field gets k + bias (as an
// integer addition on the shifted bits), the sign bit the sign of x.  With
// bias 0x499 and the factor 2^-154 the value reaches the subnormals
// gradually; with bias 0x3FF and no factor it serves k >= -1022.
inline __m128d scale(__m128d S, __m128d sgn, const Row64& bias) {
  const __m128i field = _mm_and_si128(_mm_slli_epi64(as_int(S), 45), kCdf.dbExpMask.pi());
  return _mm_or_pd(as_pd(_mm_add_epi64(field, bias.pi())), sgn);
}

// base = 1 for a clear sign bit, else 0.
inline __m128d base_of(__m128d x) {
  const __m128d neg = wide_mask(_mm_cmplt_epi32(high_pair(x), _mm_setzero_si128()));
  return _mm_andnot_pd(neg, kCdf.dbOne.pd());
}

// A NaN lane's result is the NaN itself, made quiet: inside the arithmetic
// NaNs meet, and which of two NaNs an SSE operation returns differs between
// processors and emulators.
inline __m128d nan_is_its_own(__m128d x, __m128d result) {
  const __m128d nan_lane = _mm_cmpunord_pd(x, x);
  const __m128d quiet = _mm_mul_pd(x, opaque(kCdf.dbOne.pd()));
  return _mm_or_pd(_mm_and_pd(nan_lane, quiet), _mm_andnot_pd(nan_lane, result));
}

// Lanes whose product is dropped: x below the zero threshold or above the
// one threshold (ordered compares: a NaN keeps its arithmetic).
inline __m128d dropped(__m128d x, const Row64& zero_below, const Row64& one_above) {
  const __m128d q = no_nan(x);
  return _mm_or_pd(_mm_cmplt_pd(q, zero_below.pd()), _mm_cmpgt_pd(q, one_above.pd()));
}

// The steps HA and LA share on a pair: the dropped lanes (run as +0), |x|,
// -x^2/2 reduced by ln 2/128 in two words, the scale +-2^k reaching the
// subnormals, and e^r - 1 to degree 5.
struct TwoWordExp {
  __m128d drop, x, a, sc, e;
  int j0, j1;
};
inline TwoWordExp two_word_exp(__m128d x_in, const Row64& zero_below, const Row64& one_above) {
  const CdfConstants& C = kCdf;
  TwoWordExp s;
  s.drop = dropped(x_in, zero_below, one_above);
  s.x = _mm_andnot_pd(s.drop, x_in);
  s.a = _mm_and_pd(s.x, C.dbAbsMask.pd());
  __m128d Yh, Yl;
  half_square(s.a, Yh, Yl);
  const Reduced red = reduce(Yh);
  const __m128d r = _mm_add_pd(
      _mm_sub_pd(_mm_sub_pd(Yh, _mm_mul_pd(red.N, C.dbL1.pd())), _mm_mul_pd(red.N, C.dbL2.pd())), Yl);
  s.sc = _mm_mul_pd(scale(red.S, _mm_and_pd(x_in, C.dbSignMask.pd()), C.dbBias154), C.dbTwoM154.pd());
  __m128d e = C.dbP[4].pd();
  for (int k = 3; k >= 0; --k) e = _mm_add_pd(C.dbP[k].pd(), _mm_mul_pd(r, e));
  s.e = _mm_mul_pd(r, e);
  s.j0 = red.j0;
  s.j1 = red.j1;
  return s;
}

// The frame of every CdfNorm export: x87 guard 53, no SSE guard; a block of
// four lanes is computed, its lanes below the zero threshold (finite) are
// reported in rising order, then the block is stored.  `Body` gives
//   Vec four(const Elem* p, int n)    results of n = 4 or 1 lanes from p
//   static unsigned underflow(const Elem* p, int n)   mask of reporting lanes
template <class Elem, class Body>
struct CdfKernel {
  const Elem* src;
  Elem* dst;
  CallState<Elem>& call;

  void report(unsigned mask, int i) {
    for (int b = 0; __builtin_expect(mask != 0, 0); ++b, mask >>= 1)
      if (mask & 1) call.warn(luxWarnUnderflow, i + b);
  }
  void block(int i) {
    typename Body::Four y;
    Body::compute(src + i, 4, y);
    report(Body::underflow(src + i, 4), i);
    Body::store(dst + i, 4, y);
  }
  void tail(int i) {
    typename Body::Four y;
    Body::compute(src + i, 1, y);
    report(Body::underflow(src + i, 1), i);
    Body::store(dst + i, 1, y);
  }
};

template <class Elem, class Body>
inline luxStatus run_cdfnorm(const Elem* src, Elem* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  X87Guard53 guard;
  CallState<Elem> call(src, src, dst, dst);
  CdfKernel<Elem, Body> k{src, dst, call};
  run_closed<4>(len, k);
  return call.status();
}

// Binary64 lanes: two pairs, or one lane (its partner 0).
struct D4 {
  __m128d a, b;
};
inline void load_d(const double* p, int n, __m128d& a, __m128d& b) {
  if (n == 4) {
    a = load2(p);
    b = load2(p + 2);
  } else {
    a = load1(p);
    b = _mm_setzero_pd();
  }
}
inline void store_d(double* p, int n, const D4& y) {
  if (n == 4) {
    store2(p, y.a);
    store2(p + 2, y.b);
  } else {
    store1(p, y.a);
  }
}
// Lanes with x finite and below `zero_below` (an encoding compare: finite
// negatives beyond the threshold have larger patterns, -Inf is excluded).
inline unsigned underflow_d(const double* p, int n, uint64_t zero_below) {
  unsigned m = 0;
  for (int b = 0; b < n; ++b) {
    uint64_t bits;
    __builtin_memcpy(&bits, p + b, 8);
    if (bits > zero_below && bits < 0xFFF0000000000000ull) m |= 1u << b;
  }
  return m;
}

}  // namespace lux::erf
