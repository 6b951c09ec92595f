// Timing by the time stamp counter.  A timed region starts with lfence; rdtsc
// (no earlier instruction still running, no later one started) and ends with
// rdtscp; lfence (everything before it retired).  The TSC ticks at a constant
// rate, which is measured against CLOCK_MONOTONIC_RAW and reported.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace luxbench {

inline uint64_t tsc_start() {
  uint32_t lo, hi;
  asm volatile("lfence\n\trdtsc\n\tlfence" : "=a"(lo), "=d"(hi) : : "memory");
  return uint64_t(hi) << 32 | lo;
}

inline uint64_t tsc_stop() {
  uint32_t lo, hi;
  asm volatile("rdtscp\n\tlfence" : "=a"(lo), "=d"(hi) : : "rcx", "memory");
  return uint64_t(hi) << 32 | lo;
}

// TSC ticks per nanosecond, measured over about 200 ms.
double tsc_ghz();
// Median cost of an empty timed region, subtracted from every sample.
double timer_overhead();
// Evicts [p, p + bytes) from every cache level.
void flush_from_caches(const void* p, size_t bytes);
double median(std::vector<double> v);
// Bytes moved per tick (read plus written) by a plain SSE2 copy between two
// arrays of `bytes` each, flushed from the caches before each run.
double copy_bytes_per_tick(size_t bytes, int runs);

// Memory for the arrays of a run: 64-byte aligned, zeroed.
class Buffer {
 public:
  explicit Buffer(size_t bytes);
  ~Buffer();
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  void* data() const { return p_; }
  size_t size() const { return n_; }

 private:
  void* p_;
  size_t n_;
};

}  // namespace luxbench
