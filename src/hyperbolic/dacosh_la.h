// The body of luxsAcosh_64f_A50 and luxsAcosh_64f_A26: the two tiers give the
// same values.  Each unit includes this file once, so each carries its own
// copy of the table (the names are local to the unit).
//
// Per lane, without a branch, two forms with A = x - 1 (near) or x^2 - 1
// (far) and q = sqrt(A):
//  near, x < 1.13001: acosh x = q * (Ev(A^2) + A * Od(A^2)), the series of
//   acosh(1 + A) / sqrt(A) split into even and odd parts of degree 3 each;
//  far: ln(w), w = q + x = 2^e * m; row i from the top 8 fraction bits of m,
//   c = 1 + i/256, t = m * rcp - 1 (t < 2^-8), ln(1 + t) of degree 6, and
//   ((ln(1 + t) + logLo) + logHi) + e ln 2.
// The block test passes x from 1 below 2^512.  A block with another lane is
// recomputed with masks: from 2^512 on w = x and e counts one more (adds
// ln 2, as x + sqrt(x^2 - 1) ~ 2x there); +Inf stays +Inf; below 1 (and -Inf)
// the near form's square root of a negative gives the default NaN, with a
// domain status after the store; a NaN flows through, quieted.
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

// Block test: hi32(x) - 0x3FF00000 below 0x20000000 unsigned, 1 <= x < 2^512.
constexpr uint32_t kPathFrom = 0x3FF00000;
constexpr uint32_t kPathSpan = 0x20000000;

struct AcoshRow {
  uint64_t log_hi, log_lo, rcp;
};

struct alignas(16) AcoshLaTable {
  Row64 one, two, near_bound, huge, inf, ln2;
  Row32 exp_bias;
  Row64 ev3, ev2, ev1, ev0, od3, od2, od1, od0;
  Row64 c6, c5, c4, c3, c2;
  AcoshRow rows[256];  // c = 1 + i/256: ln c in two words, 1/c
};

constexpr AcoshLaTable kTable = {
    .one = row64(0x3FF0000000000000),
    .two = row64(0x4000000000000000),
    .near_bound = row64(0x3FF214855DA27286),  // 1.13001
    .huge = row64(0x5FF0000000000000),        // 2^512
    .inf = row64(0x7FF0000000000000),
    .ln2 = row64(0x3FE62E42FEFA39EF),  // 0.6931471805599453
    .exp_bias = row32(1023),
    // acosh(1 + A)/sqrt(A) = Ev(A^2) + A Od(A^2) on 0 <= A < 0.13.
    .ev3 = row64(0x3F38BCA1A454C0AC),  // 0.0003774542459096346
    .ev2 = row64(0x3F65FFA156CDB465),  // 0.002685370555289656
    .ev1 = row64(0x3F9B27247AA24663),  // 0.026516504273394036
    .ev0 = row64(0x3FF6A09E667F3BCC),  // 1.414213562373095
    .od3 = row64(0xBF205DC692B3EB50),  // -0.0001248650454284913
    .od2 = row64(0xBF503043F3A2AEE4),  // -0.0009880698767500912
    .od1 = row64(0xBF8029958A51DF0F),  // -0.007891815456090549
    .od0 = row64(0xBFBE2B7DDDFED593),  // -0.1178511301976271
    // ln(1 + t) = t (1 + c2 t + ... + c6 t^5) on 0 <= t < 2^-8.
    .c6 = row64(0xBFC51E49A83C3738),  // -0.1649868079625152
    .c5 = row64(0x3FC9995B309BEE6F),  // 0.19999256013385344
    .c4 = row64(0xBFCFFFFFDF59C703),  // -0.24999998479648164
    .c3 = row64(0x3FD55555555178B0),  // 0.33333333331928383
    .c2 = row64(0xBFDFFFFFFFFFFFAA),  // -0.4999999999999952
    .rows =
        {
#include "hyperbolic/invhyp_ln256_table.inc"
        },
};

inline __m128d horner3(__m128d z, __m128d c3, __m128d c2, __m128d c1, __m128d c0) {
  __m128d p = _mm_add_pd(_mm_mul_pd(c3, z), c2);
  p = _mm_add_pd(_mm_mul_pd(p, z), c1);
  return _mm_add_pd(_mm_mul_pd(p, z), c0);
}

