// The body of luxsAtanh_64f_A50 and luxsAtanh_64f_A26: the two tiers are the
// same code on equal tables.  Each unit includes this file once, so each
// carries its own copy of the table (the names are local to the unit).
//
// Per lane, without a branch, a = |x|:
//  near, x^2 < 1/4: atanh a = a + a (z/3 + z^2/5 + ...), z = x^2, as two
//   chains in y = z^2 of degree 5 each (odd and even powers of z);
//  far: atanh a = ln(w)/2, w = (1 + a)/(1 - a) = 2^e * m, t = m - 1 in
//   [0, 1): ln(1 + t)/2 = t Q(t), Q of degree 18 (a near-minimax fit, error
//   below 2e-16 on [0, 1)), run as two chains in t^2; + e ln(2)/2.  No table.
// The sign of x is ORed in.  A block with a lane of |x| not below 1 or a NaN
// is recomputed with masks: |x| = 1 gives +-Inf with a singularity status,
// 1 < |x| <= Inf the NaN 0xFFF8000000000000 with a domain status, a NaN
// itself, bits unchanged, with no status.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::row32;
using lux::Row32;
using lux::row64;
using lux::Row64;

// Block test: hi32(|x|) below 0x3FF00000, |x| < 1.
constexpr uint32_t kPathSpan = 0x3FF00000;

struct alignas(16) AtanhLaTable {
  Row64 abs_mask, sign_mask, one, half, quarter, inf, domain_nan, ln2_half;
  Row32 exp_bias;
  Row64 f[6];    // first chain in y: a^9/9 .. a^5/5 terms, times y
  Row64 s[6];    // second chain in y: .. a^3/3 terms, times z
  Row64 qe[10];  // q18, q16, ..., q0
  Row64 qo[9];   // q17, q15, ..., q1
};

constexpr AtanhLaTable kTable = {
    .abs_mask = row64(0x7FFFFFFFFFFFFFFF),
    .sign_mask = row64(0x8000000000000000),
    .one = row64(0x3FF0000000000000),
    .half = row64(0x3FE0000000000000),
    .quarter = row64(0x3FD0000000000000),
    .inf = row64(0x7FF0000000000000),
    .domain_nan = row64(0xFFF8000000000000),
    .ln2_half = row64(0x3FD62E42FEFA39EF),  // 0.34657359027997264
    .exp_bias = row32(1023),
    .f =
        {
            row64(0x3FCB3FDB060EBDC9),  // 0.2128862170770687
            row64(0x3FBFEB7DBEB0347A),  // 0.12468706040836422
            row64(0x3FB029EF7A458D16),  // 0.06313988433025872
            row64(0x3FB3B46F72ECFF01),  // 0.07697197490506015
            row64(0x3FBC71C8DBD0B23F),  // 0.1111112152727367
            row64(0x3FC9999999A6CC76),  // 0.20000000002400825
        },
    .s =
        {
            row64(0xBFBE4242B0E6349D),  // -0.11819855517224416
            row64(0x3F9EDAA3F6EBE7EB),  // 0.03013092226590423
            row64(0x3FB0EC716A4E777D),  // 0.06610783429502294
            row64(0x3FB745A1E4F6E389),  // 0.09090625610305215
            row64(0x3FC249248D7C174C),  // 0.14285714062151056
            row64(0x3FD5555555554F04),  // 0.33333333333324355
        },
    // ln(1 + t)/(2t) on [0, 1), degree 18: Chebyshev fit, coefficients
    // rounded to binary64; |t Q(t) - ln(1 + t)/2| < 1.2e-16.
    .qe =
        {
            row64(0x3EFE04EA006D3827),  // q18 = 2.8628535825796352e-05
            row64(0x3F58D7F5C5BF8DB8),  // q16 = 0.001516332637941582
            row64(0x3F8685A1AE5435AE),  // q14 = 0.0109970694852802
            row64(0x3F9D664A7123F53B),  // q12 = 0.028710520892663665
            row64(0x3FA64E9697C93F11),  // q10 = 0.043568330792025496
            row64(0x3FAC5F4E5F4EFACB),  // q8 = 0.055414628156986355
            row64(0x3FB248EAA24CCCA9),  // q6 = 0.07142511808779041
            row64(0x3FB999993FC7329F),  // q4 = 0.09999997908671297
            row64(0x3FC55555554C0190),  // q2 = 0.16666666664970053
            row64(0x3FDFFFFFFFFFFFFC),  // q0 = 0.4999999999999998
        },
    .qo =
        {
            row64(0xBF33D86B42C44ED2),  // q17 = -0.0003028165690619314
            row64(0xBF73B8952D8A6245),  // q15 = -0.004814703680175618
            row64(0xBF9401EF952C90E7),  // q13 = -0.01953863475786557
            row64(0xBFA2E167800BB6A9),  // q11 = -0.03687594831522507
            row64(0xBFA94CD422077404),  // q9 = -0.04941428103823145
            row64(0xBFAFFCA181B2DCCB),  // q7 = -0.06247429569469317
            row64(0xBFB5554FD252E08F),  // q5 = -0.08333300480706128
            row64(0xBFBFFFFFFC7D7524),  // q3 = -0.12499999918278043
            row64(0xBFCFFFFFFFFFEC3B),  // q1 = -0.24999999999985953
        },
};

