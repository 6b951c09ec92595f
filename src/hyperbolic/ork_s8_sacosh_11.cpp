// luxsAcosh_32f_A11: inverse hyperbolic cosine of binary32 lanes, tier A11 (bound 2^13 ulp).
// max error 2.11e+03 ulp at x = 0x1.ff61p+0 (luxvm accuracy, 800297 points)
//
// Per lane, A = x - 1 (x < 1.5) or x^2 - 1, and q = sqrt(A) from the 12-bit
// reciprocal square root estimate rs of A with one Newton step:
// y = A rs, q = (rs y - 3) y (-1/2).  Below 1.5: acosh x = q P(A), P of
// degree 2.  From 1.5: ln(w), w = q + x = 2^e * m, t = m - 1:
// t L(t) + e ln 2, L of degree 3.  No table.  The block test passes x from
// the float after 1 up to 0x5F7FFFFF; a block with another lane is
// recomputed with masks: x = 1 gives +0 (the estimate of 1/sqrt(0) is
// infinite); above 0x5F7FFFFF a finite x takes ln x + ln 2; +Inf stays +Inf
// and a NaN comes out quieted; below 1 (and -Inf) the estimate of a negative
// gives the default NaN, with a domain status after the store.
#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::as_int;
using lux::as_ps;
using lux::row32;
using lux::Row32;
using lux::invhyp::select;

// Vector path: bits(x) from 0x3F800001 up to 0x5F7FFFFF.
constexpr uint32_t kPathFrom = 0x3F800001;
constexpr uint32_t kPathSpan = 0x1FFFFFFF;

struct alignas(16) Table {
  Row32 one, two, three, minus_half, ln2, one_bits, near_below, inf_below;
  Row32 p[3];  // acosh(1 + A)/sqrt(A) on 0 <= A < 0.5
  Row32 l[4];  // ln(1 + t)/t on [0, 1)
};

constexpr Table kTable = {
    .one = row32(0x3F800000),
    .two = row32(0x40000000),
    .three = row32(0x40400000),
    .minus_half = row32(0xBF000000),
    .ln2 = row32(0x3F317218),  // 0.693147182
    .one_bits = row32(0x3F800000),
    .near_below = row32(0x3FC00000),  // 1.5
    .inf_below = row32(0x7F7FFFFF),
    .p =
        {
            row32(0x3CB0D29D),  // 0.0215848032
            row32(0xBDEF95EC),  // -0.116985172
            row32(0x3FB50431),  // 1.41419041
        },
    .l =
        {
            row32(0xBD96D14A),  // -0.0736413747
            row32(0x3E819B22),  // 0.253136694
            row32(0xBEF8E7C0),  // -0.486143112
            row32(0x3F7FE57C),  // 0.999595404
        },
};

struct Unit {
  using Elem = float;
  using Table = ::Table;

  static bool main_range(const Table&, __m128 x0, __m128 x1) {
    return lux::invhyp::block_within(x0, x1, 0xFFFFFFFF, kPathFrom, kPathSpan);
  }

  template <bool Masked>
  static __m128 eval(const Table& t, __m128 x) {
    const lux::invhyp::HugeLanes h = lux::invhyp::huge_lanes<Masked>(x, kPathFrom + kPathSpan - 1);
    const __m128 unit = Masked ? as_ps(_mm_cmpeq_epi32(as_int(x), t.one_bits.pi())) : _mm_setzero_ps();
    const __m128 xs = select(unit, t.two.ps(), h.arg);
    const __m128 near = as_ps(_mm_cmplt_epi32(as_int(xs), t.near_below.pi()));
    const __m128 a = _mm_sub_ps(select(near, xs, _mm_mul_ps(xs, xs)), t.one.ps());
    const __m128 rs = _mm_rsqrt_ps(a);
    const __m128 y = _mm_mul_ps(a, rs);
    const __m128 q =
        _mm_mul_ps(_mm_mul_ps(_mm_sub_ps(_mm_mul_ps(rs, y), t.three.ps()), y), t.minus_half.ps());
    const __m128 nv = _mm_mul_ps(lux::invhyp::horner(t.p, a), q);
    const __m128 w = select(h.mask, x, _mm_add_ps(q, xs));
    const __m128 res = select(near, nv, lux::invhyp::log_t_poly(w, h.extra, t.l, t.ln2.ps()));
    if constexpr (!Masked) return res;
    // +Inf stays, a positive NaN is quieted, 1 gives +0.
    const __m128 top = as_ps(_mm_cmpgt_epi32(as_int(x), t.inf_below.pi()));
    return _mm_andnot_ps(unit, select(top, _mm_mul_ps(x, t.one.ps()), res));
  }

  static luxStatus status(uint32_t x) {
    return (x < 0x3F800000u || (x >= 0x80000000u && x <= 0xFF800000u)) ? luxWarnDomain : luxOk;
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcosh_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
