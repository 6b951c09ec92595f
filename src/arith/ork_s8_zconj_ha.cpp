// luxsConj_64fc_A53: the complex conjugate of binary64 complex lanes, exact: the
// real part copied, the imaginary part's sign bit flipped.
//
// A bit operation, so a signalling NaN passes unchanged and no flag is raised.
#include "arith/plain_loop.h"
#include "frame/lanes.h"

namespace {

constexpr int kBlock = 2;  // complex lanes a pass, two vectors

struct alignas(16) Table {
  lux::Row64 dbImagPartSignXor;  // the sign bit in the imaginary place
};
constexpr Table kTab = {
    .dbImagPartSignXor = {{0x0000000000000000, 0x8000000000000000}},
};

struct Conj {
  static __m128d vec(__m128d x) { return _mm_xor_pd(x, kTab.dbImagPartSignXor.pd()); }
};

}  // namespace

LUXVM_EXPORT luxStatus luxsConj_64fc_A53(const lux64fc* src, lux64fc* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  lux::arith::blocked_with_rest<lux64fc, double, kBlock, Conj>(src, dst, len);
  return luxOk;
}
