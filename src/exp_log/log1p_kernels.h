// ln(1 + x), written once for the six Log1p units: the constant tables
// (every unit that includes this header gets its own copy: they live in an
// unnamed namespace), the scalar routine that handles every argument, and
// the vector body of the regular range 2 <= x < 2^55.
//
// Away from 0, 1 + x = 2^e m and ln(1 + x) = e ln 2 - ln r_i + ln(m r_i),
// with r_i a 12-bit reciprocal of m from its top 8 fraction bits, so that
// m r_i - 1 is below 2^-8 in magnitude and its logarithm a short series.  x
// is split into a 21-bit head and a tail so that (1 + x) 2^-e r_i - 1 is
// formed without ever rounding 1 + x.  Near 0 three polynomial zones of
// rising degree take over, the widest carrying its x^2 term in two parts.
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

struct alignas(16) Log1pTable {
  uint32_t rcp[256];     // r_i = RN(2048/(1 + (i + 0.5)/256))/2048
  uint64_t log[256][2];  // {Llo_i, Lhi_i}: -ln r_i = Lhi_i + Llo_i
  uint64_t P[5];         // ln(1 + r) - r = r^2 (P0 + P1 r + ... + P4 r^4), |r| < 2^-8
  uint64_t Q1[15];       // zone 1, 2^-6 <= |x| < 0.0713; Q1[14] + Q1[1] = 1/3
  uint64_t Q2[9];        // zone 2, 2^-13 <= |x| < 2^-6
  uint64_t Q3[4];        // zone 3, 2^-57 <= |x| < 2^-13
  Row64 ln2lo, ln2hi;    // ln 2 = ln2hi + ln2lo, ln2hi with 32 bits: e ln2hi exact
  Row64 two32, two32p1;  // 2^32, 2^32 + 1
  Row64 one;
  Row64 hi21;            // 0xFFFFFFFF00000000: keeps the high word
  Row64 exp7ff, exp7fe;  // exponent field; 0x7FE00000 - it gives 2^-e
  Row64 p0, p1, p2, p3, p4;
  Row64 sub, cmp;  // regular-range test
  Row64 small;     // 2^-1000
};

constexpr Log1pTable kLog1p = {
    {
#include "exp_log/log1p_rcp_table.inc"
    },
    {
#include "exp_log/log1p_log_table.inc"
    },
    {0xBFE0000000000000, 0x3FD555555554D0DF, 0xBFCFFFFFFFFE169D, 0x3FC999A24CDB6ABC, 0xBFC5555F7BD1FCD4},
    {0x0000000000000000, 0x3E75555555453A31, 0xBFCFFFFFFFFFFFFE, 0x3FC9999999999FC9, 0xBFC55555555565F1,
     0x3FC24924922CA0F5, 0xBFBFFFFFFF91931E, 0x3FBC71C7998FE202, 0xBFB9999A57DF52CC, 0x3FB74544A220006F,
     0xBFB554A46FBCEC87, 0x3FB3FFB2AC7A39A4, 0xBFB29D524F0060E0, 0xBFE0000000000000, 0x3FD5555500000000},
    {0xBFE0000000000000, 0x3FD5555555555555, 0xBFCFFFFFFFFFFFFC, 0x3FC99999999A2B21, 0xBFC5555555566AD6,
     0x3FC2492478D1D116, 0xBFBFFFFFB94B8A57, 0x3FBC756A566CE20D, 0xBFB99D9A03A0403E},
    {0xBFE0000000000000, 0x3FD5555555555555, 0xBFD0000003555556, 0x3FC99999A199B4B4},
    row64(0x3DEA39EF35793C76),  // 1.9082149292705877e-10
    row64(0x3FE62E42FEE00000),  // 0.6931471803691238
    row64(0x41F0000000000000),  // 2^32
    row64(0x41F0000000100000),  // 2^32 + 1
    row64(0x3FF0000000000000),  // 1.0
    row64(0xFFFFFFFF00000000),
    row64(0x7FF0000000000000),
    row64(0x7FE0000000000000),
    row64(0xBFE0000000000000),  // -0.5
    row64(0x3FD555555554D0DF),  // 0.33333333333309
    row64(0xBFCFFFFFFFFE169D),  // -0.24999999999891
    row64(0x3FC999A24CDB6ABC),  // 0.20000866
    row64(0xBFC5555F7BD1FCD4),  // -0.16666787
    // (hi - 0xC0000000), signed, not above 0x835FFFFF: hi in [0x40000000,
    // 0x435FFFFF], 2 <= x < 2^55.  The same on binary32 bits with
    // 0x9AFFFFFF: [0x40000000, 0x5AFFFFFF].
    row64(0xC0000000C0000000),
    row64(0x835FFFFF835FFFFF),
    row64(0x0170000000000000),  // 2^-1000
};
constexpr uint32_t kCmp32 = 0x9AFFFFFF;

