// luxsDiv_64f_A53: a/b by the hardware division, correctly rounded.
// max error 0.5 ulp at a = 0x1.4021e58e17304p+1021, b = 0x1.beac14e2cc7fdp-1
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

// _orkdDivHATab: 1.0 and 0.0.
struct alignas(16) DivHATable {
  lux::Row64 dbOne = lux::row64(0x3FF0000000000000);
  lux::Row64 dbZero = lux::row64(0);
  lux::Row64 dbAbsMask = lux::row64(0x7FFFFFFFFFFFFFFF);
  lux::Row64 dbExpMask = lux::row64(0x7FF0000000000000);
};
constexpr DivHATable kTab{};

// Poles: a zero divisor under a finite dividend.  A NaN or infinite dividend
// over zero reports nothing.
inline unsigned pole_lanes(__m128d a, __m128d b, int lanes) {
  const __m128i aexp = _mm_and_si128(lux::as_int(a), kTab.dbExpMask.pi());
  // Exponent field all ones: compare the high words, spread to the pair.
  const __m128i ahigh = _mm_shuffle_epi32(aexp, _MM_SHUFFLE(3, 3, 1, 1));
  const __m128i nonfinite =
      _mm_cmpeq_epi32(ahigh, _mm_shuffle_epi32(kTab.dbExpMask.pi(), _MM_SHUFFLE(3, 3, 1, 1)));
  const __m128d bzero = _mm_cmpeq_pd(_mm_and_pd(b, kTab.dbAbsMask.pd()), kTab.dbZero.pd());
  const __m128d m = _mm_andnot_pd(lux::as_pd(nonfinite), bzero);
  return unsigned(_mm_movemask_pd(m)) & ((1u << lanes) - 1);
}

struct DivKernel {
  const double* a;
  const double* b;
  double* dst;
  lux::CallState<double>& call;

  // The pole test is taken from the loaded pair, before the store, so an
  // in-place call reports like any other.
  unsigned block(int i) {
    const __m128d av = lux::load2(a + i), bv = lux::load2(b + i);
    const unsigned poles = pole_lanes(av, bv, 2);
    lux::store2(dst + i, _mm_div_pd(av, bv));
    return poles;
  }
  unsigned tail(int i) {
    const __m128d av = lux::load1(a + i), bv = lux::load1(b + i);
    const unsigned pole = pole_lanes(av, bv, 1);
    lux::store1(dst + i, _mm_div_sd(av, bv));
    return pole;
  }
  void offend(int i) { call.warn(luxWarnSingularity, i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsDiv_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux64f> call(src1, src2, dst, dst);
  DivKernel k{src1, src2, dst, call};
  lux::run_masked<2>(len, k);
  return call.status();
}
