// The logarithmic tail of erfcinv and of Phi^-1 for arguments below the
// rows' reach, written once over the unit's own tables.
//
// W = -ln(x) (or -ln(2x)) in two parts from a table of logarithms of
// reciprocals and a degree 6 series of ln(1 + z), |z| < 2^-9;
// s = 1/sqrt(W) with one correction step to two parts; and the answer is
// -sqrt(W) * A(s) with A(s) = -s*erfcinv(exp(-1/s^2)) (times -sqrt(2) for
// Phi^-1), smooth in s: a degree 12 polynomial in t = s - ib/128 on each of
// 28 intervals ib = 4..31 of 128 s, which hold x from 2^-1074 up to 2^-24.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "special/erfinv_scalar.h"

namespace lux::erfinv {

struct alignas(16) TailTables {
  uint64_t rt[256][2];     // _RT: hi(r) << 32 | hi(Lh), Ll
  uint64_t p[28][16];      // _P3N128D12P50DS, row ib - 4
  uint64_t two36h;         // _TWO_36H = 1.5*2^36
  uint64_t two36hp;        // _TWO_36HP = 1.5*2^36 + 1
  uint64_t d3_val_128[2];  // 128, -1/128
  uint64_t ones, halfs;
  uint64_t off_expo_mask;  // 0x000FFFFFFFFFFFFF
  uint64_t g_table_mask;   // 0xFFFFFFFF00000000
  uint64_t sign_mask;
  uint64_t ln2[2];    // ln 2 as 0x3FE62E42FEE00000 + 0x3DEA39EF35793C76
  uint64_t lp04w[5];  // ln(1 + z) = z + z^2 (c2 + c3 z + z^2 (c4 + z (c5 + z c6)))
};

// The constants of both tail units.
#define LUX_ERFINV_TAIL_CONSTANTS                                                                       \
  .two36h = 0x4238000000000000, .two36hp = 0x4238000000010000,                                          \
  .d3_val_128 = {0x4060000000000000, 0xBF80000000000000}, .ones = 0x3FF0000000000000,                   \
  .halfs = 0x3FE0000000000000, .off_expo_mask = 0x000FFFFFFFFFFFFF, .g_table_mask = 0xFFFFFFFF00000000, \
  .sign_mask = 0x8000000000000000, .ln2 = {0x3FE62E42FEE00000, 0x3DEA39EF35793C76},                     \
  .lp04w = {0xBFE0000000000000, 0x3FD555555554D0DF, 0xBFCFFFFFFFFE169D, 0x3FC999A24CDB6ABC,             \
            0xBFC5555F7BD1FCD4}

// z split by the shifter pair: high part of 17 bits, exact products with r.
inline double split_high(double z, const TailTables& T) {
  return z * double_of(T.two36hp) - z * double_of(T.two36h);
}

// `Bias` -1023 gives ln x (erfcinv), -1022 ln 2x (Phi^-1).
template <int Bias>
inline double tail(double x, const TailTables& T) {
  uint32_t hi = uint32_t(bits_of(x) >> 32);
  int bias = Bias;
  if (hi < 0x00100000) {  // denormal: scaled by 2^1022 exactly
    x = double_of(bits_of(x) | T.ones) - double_of(T.ones);
    bias = Bias - 1022;
    hi = uint32_t(bits_of(x) >> 32);
  }
  const double k = double(int(hi >> 20) + bias);
  const int i = int(hi >> 12) & 255;
  const double m = double_of((bits_of(x) & T.off_expo_mask) | T.ones);
  const double r = double_of(T.rt[i][0] & T.g_table_mask);
  const double lh = double_of(T.rt[i][0] << 32);
  const double ll = double_of(T.rt[i][1]);
  const double mh = split_high(m, T);
  const double ml = m - mh;
  const double a = mh * r - 1.0;  // exact
  const double b = ml * r;
  const double z = a + b;
  const double* c = reinterpret_cast<const double*>(T.lp04w);
  const double z2 = z * z;
  const double p = z2 * ((c[0] + c[1] * z) + z2 * (c[2] + z * (c[3] + z * c[4])));
  const double hh = (lh + k * double_of(T.ln2[0])) + a;
  const double lo = (ll + k * double_of(T.ln2[1])) + (b + p);
  // W = -ln = WH + WL.
  const double hH = split_high(hh, T);
  const double lL = (hh - hH) + lo;
  const double wh = -hH, wl = -lL;
  const double w = wh + wl;
  const double s = _mm_cvtsd_f64(_mm_div_sd(_mm_set_sd(1.0), _mm_sqrt_sd(_mm_setzero_pd(), _mm_set_sd(w))));
  // One correction: 1/sqrt(W) = sH + s2.
  const double sh = split_high(s, T);
  const double sl = s - sh;
  const double tt = sh * sl + sl * s;
  const double e = (1.0 - sh * sh * wh) - (sh * sh * wl + tt * w);
  const double s2 = sl + double_of(T.halfs) * s * e;
  // sqrt(W) = -(VH + VL).
  const double vh = -sh * wh;
  const double vl = -(sh * wl + s2 * w);
  const double v = vh + vl;
  const int ib = int(sh * double_of(T.d3_val_128[0]));
  const double* P = reinterpret_cast<const double*>(T.p[ib - 4]);
  const double t = sh + double(ib) * double_of(T.d3_val_128[1]);  // exact
  const double u = t + s2;
  const double u2 = u * u, u4 = u2 * u2, u8 = u4 * u4;
  const double e1 = (P[4] * u + P[3]) * u2 + (P[2] * u + P[1]);
  const double e2 = (P[8] * u + P[7]) * u2 + (P[6] * u + P[5]);
  const double e3 = (P[12] * u + P[11]) * u2 + (P[10] * u + P[9]);
  const double g = (e3 * u8 + (e2 * u4 + e1)) * u;
  const double b1 = P[14] * s2 + P[0];
  const double b2 = P[14] * t;
  const double aa = P[13] + (b2 + b1);
  const double ah = split_high(aa, T);
  const double al = (((P[13] - ah) + b2) + b1) + g;
  return ah * vh + (ah * vl + al * v);
}

}  // namespace lux::erfinv
