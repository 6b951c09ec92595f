// The closed (F3) frame of the binary32 inverse tangent units: 8 lanes a
// block, a tail lane through the same arithmetic.  A unit U provides
//   static __m128 eval(__m128 x);
//   static int needs_x87(__m128 x);  // movemask of lanes to redo by fpatan
// A block with such a lane is stored first and then each such lane is
// recomputed on the x87 unit (atan(x) = fpatan(x, 1)), stored as single.
#pragma once

#include <pmmintrin.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "trig/sincos_kernel.h"

namespace lux::atan32 {

// atan2(*y, *x) on the x87 unit, rounded to single.
inline void fpatan(const float* y, const float* x, float* out) {
  asm volatile("flds %1\n\tflds %2\n\tfpatan\n\tfstps %0"
               : "=m"(*out)
               : "m"(*y), "m"(*x)
               : "st", "st(1)", "memory");
}

inline __m128 select(__m128 m, __m128 a, __m128 b) {
  return _mm_or_ps(_mm_and_ps(m, a), _mm_andnot_ps(m, b));
}

template <class U>
struct Kernel {
  const lux32f* src;
  lux32f* dst;

  void redo(int i, unsigned mask, const float* x) {
    static constexpr float kOne = 1.0f;
    for (int k = 0; mask != 0; ++k, mask >>= 1)
      if (mask & 1) fpatan(x + k, &kOne, dst + i + k);
  }

  void block(int i) {
    const __m128 a = load4(src + i);
    const __m128 b = load4(src + i + 4);
    const unsigned x87 = unsigned(U::needs_x87(a)) | unsigned(U::needs_x87(b)) << 4;
    store4(dst + i, U::eval(a));
    store4(dst + i + 4, U::eval(b));
    if (__builtin_expect(x87 != 0, 0)) {
      alignas(16) float x[8];
      _mm_store_ps(x, a);
      _mm_store_ps(x + 4, b);
      redo(i, x87, x);
    }
  }
  void tail(int i) {
    const __m128 a = load1(src + i);
    store1(dst + i, U::eval(a));
    if (__builtin_expect(U::needs_x87(a) & 1, 0)) {
      alignas(16) float x[4];
      _mm_store_ps(x, a);
      redo(i, 1, x);
    }
  }
};

template <class U>
inline luxStatus run(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  RoundNearestGuard guard;
  Kernel<U> k{src, dst};
  run_closed<8>(len, k);
  return luxOk;
}

}  // namespace lux::atan32
