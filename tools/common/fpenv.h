// The caller's side of the floating-point environment: MXCSR and the x87
// control word, and one call run from a clean state with its raised flags.
#pragma once

#include <cstdint>
#include <string>

#include "frame/control_registers.h"

namespace luxtk {

using lux::read_mxcsr;
using lux::read_x87_cw;
using lux::write_mxcsr;
using lux::write_x87_cw;

// MXCSR exception flags (bits 0..5) and the settings tests use.
enum : uint32_t {
  kInvalid = 0x01,
  kDenormal = 0x02,
  kDivByZero = 0x04,
  kOverflow = 0x08,
  kUnderflow = 0x10,
  kInexact = 0x20,
  kFlagMask = 0x3F,
  kDefaultMxcsr = 0x1F80,  // all masked, round to nearest, no FTZ/DAZ
  kRoundDown = 0x2000,
  kRoundUp = 0x4000,
  kRoundTowardZero = 0x6000,
  kFlushToZero = 0x8000,
  kDenormalsAreZero = 0x0040,
};

std::string flag_names(uint32_t flags);

struct Outcome {
  int status;
  uint32_t flags;  // MXCSR flags raised by the call (bits 0..5)
};

// Runs call() with MXCSR set to `mxcsr` (flags cleared) and restores the
// caller's MXCSR afterwards.
template <class F>
Outcome run_clean(F&& call, uint32_t mxcsr = kDefaultMxcsr) {
  const uint32_t saved = read_mxcsr();
  write_mxcsr(mxcsr & ~kFlagMask);
  const int status = call();
  const uint32_t after = read_mxcsr();
  write_mxcsr(saved);
  return {status, after & kFlagMask};
}

}  // namespace luxtk
