// The body of luxsAsinh_64f_A50 and luxsAsinh_64f_A26: the two tiers are the
// same code on equal tables.  Each unit includes this file once, so each
// carries its own copy of the table (the names are local to the unit).
//
// asinh |x| = ln(w), w = sqrt(x^2 + 1) + |x|, on the vector path for |x| from
// 0.5625 up to the largest finite value; from 1e154 on, where x^2 would
// overflow, w = |x| and ln 2 is added last.  w = 2^e * m; c = 1 + i/64 is m
// rounded to six fraction bits (ties up), and row i holds rcp, a 12-bit
// multiple of 2^-12 near 1/c, with -ln(rcp) in two words.  m is split so that
// m_hi * rcp - 1 is exact; r = m * rcp - 1 in two parts, and
// ln(1 + r) - r = r^2 (u2 + u3 r + ... + u7 r^5), |r| < 2^-7.  The sum runs
// from the smallest term to the largest; where the table's and e's low
// words vanish together (w near 1) the low part of r joins the leading sum.
// The sign of x is ORed in.  A block with a lane below 0.5625 or not finite
// goes lane by lane until the lanes left are a multiple of 4: there, below
// 0.5625, asinh a = a - a * N(a^2)/D(a^2), a rational form of degree 4/5;
// infinities and NaNs go through the x87 as they came.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/log_frame.h"
#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::row32;
using lux::Row32;
using lux::row64;
using lux::Row64;

// Vector path: (hi32(x) - 0x3FE20000) & 0x7FFFFFFF up to 0x400DFFFF, that is
// 0.5625 <= |x| < Inf.
constexpr uint32_t kPathFrom = 0x3FE20000;
constexpr uint32_t kPathSpan = 0x400E0000;
constexpr uint32_t kInfHigh = 0x7FF00000;

struct AsinhRow {
  uint64_t rcp, log_hi, log_lo;
};

struct alignas(16) AsinhLaTable {
  Row64 abs_mask, sign_mask, one, frac_mask, head_mask;
  Row64 huge, ln2;       // from 1e154: w = |x|, + ln 2
  Row64 ln2_hi, ln2_lo;  // ln 2 with its low 11 bits zero, and the rest
  Row32 exp_bias, row_round;
  Row64 u7, u6, u5, u4, u3, u2;
  Row64 n4, n3, n2, n1, n0, d4, d3, d2, d1, d0, d;
  AsinhRow rows[65];  // c = 1 + i/64
};

constexpr AsinhLaTable kTable = {
    .abs_mask = row64(0x7FFFFFFFFFFFFFFF),
    .sign_mask = row64(0x8000000000000000),
    .one = row64(0x3FF0000000000000),
    .frac_mask = row64(0x000FFFFFFFFFFFFF),
    .head_mask = row64(0x7FFFFFFFFFE00000),  // m_hi: 31 fraction bits, m_hi * rcp exact
    .huge = row64(0x5FE7DDDF6B095FF1),       // 1e154
    .ln2 = row64(0x3FE62E42FEFA39EF),        // 0.6931471805599453
    .ln2_hi = row64(0x3FE62E42FEFA3800),     // 0.6931471805598903
    .ln2_lo = row64(0x3D2EF35793C76730),     // 5.497923018708371e-14
    .exp_bias = row32(1023),
    .row_round = row32(0x2000),  // half a row under the top six fraction bits
    // ln(1 + r) - r on |r| < 2^-7.
    .u7 = row64(0x3FC24998090DC555),  // 0.1428709072311373
    .u6 = row64(0xBFC555C54DD57D75),  // -0.1666800146149218
    .u5 = row64(0x3FC9999998867A53),  // 0.19999999949955569
    .u4 = row64(0xBFCFFFFFFF201E13),  // -0.24999999959276006
    .u3 = row64(0x3FD55555555555A7),  // 0.33333333333333787
    .u2 = row64(0xBFE000000000001C),  // -0.5000000000000031
    // (a - asinh a)/a = N(s)/D(s), s = a^2, a < 0.5625.
    .n4 = row64(0x3F58ADD257FC31F7),  // 0.0015062860620133048
    .n3 = row64(0x3F9CA46D660D7C6A),  // 0.027970990518380402
    .n2 = row64(0x3FC0A1391BDE5BB6),  // 0.12992013798495144
    .n1 = row64(0x3FCB4582678959E9),  // 0.21305875831121959
    .n0 = row64(0x3FBCD7E29A3E40CF),  // 0.11266914621069478
    .d4 = row64(0x3F610652F7833F08),  // 0.0020782108732432282
    .d3 = row64(0x3FAF68B8B733C2AB),  // 0.061345836986111145
    .d2 = row64(0x3FDD3E498446AC63),  // 0.45692670743546254
    .d1 = row64(0x3FF4F834A35023A5),  // 1.3105970744529511
    .d0 = row64(0x3FF95229A47B1877),  // 1.5825592446358578
    .d = row64(0x3FE5A1E9F3AEB0CA),   // 0.67601487726417386
    .rows =
        {
#include "hyperbolic/invhyp_asinh_la_table.inc"
        },
};

inline __m128d horner(__m128d s, __m128d c4, __m128d c3, __m128d c2, __m128d c1, __m128d c0) {
  __m128d p = _mm_add_pd(_mm_mul_pd(c4, s), c3);
  p = _mm_add_pd(_mm_mul_pd(p, s), c2);
  p = _mm_add_pd(_mm_mul_pd(p, s), c1);
  return _mm_add_pd(_mm_mul_pd(p, s), c0);
}

