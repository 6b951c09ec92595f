// The pieces that the extended sinh, cosh and their combined routine share:
// e^|x| by the table exponential step with 2^k applied in two factors (large
// path), and e^|x| with e^-|x| from table pairs of opposite index (middle
// path).  Each routine adds the pieces up in its own order.
#pragma once

#include "scalar/extended.h"

namespace lux::x80 {

// From |x| = 26.166015625 on (absolute key), e^-|x| no longer shows beside
// e^|x|; from |x| = 11357.216553474703687 (exponent field 16396, this
// significand) the results overflow.
inline constexpr uint32_t kHypLargeKey = 0x4003D154;
inline constexpr uint32_t kHypOverflowField = 16396;
inline constexpr uint64_t kHypOverflowSig = 0xB174DDC031AEC0EAull;
inline constexpr uint32_t kHypMiddleField = 16382;         // |x| >= 0.5
inline constexpr uint64_t kTwo32 = 0x41F0000000000000ull;  // 2^32

inline uint32_t abs_key(ld x) { return key(x) & 0x7FFFFFFFu; }
inline bool hyp_overflows(ld x) {
  const uint32_t e = exponent_field(x);
  return e > kHypOverflowField || (e == kHypOverflowField && image(x).sig >= kHypOverflowSig);
}
inline ld P(int i) { return value(kExpP[i]); }

// Large path: e^ax / 2 = (u + rest) 2^(k-1); sc = 2^(k-33) (with the sign
// of `sign_one`), the factor 2^32 completes it without overflow.
struct LargePieces {
  ld hi, lo, rh, p, t, u, sc;
};
inline LargePieces large_pieces(ld ax, ld sign_one) {
  const ExpStep s = table_exp_step(ax, false);
  LargePieces q;
  q.hi = s.hi;
  q.lo = s.lo;
  q.rh = s.rh;
  q.sc =
      from_image(0x8000000000000000ull, uint16_t((image(sign_one).se & 0x8000) | ((s.k + 16350) & 0x7FFF)));
  q.p = (s.rl + s.r * ((P(3) * s.z + P(1)) * s.z)) + s.z * ((P(4) * s.z + P(2)) * s.z + P(0));
  q.t = s.rh * s.hi;
  q.u = s.hi + q.t;
  return q;
}

// Middle path: e^ax = (sp + Ep) 2^k and e^-ax = (sm + Em) 2^-k.
struct MiddlePieces {
  ld sp, sm, Ep, Em;
  int32_t k;
};
inline MiddlePieces middle_pieces(ld ax) {
  const ExpStep s = table_exp_step(ax, false);
  const ld hp = s.hi, lp = s.lo;
  const ld hm = dbl(ork_ork_expl_table_256[128 - s.j][0]), lm = dbl(ork_ork_expl_table_256[128 - s.j][1]);
  const ld E = (P(0) + (P(4) * s.z + P(2)) * s.z) * s.z;
  const ld O = s.rl + ((P(3) * s.z + P(1)) * s.z) * s.r;
  const ld tp = hp * s.rh, sp = hp + tp;
  const ld tm = s.rh * hm, sm = hm - tm;
  MiddlePieces q;
  q.sp = sp;
  q.sm = sm;
  q.Ep = ((tp + (hp - sp)) + lp) + ((lp + hp) * (E + O) + lp * s.rh);
  q.Em = (lm + ((hm - sm) - tm)) + ((lm + hm) * (E - O) - lm * s.rh);
  q.k = s.k;
  return q;
}
// 2^(k-1) and 2^(-k-1) as floats.
inline ld half_pow2(int32_t k) { return ld(__builtin_bit_cast(float, uint32_t((k << 23) + 0x3F000000))); }

}  // namespace lux::x80
