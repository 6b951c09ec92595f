// e^x - 1, written once for the six Expm1 units: the constant table (every
// unit that includes this header gets its own copy: it lives in an unnamed
// namespace), the scalar routine that handles every argument, and the vector
// bodies of the regular range.
//
// x = N ln2/128 + r, N = 128 k + j with j in [-64, 63], |r| <= ln2/256, and
// e^x - 1 = 2^k 2^(j/128) e^r - 1.  2^(j/128) is Thi + Tlo, Thi with 32
// significant bits; e^r = A + D with A = 1 + r rounded to a multiple of
// 2^-20, so that Thi A is exact and the 1 that is taken away at the end
// meets an exact head: no cancellation is left in the result.  Near 0 the
// function is a polynomial that starts with x itself.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/gen_frame.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

using lux::Row64;
using lux::row64;
using lux::genframe::opaque;

struct alignas(16) Expm1Table {
  uint64_t exp128[129][2];   // {Tlo[j], Thi[j]} for j = -64..64, at j + 64
  Row64 kln2;                // 128/ln 2
  Row64 two52h;              // 1.5 2^52, the shifter
  Row64 ln2k0, ln2k1;        // ln 2/128 in two parts; N ln2k0 exact for |N| < 2^21
  Row64 two32p1, two32;      // 2^32 + 1, 2^32: rounding to a multiple of 2^-20
  Row64 p0, p1, p2, p3, p4;  // e^r - 1 - r = r^2 (p0 + p1 r + p2 r^2 + p3 r^3 + p4 r^4)
  Row64 one;
  Row64 small;  // 2^-1000: squared it underflows, added to 1 it is inexact
  Row64 large;  // 2^999: squared it overflows
  Row64 two512;
  Row64 sub64, cmp64;  // regular-range test of the binary64 bodies
  Row64 sub32, cmp32;  // regular-range test of the binary32 bodies
};

constexpr Expm1Table kExpm1 = {
    {
#include "exp_log/expm1_table.inc"
    },
    row64(0x40671547652B82FE),  // 184.66496523378731
    row64(0x4338000000000000),  // 6755399441055744
    row64(0x3F762E4200000000),  // 0.005415208637714386
    row64(0x3E2FDF473DE6AF28),  // 3.7085949836889856e-09
    row64(0x41F0000000100000),  // 4294967297
    row64(0x41F0000000000000),  // 4294967296
    row64(0x3FE0000000000000),  // 0.5
    row64(0x3FC5555555555405),  // 0.16666666666665733
    row64(0x3FA555555555541D),  // 0.0416666666666645
    row64(0x3F8111116887CD7C),  // 0.008333335878865304
    row64(0x3F56C16C87372663),  // 0.001388889298015527
    row64(0x3FF0000000000000),  // 1.0
    row64(0x0170000000000000),  // 2^-1000
    row64(0x7E70000000000000),  // 2^999
    row64(0x5FF0000000000000),  // 2^512
    // Binary64: H - 0xBFD33333 as a signed number not above 0x80B2FB0E,
    // that is H in [0x3FD33333, 0x40862E41]: 0.2999999523 <= |x| < 709.7822.
    row64(0xBFD33333BFD33333),
    row64(0x80B2FB0E80B2FB0E),
    // Binary32: the same on |bits|, [0x3B800000, 0x42B17217]:
    // 2^-8 <= |x| <= 88.72283172607422, the last float whose result is finite.
    row64(0xBB800000BB800000),
    row64(0x8731721787317217),
};

// Scalar-routine bounds on the high word H = hi & 0x7FFFFFFF.
constexpr uint32_t kSpecialBound = 0x4055A92D;  // |x| >= 86.64337158203125
constexpr uint32_t kHighPathHi = 0x404419EC;    // x > 40.2025146484375: e^x - 1 = e^x in double
constexpr uint32_t kMainBound = 0x3F700000;     // |x| >= 2^-8
constexpr uint32_t kPolyBound = 0x3C600000;     // |x| >= 2^-57
// |x| in [36.44183349609375, 43.054229736328125]: hiP - 1 is exact there
// and loP - 1 the better order.
constexpr uint32_t kMidBase = 0x4042388E, kMidSpan = 0x34E63;
constexpr uint64_t kRange = 0x40862E42FEFA39EF;     // 709.782712893384, last x with a finite result
constexpr uint32_t kLastFinite32 = 0x42B17217;      // 88.72283172607422
constexpr uint64_t kMinusOne = 0xBFF0000000000000;  // the result for -Inf

