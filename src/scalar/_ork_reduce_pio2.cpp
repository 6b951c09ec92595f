// orkreduce_pio2d: x mod pi/2 for any finite |x| >= 1, on the SSE unit; the
// remainder as head + tail and the quadrant.  max error 2^-75.9 relative to
// the remainder on random arguments; 2^-112 absolute, 2^-59 relative, at
// x = 0x1.b951f1572eba5p+23, a double next to a multiple of pi/2, where the
// five-part pi/4 (good to 2^-142.4) times n < 2^31 shows (reduce_test).
#include "scalar/reduce.h"

namespace {

constexpr uint32_t kLargePathExponent = 0x41D;  // |x| >= 2^30: digit-by-digit product
constexpr uint32_t kFivePartExponent = 0x416;   // |x| >= 2^23: n needs more than 24 bits
constexpr int kDigitScale = 200;                // D[i] carry 2^200, the argument 2^-200

}  // namespace

extern "C" alignas(16) const OrkReductionTab _orkReductionTab = {
    .parity_adjust = {0x0000000000000000ull, 0xBFF0000000000000ull},  // 0.0, -1.0
    .sign_factor = {0x3FF0000000000000ull, 0xBFF0000000000000ull},    // 1.0, -1.0
    .split = 0x4198000000000000ull,                                   // 1.5 2^26 = 100663296
    // pi/4 = Pa + Pb to 2^-78 relative; Pa has 25 bits, so Pa vh is exact.
    .pio4_2 = {0x3FE921FB40000000ull,       // 0.78539812564849854
               0x3E64442D18469899ull},      // 3.7748949774459412e-08
    .four_over_pi = 0x3FF45F306DC9C883ull,  // 1.2732395447351628
    // pi/4 in rounded parts with their low bits clear: n Pi exact for n < 2^24.
    .pio4_4 = {0x3FE921FB54000000ull, 0x3E010B4612000000ull, 0xBC2676733C000000ull, 0x3A61701B839A2520ull},
    // The same for n < 2^31.
    .pio4_5 = {0x3FE921FA00000000ull, 0x3EA5444300000000ull, 0xBD373DCA00000000ull, 0xBBF3B39A00000000ull,
               0x3A845C06E0E68948ull},
    .mask = 0xFFFFFFFFFFFFFFFFull,
    .digits =
        {
#include "scalar/_ork_reduce_pio2_digits.inc"
        },
};

