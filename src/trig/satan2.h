// The closed frame of the binary32 two-argument inverse tangent at A21 and
// A11, and the x87 fallback of every binary32 Atan2 kernel.
//
// A lane stays on the vector path when both magnitudes lie strictly between
// the bits 0x01000000 (2^-125) and 0x7D000000 (2^123): then the quotient of
// the smaller by the larger, and its reciprocal estimate, stay in range.  A
// block of 8 lanes that all pass is computed and stored as vectors; any other
// block runs lane by lane like the tail, where a passing lane takes the same
// arithmetic (its value broadcast across the register) and a failing one -
// zeros, subnormals, huge values, infinities, NaN - the x87 partial
// arctangent, which has the whole special-value table, rounded to single.
// So a lane's result never depends on its neighbours.
//
// A unit U provides  static __m128 eval(__m128 y, __m128 x);
#pragma once

#include <pmmintrin.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux::atan2_32 {

inline constexpr uint32_t kRangeLow = 0x01000000;   // 2^-125: magnitudes above
inline constexpr uint32_t kRangeHigh = 0x7D000000;  // 2^123: magnitudes below

// atan2(*y, *x) on the x87 unit, rounded to single.
inline void fpatan(const lux32f* y, const lux32f* x, lux32f* out) {
  asm volatile("flds %1\n\tflds %2\n\tfpatan\n\tfstps %0"
               : "=m"(*out)
               : "m"(*y), "m"(*x)
               : "st", "st(1)", "memory");
}

inline __m128 select(__m128 m, __m128 a, __m128 b) {
  return _mm_or_ps(_mm_and_ps(m, a), _mm_andnot_ps(m, b));
}

// Movemask of the lanes with a magnitude of y or x out of range.
inline int out_of_range(__m128 y, __m128 x) {
  const __m128i abs = _mm_set1_epi32(0x7FFFFFFF), lo = _mm_set1_epi32(int32_t(kRangeLow)),
                hi = _mm_set1_epi32(int32_t(kRangeHigh));
  const __m128i my = _mm_and_si128(as_int(y), abs), mx = _mm_and_si128(as_int(x), abs);
  const __m128i in = _mm_and_si128(_mm_and_si128(_mm_cmpgt_epi32(my, lo), _mm_cmplt_epi32(my, hi)),
                                   _mm_and_si128(_mm_cmpgt_epi32(mx, lo), _mm_cmplt_epi32(mx, hi)));
  return _mm_movemask_ps(as_ps(in)) ^ 0xF;
}

template <class U>
struct Kernel {
  const lux32f* y;
  const lux32f* x;
  lux32f* dst;

  void block(int i) {
    const __m128 y0 = load4(y + i), y1 = load4(y + i + 4), x0 = load4(x + i), x1 = load4(x + i + 4);
    if (__builtin_expect(out_of_range(y0, x0) | out_of_range(y1, x1), 0)) {
      for (int j = i; j < i + 8; ++j) tail(j);
      return;
    }
    const __m128 r0 = U::eval(y0, x0);
    const __m128 r1 = U::eval(y1, x1);
    store4(dst + i, r0);
    store4(dst + i + 4, r1);
  }
  void tail(int i) {
    const __m128 yv = _mm_load_ps1(y + i), xv = _mm_load_ps1(x + i);
    if (__builtin_expect(out_of_range(yv, xv) & 1, 0)) {
      fpatan(y + i, x + i, dst + i);
      return;
    }
    store1(dst + i, U::eval(yv, xv));
  }
};

template <class U>
inline luxStatus run(const lux32f* y, const lux32f* x, lux32f* dst, int len) {
  if (const luxStatus e = check_entry(len, y, x, dst)) return e;
  RoundNearestGuard guard;
  Kernel<U> k{y, x, dst};
  run_closed<8>(len, k);
  return luxOk;
}

}  // namespace lux::atan2_32