using lux::invhyp::horner;

struct AtanhUnit {
  using Elem = double;
  using Table = AtanhLaTable;

  static bool main_range(const Table&, __m128d x0, __m128d x1) {
    const __m128i ahi = _mm_and_si128(lux::invhyp::high_words4(x0, x1), _mm_set1_epi32(0x7FFFFFFF));
    return lux::invhyp::all_within(ahi, 0, kPathSpan);
  }

  template <bool Masked>
  static __m128d eval(const Table& t, __m128d x) {
    const __m128d a0 = _mm_and_pd(x, t.abs_mask.pd());
    const __m128d bad = Masked ? _mm_cmpnlt_pd(a0, t.one.pd()) : _mm_setzero_pd();  // a >= 1 or NaN
    const __m128d a = Masked ? lux::invhyp::select(bad, t.half.pd(), a0) : a0;
    const __m128d w = _mm_div_pd(_mm_add_pd(t.one.pd(), a), _mm_sub_pd(t.one.pd(), a));

    const __m128d z = _mm_mul_pd(a, a);
    const __m128d near = _mm_cmplt_pd(z, t.quarter.pd());
    const __m128d y = _mm_mul_pd(z, z);
    const __m128d first = _mm_mul_pd(horner(t.f, y), y);
    const __m128d second = _mm_mul_pd(horner(t.s, y), z);
    const __m128d s = _mm_add_pd(_mm_mul_pd(_mm_add_pd(second, first), a), a);

    const __m128d e = _mm_cvtepi32_pd(_mm_sub_epi32(_mm_srli_epi32(lux::high_words(w), 20), t.exp_bias.pi()));
    const __m128d tt = _mm_sub_pd(lux::invhyp::mantissa_pd(w), t.one.pd());
    const __m128d t2 = _mm_mul_pd(tt, tt);
    const __m128d q = _mm_add_pd(horner(t.qe, t2), _mm_mul_pd(tt, horner(t.qo, t2)));
    const __m128d far = _mm_add_pd(_mm_mul_pd(tt, q), _mm_mul_pd(e, t.ln2_half.pd()));

    __m128d res = _mm_or_pd(lux::invhyp::select(near, s, far), _mm_and_pd(x, t.sign_mask.pd()));
    if constexpr (Masked) {
      const __m128d pole = _mm_or_pd(t.inf.pd(), _mm_and_pd(x, t.sign_mask.pd()));
      res = lux::invhyp::select(_mm_cmpeq_pd(a0, t.one.pd()), pole, res);
      res = lux::invhyp::select(_mm_cmpgt_pd(a0, t.one.pd()), t.domain_nan.pd(), res);
      res = lux::invhyp::select(_mm_cmpunord_pd(x, x), x, res);
    }
    return res;
  }

  static luxStatus status(uint64_t x) {
    const uint64_t ax = x & 0x7FFFFFFFFFFFFFFFull;
    if (ax == 0x3FF0000000000000ull) return luxWarnSingularity;
    if (ax > 0x3FF0000000000000ull && ax <= 0x7FF0000000000000ull) return luxWarnDomain;
    return luxOk;
  }
};

inline luxStatus atanh_la(const lux64f* src, lux64f* dst, int len) {
  return lux::invhyp::MaskedKernel<AtanhUnit>::run(kTable, src, dst, len);
}

}  // namespace
