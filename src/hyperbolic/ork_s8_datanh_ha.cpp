// luxsAtanh_64f_A53: inverse hyperbolic tangent of binary64 lanes, tier A53 (bound 1 ulp).
// max error 0.661 ulp at x = 0x1.dd5cfbe4d1b06p-8 (luxvm accuracy, 800396 points)
//
// atanh |x| = ln(w)/2, w = (1 + a)/(1 - a) = -2/u - 1 with u = a - 1 exact,
// every step on the x87 at 64-bit precision and rounded once to binary64 when
// stored; the sign of x is ORed in after.  One division serves a pair of
// lanes: 1/u1 = u2/(u1 u2) and 1/u2 = u1/(u1 u2); a lane whose partner leaves
// the path divides by u^2 alone.  The logarithm of the extended w runs on a
// table of c = 1 + i/256 (lux::invhyp::ln_tail).  Below 2^-8 the series
// a + a^3/3 + a^5/5 + a^7/7 serves (next term below 2^-64 relative);
// |x| = 1 gives +-Inf with a singularity status, beyond 1 the NaN
// 0x7FFFFFFFFFFFFFFF with x's sign and a domain status (not for a NaN input).
#include <stdint.h>

#include "frame/frame.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::invhyp::ext;
using lux::invhyp::ld;

// |x| from 2^-8 (hi32 0x3F700000) up to hi32 0x3FEFFFFF (below 1) takes the
// logarithm.
constexpr uint32_t kLogFrom = 0x3F700000;
constexpr uint32_t kOneHigh = 0x3FF00000;
constexpr uint64_t kAbs = 0x7FFFFFFFFFFFFFFFull;
constexpr uint64_t kOneBits = 0x3FF0000000000000ull;
constexpr uint64_t kInfBits = 0x7FF0000000000000ull;
constexpr uint64_t kDomainNaN = 0x7FFFFFFFFFFFFFFFull;

struct LnRow {
  uint64_t log_hi, log_lo, rcp;
};

struct alignas(16) Table {
  uint64_t q[5];        // ln(1 + r) = r * (1 + q2 r + ... + q6 r^5): q6..q2
  uint64_t c7, c5, c3;  // the series below 2^-8: 1/7, 1/5, 1/3
  LnRow rows[256];      // c = 1 + i/256: ln c in two words, 1/c
};

constexpr Table kTable = {
    .q =
        {
            0xBFC51ED447A1B8C5,  // -0.16500333306925632
            0x3FC9995C6A12E46A,  // 0.19999270610222492
            0xBFCFFFFFE04ECEF7,  // -0.24999998524219055
            0x3FD5555555519F2A,  // 0.3333333333198306
            0xBFDFFFFFFFFFFFAF,  // -0.4999999999999955
        },
    .c7 = 0x3FC2492492492492,  // 0.14285714285714285
    .c5 = 0x3FC999999999999A,  // 0.2
    .c3 = 0x3FD5555555555555,  // 0.3333333333333333
    .rows =
        {
#include "hyperbolic/invhyp_ln256_table.inc"
        },
};

struct Kernel {
  const lux64f* src;
  lux64f* dst;
  lux::CallState<lux64f>& call;
  const Table& t;
  ld ln2;

  static bool on_path(uint64_t x) { return uint32_t(x >> 32 & 0x7FFFFFFF) - kLogFrom < kOneHigh - kLogFrom; }
  static ld abs_of(uint64_t x) { return ld(__builtin_bit_cast(double, x& kAbs)); }

  // w = -2/u - 1 into the slot, from 1/u.
  static void mark(lux::invhyp::Slot* s, uint64_t x, ld inv_u) {
    s->w = -2.0L * inv_u - 1.0L;
    s->sign = x & ~kAbs;
    s->marked = true;
  }

  // The lane routine: every lane that does not share its division.
  void lane(int i, uint64_t x, lux::invhyp::Slot* s) {
    const uint64_t ax = x & kAbs;
    s->marked = false;
    if (on_path(x)) {
      const ld u = abs_of(x) - 1.0L;
      mark(s, x, (1.0L / (u * u)) * u);
    } else if (uint32_t(ax >> 32) < kLogFrom) {
      const ld a = abs_of(x), sq = a * a;
      const ld p = (sq * ext(t.c7) + ext(t.c5)) * sq + ext(t.c3);
      lux::invhyp::store_rounded(dst + i, a + (a * sq) * p, x & ~kAbs);
    } else if (ax == kOneBits) {
      lux::invhyp::store_bits(dst + i, kInfBits | (x & ~kAbs));
      call.warn(luxWarnSingularity, i);
    } else {
      lux::invhyp::store_bits(dst + i, kDomainNaN | (x & ~kAbs));
      if (ax <= kInfBits) call.warn(luxWarnDomain, i);
    }
  }

  void front(int i, lux::invhyp::Slot* s0, lux::invhyp::Slot* s1) {
    const uint64_t x0 = lux::invhyp::bits_of(src + i);
    if (!s1) return lane(i, x0, s0);
    const uint64_t x1 = lux::invhyp::bits_of(src + i + 1);
    if (on_path(x0) && on_path(x1)) {
      const ld u0 = abs_of(x0) - 1.0L, u1 = abs_of(x1) - 1.0L;
      const ld inv = 1.0L / (u0 * u1);
      mark(s0, x0, inv * u1);
      mark(s1, x1, inv * u0);
      return;
    }
    lane(i, x0, s0);
    lane(i + 1, x1, s1);
  }
  ld finish(ld w) const { return 0.5L * lux::invhyp::ln_tail(t.rows, t.q, ln2, w); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAtanh_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::X87Guard64 x87;
  lux::CallState<lux64f> call(src, src, dst, dst);
  Kernel k{src, dst, call, kTable, lux::invhyp::x87_ln2()};
  return lux::invhyp::run_batches(k, len);
}