namespace {

inline double f64(uint64_t b) { return __builtin_bit_cast(double, b); }
inline uint64_t bits(double d) { return __builtin_bit_cast(uint64_t, d); }

struct Remainder {
  double head, tail;
  uint32_t half_count;  // Q: the count of pi/2 removed (before the sign)
};

// a below 2^30: n = the even neighbour of floor(4a/pi), subtracted in parts.
inline Remainder moderate(double a, uint32_t e) {
  const OrkReductionTab& T = _orkReductionTab;
  const double y = a * f64(T.four_over_pi);
  const uint64_t yb = bits(y);
  const uint32_t ey = uint32_t(yb >> 52) - 1023;  // y >= 4/pi > 1
  const uint32_t I = uint32_t(((yb & 0x000FFFFFFFFFFFFFull) | 0x0010000000000000ull) >> (52 - ey));
  const double n = double(int32_t(I + (I & 1)));
  const uint32_t Q = (I + 1) >> 1;
  double head, tail;
  if (e < kFivePartExponent) {
    const double P1 = f64(T.pio4_4[0]), P2 = f64(T.pio4_4[1]), P3 = f64(T.pio4_4[2]), P4 = f64(T.pio4_4[3]);
    const double t0 = a - n * P1;
    const double t1 = t0 - n * P2;
    const double tail1 = (t0 - t1) - n * P2;
    const double t2 = t1 - n * P3;
    const double tail2 = (t1 - t2) - n * P3;
    head = t2;
    tail = (tail1 + tail2) - n * P4;
  } else {
    const double P1 = f64(T.pio4_5[0]), P2 = f64(T.pio4_5[1]), P3 = f64(T.pio4_5[2]), P4 = f64(T.pio4_5[3]),
                 P5 = f64(T.pio4_5[4]);
    const double t0 = a - n * P1;
    const double t1 = t0 - n * P2;
    const double tail1 = (t0 - t1) - n * P2;
    const double t2 = t1 - n * P3;
    const double tail2 = (t1 - t2) - n * P3;
    tail = tail1 + tail2;
    const double t3 = t2 + tail;
    tail = (t2 - t3) + tail;
    const double t4 = t3 - n * P4;
    tail = tail + ((t3 - t4) - n * P4);
    head = t4;
    tail = tail - n * P5;
  }
  return {head, tail, Q};
}

// trunc(w) on the bit pattern, for |w| < 2^52, and the low 32 bits of that
// integer (w reaches 2^31 when rem is 25, so no 32-bit conversion will do).
// The fraction bits are shifted out and back.  Below 1 every significand
// bit is a fraction bit; the shift count would be 53..63 there and leave
// exponent bits standing, turning [0.5, 1) into 0.5, so that case is 0.
inline double trunc_low32(double w, uint32_t* low) {
  const uint64_t wb = bits(w);
  const uint32_t ew = uint32_t(wb >> 52) & 0x7FF;
  if (ew < 1023) {
    *low = 0;
    return f64(wb & 0x8000000000000000ull);
  }
  const uint32_t sh = 1075 - ew;
  const uint32_t mag = uint32_t(((wb & 0x000FFFFFFFFFFFFFull) | 0x0010000000000000ull) >> sh);
  *low = (wb >> 63) ? 0u - mag : mag;
  return f64((wb >> sh) << sh);
}

// a from 2^30: 4a/pi formed from the digits that matter mod 8, compensated.
inline Remainder large(double a, uint32_t e) {
  const OrkReductionTab& T = _orkReductionTab;
  const double* D = reinterpret_cast<const double*>(T.digits);
  // 1. Scale down so that no partial product leaves the normal range; split
  //    into 26 + 27 bits so that every product with a 25-bit digit is exact.
  const double as = f64(bits(a) - (uint64_t(kDigitScale) << 52));
  const double xh = f64(bits(as) & ~((uint64_t(1) << 27) - 1));
  const double xl = as - xh;
  // 2. Digits below j (and D[j] xh) only contribute multiples of 8 octants.
  //    83886 is just below 2^21/25, so rem = 1..25.
  const int32_t j = int32_t(((e - 1052) * 83886u) >> 21);
  const int32_t rem = int32_t(e - 1052) - 25 * j;
  // 3. Leading sum.
  const double a0 = D[j] * xl;
  const double b0 = xh * D[j + 1];
  const double s0 = a0 + b0;
  const double e0 = b0 + (a0 - s0);
  const double w = s0 + e0;
  // 4. Drop the multiples of 8 from the leading sum: the low 38 - rem bits
  //    of w stay, which leaves s1 below 2^17.
  const double W = f64(bits(w) & (T.mask << (38 - rem)));
  const double s1 = s0 - W;
  // 5. Next terms, with the errors of the sums kept.
  const double c = D[j + 1] * xl;
  const double s2 = s1 + c;
  const double e2 = (c + (s1 - s2)) + e0;
  const double d = xh * D[j + 2];
  const double s3 = s2 + d;
  const double e4 = (d + (s2 - s3)) + e2;
  const double g = D[j + 2] * xl;
  const double f = xh * D[j + 3];
  const double w2 = ((s3 + e4) + g) + f;
  // 6. The octant count: I = trunc(w2) mod 2^32.
  uint32_t I;
  const double W2 = trunc_low32(w2, &I);
  const uint32_t Q = (I + 1) >> 1;
  const uint32_t p = I & 1;
  // 7. The fraction, made negative for odd I so that an even count is removed.
  const double s4 = s3 - W2;
  const double s5 = s4 + e4;
  double err = (s4 - s5) + e4;
  double s = s5 + f64(T.parity_adjust[p]);
  // 8. The remaining terms, each with its rounding error kept.
  auto add = [&](double t) {
    const double sn = s + t;
    err = (t + (s - sn)) + err;
    s = sn;
  };
  add(g);
  add(f);
  add(D[j + 3] * xl);
  add(xh * D[j + 4]);
  add(D[j + 4] * xl);
  add(xh * D[j + 5]);
  add(D[j + 5] * xl + xh * D[j + 6]);
  add(D[j + 6] * xl + xh * D[j + 7]);
  // 9. Last term; split the fraction into 26 bits and the rest.
  const double u = xl * D[j + 7] + xh * D[j + 8];
  const double v = s + u;
  const double k = f64(T.split) * v;
  const double vh = (v + k) - k;
  const double vl = (u + (s - vh)) + err;
  // 10. Times pi/4: vh Pa is exact.
  const double Pa = f64(T.pio4_2[0]), Pb = f64(T.pio4_2[1]);
  const double pl = Pa * vl + (vh + vl) * Pb;
  const double ph = vh * Pa;
  const double hi = ph + pl;
  const double lo = (ph - hi) + pl;
  return {hi, lo, Q};
}

}  // namespace

extern "C" unsigned orkreduce_pio2d(lux64f x, lux64f* out) {
  const OrkReductionTab& T = _orkReductionTab;
  const uint64_t xb = bits(x);
  const uint32_t s = uint32_t(xb >> 63);
  const uint32_t e = uint32_t(xb >> 52) & 0x7FF;
  const double a = f64(xb & 0x7FFFFFFFFFFFFFFFull);
  const double sigma = f64(T.sign_factor[s]);
  if (e < kLargePathExponent) {
    const Remainder r = moderate(a, e);
    const double h = r.head * sigma;
    const double l = r.tail * sigma;
    out[0] = h + l;
    out[1] = l + (h - out[0]);
    return ((1 - 2 * s) * r.half_count) & 3;
  }
  const Remainder r = large(a, e);
  out[0] = r.head * sigma;
  out[1] = r.tail * sigma;
  return ((1 - 2 * s) * r.half_count) & 3;
}
