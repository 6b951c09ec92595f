// luxsTan_32f_A24: tangent of binary32 arrays within 1 ulp.
// max error 0.934 ulp at x = 0x1.346c7cp+1 (luxvm accuracy).
//
// k = rint(x 2/pi) in single precision, then in double on the widened lane
// r = x - k pi/2 with pi/2 in two parts; tan r = (r + N3 r^3) / (1 + D2 r^2
// + D4 r^4), turned upside down for odd k, rounded once to single and its
// sign flipped for odd k.  No table.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"
#include "trig/tan_frame.h"

namespace {

using lux::Row32;
using lux::row32;
using lux::Row64;
using lux::row64;

// |x| <= 10000.0 stays on the vector path: |k| < 2^13 and k C1 is exact.
// Above it, NaN and the infinities go to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x461C4000;

struct alignas(16) Table {
  Row32 two_over_pi;  // single
  Row64 c1, c2;       // pi/2 in two parts, c1 with 33 bits
  Row64 n3, d4, d2, one;
};

constexpr Table kTable = {
    row32(0x3F22F983),          // 0.636619747
    row64(0x3FF921FB54440000),  // 1.5707963267923333
    row64(0x3D868C234C4C6629),  // 2.5633441515945189e-12
    row64(0xBFB8867706ED6612),  // -0.0958017723
    row64(0x3F83E66EA6AA37F2),  // 0.00971685835
    row64(0xBFDB76F5E7F08C11),  // -0.429135777
    row64(0x3FF0000000000000),  // 1.0
};

struct TanHA {
  using Elem = lux32f;
  using X87 = lux::X87Guard53;
  using Sse = lux::RoundNearestGuard;
  static constexpr uint32_t kPassBelow = kVectorPathBound + 1;
  static constexpr int kGrid = 4;

  // Two widened lanes with their multiples k (in the two low int32 lanes).
  static __m128 pair(__m128d xd, __m128i k) {
    const Table& T = kTable;
    const __m128d kd = _mm_cvtepi32_pd(k);
    const __m128d r = _mm_sub_pd(_mm_sub_pd(xd, _mm_mul_pd(kd, T.c1.pd())), _mm_mul_pd(kd, T.c2.pd()));
    const __m128d z = _mm_mul_pd(r, r);
    __m128d top = _mm_add_pd(_mm_mul_pd(_mm_mul_pd(T.n3.pd(), r), z), r);
    __m128d bottom = lux::sincos::horner(z, T.d4, T.d2, T.one);
    const __m128i odd32 = _mm_slli_epi32(_mm_and_si128(k, _mm_set1_epi32(1)), 31);
    const __m128d odd = _mm_castsi128_pd(_mm_srai_epi32(_mm_unpacklo_epi32(odd32, odd32), 31));
    lux::tan::swap_where(odd, top, bottom);
    return _mm_cvtpd_ps(_mm_div_pd(top, bottom));
  }

  static __m128 eval(__m128 x) {
    const __m128i k = _mm_cvtps_epi32(_mm_mul_ps(x, kTable.two_over_pi.ps()));
    const __m128 lo = pair(_mm_cvtps_pd(x), k);
    const __m128 hi = pair(_mm_cvtps_pd(_mm_movehl_ps(x, x)), _mm_srli_si128(k, 8));
    const __m128 q = lux::sincos::flip_sign_if_odd(_mm_movelh_ps(lo, hi), k);
    // tan(-0) = -0: the numerator's (-0)(-0) would give +0, so an exact
    // zero puts its own sign back.
    return _mm_or_ps(q, _mm_and_ps(_mm_cmpeq_ps(x, _mm_setzero_ps()), x));
  }

  static void call_out(int i, const lux32f* src, lux32f* dst, luxStatus* status) {
    orksTan_SC_HA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTan_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::tan::run<TanHA>(src, dst, len);
}
