// luxsExp_64f_A50: e^x on binary64 arrays, within 8 ulp; max error 3.64 ulp at
// x = 0x1.62e1c2eba9f79p+9 (luxvm accuracy Exp --points=1000000).
//
// x = (N/128)*ln 2 + r with N = RN(x*128/ln 2), so e^x = 2^k * 2^(j/128) * e^r,
// k = N >> 7, j = N & 127.  One rounded table word per j, ORed under the
// exponent field of 2^k, gives W = 2^k * 2^(j/128); e^r - 1 is a degree-4
// polynomial on |r| <= ln 2/256.  A block of 4 lanes is tested before anything
// is stored; a failing block is redone lane by lane with its V and t.
#include <emmintrin.h>
#include <stdint.h>

#include "exp_log/dexp_lanes.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

using lux::row64;
using lux::Row64;

// |x| < 708.39599609375 on the high word alone: every result of the main path
// is a normal double and no exponent field over- or underflows.
constexpr uint32_t kMainPathBound = 0x4086232B;
// Call-out thresholds, on the whole encoding.
constexpr uint32_t kInfHigh = 0x7FF00000;
constexpr uint64_t kZeroBound = 0xC0874910D52D3052;      // x <= -745.1332191019412 = ln 2^-1075: +0
constexpr uint64_t kDenormalBound = 0xC086232BDD7ABCD3;  // x <= -708.3964185322642 < ln 2^-1022: denormal
constexpr int64_t kOverflowBound = 0x40862E42FEFA39F0;   // x >= 709.7827128933841 > ln DBL_MAX: +Inf
// x >= 709.78000528721 = 1024 ln 2 - ln 2/256: N reaches 1024*128, k = 1024
// has no exponent field, so the scale is split into 2^1023 * 2.
constexpr int64_t kTopBinadeBound = 0x40862E3D73697A31;

constexpr uint64_t kPlusInf = 0x7FF0000000000000;
constexpr uint64_t kPlusZero = 0;

struct alignas(16) ExpLaConstants {
  Row64 dbR;        // 128/ln 2
  Row64 dbShifter;  // 1.5*2^52: x*R + S rounds to an integer, read from the low word
  Row64 dbL1;       // ln 2/128 to 32 bits (low 21 zero): Nf*L1 is exact for |N| < 2^21
  Row64 dbL2;       // ln 2/128 - L1
  Row64 dbC4;       // e^r - 1 = r + r^2*(c2 + c3 r + c4 r^2) on |r| <= ln 2/256
  Row64 dbC3;
  Row64 dbC2;
  Row64 dbBias;      // 1023*128, added to N in the low word
  Row64 dbExpMask;   // exponent field
  Row64 dbOne;       // 1.0: its exponent field over a table word gives 2^(j/128)
  Row64 dbExpOne;    // one unit of the exponent field; as a double, 2^-1022
  Row64 dbTwoP1023;  // 2^1023
  Row64 dbTwo;       // 2.0
  // Fraction field (low 52 bits) of RN(2^(j/128)).
  alignas(16) uint64_t dExp_LA_Table[128];
};

constexpr ExpLaConstants kC = {
    .dbR = row64(0x40671547652B82FE),        // 184.6649652337873
    .dbShifter = row64(0x4338000000000000),  // 6755399441055744.0
    .dbL1 = row64(0x3F762E42FEE00000),       // 0.00541521234663378
    .dbL2 = row64(0x3D7A39EF35793C76),       // 1.4907929134926466e-12
    .dbC4 = row64(0x3FA55555C2A9C0FA),       // 0.041666679394326736
    .dbC3 = row64(0x3FC55555B7BAE976),       // 0.16666671248624326
    .dbC2 = row64(0x3FDFFFFFFFFFFEB0),       // 0.49999999999998135
    .dbBias = row64(0x000000000001FF80),     // 130944
    .dbExpMask = row64(0x7FF0000000000000),
    .dbOne = row64(0x3FF0000000000000),       // 1.0
    .dbExpOne = row64(0x0010000000000000),    // 2.2250738585072014e-308
    .dbTwoP1023 = row64(0x7FE0000000000000),  // 8.98846567431158e+307
    .dbTwo = row64(0x4000000000000000),       // 2.0
    .dExp_LA_Table =
        {
#include "exp_log/dexp_la_table.inc"
        },
};