inline double d(const Row64& r) { return __builtin_bit_cast(double, r.v[0]); }
inline uint64_t u64(double x) { return __builtin_bit_cast(uint64_t, x); }
inline double f64(uint64_t b) { return __builtin_bit_cast(double, b); }

// The reduction shared by the scalar paths: Thi, Tlo, A, D and k.
struct ScalarReduced {
  double thi, tlo, a, dd;
  int32_t k;
};

inline ScalarReduced reduce(double x) {
  const Expm1Table& T = kExpm1;
  const double s = x * d(T.kln2) + d(T.two52h);
  const double n = s - d(T.two52h);
  const int32_t nn = int32_t(uint32_t(u64(s)));
  const int32_t j = int32_t(uint32_t(nn) << 25) >> 25;
  const int32_t k = (nn - j) >> 7;
  const double r1 = x - d(T.ln2k0) * n;
  const double rh = r1 - d(T.ln2k1) * n;
  const double rl = (r1 - rh) - d(T.ln2k1) * n;
  const double r = rh + rl;
  const double a = (rh + d(T.two32p1)) - d(T.two32);
  const double m = rh - (a - 1.0);
  const double b = rl + m;
  const double z = r * r;
  const double q = ((d(T.p4) * z + d(T.p2)) * z + (d(T.p3) * z + d(T.p1)) * r) * z + d(T.p0) * z;
  return {f64(T.exp128[j + 64][1]), f64(T.exp128[j + 64][0]), a, b + q, k};
}

// 2^k for |k| <= 126, built as a binary32 and widened.
inline double float_scale(int32_t k) {
  return double(__builtin_bit_cast(float, uint32_t(k) * 0x800000u + 0x3F800000u));
}

// The scalar routine: e^x - 1 for every x; *status gets 0 or 12.
[[gnu::always_inline]] inline double expm1_gen(double x, int* status) {
  const Expm1Table& T = kExpm1;
  *status = 0;
  const uint64_t bits = u64(x);
  const uint32_t hi = uint32_t(bits >> 32), lo = uint32_t(bits);
  const uint32_t H = hi & 0x7FFFFFFF;
  if (H >= kSpecialBound) {
    const bool positive = hi < 0x80000000u;
    if (positive &&
        (hi < uint32_t(kRange >> 32) || (hi == uint32_t(kRange >> 32) && lo <= uint32_t(kRange)))) {
      // Upper path: k reaches 1024, so 2^k is split into 2^(k-512) 2^512.
      const ScalarReduced v = reduce(x);
      const double w = f64(uint64_t(uint32_t(v.k + 0x1FF)) << 52);
      return ((v.thi * v.dd + (v.dd + v.a) * v.tlo) + v.thi * v.a) * w * d(T.two512);
    }
    if (H >= 0x7FF00000) {
      if ((bits & 0x7FFFFFFFFFFFFFFFull) != 0x7FF0000000000000ull) return opaque(x) + x;  // NaN, quieted
      return positive ? x : f64(kMinusOne);
    }
    if (!positive) return -1.0 + opaque(d(T.small));  // rounds to -1, inexact
    *status = luxWarnOverflow;
    return opaque(d(T.large)) * d(T.large);
  }
  if (int32_t(hi) > int32_t(kHighPathHi)) {
    // e^x - 1 and e^x are the same double here.
    const ScalarReduced v = reduce(x);
    return ((v.thi * v.dd + (v.dd + v.a) * v.tlo) + v.thi * v.a) * float_scale(v.k);
  }
  if (H >= kMainBound) {
    const ScalarReduced v = reduce(x);
    const double s = float_scale(v.k);
    const double hiP = (v.thi * v.a) * s;
    const double loP = (v.thi * v.dd + (v.dd + v.a) * v.tlo) * s;
    if (H - kMidBase <= kMidSpan) return hiP + (loP - 1.0);
    const double h1 = hiP - 1.0;
    const double e = (1.0 + h1) - hiP;
    return h1 + (loP - e);
  }
  if (H >= kPolyBound) {
    const double z = x * x;
    return ((d(T.p4) * z + d(T.p2)) * z + (d(T.p3) * z + d(T.p1)) * x) * z + d(T.p0) * z + x;
  }
  if ((bits << 1) == 0) return x;
  // e^x - 1 rounds to x.  It is inexact: 1 + 2^-1000 says so; a subnormal x
  // is also tiny, and 2^-1000 squared says that as well.
  lux::genframe::flag_rounded_to_tiny(H < 0x00100000, d(T.small));
  return x;
}

