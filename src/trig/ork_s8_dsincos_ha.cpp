// luxsSinCos_64f_A53: sine and cosine of binary64 arrays within 1 ulp.
// max error 0.533 ulp at x = 0x1.aaaaf171b10fp+15 (luxvm accuracy).
//
// x = k pi/64 + r + c as for the sine, reduced once; the sine's arithmetic
// then runs twice on that r and c, with table entry k for the sine and entry
// k + 32, a quarter turn on, for the cosine: cos x = sin(x + pi/2).  Both
// results are those of luxsSin_64f_A53 and luxsCos_64f_A53, bit for bit,
// except that the sine of -0 is -0.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/sincos_pair_frame.h"
#include "trig/sincos_table_step.h"

namespace {

// High word of |x| below 0x40F60000 (|x| < 90112.0) stays on the vector
// path: there k has at most 21 bits, so n * step1 and n * step2 are exact.
// Beyond, and for NaN and the infinities, the lane goes to the scalar
// routine.
constexpr uint32_t kVectorPathBound = 0x40F60000;

struct alignas(16) Table {
  OrkSinCosEntry entry[128];   // a = k pi/64
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
#include "trig/sincos_ha_sin.inc"
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

// The scalar routine under its file-local name.
void _dSinCos_SC(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status) {
  orkdSinCos_SC(i, src, dst1, dst2, status, lux::kThisFuncName);
}

struct SinCosHA {
  using Elem = lux64f;
  using X87 = lux::X87Guard64;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound;

  static void eval(__m128d x, __m128d& s, __m128d& c) {
    const Table& T = kTable;
    const auto sp = [&](__m128d z) { return lux::sincos::horner(z, T.s7, T.s5, T.s3); };
    const auto cp = [&](__m128d z) { return lux::sincos::horner(z, T.c6, T.c4, T.c2); };
    // sin(-0) = -0: the table step's last sums would give +0, so an exact
    // zero puts its own sign back.
    s = _mm_or_pd(lux::sincos::sin_on_head_tail_table<0>(x, T, sp, cp),
                  _mm_and_pd(_mm_cmpeq_pd(x, _mm_setzero_pd()), x));
    c = lux::sincos::sin_on_head_tail_table<32>(x, T, sp, cp);
  }

  static void call_out(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status) {
    _dSinCos_SC(i, src, dst1, dst2, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinCos_64f_A53(const lux64f* src, lux64f* dst1, lux64f* dst2, int len) {
  return lux::sincos::run_pair<SinCosHA>(src, dst1, dst2, len);
}
