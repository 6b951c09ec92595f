// Peer loops: the operation `Op` applied over the arrays of one call, element
// by element (scalar libm calls, plain compiled loops, std::complex) or two
// and four lanes at a time through a 128-bit vector routine (libmvec, SLEEF).
// Each instantiation is a PeerFn.
#pragma once

#include <emmintrin.h>

#include <complex>

#include "bench.h"

// glibc libmvec, SSE2 variants (vector function ABI, 'b' = SSE).  The library
// exports them but no header declares them outside fast-math builds.
extern "C" {
__m128d _ZGVbN2v_exp(__m128d);
__m128 _ZGVbN4v_expf(__m128);
__m128d _ZGVbN2v_log(__m128d);
__m128 _ZGVbN4v_logf(__m128);
__m128d _ZGVbN2v_log10(__m128d);
__m128 _ZGVbN4v_log10f(__m128);
__m128d _ZGVbN2vv_pow(__m128d, __m128d);
__m128 _ZGVbN4vv_powf(__m128, __m128);
__m128d _ZGVbN2v_sin(__m128d);
__m128d _ZGVbN2v_cos(__m128d);
__m128 _ZGVbN4v_sinf(__m128);
__m128 _ZGVbN4v_cosf(__m128);
}

namespace luxbench {

using c32 = std::complex<float>;
using c64 = std::complex<double>;

// d[i] = Op(a[i])
template <class T, auto Op>
void unary(const Arrays& p, int n) {
  const T* a = static_cast<const T*>(p.a);
  T* d = static_cast<T*>(p.d1);
  for (int i = 0; i < n; ++i) d[i] = Op(a[i]);
}

// d[i] = Op(a[i]) with a result type of its own (complex Abs)
template <class T, class R, auto Op>
void unary_to(const Arrays& p, int n) {
  const T* a = static_cast<const T*>(p.a);
  R* d = static_cast<R*>(p.d1);
  for (int i = 0; i < n; ++i) d[i] = Op(a[i]);
}

// d[i] = Op(a[i], b[i])
template <class T, auto Op>
void binary(const Arrays& p, int n) {
  const T* a = static_cast<const T*>(p.a);
  const T* b = static_cast<const T*>(p.b);
  T* d = static_cast<T*>(p.d1);
  for (int i = 0; i < n; ++i) d[i] = Op(a[i], b[i]);
}

// d[i] = Op(a[i], x)
template <class T, auto Op>
void with_scalar(const Arrays& p, int n) {
  const T* a = static_cast<const T*>(p.a);
  const T x = *static_cast<const T*>(p.x);
  T* d = static_cast<T*>(p.d1);
  for (int i = 0; i < n; ++i) d[i] = Op(a[i], x);
}

// d1[i] = Op(a[i], &d2[i])  (modf)
template <class T, auto Op>
void two_results(const Arrays& p, int n) {
  const T* a = static_cast<const T*>(p.a);
  T* d1 = static_cast<T*>(p.d1);
  T* d2 = static_cast<T*>(p.d2);
  for (int i = 0; i < n; ++i) d1[i] = Op(a[i], &d2[i]);
}

// 128-bit vector routines (F takes and returns __m128d or __m128; SLEEF
// declares its results const, hence `auto`); a short tail goes through the
// routine in a padded vector, as a caller of a vector library would do it.
template <auto F>
void vec_d2(const Arrays& p, int n) {
  const double* a = static_cast<const double*>(p.a);
  double* d = static_cast<double*>(p.d1);
  int i = 0;
  for (; i + 2 <= n; i += 2) _mm_storeu_pd(d + i, F(_mm_loadu_pd(a + i)));
  if (i < n) _mm_store_sd(d + i, F(_mm_set1_pd(a[i])));
}

template <auto F>
void vec_f4(const Arrays& p, int n) {
  const float* a = static_cast<const float*>(p.a);
  float* d = static_cast<float*>(p.d1);
  int i = 0;
  for (; i + 4 <= n; i += 4) _mm_storeu_ps(d + i, F(_mm_loadu_ps(a + i)));
  for (; i < n; ++i) _mm_store_ss(d + i, F(_mm_set1_ps(a[i])));
}

template <auto F>
void vec_d2_binary(const Arrays& p, int n) {
  const double* a = static_cast<const double*>(p.a);
  const double* b = static_cast<const double*>(p.b);
  double* d = static_cast<double*>(p.d1);
  int i = 0;
  for (; i + 2 <= n; i += 2) _mm_storeu_pd(d + i, F(_mm_loadu_pd(a + i), _mm_loadu_pd(b + i)));
  if (i < n) _mm_store_sd(d + i, F(_mm_set1_pd(a[i]), _mm_set1_pd(b[i])));
}

template <auto F>
void vec_f4_binary(const Arrays& p, int n) {
  const float* a = static_cast<const float*>(p.a);
  const float* b = static_cast<const float*>(p.b);
  float* d = static_cast<float*>(p.d1);
  int i = 0;
  for (; i + 4 <= n; i += 4) _mm_storeu_ps(d + i, F(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i)));
  for (; i < n; ++i) _mm_store_ss(d + i, F(_mm_set1_ps(a[i]), _mm_set1_ps(b[i])));
}

template <auto F>
void vec_d2_scalar(const Arrays& p, int n) {
  const double* a = static_cast<const double*>(p.a);
  const __m128d x = _mm_set1_pd(*static_cast<const double*>(p.x));
  double* d = static_cast<double*>(p.d1);
  int i = 0;
  for (; i + 2 <= n; i += 2) _mm_storeu_pd(d + i, F(_mm_loadu_pd(a + i), x));
  if (i < n) _mm_store_sd(d + i, F(_mm_set1_pd(a[i]), x));
}

template <auto F>
void vec_f4_scalar(const Arrays& p, int n) {
  const float* a = static_cast<const float*>(p.a);
  const __m128 x = _mm_set1_ps(*static_cast<const float*>(p.x));
  float* d = static_cast<float*>(p.d1);
  int i = 0;
  for (; i + 4 <= n; i += 4) _mm_storeu_ps(d + i, F(_mm_loadu_ps(a + i), x));
  for (; i < n; ++i) _mm_store_ss(d + i, F(_mm_set1_ps(a[i]), x));
}

}  // namespace luxbench
