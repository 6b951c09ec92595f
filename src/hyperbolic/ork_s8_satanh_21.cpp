// luxsAtanh_32f_A21: inverse hyperbolic tangent of binary32 lanes, tier A21 (bound 8 ulp).
// max error 2.89 ulp at x = -0x1.3089d6p-1 (luxvm accuracy, 800396 points)
//
// Per lane, a = |x|, s = x^2, w = (1 + a)/(1 - a).  While s < 1/4:
// atanh a = a + a s P(s), P of degree 4.  Elsewhere ln(w)/2, w = 2^e * m,
// t = m - 1 in [0, 1): t L(t) + e ln(2)/2, L of degree 7.  No table.  The
// sign of x is ORed in.  Lanes of |x| >= 1 and NaNs: hyperbolic/satanh_masks.h.
#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/invhyp_frame.h"
#include "hyperbolic/satanh_masks.h"

namespace {

using lux::row32;
using lux::Row32;
using lux::invhyp::select;

struct alignas(16) Table {
  Row32 abs_mask, sign_mask, one, half, quarter, ln2_half;
  Row32 p[5];  // (atanh a - a)/(a s) on s < 1/4
  Row32 l[8];  // ln(1 + t)/(2t) on [0, 1)
};

constexpr Table kTable = {
    .abs_mask = row32(0x7FFFFFFF),
    .sign_mask = row32(0x80000000),
    .one = row32(0x3F800000),
    .half = row32(0x3F000000),
    .quarter = row32(0x3E800000),
    .ln2_half = row32(0x3EB17218),  // 0.346573591
    .p =
        {
            row32(0x3E3AAE01),  // 0.182304397
            row32(0x3DA831EB),  // 0.082126461
            row32(0x3E16458A),  // 0.146749645
            row32(0x3E4C9296),  // 0.199777931
            row32(0x3EAAAB33),  // 0.333337396
        },
    .l =
        {
            row32(0xBB89035D),  // -0.00418130914
            row32(0x3CB23945),  // 0.0217558239
            row32(0xBD5B04BE),  // -0.0534713194
            row32(0x3DB53C09),  // 0.0884934142
            row32(0xBDFAAE38),  // -0.122402608
            row32(0x3E2A5BDF),  // 0.166366085
            row32(0xBE7FFC6F),  // -0.249986395
            row32(0x3EFFFFFD),  // 0.499999911
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
    return lux::invhyp::satanh_poly<Masked>(t, x, [](const Table& u, __m128 a) {
      return _mm_div_ps(_mm_add_ps(u.one.ps(), a), _mm_sub_ps(u.one.ps(), a));
    });
  }

  static luxStatus status(uint32_t x) { return lux::invhyp::satanh_status(x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtanh_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
