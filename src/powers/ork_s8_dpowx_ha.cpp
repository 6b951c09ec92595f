// luxsPowx_64f_A53: a^x for one fixed x on binary64, tier A53 (1 ulp).
// max error 0.508 ulp at a = 0x1.7335ece933892p+56, x = 7.25 (MPFR sweep at fixed x)
// log2 a with K = 1024, P(u) to u^7; 2^r by a degree-5 polynomial summed small terms first, with the low part
// of T. x = 2 is the IEEE product a*a; x = ±0, ±Inf or NaN sends every lane through the lane routine.
#include "powers/pow_d_kernel.h"

namespace {

using lux::row64;

constexpr lux::pow::DPowTable<1024> kTable = {
    .dbR0 = row64(0x3FF7154740000000),        // 1.4426949024200439, log2(e) cut to 23 bits
    .dbDelta = row64(0x3E79C3A6966457EE),     // 9.5979350332335112e-08 = (log2(e) - R[0]) / R[0]
    .dbC2 = row64(0xBFD62E4346694107),        // -0.3465736568077919, about -ln2/2
    .dbC3 = row64(0x3FC47FD462B3B816),        // 0.16015105075297303, about (ln 2)^2/3
    .dbC4 = row64(0xBFB550472A8BB463),        // -0.083256194960726712, about -(ln 2)^3/4
    .dbC5 = row64(0x3FA7A334DDFC9F86),        // 0.046167041872023737
    .dbC6 = row64(0xBF9B4EA0E9419F52),        // -0.026667131649815552
    .dbC7 = row64(0x3F903950CF599C56),        // 0.015843641906397053
    .dbLn2 = row64(0x3FE62E42FEFA39EF),       // 0.6931471805599453
    .dbE2 = row64(0x3FCEBFBDFF82C58E),        // 0.24022650695910069, about (ln 2)^2/2
    .dbE3 = row64(0x3FAC6B08D704A0BF),        // 0.055504108664821576, about (ln 2)^3/6
    .dbE4 = row64(0x3F83B2AB6FBA4E77),        // 0.0096181291076284769
    .dbE5 = row64(0x3F55D87FE78A6731),        // 0.0013333558146428443
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
#include "powers/pow_table_r1024.inc"
        },
    .L =
        {
#include "powers/pow_table_l1024.inc"
        },
    .T =
        {
#include "powers/pow_table_dexp.inc"
        },
};

}  // namespace

LUXVM_EXPORT luxStatus luxsPowx_64f_A53(const lux64f* src, lux64f x, lux64f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src, dst)) return e;
  return lux::pow::run_powx<lux::pow::DTier::kA53, 1024, false>(kTable, src, &x, dst, len);
}
