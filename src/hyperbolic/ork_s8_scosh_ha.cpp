// luxsCosh_32f_A24: cosh x on binary32 arrays, within 1 ulp; max error 0.75 ulp at x = 0x1.bb4e4p-12 (luxvm
// accuracy Cosh --points=200000).
//
// a = |x| = N ln 2/64 + r, k = N >> 6, j = N & 63; e^a/2 = 2^(k-1) 2^(j/64) e^r
// and e^-a/2 = 2^(-k-1) 2^(-j/64) e^-r, with 2^(+-j/64) as float heads and
// tails from one row and e^+-r = 1 + Cr +- Sr, Sr = r + c3 r^3, Cr = c2 r^2.
// M = 2^(-k-1) 2^(-j/64) is cut to zero from a = 16.  Above 88.0242691040039
// the exponent of 2^(k-1) nears its end: the lane routine forms e^a/2 alone
// under 2^(k-5) and scales by 16; overflow from 89.4159927368164.
#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "hyperbolic/hyp_frame.h"

namespace {

using lux::as_int;
using lux::as_ps;
using lux::row32;
using lux::Row32;

constexpr uint32_t kTopZoneBits = 0x42B00C6D;     // a above 88.0242691040039
constexpr uint32_t kLastFiniteBits = 0x42B2D4FC;  // 89.41598510742188, cosh < FLT_MAX
constexpr uint32_t kInfBits = 0x7F800000;

struct alignas(16) Table {
  Row32 flR;         // 64/ln 2
  Row32 flShifter;   // 1.5*2^23
  Row32 flL1;        // ln 2/64 to 16 bits: Nf*L1 exact
  Row32 flL2;        // ln 2/64 - L1
  Row32 flC2, flC3;  // e^r ~ 1 + r + c2 r^2 + c3 r^3 on |r| <= ln 2/128
  Row32 flBias;      // 126*64: the exponent field of 2^(k-1) from bits(t)
  Row32 flTopBias;   // 122*64: that of 2^(k-5)
  Row32 flMExp;      // 0x7E000000 - EP's bits is the exponent of 2^(-k-1)
  Row32 flMCut;      // bits(16.0)
  Row32 flExpMask;   // exponent field
  Row32 flSixteen;   // 16.0
  Row32 flAbsMask;   // all but the sign
  // (Mlo, Plo, Mhi, Phi): Phi = 2^(j/64) to a multiple of 2^-17, Plo the
  // rest; Mhi = Phi[64 - j]/2 ~ 2^(-j/64), Mlo the rest.
  alignas(16) uint32_t sCosh_HA_Table[64][4];
};

constexpr Table kC = {
    .flR = row32(0x42B8AA3B),        // 92.33248138427734
    .flShifter = row32(0x4B400000),  // 12582912.0
    .flL1 = row32(0x3C316000),       // 0.01082611083984375
    .flL2 = row32(0x3690BFBF),       // 4.313856607041089e-06
    .flC2 = row32(0x3F00000A),       // 0.5000005960464478
    .flC3 = row32(0x3E2AAABB),       // 0.1666669100522995
    .flBias = row32(0x00001F80),     // 126*64
    .flTopBias = row32(0x00001E80),  // 122*64
    .flMExp = row32(0x7E000000),     //
    .flMCut = row32(0x41800000),     // 16.0
    .flExpMask = row32(0x7F800000),  //
    .flSixteen = row32(0x41800000),  // 16.0
    .flAbsMask = row32(0x7FFFFFFF),  //
    .sCosh_HA_Table =
        {
#include "hyperbolic/scosh_ha_table.inc"
        },
};

struct Reduced {
  __m128 r;
  __m128i tb;
  __m128 mlo, plo, mhi, phi;  // the rows' four columns
};

inline Reduced reduce(__m128 a) {
  const __m128 t = _mm_add_ps(_mm_mul_ps(a, kC.flR.ps()), kC.flShifter.ps());
  const __m128 nn = _mm_sub_ps(kC.flShifter.ps(), t);  // -N
  const __m128 r = _mm_add_ps(_mm_add_ps(a, _mm_mul_ps(nn, kC.flL1.ps())), _mm_mul_ps(nn, kC.flL2.ps()));
  const __m128i tb = as_int(t);
  const auto row = [&](int j) {
    return _mm_load_ps(reinterpret_cast<const float*>(kC.sCosh_HA_Table[j & 63]));
  };
  __m128 c0 = row(_mm_cvtsi128_si32(tb)), c1 = row(_mm_extract_epi16(tb, 2));
  __m128 c2 = row(_mm_extract_epi16(tb, 4)), c3 = row(_mm_extract_epi16(tb, 6));
  _MM_TRANSPOSE4_PS(c0, c1, c2, c3);
  return {r, tb, c0, c1, c2, c3};
}

inline __m128i exponent(__m128i tb, __m128i bias) {
  return _mm_and_si128(_mm_slli_epi32(_mm_add_epi32(tb, bias), 17), kC.flExpMask.pi());
}

inline __m128 main_quad(__m128 a) {
  const Reduced d = reduce(a);
  const __m128i ep = exponent(d.tb, kC.flBias.pi());
  const __m128i em =
      _mm_and_si128(_mm_sub_epi32(kC.flMExp.pi(), ep), _mm_cmplt_epi32(as_int(a), kC.flMCut.pi()));
  const __m128 s = _mm_mul_ps(d.r, d.r);
  const __m128 sr = _mm_add_ps(_mm_mul_ps(_mm_mul_ps(kC.flC3.ps(), d.r), s), d.r);
  const __m128 cr = _mm_mul_ps(kC.flC2.ps(), s);
  const __m128 q1 = _mm_mul_ps(d.phi, as_ps(ep)), q2 = _mm_mul_ps(d.plo, as_ps(ep));
  const __m128 q3 = _mm_mul_ps(d.mlo, as_ps(em)), q4 = _mm_mul_ps(d.mhi, as_ps(em));
  __m128 v = _mm_sub_ps(_mm_add_ps(q3, q2), _mm_mul_ps(_mm_sub_ps(sr, cr), _mm_add_ps(q4, q3)));
  v = _mm_add_ps(v, _mm_mul_ps(_mm_add_ps(sr, cr), _mm_add_ps(q1, q2)));
  return _mm_add_ps(_mm_add_ps(v, q4), q1);
}

// e^a/2 for the top zone: 2^(j/64) e^r under 2^(k-5), then 16.
inline __m128 top_zone(__m128 a) {
  const Reduced d = reduce(a);
  const __m128 r = d.r;
  const __m128 v =
      _mm_add_ps(_mm_mul_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(kC.flC3.ps(), r), kC.flC2.ps()), r), r), r);
  const __m128 w = _mm_add_ps(_mm_add_ps(_mm_mul_ps(v, _mm_add_ps(d.phi, d.plo)), d.plo), d.phi);
  const __m128 scale = as_ps(exponent(d.tb, kC.flTopBias.pi()));
  return _mm_mul_ps(_mm_mul_ps(w, scale), kC.flSixteen.ps());
}

