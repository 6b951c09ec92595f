// luxsCos_32f_A21: cosine of binary32 within 8 ulp.
// max error 2.27 ulp at x = 0x1.012d3cp+13 (luxvm accuracy).
//
// x = (n - 1/2) pi + r with n = rint((x + pi/2)/pi), |r| <= pi/2 (pi in
// four parts, all in single precision); cos x = (-1)^n sin r, and
// sin r = r + r^3 q(r^2) with q of degree 3 fitted over [-pi/2, pi/2].
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_half_turn.h"
#include "trig/sincos_kernel.h"

namespace {

// |x| <= 10000.0 stays on the vector path: n - 1/2 has at most 13 bits and
// the first three parts of pi at most 12 bits each, so n * part is exact.
// Above, and NaN and the infinities, the lane goes to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;  // 10000.0

struct alignas(16) Table {
  lux::Row32 inv_pi;   // 1/pi
  lux::Row32 shifter;  // 1.5 * 2^23: rounds to an integer
  lux::Row32 pi1;      // pi in four parts
  lux::Row32 pi2;
  lux::Row32 pi3;
  lux::Row32 pi4;
  lux::Row32 c3, c5, c7, c9;  // sin r = r + r^3 (c3 + c5 r^2 + c7 r^4 + c9 r^6)
  lux::Row32 half_pi;         // RN(pi/2)
  lux::Row32 half;            // 0.5
};

constexpr Table kTable = {
    lux::row32(0x3EA2F983),  // 0.318309873
    lux::row32(0x4B400000),  // 12582912
    lux::row32(0x40490000),  // 3.140625
    lux::row32(0x3A7DA000),  // 0.000967502594
    lux::row32(0x34222000),  // 1.50990672e-07
    lux::row32(0x2CB4611A),  // 5.12668814e-12
    lux::row32(0xBE2AAAA5),  // -0.166666582
    lux::row32(0x3C088773),  // 0.00833307486
    lux::row32(0xB94FBAF1),  // -0.000198106995
    lux::row32(0x362F0519),  // 2.60799993e-06
    lux::row32(0x3FC90FDB),  // 1.57079637
    lux::row32(0x3F000000),  // 0.5
};

struct CosLA {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    // n = rint((x + pi/2)/pi); bit 0 of t is its parity.
    const __m128 t = _mm_add_ps(_mm_mul_ps(_mm_add_ps(x, T.half_pi.ps()), T.inv_pi.ps()), T.shifter.ps());
    const __m128 n = _mm_sub_ps(_mm_sub_ps(t, T.shifter.ps()), T.half.ps());
    return lux::sincos::sin_of_half_turns4(x, n, t, T);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksCos_SC_LA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCos_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::sincos::run<CosLA>(src, dst, len);
}
