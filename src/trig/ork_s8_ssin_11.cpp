// luxsSin_32f_A11: sine of binary32 to about 11 bits.
// max error 2.55e+03 ulp at x = 0x1.2f5c2cp+11 (luxvm accuracy).
//
// x = n pi + r with n = rint(x/pi), |r| <= pi/2 (pi in three parts, all in
// single precision); sin x = (-1)^n sin r, and sin r = r + r^3 q(r^2) with
// q of degree 2 fitted over [-pi/2, pi/2] (error about 1.5e-4 at the ends).
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"

namespace {

// |x| <= 4000.0 stays on the vector path; above, and NaN and the
// infinities, the lane goes to the scalar routine, which has
// double-precision accuracy.
constexpr uint32_t kVectorPathBound = 0x457A0000;  // 4000.0

struct alignas(16) Table {
  lux::Row32 inv_pi;   // 1/pi
  lux::Row32 shifter;  // 1.5 * 2^23: rounds to an integer
  lux::Row32 pi1;      // pi in three parts, the first two with so few bits
  lux::Row32 pi2;      //   that n * part is exact for |n| < 2^12
  lux::Row32 pi3;
  lux::Row32 c3, c5, c7;  // sin r = r + r^3 (c3 + c5 r^2 + c7 r^4)
};

constexpr Table kTable = {
    lux::row32(0x3EA2F983),  // 0.318309873
    lux::row32(0x4B400000),  // 12582912
    lux::row32(0x40490000),  // 3.140625
    lux::row32(0x3A7DA000),  // 0.000967502594
    lux::row32(0x34222169),  // 1.50995803e-07
    lux::row32(0xBE2AAAA6),  // -0.166666597
    lux::row32(0x3C08876A),  // 0.00833306648
    lux::row32(0xB94FB7FF),  // -0.000198096022
};

struct SinEP {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    // n = rint(x/pi); bit 0 of t is its parity.
    const __m128 t = _mm_add_ps(_mm_mul_ps(x, T.inv_pi.ps()), T.shifter.ps());
    const __m128 n = _mm_sub_ps(t, T.shifter.ps());
    // Three parts keep r's error near 1e-11 absolute, which the smallest
    // |sin x| on the path (8.4e-9, x = 0x1.f9cbe2p+8) turns into a few
    // thousand ulps.  (pi as 3.140625 + RN(pi - 3.140625) left n * part2
    // rounded, an error up to 6e-8, and 7.4e6 ulp at x = 0x1.f9cbe2p+10.)
    const __m128 r = lux::sincos::subtract_multiples(x, n, T.pi1, T.pi2, T.pi3);
    const __m128 s = lux::sincos::flip_sign_if_odd(r, lux::as_int(t));
    const __m128 z = _mm_mul_ps(r, r);
    const __m128 q = lux::sincos::horner(z, T.c7, T.c5, T.c3);
    return _mm_add_ps(_mm_mul_ps(q, _mm_mul_ps(s, z)), s);
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksSin_SC_A11(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSin_32f_A11(const lux32f* src, lux32f* dst, int len) {
  return lux::sincos::run<SinEP>(src, dst, len);
}
