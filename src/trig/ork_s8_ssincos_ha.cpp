// luxsSinCos_32f_A24: sine and cosine of binary32 arrays.
// max error 0.561 ulp at x = -0x1.0417d6p+9 (luxvm accuracy).
//
// n = rint(x 2/pi) in single precision; then in double on the widened lane
// r = x - n pi/2 with pi/2 in two parts, S ~ sin r and C ~ cos r by
// polynomials of degree 7 and 8, each rounded once to single, swapped and
// signed by the quadrant.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_pair_frame.h"

namespace {

using lux::Row32;
using lux::row32;
using lux::Row64;
using lux::row64;

// |x| <= 10000.0 stays on the vector path: |n| < 2^13 and n p1 is exact.
// Above it, NaN and the infinities go to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;

struct alignas(16) Table {
  Row32 two_over_pi;
  Row32 shifter;  // 1.5 2^23
  Row64 p1, p2;   // -pi/2 = p1 - p2: p1 negative with 33 bits
  Row64 s3, s2, s1, c4, c3, c2, c1, one;
};

constexpr Table kTable = {
    row32(0x3F22F983),          // 0.636619747
    row32(0x4B400000),          // 12582912
    row64(0xBFF921FB54440000),  // -1.5707963267923333
    row64(0x3D868C234C4C6629),  // 2.5633441515945189e-12
    row64(0xBF29943E0FBEA90A),  // -0.00019515283190447318
    row64(0x3F811073AFCE563F),  // 0.008332160761521766
    row64(0xBFC55554527AF340),  // -0.16666654612881793
    row64(0x3EF99EB9C49F772E),  // 2.443315705834904e-05
    row64(0xBF56C0C33A81BD97),  // -0.0013887316254360454
    row64(0x3FA55554A115B568),  // 0.04166664568297557
    row64(0xBFE0000000000000),  // -0.5
    row64(0x3FF0000000000000),  // 1.0
};

struct SinCosHA {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  // S and C of two widened lanes, rounded to single in the two low lanes.
  static void pair(__m128d xd, __m128d nd, __m128& S, __m128& C) {
    const Table& T = kTable;
    const __m128d r = _mm_sub_pd(_mm_add_pd(_mm_mul_pd(nd, T.p1.pd()), xd), _mm_mul_pd(nd, T.p2.pd()));
    const __m128d z = _mm_mul_pd(r, r);
    S = _mm_cvtpd_ps(_mm_mul_pd(lux::sincos::horner(z, T.s3, T.s2, T.s1, T.one), r));
    C = _mm_cvtpd_ps(lux::sincos::horner(z, T.c4, T.c3, T.c2, T.c1, T.one));
  }

  static void eval(__m128 x, __m128& s, __m128& c) {
    const Table& T = kTable;
    const __m128 t = _mm_add_ps(_mm_mul_ps(x, T.two_over_pi.ps()), T.shifter.ps());
    const __m128 n = _mm_sub_ps(t, T.shifter.ps());
    __m128 S0, C0, S1, C1;
    pair(_mm_cvtps_pd(x), _mm_cvtps_pd(n), S0, C0);
    pair(_mm_cvtps_pd(_mm_movehl_ps(x, x)), _mm_cvtps_pd(_mm_movehl_ps(n, n)), S1, C1);
    lux::sincos::quadrant(lux::as_int(t), _mm_movelh_ps(S0, S1), _mm_movelh_ps(C0, C1), s, c);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst1, lux32f* dst2, luxStatus* status) {
    orksSinCos_SC_HA(i, src, dst1, dst2, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinCos_32f_A24(const lux32f* src, lux32f* dst1, lux32f* dst2, int len) {
  return lux::sincos::run_pair<SinCosHA>(src, dst1, dst2, len);
}
