// luxsPow_32f_A24: a^b on binary32, tier A24 (1 ulp); the table index comes from vector operations and
// max error 0.554 ulp at a = 0x1.c1320ep-98, b = -0x1.a4a00cp-4 (MPFR sweep, 1.4M points)
#include "powers/pow_s_kernel.h"

namespace {

using lux::row32;
using lux::row64;

constexpr lux::pow::SPowTable kTable = {
    .dbOne = row64(0x3FF0000000000000),
    .dbFracMask = row64(0x000FFFFFFFFFFFFF),
    .dbTieBits = row64(0x00000000000003FF),
    .dbTwo44 = row64(0x42B0000000000000),       // 2^44
    .dbLn2 = row64(0x3FE62E42FEFA39EF),         // 0.6931471805599453
    .dbP3 = row64(0x3FD55555555512C8),          // 0.33333333333238757
    .dbP2 = row64(0xBFDFFFFFFFFFCAAE),          // -0.49999999999924227
    .dbP4 = row64(0xBFD0000000000000),          // -0.25
    .dbInvLn2x128 = row64(0x40671547652B82FE),  // 184.66496523378731 = 128/ln 2
    .dbShifter = row64(0x4338000000000000),     // 1.5*2^52
    .dbLn2by128 = row64(0x3F762E42FEFA39EF),    // 0.0054152123481245725 = ln 2/128
    .dbExpE23 = row64(0x420226AF33B1FDC1),      // 9744803446.248903 = e^23
    .dbE23 = row64(0x4037000000000000),         // 23.0
    .dbHalf = row64(0x3FE0000000000000),
    .dbSix = row64(0x4018000000000000),
    .dbHuge = row64(0x7F8000007F800000),  // 1.404448428688076e306
    .flHalf = row32(0x3F000000),
    .Log =
        {
#include "powers/pow_table_slog.inc"
        },
    .Exp =
        {
#include "powers/pow_table_sexp.inc"
        },
};

}  // namespace

LUXVM_EXPORT luxStatus luxsPow_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  return lux::pow::run_spow<true>(kTable, src1, src2, dst, len);
}
