// The arctangent pieces that atan and atan2 share: the series of atan r
// for small r, the table of atan(n/128) over the upper half plane, and pi/2,
// pi, pi/4, 3pi/4 rounded to the 80-bit format.
#pragma once

#include "scalar/extended.h"

extern "C" {
// (hi, lo) with hi + lo within 1e-25 of: atan(n/128) for n <= 128,
// pi/2 - atan((256 - n)/128) to 256, pi - pair(512 - n) above; hi has 32
// significant bits.
extern const uint64_t ork_ork_atanl_table_128[513][2];
}

namespace lux::x80 {

// atan r - r for |r| <= 1/256 (and the small arguments).
inline constexpr OrkX80Slot kAtanP[4] = {
    slot(0xBFFD, 0xAAAAAAAAAAAAAA90ull),  // -0.33333333333333331483
    slot(0x3FFC, 0xCCCCCCCCCC9BA8E3ull),  // 0.19999999999995635158
    slot(0xBFFC, 0x9249247C9586E873ull),  // -0.14285714159394205525
    slot(0x3FFB, 0xE38521D9D93223ACull),  // 0.11109377332754727385
};
// atan x - x for 2^-18 <= |x| < 2^-12, and atan u - u for |u| <= 2^-11.
inline constexpr OrkX80Slot kAtanP1[2] = {
    slot(0xBFFD, 0xAAAAAAAAAAAA5CABull),  // -0.33333333333333281523
    slot(0x3FFC, 0xCCCCCBBA83A9592Eull),  // 0.19999998403447113993
};
// atan x - x for 2^-75 <= |x| < 2^-18.
inline constexpr OrkX80Slot kAtanP2[1] = {
    slot(0xBFFD, 0xAAAAAAAAA2AAAAABull),  // -0.33333333332969533602
};

inline constexpr OrkX80Slot kPi4l[2] = {slot(0x3FFE, 0xC90FDAA22168C235ull),
                                        slot(0xBFFE, 0xC90FDAA22168C235ull)};
inline constexpr OrkX80Slot kPi34l[2] = {slot(0x4000, 0x96CBE3F9990E91A8ull),
                                         slot(0xC000, 0x96CBE3F9990E91A8ull)};
inline constexpr uint64_t kOneK = 0x3F80000000000000ull;  // 1/128

struct AtanPair {
  ld hi, lo;
};
inline AtanPair atan_pair(unsigned n) {
  return {dbl(ork_ork_atanl_table_128[n][0]), dbl(ork_ork_atanl_table_128[n][1])};
}
// The atan series on r with z = r^2: atan r - r = r poly.
inline ld atan_poly(ld z) {
  const auto P = [](int i) { return value(kAtanP[i]); };
  const ld w = z * z;
  return (P(3) * w + P(1)) * w + (w * P(2) + P(0)) * z;
}
// The table point of a ratio in [0, 1]: W = 128 v + 1.5 2^63, i its low word,
// c = i/128.
struct TablePoint {
  unsigned i;
  ld c;
};
inline TablePoint table_point(ld scaled) {
  const ld W = scaled + dbl(kTwo63H);
  return {unsigned(uint32_t(image(W).sig)), (W - dbl(kTwo63H)) * dbl(kOneK)};
}

}  // namespace lux::x80