// Two lanes of the vector path.
inline __m128d asinh_pair(const AsinhLaTable& t, __m128d x) {
  const __m128d a = _mm_and_pd(x, t.abs_mask.pd());
  const __m128d huge = _mm_cmpge_pd(a, t.huge.pd());
  const __m128d as = lux::invhyp::select(huge, t.one.pd(), a);  // keeps a^2 from overflowing
  __m128d w = _mm_add_pd(_mm_sqrt_pd(_mm_add_pd(_mm_mul_pd(as, as), t.one.pd())), as);
  w = lux::invhyp::select(huge, a, w);
  const __m128d big_a = _mm_and_pd(huge, t.ln2.pd());

  const __m128i hi = lux::high_words(w);
  const __m128i row =
      _mm_srli_epi32(_mm_add_epi32(_mm_and_si128(hi, _mm_set1_epi32(0x000FFFFF)), t.row_round.pi()), 14);
  const AsinhRow& r0 = t.rows[lux::logs::word<0>(row)];
  const AsinhRow& r1 = t.rows[lux::logs::word<1>(row)];
  const __m128d e = _mm_cvtepi32_pd(_mm_sub_epi32(_mm_srli_epi32(hi, 20), t.exp_bias.pi()));
  const __m128d m = _mm_or_pd(_mm_and_pd(w, t.frac_mask.pd()), t.one.pd());
  const __m128d mh = _mm_and_pd(m, t.head_mask.pd());
  const __m128d ml = _mm_sub_pd(m, mh);
  const __m128d rcp = lux::logs::gather2(&r0.rcp, &r1.rcp);
  const __m128d rh = _mm_sub_pd(_mm_mul_pd(mh, rcp), t.one.pd());  // exact
  const __m128d rl = _mm_mul_pd(ml, rcp);
  const __m128d r = _mm_add_pd(rl, rh);

  __m128d b =
      _mm_add_pd(_mm_add_pd(_mm_mul_pd(e, t.ln2_hi.pd()), lux::logs::gather2(&r0.log_hi, &r1.log_hi)), rh);
  const __m128d c = _mm_add_pd(_mm_mul_pd(e, t.ln2_lo.pd()), lux::logs::gather2(&r0.log_lo, &r1.log_lo));
  const __m128d near = _mm_cmpeq_pd(c, _mm_setzero_pd());
  b = lux::invhyp::select(near, _mm_add_pd(b, rl), b);
  const __m128d g = _mm_andnot_pd(near, rl);

  const __m128d z = _mm_mul_pd(r, r);
  const __m128d uu = _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(t.u7.pd(), z), t.u5.pd()), z), t.u3.pd());
  const __m128d tt = _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(t.u6.pd(), z), t.u4.pd()), z), t.u2.pd());
  const __m128d u = _mm_mul_pd(z, _mm_add_pd(_mm_mul_pd(uu, r), tt));
  const __m128d res = _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(u, c), g), b), big_a);
  return _mm_or_pd(res, _mm_and_pd(x, t.sign_mask.pd()));
}

// Below 0.5625: a - (N/D) a.
inline __m128d asinh_small(const AsinhLaTable& t, __m128d x) {
  const __m128d a = _mm_and_pd(x, t.abs_mask.pd());
  const __m128d s = _mm_mul_pd(a, a);
  const __m128d n = _mm_mul_pd(s, horner(s, t.n4.pd(), t.n3.pd(), t.n2.pd(), t.n1.pd(), t.n0.pd()));
  const __m128d dn =
      _mm_add_pd(_mm_mul_pd(s, horner(s, t.d4.pd(), t.d3.pd(), t.d2.pd(), t.d1.pd(), t.d0.pd())), t.d.pd());
  const __m128d res = _mm_sub_pd(a, _mm_mul_pd(_mm_div_pd(n, dn), a));
  return _mm_or_pd(res, _mm_and_pd(x, t.sign_mask.pd()));
}

struct AsinhKernel {
  const lux64f* src;
  lux64f* dst;
  const AsinhLaTable& t;

  bool block(int i) {
    const __m128d x0 = lux::load2(src + i), x1 = lux::load2(src + i + 2);
    const __m128i ahi = _mm_and_si128(lux::invhyp::high_words4(x0, x1), _mm_set1_epi32(0x7FFFFFFF));
    if (!lux::invhyp::all_within(ahi, kPathFrom, kPathSpan)) return false;
    lux::store2(dst + i, asinh_pair(t, x0));
    lux::store2(dst + i + 2, asinh_pair(t, x1));
    return true;
  }

  void lane(int i) {
    const uint32_t ahi = uint32_t(lux::invhyp::bits_of(src + i) >> 32) & 0x7FFFFFFF;
    if (ahi >= kInfHigh)
      lux::invhyp::x87_pass(src + i, dst + i);
    else if (ahi >= kPathFrom)
      lux::store1(dst + i, asinh_pair(t, lux::invhyp::broadcast(src + i)));
    else
      lux::store1(dst + i, asinh_small(t, lux::invhyp::broadcast(src + i)));
  }
};

inline luxStatus asinh_la(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  AsinhKernel k{src, dst, kTable};
  lux::run_block_resume<4>(len, k);
  return luxOk;
}

}  // namespace
