// The tables and polynomials of the binary64 cube-root units, one per rule:
// Cbrt at the full tier, Cbrt at the fast tiers (no low table part), and
// InvCbrt at every tier.  Pow2o3 takes the Cbrt tables with a squaring finish.
#pragma once

#include <stdint.h>

#include "powers/cbrt_d_kernel.h"

namespace lux::cbrt64 {

struct alignas(16) Table {
  alignas(16) uint64_t dT[96][2];
  uint64_t dRcp[32];
  LUX_CBRT64_ROWS
  Row64 dbBack;
  Row64 dbScaleBias;
  Row64 dbPoly[8];
};

inline constexpr Table kCbrtHa = {
    .dT =
        {
#include "powers/cbrt_d_table.inc"
        },
    .dRcp =
        {
#include "powers/cbrt_rcp_table.inc"
        },
    .dbBack = row64(0x2B30000000000000),  // 2^-332
    .dbScaleBias = row64(0x2AA),
    // Taylor coefficients of ((1 + r)^(1/3) - 1)/r, r^7 first.
    .dbPoly = {row64(0xBF9036DE5C9CC8E7),   // -0.015834307100882319
               row64(0x3F93750AD588F115),   // 0.019001168521058782
               row64(0xBF98090D6221A247),   // -0.023472031702484377
               row64(0x3F9EE7113506AC12),   // 0.03017832647462277
               row64(0xBFA511E8D2B3183B),   // -0.041152263374485597
               row64(0x3FAF9ADD3C0CA458),   // 0.061728395061728392
               row64(0xBFBC71C71C71C71C),   // -0.1111111111111111
               row64(0x3FD5555555555555)},  // 0.33333333333333331
};

// The fast tiers read only T.
inline constexpr Table kCbrtFast = {
    .dT =
        {
#include "powers/cbrt_d_table.inc"
        },
    .dRcp =
        {
#include "powers/cbrt_rcp_table.inc"
        },
    .dbBack = row64(0x2B30000000000000),  // 2^-332
    .dbScaleBias = row64(0x2AA),
    // A fit of ((1 + r)^(1/3) - 1)/r on |r| <= 1/64, r^5 first.
    .dbPoly = {row64(0xBF980B1460624130),   // -0.023479765303421718
               row64(0x3F9EE8E4463C649D),   // 0.030185286318645244
               row64(0xBFA511E8C911A960),   // -0.041152262253336458
               row64(0x3FAF9ADD36935873),   // 0.061728394424492537
               row64(0xBFBC71C71C71D347),   // -0.11111111111115433
               row64(0x3FD55555555555F1)},  // 0.33333333333334197
};

inline constexpr Table kInvCbrt = {
    .dT =
        {
#include "powers/invcbrt_d_table.inc"
        },
    .dRcp =
        {
#include "powers/cbrt_rcp_table.inc"
        },
    .dbBack = row64(0x54B0000000000000),  // 2^332
    .dbScaleBias = row64(0x554),
    // Taylor coefficients of ((1 + r)^(-1/3) - 1)/r, r^7 first.
    .dbPoly = {row64(0x3FB791D4F50A7B47),   // 0.092068967651795494
               row64(0xBFB9B33CA7A65562),   // -0.10039118855487097
               row64(0x3FBC67C9DD3D11BB),   // 0.11095868731815177
               row64(0xBFBFF4C33F90EF5F),   // -0.12482853223712941
               row64(0x3FC26FABB85D0196),   // 0.14403292181124233
               row64(0xBFC61F9ADD3C0CA3),   // -0.17283950617283947
               row64(0x3FCC71C71C71C71C),   // 0.22222222222222221
               row64(0xBFD5555555555555)},  // -0.33333333333333331
};

template <const Table& T, int Degree, bool Inverse, bool WithLow, CbrtFinish Finish>
struct Unit {
  static constexpr const Table& tab = T;
  static constexpr int kDegree = Degree;
  static constexpr bool kInverse = Inverse;
  static constexpr bool kWithLow = WithLow;
  static constexpr CbrtFinish kFinish = Finish;
};

using CbrtHa = Unit<kCbrtHa, 8, false, true, CbrtFinish::kRoot>;
using CbrtFast = Unit<kCbrtFast, 6, false, false, CbrtFinish::kRoot>;
using InvCbrt = Unit<kInvCbrt, 8, true, true, CbrtFinish::kRoot>;
using Pow2o3Fast = Unit<kCbrtFast, 6, false, false, CbrtFinish::kRootSquared>;
using Pow2o3Ha = Unit<kCbrtHa, 8, false, true, CbrtFinish::kSquareTwoWord>;

}  // namespace lux::cbrt64
