// The lane wrappers around the scalar trigonometric cores: the call-outs of
// the real sine, cosine, tangent, sine-cosine and CIS kernels.  They sort out
// infinities and NaN on the lane's bits, run the core under x87 guard 53,
// narrow to single precision where the element type asks, and report an
// infinite argument as a domain error (19) with the wrapper's name.
// Accuracy is the cores', whatever the tier.
#include "frame/frame.h"
#include "frame/lanes.h"
#include "scalar/trig_scalar.h"

namespace {

using Core = __m128d (*)(__m128d);

constexpr uint64_t kExp64 = 0x7FF0000000000000ull;
constexpr uint64_t kAbs64 = 0x7FFFFFFFFFFFFFFFull;
constexpr uint32_t kInf32 = 0x7F800000u;
constexpr uint32_t kAbs32 = 0x7FFFFFFFu;
constexpr uint32_t kDefaultNaN32 = 0xFFC00000u;  // the NaN the single wrappers store for an infinity

inline uint64_t lane_bits(const lux64f* p) { return *reinterpret_cast<const uint64_t*>(p); }
inline uint32_t lane_bits(const lux32f* p) { return *reinterpret_cast<const uint32_t*>(p); }

// x - x on the lane as it is in memory: NaN for an infinity (invalid
// raised), the quiet form of a NaN.
inline __m128d minus_itself(const lux64f* p) {
  const __m128d v = lux::opaque(_mm_load_sd(p));
  return _mm_sub_sd(v, lux::opaque(v));
}

inline void store_nan32(lux32f* p) { *reinterpret_cast<uint32_t*>(p) = kDefaultNaN32; }

// Single lane through a double core: widen, compute, narrow (round to nearest).
inline __m128 through_double(const lux32f* p, Core core) {
  const __m128d x = _mm_cvtss_sd(_mm_setzero_pd(), _mm_load_ss(p));
  return _mm_cvtsd_ss(_mm_setzero_ps(), core(x));
}

void d_unary(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name, Core core) {
  const uint64_t b = lane_bits(src + i);
  if (__builtin_expect((b & kExp64) == kExp64, 0)) {
    _mm_store_sd(dst + i, minus_itself(src + i));
    if ((b & kAbs64) == kExp64) {
      orkdError(luxWarnDomain, i, src, src, dst, dst, name);
      *status = luxWarnDomain;
    }
    return;
  }
  lux::X87Guard53 guard;
  _mm_store_sd(dst + i, core(_mm_load_sd(src + i)));
}

void s_unary(int i, const lux32f* src, lux32f* dst, luxStatus* status, const char* name, Core core) {
  if (__builtin_expect((lane_bits(src + i) & kAbs32) == kInf32, 0)) {
    store_nan32(dst + i);
    orksError(luxWarnDomain, i, src, src, dst, dst, name);
    *status = luxWarnDomain;
    return;
  }
  lux::X87Guard53 guard;
  _mm_store_ss(dst + i, through_double(src + i, core));
}

void s_sincos(int i, const lux32f* src, lux32f* dst1, lux32f* dst2, luxStatus* status, const char* name) {
  if (__builtin_expect((lane_bits(src + i) & kAbs32) == kInf32, 0)) {
    store_nan32(dst1 + i);
    store_nan32(dst2 + i);
    orksError(luxWarnDomain, i, src, src, dst1, dst2, name);
    *status = luxWarnDomain;
    return;
  }
  lux::X87Guard53 guard;
  alignas(16) lux64f sc[2];
  _dSinCos(_mm_cvtss_sd(_mm_setzero_pd(), _mm_load_ss(src + i)), &sc[0], &sc[1]);
  _mm_store_ss(dst1 + i, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_load_sd(&sc[0])));
  _mm_store_ss(dst2 + i, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_load_sd(&sc[1])));
}

void c_cis(int i, const lux32f* src, lux32fc* dst) {
  if (__builtin_expect((lane_bits(src + i) & kAbs32) == kInf32, 0)) {
    store_nan32(&dst[i].re);
    store_nan32(&dst[i].im);
    return;
  }
  lux::X87Guard53 guard;
  alignas(16) lux64f sc[2];
  _dSinCos(_mm_cvtss_sd(_mm_setzero_pd(), _mm_load_ss(src + i)), &sc[0], &sc[1]);
  _mm_store_ss(&dst[i].re, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_load_sd(&sc[1])));
  _mm_store_ss(&dst[i].im, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_load_sd(&sc[0])));
}

}  // namespace

