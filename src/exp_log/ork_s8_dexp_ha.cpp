// luxsExp_64f_A53: e^x on binary64 arrays, within 1 ulp; max error 0.755 ulp at
// x = -0x1.625181d5d34dep+9, a denormal result (luxvm accuracy Exp --points=1000000).
//
// x = (N/64)*ln 2 + r with N = RN(x*64/ln 2), so e^x = 2^k * 2^(j/64) * e^r,
// k = N >> 6, j = N & 63.  2^(j/64) is a head H (44 fraction bits) and a tail
// L; e^r - 1 is a degree-5 polynomial on |r| <= ln 2/128; k goes straight
// into an exponent field built from the shifter sum.  Blocks of 4 lanes are
// two vector pairs; the first pair's result is stored before the block's
// range test has finished (the frame puts back in-place inputs if the block
// is then redone lane by lane).
#include <emmintrin.h>
#include <stdint.h>

#include "exp_log/dexp_lanes.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

using lux::row64;
using lux::Row64;

// |x| < 708.39599609375 on the high word alone: every result of the main path
// is a normal double and no exponent field over- or underflows.  The strip
// out to ln 2^-1022 and to ln DBL_MAX goes through the call-out.
constexpr uint32_t kMainPathBound = 0x4086232B;
// Call-out thresholds, on the whole encoding.
constexpr uint32_t kInfHigh = 0x7FF00000;
constexpr uint64_t kZeroBound = 0xC0874910D52D3052;      // x <= -745.1332191019412 = ln 2^-1075: +0
constexpr uint64_t kDenormalBound = 0xC086232BDD7ABCD3;  // x <= -708.3964185322642 < ln 2^-1022: denormal
constexpr int64_t kOverflowBound = 0x40862E42FEFA39F0;   // x >= 709.7827128933841 > ln DBL_MAX: +Inf
// x >= 709.7772976810359 = 1024 ln 2 - ln 2/128: N reaches 1024*64, k = 1024
// has no exponent field, so the scale is split into 2^1023 * 2.
constexpr int64_t kTopBinadeBound = 0x40862E37E7D8BA72;

constexpr uint64_t kAllOnesNaN = 0xFFFFFFFFFFFFFFFF;
constexpr uint64_t kPlusInf = 0x7FF0000000000000;
constexpr uint64_t kPlusZero = 0;

struct alignas(16) ExpHaConstants {
  Row64 dbR;        // 64/ln 2
  Row64 dbShifter;  // 1.5*2^52: x*R + S rounds to an integer, read from the low word
  Row64 dbL1;       // ln 2/64 to 33 bits (low 20 zero): Nf*L1 is exact for |N| < 2^20
  Row64 dbL2;       // ln 2/64 - L1
  Row64 dbC5;       // e^r - 1 = r + r^2*(c2 + c3 r + c4 r^2 + c5 r^3) on |r| <= ln 2/128
  Row64 dbC4;
  Row64 dbC3;
  Row64 dbC2;
  Row64 dbBias;      // 1023*64, added to N in the low word
  Row64 dbExpMask;   // exponent field
  Row64 dbExpOne;    // one unit of the exponent field; as a double, 2^-1022
  Row64 dbTwoP1023;  // 2^1023
  Row64 dbTwo;       // 2.0
  // (H[j], L[j]): H[j] = 2^(j/64) truncated to 44 fraction bits, L[j] = RN(2^(j/64) - H[j]).
  uint64_t dExp_HA_Table[64][2];
};

constexpr ExpHaConstants kC = {
    .dbR = row64(0x40571547652B82FE),        // 92.33248261689366
    .dbShifter = row64(0x4338000000000000),  // 6755399441055744.0
    .dbL1 = row64(0x3F862E42FEF00000),       // 0.010830424695086549
    .dbL2 = row64(0x3D7473DE6AF278ED),       // 1.162596423439437e-12
    .dbC5 = row64(0x3F81111276409C2C),       // 0.008333343728805863
    .dbC4 = row64(0x3FA555574BC3A1BE),       // 0.04166672515731616
    .dbC3 = row64(0x3FC55555555542A1),       // 0.16666666666653376
    .dbC2 = row64(0x3FDFFFFFFFFFD97C),       // 0.49999999999945266
    .dbBias = row64(0x000000000000FFC0),     // 65472
    .dbExpMask = row64(0x7FF0000000000000),
    .dbExpOne = row64(0x0010000000000000),    // 2.2250738585072014e-308
    .dbTwoP1023 = row64(0x7FE0000000000000),  // 8.98846567431158e+307
    .dbTwo = row64(0x4000000000000000),       // 2.0
    .dExp_HA_Table =
        {
#include "exp_log/dexp_ha_table.inc"
        },
};

