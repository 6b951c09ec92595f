// The binary32 a^b kernels (Pow and Powx, all tiers): ln a in binary64, the
// exponential in binary32.
//
// ln a = k ln 2 + ln c + ln(1 + r), c = 1 + i/256 the significand z of a rounded
// to 8 fraction bits (ties up), r = (z - c)/c, |r| <= 2^-9, ln(1 + r) to r^3:
// error below 2^-38 relative, far beyond what binary32 needs.  w = b ln a,
// w = n ln2/128 + r2, and e^w = 2^(n>>7) H (1 + E) e^r2 with (H, E) the table of
// 2^(j/128) (E a relative correction) and e^r2 ~ 1 + r2 + r2^2/2 in binary32:
// the truncation r2^3/6 < 2^-28.  The call-out does the same in binary64 to the end
// and narrows once.
//
// Each unit instantiates these templates with its own constant table.
#pragma once

#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/pow_special.h"

namespace lux::pow {

struct alignas(16) SPowTable {
  Row64 dbOne;
  Row64 dbFracMask;  // significand field
  Row64 dbTieBits;   // 0x3FF in the low bits of z, so that the rounding to c breaks ties upward
  Row64 dbTwo44;     // rounds to a multiple of 1/256
  Row64 dbLn2;
  Row64 dbP3, dbP2;    // ln(1 + r) ~ r + (p3 r + p2) r^2
  Row64 dbP4{};        // A24: ln(1 + r) ~ r + ((p4 r + p3) r + p2) r^2
  Row64 dbInvLn2x128;  // 128/ln 2
  Row64 dbShifter;     // 1.5*2^52
  Row64 dbLn2by128;    // ln 2/128
  Row64 dbExpE23;      // e^23: scales a denormal a into the normal range
  Row64 dbE23;         // 23.0
  Row64 dbHalf, dbSix;
  Row64 dbHuge;  // narrows to +Inf
  Row32 flHalf;
  alignas(16) uint64_t Log[257][2];
  alignas(16) uint32_t Exp[128][2];
};

// Lane tests.
// a is a positive normal: bits(a) - 0x80800000 (signed) at most 0xFEFFFFFF.
inline constexpr int32_t kSPositiveNormalBias = int32_t(0x80800000u);
inline constexpr int32_t kSPositiveNormalLimit = int32_t(0xFEFFFFFFu);
// b is not a NaN: |bits(b)| - 1 (signed) at most 0x7F7FFFFF; zero and infinite b go on.
inline constexpr int32_t kSNotNaNLimit = 0x7F7FFFFF;
// |w| at most about 87.33 (high word 0x4055D55C): 2^(n>>7) stays a normal binary32.
inline constexpr int32_t kWLimit = 0x4055D55C;
// The call-out's exponential covers |w| below about 708.40 (high word 0x4086232C).
inline constexpr uint32_t kWCallOutLimit = 0x4086232C;

// ln a of two binary64 lanes (positive, normal in binary64).  kVectorIndex: i from
// the low word of the rounding sum (tier A24) rather than from integer work on the
// high word; the two give the same i.  kQuartic: the A24 log polynomial.
template <bool kVectorIndex, bool kQuartic>
inline __m128d ln_pair(const SPowTable& tb, __m128d ad) {
  const __m128i hw = as_int(ad);
  const __m128d z = _mm_or_pd(_mm_and_pd(ad, tb.dbFracMask.pd()), tb.dbOne.pd());
  const __m128d sum = _mm_add_pd(_mm_or_pd(z, tb.dbTieBits.pd()), tb.dbTwo44.pd());
  const __m128d c = _mm_sub_pd(sum, tb.dbTwo44.pd());
  int i0, i1;
  if constexpr (kVectorIndex) {
    const __m128i idx = _mm_sub_epi32(as_int(sum), _mm_set1_epi32(256));
    i0 = _mm_cvtsi128_si32(idx);
    i1 = _mm_extract_epi16(idx, 4);
  } else {
    const __m128i idx =
        _mm_srli_epi32(_mm_add_epi32(_mm_and_si128(hw, _mm_set1_epi32(0xFFFFF)), _mm_set1_epi32(0x800)), 12);
    i0 = _mm_extract_epi16(idx, 2);
    i1 = _mm_extract_epi16(idx, 6);
  }
  const __m128i k = _mm_sub_epi32(_mm_srli_epi32(hw, 20), _mm_set1_epi32(1023));
  const __m128d kd = _mm_cvtepi32_pd(_mm_shuffle_epi32(k, _MM_SHUFFLE(3, 3, 3, 1)));
  const __m128d p0 = _mm_load_pd(reinterpret_cast<const double*>(tb.Log[i0]));
  const __m128d p1 = _mm_load_pd(reinterpret_cast<const double*>(tb.Log[i1]));
  const __m128d lnc = _mm_unpacklo_pd(p0, p1), inv = _mm_unpackhi_pd(p0, p1);
  const __m128d r = _mm_mul_pd(_mm_sub_pd(z, c), inv);
  __m128d poly = _mm_mul_pd(tb.dbP3.pd(), r);
  if constexpr (kQuartic) poly = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(tb.dbP4.pd(), r), tb.dbP3.pd()), r);
  poly = _mm_mul_pd(_mm_mul_pd(_mm_add_pd(poly, tb.dbP2.pd()), r), r);
  return _mm_add_pd(_mm_add_pd(_mm_mul_pd(kd, tb.dbLn2.pd()), lnc), _mm_add_pd(r, poly));
}

