// The scalar double-precision trigonometric routines behind the real
// trigonometric kernels: four cores on the SSE unit for every finite
// argument (exact reduction from 2^17, tangent from 12800), and the lane
// wrappers that the kernels call out to, with the call-out convention of the
// frame (lane index, arrays, status latch).
//
// On i386 a double returned by a function travels through the x87 stack and
// a signalling NaN would be quieted there, so the cores take and give their
// lane in the low half of an SSE register.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "luxvm.h"

extern "C" {

// Cores: the lane in the low half; the high half is ignored and comes back 0.
__m128d _dSin(__m128d x);
__m128d _dCos(__m128d x);
__m128d _dTan(__m128d x);
void _dSinCos(__m128d x, lux64f* sinOut, lux64f* cosOut);

// Lane wrappers.  Each reads src[i] and writes dst[i] only; an infinity
// stores the NaN of the family, writes 19 through status and reports it
// with the wrapper's name; a NaN gives a quiet NaN with no status.
void orkdSin_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name);
void orkdCos_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name);
void orkdTan_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name);
void orkdSinCos_SC(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status, const char* name);

// Per tier: the same code, with the tier's name for the reporter.
#define LUX_TRIG_SC_TIERS(decl) decl(A11) decl(LA) decl(HA)
#define LUX_DECLARE_TRIG_SC(tier)                                                                     \
  void orkdSin_SC_##tier(int i, const lux64f* src, lux64f* dst, luxStatus* status);                   \
  void orkdCos_SC_##tier(int i, const lux64f* src, lux64f* dst, luxStatus* status);                   \
  void orkdTan_SC_##tier(int i, const lux64f* src, lux64f* dst, luxStatus* status);                   \
  void orkdSinCos_SC_##tier(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status); \
  void orksSin_SC_##tier(int i, const lux32f* src, lux32f* dst, luxStatus* status);                   \
  void orksCos_SC_##tier(int i, const lux32f* src, lux32f* dst, luxStatus* status);                   \
  void orksTan_SC_##tier(int i, const lux32f* src, lux32f* dst, luxStatus* status);                   \
  void orksSinCos_SC_##tier(int i, const lux32f* src, lux32f* dst1, lux32f* dst2, luxStatus* status); \
  void orkzCIS_SC_##tier(int i, const lux64f* src, lux64fc* dst);                                     \
  void orkcCIS_SC_##tier(int i, const lux32f* src, lux32fc* dst);
LUX_TRIG_SC_TIERS(LUX_DECLARE_TRIG_SC)
#undef LUX_DECLARE_TRIG_SC

// CIS: cos in the real half, sin in the imaginary half; NaN and infinity give
// NaN in both halves with no status and no report.
void orkzCIS_SC(int i, const lux64f* src, lux64fc* dst);

// ---------------------------------------------------------------------------
// Tables, as bit patterns of doubles.

// One entry of the sine/cosine tables, angle a:
//   CosTail = RN(cos a - CosHead), SinHead = RN(sin a),
//   SinTail = RN24(sin a - SinHead), CosHead = the signed power of two
//   nearest to cos a (1.5 2^m the midpoint), 0 where cos a = 0.
// CosHead r is exact for any double r.
struct OrkSinCosEntry {
  uint64_t cos_tail, sin_head, sin_tail, cos_head;
};

// The constants the three sine/cosine cores share, in table order.
struct OrkSinCosConsts {
  uint64_t inv_step;  // 32/pi
  uint64_t shifter;   // 1.5 2^52
  uint64_t step[3];   // pi/32 in three parts, n step[0] and n step[1] exact
  uint64_t sin_c[4];  // -1/6, 1/120, -1/5040, 1/362880
  uint64_t cos_c[4];  // -1/2, 1/24, -1/720, 1/40320
};

struct OrkDSinTab {
  OrkSinCosEntry entry[64];  // a = k pi/32
  OrkSinCosConsts k;
  uint64_t two55, two_m55, zero;
};
struct OrkDCosTab {
  OrkSinCosEntry entry[64];  // a = k pi/32: the cosine takes entry k + 16
  OrkSinCosConsts k;
  uint64_t one, zero;
};
struct OrkDSinCosTab {
  OrkSinCosEntry entry[64];
  OrkSinCosConsts k;
  uint64_t two55, two_m55, one, zero;
};
extern const OrkDSinTab _dSinTab;
extern const OrkDCosTab _dCosTab;
extern const OrkDSinCosTab _dSinCosTab;

// One row of the tangent table: twenty doubles, in this order.
enum OrkTanField {
  kTanC8,
  kTanC9,
  kTanC10,
  kTanC2,
  kTanC11,
  kTanC3,
  kTanC12,
  kTanC4,
  kTanC13,
  kTanC5,
  kTanC14,
  kTanC6,
  kTanC15,
  kTanC7,
  kTanHead,
  kTanTail,
  kTanSlopeHead,
  kTanSlopeTail,
  kTanPoleFactor,
  kTanPoleMask,
  kTanFields
};
struct OrkTanEntry {
  uint64_t f[kTanFields];
};
struct OrkDTanTab {
  uint64_t inv_step;      // 32/pi
  uint64_t grid_shifter;  // 1.5 2^52
  uint64_t pole_shifter;  // 1.5 2^56: rounds to a multiple of 16 steps
  uint64_t B[3];          // pi/32 in three parts, for the distance from the pole
  uint64_t A[3];          // pi/32 in three parts, for the distance from the grid point
  uint64_t B2p;           // -(B2 + B3)
  uint64_t one, zero;
  uint64_t two55, two_m55;
  OrkTanEntry entry[32];  // a = k pi/32
};
extern const OrkDTanTab _dTanTab;

}  // extern "C"
