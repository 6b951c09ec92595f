// MXCSR and the x87 control word, read and written.  The asm statements are
// volatile with a memory clobber, so no load or store moves across a write.
// Freestanding: used by the frame and, from the caller's side, by the tests
// and tools.
#pragma once

#include <stdint.h>

namespace lux {

inline uint32_t read_mxcsr() {
  uint32_t v;
  asm volatile("stmxcsr %0" : "=m"(v));
  return v;
}
inline void write_mxcsr(uint32_t v) { asm volatile("ldmxcsr %0" : : "m"(v) : "memory"); }
inline uint16_t read_x87_cw() {
  uint16_t v;
  asm volatile("fnstcw %0" : "=m"(v));
  return v;
}
inline void write_x87_cw(uint16_t v) { asm volatile("fldcw %0" : : "m"(v) : "memory"); }

}  // namespace lux
