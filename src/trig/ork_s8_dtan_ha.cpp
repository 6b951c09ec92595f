// luxsTan_64f_A53: tangent of binary64 arrays within 1 ulp.
// max error 0.944 ulp at x = 0x1.c45d2461b7724p+2 (luxvm accuracy).
//
// x = n pi/2 + r, r carried as head + tail from a three-part pi/2; tan r =
// r (1 + N2 z + N4 z^2 + N6 z^3) / (1 + D2 z + D4 z^2 + D6 z^3), z = r^2,
// and for odd n the quotient is taken the other way up.  The arrays run in
// chunks of 256 lanes: two passes on the SSE unit reduce and evaluate the
// upper polynomial terms into a work area on the stack, and a third pass on
// the x87 unit with its 64-bit significand finishes numerator and
// denominator from the unrounded head + tail and divides, one division for
// two lanes.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"

namespace {

using lux::Row64;
using lux::row64;

// High word of |x| below 0x40FF4000 (|x| < 128000.0) stays on the vector
// path: n < 2^17 and n times the first two parts of pi/2 is exact.
// 128000.0 itself, what lies above, NaN and the infinities go to the scalar
// routine.
constexpr uint32_t kVectorPathBound = 0x40FF4000;
constexpr int kChunk = 256;

struct alignas(16) Table {
  Row64 two_over_pi;
  Row64 shifter;     // 2^52
  Row64 p1, p2, p3;  // -pi/2 = p1 + p2 - p3: p1, p2 negative, 33 bits each
  Row64 n6, n4, d6, d4;
  Row64 sign;
  uint64_t n2, d2;  // read by the x87 pass
};

constexpr Table kTable = {
    row64(0x3FE45F306DC9C883),  // 0.6366197723675814
    row64(0x4330000000000000),  // 2^52
    row64(0xBFF921FB54400000),  // -1.5707963267341256
    row64(0xBDD0B4611A600000),  // -6.077100506506192e-11
    row64(0x3BA3198A2E037073),  // 2.0222662487959506e-21
    row64(0xBEDF637DEA7C0B2C),  // -7.483634966612065e-06
    row64(0x3F66FC6FE2982A7B),  // 0.002805918241169989
    row64(0xBF2B525B10D0A168),  // -0.00020844804422038708
    row64(0x3F97E7B68D9A55F3),  // 0.02334485282206873
    row64(0x8000000000000000),
    0xBFC06B97BF03648A,  // -0.12828347040957438
    0xBFDD8B2134D70767,  // -0.46161680374290487
};

// The work area of one chunk, one slot per lane.
struct alignas(16) WorkArea {
  double t[kChunk];     // the shifter sum: bit 0 of its pattern is n's parity
  double head[kChunk];  // the reduced argument with the sign of the result
  double tail[kChunk];  //   for even n (sign(x) ^ parity) folded in
  double p1[kChunk];    // (N6 z + N4) z
  double p2[kChunk];    // (D6 z + D4) z
};

// Pass 1: the reduction of two lanes.
inline void reduce_pair(__m128d xin, double* t_out, double* head_out, double* tail_out) {
  const Table& T = kTable;
  // Lanes that will fail the test run as zeros here, so that huge values,
  // infinities and NaN raise no flag of their own before the call-out.
  const __m128i hw = _mm_and_si128(lux::high_words(xin), _mm_set1_epi32(0x7FFFFFFF));
  const __m128i pass = _mm_cmplt_epi32(hw, _mm_set1_epi32(int32_t(kVectorPathBound)));
  const __m128d x = _mm_and_pd(xin, lux::as_pd(_mm_unpacklo_epi32(pass, pass)));
  const __m128d ax = _mm_andnot_pd(T.sign.pd(), x);
  const __m128d t = _mm_add_pd(_mm_mul_pd(ax, T.two_over_pi.pd()), T.shifter.pd());
  const __m128d n = _mm_sub_pd(t, T.shifter.pd());
  const __m128d a = _mm_mul_pd(n, T.p2.pd());
  const __m128d b = _mm_add_pd(_mm_mul_pd(n, T.p1.pd()), ax);
  const __m128d s = _mm_add_pd(a, b);
  const __m128d c = _mm_sub_pd(_mm_mul_pd(n, T.p3.pd()), _mm_add_pd(_mm_sub_pd(b, s), a));
  const __m128d head = _mm_sub_pd(s, c);
  const __m128d tail = _mm_sub_pd(_mm_sub_pd(s, head), c);
  const __m128d sign = _mm_xor_pd(lux::as_pd(_mm_slli_epi64(lux::as_int(t), 63)), _mm_and_pd(x, T.sign.pd()));
  _mm_store_pd(t_out, t);
  _mm_store_pd(head_out, _mm_xor_pd(head, sign));
  _mm_store_pd(tail_out, _mm_xor_pd(tail, sign));
}

// Pass 2: the upper terms of both polynomials.
inline void upper_terms_pair(const double* head, const double* tail, double* p1, double* p2) {
  const Table& T = kTable;
  const __m128d r = _mm_add_pd(_mm_load_pd(head), _mm_load_pd(tail));
  const __m128d z = _mm_mul_pd(r, r);
  _mm_store_pd(p1, _mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.n6.pd(), z), T.n4.pd()), z));
  _mm_store_pd(p2, _mm_mul_pd(_mm_add_pd(_mm_mul_pd(T.d6.pd(), z), T.d4.pd()), z));
}