// Scalar-routine bounds on H = hi & 0x7FFFFFFF.
constexpr uint32_t kLogPathBound = 0x3FB24000;  // |x| >= 0.0712890625
constexpr uint32_t kZone1Bound = 0x3F900000;    // |x| >= 2^-6
constexpr uint32_t kZone2Bound = 0x3F200000;    // |x| >= 2^-13
constexpr uint32_t kZone3Bound = 0x3C600000;    // |x| >= 2^-57
constexpr uint32_t kNoOneBound = 0x43600000;    // x >= 2^55: the 1 does not count

inline double d(uint64_t b) { return __builtin_bit_cast(double, b); }
inline double d(const Row64& r) { return d(r.v[0]); }
inline uint64_t u64(double x) { return __builtin_bit_cast(uint64_t, x); }
inline double clear_low(double x) { return d(u64(x) & 0xFFFFFFFF00000000ull); }

// The common tail: e ln 2 - ln r_i + ln(1 + rh + rl).
inline double log_tail(double rh, double rl, int32_t e, int i) {
  const Log1pTable& T = kLog1p;
  const double r = rh + rl;
  const double z = r * r;
  const double p = (((d(T.P[4]) * z + d(T.P[2])) * z + d(T.P[0])) + (d(T.P[3]) * z + d(T.P[1])) * r) * z;
  const double ed = double(e);
  const double kh = ed * d(T.ln2hi) + d(T.log[i][1]);
  const double kl = ed * d(T.ln2lo) + d(T.log[i][0]);
  return (rh + kh) + ((rl + p) + kl);
}