// ---------------------------------------------------------------------------
// Vector bodies.

// The regular-range test of a register of binary32 lanes or of the high
// words of two binary64 lanes (in the two low int32 lanes): true when
// (|w| - sub), signed, is not above cmp in every lane.
inline bool regular(__m128i w, const Row64& sub, const Row64& cmp, int lanes) {
  const __m128i a = _mm_and_si128(w, _mm_set1_epi32(0x7FFFFFFF));
  const __m128i bad = _mm_cmpgt_epi32(_mm_sub_epi32(a, sub.pi()), cmp.pi());
  return (_mm_movemask_ps(_mm_castsi128_ps(bad)) & ((1 << lanes) - 1)) == 0;
}

// hiP = Thi A and loP = Thi D + Tlo (D + A) for two lanes, with the scale
// 2^k; false when a lane's k is outside [-1023, 1023].
struct PairProducts {
  __m128d hiP, loP, s;
};

inline bool pair_products(__m128d x, PairProducts* out) {
  const Expm1Table& T = kExpm1;
  const __m128d S = _mm_add_pd(_mm_mul_pd(x, T.kln2.pd()), T.two52h.pd());
  const __m128d N = _mm_sub_pd(S, T.two52h.pd());
  const __m128i n = _mm_shuffle_epi32(lux::as_int(S), _MM_SHUFFLE(2, 0, 2, 0));
  const __m128i j = _mm_srai_epi32(_mm_slli_epi32(n, 25), 25);
  const __m128i k = _mm_srai_epi32(_mm_sub_epi32(n, j), 7);
  const __m128i field = _mm_add_epi32(k, _mm_set1_epi32(0x3FF));
  const __m128i out_of_range =
      _mm_or_si128(_mm_cmplt_epi32(field, _mm_set1_epi32(0)), _mm_cmpgt_epi32(field, _mm_set1_epi32(0x7FE)));
  if (__builtin_expect((_mm_movemask_ps(_mm_castsi128_ps(out_of_range)) & 3) != 0, 0)) return false;
  const int j0 = _mm_cvtsi128_si32(j) + 64, j1 = _mm_cvtsi128_si32(_mm_srli_si128(j, 4)) + 64;
  const __m128d thi = lux::genframe::gather2(&T.exp128[j0][1], &T.exp128[j1][1]);
  const __m128d tlo = lux::genframe::gather2(&T.exp128[j0][0], &T.exp128[j1][0]);

  const __m128d r1 = _mm_sub_pd(x, _mm_mul_pd(T.ln2k0.pd(), N));
  const __m128d rh = _mm_sub_pd(r1, _mm_mul_pd(T.ln2k1.pd(), N));
  const __m128d rl = _mm_sub_pd(_mm_sub_pd(r1, rh), _mm_mul_pd(T.ln2k1.pd(), N));
  const __m128d r = _mm_add_pd(rh, rl);
  const __m128d A = _mm_sub_pd(_mm_add_pd(rh, T.two32p1.pd()), T.two32.pd());
  const __m128d m = _mm_sub_pd(rh, _mm_sub_pd(A, T.one.pd()));
  const __m128d B = _mm_add_pd(rl, m);
  const __m128d z = _mm_mul_pd(r, r);
  const __m128d even = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.p4.pd(), z), T.p2.pd()), z);
  const __m128d odd = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.p3.pd(), z), T.p1.pd()), r);
  const __m128d q = _mm_add_pd(_mm_mul_pd(_mm_add_pd(even, odd), z), _mm_mul_pd(T.p0.pd(), z));
  const __m128d D = _mm_add_pd(B, q);

  // Tlo multiplies the whole of e^r = A + D: Tlo (A + Thi D) would be off
  // by Tlo D (Thi - 1), up to 8 ulp of the result near |x| = 0.3.
  const __m128d t = _mm_mul_pd(thi, D);
  const __m128d u = _mm_add_pd(D, A);
  out->hiP = _mm_mul_pd(thi, A);
  out->loP = _mm_add_pd(t, _mm_mul_pd(tlo, u));
  out->s = lux::as_pd(_mm_slli_epi64(_mm_unpacklo_epi32(field, _mm_setzero_si128()), 52));
  return true;
}

