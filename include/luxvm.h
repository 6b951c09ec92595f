/*
 * luxvm: vector mathematics on contiguous arrays.
 *
 * Every array function maps one or two arrays to one or two arrays, element
 * by element, and returns a luxStatus:
 *   0                  every lane took the normal path;
 *   negative (-6, -8)  an argument error found at entry, nothing was written;
 *   positive (12..19)  a warning: every lane was computed and stored, and the
 *                      value is the code of the last offending lane.
 *
 * Names are luxs<Func>_<type>[_A<bits>]: <type> is 32f, 64f, 32fc or 64fc;
 * the suffix picks the accuracy tier (A11/A26 fastest, A21/A50 fast,
 * A24/A53 highest).  Arrays need no alignment; a result array may be the
 * same array as a source array (partial overlap is not supported).
 *
 * This file is generated from census/luxvm.census by cmake/census.cmake
 * (the declaration block) and cmake/luxvm.h.in (everything else).
 */
/* The declarations keep their generated layout, one a line. */
/* clang-format off */
#ifndef LUXVM_H
#define LUXVM_H

#ifdef __cplusplus
extern "C" {
#endif

#if defined(LUXVM_BUILDING_LIBRARY)
#define LUXVM_API __attribute__((visibility("default")))
#else
#define LUXVM_API
#endif

typedef float lux32f;
typedef double lux64f;
typedef struct {
  lux32f re;
  lux32f im;
} lux32fc;
typedef struct {
  lux64f re;
  lux64f im;
} lux64fc;

typedef int luxStatus;

enum {
  luxOk = 0,
  luxErrSize = -6,          /* len < 1 */
  luxErrNullPtr = -8,       /* a pointer argument is null */
  luxWarnOverflow = 12,     /* a lane overflowed; raises overflow, inexact */
  luxWarnUnderflow = 17,    /* a lane underflowed; raises underflow, inexact */
  luxWarnSingularity = 18,  /* a lane hit a pole; raises divide-by-zero */
  luxWarnDomain = 19        /* a lane lay outside the domain; raises invalid */
};

typedef struct {
  int major;
  int minor;
  int buildMajor;
  int buildMinor;
  char targetTag[4];
  const char* name;
  const char* version;
  const char* buildDate;
} LuxLibraryVersion;

/* The library's one constant version record; it must not be changed. */
LUXVM_API const LuxLibraryVersion* luxvmGetLibVersion(void);

/* Abs */
LUXVM_API luxStatus luxsAbs_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAbs_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAbs_32fc_A11(const lux32fc* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAbs_32fc_A21(const lux32fc* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAbs_32fc_A24(const lux32fc* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAbs_64fc_A26(const lux64fc* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAbs_64fc_A50(const lux64fc* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAbs_64fc_A53(const lux64fc* src, lux64f* dst, int len);

/* Acos */
LUXVM_API luxStatus luxsAcos_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAcos_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAcos_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAcos_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAcos_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAcos_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAcos_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAcos_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAcos_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAcos_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAcos_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAcos_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Acosh */
LUXVM_API luxStatus luxsAcosh_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAcosh_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAcosh_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAcosh_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAcosh_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAcosh_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAcosh_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAcosh_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAcosh_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAcosh_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAcosh_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAcosh_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Add */
LUXVM_API luxStatus luxsAdd_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsAdd_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsAdd_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAdd_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);

/* Arg */
LUXVM_API luxStatus luxsArg_32fc_A11(const lux32fc* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsArg_32fc_A21(const lux32fc* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsArg_32fc_A24(const lux32fc* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsArg_64fc_A26(const lux64fc* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsArg_64fc_A50(const lux64fc* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsArg_64fc_A53(const lux64fc* src, lux64f* dst, int len);

/* Asin */
LUXVM_API luxStatus luxsAsin_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAsin_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAsin_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAsin_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAsin_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAsin_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAsin_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAsin_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAsin_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAsin_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAsin_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAsin_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Asinh */
LUXVM_API luxStatus luxsAsinh_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAsinh_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAsinh_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAsinh_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAsinh_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAsinh_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAsinh_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAsinh_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAsinh_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAsinh_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAsinh_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAsinh_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Atan */
LUXVM_API luxStatus luxsAtan_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtan_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtan_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtan_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtan_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtan_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtan_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAtan_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAtan_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAtan_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAtan_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAtan_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Atan2 */
LUXVM_API luxStatus luxsAtan2_32f_A11(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtan2_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtan2_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtan2_64f_A26(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtan2_64f_A50(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtan2_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);

/* Atanh */
LUXVM_API luxStatus luxsAtanh_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtanh_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtanh_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsAtanh_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtanh_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtanh_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsAtanh_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAtanh_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAtanh_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsAtanh_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAtanh_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsAtanh_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Cbrt */
LUXVM_API luxStatus luxsCbrt_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCbrt_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCbrt_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCbrt_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCbrt_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCbrt_64f_A53(const lux64f* src, lux64f* dst, int len);

/* CdfNorm */
LUXVM_API luxStatus luxsCdfNorm_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCdfNorm_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCdfNorm_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCdfNorm_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCdfNorm_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCdfNorm_64f_A53(const lux64f* src, lux64f* dst, int len);

/* CdfNormInv */
LUXVM_API luxStatus luxsCdfNormInv_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCdfNormInv_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCdfNormInv_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCdfNormInv_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCdfNormInv_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCdfNormInv_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Ceil */
LUXVM_API luxStatus luxsCeil_32f(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCeil_64f(const lux64f* src, lux64f* dst, int len);

/* CIS */
LUXVM_API luxStatus luxsCIS_32fc_A11(const lux32f* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCIS_32fc_A21(const lux32f* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCIS_32fc_A24(const lux32f* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCIS_64fc_A26(const lux64f* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsCIS_64fc_A50(const lux64f* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsCIS_64fc_A53(const lux64f* src, lux64fc* dst, int len);

/* Conj */
LUXVM_API luxStatus luxsConj_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsConj_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Cos */
LUXVM_API luxStatus luxsCos_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCos_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCos_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCos_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCos_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCos_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCos_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCos_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCos_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCos_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsCos_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsCos_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Cosh */
LUXVM_API luxStatus luxsCosh_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCosh_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCosh_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsCosh_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCosh_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCosh_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsCosh_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCosh_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCosh_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsCosh_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsCosh_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsCosh_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Div */
LUXVM_API luxStatus luxsDiv_32f_A11(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsDiv_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsDiv_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsDiv_64f_A26(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsDiv_64f_A50(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsDiv_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsDiv_32fc_A11(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsDiv_32fc_A21(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsDiv_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsDiv_64fc_A26(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsDiv_64fc_A50(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsDiv_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);

/* Erf */
LUXVM_API luxStatus luxsErf_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErf_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErf_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErf_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErf_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErf_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Erfc */
LUXVM_API luxStatus luxsErfc_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfc_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfc_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfc_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErfc_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErfc_64f_A53(const lux64f* src, lux64f* dst, int len);

/* ErfcInv */
LUXVM_API luxStatus luxsErfcInv_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfcInv_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfcInv_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfcInv_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErfcInv_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErfcInv_64f_A53(const lux64f* src, lux64f* dst, int len);

/* ErfInv */
LUXVM_API luxStatus luxsErfInv_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfInv_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfInv_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsErfInv_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErfInv_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsErfInv_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Exp */
LUXVM_API luxStatus luxsExp_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsExp_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsExp_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsExp_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsExp_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsExp_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsExp_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsExp_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsExp_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsExp_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsExp_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsExp_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Expm1 */
LUXVM_API luxStatus luxsExpm1_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsExpm1_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsExpm1_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsExpm1_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsExpm1_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsExpm1_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Floor */
LUXVM_API luxStatus luxsFloor_32f(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsFloor_64f(const lux64f* src, lux64f* dst, int len);

/* Hypot */
LUXVM_API luxStatus luxsHypot_32f_A11(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsHypot_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsHypot_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsHypot_64f_A26(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsHypot_64f_A50(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsHypot_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);

/* Inv */
LUXVM_API luxStatus luxsInv_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInv_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInv_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInv_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsInv_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsInv_64f_A53(const lux64f* src, lux64f* dst, int len);

/* InvCbrt */
LUXVM_API luxStatus luxsInvCbrt_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInvCbrt_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInvCbrt_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInvCbrt_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsInvCbrt_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsInvCbrt_64f_A53(const lux64f* src, lux64f* dst, int len);

/* InvSqrt */
LUXVM_API luxStatus luxsInvSqrt_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInvSqrt_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInvSqrt_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsInvSqrt_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsInvSqrt_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsInvSqrt_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Ln */
LUXVM_API luxStatus luxsLn_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLn_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLn_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLn_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLn_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLn_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLn_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsLn_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsLn_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsLn_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsLn_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsLn_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Log10 */
LUXVM_API luxStatus luxsLog10_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLog10_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLog10_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLog10_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLog10_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLog10_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLog10_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsLog10_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsLog10_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsLog10_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsLog10_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsLog10_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Log1p */
LUXVM_API luxStatus luxsLog1p_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLog1p_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLog1p_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsLog1p_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLog1p_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsLog1p_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Modf */
LUXVM_API luxStatus luxsModf_32f(const lux32f* src, lux32f* dst1, lux32f* dst2, int len);
LUXVM_API luxStatus luxsModf_64f(const lux64f* src, lux64f* dst1, lux64f* dst2, int len);

/* Mul */
LUXVM_API luxStatus luxsMul_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsMul_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsMul_32fc_A11(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsMul_32fc_A21(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsMul_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsMul_64fc_A26(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsMul_64fc_A50(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsMul_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);

/* MulByConj */
LUXVM_API luxStatus luxsMulByConj_32fc_A11(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsMulByConj_32fc_A21(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsMulByConj_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsMulByConj_64fc_A26(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsMulByConj_64fc_A50(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsMulByConj_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);

/* NearbyInt */
LUXVM_API luxStatus luxsNearbyInt_32f(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsNearbyInt_64f(const lux64f* src, lux64f* dst, int len);

/* Pow */
LUXVM_API luxStatus luxsPow_32f_A11(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow_32f_A21(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow_64f_A26(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow_64f_A50(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow_32fc_A11(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsPow_32fc_A21(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsPow_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsPow_64fc_A26(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsPow_64fc_A50(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);
LUXVM_API luxStatus luxsPow_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);

/* Pow2o3 */
LUXVM_API luxStatus luxsPow2o3_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow2o3_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow2o3_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow2o3_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow2o3_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow2o3_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Pow3o2 */
LUXVM_API luxStatus luxsPow3o2_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow3o2_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow3o2_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsPow3o2_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow3o2_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsPow3o2_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Powx */
LUXVM_API luxStatus luxsPowx_32f_A11(const lux32f* src, lux32f x, lux32f* dst, int len);
LUXVM_API luxStatus luxsPowx_32f_A21(const lux32f* src, lux32f x, lux32f* dst, int len);
LUXVM_API luxStatus luxsPowx_32f_A24(const lux32f* src, lux32f x, lux32f* dst, int len);
LUXVM_API luxStatus luxsPowx_64f_A26(const lux64f* src, lux64f x, lux64f* dst, int len);
LUXVM_API luxStatus luxsPowx_64f_A50(const lux64f* src, lux64f x, lux64f* dst, int len);
LUXVM_API luxStatus luxsPowx_64f_A53(const lux64f* src, lux64f x, lux64f* dst, int len);
LUXVM_API luxStatus luxsPowx_32fc_A11(const lux32fc* src, lux32fc x, lux32fc* dst, int len);
LUXVM_API luxStatus luxsPowx_32fc_A21(const lux32fc* src, lux32fc x, lux32fc* dst, int len);
LUXVM_API luxStatus luxsPowx_32fc_A24(const lux32fc* src, lux32fc x, lux32fc* dst, int len);
LUXVM_API luxStatus luxsPowx_64fc_A26(const lux64fc* src, lux64fc x, lux64fc* dst, int len);
LUXVM_API luxStatus luxsPowx_64fc_A50(const lux64fc* src, lux64fc x, lux64fc* dst, int len);
LUXVM_API luxStatus luxsPowx_64fc_A53(const lux64fc* src, lux64fc x, lux64fc* dst, int len);

/* Rint */
LUXVM_API luxStatus luxsRint_32f(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsRint_64f(const lux64f* src, lux64f* dst, int len);

/* Round */
LUXVM_API luxStatus luxsRound_32f(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsRound_64f(const lux64f* src, lux64f* dst, int len);

/* Sin */
LUXVM_API luxStatus luxsSin_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSin_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSin_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSin_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSin_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSin_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSin_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSin_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSin_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSin_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsSin_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsSin_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* SinCos */
LUXVM_API luxStatus luxsSinCos_32f_A11(const lux32f* src, lux32f* dst1, lux32f* dst2, int len);
LUXVM_API luxStatus luxsSinCos_32f_A21(const lux32f* src, lux32f* dst1, lux32f* dst2, int len);
LUXVM_API luxStatus luxsSinCos_32f_A24(const lux32f* src, lux32f* dst1, lux32f* dst2, int len);
LUXVM_API luxStatus luxsSinCos_64f_A26(const lux64f* src, lux64f* dst1, lux64f* dst2, int len);
LUXVM_API luxStatus luxsSinCos_64f_A50(const lux64f* src, lux64f* dst1, lux64f* dst2, int len);
LUXVM_API luxStatus luxsSinCos_64f_A53(const lux64f* src, lux64f* dst1, lux64f* dst2, int len);

/* Sinh */
LUXVM_API luxStatus luxsSinh_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSinh_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSinh_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSinh_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSinh_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSinh_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSinh_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSinh_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSinh_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSinh_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsSinh_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsSinh_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Sqr */
LUXVM_API luxStatus luxsSqr_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSqr_64f_A53(const lux64f* src, lux64f* dst, int len);

/* Sqrt */
LUXVM_API luxStatus luxsSqrt_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSqrt_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSqrt_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsSqrt_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSqrt_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSqrt_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsSqrt_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSqrt_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSqrt_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSqrt_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsSqrt_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsSqrt_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Sub */
LUXVM_API luxStatus luxsSub_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len);
LUXVM_API luxStatus luxsSub_64f_A53(const lux64f* src1, const lux64f* src2, lux64f* dst, int len);
LUXVM_API luxStatus luxsSub_32fc_A24(const lux32fc* src1, const lux32fc* src2, lux32fc* dst, int len);
LUXVM_API luxStatus luxsSub_64fc_A53(const lux64fc* src1, const lux64fc* src2, lux64fc* dst, int len);

/* Tan */
LUXVM_API luxStatus luxsTan_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTan_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTan_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTan_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsTan_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsTan_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsTan_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsTan_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsTan_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsTan_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsTan_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsTan_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Tanh */
LUXVM_API luxStatus luxsTanh_32f_A11(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTanh_32f_A21(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTanh_32f_A24(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTanh_64f_A26(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsTanh_64f_A50(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsTanh_64f_A53(const lux64f* src, lux64f* dst, int len);
LUXVM_API luxStatus luxsTanh_32fc_A11(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsTanh_32fc_A21(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsTanh_32fc_A24(const lux32fc* src, lux32fc* dst, int len);
LUXVM_API luxStatus luxsTanh_64fc_A26(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsTanh_64fc_A50(const lux64fc* src, lux64fc* dst, int len);
LUXVM_API luxStatus luxsTanh_64fc_A53(const lux64fc* src, lux64fc* dst, int len);

/* Trunc */
LUXVM_API luxStatus luxsTrunc_32f(const lux32f* src, lux32f* dst, int len);
LUXVM_API luxStatus luxsTrunc_64f(const lux64f* src, lux64f* dst, int len);

#ifdef __cplusplus
}
#endif

#endif /* LUXVM_H */
/* clang-format on */