// The scalar routine: ln(1 + x) for every x; *status gets 0, 18 or 19.
[[gnu::always_inline]] inline double log1p_gen(double x, int* status) {
  const Log1pTable& T = kLog1p;
  *status = 0;
  const uint64_t bits = u64(x);
  const uint32_t hi = uint32_t(bits >> 32);
  const uint32_t H = hi & 0x7FFFFFFF;
  if (H >= 0x7FF00000) {
    if (bits == 0xFFF0000000000000ull) {
      *status = luxWarnDomain;
      return opaque(x) * 0.0;  // Inf 0: the default NaN, invalid raised
    }
    return opaque(x) * 1.0;  // +Inf, or the NaN quieted
  }
  if (hi >= 0xBFF00000u) {
    if (bits == 0xBFF0000000000000ull) {
      *status = luxWarnSingularity;
      return -1.0 / opaque(0.0);
    }
    *status = luxWarnDomain;
    return opaque(d(0x7FF0000000000000ull)) * 0.0;
  }
  if (H >= kLogPathBound) {
    if (H >= kNoOneBound) {
      const int32_t e = int32_t(hi >> 20) - 1023;
      const int i = int(hi >> 12) & 255;
      const double m = d((bits & 0x000FFFFFFFFFFFFFull) | 0x3FF0000000000000ull);
      const double mh = clear_low(m);
      const double ri = double(__builtin_bit_cast(float, T.rcp[i]));
      const double rh = mh * ri - 1.0;
      const double rl = (m - mh) * ri;
      return log_tail(rh, rl, e, i);
    }
    const double y = 1.0 + x;  // its exponent and top bits only
    const uint32_t hy = uint32_t(u64(y) >> 32);
    const int32_t e = int32_t(hy >> 20) - 1023;
    const int i = int(hy >> 12) & 255;
    const double s = d(uint64_t(0x7FE00000u - (hy & 0x7FF00000u)) << 32);
    const double c = double(__builtin_bit_cast(float, T.rcp[i])) * s;
    const double xh = clear_low(x);
    const double xl = x - xh;
    const double A = xh * c + (c - 1.0);
    const double Bl = xl * c;
    const double rh = ((A + Bl) + d(T.two32)) - d(T.two32);
    const double rl = Bl + (A - rh);
    return log_tail(rh, rl, e, i);
  }
  if (H >= kZone1Bound) {
    const auto Q = [&T](int k) { return d(T.Q1[k]); };
    const double xh = x * d(T.two32p1) - x * d(T.two32);
    const double xl = x - xh;
    const double z = x * x;
    const double a = Q(14) * xh + Q(13);
    const double E = (((((Q(12) * z + Q(10)) * z + Q(8)) * z + Q(6)) * z + Q(4)) * z + Q(2)) * z;
    const double O = (((((Q(11) * z + Q(9)) * z + Q(7)) * z + Q(5)) * z + Q(3)) * z + Q(1)) * x;
    const double b = Q(14) * xl + (E + O);
    const double s = a + b;
    const double sh = s * d(T.two32p1) - s * d(T.two32);
    const double sl = (a - sh) + b;
    const double w = (x + xh) * xl;
    const double q = xh * xh;
    const double v = w + q;
    const double zh = v * d(T.two32p1) - v * d(T.two32);
    const double zl = (q - zh) + w;
    return (sh * zh + xh) + (xl + (sl * z + zl * sh));
  }
  if (H >= kZone2Bound) {
    const auto Q = [&T](int k) { return d(T.Q2[k]); };
    const double xh = clear_low(x);
    const double xl = x - xh;
    const double z = x * x;
    const double q = xh * xh;
    const double hh = clear_low(q);
    const double qr = q - hh;
    const double c = ((xh + xl) + xh) * xl + qr;
    const double E = (((Q(8) * z + Q(6)) * z + Q(4)) * z + Q(2)) * z;
    const double O = (((Q(7) * z + Q(5)) * z + Q(3)) * z + Q(1)) * x;
    const double V = (O + E) * z;
    return (xh + (-0.5) * hh) + ((xl + V) + (-0.5) * c);
  }
  if (H >= kZone3Bound) {
    const auto Q = [&T](int k) { return d(T.Q3[k]); };
    const double z = x * x;
    return ((Q(3) * z + Q(1)) * z + (Q(2) * z + Q(0)) * x) * x + x;
  }
  if ((bits << 1) == 0) return x;
  // ln(1 + x) rounds to x: inexact, and tiny for a subnormal x.
  lux::genframe::flag_rounded_to_tiny(H < 0x00100000, d(T.small));
  return x;
}

// ---------------------------------------------------------------------------
// Vector body, two binary64 lanes with 2 <= x < 2^55.

inline bool regular(__m128i w, uint32_t cmp, int lanes) {
  const __m128i bad = _mm_cmpgt_epi32(_mm_sub_epi32(w, kLog1p.sub.pi()), _mm_set1_epi32(int32_t(cmp)));
  return (_mm_movemask_ps(_mm_castsi128_ps(bad)) & ((1 << lanes) - 1)) == 0;
}

