// luxsCos_64f_A53: cosine of binary64 within 1 ulp.
// max error 0.529 ulp at x = -0x1.5d39e616601c4p+16 (luxvm accuracy).
//
// cos x = sin(x + pi/2): the sine's arithmetic on a table turned by a
// quarter: x = k pi/64 + r + c, and entry k holds sine and cosine of
// a = k pi/64 + pi/2, so that cos x = sin a + r cos a + (higher terms).
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_table_step.h"

namespace {

// |x| < 90112.0 (high word 0x40F60000) stays on the vector path: there k
// has at most 21 bits, so n * P1 and n * P2 are exact.  Beyond, and for
// NaN and the infinities, the lane goes to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x40F60000;

struct alignas(16) Table {
  OrkSinCosEntry entry[128];   // a = k pi/64 + pi/2
  lux::Row64 grid_per_radian;  // 64/pi
  lux::Row64 shifter;          // 1.5 * 2^52: rounds to an integer
  lux::Row64 step1;            // pi/64 in three parts, the first two with
  lux::Row64 step2;            //   their low bits clear so that n * part is
  lux::Row64 step3;            //   exact for |n| < 2^21
  lux::Row64 s3, s5, s7;       // Taylor coefficients of sin r / r - 1
  lux::Row64 c2, c4, c6;       // Taylor coefficients of cos r - 1
};

constexpr Table kTable = {
    {
#include "trig/sincos_ha_cos.inc"
    },
    lux::row64(0x40345F306DC9C883),  // 20.371832715762604
    lux::row64(0x4338000000000000),  // 6755399441055744
    lux::row64(0x3FA921FB54400000),  // 0.049087385210441425
    lux::row64(0x3D80B4611A600000),  // 1.8990939082199894e-12
    lux::row64(0x3B53198A2E037073),  // 6.319582027487346e-23
    lux::row64(0xBFC5555555555555),  // -1/6
    lux::row64(0x3F81111111111111),  // 1/120
    lux::row64(0xBF2A01A01A01A01A),  // -1/5040
    lux::row64(0xBFE0000000000000),  // -1/2
    lux::row64(0x3FA5555555555555),  // 1/24
    lux::row64(0xBF56C16C16C16C17),  // -1/720
};

struct CosHA {
  using Elem = lux64f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound;

  static __m128d eval(__m128d x) {
    const Table& T = kTable;
    return lux::sincos::sin_on_head_tail_table(
        x, T, [&](__m128d z) { return lux::sincos::horner(z, T.s7, T.s5, T.s3); },
        [&](__m128d z) { return lux::sincos::horner(z, T.c6, T.c4, T.c2); });
  }

  static void call_out(int i, const lux64f* src, lux64f* dst, luxStatus* status) {
    orkdCos_SC(i, src, dst, status, lux::kThisFuncName);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCos_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::sincos::run<CosHA>(src, dst, len);
}
