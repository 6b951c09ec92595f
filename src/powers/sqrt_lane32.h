// Lane classes and one-lane vectors of the binary32 square root kernels.
#pragma once

#include <stdint.h>

#include "frame/lanes.h"

namespace lux {

enum class Sqrt32Class { kNormal, kDenormal, kZero, kPlusInf, kNaN, kNegative };

inline Sqrt32Class classify_sqrt32(uint32_t bits) {
  const uint32_t mag = bits & 0x7FFFFFFF;
  if (mag > 0x7F800000) return Sqrt32Class::kNaN;
  if (mag == 0) return Sqrt32Class::kZero;
  if (bits & 0x80000000u) return Sqrt32Class::kNegative;
  if (mag == 0x7F800000) return Sqrt32Class::kPlusInf;
  if (mag < 0x00800000) return Sqrt32Class::kDenormal;
  return Sqrt32Class::kNormal;
}

// One lane in all four positions, so that the other positions compute
// nothing that could raise a flag of their own.
inline __m128 broadcast1(const float* p) {
  const __m128 v = _mm_load_ss(p);
  return _mm_shuffle_ps(v, v, _MM_SHUFFLE(0, 0, 0, 0));
}

}  // namespace lux
