// luxsAtanh_32f_A11: inverse hyperbolic tangent of binary32 lanes, tier A11 (bound 2^13 ulp).
// max error 2.81e+03 ulp at x = 0x1.11f06ap-1 (luxvm accuracy, 800396 points)
//
// Per lane, a = |x|, s = x^2, w = (1 + a) * rho, rho the 12-bit reciprocal
// estimate of 1 - a (not refined: the bound allows it).  While s < 1/4:
// atanh a = a + a s P(s), P of degree 1.  Elsewhere ln(w)/2, w = 2^e * m,
// t = m - 1 in [0, 1): t L(t) + e ln(2)/2, L of degree 4.  No table.  The
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
  Row32 p[2];  // (atanh a - a)/(a s) on s < 1/4
  Row32 l[5];  // ln(1 + t)/(2t) on [0, 1)
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
            row32(0x3E87228D),  // 0.263935477
            row32(0x3EA7E935),  // 0.327951103
        },
    .l =
        {
            row32(0x3CA74991),  // 0.0204208214
            row32(0xBDA04A53),  // -0.0782667622
            row32(0x3E1C93FD),  // 0.15290828
            row32(0xBE7E6923),  // -0.24844794
            row32(0x3EFFFC25),  // 0.499970585
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
      return _mm_mul_ps(_mm_add_ps(u.one.ps(), a), _mm_rcp_ps(_mm_sub_ps(u.one.ps(), a)));
    });
  }

  static luxStatus status(uint32_t x) { return lux::invhyp::satanh_status(x); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtanh_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::invhyp::MaskedKernel<Unit>::run(kTable, src, dst, len);
}
