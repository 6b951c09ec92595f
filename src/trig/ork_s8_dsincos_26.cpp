// luxsSinCos_64f_A26: sine and cosine of binary64 arrays to about 26 bits.
// max error 2.55e+05 ulp at x = 0x1.2c059befcebb4p+3 (luxvm accuracy).
//
// x = k pi/32 + r, |r| <= pi/64, reduced once; sin r and cos r from their
// Taylor series once; sin x = cos r sin a + sin r cos a with row k of the
// plain table, cos x the same with row k + 16, a quarter turn on.  Both
// results are those of luxsSin_64f_A26 and luxsCos_64f_A26, bit for bit,
// except that the sine of -0 is -0.  No SSE guard: the arithmetic follows
// the caller's MXCSR.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_pair_frame.h"
#include "trig/sincos_table_step.h"

namespace {

// Lanes leave the vector path when the high word of |x| is above
// 0x40F60000, so from 90112.0625 on; 90112.0 itself stays.
constexpr uint32_t kVectorPathBound = 0x40F60000 + 1;

// {RN(cos a), RN(sin a)} of a = k pi/32, then the constants.
struct alignas(16) Table {
  uint64_t cos_sin[64][2];
  lux::Row64 grid_per_radian;  // 32/pi
  lux::Row64 shifter;          // 1.5 * 2^52: rounds to an integer
  lux::Row64 step1;            // pi/32 in three parts, the first two with
  lux::Row64 step2;            //   their low bits clear so that n * part is
  lux::Row64 step3;            //   exact for |n| < 2^20
  lux::Row64 s3, s5;           // Taylor coefficients of sin r / r - 1
  lux::Row64 c2, c4;           // Taylor coefficients of cos r - 1
  lux::Row64 one;
};

constexpr Table kTable = {
    {
#include "trig/sincos_ep.inc"
    },
    lux::row64(0x40245F306DC9C883),  // 10.185916357881302
    lux::row64(0x4338000000000000),  // 6755399441055744
    lux::row64(0x3FB921FB54400000),  // 0.09817477042088285
    lux::row64(0x3D90B4611A600000),  // 3.798187816439979e-12
    lux::row64(0x3B63198A2E037073),  // 1.2639164054974691e-22
    lux::row64(0xBFC5555555555555),  // -1/6
    lux::row64(0x3F81111111111111),  // 1/120
    lux::row64(0xBFE0000000000000),  // -1/2
    lux::row64(0x3FA5555555555555),  // 1/24
    lux::row64(0x3FF0000000000000),  // 1.0
};

struct SinCosEP {
  using Elem = lux64f;
  using X87 = lux::X87Guard53;
  using Sse = lux::NoGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound;

  static void eval(__m128d x, __m128d& s, __m128d& c) {
    // sin(-0) = -0: the table step's last sum would give +0, so an exact
    // zero puts its own sign back.
    s = _mm_or_pd(lux::sincos::sin_on_plain_table<0>(x, kTable),
                  _mm_and_pd(_mm_cmpeq_pd(x, _mm_setzero_pd()), x));
    c = lux::sincos::sin_on_plain_table<16>(x, kTable);
  }

  static void call_out(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status) {
    orkdSinCos_SC_LA(i, src, dst1, dst2, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinCos_64f_A26(const lux64f* src, lux64f* dst1, lux64f* dst2, int len) {
  return lux::sincos::run_pair<SinCosEP>(src, dst1, dst2, len);
}