// The main path of one vector pair, up to the last product: t (the shifter
// sum, which carries N), V = 2^(j/64) * e^r and E = 2^k.
struct PairState {
  __m128d t, v, e;
};

inline PairState main_path(__m128d x) {
  const __m128d t = _mm_add_pd(_mm_mul_pd(x, kC.dbR.pd()), kC.dbShifter.pd());
  const __m128d nf = _mm_sub_pd(t, kC.dbShifter.pd());
  const __m128d r = _mm_sub_pd(_mm_sub_pd(x, _mm_mul_pd(nf, kC.dbL1.pd())), _mm_mul_pd(nf, kC.dbL2.pd()));
  const int j0 = lux::dexp::shifter_low_word(t, 0) & 63;
  const int j1 = lux::dexp::shifter_low_word(t, 1) & 63;
  const __m128d row0 = _mm_load_pd(reinterpret_cast<const double*>(kC.dExp_HA_Table[j0]));
  const __m128d row1 = _mm_load_pd(reinterpret_cast<const double*>(kC.dExp_HA_Table[j1]));
  const __m128d h = _mm_unpacklo_pd(row0, row1);
  const __m128d l = _mm_unpackhi_pd(row0, row1);
  const __m128i e =
      lux::dexp::exponent_field<46>(_mm_add_epi32(lux::as_int(t), kC.dbBias.pi()), kC.dbExpMask.pi());
  __m128d p = _mm_add_pd(_mm_mul_pd(kC.dbC5.pd(), r), kC.dbC4.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), kC.dbC3.pd());
  p = _mm_add_pd(_mm_mul_pd(p, r), kC.dbC2.pd());
  const __m128d u = _mm_add_pd(r, _mm_mul_pd(p, _mm_mul_pd(r, r)));
  const __m128d v = _mm_add_pd(_mm_add_pd(_mm_mul_pd(u, _mm_add_pd(h, l)), l), h);
  return {t, v, lux::as_pd(e)};
}

// The tier as lux::dexp::Kernel (exp_log/dexp_lanes.h) runs it: both pairs
// of a block run to V, and the first pair's results go out before the test.
struct Tier {
  static constexpr const ExpHaConstants& kC = ::kC;
  static constexpr int kFieldShift = 46;
  static constexpr bool kEarlyFirstPair = true;
  static constexpr uint32_t kMainPathBound = ::kMainPathBound, kInfHigh = ::kInfHigh;
  static constexpr uint64_t kZeroBound = ::kZeroBound, kDenormalBound = ::kDenormalBound;
  static constexpr int64_t kOverflowBound = ::kOverflowBound, kTopBinadeBound = ::kTopBinadeBound;
  static constexpr uint64_t kPlusInf = ::kPlusInf, kPlusZero = ::kPlusZero;

  static PairState main_path(__m128d x) { return ::main_path(x); }
  static __m128d result(const PairState& s) { return _mm_mul_pd(s.v, s.e); }
  static __m128d scale_free(const PairState& s) { return s.v; }

  // A NaN: the default all-ones NaN.
  static void nan(double* out, __m128d) { lux::dexp::store_bits(out, kAllOnesNaN); }
  // N = 1024*64: k = 1024 has no exponent field, so the scale is 2^1023 * 2.
  static void top_binade(double* out, __m128d v) {
    lux::store1(out, _mm_mul_sd(_mm_mul_sd(v, kC.dbTwoP1023.pd()), kC.dbTwo.pd()));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsExp_64f_A53(const lux64f* src, lux64f* dst, int len) {
  return lux::dexp::Kernel<Tier>::run(src, dst, len);
}
