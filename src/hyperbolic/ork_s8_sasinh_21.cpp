// luxsAsinh_32f_A21: inverse hyperbolic sine of binary32 lanes, tier A21 (bound 8 ulp).
// max error 3.43 ulp at x = 0x1.f7f188p-1 (luxvm accuracy, 800660 points)
//
// Per lane, a = |x|, s = a^2, w = sqrt(s + 1) + a.  Up to a = 1 (s <= 1):
// asinh a = a + a s P(s), P of degree 5 (the series' tail, fitted).  Above:
// ln(w), w = 2^e * m, t = m - 1 in [0, 1): t L(t) + e ln 2, L of degree 7.  No
// table.  The sign of x is ORed in.  A block with a lane from 0x5F7FFFFF on
// (where s overflows), an infinity or a NaN is recomputed with masks: such a
// finite lane takes ln|x| + ln 2 (e counts one more), infinities and NaNs
// give x.  No status.
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

// Vector path: bits(|x|) below 0x5F7FFFFF.
constexpr uint32_t kHugeFrom = 0x5F7FFFFF;

struct alignas(16) Table {
  Row32 abs_mask, sign_mask, one, ln2, near_max, inf_below;
  Row32 p[6];  // (asinh a - a)/(a s) on a <= 1
  Row32 l[8];  // ln(1 + t)/t on [0, 1)
};

constexpr Table kTable = {
    .abs_mask = row32(0x7FFFFFFF),
    .sign_mask = row32(0x80000000),
    .one = row32(0x3F800000),
    .ln2 = row32(0x3F317218),       // 0.693147182
    .near_max = row32(0x3F800000),  // s up to 1.0
    .inf_below = row32(0x7F7FFFFF),
    .p =
        {
            row32(0x3B073C0B),  // 0.00206351536
            row32(0xBC249944),  // -0.010046307
            row32(0x3CC55BF8),  // 0.0240917057
            row32(0xBD2F6A55),  // -0.0428260155
            row32(0x3D9913EF),  // 0.0747450516
            row32(0xBE2AA775),  // -0.166654423
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
    return lux::invhyp::block_within(x0, x1, 0x7FFFFFFF, 0, kHugeFrom);
  }

  template <bool Masked>
  static __m128 eval(const Table& t, __m128 x) {
    const __m128 a0 = _mm_and_ps(x, t.abs_mask.ps());
    const lux::invhyp::HugeLanes h = lux::invhyp::huge_lanes<Masked>(a0, kHugeFrom - 1);
    const __m128 a = h.arg;
    const __m128 s = _mm_mul_ps(a, a);
    const __m128 w = select(h.mask, a0, _mm_add_ps(_mm_sqrt_ps(_mm_add_ps(s, t.one.ps())), a));
    const __m128 far = as_ps(_mm_cmpgt_epi32(as_int(s), t.near_max.pi()));
    const __m128 nv = _mm_add_ps(a, _mm_mul_ps(a, _mm_mul_ps(s, lux::invhyp::horner(t.p, s))));
    const __m128 fv = lux::invhyp::log_t_poly(w, h.extra, t.l, t.ln2.ps());
    const __m128 res = _mm_or_ps(select(far, fv, nv), _mm_and_ps(x, t.sign_mask.ps()));
    // Infinities and NaNs: x.
    return Masked ? select(as_ps(_mm_cmpgt_epi32(as_int(a0), t.inf_below.pi())), x, res) : res;
  }

  static luxStatus status(uint32_t) { return luxOk; }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsinh_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
