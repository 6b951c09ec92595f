// luxsExp_32f_A11: e^x on binary32, within 2^13 ulp.
// max error 2159 ulp at x = 0x1.1ef684p+6 (every float of [-104, 89]).
//
// No table: x = N·ln2 + r with N = nearest integer to x·log2 e, |r| <= 0.35,
// e^x = 2^N · p(r), p a degree 3 fit of e^r (relative error up to about 2e-4).
// The narrow formula serves |x| < 87.25, where 2^N is a normal float.  A block
// holding any other lane is recomputed by masks: the narrow formula for the
// lanes it covers, the wide formula in doubles for the others (2^N as a
// double, a degree 6 fit of e^r, one conversion to float that rounds into the
// denormal range or overflows to +Inf), then the clamps of |x| >= 160, and
// NaNs passed through bit for bit.  Statuses come after the block is stored.
#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

using lux::as_int;
using lux::as_pd;
using lux::as_ps;
using lux::row32;
using lux::Row32;
using lux::row64;
using lux::Row64;

// |x| < 87.25: the narrow formula; N >= -126 keeps 2^N normal.
constexpr uint32_t kNarrowPathBound = 0x42AE8000;
constexpr uint32_t kAbsMask = 0x7FFFFFFF;
constexpr uint32_t kInfBits = 0x7F800000;
// Finite x >= 88.72283935546875: +Inf, overflow.
constexpr uint32_t kOverflowFrom = 0x42B17218;
// Finite x <= -87.3365478515625: below the normal range, underflow.
constexpr uint32_t kUnderflowFrom = 0xC2AEAC50;
constexpr uint32_t kMinusInfBits = 0xFF800000;

struct alignas(16) ExpTable {
  Row32 flLog2e;                 // log2 e
  Row32 flNegShifter;            // -1.5·2^23: x·log2e - (-S) holds N in its low bits
  Row32 flBias;                  // 127, integer
  Row32 flLn2;                   // ln 2
  Row32 flA0, flA1, flA2, flA3;  // e^r on |r| <= 0.35, relative error ~2e-4
  Row32 flNarrowBound;           // 87.25 as an integer encoding
  Row32 flHuge;                  // 160.0 as an integer encoding: at or above, +Inf
  Row32 flMinusHuge;             // -160.0: below it, +0
  Row32 flAbsMask;               // 0x7FFFFFFF
  Row32 flInf;                   // +Inf
  Row64 dbLog2e;                 // wide formula
  Row64 dbLn2;
  Row64 dbNegShifter;                              // -1.5·2^52
  Row64 dbBias;                                    // 1023
  Row64 dbB0, dbB1, dbB2, dbB3, dbB4, dbB5, dbB6;  // e^r on |r| <= 0.35, far below a float ulp
};

constexpr ExpTable kExpTable = {
    .flLog2e = row32(0x3FB8AA3B),        // 1.4426950216293335
    .flNegShifter = row32(0xCB400000),   // -12582912.0
    .flBias = row32(0x0000007F),         // 127
    .flLn2 = row32(0x3F317218),          // 0.6931471824645996
    .flA0 = row32(0x3F800000),           // 1.0
    .flA1 = row32(0x3F80017A),           // 1.0000450611114502
    .flA2 = row32(0x3F00F657),           // 0.5037588477134705
    .flA3 = row32(0x3E2AAA8D),           // 0.16666622459888458
    .flNarrowBound = row32(0x42AE8000),  // 87.25
    .flHuge = row32(0x43200000),         // 160.0
    .flMinusHuge = row32(0xC3200000),    // -160.0
    .flAbsMask = row32(0x7FFFFFFF),
    .flInf = row32(0x7F800000),
    .dbLog2e = row64(0x3FF71547652B82FE),       // 1.4426950408889634
    .dbLn2 = row64(0x3FE62E42FEFA39EF),         // 0.6931471805599453
    .dbNegShifter = row64(0xC338000000000000),  // -6755399441055744.0
    .dbBias = row64(0x00000000000003FF),        // 1023
    .dbB0 = row64(0x3FF00000002662E5),          // 1.0000000005585943
    .dbB1 = row64(0x3FF0000009CEF2EE),          // 1.0000000365391162
    .dbB2 = row64(0x3FDFFFFFAA729C2F),          // 0.49999992032320767
    .dbB3 = row64(0x3FC5554092D1E188),          // 0.16666419190347548
    .dbB4 = row64(0x3FA55589D9BC30D4),          // 0.04166823180102744
    .dbB5 = row64(0x3F8126DBD49CFE0B),          // 0.008374898363057623
    .dbB6 = row64(0x3F56AB8CDD691A9D),          // 0.0013836742051737468
};

// Narrow formula, four lanes.
inline __m128 narrow4(__m128 x, const ExpTable& T) {
  const __m128 t = _mm_sub_ps(_mm_mul_ps(x, T.flLog2e.ps()), T.flNegShifter.ps());
  const __m128i e = _mm_slli_epi32(_mm_add_epi32(as_int(t), T.flBias.pi()), 23);
  const __m128 nf = _mm_add_ps(t, T.flNegShifter.ps());
  const __m128 r = _mm_sub_ps(x, _mm_mul_ps(nf, T.flLn2.ps()));
  __m128 p = _mm_add_ps(_mm_mul_ps(T.flA3.ps(), r), T.flA2.ps());
  p = _mm_add_ps(_mm_mul_ps(p, r), T.flA1.ps());
  p = _mm_add_ps(_mm_mul_ps(p, r), T.flA0.ps());
  return _mm_mul_ps(p, as_ps(e));
}

