// orksqrtl_scalar: the square root in the 80-bit format at 64-bit precision,
// from an 11-bit reciprocal square root of the table and a degree-6
// correction, the head of the product exact.
// max error 0.5026 ulp (64-bit significand) at x = 0x0.00010d7c9d5d03ap-16385.
#include "scalar/extended.h"

namespace {

using namespace lux::x80;

constexpr uint32_t kDenormalBias = 16583;  // 16383 + 200: exponent field after the product by 2^200

struct SqrtlTab {
  // y_n ~ 1/sqrt(a_n), a_n = 1 + n/256 (n <= 256), 2 + (n - 256)/128 above;
  // 11 significant bits (y^2 exact), |y_n^2 a_n - 1| < 2^-10.
  uint64_t y[513];
  // (1 + r)^(-1/2) - 1 = r Q(r): -1/2, 3/8, -5/16, 35/128, -63/256, 231/1024, -429/2048.
  uint64_t C[7];
  uint64_t onetwo[2];    // 1.0, 2.0: a = m or 2m, so that the exponent left is even
  uint64_t two_pow_200;  // 2^200: brings a denormal into the normal range
  uint64_t tmhi;         // 2^22 + 1: the Veltkamp split keeps 42 bits
  OrkX80Slot rsj;        // 2^55 + 1: m + rsj holds round(256 (m - 1)) in its low 9 bits
};

constexpr SqrtlTab kTab = {
    .y =
        {
#include "scalar/sqrtl_table.inc"
        },
    .C = {0xBFE0000000000000ull, 0x3FD8000000000000ull, 0xBFD4000000000000ull, 0x3FD1800000000000ull,
          0xBFCF800000000000ull, 0x3FCCE00000000000ull, 0xBFCAD00000000000ull},
    .onetwo = {0x3FF0000000000000ull, 0x4000000000000000ull},
    .two_pow_200 = 0x4C70000000000000ull,
    .tmhi = 0x4150000040000000ull,
    .rsj = slot(0x4036, 0x8000000000000100ull),
};

}  // namespace

extern "C" long double orksqrtl_scalar(long double x) {
  const Image im = image(x);
  uint32_t e = im.se & 0x7FFFu;
  if (e == 0x7FFF) return x + opaque(__builtin_infl());  // +Inf, NaN for -Inf, quiet NaN
  if (e == 0 && im.sig == 0) return x;                   // +-0
  if (im.se >> 15) return opaque(__builtin_infl()) * 0.0L;
  int32_t E;
  if (e == 0) {
    x = x * dbl(kTab.two_pow_200);
    E = int32_t(exponent_field(x)) - int32_t(kDenormalBias);
  } else {
    E = int32_t(e) - 16383;
  }
  const ld m = with_exponent(x, 0x3FFF);
  const int32_t o = E & 1;
  const ld a = m * dbl(kTab.onetwo[o]);
  const ld scale = power_of_two(uint32_t((E - o) / 2 + 0x3FFF));
  const ld t = dbl(kTab.tmhi) * a;
  const ld ah = t - (t - a);
  const ld al = a - ah;
  const ld idx = m + value(kTab.rsj);
  const unsigned n = unsigned(o << 8) + unsigned(image(idx).sig & 0x1FF);
  const ld y = dbl(kTab.y[n]);
  const ld y2 = y * y;
  const ld r = (y2 * ah - 1.0L) + y2 * al;
  const auto C = [](int i) { return dbl(kTab.C[i]); };
  const ld Q = (((((C(6) * r + C(5)) * r + C(4)) * r + C(3)) * r + C(2)) * r + C(1)) * r + C(0);
  return ((ah * y) * scale) + ((al * y + a * ((r * Q) * y)) * scale);
}
