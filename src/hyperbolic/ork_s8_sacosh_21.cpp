// luxsAcosh_32f_A21: inverse hyperbolic cosine of binary32 lanes, tier A21 (bound 8 ulp).
// max error 3.05 ulp at x = 0x1.80748ep+0 (luxvm accuracy, 800297 points)
//
// Per lane, A = x - 1 (x < 1.5) or x^2 - 1, q = sqrt(A).  Below 1.5:
// acosh x = q P(A), P of degree 4 for acosh(1 + A)/sqrt(A).  From 1.5:
// ln(w), w = q + x = 2^e * m, t = m - 1 in [0, 1): t L(t) + e ln 2, L of
// degree 7.  No table.  A block with a lane outside [1, 0x5F7FFFFF] is
// recomputed with masks: above 0x5F7FFFFF a finite x takes ln x + ln 2 (e
// counts one more); +Inf stays +Inf and a NaN comes out quieted; below 1
// (and -Inf) the near form's square root of a negative gives the default
// NaN, with a domain status after the store.
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

// Vector path: bits(x) from 0x3F800000 (1.0) up to 0x5F7FFFFF.
constexpr uint32_t kPathFrom = 0x3F800000;
constexpr uint32_t kPathSpan = 0x20000000;

struct alignas(16) Table {
  Row32 one, ln2, near_below, inf_below;
  Row32 p[5];  // acosh(1 + A)/sqrt(A) on 0 <= A < 0.5
  Row32 l[8];  // ln(1 + t)/t on [0, 1)
};

constexpr Table kTable = {
    .one = row32(0x3F800000),
    .ln2 = row32(0x3F317218),         // 0.693147182
    .near_below = row32(0x3FC00000),  // 1.5
    .inf_below = row32(0x7F7FFFFF),
    .p =
        {
            row32(0x3AE6775B),  // 0.00175831781
            row32(0xBBF69D71),  // -0.0075260927
            row32(0x3CD8B74A),  // 0.0264545865
            row32(0xBDF159F9),  // -0.11784739
            row32(0x3FB504F3),  // 1.41421354
        },
    .l =
        {
            row32(0xBC09035D),  // -0.00836261827
            row32(0x3D323945),  // 0.0435116477
            row32(0xBDDB04BE),  // -0.106942639
            row32(0x3E353C09),  // 0.176986828
            row32(0xBE7AAE38),  // -0.244805217
            row32(0x3EAA5BDF),  // 0.332732171
            row32(0xBEFFFC6F),  // -0.49997279
            row32(0x3F7FFFFD),  // 0.999999821
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
    // Above 0x5F7FFFFF (and +Inf, positive NaNs): w = x, e one more.
    const lux::invhyp::HugeLanes h = lux::invhyp::huge_lanes<Masked>(x, kPathFrom + kPathSpan - 1);
    const __m128 xs = h.arg;
    const __m128 near = as_ps(_mm_cmplt_epi32(as_int(xs), t.near_below.pi()));
    const __m128 a = _mm_sub_ps(select(near, xs, _mm_mul_ps(xs, xs)), t.one.ps());
    const __m128 q = _mm_sqrt_ps(a);
    const __m128 nv = _mm_mul_ps(lux::invhyp::horner(t.p, a), q);
    const __m128 w = select(h.mask, x, _mm_add_ps(q, xs));
    const __m128 res = select(near, nv, lux::invhyp::log_t_poly(w, h.extra, t.l, t.ln2.ps()));
    // +Inf stays, a positive NaN is quieted.
    return Masked
               ? select(as_ps(_mm_cmpgt_epi32(as_int(x), t.inf_below.pi())), _mm_mul_ps(x, t.one.ps()), res)
               : res;
  }

  // -Inf <= x < 1: domain.  NaNs set nothing.
  static luxStatus status(uint32_t x) {
    return (x < 0x3F800000u || (x >= 0x80000000u && x <= 0xFF800000u)) ? luxWarnDomain : luxOk;
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcosh_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
