// luxsSinCos_64f_A50: sine and cosine of binary64 arrays within 8 ulp.
// max error 2.63 ulp at x = 0x1.9385996ef0ec8p+15 (luxvm accuracy).
//
// |x| = n pi/2 + r with |r| <= pi/4 (pi/2 in four parts); S = sin r and
// C = cos r by polynomials of degree 13 and 14 on the same r, swapped and
// signed by the quadrant.  Unlike luxsSin_64f_A50 and luxsCos_64f_A50, which
// step through a table, no table: the results may differ from theirs in the
// last bits.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_pair_frame.h"

namespace {

using lux::Row64;
using lux::row64;

// High word of |x| not above 0x40FF4000 (|x| up to 128000.0625) stays on
// the vector path: n < 2^17 and n times the first three parts of pi/2 is
// exact.  Beyond, and for NaN and the infinities, the scalar routine.
constexpr uint32_t kVectorPathBound = 0x40FF4000;

struct alignas(16) Table {
  Row64 two_over_pi;
  Row64 shifter;  // 2^52
  Row64 p1, p2, p3, p4;
  Row64 s6, s5, s4, s3, s2, s1;
  Row64 c7, c6, c5, c4, c3, c2, c1;
  Row64 one, sign;
};

constexpr Table kTable = {
    row64(0x3FE45F306DC9C883),  // 0.6366197723675814
    row64(0x4330000000000000),  // 2^52
    row64(0x3FF921FB40000000),  // 1.5707963109016418
    row64(0x3E74442D00000000),  // 1.5893254712295857e-08
    row64(0x3CF8469880000000),  // 6.123233932053594e-17
    row64(0x3B78CC51701B839A),  // 3.2776093904912012e-22
    row64(0x3DE5D93A5ACFD57C),  // 1.58969099521155e-10
    row64(0xBE5AE5E68A2B9CEB),  // -2.5050760253406863e-08
    row64(0x3EC71DE357B1FE7D),  // 2.7557313707070068e-06
    row64(0xBF2A01A019C161D5),  // -0.0001984126982985795
    row64(0x3F8111111110F8A6),  // 0.00833333333332249
    row64(0xBFC5555555555549),  // -0.16666666666666632
    row64(0xBDA8FAE9BE8838D4),  // -1.1359647557788195e-11
    row64(0x3E21EE9EBDB4B1C4),  // 2.087572321298175e-09
    row64(0xBE927E4F809C52AD),  // -2.7557314351390663e-07
    row64(0x3EFA01A019CB1590),  // 2.480158728947673e-05
    row64(0xBF56C16C16C15177),  // -0.001388888888887411
    row64(0x3FA555555555554C),  // 0.0416666666666666
    row64(0xBFE0000000000000),  // -0.5
    row64(0x3FF0000000000000),  // 1.0
    row64(0x8000000000000000),
};

struct SinCosLA {
  using Elem = lux64f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  static void eval(__m128d x, __m128d& s, __m128d& c) {
    const Table& T = kTable;
    const __m128d ax = _mm_andnot_pd(T.sign.pd(), x);
    const __m128d t = _mm_add_pd(_mm_mul_pd(ax, T.two_over_pi.pd()), T.shifter.pd());
    const __m128d n = _mm_sub_pd(t, T.shifter.pd());
    const __m128d r = lux::sincos::subtract_multiples(ax, n, T.p1, T.p2, T.p3, T.p4);
    const __m128d z = _mm_mul_pd(r, r);
    const __m128d S = _mm_mul_pd(lux::sincos::horner(z, T.s6, T.s5, T.s4, T.s3, T.s2, T.s1, T.one), r);
    const __m128d C = lux::sincos::horner(z, T.c7, T.c6, T.c5, T.c4, T.c3, T.c2, T.c1, T.one);
    lux::sincos::quadrant(lux::as_int(t), S, C, _mm_and_pd(x, T.sign.pd()), s, c);
  }

  static void call_out(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status) {
    orkdSinCos_SC_LA(i, src, dst1, dst2, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinCos_64f_A50(const lux64f* src, lux64f* dst1, lux64f* dst2, int len) {
  return lux::sincos::run_pair<SinCosLA>(src, dst1, dst2, len);
}