// Wide formula on two lanes in doubles, rounded to float once at the end
// (into the low two float lanes).
inline __m128 wide2(__m128d xd, const ExpTable& T) {
  const __m128d t = _mm_sub_pd(_mm_mul_pd(xd, T.dbLog2e.pd()), T.dbNegShifter.pd());
  const __m128d e = as_pd(_mm_slli_epi64(_mm_add_epi64(as_int(t), T.dbBias.pi()), 52));
  const __m128d nf = _mm_add_pd(t, T.dbNegShifter.pd());
  const __m128d r = _mm_sub_pd(xd, _mm_mul_pd(nf, T.dbLn2.pd()));
  __m128d q = _mm_add_pd(_mm_mul_pd(T.dbB6.pd(), r), T.dbB5.pd());
  q = _mm_add_pd(_mm_mul_pd(q, r), T.dbB4.pd());
  q = _mm_add_pd(_mm_mul_pd(q, r), T.dbB3.pd());
  q = _mm_add_pd(_mm_mul_pd(q, r), T.dbB2.pd());
  q = _mm_add_pd(_mm_mul_pd(q, r), T.dbB1.pd());
  q = _mm_add_pd(_mm_mul_pd(q, r), T.dbB0.pd());
  return _mm_cvtpd_ps(_mm_mul_pd(q, e));
}

inline __m128 select(__m128i mask, __m128 yes, __m128 no) {
  return _mm_or_ps(_mm_and_ps(as_ps(mask), yes), _mm_andnot_ps(as_ps(mask), no));
}

// Every lane value, by masks: narrow where it holds, wide elsewhere, then the
// clamps and the NaNs.
inline __m128 masked4(__m128 x, const ExpTable& T) {
  const __m128i bits = as_int(x);
  const __m128i abs = _mm_and_si128(bits, T.flAbsMask.pi());
  const __m128i narrow = _mm_cmplt_epi32(abs, T.flNarrowBound.pi());
  const __m128 f = narrow4(x, T);
  const __m128 g = _mm_movelh_ps(wide2(_mm_cvtps_pd(x), T), wide2(_mm_cvtps_pd(_mm_movehl_ps(x, x)), T));
  __m128 y = select(narrow, f, g);
  // x >= 160, and NaNs with the sign clear (signed compare of the encoding).
  const __m128i huge = _mm_cmpgt_epi32(bits, _mm_sub_epi32(T.flHuge.pi(), _mm_set1_epi32(1)));
  y = select(huge, T.flInf.ps(), y);
  // x < -160, an ordered compare: -Inf among them, NaNs not.
  y = _mm_andnot_ps(_mm_cmplt_ps(x, T.flMinusHuge.ps()), y);
  const __m128i nan = _mm_cmpgt_epi32(abs, T.flInf.pi());
  return select(nan, x, y);
}

inline bool all_narrow(__m128 x) { return lux::all_below(as_int(x), kNarrowPathBound, 4); }

// The status of a lane, from its input's encoding; infinities and NaNs have none.
inline luxStatus lane_status(uint32_t bits) {
  if (bits - kOverflowFrom < kInfBits - kOverflowFrom) return luxWarnOverflow;
  if (bits - kUnderflowFrom < kMinusInfBits - kUnderflowFrom) return luxWarnUnderflow;
  return luxOk;
}

struct ExpKernel {
  const float* src;
  float* dst;
  lux::CallState<lux32f>& call;
  const ExpTable& T;
  // Statuses of the lanes of the current block (or tail lane), taken from the
  // inputs before the stores: an in-place call has overwritten them since.
  luxStatus status_[8] = {};

  unsigned block(int i) {
    const __m128 x0 = lux::load4(src + i);
    const __m128 x1 = lux::load4(src + i + 4);
    if (__builtin_expect(all_narrow(x0) & all_narrow(x1), 1)) {
      lux::store4(dst + i, narrow4(x0, T));
      lux::store4(dst + i + 4, narrow4(x1, T));
      return 0;
    }
    alignas(16) uint32_t in[8];
    _mm_store_si128(reinterpret_cast<__m128i*>(in), as_int(x0));
    _mm_store_si128(reinterpret_cast<__m128i*>(in + 4), as_int(x1));
    lux::store4(dst + i, masked4(x0, T));
    lux::store4(dst + i + 4, masked4(x1, T));
    unsigned mask = 0;
    for (int b = 0; b < 8; ++b) {
      status_[b] = lane_status(in[b]);
      if (status_[b] != luxOk) mask |= 1u << b;
    }
    return mask;
  }
  unsigned tail(int i) {
    const __m128 x = lux::load1(src + i);  // upper lanes 0: narrow, no status
    const uint32_t bits = uint32_t(_mm_cvtsi128_si32(as_int(x)));
    lux::store1(dst + i, (bits & kAbsMask) < kNarrowPathBound ? narrow4(x, T) : masked4(x, T));
    status_[i & 7] = lane_status(bits);
    return status_[i & 7] != luxOk;
  }
  void offend(int i) { call.warn(status_[i & 7], i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsExp_32f_A11(const lux32f* src, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  lux::CallState<lux32f> call(src, src, dst, dst);
  ExpKernel k{src, dst, call, kExpTable};
  lux::run_masked<8>(len, k);
  return call.status();
}
