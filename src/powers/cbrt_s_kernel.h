// The binary32 cube-root kernels behind Cbrt, InvCbrt and Pow2o3: eight
// lanes a block as two vectors of four, no table but the multipliers.
//
// For x = 2^(e - 127) * z, z in [1, 2), the biased exponent e (for InvCbrt
// 254 - e) is divided by three with one 16-bit high multiply: the exponent
// sits in the high half as e*128, and (e*128*0xAAAB) >> 16, shifted right by
// one as a word, holds q = floor(e/3) in its exponent field and 0, 85 or 170
// (rem = 0, 1, 2) in bits 15..22.  Adding 0x2A60 to the high half makes the
// power of two 2^(q - 43) (rem 0) or 2^(q - 42) (rem 1, 2), and the row
// multiplier R[rem] = 2^(2/3), 1, 2^(1/3) completes 2^((e - 127)/3).  Bits
// 4..5 of the remainder byte are rem itself, so the four lanes' rem make the
// base-4 number of one row of four multipliers (one aligned load, no gather),
// or two rows of two binary64 multipliers for the widened tiers.
// A polynomial gives z^(1/3) or z^(-1/3) on the whole of [1, 2).
//
// All arithmetic runs on |x|; the sign is ORed into the result (bit for bit
// what a signed scale gives, rounding to nearest being symmetric).
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::cbrt32 {

enum class Func { kCbrt, kInvCbrt, kPow2o3 };

struct alignas(16) Table {
  alignas(16) uint32_t flRows4[171][4];
  alignas(16) uint64_t dbRows2[11][2];
  Row32 flAbsMask = row32(0x7FFFFFFF);
  Row32 flSigMask = row32(0x007FFFFF);
  Row32 flOne = row32(0x3F800000);
  Row32 flExpMask = row32(0x7F800000);
  Row32 flInvBias = row32(0x7F000000);  // 254 in the exponent field
  Row32 flThird = row32(0xAAAB0000);    // 2/3 * 2^16 in the high halves
  Row32 flScaleBias = row32(0x2A600000);
  Row32 flRowBits = row32(0x00000030);
  Row32 flMaxFinite = row32(0x7F7FFFFF);
  Row32 flMinNormal = row32(0x00800000);
  Row32 flTwo126 = row32(0x7E800000);
  Row32 flTwoM42 = row32(0x2A800000);
  Row32 flTwo42 = row32(0x54800000);
  Row32 flInf = row32(0x7F800000);
  Row32 flThirdF = row32(0x3EAAAAAB);  // 1/3, the Newton step of 1/cbrt
  // z^(1/3), binary32, in z, innermost first.
  Row32 flCbrt11[4];
  // z^(1/3), binary32, in z - 1.
  Row32 flCbrt21[8];
  // z^(1/3), binary64, in z (Cbrt at A24 and every select path of Cbrt and
  // of Pow2o3 at A11, A21).
  Row64 dbCbrt24[8];
  // z^(-1/3), binary32 and binary64, in z.
  Row32 flInv11[5];
  Row64 dbInv24[9];
  // z^(1/3), binary64, one degree more, for Pow2o3 at A24.
  Row64 dbPow24[9];
};

inline constexpr Table kTab = {
    .flRows4 =
        {
#include "powers/cbrt_rows4_table.inc"
        },
    .dbRows2 =
        {
#include "powers/cbrt_rows2_table.inc"
        },
    .flCbrt11 = {row32(0x3CBE124C),           // 0.023202084
                 row32(0xBE276FE8),           // -0.163512826
                 row32(0x3F168BB1),           // 0.588069022
                 row32(0x3F0D6308)},          // 0.552292347
    .flCbrt21 = {row32(0x3AD27EA7),           // 0.00160594739
                 row32(0xBC0990E4),           // -0.00839636102
                 row32(0x3CADDCF2),           // 0.021223519
                 row32(0xBD1AF70E),           // -0.037833266
                 row32(0x3D79FAB0),           // 0.0610300899
                 row32(0xBDE368D2),           // -0.111039773
                 row32(0x3EAAAA59),           // 0.333330899
                 row32(0x3F800000)},          // 1.0
    .dbCbrt24 = {row64(0x3F5A10607D4457D4),   // 0.0015908186224513525
                 row64(0xBF93ED90F77A7B1E),   // -0.019460930924306223
                 row64(0x3FBABD8E9D19E871),   // 0.10445491157034482
                 row64(0xBFD4B881FC1AEEB2),   // -0.32376145953797242
                 row64(0x3FE4A3F9820694DC),   // 0.64501643558164856
                 row64(0xBFEC7734539D8F25),   // -0.88955131846566771
                 row64(0x3FF0E47E0EAE9FA1),   // 1.0557842801590385
                 row64(0x3FDB42648692AF71)},  // 0.42592728750127323
    .flInv11 = {row32(0x3CEB9D35),            // 0.0287614856
                row32(0xBE63D275),            // -0.222482517
                row32(0x3F32E120),            // 0.698747635
                row32(0xBF969914),            // -1.17654657
                row32(0x3FD5F3AB)},           // 1.67149866
    .dbInv24 = {row64(0x3F70A2AB3C7B388F),    // 0.0040613831440180622
                row64(0xBFAC3BF3EA4A9829),    // -0.055144903516790862
                row64(0x3FD5365A036DECD4),    // 0.33144235930349208
                row64(0xBFF28BA6AC8D2726),    // -1.1590944996155002
                row64(0x4004DA6802F9B5A3),    // 2.6066436989264772
                row64(0xC00F77BD2A84C7A9),    // -3.933466274430391
                row64(0x40102F6503F2B5C3),    // 4.0462837807548935
                row64(0xC0072244182A44C4),    // -2.8917314422511442
                row64(0x40006875C4B4938F)},   // 2.051005875359301
    .dbPow24 = {row64(0xBF4DB656E3A9157E),    // -0.00090674631730595901
                row64(0x3F896C59F19F1656),    // 0.012413695036126143
                row64(0xBFB3557C9FCEABB1),    // -0.075523175254302868
                row64(0x3FD137DD809A24E8),    // 0.2690347438697942
                row64(0xBFE3F149DBD8F66B),    // -0.62320416392294697
                row64(0x3FEFB424C42AEEB2),    // 0.99074018777851891
                row64(0xBFF230AF60500361),    // -1.136886001797585
                row64(0x3FF27F133F57C1E7),    // 1.1560242151573392
                row64(0x3FDA21B4BA619C8F)},   // 0.40830724908159594
};

// The significand, the power-of-two scale and the row offsets of four
// nonnegative lanes (bit patterns a).
struct Split {
  __m128 z;
  __m128 scale;
  int off4;              // byte offset of the row of four
  int off2_lo, off2_hi;  // byte offsets of the rows of two, lanes 0-1 and 2-3
};

template <bool Inverse>
inline Split split(__m128i a) {
  const Table& t = kTab;
  Split s;
  s.z = as_ps(_mm_or_si128(_mm_and_si128(a, t.flSigMask.pi()), t.flOne.pi()));
  __m128i e = _mm_and_si128(a, t.flExpMask.pi());
  if constexpr (Inverse) e = _mm_sub_epi32(t.flInvBias.pi(), e);
  const __m128i v = _mm_srli_epi32(_mm_mulhi_epu16(e, t.flThird.pi()), 1);
  s.scale = as_ps(_mm_and_si128(_mm_add_epi32(v, t.flScaleBias.pi()), t.flExpMask.pi()));
  // 16*rem in each lane; lanes 1 and 3 moved two bits up beside 0 and 2.
  const __m128i idx = _mm_and_si128(_mm_srli_epi32(v, 15), t.flRowBits.pi());
  const __m128i w = _mm_or_si128(idx, _mm_srli_epi64(idx, 30));
  s.off2_lo = _mm_cvtsi128_si32(w);
  s.off2_hi = _mm_cvtsi128_si32(_mm_srli_si128(w, 8));
  s.off4 = s.off2_lo | (s.off2_hi << 4);
  return s;
}

inline __m128 row4(int off) {
  return _mm_load_ps(reinterpret_cast<const float*>(reinterpret_cast<const char*>(kTab.flRows4) + off));
}
inline __m128d row2(int off) {
  return _mm_load_pd(reinterpret_cast<const double*>(reinterpret_cast<const char*>(kTab.dbRows2) + off));
}

template <int N>
inline __m128 horner(const Row32 (&c)[N], __m128 v) {
  __m128 p = c[0].ps();
  for (int k = 1; k < N; ++k) p = _mm_add_ps(_mm_mul_ps(p, v), c[k].ps());
  return p;
}
template <int N>
inline __m128d horner(const Row64 (&c)[N], __m128d v) {
  __m128d p = c[0].pd();
  for (int k = 1; k < N; ++k) p = _mm_add_pd(_mm_mul_pd(p, v), c[k].pd());
  return p;
}

// P(z) * row in binary64 for the two halves, narrowed to binary32.
template <int N>
inline __m128 widened_root(const Row64 (&c)[N], const Split& s) {
  const __m128d lo = _mm_mul_pd(horner(c, _mm_cvtps_pd(s.z)), row2(s.off2_lo));
  const __m128d hi = _mm_mul_pd(horner(c, _mm_cvtps_pd(_mm_movehl_ps(s.z, s.z))), row2(s.off2_hi));
  return _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi));
}