struct Tier {
  using Elem = lux32f;
  static constexpr int kBlock = 4;

  // Lanes above the top-zone bound are set to 0 here (no flag is raised by
  // them) and settled by the lane routine.
  static unsigned block(const float* x, float* y, float* keep) {
    const __m128 xv = lux::load4(x);
    const __m128 a = _mm_and_ps(xv, kC.flAbsMask.ps());
    const __m128i high = _mm_cmpgt_epi32(as_int(a), _mm_set1_epi32(int32_t(kTopZoneBits)));
    lux::store4(y, main_quad(_mm_andnot_ps(as_ps(high), a)));
    return lux::hyp::keep_if_any(high, xv, keep);
  }

  static void lane(const float* x, float* y, lux::CallState<lux32f>& call, int i) {
    const uint32_t abs = lux::hyp::word(x) & 0x7FFFFFFF;
    const __m128 a = _mm_and_ps(_mm_load1_ps(x), kC.flAbsMask.ps());
    if (abs >= kInfBits) {
      lux::store1(y, _mm_add_ss(a, a));  // +Inf, or the NaN quieted with its sign cleared
    } else if (abs > kLastFiniteBits) {
      lux::hyp::store_bits(y, kInfBits);
      call.warn(luxWarnOverflow, i);
    } else {
      lux::store1(y, top_zone(a));
    }
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsCosh_32f_A24(const lux32f* src, lux32f* dst, int len) {
  return lux::hyp::run<Tier>(src, dst, len);
}
