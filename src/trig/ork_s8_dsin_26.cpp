// luxsSin_64f_A26: sine of binary64 to about 26 bits.
// max error 2.55e+05 ulp at x = 0x1.2c059befcebb4p+3 (luxvm accuracy).
//
// x = k pi/32 + r, |r| <= pi/64; sin x = cos r sin a + sin r cos a with
// a = k pi/32 from a plain table of RN(cos a), RN(sin a), and sin r, cos r
// from their Taylor series to r^5 and r^4 (relative truncation errors below
// 3e-12 and 2e-11 at |r| = pi/64).  No SSE guard: the arithmetic, subnormals
// included, follows the caller's MXCSR.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"
#include "trig/sincos_kernel.h"

namespace {

// Lanes leave the vector path when the high word of |x| is above
// 0x40F60000, so from 90112.0625 on; 90112.0 itself stays.
constexpr uint32_t kVectorPathBound = 0x40F60000 + 1;

// _orkdSinHATab: {RN(cos a), RN(sin a)} of a = k pi/32, then the constants.
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

struct SinEP {
  using Elem = lux64f;
  static constexpr uint32_t kPassBelow = kVectorPathBound;

  static __m128d eval(__m128d x) {
    const Table& T = kTable;
    const __m128d t = _mm_add_pd(_mm_mul_pd(x, T.grid_per_radian.pd()), T.shifter.pd());
    const __m128d n = _mm_sub_pd(t, T.shifter.pd());
    const __m128i ti = lux::as_int(t);
    const __m128d row0 =
        _mm_load_pd(reinterpret_cast<const double*>(T.cos_sin[_mm_cvtsi128_si32(ti) & 0x3F]));
    const __m128d row1 = _mm_load_pd(
        reinterpret_cast<const double*>(T.cos_sin[_mm_cvtsi128_si32(_mm_unpackhi_epi64(ti, ti)) & 0x3F]));
    const __m128d ca = _mm_unpacklo_pd(row0, row1);
    const __m128d sa = _mm_unpackhi_pd(row0, row1);

    // r = x - n pi/32 in three steps; the first two products are exact, so
    // r has a relative error of about 2^-53 even where x is close to a
    // multiple of pi and the result is tiny.  (With RN(pi/32) as the first
    // part, n * step1 is rounded and an absolute error up to 2^-37 in r left
    // sines near such x with no correct bit: sin(0x1.6c6cbc45dc8dep+6) came
    // out as 3.6e-15 for -1.2e-18.)  No tail is kept.
    const __m128d r =
        _mm_sub_pd(_mm_sub_pd(_mm_sub_pd(x, _mm_mul_pd(n, T.step1.pd())), _mm_mul_pd(n, T.step2.pd())),
                   _mm_mul_pd(n, T.step3.pd()));
    const __m128d z = _mm_mul_pd(r, r);
    const __m128d SP =
        _mm_mul_pd(_mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.s5.pd(), z), T.s3.pd()), z), T.one.pd()), r);
    const __m128d CP = _mm_add_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.c4.pd(), z), T.c2.pd()), z), T.one.pd());
    return _mm_add_pd(_mm_mul_pd(CP, sa), _mm_mul_pd(SP, ca));
  }

  static void call_out(int i, const lux64f* src, lux64f* dst, luxStatus* status) {
    orkdSin_SC_LA(i, src, dst, status);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSin_64f_A26(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::X87Guard53 x87;
  luxStatus status = luxOk;
  lux::sincos::RedoKernel<SinEP> k{src, dst, &status};
  lux::run_block_redo<k.kBlock>(len, k);
  return status;
}
