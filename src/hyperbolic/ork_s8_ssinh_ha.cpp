// luxsSinh_32f_A24: sinh x on binary32 arrays, within 1 ulp; max error 0.504 ulp at x = -0x1.fac69cp-8 (luxvm
// accuracy Sinh --points=200000).
//
// In doubles, without a table: x log2 e = n + f, |f| <= 1/2, and 2^f = G + B
// with G, B the even and odd halves of a degree-7 polynomial, so that
// 2^-f = G - B and
//   sinh x = 2^(n-1) 2^f - 2^(-n-1) 2^-f = G (2^(n-1) - 2^(-n-1)) + B (2^(n-1) + 2^(-n-1)),
// rounded once to float.  Near zero n = 0 and the first product vanishes:
// the result is B = f (o1 + ...), no cancellation.  From 89.4159927368164 on
// sinh overflows; the lane routine stores +-Inf.
#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/hyp_frame.h"

namespace {

using lux::as_int;
using lux::as_pd;
using lux::as_ps;
using lux::row32;
using lux::Row32;
using lux::row64;
using lux::Row64;

constexpr uint32_t kOverflowBits = 0x42B2D4FD;  // |x| >= 89.4159927368164: +-Inf
constexpr uint32_t kInfBits = 0x7F800000;

struct alignas(16) Table {
  Row64 dbLog2e;    // log2 e
  Row64 dbShifter;  // 1.5*2^52: y + S rounds to n, read from the low word
  Row64 dbBias;     // 1022: 2^(n-1) and 2^(-n-1) as exponent fields
  // 2^f on |f| <= 1/2: even chain e0 + e2 z + e4 z^2 + e6 z^3 and odd chain
  // f (o1 + o3 z + o5 z^2 + o7 z^3), z = f^2.
  Row64 dbE6, dbE4, dbE2, dbE0;
  Row64 dbO7, dbO5, dbO3, dbO1;
  Row32 flAbsMask;  // all but the sign
};

constexpr Table kC = {
    .dbLog2e = row64(0x3FF71547652B82FE),    // 1.4426950408889634
    .dbShifter = row64(0x4338000000000000),  // 6755399441055744.0
    .dbBias = row64(0x00000000000003FE),     // 1022
    .dbE6 = row64(0x3F2446A1FDA04945),       // 0.00015469291139475809
    .dbE4 = row64(0x3F83B29DC40D78FB),       // 0.009618027253676767
    .dbE2 = row64(0x3FCEBFBE0A4BE800),       // 0.2402265119815752
    .dbE0 = row64(0x3FEFFFFFFFFABBCE),       // 0.999999999961682
    .dbO7 = row64(0x3EEFE1783307976F),       // 1.5201921628137553e-05
    .dbO5 = row64(0x3F55D8A7088EC31B),       // 0.0013333922563385006
    .dbO3 = row64(0x3FAC6B08AAF2E43B),       // 0.05550410353448184
    .dbO1 = row64(0x3FE62E42FF11628F),       // 0.693147180728447
    .flAbsMask = row32(0x7FFFFFFF),          //
};

// sinh of two lanes, in doubles.
inline __m128d pair(__m128d xd) {
  const __m128d y = _mm_mul_pd(xd, kC.dbLog2e.pd());
  const __m128d t = _mm_add_pd(y, kC.dbShifter.pd());
  const __m128d n = _mm_sub_pd(t, kC.dbShifter.pd());
  const __m128d f = _mm_sub_pd(y, n);
  // n sits in t's low word; only the low 11 bits of the biased sums reach
  // the exponent field after the shift by 52.
  const __m128d ep = as_pd(_mm_slli_epi64(_mm_add_epi32(as_int(t), kC.dbBias.pi()), 52));
  const __m128d em = as_pd(_mm_slli_epi64(_mm_sub_epi32(kC.dbBias.pi(), as_int(t)), 52));
  const __m128d z = _mm_mul_pd(f, f);
  __m128d g = _mm_add_pd(_mm_mul_pd(kC.dbE6.pd(), z), kC.dbE4.pd());
  g = _mm_add_pd(_mm_mul_pd(g, z), kC.dbE2.pd());
  g = _mm_add_pd(_mm_mul_pd(g, z), kC.dbE0.pd());
  __m128d b = _mm_add_pd(_mm_mul_pd(kC.dbO7.pd(), z), kC.dbO5.pd());
  b = _mm_add_pd(_mm_mul_pd(b, z), kC.dbO3.pd());
  b = _mm_add_pd(_mm_mul_pd(b, z), kC.dbO1.pd());
  b = _mm_mul_pd(b, f);
  return _mm_add_pd(_mm_mul_pd(g, _mm_sub_pd(ep, em)), _mm_mul_pd(b, _mm_add_pd(ep, em)));
}

struct Tier {
  using Elem = lux32f;
  static constexpr int kBlock = 4;

  // Lanes at or above the overflow bound (and NaNs) are set to 0 here, so
  // that they raise no flag; the lane routine settles them.
  static unsigned block(const float* x, float* y, float* keep) {
    const __m128 xv = lux::load4(x);
    const __m128i big = _mm_cmpgt_epi32(as_int(_mm_and_ps(xv, kC.flAbsMask.ps())),
                                        _mm_set1_epi32(int32_t(kOverflowBits - 1)));
    const __m128 safe = _mm_andnot_ps(as_ps(big), xv);
    const __m128d lo = pair(_mm_cvtps_pd(safe));
    const __m128d hi = pair(_mm_cvtps_pd(_mm_movehl_ps(safe, safe)));
    const __m128 v = _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi));
    lux::store4(y, _mm_or_ps(v, _mm_andnot_ps(kC.flAbsMask.ps(), xv)));  // -0 stays -0
    return lux::hyp::keep_if_any(big, xv, keep);
  }

  static void lane(const float* x, float* y, lux::CallState<lux32f>& call, int i) {
    const uint32_t bits = lux::hyp::word(x);
    const __m128 xv = _mm_load_ss(x);
    if ((bits & 0x7FFFFFFF) >= kInfBits) {
      lux::store1(y, _mm_add_ss(xv, xv));  // +-Inf, or the NaN quieted with its sign
      return;
    }
    lux::hyp::store_bits(y, kInfBits | (bits & 0x80000000));
    call.warn(luxWarnOverflow, i);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsSinh_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::hyp::run<Tier>(src, dst, len);
}
