// luxsPowx_64f_A26: a^x for one fixed x on binary64, tier A26 (2^27 ulp).
// max error 2.97e7 ulp at a = 0x1.6b57b1d7d6435p-391, x = 0x1.4f8b588e368f1p-17 (MPFR sweep at fixed x)
// log2 a with K = 64, P(u) to u^5; 2^r by (e2 r + ln 2) r + 1, times the high part of T.
// x = 2, 3 and 4 are the IEEE products a*a, (a*a)*a and (a*a)*(a*a); x = ±0, ±Inf or NaN sends every lane
// through the lane routine.
#include "powers/pow_d_kernel.h"

namespace {

using lux::row64;

constexpr lux::pow::DPowTable<64> kTable = {
    .dbR0 = row64(0x3FF7154740000000),     // 1.4426949024200439, log2(e) cut to 23 bits
    .dbDelta = row64(0x3E79C3A6966457EE),  // 9.5979350332335112e-08 = (log2(e) - R[0]) / R[0]
    .dbC2 = row64(0xBFD62E4346694107),     // -0.3465736568077919, about -ln2/2
    .dbC3 = row64(0x3FC47FD462B3B816),     // 0.16015105075297303, about (ln 2)^2/3
    .dbC4 = row64(0xBFB550472A8BB463),     // -0.083256194960726712, about -(ln 2)^3/4
    .dbC5 = row64(
        0x3FA7A334DDFC9F86),  // 0.046167041872023737: to u^4 the truncation costs 2^32 ulp at |y| ~ 1024
    .dbLn2 = row64(0x3FE62E42FEFA39EF),       // 0.6931471805599453
    .dbE2 = row64(0x3FCEBFBDFF82C58E),        // 0.24022650695910069, about (ln 2)^2/2
    .dbShifter = row64(0x42C8000000000000),   // 1.5*2^45
    .dbKShifter = row64(0x4138000000000000),  // 1572864.0 = 1.5*2^20
    .dbOne = row64(0x3FF0000000000000),
    .dbFracMask = row64(0x000FFFFFFFFFFFFF),
    .dbSplitMask = row64(0xFFFFFFFFF8000000),
    .dbExpMask = row64(0xFFF0000000000000),
    .dbTwo52 = row64(0x4330000000000000),    // 2^52
    .dbTwoM111 = row64(0x3900000000000000),  // 2^-111 = 3.851859888774472e-34
    .R =
        {
#include "powers/pow_table_r64.inc"
        },
    .L =
        {
#include "powers/pow_table_l64.inc"
        },
    .T =
        {
#include "powers/pow_table_dexp.inc"
        },
};

}  // namespace

LUXVM_EXPORT luxStatus luxsPowx_64f_A26(const lux64f* src, lux64f x, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow::run_powx<lux::pow::DTier::kA26, 64, true>(kTable, src, &x, dst, len);
}
