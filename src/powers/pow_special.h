// Special values of a^b for the real Pow and Powx kernels, and the integer
// test of an exponent.  The table works on bit patterns only: it stores a
// constant or copies an input, so a signalling NaN comes out exactly as it
// went in (an arithmetic copy on i386 could pass through the x87 stack and be
// quieted).  Each unit that includes this gets its own inline copy.
#pragma once

#include <stdint.h>

#include "luxvm.h"

namespace lux::pow {

enum IntClass : int { kNotInteger = 0, kOddInteger = 1, kEvenInteger = 2 };

// Bit layout of one binary format.
template <class U>
struct Format;
template <>
struct Format<uint64_t> {
  static constexpr int kFracBits = 52;
  static constexpr uint64_t kSign = 0x8000000000000000ull;
  static constexpr uint64_t kInf = 0x7FF0000000000000ull;
  static constexpr uint64_t kOne = 0x3FF0000000000000ull;
  static constexpr uint64_t kDefaultNaN = 0xFFF8000000000000ull;
  static constexpr int kBias = 1023;
};
template <>
struct Format<uint32_t> {
  static constexpr int kFracBits = 23;
  static constexpr uint32_t kSign = 0x80000000u;
  static constexpr uint32_t kInf = 0x7F800000u;
  static constexpr uint32_t kOne = 0x3F800000u;
  static constexpr uint32_t kDefaultNaN = 0xFFC00000u;
  static constexpr int kBias = 127;
};

// Whether b is an integer, and its parity.  Zero is even; infinities and NaN
// are not integers; from 2^(precision-1) on every value is even.
template <class U>
inline int test_int(U b) {
  using F = Format<U>;
  const U mag = b & ~F::kSign;
  if (mag == 0) return kEvenInteger;
  const int field = int(mag >> F::kFracBits);
  if (mag >= F::kInf) return kNotInteger;
  if (field < F::kBias) return kNotInteger;  // 0 < |b| < 1
  const int point = field - F::kBias;        // binary point this many bits into the fraction
  if (point > F::kFracBits) return kEvenInteger;
  const U sig = (mag & ((U(1) << F::kFracBits) - 1)) | (U(1) << F::kFracBits);
  const int below = F::kFracBits - point;
  if (below > 0 && (sig & ((U(1) << below) - 1)) != 0) return kNotInteger;
  return ((sig >> below) & 1) ? kOddInteger : kEvenInteger;
}

template <class U>
struct SpecialResult {
  U bits;
  luxStatus status;  // 0 or luxWarnDomain
};

// The special-value rows, tested in order; the first that fits decides.
// Called for lanes whose a or b is zero, infinite or NaN, and for a negative
// finite a with a non-integer b.
template <class U>
inline SpecialResult<U> special_pow(U a, U b) {
  using F = Format<U>;
  const U abs_a = a & ~F::kSign, abs_b = b & ~F::kSign;
  const bool a_neg = (a & F::kSign) != 0, b_neg = (b & F::kSign) != 0;
  const bool a_nan = abs_a > F::kInf, b_nan = abs_b > F::kInf;
  const bool b_inf = abs_b == F::kInf;
  const U pos_inf = F::kInf, neg_inf = F::kInf | F::kSign, pos_zero = 0, neg_zero = F::kSign;
  if (abs_b == 0) return {F::kOne, luxOk};                          // 1: a^±0
  if (a == (F::kOne | F::kSign) && b_inf) return {F::kOne, luxOk};  // 2: (-1)^±Inf
  if (a == F::kOne) return {F::kOne, luxOk};                        // 3: 1^b, NaN b too
  if (a_nan) return {a, luxOk};                                     // 4
  if (b_nan) return {b, luxOk};                                     // 5
  if (abs_a == 0 && b == neg_inf) return {pos_inf, luxWarnDomain};  // 6
  if (b_inf) {
    const bool big = abs_a > F::kOne;                     // |a| = 1 is gone: only -1 is left, taken by row 2
    if (big) return {b_neg ? pos_zero : pos_inf, luxOk};  // 7, 8
    return {b_neg ? pos_inf : pos_zero, luxOk};           // 9, 10
  }
  if (a == pos_inf) return {b_neg ? pos_zero : pos_inf, luxOk};  // 11, 12
  if (a == pos_zero)
    return b_neg ? SpecialResult<U>{pos_inf, luxWarnDomain}  // 13
                 : SpecialResult<U>{pos_zero, luxOk};        // 14
  const bool odd = test_int(b) == kOddInteger;
  if (a == neg_inf) {
    if (!b_neg) return {odd ? neg_inf : pos_inf, luxOk};  // 15, 16
    return {odd ? neg_zero : pos_zero, luxOk};            // 17, 18
  }
  if (a_neg && abs_a != 0 && test_int(b) == kNotInteger) return {F::kDefaultNaN, luxWarnDomain};  // 19
  if (a == neg_zero) {
    if (b_neg) return {odd ? neg_inf : pos_inf, luxWarnDomain};  // 20, 21
    return {odd ? neg_zero : pos_zero, luxOk};                   // 22, 23
  }
  return {F::kDefaultNaN, luxOk};  // no front end sends anything else here
}

}  // namespace lux::pow