inline __m128d log1p_pair(__m128d x) {
  const Log1pTable& T = kLog1p;
  const __m128d y = _mm_add_pd(T.one.pd(), x);
  const __m128i hy = lux::high_words(y);  // two int32 lanes
  const __m128i e = _mm_sub_epi32(_mm_srli_epi32(hy, 20), _mm_set1_epi32(1023));
  const __m128i idx = _mm_and_si128(_mm_srli_epi32(hy, 12), _mm_set1_epi32(255));
  const int i0 = _mm_cvtsi128_si32(idx), i1 = _mm_cvtsi128_si32(_mm_srli_si128(idx, 4));
  // s = 2^-e: high word 0x7FE00000 - (hy & 0x7FF00000), low word 0.
  const __m128i sw = _mm_sub_epi32(_mm_set1_epi32(0x7FE00000), _mm_and_si128(hy, _mm_set1_epi32(0x7FF00000)));
  const __m128d s = lux::as_pd(_mm_unpacklo_epi32(_mm_setzero_si128(), sw));
  const __m128d ri = _mm_cvtps_pd(
      lux::as_ps(_mm_unpacklo_epi32(_mm_cvtsi32_si128(int(T.rcp[i0])), _mm_cvtsi32_si128(int(T.rcp[i1])))));
  const __m128d c = _mm_mul_pd(ri, s);
  const __m128d xh = _mm_and_pd(x, T.hi21.pd());
  const __m128d xl = _mm_sub_pd(x, xh);
  const __m128d A = _mm_add_pd(_mm_mul_pd(xh, c), _mm_sub_pd(c, T.one.pd()));
  const __m128d Bl = _mm_mul_pd(xl, c);
  const __m128d rh = _mm_sub_pd(_mm_add_pd(_mm_add_pd(A, Bl), T.two32.pd()), T.two32.pd());
  const __m128d rl = _mm_add_pd(Bl, _mm_sub_pd(A, rh));

  const __m128d r = _mm_add_pd(rh, rl);
  const __m128d z = _mm_mul_pd(r, r);
  const __m128d even =
      _mm_mul_pd(_mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.p4.pd(), z), T.p2.pd()), z), T.p0.pd()), z);
  const __m128d odd = _mm_mul_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.p3.pd(), z), T.p1.pd()), r), z);
  const __m128d p = _mm_add_pd(even, odd);
  const __m128d ed = _mm_cvtepi32_pd(e);
  const __m128d kh =
      _mm_add_pd(_mm_mul_pd(ed, T.ln2hi.pd()), lux::genframe::gather2(&T.log[i0][1], &T.log[i1][1]));
  const __m128d kl =
      _mm_add_pd(_mm_mul_pd(ed, T.ln2lo.pd()), lux::genframe::gather2(&T.log[i0][0], &T.log[i1][0]));
  return _mm_add_pd(_mm_add_pd(rh, kh), _mm_add_pd(_mm_add_pd(rl, p), kl));
}

struct Log1pKernel64 {
  using Elem = lux64f;
  static constexpr int kBlock = 4;
  static bool block(const lux64f* in, lux64f* out) {
    const __m128d a = lux::load2(in), b = lux::load2(in + 2);
    const __m128i hw = _mm_unpacklo_epi64(lux::high_words(a), lux::high_words(b));
    if (__builtin_expect(!regular(hw, uint32_t(kLog1p.cmp.v[0]), 4), 0)) return false;
    lux::store2(out, log1p_pair(a));
    lux::store2(out + 2, log1p_pair(b));
    return true;
  }
  static int lane(const lux64f* in, lux64f* out) {
    int status;
    _mm_store_sd(out, _mm_set_sd(log1p_gen(lux::opaque(_mm_load_sd(in))[0], &status)));
    return status;
  }
};

struct Log1pKernel32 {
  using Elem = lux32f;
  static constexpr int kBlock = 8;
  static bool block(const lux32f* in, lux32f* out) {
    const __m128 a = lux::load4(in), b = lux::load4(in + 4);
    if (__builtin_expect(!regular(lux::as_int(a), kCmp32, 4) || !regular(lux::as_int(b), kCmp32, 4), 0))
      return false;
    const __m128 r0 = _mm_cvtpd_ps(log1p_pair(_mm_cvtps_pd(a)));
    const __m128 r1 = _mm_cvtpd_ps(log1p_pair(_mm_cvtps_pd(_mm_movehl_ps(a, a))));
    const __m128 r2 = _mm_cvtpd_ps(log1p_pair(_mm_cvtps_pd(b)));
    const __m128 r3 = _mm_cvtpd_ps(log1p_pair(_mm_cvtps_pd(_mm_movehl_ps(b, b))));
    lux::store4(out, _mm_movelh_ps(r0, r1));
    lux::store4(out + 4, _mm_movelh_ps(r2, r3));
    return true;
  }
  static int lane(const lux32f* in, lux32f* out) {
    int status;
    const double r = log1p_gen(lux::opaque(_mm_cvtss_sd(_mm_setzero_pd(), _mm_load_ss(in)))[0], &status);
    _mm_store_ss(out, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_set_sd(r)));
    return status;
  }
};

}  // namespace
