// Tangent and sine-cosine together: glibc libm in a scalar loop, libmvec and
// SLEEF (SSE2 variants) on the usual range, large arguments that stay on the
// vector paths, and huge ones that need the exact reduction.
#include <sleef.h>

#include <cmath>

#include "loops.h"

extern "C" {
__m128d _ZGVbN2v_tan(__m128d);
__m128 _ZGVbN4v_tanf(__m128);
// Vector-of-pointers variants: the result pointers of each lane in integer
// vectors (two per register of 64-bit pointers).
void _ZGVbN2vvv_sincos(__m128d, __m128i, __m128i);
void _ZGVbN4vvv_sincosf(__m128, __m128i, __m128i, __m128i, __m128i);
}

namespace luxbench {
namespace {

__m128i two_pointers(void* p, void* q) {
  return _mm_set_epi64x(static_cast<long long>(reinterpret_cast<intptr_t>(q)),
                        static_cast<long long>(reinterpret_cast<intptr_t>(p)));
}

void glibc_sincos(const Arrays& p, int n) {
  const double* a = static_cast<const double*>(p.a);
  double* s = static_cast<double*>(p.d1);
  double* c = static_cast<double*>(p.d2);
  for (int i = 0; i < n; ++i) sincos(a[i], s + i, c + i);
}
void glibc_sincosf(const Arrays& p, int n) {
  const float* a = static_cast<const float*>(p.a);
  float* s = static_cast<float*>(p.d1);
  float* c = static_cast<float*>(p.d2);
  for (int i = 0; i < n; ++i) sincosf(a[i], s + i, c + i);
}

void libmvec_sincos(const Arrays& p, int n) {
  const double* a = static_cast<const double*>(p.a);
  double* s = static_cast<double*>(p.d1);
  double* c = static_cast<double*>(p.d2);
  int i = 0;
  for (; i + 2 <= n; i += 2)
    _ZGVbN2vvv_sincos(_mm_loadu_pd(a + i), two_pointers(s + i, s + i + 1), two_pointers(c + i, c + i + 1));
  if (i < n) {
    double s2[2], c2[2];
    _ZGVbN2vvv_sincos(_mm_set1_pd(a[i]), two_pointers(s2, s2 + 1), two_pointers(c2, c2 + 1));
    s[i] = s2[0], c[i] = c2[0];
  }
}
void libmvec_sincosf(const Arrays& p, int n) {
  const float* a = static_cast<const float*>(p.a);
  float* s = static_cast<float*>(p.d1);
  float* c = static_cast<float*>(p.d2);
  int i = 0;
  for (; i + 4 <= n; i += 4)
    _ZGVbN4vvv_sincosf(_mm_loadu_ps(a + i), two_pointers(s + i, s + i + 1),
                       two_pointers(s + i + 2, s + i + 3), two_pointers(c + i, c + i + 1),
                       two_pointers(c + i + 2, c + i + 3));
  for (; i < n; ++i) {
    float s4[4], c4[4];
    _ZGVbN4vvv_sincosf(_mm_set1_ps(a[i]), two_pointers(s4, s4 + 1), two_pointers(s4 + 2, s4 + 3),
                       two_pointers(c4, c4 + 1), two_pointers(c4 + 2, c4 + 3));
    s[i] = s4[0], c[i] = c4[0];
  }
}

template <auto F>
void sleef_sincos(const Arrays& p, int n) {
  const double* a = static_cast<const double*>(p.a);
  double* s = static_cast<double*>(p.d1);
  double* c = static_cast<double*>(p.d2);
  int i = 0;
  for (; i + 2 <= n; i += 2) {
    const Sleef___m128d_2 r = F(_mm_loadu_pd(a + i));
    _mm_storeu_pd(s + i, r.x);
    _mm_storeu_pd(c + i, r.y);
  }
  if (i < n) {
    const Sleef___m128d_2 r = F(_mm_set1_pd(a[i]));
    _mm_store_sd(s + i, r.x);
    _mm_store_sd(c + i, r.y);
  }
}
template <auto F>
void sleef_sincosf(const Arrays& p, int n) {
  const float* a = static_cast<const float*>(p.a);
  float* s = static_cast<float*>(p.d1);
  float* c = static_cast<float*>(p.d2);
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const Sleef___m128_2 r = F(_mm_loadu_ps(a + i));
    _mm_storeu_ps(s + i, r.x);
    _mm_storeu_ps(c + i, r.y);
  }
  for (; i < n; ++i) {
    const Sleef___m128_2 r = F(_mm_set1_ps(a[i]));
    _mm_store_ss(s + i, r.x);
    _mm_store_ss(c + i, r.y);
  }
}

const FamilyBench kTan = {
    .family = "Tan",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 1e4", kReal, uniform(-1e4, 1e4)},
            {"|x| in [1e6, 1e300]", k64f, signed_magnitudes(1e6, 1e300)},
            {"|x| in [1e6, 1e38]", k32f, signed_magnitudes(1e6, 1e38)},
        },
    .peers =
        {
            {"glibc tan", k64f, unary<double, [](double v) { return std::tan(v); }>},
            {"libmvec tan", k64f, vec_d2<_ZGVbN2v_tan>},
            {"SLEEF tand2_u10", k64f, vec_d2<Sleef_tand2_u10sse2>},
            {"SLEEF tand2_u35", k64f, vec_d2<Sleef_tand2_u35sse2>},
            {"glibc tanf", k32f, unary<float, [](float v) { return std::tan(v); }>},
            {"libmvec tanf", k32f, vec_f4<_ZGVbN4v_tanf>},
            {"SLEEF tanf4_u10", k32f, vec_f4<Sleef_tanf4_u10sse2>},
            {"SLEEF tanf4_u35", k32f, vec_f4<Sleef_tanf4_u35sse2>},
        },
    .notes =
        "No table: a reduction by pi/2 and a rational function whose quotient is turned upside down for odd "
        "multiples. A53 finishes numerator and denominator on the x87 unit in chunks of 256 lanes and spends "
        "one division on two lanes. Beyond 10000 (float) and 128000 (double) lanes take the double scalar "
        "core with exact reduction from 12800.",
};
const Registrar kTanReg(&kTan);