// Pow2o3 at A24: P(z) * row * scale in binary64 (scale widened), squared,
// narrowed.
inline __m128 widened_square(const Split& s, __m128 scale) {
  const Table& t = kTab;
  __m128d lo =
      _mm_mul_pd(_mm_mul_pd(horner(t.dbPow24, _mm_cvtps_pd(s.z)), row2(s.off2_lo)), _mm_cvtps_pd(scale));
  __m128d hi =
      _mm_mul_pd(_mm_mul_pd(horner(t.dbPow24, _mm_cvtps_pd(_mm_movehl_ps(s.z, s.z))), row2(s.off2_hi)),
                 _mm_cvtps_pd(_mm_movehl_ps(scale, scale)));
  lo = _mm_mul_pd(lo, lo);
  hi = _mm_mul_pd(hi, hi);
  return _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi));
}

// Lane classes of four lanes, from their magnitudes.
struct Classes {
  __m128i big;    // above the largest finite: Inf, NaN
  __m128i small;  // below the smallest normal: zeros, denormals
  __m128i zero;
  __m128i denormal;
};
inline Classes classify(__m128i a) {
  const Table& t = kTab;
  Classes c;
  c.big = _mm_cmpgt_epi32(a, t.flMaxFinite.pi());
  c.small = _mm_cmplt_epi32(a, t.flMinNormal.pi());
  c.zero = _mm_cmpeq_epi32(a, _mm_setzero_si128());
  c.denormal = _mm_andnot_si128(c.zero, c.small);
  return c;
}