// Vector path on four lanes.
template <bool kVectorIndex, bool kTestB>
inline bool quad(const SPowTable& tb, __m128 a4, __m128 b4, __m128& out) {
  const __m128i ai = as_int(a4);
  __m128i bad = _mm_cmpgt_epi32(_mm_sub_epi32(ai, _mm_set1_epi32(kSPositiveNormalBias)),
                                _mm_set1_epi32(kSPositiveNormalLimit));
  if constexpr (kTestB)
    bad = _mm_or_si128(
        bad, _mm_cmpgt_epi32(
                 _mm_sub_epi32(_mm_and_si128(as_int(b4), _mm_set1_epi32(0x7FFFFFFF)), _mm_set1_epi32(1)),
                 _mm_set1_epi32(kSNotNaNLimit)));
  __m128i nh[2];
  __m128d r2[2];
  __m128i bad_w = _mm_setzero_si128();
  for (int h = 0; h < 2; ++h) {
    const __m128 ah = h ? _mm_movehl_ps(a4, a4) : a4;
    const __m128 bh = h ? _mm_movehl_ps(b4, b4) : b4;
    const __m128d w = _mm_mul_pd(_mm_cvtps_pd(bh), ln_pair<kVectorIndex, kVectorIndex>(tb, _mm_cvtps_pd(ah)));
    bad_w = _mm_or_si128(bad_w, _mm_cmpgt_epi32(_mm_and_si128(as_int(w), _mm_set1_epi32(0x7FFFFFFF)),
                                                _mm_set1_epi32(kWLimit)));
    const __m128d sum = _mm_add_pd(_mm_mul_pd(w, tb.dbInvLn2x128.pd()), tb.dbShifter.pd());
    const __m128d nf = _mm_sub_pd(sum, tb.dbShifter.pd());
    r2[h] = _mm_sub_pd(w, _mm_mul_pd(nf, tb.dbLn2by128.pd()));
    nh[h] = _mm_shuffle_epi32(as_int(sum), _MM_SHUFFLE(2, 0, 2, 0));
  }
  const __m128i n = _mm_unpacklo_epi64(nh[0], nh[1]);
  const __m128 r = _mm_movelh_ps(_mm_cvtpd_ps(r2[0]), _mm_cvtpd_ps(r2[1]));
  const int j0 = _mm_cvtsi128_si32(n) & 127, j1 = _mm_extract_epi16(n, 2) & 127,
            j2 = _mm_extract_epi16(n, 4) & 127, j3 = _mm_extract_epi16(n, 6) & 127;
  auto entry = [&](int j) { return _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(tb.Exp[j]))); };
  const __m128 x01 = _mm_unpacklo_ps(entry(j0), entry(j1)), x23 = _mm_unpacklo_ps(entry(j2), entry(j3));
  const __m128 th = _mm_movelh_ps(x01, x23), tl = _mm_movehl_ps(x23, x01);
  const __m128 scale =
      as_ps(_mm_add_epi32(_mm_slli_epi32(_mm_srai_epi32(n, 7), 23), _mm_set1_epi32(0x3F800000)));
  const __m128 p = _mm_add_ps(_mm_mul_ps(_mm_mul_ps(r, r), tb.flHalf.ps()), _mm_add_ps(tl, r));
  out = _mm_mul_ps(_mm_add_ps(_mm_mul_ps(p, th), th), scale);
  return ((_mm_movemask_ps(_mm_castsi128_ps(bad)) & 0xF) |
          (_mm_movemask_ps(_mm_castsi128_ps(bad_w)) & 0xA)) == 0;
}

