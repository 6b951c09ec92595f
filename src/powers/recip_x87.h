// x87 helpers of the reciprocal and division kernels.  Lane values pass in
// memory, never as a returned float or double, which on i386 would travel
// through st(0).
#pragma once

namespace lux {

// a / b in the x87 unit under its current precision control, stored to
// binary32 (the one rounding the caller can rely on).
__attribute__((always_inline)) inline void x87_div_to_f32(float* out, const float* a, const float* b) {
  const long double q = static_cast<long double>(*a) / static_cast<long double>(*b);
  *out = static_cast<float>(q);
}
__attribute__((always_inline)) inline void x87_inv_to_f32(float* out, const float* x) {
  const long double q = 1.0L / static_cast<long double>(*x);
  *out = static_cast<float>(q);
}

// Runs f with the whole x87 state saved to scratch and restored after, so
// that whatever the kernel holds on the register stack survives a call.
template <class F>
__attribute__((always_inline)) inline void with_x87_state_kept(F&& f) {
  alignas(16) unsigned char state[108];
  asm volatile("fnsave %0" : "=m"(state));
  f();
  asm volatile("frstor %0" : : "m"(state));
}

}  // namespace lux
