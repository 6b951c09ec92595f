// luxsSin_32f_A24: sine of binary32 within 1 ulp.
// max error 0.801 ulp at x = -0x1.f399f8p+2 (luxvm accuracy).
//
// In double precision on lanes widened from single: x = k pi + r with
// k = rint(x/pi) from a single-precision product, r = x - k pi with pi in two
// parts; sin x = (-1)^k sin r, and sin r = r p(r^2) with p of degree 4
// fitted over [-pi/2, pi/2] for a binary32 result.  The sign of a zero
// follows the reduction: sin(-0.0) = -0.0.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"

namespace {

// |x| <= 10000.0 stays on the vector path: k has at most 12 bits and the
// first part of pi 35, so k * pi1 is exact.  Above, and NaN and the
// infinities, the lane goes to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;  // 10000.0

struct alignas(16) Table {
  lux::Row32 inv_pi;              // 1/pi, single
  lux::Row64 pi1;                 // -pi in two parts, double
  lux::Row64 pi2;                 //   pi = -pi1 + pi2
  lux::Row64 d1, d3, d5, d7, d9;  // sin r = r (d1 + d3 r^2 + ... + d9 r^8)
};

constexpr Table kTable = {
    lux::row32(0x3EA2F983),          // 0.318309873
    lux::row64(0xC00921FB54440000),  // -3.1415926535846666
    lux::row64(0x3D968C234C4C6629),  // 5.126688303189038e-12
    lux::row64(0x3FF000000089705F),  // 1.000000002
    lux::row64(0xBFC55554AE8BA1BD),  // -0.166666589
    lux::row64(0x3F8110EE64CD0933),  // 0.008333075
    lux::row64(0xBF29F75E2C166F94),  // -0.000198107
    lux::row64(0x3EC5E0A329A17541),  // 2.608e-06
};

// sin(xd - n pi) for a pair of lanes, n the integer multiple as a double.
inline __m128d sin_reduced(__m128d xd, __m128d n) {
  const Table& T = kTable;
  const __m128d r = _mm_sub_pd(_mm_add_pd(_mm_mul_pd(n, T.pi1.pd()), xd), _mm_mul_pd(n, T.pi2.pd()));
  const __m128d z = _mm_mul_pd(r, r);
  const __m128d p = _mm_add_pd(
      _mm_mul_pd(
          _mm_add_pd(
              _mm_mul_pd(
                  _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.d9.pd(), z), T.d7.pd()), z), T.d5.pd()), z),
              T.d3.pd()),
          z),
      T.d1.pd());
  return _mm_mul_pd(r, p);
}

struct SinHA {
  using Elem = lux32f;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;
  static constexpr int kPrefetchAhead = 32;

  static __m128 eval(__m128 x) {
    const Table& T = kTable;
    const __m128i k = _mm_cvtps_epi32(_mm_mul_ps(x, T.inv_pi.ps()));
    const __m128d lo = sin_reduced(_mm_cvtps_pd(x), _mm_cvtepi32_pd(k));
    const __m128d hi =
        sin_reduced(_mm_cvtps_pd(_mm_movehl_ps(x, x)), _mm_cvtepi32_pd(_mm_unpackhi_epi64(k, k)));
    const __m128 s = _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi));
    return lux::as_ps(_mm_xor_si128(lux::as_int(s), _mm_slli_epi32(k, 31)));
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksSin_SC_HA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSin_32f_A24(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::X87Guard53 x87;
  lux::RoundNearestGuard sse;
  luxStatus status = luxOk;
  lux::sincos::RedoKernel<SinHA> k{src, dst, &status};
  lux::run_block_redo<k.kBlock>(len, k);
  return status;
}
