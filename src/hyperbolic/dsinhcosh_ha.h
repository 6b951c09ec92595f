// The binary64 Sinh and Cosh kernels within 1 ulp: the layout of their
// constant table (each unit holds its own copy) and the arithmetic, with
// Sinh or Cosh chosen at compile time.
//
// With a = |x| = N ln 2/64 + r (|r| <= ln 2/128), k = N >> 6, j = N & 63,
// e^a/2 = P e^r and e^-a/2 = M e^-r with P = 2^(k-1) 2^(j/64) and
// M = 2^(-k-1) 2^(-j/64), both from one N: P's exponent from N, M's from the
// 64-bit negative of the shifter sum, which holds -N; M's row is 64 - j, which
// holds twice 2^(-j/64) and so makes up for floor(-N/64) being one lower when
// j != 0 (row 64 is 1.0 for j = 0).  With S = sinh r and C = cosh r - 1 (the
// odd and even halves of the exponential's polynomial),
//   sinh a = (P - M)(1 + C) + (P + M) S,   cosh a = (P + M)(1 + C) + (P - M) S,
// with P and M as exact head-and-tail pairs whose heads are added last.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/hyp_frame.h"

namespace lux::dsinhcosh_ha {

using lux::Row64;

// hi32(a) from which the lane routine takes over: N reaches 65409 at
// 708.4018337446123, where M's exponent field would go below zero.
inline constexpr uint32_t kSpecialHigh = 0x40862336;
inline constexpr uint64_t kMainPathEnd = 0x40862336F49C3C50;  // 708.4018337446123
// 710.475860073944: the first double whose sinh and cosh overflow.
inline constexpr uint64_t kOverflowBound = 0x408633CE8FB9F87E;
// 710.4704448615958: N reaches 65600 and 2^(k-1) = 2^1024 has no exponent field.
inline constexpr uint64_t kTopScaleBound = 0x408633C378987900;
// Sinh: from hi32(a) = 0x3FCFACFC (a >= 0.2474665641784668) the heads are
// added last; below it Phi - Mhi is exact and is taken first.
inline constexpr uint32_t kHeadsLastHigh = 0x3FCFACFC;
// Sinh: below hi32(a) = 0x3FA1EB85 (a < 0.034999996423721313) the odd Taylor
// polynomial on the x87 replaces the table path, whose P - M cancels.
inline constexpr uint32_t kNearZeroHigh = 0x3FA1EB85;
inline constexpr uint32_t kInfHigh = 0x7FF00000;
inline constexpr uint64_t kAllOnesNaN = 0xFFFFFFFFFFFFFFFF;
inline constexpr uint64_t kPlusInf = 0x7FF0000000000000;
inline constexpr uint64_t kSignBit = 0x8000000000000000;

struct alignas(16) Table {
  Row64 dbR;        // 64/ln 2
  Row64 dbShifter;  // 1.5*2^52: a*R + S rounds to N, read from the low word
  Row64 dbL1;       // ln 2/64 to 33 bits: Nf*L1 exact for N < 2^20
  Row64 dbL2;       // ln 2/64 - L1
  Row64 dbC5;       // e^r - 1 = r + r^2 (c2 + c3 r + c4 r^2 + c5 r^3) on |r| <= ln 2/128
  Row64 dbC4;
  Row64 dbC3;
  Row64 dbC2;
  Row64 dbBias;      // 1022*64 in the low word: the exponent fields of 2^(k-1) and 2^(-k-1)
  Row64 dbExpMask;   // exponent field
  Row64 dbAbsMask;   // all but the sign
  Row64 dbTwoP1023;  // 2^1023
  Row64 dbTwo;       // 2.0
  // The odd Taylor polynomial of sinh near zero, to 64 bits: 1/6, 1/120, 1/5040.
  long double ldC3, ldC5, ldC7;
  // (H[j], L[j]) = 2^(j/64) as a 44-fraction-bit head and its tail; row 64 = (1, 0).
  alignas(16) uint64_t dSinhCosh_HA_Table[65][2];
};

// The reduction and both scales of one pair.
struct Reduced {
  __m128d r, t;
  __m128d phi, plo, mhi, mlo;
};

inline Reduced reduce(__m128d a, const Table& T) {
  const __m128d t = _mm_add_pd(_mm_mul_pd(a, T.dbR.pd()), T.dbShifter.pd());
  const __m128d nf = _mm_sub_pd(t, T.dbShifter.pd());
  const __m128d r = _mm_sub_pd(_mm_sub_pd(a, _mm_mul_pd(nf, T.dbL1.pd())), _mm_mul_pd(nf, T.dbL2.pd()));
  const __m128i tn = as_int(t);
  const __m128i neg = _mm_sub_epi64(_mm_setzero_si128(), tn);  // -N in the low word
  // The biased N in bits 6..16 of the low word; a left shift by 46 moves
  // bits 6..16 into the exponent field, and the mask drops j and the rest.
  const __m128d ep =
      as_pd(_mm_and_si128(_mm_slli_epi64(_mm_add_epi32(tn, T.dbBias.pi()), 46), T.dbExpMask.pi()));
  const __m128d em =
      as_pd(_mm_and_si128(_mm_slli_epi64(_mm_add_epi32(neg, T.dbBias.pi()), 46), T.dbExpMask.pi()));
  const int j0 = _mm_cvtsi128_si32(tn) & 63;
  const int j1 = _mm_cvtsi128_si32(_mm_shuffle_epi32(tn, _MM_SHUFFLE(3, 2, 3, 2))) & 63;
  const auto row = [&](int j) {
    return _mm_load_pd(reinterpret_cast<const double*>(T.dSinhCosh_HA_Table[j]));
  };
  const __m128d p0 = row(j0), p1 = row(j1), m0 = row(64 - j0), m1 = row(64 - j1);
  return {r,
          t,
          _mm_mul_pd(_mm_unpacklo_pd(p0, p1), ep),
          _mm_mul_pd(_mm_unpackhi_pd(p0, p1), ep),
          _mm_mul_pd(_mm_unpacklo_pd(m0, m1), em),
          _mm_mul_pd(_mm_unpackhi_pd(m0, m1), em)};
}

// The main path of one pair of a = |x| (the sign is not applied here).
template <bool kSinh>
inline __m128d main_pair(__m128d a, const Table& T) {
  const Reduced d = reduce(a, T);
  const __m128d pt = _mm_add_pd(d.phi, d.plo);
  const __m128d mt = _mm_add_pd(d.mhi, d.mlo);
  const __m128d ds = _mm_sub_pd(pt, mt);
  const __m128d sm = _mm_add_pd(pt, mt);
  const __m128d s = _mm_mul_pd(d.r, d.r);
  const __m128d o =
      _mm_mul_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.dbC5.pd(), s), T.dbC3.pd()), s), d.r);  // sinh r - r
  const __m128d e = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.dbC4.pd(), s), T.dbC2.pd()), s);     // cosh r - 1
  if constexpr (kSinh) {
    const __m128d y = _mm_add_pd(_mm_add_pd(_mm_mul_pd(e, ds), _mm_mul_pd(o, sm)), _mm_mul_pd(d.r, sm));
    const __m128d z = _mm_add_pd(_mm_sub_pd(y, d.mlo), d.plo);
    const __m128d heads_last = _mm_add_pd(_mm_sub_pd(z, d.mhi), d.phi);
    const __m128d heads_first = _mm_add_pd(z, _mm_sub_pd(d.phi, d.mhi));
    const __m128i hi = high_words(a);
    const __m128i small = _mm_cmplt_epi32(hi, _mm_set1_epi32(int32_t(kHeadsLastHigh)));
    const __m128d sel = as_pd(_mm_shuffle_epi32(small, _MM_SHUFFLE(1, 1, 0, 0)));
    return _mm_or_pd(_mm_and_pd(sel, heads_first), _mm_andnot_pd(sel, heads_last));
  } else {
    const __m128d y = _mm_add_pd(_mm_add_pd(_mm_mul_pd(e, sm), _mm_mul_pd(o, ds)), _mm_mul_pd(d.r, ds));
    return _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(y, d.mlo), d.plo), d.mhi), d.phi);
  }
}