// The call-out and tail: one lane in binary64 to the end.
template <bool kVectorIndex>
inline luxStatus spow_lane(const SPowTable& tb, uint32_t ab, uint32_t bb, float* dst) {
  constexpr uint32_t kSign = 0x80000000u, kInf = 0x7F800000u;
  const uint32_t abs_a = ab & ~kSign, abs_b = bb & ~kSign;
  if (abs_b == 0 || abs_b >= kInf || abs_a == 0 || abs_a >= kInf) {
    const SpecialResult<uint32_t> s = special_pow(ab, bb);
    *reinterpret_cast<uint32_t*>(dst) = s.bits;
    return s.status;
  }
  double g = 1.0;
  if (ab & kSign) {
    const int c = test_int(bb);
    if (c == kNotInteger) {
      const SpecialResult<uint32_t> s = special_pow(ab, bb);
      *reinterpret_cast<uint32_t*>(dst) = s.bits;
      return s.status;
    }
    if (c == kOddInteger) g = -1.0;
  }
  __m128d ad = _mm_cvtss_sd(_mm_setzero_pd(), _mm_castsi128_ps(_mm_cvtsi32_si128(int32_t(abs_a))));
  const bool denormal = abs_a < 0x00800000u;
  if (denormal) ad = _mm_mul_sd(ad, tb.dbExpE23.pd());
  __m128d lna = ln_pair<kVectorIndex, kVectorIndex>(tb, _mm_unpacklo_pd(ad, ad));
  if (denormal) lna = _mm_sub_sd(lna, tb.dbE23.pd());
  const double bd = double(__builtin_bit_cast(float, bb));
  const double w = bd * _mm_cvtsd_f64(lna);
  const uint32_t hw = uint32_t(__builtin_bit_cast(uint64_t, w) >> 32) & 0x7FFFFFFFu;
  double res;
  if (hw < kWCallOutLimit) {
    const double shifter = _mm_cvtsd_f64(tb.dbShifter.pd());
    const double sum = w * _mm_cvtsd_f64(tb.dbInvLn2x128.pd()) + shifter;
    const int n = int(uint32_t(__builtin_bit_cast(uint64_t, sum)));
    const double r2 = w - (sum - shifter) * _mm_cvtsd_f64(tb.dbLn2by128.pd());
    const double h = double(__builtin_bit_cast(float, tb.Exp[n & 127][0]));
    const double e = double(__builtin_bit_cast(float, tb.Exp[n & 127][1]));
    const double scale = __builtin_bit_cast(double, uint64_t((n >> 7) + 1023) << 52);
    const double t = (h + h * e) * scale;
    res = (t + ((r2 / 6.0 + 0.5) * r2 * r2 + r2) * t) * g;
  } else {
    res = (w < 0 ? 0.0 : _mm_cvtsd_f64(tb.dbHuge.pd())) * g;
  }
  _mm_store_ss(dst, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_set_sd(res)));
  return luxOk;
}

