// luxsErf_64f_A53: erf(x) on binary64 arrays, within 1 ulp.
// max error 0.782 ulp at x = -0x1.1a9763a8f0eb4p+2 (luxvm accuracy Erf --points=4000).
//
// 46 rows keyed by the high word, 8 a binade from 0.125 to 6: on each, erf
// is c0 + t*(c1 + t*(c2 + ... + t*c10)) in t = |x| - centre, c0 = erf(centre)
// in two words.  The tail t*(c2 + ...) is plain Horner; c1 + q and
// c0 + t*(c1 + q) are carried in two words (products of 26-bit halves are
// exact), so the result has one final rounding plus a few 2^-60 relative.
// Row 0 is the odd fit at the origin, row 45 (|x| >= 6) is 1.
// Tiny |x| (below 2^-1015) is scaled by 2^200 so that 2x/sqrt(pi) rounds
// once, also into the subnormal range.
#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "special/erf_lanes.h"

namespace {

using lux::row64;
using lux::Row64;

// The fast path: 2^-1015 <= |x| < Inf, on the high word.
constexpr uint32_t kTinyBelow = 0x00800000;
constexpr uint32_t kInfHigh = 0x7FF00000;
// Interval key: 8 rows a binade, row 0 below 0.125, row 45 from 6 on.
constexpr uint32_t kKeyMask = 0x7FFE0000, kKeyBase = 0x3FBE0000;
constexpr int kKeyShift = 17;
constexpr uint32_t kLastRow = 45;

struct alignas(16) ErfHaTable {
  Row64 dbAbsMask, dbSignMask, dbClear27, dbOne;
  Row64 dbK, dbKhi, dbKlo;        // 2/sqrt(pi) and its split
  Row64 dbUp, dbDown;             // 2^200, 2^-200
  Row64 dbNormalMin, dbSplitMin;  // 2^-1022, 2^-1034
  // {c0lo, c0hi, c1..c10, S = -centre, 0, 0, 0}
  alignas(16) uint64_t dErf_HA_Table[46][16];
};

constexpr ErfHaTable kT = {
    .dbAbsMask = row64(0x7FFFFFFFFFFFFFFF),
    .dbSignMask = row64(0x8000000000000000),
    .dbClear27 = row64(0xFFFFFFFFF8000000),
    .dbOne = row64(0x3FF0000000000000),
    .dbK = row64(0x3FF20DD750429B6D),     // 1.1283791670955126
    .dbKhi = row64(0x3FF20DD750000000),   // its leading 26 bits
    .dbKlo = row64(0x3E10A6DB446B8EA4),   // 2/sqrt(pi) - Khi
    .dbUp = row64(0x4C70000000000000),    // 2^200
    .dbDown = row64(0x3370000000000000),  // 2^-200
    .dbNormalMin = row64(0x0010000000000000),
    .dbSplitMin = row64(0x0000010000000000),  // 2^-1034
    .dErf_HA_Table =
        {
#include "special/erf_d53_table.inc"
        },
};

inline const double* row_of(uint32_t hi) {
  const uint32_t r = lux::erf::row_index(hi, kKeyMask, kKeyBase, kKeyShift, kLastRow, kLastRow);
  return reinterpret_cast<const double*>(kT.dErf_HA_Table[r]);
}

// The step list on a pair of lanes.
inline __m128d main_pair(__m128d x) {
  using lux::erf::gather;
  const __m128d ax = _mm_and_pd(x, kT.dbAbsMask.pd());
  const double* r0 = row_of(lux::erf::high_word(x, 0));
  const double* r1 = row_of(lux::erf::high_word(x, 1));
  const __m128d t = _mm_add_pd(ax, gather(r0, r1, 12));
  __m128d q = gather(r0, r1, 11);
  for (int k = 10; k >= 3; --k) q = _mm_add_pd(gather(r0, r1, k), _mm_mul_pd(t, q));
  q = _mm_mul_pd(t, q);
  __m128d s, e;
  lux::erf::two_sum(gather(r0, r1, 2), q, s, e);
  const __m128d clear = kT.dbClear27.pd();
  const __m128d sH = _mm_and_pd(s, clear);
  const __m128d L = _mm_add_pd(e, _mm_sub_pd(s, sH));
  const __m128d tH = _mm_and_pd(t, clear);
  const __m128d tL = _mm_sub_pd(t, tH);
  const __m128d P = _mm_mul_pd(sH, tH);
  const __m128d R = _mm_add_pd(_mm_add_pd(_mm_mul_pd(L, tL), _mm_mul_pd(tL, sH)), _mm_mul_pd(tH, L));
  __m128d w, f;
  lux::erf::two_sum(gather(r0, r1, 1), P, w, f);
  const __m128d m = _mm_add_pd(_mm_add_pd(_mm_add_pd(f, R), gather(r0, r1, 0)), w);
  return _mm_or_pd(m, _mm_and_pd(x, kT.dbSignMask.pd()));
}

// |x| below 2^-1015: 2x/sqrt(pi) with one rounding, scaled out of the
// subnormal range and back.
inline __m128d tiny_pair(__m128d x) {
  const __m128d ax = _mm_and_pd(x, kT.dbAbsMask.pd());
  const __m128d y = _mm_mul_pd(x, kT.dbUp.pd());
  const __m128d yH = _mm_and_pd(y, kT.dbClear27.pd());
  const __m128d yL = _mm_sub_pd(y, yH);
  const __m128d A = _mm_mul_pd(kT.dbKhi.pd(), yH);
  const __m128d B = _mm_add_pd(_mm_mul_pd(yH, kT.dbKlo.pd()), _mm_mul_pd(yL, kT.dbK.pd()));
  const __m128d scaled = _mm_mul_pd(_mm_add_pd(A, B), kT.dbDown.pd());
  const __m128d AH = _mm_and_pd(A, kT.dbClear27.pd());
  const __m128d split = _mm_add_pd(_mm_mul_pd(AH, kT.dbDown.pd()),
                                   _mm_mul_pd(_mm_add_pd(B, _mm_sub_pd(A, AH)), kT.dbDown.pd()));
  const __m128d plain = _mm_mul_pd(x, kT.dbK.pd());
  // Integer compares on the high words (also right under a caller's DAZ).
  const __m128i h = lux::erf::high_pair(ax);
  const __m128d normal = lux::erf::wide_mask(_mm_cmpgt_epi32(h, _mm_set1_epi32(0x000FFFFF)));
  const __m128d mid = lux::erf::wide_mask(_mm_cmpgt_epi32(h, _mm_set1_epi32(0x000000FF)));
  return lux::erf::select(normal, scaled, lux::erf::select(mid, split, plain));
}

// Every lane by its class.
inline __m128d select_pair(__m128d x) {
  const __m128d ax = _mm_and_pd(x, kT.dbAbsMask.pd());
  const __m128i h = lux::erf::high_pair(ax);
  const __m128d tiny = lux::erf::wide_mask(_mm_cmplt_epi32(h, _mm_set1_epi32(kTinyBelow)));
  const __m128d big = lux::erf::wide_mask(_mm_cmpgt_epi32(h, _mm_set1_epi32(kInfHigh - 1)));
  const __m128d nan = _mm_cmpunord_pd(x, x);
  const __m128d unit = _mm_or_pd(kT.dbOne.pd(), _mm_and_pd(x, kT.dbSignMask.pd()));
  __m128d y = lux::erf::select(tiny, tiny_pair(x), main_pair(x));
  y = lux::erf::select(big, unit, y);
  return lux::erf::select(nan, x, y);
}

inline bool all_fast(__m128d a, __m128d b) {
  const __m128i h = _mm_and_si128(lux::erf::high_pair(a), _mm_set1_epi32(0x7FFFFFFF));
  const __m128i g = _mm_and_si128(lux::erf::high_pair(b), _mm_set1_epi32(0x7FFFFFFF));
  const __m128i hg = _mm_unpacklo_epi64(h, g);
  const __m128i out = _mm_or_si128(_mm_cmplt_epi32(hg, _mm_set1_epi32(kTinyBelow)),
                                   _mm_cmpgt_epi32(hg, _mm_set1_epi32(kInfHigh - 1)));
  return _mm_movemask_epi8(out) == 0;
}

struct ErfKernel {
  const double* src;
  double* dst;
  void block(int i) {
    const __m128d a = lux::load2(src + i), b = lux::load2(src + i + 2);
    if (__builtin_expect(all_fast(a, b), 1)) {
      lux::store2(dst + i, main_pair(a));
      lux::store2(dst + i + 2, main_pair(b));
    } else {
      lux::store2(dst + i, select_pair(a));
      lux::store2(dst + i + 2, select_pair(b));
    }
  }
  void tail(int i) { lux::store1(dst + i, select_pair(lux::load1(src + i))); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsErf_64f_A53(const lux64f* src, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::RoundNearestGuard guard;
  ErfKernel k{src, dst};
  lux::run_closed<4>(len, k);
  return luxOk;
}