const FamilyBench kSinCos = {
    .family = "SinCos",
    .ranges =
        {
            {"|x| < 10", kReal, uniform(-10, 10)},
            {"|x| < 1e4", kReal, uniform(-1e4, 1e4)},
            {"|x| in [1e6, 1e300]", k64f, signed_magnitudes(1e6, 1e300)},
            {"|x| in [1e6, 1e38]", k32f, signed_magnitudes(1e6, 1e38)},
        },
    .peers =
        {
            {"glibc sincos", k64f, glibc_sincos},
            {"libmvec sincos", k64f, libmvec_sincos},
            {"SLEEF sincosd2_u10", k64f, sleef_sincos<Sleef_sincosd2_u10sse2>},
            {"SLEEF sincosd2_u35", k64f, sleef_sincos<Sleef_sincosd2_u35sse2>},
            {"glibc sincosf", k32f, glibc_sincosf},
            {"libmvec sincosf", k32f, libmvec_sincosf},
            {"SLEEF sincosf4_u10", k32f, sleef_sincosf<Sleef_sincosf4_u10sse2>},
            {"SLEEF sincosf4_u35", k32f, sleef_sincosf<Sleef_sincosf4_u35sse2>},
        },
    .notes =
        "A53 and A26 reduce once and run the sine's table step twice, a quarter turn apart; A50 and the "
        "float tiers evaluate one sine and one cosine polynomial on the same r and swap by the quadrant.",
};
const Registrar kSinCosReg(&kSinCos);

}  // namespace
}  // namespace luxbench