// Frame kind F4 over blocks of 8 lanes (two quads); the tail takes the call-out.
template <bool kVectorIndex, bool kFixed>
struct SPowKernel {
  const SPowTable& tb;
  const float* a;
  const float* b;  // Pow: src2; Powx: the fixed x, one element in memory
  float* dst;
  CallState<lux32f>& call;

  bool block(int i) {
    const __m128 b0 = kFixed ? _mm_load1_ps(b) : load4(b + i);
    const __m128 b1 = kFixed ? b0 : load4(b + i + 4);
    __m128 r0, r1;
    const bool ok0 = quad<kVectorIndex, !kFixed>(tb, load4(a + i), b0, r0);
    const bool ok1 = quad<kVectorIndex, !kFixed>(tb, load4(a + i + 4), b1, r1);
    if (!(ok0 & ok1)) return false;
    store4(dst + i, r0);
    store4(dst + i + 4, r1);
    return true;
  }
  void lane(int i) {
    const uint32_t ab = *reinterpret_cast<const uint32_t*>(a + i);
    const uint32_t bb = *reinterpret_cast<const uint32_t*>(kFixed ? b : b + i);
    const luxStatus s = spow_lane<kVectorIndex>(tb, ab, bb, dst + i);
    if (s != luxOk) call.warn(s, i);
  }
  void tail(int i) { lane(i); }
};

// Powx shortcuts: the lanes' own IEEE products; no call-out, no status.
template <int kPower>
inline void small_power(const float* a, float* dst, int len) {
  auto pw = [](__m128 x) {
    const __m128 s = _mm_mul_ps(x, x);
    if constexpr (kPower == 2)
      return s;
    else if constexpr (kPower == 3)
      return _mm_mul_ps(s, x);
    else
      return _mm_mul_ps(s, s);
  };
  int i = 0;
  for (; i + 8 <= len; i += 8) {
    const __m128 x0 = load4(a + i), x1 = load4(a + i + 4);
    store4(dst + i, pw(x0));
    store4(dst + i + 4, pw(x1));
  }
  for (; i < len; ++i) store1(dst + i, pw(load1(a + i)));
}

template <bool kVectorIndex>
inline luxStatus run_spow(const SPowTable& tb, const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  X87Guard53 x87;
  RoundNearestGuard sse;
  CallState<lux32f> call(src1, src2, dst, dst);
  SPowKernel<kVectorIndex, false> k{tb, src1, src2, dst, call};
  run_block_redo<8>(len, k);
  return call.status();
}

// kProducts: the tier multiplies for x = 3 and 4 too.
template <bool kVectorIndex, bool kProducts>
inline luxStatus run_spowx(const SPowTable& tb, const lux32f* src, const lux32f* x, lux32f* dst, int len) {
  X87Guard53 x87;
  RoundNearestGuard sse;
  CallState<lux32f> call(src, src, dst, dst);
  const uint32_t xb = *reinterpret_cast<const uint32_t*>(x);  // as bits: a signalling NaN stays one
  alignas(16) uint32_t xm[4] = {xb, xb, xb, xb};
  if (xb == 0x40000000u) {
    small_power<2>(src, dst, len);
  } else if (kProducts && xb == 0x40400000u) {
    small_power<3>(src, dst, len);
  } else if (kProducts && xb == 0x40800000u) {
    small_power<4>(src, dst, len);
  } else {
    SPowKernel<kVectorIndex, true> k{tb, src, reinterpret_cast<const float*>(xm), dst, call};
    if ((xb & 0x7FFFFFFFu) > 0x7F800000u) {
      for (int i = 0; i < len; ++i) k.lane(i);  // NaN x: every lane by the lane routine
    } else {
      run_block_redo<8>(len, k);
    }
  }
  return call.status();
}

}  // namespace lux::pow