template <bool kSinh>
struct Tier {
  using Elem = lux64f;
  static constexpr int kBlock = 4;

  // Lanes off the main path are set to 0 before the arithmetic, so that
  // they raise no flag there; the lane routine gives their value.
  static unsigned block(const double* x, double* y, double* keep, const Table& T) {
    const __m128d xa = load2(x), xb = load2(x + 2);
    const __m128i hi = as_int(_mm_shuffle_ps(_mm_castpd_ps(xa), _mm_castpd_ps(xb), _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i m = hyp::outside(hi, kSinh ? kNearZeroHigh : 0, kSpecialHigh);
    const unsigned mask = hyp::lane_mask(m);
    if (__builtin_expect(mask != 0, 0)) {
      store2(keep, xa);
      store2(keep + 2, xb);
    }
    const __m128d keep_a = as_pd(_mm_andnot_si128(_mm_unpacklo_epi32(m, m), T.dbAbsMask.pi()));
    const __m128d keep_b = as_pd(_mm_andnot_si128(_mm_unpackhi_epi32(m, m), T.dbAbsMask.pi()));
    const __m128d ra = main_pair<kSinh>(_mm_and_pd(xa, keep_a), T);
    const __m128d rb = main_pair<kSinh>(_mm_and_pd(xb, keep_b), T);
    if constexpr (kSinh) {
      store2(y, _mm_or_pd(ra, _mm_andnot_pd(T.dbAbsMask.pd(), xa)));
      store2(y + 2, _mm_or_pd(rb, _mm_andnot_pd(T.dbAbsMask.pd(), xb)));
    } else {
      store2(y, ra);
      store2(y + 2, rb);
    }
    return mask;
  }

  // e^r - 1 as the binary64 Exp kernel within 1 ulp computes it.
  static __m128d expm1_r(__m128d r, const Table& T) {
    __m128d p = _mm_add_sd(_mm_mul_sd(T.dbC5.pd(), r), T.dbC4.pd());
    p = _mm_add_sd(_mm_mul_sd(p, r), T.dbC3.pd());
    p = _mm_add_sd(_mm_mul_sd(p, r), T.dbC2.pd());
    return _mm_add_sd(r, _mm_mul_sd(p, _mm_mul_sd(r, r)));
  }

  // a + a y (1/6 + y (1/120 + y/5040)), y = a^2, at 64-bit precision and
  // rounded once on the store: below 0.035 the first omitted term is under
  // 2^-68 of the result.
  static void near_zero(double a, double* out, const Table& T) {
    const long double la = a;
    const long double y = la * la;
    const long double p = la + la * (y * (T.ldC3 + y * (T.ldC5 + y * T.ldC7)));
    *out = double(p);
  }

  static void lane(const double* x, double* y, CallState<lux64f>& call, int i, const Table& T) {
    const uint64_t bits = hyp::word(x);
    const uint64_t abs = bits & ~kSignBit;
    const uint64_t sign = kSinh ? bits & kSignBit : 0;
    const uint32_t hi = uint32_t(abs >> 32);
    double v;
    luxStatus status = luxOk;
    const __m128d a = _mm_and_pd(_mm_load1_pd(x), T.dbAbsMask.pd());
    if (kSinh && hi < kNearZeroHigh) {
      near_zero(_mm_cvtsd_f64(a), &v, T);  // +-0 and denormals come out as themselves
    } else if (abs < kMainPathEnd) {
      store1(&v, main_pair<kSinh>(a, T));
    } else if (hi >= kInfHigh) {
      hyp::store_bits(y, abs == kPlusInf ? kPlusInf | sign : kAllOnesNaN);
      return;
    } else if (abs >= kOverflowBound) {
      hyp::store_bits(&v, kPlusInf);
      status = luxWarnOverflow;
    } else {
      // M is below half an ulp of P: e^a/2 = 2^(k-1) 2^(j/64) e^r as Exp
      // computes it.  From N = 65600 on 2^(k-1) is split as 2^1023 * 2.
      const Reduced d = reduce(a, T);
      const __m128d q = expm1_r(d.r, T);
      if (abs < kTopScaleBound) {
        store1(&v, _mm_add_sd(_mm_add_sd(_mm_mul_sd(q, _mm_add_sd(d.phi, d.plo)), d.plo), d.phi));
      } else {
        const int j = _mm_cvtsi128_si32(as_int(d.t)) & 63;
        const __m128d h = _mm_load_sd(reinterpret_cast<const double*>(&T.dSinhCosh_HA_Table[j][0]));
        const __m128d l = _mm_load_sd(reinterpret_cast<const double*>(&T.dSinhCosh_HA_Table[j][1]));
        const __m128d w = _mm_add_sd(_mm_add_sd(_mm_mul_sd(q, _mm_add_sd(h, l)), l), h);
        store1(&v, _mm_mul_sd(_mm_mul_sd(w, T.dbTwoP1023.pd()), T.dbTwo.pd()));
      }
    }
    hyp::store_bits(y, hyp::word(&v) | sign);
    if (status != luxOk) call.warn(status, i);
  }
};

// Binds a unit's own table to the tier, as hyp::MaskedKernel wants it.
template <bool kSinh, const Table& T>
struct Bound {
  using Elem = lux64f;
  static constexpr int kBlock = 4;
  static unsigned block(const double* x, double* y, double* keep) {
    return Tier<kSinh>::block(x, y, keep, T);
  }
  static void lane(const double* x, double* y, CallState<lux64f>& call, int i) {
    Tier<kSinh>::lane(x, y, call, i, T);
  }
};

}  // namespace lux::dsinhcosh_ha