extern "C" {

void orkdSin_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name) {
  d_unary(i, src, dst, status, name, _dSin);
}
void orkdCos_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name) {
  d_unary(i, src, dst, status, name, _dCos);
}
void orkdTan_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name) {
  // tan(±0) is the zero itself, stored as it came.
  if ((lane_bits(src + i) & kAbs64) == 0) {
    *reinterpret_cast<uint64_t*>(dst + i) = lane_bits(src + i);
    return;
  }
  d_unary(i, src, dst, status, name, _dTan);
}

void orkdSinCos_SC(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status,
                   const char* name) {
  const uint64_t b = lane_bits(src + i);
  if (__builtin_expect((b & kExp64) == kExp64, 0)) {
    const __m128d v = minus_itself(src + i);
    _mm_store_sd(dst1 + i, v);
    _mm_store_sd(dst2 + i, v);
    if ((b & kAbs64) == kExp64) {
      orkdError(luxWarnDomain, i, src, src, dst1, dst2, name);
      *status = luxWarnDomain;
    }
    return;
  }
  lux::X87Guard53 guard;
  _dSinCos(_mm_load_sd(src + i), dst1 + i, dst2 + i);
}

void orkzCIS_SC(int i, const lux64f* src, lux64fc* dst) {
  if (__builtin_expect((lane_bits(src + i) & kExp64) == kExp64, 0)) {
    const __m128d v = minus_itself(src + i);
    _mm_store_sd(&dst[i].re, v);
    _mm_store_sd(&dst[i].im, v);
    return;
  }
  lux::X87Guard53 guard;
  _dSinCos(_mm_load_sd(src + i), &dst[i].im, &dst[i].re);
}

// The tiers: the 64-bit ones forward with their name; the 32-bit ones are
// the same body with their own name.
#define LUX_DEFINE_TRIG_SC(tier)                                                                       \
  void orkdSin_SC_##tier(int i, const lux64f* src, lux64f* dst, luxStatus* status) {                   \
    orkdSin_SC(i, src, dst, status, "dSin_" #tier);                                                    \
  }                                                                                                    \
  void orkdCos_SC_##tier(int i, const lux64f* src, lux64f* dst, luxStatus* status) {                   \
    orkdCos_SC(i, src, dst, status, "dCos_" #tier);                                                    \
  }                                                                                                    \
  void orkdTan_SC_##tier(int i, const lux64f* src, lux64f* dst, luxStatus* status) {                   \
    orkdTan_SC(i, src, dst, status, "dTan_" #tier);                                                    \
  }                                                                                                    \
  void orkdSinCos_SC_##tier(int i, const lux64f* src, lux64f* dst1, lux64f* dst2, luxStatus* status) { \
    orkdSinCos_SC(i, src, dst1, dst2, status, "dSinCos_" #tier);                                       \
  }                                                                                                    \
  void orksSin_SC_##tier(int i, const lux32f* src, lux32f* dst, luxStatus* status) {                   \
    s_unary(i, src, dst, status, "sSin_" #tier, _dSin);                                                \
  }                                                                                                    \
  void orksCos_SC_##tier(int i, const lux32f* src, lux32f* dst, luxStatus* status) {                   \
    s_unary(i, src, dst, status, "sCos_" #tier, _dCos);                                                \
  }                                                                                                    \
  void orksTan_SC_##tier(int i, const lux32f* src, lux32f* dst, luxStatus* status) {                   \
    s_unary(i, src, dst, status, "sTan_" #tier, _dTan);                                                \
  }                                                                                                    \
  void orksSinCos_SC_##tier(int i, const lux32f* src, lux32f* dst1, lux32f* dst2, luxStatus* status) { \
    s_sincos(i, src, dst1, dst2, status, "sSinCos_" #tier);                                            \
  }                                                                                                    \
  void orkzCIS_SC_##tier(int i, const lux64f* src, lux64fc* dst) { orkzCIS_SC(i, src, dst); }          \
  void orkcCIS_SC_##tier(int i, const lux32f* src, lux32fc* dst) { c_cis(i, src, dst); }
LUX_TRIG_SC_TIERS(LUX_DEFINE_TRIG_SC)
#undef LUX_DEFINE_TRIG_SC

}  // extern "C"
