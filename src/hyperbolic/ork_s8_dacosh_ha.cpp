// luxsAcosh_64f_A53: inverse hyperbolic cosine of binary64 lanes, tier A53 (bound 1 ulp).
// max error 0.748 ulp at x = 0x1.0007ffce8cfb3p+0 (luxvm accuracy, 800297 points)
//
// acosh x = ln(w), w = x + sqrt(x^2 - 1), every step on the x87 at 64-bit
// precision and rounded once to binary64 when stored.  The logarithm of the
// extended w runs on a table of c = 1 + i/256 (lux::invhyp::ln_tail).  Below
// 1 + 2^-11, where x^2 - 1 loses bits, d = x - 1 is exact and
// acosh x = sqrt(2d) * (1 - d/12 + 3d^2/160 - ...), a cubic in d; x = 1 gives
// +0.  Below 1 and on the negative side the result is the NaN
// 0x7FFFFFFFFFFFFFFF with a domain status (not for a NaN input).
#include <stdint.h>

#include "frame/frame.h"
#include "hyperbolic/invhyp_frame.h"

namespace {

using lux::invhyp::ext;
using lux::invhyp::ld;

// x from 1 + 2^-11 (hi32 0x3FF00200) and finite takes the logarithm; from
// 1.0 (0x3FF00000) below that the series; signed hi32 below 1.0 is outside
// the domain.
constexpr int32_t kLogFrom = 0x3FF00200;
constexpr int32_t kOne = 0x3FF00000;
constexpr int32_t kInfHigh = 0x7FF00000;
constexpr uint64_t kDomainNaN = 0x7FFFFFFFFFFFFFFFull;

struct LnRow {
  uint64_t log_hi, log_lo, rcp;
};

struct alignas(16) Table {
  uint64_t q[5];        // ln(1 + r) = r * (1 + q2 r + ... + q6 r^5): q6..q2
  uint64_t p3, p2, p1;  // acosh(1 + d) / sqrt(2d) on 0 <= d < 2^-11
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
    .p3 = 0xBF76D772CCA47234,  // -0.005576561389059754
    .p2 = 0x3F9333330A736759,  // 0.018749997628084134
    .p1 = 0xBFB555555554CFD2,  // -0.083333333332859
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
    const int32_t hi = int32_t(x >> 32);
    const ld v = ld(__builtin_bit_cast(double, x));
    s->marked = hi >= kLogFrom && hi < kInfHigh;
    if (s->marked) {
      s->w = v + __builtin_sqrtl(v * v - 1.0L);
      s->sign = 0;
    } else if (hi >= kInfHigh) {
      lux::invhyp::x87_pass(src + i, dst + i);  // +Inf, or a NaN with the sign clear
    } else if (hi >= kOne) {
      const ld d = v - 1.0L;
      const ld p = ((ext(t.p3) * d + ext(t.p2)) * d + ext(t.p1)) * d + 1.0L;
      lux::invhyp::store_rounded(dst + i, __builtin_sqrtl(d + d) * p, 0);
    } else {
      lux::invhyp::store_bits(dst + i, kDomainNaN);
      const bool nan = (x & 0x7FFFFFFFFFFFFFFFull) > 0x7FF0000000000000ull;
      if (!nan) call.warn(luxWarnDomain, i);
    }
  }
  void front(int i, lux::invhyp::Slot* s0, lux::invhyp::Slot* s1) {
    lane(i, s0);
    if (s1) lane(i + 1, s1);
  }
  ld finish(ld w) const { return lux::invhyp::ln_tail(t.rows, t.q, ln2, w); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsAcosh_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::X87Guard64 x87;
  lux::CallState<lux64f> call(src, src, dst, dst);
  Kernel k{src, dst, call, kTable, lux::invhyp::x87_ln2()};
  return lux::invhyp::run_batches(k, len);
}
