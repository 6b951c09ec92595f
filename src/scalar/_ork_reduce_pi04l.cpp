// orkreduce_pi04l: x mod pi/4 for any finite extended x >= pi/4, on the x87
// unit at 64-bit precision; the remainder as head + tail and the octant count.
// max error 2^-77.3 relative to the remainder, at x = 0xf.f0d79c847281f3dp+912
// next to a multiple of pi/2; 2^-88.5 on random arguments (reduce_test).
#include "frame/frame.h"
#include "scalar/reduce.h"

extern "C" alignas(16) const OrkX80Slot __4onpi_31l[537] = {
#include "scalar/_ork_reduce_pi04l_digits.inc"
};

namespace {

constexpr uint32_t kLargePathExponent = 0x401D;  // x >= 2^30: digit-by-digit product
constexpr uint32_t kFivePartExponent = 0x4010;   // x >= 2^17: n P1 needs the shorter parts

// The constants of the routine, as bit patterns of doubles.
struct alignas(16) Pi04lTab {
  uint64_t four_over_pi;  // __4onpi_d, RN(4/pi)
  uint64_t scale;         // _SCALE, 2^-217: undoes the digits' 2^217
  uint64_t two_32h;       // _TWO_32H, 1.5 2^32: splits off 31 bits
  uint64_t two_12h;       // _TWO_12H, 1.5 2^12: rounds a 64-bit value to 51 bits
  uint64_t zero_none[2];  // 0.0, -1.0
  uint64_t pi04_2d[2];    // pi/4 in two parts (the first with 31 bits)
  uint64_t pi04_3d[3];    // pi/4 in three parts, n P1 exact for n < 2^18
  uint64_t pi04_5d[5];    // pi/4 in five parts, n Pi exact for n < 2^31
};
constexpr Pi04lTab kTab = {
    .four_over_pi = 0x3FF45F306DC9C883ull,  // 1.2732395447351628
    .scale = 0x3260000000000000ull,
    .two_32h = 0x41F8000000000000ull,  // 6442450944
    .two_12h = 0x40B8000000000000ull,  // 6144
    .zero_none = {0x0000000000000000ull, 0xBFF0000000000000ull},
    .pi04_2d = {0x3FE921FB54400000ull, 0x3DC0B4611A626331ull},
    .pi04_3d = {0x3FE921FB54442D00ull, 0x3CE8469898CC5180ull, 0xB9DFC8F8CBB5BF6Cull},
    .pi04_5d = {0x3FE921FB54400000ull, 0x3DC0B4611A600000ull, 0x3B93198A2E000000ull, 0x396B839A25200000ull,
                0x37027044533E63A0ull},
};

using ld = long double;

inline ld d(uint64_t b) { return ld(__builtin_bit_cast(double, b)); }

// The 80-bit image of a long double (12 bytes on i386, 16 on x86-64).
struct X80 {
  uint64_t sig;
  uint16_t se;
  char pad[sizeof(ld) - 10];
};
inline X80 image(ld v) { return __builtin_bit_cast(X80, v); }
inline ld from_image(uint64_t sig, uint16_t se) {
  X80 x{};
  x.sig = sig;
  x.se = se;
  return __builtin_bit_cast(ld, x);
}
inline ld E(int i) {
  const OrkX80Slot& s = __4onpi_31l[i];
  return from_image((uint64_t(s.w[1]) << 32) | s.w[0], uint16_t(s.w[2]));
}

// (a + S a) - S a: a rounded to 64 - 33 = 31 bits (S = 1.5 2^32).
inline ld split_high(ld a, ld S) { return (a + S * a) - S * a; }

// The final form: head + t with the head rounded to 51 bits, which a double
// holds exactly, and the rest rounded to double.
inline void final_form(ld head, ld t, lux64f* out) {
  const ld K = d(kTab.two_12h);
  const ld v = t + head;
  const ld vh = (v + K * v) - K * v;
  out[0] = double(vh);
  out[1] = double(t + (head - vh));
}

inline unsigned moderate(ld x, uint32_t e, unsigned offset, lux64f* out) {
  // 1. I = floor(4x/pi) from the top word of y's significand: bit 31 of that
  //    word has weight 2^ey, so the integer part is the word >> (31 - ey).
  const ld y = x * d(kTab.four_over_pi);
  const X80 yi = image(y);
  const uint32_t ey = uint32_t(yi.se & 0x7FFF) - 16383;
  const uint32_t I = uint32_t(yi.sig >> 32) >> ((31 - ey) & 31);
  // 2. n: I rounded to the parity that makes n + offset even.
  const ld n = ld(I + ((I + offset) & 1));
  const ld S = d(kTab.two_32h);
  ld head, t;
  if (e < kFivePartExponent) {
    const ld P1 = d(kTab.pi04_3d[0]), P2 = d(kTab.pi04_3d[1]), P3 = d(kTab.pi04_3d[2]);
    const ld a = x - n * P1;
    const ld ah = split_high(a, S);
    const ld al = a - ah;
    const ld b = ah - n * P2;
    t = al + ((ah - b) - n * P2);
    const ld c = b - n * P3;
    t = t + ((b - c) - n * P3);
    head = c;
  } else {
    const ld P1 = d(kTab.pi04_5d[0]), P2 = d(kTab.pi04_5d[1]), P3 = d(kTab.pi04_5d[2]),
             P4 = d(kTab.pi04_5d[3]), P5 = d(kTab.pi04_5d[4]);
    const ld a = x - n * P1;
    const ld ah = split_high(a, S);
    const ld al = a - ah;
    const ld b = ah - n * P2;
    t = al + ((ah - b) - n * P2);
    const ld c = b - n * P3;
    t = t + ((b - c) - n * P3);
    const ld dd = c - n * P4;
    t = t + ((c - dd) - n * P4);
    const ld f = dd - n * P5;
    t = t + ((dd - f) - n * P5);
    head = f;
  }
  final_form(head, t, out);
  return I + offset;
}

// trunc(N) and its low 32 bits, on the 80-bit image.
inline ld trunc_low32(ld N, uint32_t* low) {
  const X80 ni = image(N);
  const int32_t ex = int32_t(ni.se & 0x7FFF) - 16383;
  if (ex < 0) {
    *low = 0;
    return from_image(0, uint16_t(ni.se & 0x8000));
  }
  uint64_t sig = ni.sig;
  uint32_t mag;
  if (ex < 63) {
    sig &= ~((uint64_t(1) << (63 - ex)) - 1);
    mag = uint32_t(sig >> (63 - ex));
  } else {
    mag = uint32_t(sig << (ex - 63));
  }
  *low = (ni.se & 0x8000) ? 0u - mag : mag;
  return from_image(sig, ni.se);
}

inline unsigned large(ld x, uint32_t e, unsigned offset, lux64f* out) {
  // 1. Scale by 2^-217 and split into two 32-bit halves: every product with
  //    a 31-bit digit has at most 63 bits and is exact.
  const ld xs = x * d(kTab.scale);
  const ld xh = from_image(image(xs).sig & 0xFFFFFFFF00000000ull, image(xs).se);
  const ld xl = xs - xh;
  // 2. Digits below j (and E[j] xh) contribute multiples of 8 octants only.
  const int32_t t = int32_t(e) - 16417;
  int32_t j = t / 31;
  const int32_t rho = t - 31 * j;
  ld head = 0.0L, tail = 0.0L;
  // 3. A large rho puts E[j] xl and E[j+1] xh above 2^52: take one more
  //    digit and drop the multiples of 8 (the low 24 bits of C + D stay).
  if (rho >= 17) {
    const ld A = E(j) * xl;
    const ld B = E(j + 1) * xh;
    const ld C = A + B;
    const ld D = B + (A - C);
    const X80 wi = image(C + D);
    const ld W = from_image(wi.sig & ~((uint64_t(1) << 24) - 1), wi.se);
    head = C - W;
    tail = D;
    j = j + 1;
  }
  auto add = [&](ld term) {
    const ld s = head + term;
    tail = tail + (term + (head - s));
    head = s;
  };
  // 4.
  add(E(j) * xl);
  add(E(j + 1) * xh);
  // 5. The octant count.
  const ld N = ((tail + head) + E(j + 1) * xl) + E(j + 2) * xh;
  uint32_t I;
  const ld Nt = trunc_low32(N, &I);
  const unsigned count = I + offset;
  const uint32_t p = count & 1;
  // 6. Keep the fraction; an odd count makes it negative (n = count + 1).
  head = head - Nt;
  const ld h2 = tail + head;
  tail = tail + (head - h2);
  head = h2;
  head = head + d(kTab.zero_none[p]);
  // 7.
  add(E(j + 1) * xl);
  add(E(j + 2) * xh);
  add(E(j + 2) * xl);
  add(E(j + 3) * xh);
  add(E(j + 3) * xl);
  add(E(j + 4) * xh);
  add(E(j + 4) * xl + E(j + 5) * xh);
  add(E(j + 5) * xl + E(j + 6) * xh);
  // 8. Last term; split the fraction into 31 bits and the rest.
  const ld u = E(j + 6) * xl + E(j + 7) * xh;
  const ld v = head + u;
  const ld S = d(kTab.two_32h);
  const ld vh = split_high(v, S);
  const ld vl = (u + (head - vh)) + tail;
  // 9. Times pi/4: P1 vh is exact.
  const ld P1 = d(kTab.pi04_2d[0]), P2 = d(kTab.pi04_2d[1]);
  const ld H = P1 * vh;
  const ld L = P1 * vl + (vl + vh) * P2;
  final_form(H, L, out);
  return count;
}

}  // namespace

extern "C" unsigned orkreduce_pi04l(long double x, unsigned offset, lux64f* out) {
  const uint32_t e = image(x).se & 0x7FFF;
  if (e < kLargePathExponent) return moderate(x, e, offset, out);
  return large(x, e, offset, out);
}
