// dErfcInv_Tail: erfcinv(x) for 0 < x < 2^-24, denormals included, by the
// logarithmic tail (special/erfinv_tail.h); and the irregular-lane routines
// of ErfcInv on both types, dErfcInv_SC and sErfcInv_SC.
#include "special/erfinv_tail.h"

namespace {

constexpr lux::erfinv::TailTables kTail = {
    .rt =
        {
#include "special/erfcinv_tail_rt.inc"
        },
    .p =
        {
#include "special/erfcinv_tail_p.inc"
        },
    LUX_ERFINV_TAIL_CONSTANTS,
};

}  // namespace

extern "C" double dErfcInv_Tail(double x) { return lux::erfinv::tail<-1023>(x, kTail); }

// 0 < x < 2: the tail (1 gives +0); +-0 and 2: the poles, +Inf and -Inf;
// NaN: x*x; the rest of the line: the domain's NaN.
extern "C" int dErfcInv_SC(const lux64f* a, lux64f* r) {
  using namespace lux::erfinv;
  uint64_t b;
  __builtin_memcpy(&b, a, 8);
  const uint32_t nz = uint32_t(b) != 0 ? 1u : 0u;
  const uint32_t e = uint32_t(b >> 32) | nz;
  if (e - 1 < 0x3FFFFFFFu) {
    if (b == 0x3FF0000000000000ull)
      _mm_store_sd(r, _mm_setzero_pd());
    else
      _mm_store_sd(r, _mm_set_sd(dErfcInv_Tail(double_of(b))));
    return luxOk;
  }
  const uint32_t mag = (uint32_t(b >> 32) & 0x7FFFFFFF) | nz;
  if (mag == 0 || e == 0x40000000) {
    store_pole(r, mag > 0x3FF00000 ? -1.0 : 1.0);
    return luxWarnSingularity;
  }
  if (mag > 0x7FF00000) {
    store_square(r, a);
    return luxOk;
  }
  store_domain_nan(r);
  return luxWarnDomain;
}

extern "C" int sErfcInv_SC(const lux32f* a, lux32f* r) {
  using namespace lux::erfinv;
  uint32_t e;
  __builtin_memcpy(&e, a, 4);
  if (e - 1 < 0x3FFFFFFFu) {
    if (e == 0x3F800000)
      _mm_store_ss(r, _mm_setzero_ps());
    else
      _mm_store_ss(r, _mm_cvtsd_ss(_mm_setzero_ps(), _mm_set_sd(dErfcInv_Tail(double(float_of(e))))));
    return luxOk;
  }
  const uint32_t mag = e & 0x7FFFFFFF;
  if (mag == 0 || e == 0x40000000) {
    store_pole(r, mag > 0x3F800000 ? -1.0f : 1.0f);
    return luxWarnSingularity;
  }
  if (mag > 0x7F800000) {
    store_square(r, a);
    return luxOk;
  }
  store_domain_nan(r);
  return luxWarnDomain;
}