// Binary64: (loP s - 1) + hiP s.
inline __m128d finish64(const PairProducts& p) {
  const __m128d one = kExpm1.one.pd();
  return _mm_add_pd(_mm_sub_pd(_mm_mul_pd(p.loP, p.s), one), _mm_mul_pd(p.hiP, p.s));
}

// Binary32: h1 = hiP s - 1 exactly split from its rounding error e, then
// h1 + (loP s - e), narrowed once.
inline __m128 finish32(const PairProducts& p) {
  const __m128d one = kExpm1.one.pd();
  const __m128d hs = _mm_mul_pd(p.hiP, p.s);
  const __m128d h1 = _mm_sub_pd(hs, one);
  const __m128d e = _mm_sub_pd(_mm_add_pd(one, h1), hs);
  return _mm_cvtpd_ps(_mm_add_pd(h1, _mm_sub_pd(_mm_mul_pd(p.loP, p.s), e)));
}

// The units' kernels for lux::genframe::run.
struct Expm1Kernel64 {
  using Elem = lux64f;
  static constexpr int kBlock = 4;
  // All four lanes regular and in the scale's range, else nothing stored.
  static bool block(const lux64f* in, lux64f* out) {
    const __m128d a = lux::load2(in), b = lux::load2(in + 2);
    const __m128i hw = _mm_unpacklo_epi64(lux::high_words(a), lux::high_words(b));
    if (__builtin_expect(!regular(hw, kExpm1.sub64, kExpm1.cmp64, 4), 0)) return false;
    PairProducts pa, pb;
    if (__builtin_expect(!pair_products(a, &pa) || !pair_products(b, &pb), 0)) return false;
    lux::store2(out, finish64(pa));
    lux::store2(out + 2, finish64(pb));
    return true;
  }
  static int lane(const lux64f* in, lux64f* out) {
    int status;
    const __m128d r = _mm_set_sd(expm1_gen(lux::opaque(_mm_load_sd(in))[0], &status));
    _mm_store_sd(out, r);
    return status;
  }
};

struct Expm1Kernel32 {
  using Elem = lux32f;
  static constexpr int kBlock = 8;
  static bool block(const lux32f* in, lux32f* out) {
    const __m128 a = lux::load4(in), b = lux::load4(in + 4);
    if (__builtin_expect(!regular(lux::as_int(a), kExpm1.sub32, kExpm1.cmp32, 4) ||
                             !regular(lux::as_int(b), kExpm1.sub32, kExpm1.cmp32, 4),
                         0))
      return false;
    PairProducts p[4];
    const __m128d w[4] = {_mm_cvtps_pd(a), _mm_cvtps_pd(_mm_movehl_ps(a, a)), _mm_cvtps_pd(b),
                          _mm_cvtps_pd(_mm_movehl_ps(b, b))};
    for (int q = 0; q < 4; ++q)
      if (__builtin_expect(!pair_products(w[q], &p[q]), 0)) return false;
    lux::store4(out, _mm_movelh_ps(finish32(p[0]), finish32(p[1])));
    lux::store4(out + 4, _mm_movelh_ps(finish32(p[2]), finish32(p[3])));
    return true;
  }
  // Widened, through the scalar routine, narrowed once; a finite x above
  // the last float with a finite result overflows in the narrowing.
  static int lane(const lux32f* in, lux32f* out) {
    int status;
    const __m128 xf = _mm_load_ss(in);
    const int32_t bits = _mm_cvtsi128_si32(_mm_castps_si128(xf));
    const double r = expm1_gen(lux::opaque(_mm_cvtss_sd(_mm_setzero_pd(), xf))[0], &status);
    _mm_store_ss(out, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_set_sd(r)));
    if (bits > int32_t(kLastFinite32) && bits < 0x7F800000) status = luxWarnOverflow;
    return status;
  }
};

}  // namespace
