// luxsAsinh_32f_A11: inverse hyperbolic sine of binary32 lanes, tier A11 (bound 2^13 ulp).
// max error 3.66e+03 ulp at x = 0x1.1b6bf4p+0 (luxvm accuracy, 800660 points)
//
// Per lane, a = |x|, s = a^2.  Up to a = 1.2: a + a s C(s), C of degree 2.
// Above: w = (s + 1) * rs + a, rs the 12-bit reciprocal square root estimate
// of s + 1 (not refined: the bound allows it), and ln w = L(m) + e ln 2 with
// w = 2^e * m and L a quartic in m itself on [1, 2).  No table.  The sign of
// x is ORed in.  A block with a lane from 0x5F7FFFFF on, an infinity or a NaN
// is recomputed with masks: such a finite lane takes ln|x| + ln 2 (e counts
// one more), infinities and NaNs give x.  No status.
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
  Row32 c[3];  // (asinh a - a)/(a s) on a <= 1.2
  Row32 d[5];  // ln m on [1, 2)
};

constexpr Table kTable = {
    .abs_mask = row32(0x7FFFFFFF),
    .sign_mask = row32(0x80000000),
    .one = row32(0x3F800000),
    .ln2 = row32(0x3F317218),       // 0.693147182
    .near_max = row32(0x3F99999A),  // a up to 1.20000005
    .inf_below = row32(0x7F7FFFFF),
    .c =
        {
            row32(0xBC43529D),  // -0.011921552
            row32(0x3D66E497),  // 0.056370344
            row32(0xBE26F09F),  // -0.163027272
        },
    .d =
        {
            row32(0xBD984132),  // -0.0743431002
            row32(0x3F0D2861),  // 0.551397383
            row32(0xBFD8E6F1),  // -1.69454777
            row32(0x40420A5E),  // 3.03188276
            row32(0xBFE83DE8),  // -1.81438923
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
    const __m128 far = as_ps(_mm_cmpgt_epi32(as_int(a), t.near_max.pi()));
    const __m128 nv = _mm_add_ps(_mm_mul_ps(a, _mm_mul_ps(s, lux::invhyp::horner(t.c, s))), a);
    const __m128 v = _mm_add_ps(s, t.one.ps());
    const __m128 w = select(h.mask, a0, _mm_add_ps(_mm_mul_ps(v, _mm_rsqrt_ps(v)), a));
    const lux::invhyp::SplitF sp = lux::invhyp::split_unit(w);
    const __m128 e = _mm_add_ps(sp.e, h.extra);
    const __m128 fv = _mm_add_ps(lux::invhyp::horner(t.d, sp.m), _mm_mul_ps(e, t.ln2.ps()));
    const __m128 res = _mm_or_ps(select(far, fv, nv), _mm_and_ps(x, t.sign_mask.ps()));
    // Infinities and NaNs: x.
    return Masked ? select(as_ps(_mm_cmpgt_epi32(as_int(a0), t.inf_below.pi())), x, res) : res;
  }

  static luxStatus status(uint32_t) { return luxOk; }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsinh_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