struct AcoshUnit {
  using Elem = double;
  using Table = AcoshLaTable;

  static bool main_range(const Table&, __m128d x0, __m128d x1) {
    return lux::invhyp::all_within(lux::invhyp::high_words4(x0, x1), kPathFrom, kPathSpan);
  }

  template <bool Masked>
  static __m128d eval(const Table& t, __m128d x) {
    // From 2^512 (and +Inf): w = x, exponent bias 1022.
    const __m128d huge = Masked ? _mm_cmpge_pd(x, t.huge.pd()) : _mm_setzero_pd();
    const __m128d xs = Masked ? lux::invhyp::select(huge, t.two.pd(), x) : x;
    const __m128d near = _mm_cmpnle_pd(t.near_bound.pd(), xs);  // not (1.13001 <= x), NaN too
    const __m128d a = _mm_sub_pd(lux::invhyp::select(near, xs, _mm_mul_pd(xs, xs)), t.one.pd());
    const __m128d q = _mm_sqrt_pd(a);

    const __m128d z = _mm_mul_pd(a, a);
    const __m128d ev = horner3(z, t.ev3.pd(), t.ev2.pd(), t.ev1.pd(), t.ev0.pd());
    const __m128d od = horner3(z, t.od3.pd(), t.od2.pd(), t.od1.pd(), t.od0.pd());
    const __m128d s = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(od, a), ev), q);

    __m128d w = _mm_add_pd(q, xs);
    __m128i bias = t.exp_bias.pi();
    if constexpr (Masked) {
      w = lux::invhyp::select(huge, x, w);
      bias = _mm_add_epi32(bias, lux::high_words(huge));  // -1 where huge
    }
    const __m128i hi = lux::high_words(w);
    const __m128i row = _mm_and_si128(_mm_srli_epi32(hi, 12), _mm_set1_epi32(0xFF));
    const AcoshRow& r0 = t.rows[lux::logs::word<0>(row)];
    const AcoshRow& r1 = t.rows[lux::logs::word<1>(row)];
    const __m128d e = _mm_cvtepi32_pd(_mm_sub_epi32(_mm_srli_epi32(hi, 20), bias));
    const __m128d m = lux::invhyp::mantissa_pd(w);
    const __m128d tt = _mm_sub_pd(_mm_mul_pd(m, lux::logs::gather2(&r0.rcp, &r1.rcp)), t.one.pd());
    __m128d p = _mm_add_pd(_mm_mul_pd(t.c6.pd(), tt), t.c5.pd());
    p = _mm_add_pd(_mm_mul_pd(p, tt), t.c4.pd());
    p = _mm_add_pd(_mm_mul_pd(p, tt), t.c3.pd());
    p = _mm_add_pd(_mm_mul_pd(p, tt), t.c2.pd());
    p = _mm_mul_pd(_mm_add_pd(_mm_mul_pd(p, tt), t.one.pd()), tt);
    const __m128d far = _mm_add_pd(_mm_add_pd(_mm_add_pd(p, lux::logs::gather2(&r0.log_lo, &r1.log_lo)),
                                              lux::logs::gather2(&r0.log_hi, &r1.log_hi)),
                                   _mm_mul_pd(e, t.ln2.pd()));

    __m128d res = lux::invhyp::select(near, s, far);
    if constexpr (Masked) res = lux::invhyp::select(_mm_cmpeq_pd(x, t.inf.pd()), x, res);
    return res;
  }

  // -Inf <= x < 1: domain.  NaNs set nothing.
  static luxStatus status(uint64_t x) {
    const bool below_one =
        x < 0x3FF0000000000000ull || (x >= 0x8000000000000000ull && x <= 0xFFF0000000000000ull);
    return below_one ? luxWarnDomain : luxOk;
  }
};

inline luxStatus acosh_la(const lux64f* src, lux64f* dst, int len) {
  return lux::invhyp::MaskedKernel<AcoshUnit>::run(kTable, src, dst, len);
}

}  // namespace
