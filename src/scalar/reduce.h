// Exact reduction of large arguments by multiples of pi/2 and pi/4 (the
// method of Payne and Hanek): the argument is multiplied by 4/pi digit by
// digit, the digits that only contribute whole turns are passed over by
// index, every partial product is exact and the sum is carried compensated.
// Internal to the library; the scalar trigonometric routines call these.
#pragma once

#include <stdint.h>

#include "luxvm.h"

extern "C" {

// x finite, |x| >= 1, round to nearest.  Returns q in 0..3 and stores the
// remainder as head and tail: x = (q + 4m) pi/2 + out[0] + out[1] for some
// integer m, |out[0] + out[1]| <= pi/4 plus a rounding error.  Odd in x:
// -x gives (-out[0], -out[1]) and (4 - q) & 3.
unsigned orkreduce_pio2d(lux64f x, lux64f* out);

// x finite, x >= pi/4, under x87 guard 64.  Returns floor(4x/pi) + offset
// (exact below 2^30, congruent modulo 8 above) and stores the remainder as
// head and tail: x = n pi/4 + out[0] + out[1], n the even one of the count
// and the count + 1 (with an offset: the n of the parity that makes n + offset
// even).
unsigned orkreduce_pi04l(long double x, unsigned offset, lux64f* out);

// _orkReductionTab, the constants of orkreduce_pio2d, as bit patterns.
struct OrkReductionTab {
  uint64_t parity_adjust[2];  // 0.0, -1.0
  uint64_t sign_factor[2];    // 1.0, -1.0
  uint64_t split;             // 1.5 2^26
  uint64_t pio4_2[2];         // pi/4 in two parts
  uint64_t four_over_pi;      // RN(4/pi)
  uint64_t pio4_4[4];         // pi/4 in four parts (below 2^23)
  uint64_t pio4_5[5];         // pi/4 in five parts (2^23 to 2^30)
  uint64_t mask;              // all ones
  uint64_t digits[50];        // D[i]: 25-bit digits of 4/pi times 2^200
};
extern const OrkReductionTab _orkReductionTab;

// One 80-bit value in a 12-byte slot: significand low and high words, then
// sign and exponent (two bytes of zero behind it).
struct OrkX80Slot {
  uint32_t w[3];
};
// __4onpi_31l: E[0] = 0, E[i] the 31-bit digits of 4/pi times 2^217.
extern const OrkX80Slot __4onpi_31l[537];

}  // extern "C"
