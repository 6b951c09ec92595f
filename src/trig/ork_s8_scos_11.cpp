// luxsCos_32f_A11: cosine of binary32 to about 11 bits.
// max error 2.56e+03 ulp at x = 0x1.30253ep+13 (luxvm accuracy).
//
// x = (n - 1/2) pi + r with n = rint((x + pi/2)/pi), |r| <= pi/2 (pi in
// three parts, all in single precision); cos x = (-1)^n sin r, and
// sin r = r (1 + r^2 q(r^2)) with q of degree 2 fitted over [-pi/2, pi/2]
// (error about 1.5e-4 at the ends).
//
// cos(+-0) is 0x3F7FF60F (0.999848306), not 1: (pi/2)(1/pi) rounds to 0.5
// in single precision, the shifter's round-to-even gives n = 0, and the
// polynomial is evaluated at r = pi/2, the end of its interval.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"

namespace {

// |x| <= 10000.0 stays on the vector path; above, and NaN and the
// infinities, the lane goes to the scalar routine (double-precision accuracy).
constexpr uint32_t kVectorPathBound = 0x461C4000;  // 10000.0

struct alignas(16) Table {
  lux::Row32 inv_pi;   // 1/pi
  lux::Row32 shifter;  // 1.5 * 2^23: rounds to an integer
  lux::Row32 pi1;      // pi in three parts
  lux::Row32 pi2;
  lux::Row32 pi3;
  lux::Row32 one;         // degree 1
  lux::Row32 c3, c5, c7;  // sin r = r (1 + r^2 (c3 + c5 r^2 + c7 r^4))
  lux::Row32 half_pi;     // RN(pi/2)
  lux::Row32 half;        // 0.5
};

constexpr Table kTable = {
    lux::row32(0x3EA2F983),  // 0.318309873
    lux::row32(0x4B400000),  // 12582912
    lux::row32(0x40490000),  // 3.140625
    lux::row32(0x3A7DA000),  // 0.000967502594
    lux::row32(0x34222169),  // 1.50995803e-07
    lux::row32(0x3F800000),  // 1.0
    lux::row32(0xBE2AAAA6),  // -0.166666597
    lux::row32(0x3C08876A),  // 0.00833306648
    lux::row32(0xB94FB7FF),  // -0.000198096022
    lux::row32(0x3FC90FDB),  // 1.57079637
    lux::row32(0x3F000000),  // 0.5
};

struct CosEP {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    // n = rint((x + pi/2)/pi); bit 0 of t is its parity.
    const __m128 t = _mm_add_ps(_mm_mul_ps(_mm_add_ps(x, T.half_pi.ps()), T.inv_pi.ps()), T.shifter.ps());
    const __m128 n = _mm_sub_ps(_mm_sub_ps(t, T.shifter.ps()), T.half.ps());
    const __m128 r = lux::sincos::subtract_multiples(x, n, T.pi1, T.pi2, T.pi3);
    const __m128 s = lux::sincos::flip_sign_if_odd(r, lux::as_int(t));
    const __m128 z = _mm_mul_ps(r, r);
    const __m128 q = lux::sincos::horner(z, T.c7, T.c5, T.c3, T.one);
    return _mm_mul_ps(q, s);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksCos_SC_A11(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCos_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::sincos::run<CosEP>(src, dst, len);
}
