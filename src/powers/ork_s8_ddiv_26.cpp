// luxsDiv_64f_A26 and luxsDiv_64f_A50 (the same code): a/b by batch
// inversion in the x87 unit, one division for four lanes.
// max error 0.501 ulp at a = -0x1.4394947bd25b9p-907, b = -0x1.a9b17c49d4d48p-307
//
// With P01 = b0*b1, P23 = b2*b3, P = P01*P23 and R = 1/P:
//   1/P23 = P01*R,  1/P01 = P23*R,  1/b2 = b3 * 1/P23, ...
// All intermediates carry the x87 64-bit significand (the guard forces it)
// and its wide exponent range; each quotient is rounded once, to binary64, as
// it is stored.  Its last bit depends on the other divisors of the block.
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"
#include "powers/recip_x87.h"

namespace {

// Block test on P rounded to binary32: zero magnitude or an all-ones exponent
// field means a divisor may be zero, infinite or NaN, or that P merely left
// the binary32 range; the block then goes lane by lane.
constexpr uint32_t kFlAbsMask = 0x7FFFFFFF;
constexpr uint32_t kFlExpMask = 0x7F800000;
// Lane routine: zero or exponent field 0x7FF takes the plain division.
constexpr uint32_t kDbExpMaskHi = 0x7FF00000;

inline double load_lane(const double* p) { return *p; }

struct DivKernel {
  const double* a;
  const double* b;
  double* dst;
  lux::CallState<double>& call;

  bool block(int i) {
    const long double b0 = load_lane(b + i), b1 = load_lane(b + i + 1);
    const long double b2 = load_lane(b + i + 2), b3 = load_lane(b + i + 3);
    const long double p01 = b0 * b1;
    const long double p23 = b2 * b3;
    const long double p = p01 * p23;
    volatile float scratch = static_cast<float>(p);
    const uint32_t w = __builtin_bit_cast(uint32_t, static_cast<float>(scratch));
    if (__builtin_expect((w & kFlAbsMask) == 0 || (w & kFlExpMask) == kFlExpMask, 0)) return false;
    const long double r = 1.0L / p;
    const long double inv_p23 = p01 * r;
    const long double inv_p01 = p23 * r;
    dst[i + 2] = static_cast<double>((b3 * inv_p23) * static_cast<long double>(a[i + 2]));
    dst[i + 3] = static_cast<double>((b2 * inv_p23) * static_cast<long double>(a[i + 3]));
    dst[i] = static_cast<double>((b1 * inv_p01) * static_cast<long double>(a[i]));
    dst[i + 1] = static_cast<double>((b0 * inv_p01) * static_cast<long double>(a[i + 1]));
    return true;
  }

  // The lane routine of a failing block and of the tail lanes.  For a finite
  // nonzero b the x87 range holds b^4, so the batch shape ((1/b^4)*b^2*b)*a
  // is taken on one lane; zero, infinite and NaN divisors divide plainly.
  // A zero divisor reports whatever the dividend is.
  void lane(int i) {
    const uint64_t bits = __builtin_bit_cast(uint64_t, b[i]);
    const uint32_t hi = uint32_t(bits >> 32), lo = uint32_t(bits);
    const bool pole = ((hi & 0x7FFFFFFF) | lo) == 0;
    const long double bl = b[i];
    const long double al = a[i];
    if (pole || (hi & kDbExpMaskHi) == kDbExpMaskHi) {
      dst[i] = static_cast<double>(al / bl);
    } else {
      const long double s = bl * bl;
      const long double q = s * s;
      const long double r = 1.0L / q;
      dst[i] = static_cast<double>(((r * s) * bl) * al);
    }
    if (pole) lux::with_x87_state_kept([&] { call.warn(luxWarnSingularity, i); });
  }
  void tail(int i) { lane(i); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsDiv_64f_A26(const lux64f* src1, const lux64f* src2, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::X87Guard64 guard;
  lux::CallState<lux64f> call(src1, src2, dst, dst);
  DivKernel k{src1, src2, dst, call};
  lux::run_block_redo<4>(len, k);
  return call.status();
}

// Tier A50 is tier A26, bit for bit.
extern "C" __attribute__((visibility("default"), alias("luxsDiv_64f_A26"))) luxStatus luxsDiv_64f_A50(
    const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
