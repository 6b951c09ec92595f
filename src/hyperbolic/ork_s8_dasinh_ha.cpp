// luxsAsinh_64f_A53: inverse hyperbolic sine of binary64 lanes, tier A53 (bound 1 ulp).
// max error 0.667 ulp at x = -0x1.37174f3af9cc7p-9 (luxvm accuracy, 800660 points)
//
// asinh |x| = ln(w), w = |x| + sqrt(x^2 + 1), every step on the x87 at 64-bit
// precision and rounded once to binary64 when stored; the sign of x is ORed
// in after.  The logarithm of the extended w runs on a table of c = 1 + i/256
// (lux::invhyp::ln_tail).  From 2^-9 down the series a - a^3/6 + 3a^5/40 is
// used instead, whose next term is below 2^-63 relative there; infinities and
// NaNs go through the x87 as they came (a signalling NaN is quieted).
#include <stdint.h>

#include "frame/frame.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::invhyp::ld;

// |x| from 2^-9 (hi32 0x3F600000) and finite takes the logarithm.
constexpr uint32_t kLogFrom = 0x3F600000;
constexpr uint32_t kInfHigh = 0x7FF00000;

struct LnRow {
  uint64_t log_hi, log_lo, rcp;
};

struct alignas(16) Table {
  // ln(1 + r) = r * (1 + q2 r + ... + q6 r^5) on 0 <= r < 2^-8: q6..q2.
  uint64_t q[5];
  uint64_t three_40, minus_sixth;  // the series below 2^-9
  LnRow rows[256];                 // c = 1 + i/256: ln c in two words, 1/c
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
    .three_40 = 0x3FB3333333333333,     // 0.075
    .minus_sixth = 0xBFC5555555555555,  // -1/6
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

  // The first pass on one lane: w into the slot, or the result at once.
  void lane(int i, lux::invhyp::Slot* s) {
    const uint64_t x = lux::invhyp::bits_of(src + i);
    const uint64_t sign = x & 0x8000000000000000ull;
    const uint32_t ahi = uint32_t(x >> 32) & 0x7FFFFFFF;
    const ld a = ld(__builtin_bit_cast(double, x & 0x7FFFFFFFFFFFFFFFull));
    s->marked = ahi - kLogFrom < kInfHigh - kLogFrom;
    if (s->marked) {
      s->w = a + __builtin_sqrtl(a * a + 1.0L);
      s->sign = sign;
    } else if (ahi < kLogFrom) {
      const ld sq = a * a;
      const ld p = sq * lux::invhyp::ext(t.three_40) + lux::invhyp::ext(t.minus_sixth);
      lux::invhyp::store_rounded(dst + i, a + (a * sq) * p, sign);
    } else {
      lux::invhyp::x87_pass(src + i, dst + i);
    }
  }
  void front(int i, lux::invhyp::Slot* s0, lux::invhyp::Slot* s1) {
    lane(i, s0);
    if (s1) lane(i + 1, s1);
  }
  ld finish(ld w) const { return lux::invhyp::ln_tail(t.rows, t.q, ln2, w); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAsinh_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::X87Guard64 x87;
  lux::CallState<lux64f> call(src, src, dst, dst);
  Kernel k{src, dst, call, kTable, lux::invhyp::x87_ln2()};
  return lux::invhyp::run_batches(k, len);
}
