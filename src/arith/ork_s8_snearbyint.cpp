// luxsNearbyInt_32f: integer nearest to x in the caller's rounding mode (the same code as Rint), exact, on
// binary32 lanes.  Rounds by the shifter M = 2^23 under the caller's rounding.
//
// m = M with the sign of x; r = (x + m) - m rounds x in the caller's
// direction.  The result carries the sign of x: under round-down a positive x
// below 1 leaves r = (M - M) = -0, so the sign is set from x rather than ORed
// onto r (OR alone keeps that -0 for a positive x; rint gives +0 there).
#include "arith/shifter_rounding.h"

namespace {

// Vector path: magnitude bits not above those of 2^23: |x| <= 2^23.
constexpr uint32_t kVectorPathMask = 0x7FFFFFFF;
constexpr uint32_t kVectorPathBound = 0x4B000000;

struct alignas(16) Table {
  lux::Row32 flShifter;   // 2^23
  lux::Row32 flSignMask;  // the sign bit
  lux::Row32 iPathMask;   // the block test: (word AND mask) not above bound
  lux::Row32 iPathBound;
};
constexpr Table kTab = {
    .flShifter = lux::row32(0x4B000000),
    .flSignMask = lux::row32(0x80000000),
    .iPathMask = lux::row32(kVectorPathMask),
    .iPathBound = lux::row32(kVectorPathBound),
};

struct NearbyInt {
  using T = float;
  using V = __m128;
  static constexpr uint32_t kExpField = 0x7F800000;    // exponent field of the word
  static constexpr uint32_t kShifterExp = 0x4B000000;  // that field in M: x is an integer from here on
  static __m128i path_mask() { return kTab.iPathMask.pi(); }
  static __m128i path_bound() { return kTab.iPathBound.pi(); }
  static V vec(V x) {
    const V sign = _mm_and_ps(x, kTab.flSignMask.ps());
    const V m = _mm_or_ps(kTab.flShifter.ps(), sign);
    const V r = _mm_sub_ps(lux::opaque(_mm_add_ps(x, m)), m);
    return _mm_or_ps(_mm_andnot_ps(kTab.flSignMask.ps(), r), sign);
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsNearbyInt_32f(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  // No guard: the caller's rounding mode is the function.  The same code as
  // Rint, so the same results and the same flags, inexact included.
  lux::arith::RoundKernel<NearbyInt> k{src, dst};
  lux::run_closed<8>(len, k);
  return luxOk;
}
