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

namespace {

// |x| < 90112.0 (high word 0x40F60000) stays on the vector path: there k
// has at most 21 bits, so n * P1 and n * P2 are exact.  Beyond, and for
// NaN and the infinities, the lane goes to the scalar routine.
constexpr uint32_t kVectorPathBound = 0x40F60000;

// {CosTail, SinHead, SinTail, CosHead} of the angle k pi/64 + pi/2.
struct Entry {
  uint64_t cos_tail, sin_head, sin_tail, cos_head;
};

struct alignas(16) Table {
  Entry entry[128];
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
  static constexpr uint32_t kPassBelow = kVectorPathBound;

  static __m128d eval(__m128d x) {
    const Table& T = kTable;
    // k = rint(x * 64/pi) in the low word of t; n = k as a double.
    const __m128d t = _mm_add_pd(_mm_mul_pd(x, T.grid_per_radian.pd()), T.shifter.pd());
    const __m128d n = _mm_sub_pd(t, T.shifter.pd());
    const __m128i ti = lux::as_int(t);
    const Entry& e0 = T.entry[_mm_cvtsi128_si32(ti) & 0x7F];
    const Entry& e1 = T.entry[_mm_cvtsi128_si32(_mm_unpackhi_epi64(ti, ti)) & 0x7F];

    // r + c = x - k pi/64: u is exact, c keeps what r lost.
    const __m128d u = _mm_sub_pd(x, _mm_mul_pd(n, T.step1.pd()));
    const __m128d r = _mm_sub_pd(u, _mm_mul_pd(n, T.step2.pd()));
    const __m128d c =
        _mm_sub_pd(_mm_sub_pd(_mm_sub_pd(u, r), _mm_mul_pd(n, T.step2.pd())), _mm_mul_pd(n, T.step3.pd()));

    const __m128d a0 = _mm_load_pd(reinterpret_cast<const double*>(&e0.cos_tail));
    const __m128d a1 = _mm_load_pd(reinterpret_cast<const double*>(&e1.cos_tail));
    const __m128d b0 = _mm_load_pd(reinterpret_cast<const double*>(&e0.sin_tail));
    const __m128d b1 = _mm_load_pd(reinterpret_cast<const double*>(&e1.sin_tail));
    const __m128d cos_tail = _mm_unpacklo_pd(a0, a1);
    const __m128d sin_head = _mm_unpackhi_pd(a0, a1);
    const __m128d sin_tail = _mm_unpacklo_pd(b0, b1);
    const __m128d cos_head = _mm_unpackhi_pd(b0, b1);

    const __m128d cos_a = _mm_add_pd(cos_head, cos_tail);
    // The argument's tail through the derivative of sin at a + r.
    const __m128d L = _mm_add_pd(_mm_mul_pd(_mm_sub_pd(cos_a, _mm_mul_pd(sin_head, r)), c), sin_tail);

    const __m128d z = _mm_mul_pd(r, r);
    const __m128d S =
        _mm_mul_pd(_mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.s7.pd(), z), T.s5.pd()), z), T.s3.pd()), z);
    const __m128d C =
        _mm_mul_pd(_mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.c6.pd(), z), T.c4.pd()), z), T.c2.pd()), z);
    const __m128d PS = _mm_mul_pd(_mm_mul_pd(S, r), cos_a);
    const __m128d PC = _mm_mul_pd(C, sin_head);

    // sin a + r cos a as head H with the errors of its two additions.
    const __m128d B = _mm_mul_pd(cos_head, r);  // exact: cos_head is a power of two
    const __m128d A = _mm_add_pd(sin_head, B);
    const __m128d R = _mm_mul_pd(cos_tail, r);
    const __m128d H = _mm_add_pd(R, A);
    const __m128d lowA = _mm_add_pd(_mm_sub_pd(sin_head, A), B);
    const __m128d lowH = _mm_add_pd(_mm_sub_pd(A, H), R);

    return _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_add_pd(lowA, L), lowH), PS), PC), H);
  }

  static void call_out(int i, const lux64f* src, lux64f* dst, luxStatus* status) {
    orkdCos_SC(i, src, dst, status, lux::kThisFuncName);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCos_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::X87Guard53 x87;
  lux::RoundNearestGuard sse;
  luxStatus status = luxOk;
  lux::sincos::RedoKernel<CosHA> k{src, dst, &status};
  lux::run_block_redo<k.kBlock>(len, k);
  return status;
}
