#include "timing.h"

#include <emmintrin.h>
#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace luxbench {

namespace {
uint64_t now_ns() {
  timespec t;
  clock_gettime(CLOCK_MONOTONIC_RAW, &t);
  return uint64_t(t.tv_sec) * 1000000000u + uint64_t(t.tv_nsec);
}
}  // namespace

double tsc_ghz() {
  // Median of five 40 ms windows, so that one window preempted between a
  // clock read and a counter read does not decide.
  std::vector<double> r;
  for (int k = 0; k < 5; ++k) {
    const uint64_t n0 = now_ns(), t0 = tsc_start();
    uint64_t n1;
    do n1 = now_ns();
    while (n1 - n0 < 40000000u);
    const uint64_t t1 = tsc_stop();
    r.push_back(double(t1 - t0) / double(n1 - n0));
  }
  return median(r);
}

double timer_overhead() {
  std::vector<double> v;
  for (int i = 0; i < 1001; ++i) {
    const uint64_t t0 = tsc_start();
    const uint64_t t1 = tsc_stop();
    v.push_back(double(t1 - t0));
  }
  return median(v);
}

void flush_from_caches(const void* p, size_t bytes) {
  const char* c = static_cast<const char*>(p);
  for (size_t i = 0; i < bytes; i += 64) _mm_clflush(c + i);
  _mm_mfence();
}

double median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  const size_t m = v.size() / 2;
  return v.size() % 2 ? v[m] : 0.5 * (v[m - 1] + v[m]);
}

double copy_bytes_per_tick(size_t bytes, int runs) {
  Buffer src(bytes), dst(bytes);
  std::memset(src.data(), 1, bytes);
  std::vector<double> v;
  for (int r = 0; r < runs; ++r) {
    flush_from_caches(src.data(), bytes);
    flush_from_caches(dst.data(), bytes);
    const __m128i* s = static_cast<const __m128i*>(src.data());
    __m128i* d = static_cast<__m128i*>(dst.data());
    const uint64_t t0 = tsc_start();
    for (size_t i = 0; i < bytes / 16; ++i) _mm_storeu_si128(d + i, _mm_loadu_si128(s + i));
    const uint64_t t1 = tsc_stop();
    v.push_back(2.0 * double(bytes) / double(t1 - t0));
  }
  return median(v);
}

Buffer::Buffer(size_t bytes) : n_(bytes) {
  const size_t rounded = (bytes + 63) / 64 * 64;
  p_ = std::aligned_alloc(64, rounded ? rounded : 64);
  if (!p_) throw std::bad_alloc();
  std::memset(p_, 0, rounded ? rounded : 64);
}

Buffer::~Buffer() { std::free(p_); }

}  // namespace luxbench