inline __m128i select(__m128i mask, __m128i yes, __m128i no) {
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// U, the unit: U::kFunc, U::kTier (11, 21 or 24).
template <class U>
struct Kernel4 {
  static constexpr bool kInverse = U::kFunc == Func::kInvCbrt;

  // The main path on four normal magnitudes; the result without the sign
  // (Pow2o3 has none).
  static __m128 main(__m128i a) {
    const Table& t = kTab;
    const Split s = split<kInverse>(a);
    if constexpr (U::kFunc == Func::kInvCbrt) {
      if constexpr (U::kTier == 24) return _mm_mul_ps(widened_root(t.dbInv24, s), s.scale);
      const __m128 y0 = _mm_mul_ps(horner(t.flInv11, s.z), _mm_mul_ps(s.scale, row4(s.off4)));
      if constexpr (U::kTier == 11) return y0;
      // One Newton step for y^-3 = a: y -= (y^3*a - 1) * y/3.
      const __m128 cube = _mm_mul_ps(_mm_mul_ps(_mm_mul_ps(y0, y0), as_ps(a)), y0);
      return _mm_sub_ps(y0, _mm_mul_ps(_mm_sub_ps(cube, t.flOne.ps()), _mm_mul_ps(y0, t.flThirdF.ps())));
    } else if constexpr (U::kFunc == Func::kPow2o3 && U::kTier == 24) {
      return widened_square(s, s.scale);
    } else {
      __m128 y;
      if constexpr (U::kTier == 11)
        y = _mm_mul_ps(_mm_mul_ps(horner(t.flCbrt11, s.z), row4(s.off4)), s.scale);
      else if constexpr (U::kTier == 21)
        y = _mm_mul_ps(_mm_mul_ps(horner(t.flCbrt21, _mm_sub_ps(s.z, t.flOne.ps())), row4(s.off4)), s.scale);
      else
        y = _mm_mul_ps(widened_root(t.dbCbrt24, s), s.scale);
      if constexpr (U::kFunc == Func::kPow2o3) y = _mm_mul_ps(y, y);
      return y;
    }
  }

  // Four lanes of any class, by a multiplier m that carries what the class
  // needs: the widened path on 1.0 for Inf and NaN, on |x|*2^126 for
  // denormals (126 = 3*42 keeps rem), then times scale*m.
  static __m128 select_path(__m128i a, const Classes& c) {
    const Table& t = kTab;
    const __m128i normal = _mm_andnot_si128(_mm_or_si128(c.big, c.small), _mm_set1_epi32(-1));
    const __m128 scaled = _mm_mul_ps(as_ps(_mm_and_si128(c.denormal, a)), t.flTwo126.ps());
    const __m128i in = select(c.big, t.flOne.pi(), select(c.denormal, as_int(scaled), a));
    __m128i m = _mm_and_si128(normal, t.flOne.pi());
    if constexpr (kInverse) {
      const __m128i nan = _mm_cmpgt_epi32(a, t.flInf.pi());
      m = _mm_or_si128(m, _mm_and_si128(nan, a));
      m = _mm_or_si128(m, _mm_and_si128(c.zero, t.flInf.pi()));
      m = _mm_or_si128(m, _mm_and_si128(c.denormal, t.flTwo42.pi()));
    } else {
      m = _mm_or_si128(m, _mm_and_si128(c.big, a));
      m = _mm_or_si128(m, _mm_and_si128(c.denormal, t.flTwoM42.pi()));
    }
    const Split s = split<kInverse>(in);
    const __m128 sm = _mm_mul_ps(s.scale, as_ps(m));
    if constexpr (U::kFunc == Func::kPow2o3 && U::kTier == 24) return widened_square(s, sm);
    __m128 y;
    if constexpr (kInverse)
      y = _mm_mul_ps(widened_root(t.dbInv24, s), sm);
    else
      y = _mm_mul_ps(widened_root(t.dbCbrt24, s), sm);
    if constexpr (U::kFunc == Func::kPow2o3) return _mm_mul_ps(y, y);
    return y;
  }

  // InvCbrt at A11 and A21 with a special lane: the main path on the normal
  // lanes, again on |x|*2^126 for the denormals (times 2^42 after), and the
  // rest by integer selects.  The lanes that the main path does not own run
  // it on 1.0, which keeps their garbage from raising flags.
  static __m128 inverse_special(__m128i a, const Classes& c) {
    const Table& t = kTab;
    const __m128i off = _mm_or_si128(c.big, c.small);
    const __m128 y1 = main(select(off, t.flOne.pi(), a));
    const __m128 scaled = _mm_mul_ps(as_ps(_mm_and_si128(c.denormal, a)), t.flTwo126.ps());
    const __m128 y2 = _mm_mul_ps(main(select(c.denormal, as_int(scaled), t.flOne.pi())), t.flTwo42.ps());
    __m128i y = select(c.denormal, as_int(y2), as_int(y1));
    y = select(c.zero, t.flInf.pi(), y);
    y = select(_mm_cmpeq_epi32(a, t.flInf.pi()), _mm_setzero_si128(), y);
    y = select(_mm_cmpgt_epi32(a, t.flInf.pi()), a, y);
    return as_ps(y);
  }

  // Four lanes of x; `special` says whether the block takes the special path.
  static __m128 compute(__m128 x, bool special) {
    const Table& t = kTab;
    const __m128i xi = as_int(x);
    const __m128i a = _mm_and_si128(xi, t.flAbsMask.pi());
    __m128 y;
    if (__builtin_expect(!special, 1)) {
      y = main(a);
    } else {
      const Classes c = classify(a);
      if constexpr (kInverse && U::kTier != 24)
        y = inverse_special(a, c);
      else
        y = select_path(a, c);
    }
    if constexpr (U::kFunc == Func::kPow2o3) return y;
    return _mm_or_ps(y, as_ps(_mm_andnot_si128(t.flAbsMask.pi(), xi)));
  }

  // Lanes outside the normal range, as a mask of int32 lanes.
  static __m128i specials(__m128 x) {
    const Table& t = kTab;
    const __m128i a = _mm_and_si128(as_int(x), t.flAbsMask.pi());
    return _mm_or_si128(_mm_cmpgt_epi32(a, t.flMaxFinite.pi()), _mm_cmplt_epi32(a, t.flMinNormal.pi()));
  }
  static int zero_mask(__m128 x) {
    const __m128i a = _mm_and_si128(as_int(x), kTab.flAbsMask.pi());
    return _mm_movemask_ps(as_ps(_mm_cmpeq_epi32(a, _mm_setzero_si128())));
  }
};

// One lane in all four places.
inline __m128 broadcast(const float* p) {
  const __m128 v = _mm_load_ss(p);
  return _mm_shuffle_ps(v, v, _MM_SHUFFLE(0, 0, 0, 0));
}

// Cbrt and Pow2o3: a closed block of eight (no status).
template <class U>
struct ClosedKernel {
  const float* src;
  float* dst;

  void block(int i) {
    using K = Kernel4<U>;
    const __m128 x0 = load4(src + i), x1 = load4(src + i + 4);
    const bool special = _mm_movemask_epi8(_mm_or_si128(K::specials(x0), K::specials(x1))) != 0;
    const __m128 y0 = K::compute(x0, special), y1 = K::compute(x1, special);
    store4(dst + i, y0);
    store4(dst + i + 4, y1);
  }
  void tail(int i) {
    using K = Kernel4<U>;
    const __m128 x = broadcast(src + i);
    store1(dst + i, K::compute(x, _mm_movemask_epi8(K::specials(x)) != 0));
  }
};

// InvCbrt: the block is stored whole, then its zero lanes are reported.
template <class U>
struct MaskedKernel {
  const float* src;
  float* dst;
  CallState<float>& call;

  unsigned block(int i) {
    using K = Kernel4<U>;
    const __m128 x0 = load4(src + i), x1 = load4(src + i + 4);
    const bool special = _mm_movemask_epi8(_mm_or_si128(K::specials(x0), K::specials(x1))) != 0;
    const __m128 y0 = K::compute(x0, special), y1 = K::compute(x1, special);
    store4(dst + i, y0);
    store4(dst + i + 4, y1);
    if (__builtin_expect(!special, 1)) return 0;
    return unsigned(K::zero_mask(x0) | (K::zero_mask(x1) << 4));
  }
  unsigned tail(int i) {
    using K = Kernel4<U>;
    const __m128 x = broadcast(src + i);
    const bool special = _mm_movemask_epi8(K::specials(x)) != 0;
    store1(dst + i, K::compute(x, special));
    return special ? unsigned(K::zero_mask(x) & 1) : 0u;
  }
  void offend(int i) { call.warn(luxWarnSingularity, i); }
};

template <Func F, int Tier>
struct Unit {
  static constexpr Func kFunc = F;
  static constexpr int kTier = Tier;
};

template <Func F, int Tier>
inline luxStatus run(const lux32f* src, lux32f* dst, int len) {
  RoundNearestGuard guard;
  if constexpr (F == Func::kInvCbrt) {
    CallState<lux32f> call(src, src, dst, dst);
    MaskedKernel<Unit<F, Tier>> k{src, dst, call};
    run_masked<8>(len, k);
    return call.status();
  } else {
    ClosedKernel<Unit<F, Tier>> k{src, dst};
    run_closed<8>(len, k);
    return luxOk;
  }
}

}  // namespace lux::cbrt32
