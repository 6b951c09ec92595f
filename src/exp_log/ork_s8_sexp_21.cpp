// luxsExp_32f_A21: e^x on binary32, within 8 ulp.
// max error 1.97 ulp at x = -0x1.e81654p-6 (every float of [-104, 89]).
//
// x = N·ln2/128 + r with N = nearest integer to x·128/ln2, so
// e^x = 2^k · 2^(j/128) · e^r, k = N >> 7, j = N & 127, |r| <= ln2/256.
// W = 2^k·2^(j/128) is built as integers: the exponent field of k ORed with
// the fraction field of RN(2^(j/128)) from the table (0.5 ulp); e^r is
// 1 + r·(1 + r/2) (r³/6 < 3.4e-9); a few roundings more than A24.
// Blocks of 8 stay on the vector path when every |x| is below the main-path
// bound; a block with any other lane, and the tail, go lane by lane through
// the lane routine (lux::sexp::Kernel, exp_log/sexp_lanes.h).
#include <pmmintrin.h>
#include <stdint.h>

#include "exp_log/sexp_lanes.h"
#include "frame/frame.h"
#include "frame/lanes.h"

namespace {

using lux::row32;
using lux::Row32;
using lux::row64;
using lux::Row64;

struct alignas(16) ExpTable {
  Row32 flR;         // 128/ln2
  Row32 flL1;        // ln2/128 leading part, 9 significant bits: Nf·L1 exact for |N| < 2^15
  Row32 flL2;        // ln2/128 - L1, negative: L1 lies above ln2/128
  Row32 flShifter;   // 1.375·2^23: t = x·R + S holds N in its low bits
  Row32 flHalf;      // 0.5
  Row32 flOne;       // 1.0
  Row32 flBias;      // 127, the float exponent bias, integer
  Row32 flLowSeven;  // 0x7F, j = N & 127, integer
  Row32 flTwo127;    // 2^127: split product at k = 128, overflow product
  Row32 flTwoM126;   // 2^-126: underflow product
  Row64 dbLog2e;     // wide path for denormal results, in doubles
  Row64 dbShifter;   // 1.5·2^52
  Row64 dbBias;      // 1023
  Row64 dbP0, dbP1, dbP2, dbP3, dbP4, dbP5, dbP6;  // 2^f on |f| <= 0.5
  uint32_t sExp_LA_Table[128][2];                  // (Fj, 0), 8 bytes a row
};

constexpr ExpTable kExpTable = {
    .flR = row32(0x4338AA3B),                // 184.6649627685547
    .flL1 = row32(0x3BB18000),               // 0.0054168701171875
    .flL2 = row32(0xB5DE8083),               // -1.6577690757912933e-06
    .flShifter = row32(0x4B300000),          // 11534336.0
    .flHalf = row32(0x3F000000),             // 0.5
    .flOne = row32(0x3F800000),              // 1.0
    .flBias = row32(0x0000007F),             // 127
    .flLowSeven = row32(0x0000007F),         // 127
    .flTwo127 = row32(0x7F000000),           // 2^127
    .flTwoM126 = row32(0x00800000),          // 2^-126
    .dbLog2e = row64(0x3FF71547652B82FE),    // 1.4426950408889634
    .dbShifter = row64(0x4338000000000000),  // 6755399441055744.0
    .dbBias = row64(0x00000000000003FF),     // 1023
    .dbP0 = row64(0x3FF00000002614FF),       // 1.0000000005541663
    .dbP1 = row64(0x3FE62E430C7E922C),       // 0.6931472057372665
    .dbP2 = row64(0x3FCEBFBDADCB0CA8),       // 0.24022646890634758
    .dbP3 = row64(0x3FAC6AED4B951D00),       // 0.05550328776967639
    .dbP4 = row64(0x3F83B2DBBC0F45AE),       // 0.009618488957047724
    .dbP5 = row64(0x3F55F456A8A729EC),       // 0.0013399931218481776
    .dbP6 = row64(0x3F241D33371366F6),       // 0.00015345812020122585
    .sExp_LA_Table =
        {
#include "exp_log/sexp_la_table.inc"
        },
};

using lux::as_ps;

// The main formula on four lanes: p = e^r, then p·W with W = 2^k·2^(j/128)
// the exponent field ORed with the row's fraction field Fj.
struct Tier {
  using Table = ExpTable;

  static __m128 quad(__m128 x, const ExpTable& T) {
    const lux::sexp::Reduced4 s = lux::sexp::reduce4(x, T);
    const __m128 r = s.r;
    const auto* rows = T.sExp_LA_Table;
    const __m128i f = _mm_setr_epi32(
        int32_t(rows[_mm_cvtsi128_si32(s.j)][0]), int32_t(rows[_mm_extract_epi16(s.j, 2)][0]),
        int32_t(rows[_mm_extract_epi16(s.j, 4)][0]), int32_t(rows[_mm_extract_epi16(s.j, 6)][0]));
    const __m128 p =
        _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(T.flHalf.ps(), r), T.flOne.ps()), r), T.flOne.ps());
    return _mm_mul_ps(p, as_ps(_mm_or_si128(s.e, f)));
  }

  // The same formula on lane 0 in scalar operations, with the product split
  // when k = 128 (x in [88.7201, 88.7228)): 2^128 has no exponent field, so
  // p·2^127 first, then ·2·2^(j/128), whose exponent field is that of 2.
  static __m128 single(__m128 x, const ExpTable& T) {
    const lux::sexp::Reduced1 s = lux::sexp::reduce1(x, T);
    const __m128 r = s.r;
    const uint32_t f = T.sExp_LA_Table[s.j][0];
    const __m128 p =
        _mm_add_ss(_mm_mul_ss(_mm_add_ss(_mm_mul_ss(T.flHalf.ps(), r), T.flOne.ps()), r), T.flOne.ps());
    if ((s.e & 0x7F800000) == 0x7F800000) {
      const __m128 two_j = as_ps(_mm_cvtsi32_si128(int32_t(0x40000000 | f)));
      return _mm_mul_ss(_mm_mul_ss(p, T.flTwo127.ps()), two_j);
    }
    return _mm_mul_ss(p, as_ps(_mm_cvtsi32_si128(int32_t(s.e | f))));
  }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsExp_32f_A21(const lux32f* src, lux32f* dst, int len) {
  return lux::sexp::Kernel<Tier>::run(kExpTable, src, dst, len);
}