// One vector pair up to the last two operations: t (the shifter sum, which
// carries N), u = e^r - 1, the table words and W = 2^k * 2^(j/128).
struct PairState {
  __m128d t, u, w;
  __m128i row;
};

inline PairState main_path(__m128d x) {
  const __m128d t = _mm_add_pd(_mm_mul_pd(x, kC.dbR.pd()), kC.dbShifter.pd());
  const __m128d nf = _mm_sub_pd(t, kC.dbShifter.pd());
  const int j0 = lux::dexp::shifter_low_word(t, 0) & 127;
  const int j1 = lux::dexp::shifter_low_word(t, 1) & 127;
  const __m128d r = _mm_sub_pd(_mm_sub_pd(x, _mm_mul_pd(nf, kC.dbL1.pd())), _mm_mul_pd(nf, kC.dbL2.pd()));
  const __m128i row =
      _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&kC.dExp_LA_Table[j0])),
                         _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&kC.dExp_LA_Table[j1])));
  const __m128i e =
      lux::dexp::exponent_field<45>(_mm_add_epi32(lux::as_int(t), kC.dbBias.pi()), kC.dbExpMask.pi());
  const __m128d w = lux::as_pd(_mm_or_si128(e, row));
  __m128d p = _mm_add_pd(_mm_mul_pd(kC.dbC4.pd(), r), kC.dbC3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), kC.dbC2.pd());
  const __m128d u = _mm_add_pd(_mm_mul_pd(_mm_mul_pd(p, r), r), r);
  return {t, u, w, row};
}

// V = 2^(j/128) * e^r without the 2^k, for the call-out.
inline __m128d scale_free(const PairState& s) {
  const __m128d t = lux::as_pd(_mm_or_si128(kC.dbOne.pi(), s.row));
  return _mm_add_pd(_mm_mul_pd(s.u, t), t);
}

// The tier as lux::dexp::Kernel (exp_log/dexp_lanes.h) runs it: a block of 4
// lanes is tested before anything is stored, a failing block is redone lane
// by lane with its V and t.
struct Tier {
  static constexpr const ExpLaConstants& kC = ::kC;
  static constexpr int kFieldShift = 45;
  static constexpr bool kEarlyFirstPair = false;
  static constexpr uint32_t kMainPathBound = ::kMainPathBound, kInfHigh = ::kInfHigh;
  static constexpr uint64_t kZeroBound = ::kZeroBound, kDenormalBound = ::kDenormalBound;
  static constexpr int64_t kOverflowBound = ::kOverflowBound, kTopBinadeBound = ::kTopBinadeBound;
  static constexpr uint64_t kPlusInf = ::kPlusInf, kPlusZero = ::kPlusZero;

  static PairState main_path(__m128d x) { return ::main_path(x); }
  static __m128d result(const PairState& s) { return _mm_add_pd(_mm_mul_pd(s.u, s.w), s.w); }
  static __m128d scale_free(const PairState& s) { return ::scale_free(s); }

  // A NaN: the input quieted, sign and payload kept.
  static void nan(double* out, __m128d x) {
    const __m128d xo = lux::opaque(x);
    lux::store1(out, _mm_add_sd(xo, xo));
  }

  // N = 1024*128: k = 1024 has no exponent field, so the scale is 2^1023 * 2.
  static void top_binade(double* out, __m128d v) {
    lux::store1(out, _mm_mul_sd(_mm_mul_sd(v, kC.dbTwoP1023.pd()), kC.dbTwo.pd()));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsExp_64f_A50(const lux64f* src, lux64f* dst, int len) {
  return lux::dexp::Kernel<Tier>::run(src, dst, len);
}
