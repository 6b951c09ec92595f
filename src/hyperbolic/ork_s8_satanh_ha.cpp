// luxsAtanh_32f_A24: inverse hyperbolic tangent of binary32 lanes, tier A24 (bound 1 ulp).
// max error 0.856 ulp at x = 0x1.c53cd2p-1 (luxvm accuracy, 800396 points)
//
// Per lane, a = |x|, two forms split at 0.75:
//  below: c = 0.6875 above 0.6, else 0; v = (c - a)/(a c - 1), so that
//   atanh a = atanh c + atanh v with |v| < 0.09 (v = a when c = 0);
//   atanh v = v + v z P(z), z = v^2, P of degree 6; atanh 0.6875 in two
//   words is added last, the low word first;
//  from 0.75: w = 1 + 2a/(1 - a) = 2^e * m with m in [sqrt(2)/2, sqrt(2)),
//   z = m - 1: ln(w)/2 = z L(z) + e ln(2)/2, L of degree 9, ln(2)/2 in two
//   words (e * HI exact).
// No table.  The sign of x is ORed in.  Lanes of |x| >= 1 and NaNs:
// hyperbolic/satanh_masks.h.
#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"
#include "hyperbolic/satanh_masks.h"

namespace {

using lux::as_int;
using lux::as_ps;
using lux::row32;
using lux::Row32;
using lux::invhyp::select;

struct alignas(16) Table {
  Row32 abs_mask, sign_mask, one, half, shift_above, log_from, exp_one;
  Row32 c, hc, lc;         // 0.6875 and atanh 0.6875 in two words
  Row32 ln2h_hi, ln2h_lo;  // ln(2)/2 in two words
  Row32 p[7];              // (atanh v - v)/(v z) on |v| < 0.09
  Row32 l[10];             // ln(1 + z)/(2z) on [sqrt(2)/2 - 1, sqrt(2) - 1]
};

constexpr Table kTable = {
    .abs_mask = row32(0x7FFFFFFF),
    .sign_mask = row32(0x80000000),
    .one = row32(0x3F800000),
    .half = row32(0x3F000000),
    .shift_above = row32(0x3F19999A),  // 0.6
    .log_from = row32(0x3F400000),     // 0.75
    .exp_one = row32(0x00800000),      // adds one to the exponent: 2a
    .c = row32(0x3F300000),            // 0.6875
    .hc = row32(0x3F57DBEC),           // 0.8431994915008545
    .lc = row32(0xB27CD082),           // -1.471573973788054e-08
    .ln2h_hi = row32(0x3EB17200),      // 0.3465728759765625
    .ln2h_lo = row32(0x353FBE8E),      // 7.143033826650935e-07
    .p =
        {
            row32(0x3E962D3E),  // 0.29331392
            row32(0xBDBE62C3),  // -0.0929618105
            row32(0x3E189A6D),  // 0.149026588
            row32(0x3DCE3ED3),  // 0.100705765
            row32(0x3E13480A),  // 0.143829495
            row32(0x3E4CC1AA),  // 0.19995752
            row32(0x3EAAAAC0),  // 0.333333969
        },
    .l =
        {
            row32(0xBD1E93F2),  // -0.0387153104
            row32(0x3D861D15),  // 0.0654851571
            row32(0xBD8815F8),  // -0.0664481521
            row32(0x3D90F40B),  // 0.070777975
            row32(0xBDA9FDAC),  // -0.083003372
            row32(0x3DCCD4BE),  // 0.100015149
            row32(0xBE00028C),  // -0.125009716
            row32(0x3E2AAAA4),  // 0.166666567
            row32(0xBE7FFFFB),  // -0.249999925
            row32(0x3F000000),  // 0.5
        },
};

struct Unit {
  using Elem = float;
  using Table = ::Table;

  static bool main_range(const Table&, __m128 x0, __m128 x1) {
    return lux::invhyp::satanh_main_range(x0, x1);
  }

  template <bool Masked>
  static __m128 eval(const Table& t, __m128 x) {
    const __m128 a0 = _mm_and_ps(x, t.abs_mask.ps());
    const __m128 a = Masked ? select(lux::invhyp::satanh_off_path(a0), t.half.ps(), a0) : a0;
    const __m128i ab = as_int(a);

    const __m128 shifted = as_ps(_mm_cmpgt_epi32(ab, t.shift_above.pi()));
    const __m128 c = _mm_and_ps(shifted, t.c.ps());
    const __m128 v = _mm_div_ps(_mm_sub_ps(c, a), _mm_sub_ps(_mm_mul_ps(a, c), t.one.ps()));
    const __m128 z = _mm_mul_ps(v, v);
    const __m128 tv = _mm_add_ps(_mm_mul_ps(_mm_mul_ps(lux::invhyp::horner(t.p, z), z), v), v);
    const __m128 below =
        _mm_add_ps(_mm_add_ps(tv, _mm_and_ps(shifted, t.lc.ps())), _mm_and_ps(shifted, t.hc.ps()));

    const __m128 y = _mm_div_ps(as_ps(_mm_add_epi32(ab, t.exp_one.pi())), _mm_sub_ps(t.one.ps(), a));
    const __m128 w = _mm_add_ps(y, t.one.ps());
    const lux::invhyp::SplitF sp = lux::invhyp::split_sqrt2(w, 0x004AFB0D);
    const __m128 zz = _mm_sub_ps(sp.m, t.one.ps());
    const __m128 above =
        _mm_add_ps(_mm_add_ps(_mm_mul_ps(lux::invhyp::horner(t.l, zz), zz), _mm_mul_ps(sp.e, t.ln2h_lo.ps())),
                   _mm_mul_ps(sp.e, t.ln2h_hi.ps()));

    const __m128 lower = as_ps(_mm_cmplt_epi32(ab, t.log_from.pi()));
    const __m128 res = _mm_or_ps(select(lower, below, above), _mm_and_ps(x, t.sign_mask.ps()));
    return Masked ? lux::invhyp::satanh_fix(x, a0, res) : res;
  }

  static luxStatus status(uint32_t x) { return lux::invhyp::satanh_status(x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtanh_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