inline bool odd(const double& t) { return (*reinterpret_cast<const uint64_t*>(&t) & 1) != 0; }
inline uint32_t high_word_abs(const lux64f* p) {
  return uint32_t(*reinterpret_cast<const uint64_t*>(p) >> 32) & 0x7FFFFFFF;
}

// Pass 3 for one lane, in extended precision: numerator and denominator of
// the lane's quotient, already swapped for odd n.
struct Fraction {
  long double num, den;
};
inline Fraction fraction(const WorkArea& w, int s) {
  const Table& T = kTable;
  const long double r = static_cast<long double>(w.head[s]) + static_cast<long double>(w.tail[s]);
  const long double z = r * r;
  const long double A = static_cast<long double>(w.p1[s]) + __builtin_bit_cast(double, T.n2);
  const long double B = static_cast<long double>(w.p2[s]) + __builtin_bit_cast(double, T.d2);
  const long double num = (A * z + 1.0L) * r;
  const long double den = B * z + 1.0L;
  if (odd(w.t[s])) return {den, num};
  return {num, den};
}

// Stores a long double rounded once to binary64.
inline void store_rounded(lux64f* out, long double v) {
  lux::store1(out, _mm_set_sd(static_cast<double>(v)));
}

struct Chunk {
  const lux64f* src;
  lux64f* dst;
  luxStatus* status;

  void call_out(int i) { orkdTan_SC_HA(i, src, dst, status); }

  // Lanes [i, i + count) of the arrays, count <= kChunk.
  void run(int i, int count, WorkArea& w) {
    const lux64f* x = src + i;
    int s = 0;
    for (; s + 2 <= count; s += 2) reduce_pair(lux::load2(x + s), &w.t[s], &w.head[s], &w.tail[s]);
    if (s < count) {
      alignas(16) double t2[2], h2[2], l2[2];
      reduce_pair(lux::load1(x + s), t2, h2, l2);
      w.t[s] = t2[0], w.head[s] = h2[0], w.tail[s] = l2[0];
    }
    for (s = 0; s + 2 <= count; s += 2) upper_terms_pair(&w.head[s], &w.tail[s], &w.p1[s], &w.p2[s]);
    if (s < count) {
      alignas(16) double h2[2] = {w.head[s], 0.0}, l2[2] = {w.tail[s], 0.0}, a2[2], b2[2];
      upper_terms_pair(h2, l2, a2, b2);
      w.p1[s] = a2[0], w.p2[s] = b2[0];
    }
    // The lane test stands here, before a lane's quotient is stored; a pair
    // with a failing lane goes whole to the scalar routine.
    for (s = 0; s + 2 <= count; s += 2) {
      if (__builtin_expect(
              high_word_abs(x + s) >= kVectorPathBound || high_word_abs(x + s + 1) >= kVectorPathBound, 0)) {
        call_out(i + s);
        call_out(i + s + 1);
        continue;
      }
      const Fraction f0 = fraction(w, s), f1 = fraction(w, s + 1);
      const long double dd = f0.den * f1.den;
      if (__builtin_expect(static_cast<float>(dd) == 0.0f, 0)) {
        // The product of the denominators is lost in single precision: two
        // divisions instead of one.
        store_rounded(dst + i + s, f0.num / f0.den);
        store_rounded(dst + i + s + 1, f1.num / f1.den);
        continue;
      }
      const long double R = 1.0L / dd;
      store_rounded(dst + i + s, (f0.num * f1.den) * R);
      store_rounded(dst + i + s + 1, (f1.num * f0.den) * R);
    }
    if (s < count) {
      if (__builtin_expect(high_word_abs(x + s) >= kVectorPathBound, 0)) {
        call_out(i + s);
        return;
      }
      const Fraction f = fraction(w, s);
      store_rounded(dst + i + s, (f.num * f.den) * (1.0L / (f.den * f.den)));
    }
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsTan_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::X87Guard64 x87;
  lux::RoundNearestGuard sse;
  luxStatus status = luxOk;
  WorkArea w;
  Chunk c{src, dst, &status};
  for (int i = 0; i < len; i += kChunk) c.run(i, len - i < kChunk ? len - i : kChunk, w);
  return status;
}
