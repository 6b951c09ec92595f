// luxsConj_32fc_A24: the complex conjugate of binary32 complex lanes, exact: the
// real part copied, the imaginary part's sign bit flipped.
//
// A bit operation, so a signalling NaN passes unchanged and no flag is raised.
#include "arith/plain_loop.h"
#include "frame/lanes.h"

namespace {

constexpr int kBlock = 4;  // complex lanes a pass, two vectors

struct alignas(16) Table {
  lux::Row32 flImagPartSignXor;  // the sign bit in the imaginary places
};
constexpr Table kTab = {
    .flImagPartSignXor = {{0x00000000, 0x80000000, 0x00000000, 0x80000000}},
};

struct Conj {
  static __m128 vec(__m128 x) { return _mm_xor_ps(x, kTab.flImagPartSignXor.ps()); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsConj_32fc_A24(const lux32fc* src, lux32fc* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::arith::blocked_with_rest<lux32fc, float, kBlock, Conj>(src, dst, len);
  return luxOk;
}
