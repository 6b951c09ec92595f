// luxsAtan2_32f_A24: two-argument inverse tangent of binary32 within 1 ulp.
// max error 0.836 ulp at y = 0x1.52e5fap+2, x = 0x1.bc3718p+1 (luxvm accuracy).
//
// In chunks of up to 128 lanes, through two routines with a work area
// between them (also used by the complex argument, atan2_kernels.h):
// Part1 sorts ay/ax into five classes (ay against 0.375, 0.72, 1.75 and
// 2.6875 times ax, on the bits), forms t = (ay - b ax)/(ax + b ay) for
// b = 0, 1/2, 1, 2 (class 4: -ax/ay) - the numerators are exact by Sterbenz -
// and divides in double through the reciprocal estimate and the polynomial
// 1 + d + d^2 + d^3; t's head th (24 bits) and its tail, added to the tail of
// atan b, go to the work area.  Part2 adds th P(th^2) (P of degree 4, fitted
// on [0, 0.36^2]), the angle, the quadrant and the signs.
#include "trig/atan2_kernels.h"
#include "trig/satan2.h"

namespace {

struct alignas(16) Table {
  uint32_t angle[5][2];                       // {head, tail} of atan b, b = 0, 1/2, 1, 2, inf
  lux::Row32 ratio1, ratio2, ratio3, ratio4;  // 0.375, 0.72, 1.75, 2.6875
  lux::Row32 p1, p2, p3, p4;                  // P = (p1 w + p2) w + (p3 w + p4) z
  lux::Row32 flHalf, flTwo, flOne, flAbsMask, flSignMask;
  lux::Row32 flPiHead, flPiTail;  // pi = head - tail
  lux::Row64 dbTwo, dbHeadMask;   // 2.0; clears the low 29 bits
};

constexpr Table kTable = {
    {
#include "trig/atan2_s24_angles.inc"
    },
    lux::row32(0x3EC00000),  // 0.375
    lux::row32(0x3F3851EC),  // 0.72
    lux::row32(0x3FE00000),  // 1.75
    lux::row32(0x402C0000),  // 2.6875
    lux::row32(0x3DAE1329),  // 0.0850203186
    lux::row32(0x3E4CAA3B),  // 0.199869999
    lux::row32(0xBE0F4E4E),  // -0.139948159
    lux::row32(0xBEAAAA6C),  // -0.333331943
    lux::row32(0x3F000000),
    lux::row32(0x40000000),
    lux::row32(0x3F800000),
    lux::row32(0x7FFFFFFF),
    lux::row32(0x80000000),
    lux::row32(0x40490FE0),  // 3.14159393
    lux::row32(0x35ABBBD3),  // 1.27951569e-06
    lux::row64(0x4000000000000000),
    lux::row64(0xFFFFFFFFE0000000),
};

using lux::atan2_32::select;

// The lanes that take fpatan: a magnitude out of the common range, or
// |y/x| below about 2^-100, whose result would near the subnormals, where the
// single head of t loses bits.
inline int to_x87(__m128 y, __m128 x) {
  const __m128i abs = kTable.flAbsMask.pi();
  const __m128i gap = _mm_sub_epi32(_mm_and_si128(lux::as_int(x), abs), _mm_and_si128(lux::as_int(y), abs));
  const int tiny = _mm_movemask_ps(lux::as_ps(_mm_cmpgt_epi32(gap, _mm_set1_epi32(100 << 23))));
  return lux::atan2_32::out_of_range(y, x) | tiny;
}

// Per lane of a register: class column values by nested selects, highest first.
inline __m128 by_class(__m128 c1, __m128 c2, __m128 c3, __m128 c4, __m128 v0, __m128 v1, __m128 v2, __m128 v3,
                       __m128 v4) {
  return select(c4, v4, select(c3, v3, select(c2, v2, select(c1, v1, v0))));
}
inline __m128 angle_part(int part, __m128 c1, __m128 c2, __m128 c3, __m128 c4) {
  const Table& T = kTable;
  auto row = [&](int k) { return _mm_castsi128_ps(_mm_set1_epi32(int32_t(T.angle[k][part]))); };
  return by_class(c1, c2, c3, c4, row(0), row(1), row(2), row(3), row(4));
}

// 1/d * n in double for two lanes of single d and n.
inline __m128d quotient(__m128 n, __m128 d) {
  const Table& T = kTable;
  const __m128d nd = _mm_cvtps_pd(n), dd = _mm_cvtps_pd(d);
  const __m128d r0 = _mm_cvtps_pd(_mm_rcp_ps(d));
  const __m128d e = _mm_mul_pd(r0, dd);
  const __m128d q = _mm_sub_pd(T.dbTwo.pd(), e);
  const __m128d inv = _mm_mul_pd(_mm_mul_pd(_mm_add_pd(_mm_mul_pd(e, e), _mm_sub_pd(q, e)), q), r0);
  return _mm_mul_pd(inv, nd);
}

// Part1 on four lanes; out-of-range lanes (left to fpatan in Part2) are
// worked as 1 : 1 so that they raise no flag of their own.
void part1_4(__m128 y, __m128 x, float* work_t, float* work_lo, float* work_head) {
  const Table& T = kTable;
  const int out = to_x87(y, x);
  const __m128 keep = lux::as_ps(
      _mm_cmpeq_epi32(_mm_and_si128(_mm_set1_epi32(out), _mm_set_epi32(8, 4, 2, 1)), _mm_setzero_si128()));
  const __m128 ay = select(keep, _mm_and_ps(y, T.flAbsMask.ps()), T.flOne.ps());
  const __m128 ax = select(keep, _mm_and_ps(x, T.flAbsMask.ps()), T.flOne.ps());
  const __m128i ayi = lux::as_int(ay);
  const __m128 c1 = lux::as_ps(
      _mm_xor_si128(_mm_cmplt_epi32(ayi, lux::as_int(_mm_mul_ps(T.ratio1.ps(), ax))), _mm_set1_epi32(-1)));
  const __m128 c2 = lux::as_ps(
      _mm_xor_si128(_mm_cmplt_epi32(ayi, lux::as_int(_mm_mul_ps(T.ratio2.ps(), ax))), _mm_set1_epi32(-1)));
  const __m128 c3 = lux::as_ps(
      _mm_xor_si128(_mm_cmplt_epi32(ayi, lux::as_int(_mm_mul_ps(T.ratio3.ps(), ax))), _mm_set1_epi32(-1)));
  const __m128 c4 = lux::as_ps(_mm_cmpgt_epi32(ayi, lux::as_int(_mm_mul_ps(T.ratio4.ps(), ax))));
  const __m128 n =
      by_class(c1, c2, c3, c4, ay, _mm_sub_ps(ay, _mm_mul_ps(T.flHalf.ps(), ax)), _mm_sub_ps(ay, ax),
               _mm_sub_ps(ay, _mm_mul_ps(T.flTwo.ps(), ax)), _mm_xor_ps(ax, T.flSignMask.ps()));
  const __m128 d = by_class(c1, c2, c3, c4, ax, _mm_add_ps(ax, _mm_mul_ps(T.flHalf.ps(), ay)),
                            _mm_add_ps(ax, ay), _mm_add_ps(ax, _mm_mul_ps(T.flTwo.ps(), ay)), ay);
  const __m128d t_lo = quotient(n, d);
  const __m128d t_hi = quotient(_mm_movehl_ps(n, n), _mm_movehl_ps(d, d));
  const __m128d th_lo = _mm_and_pd(t_lo, T.dbHeadMask.pd()), th_hi = _mm_and_pd(t_hi, T.dbHeadMask.pd());
  const __m128 th = _mm_movelh_ps(_mm_cvtpd_ps(th_lo), _mm_cvtpd_ps(th_hi));
  const __m128 tl =
      _mm_movelh_ps(_mm_cvtpd_ps(_mm_sub_pd(t_lo, th_lo)), _mm_cvtpd_ps(_mm_sub_pd(t_hi, th_hi)));
  _mm_storeu_ps(work_t, th);
  _mm_storeu_ps(work_lo, _mm_add_ps(tl, angle_part(1, c1, c2, c3, c4)));
  _mm_storeu_ps(work_head, angle_part(0, c1, c2, c3, c4));
}

__m128 part2_4(__m128 y, __m128 x, __m128 t, __m128 lo, __m128 head) {
  const Table& T = kTable;
  const __m128 sy = _mm_and_ps(y, T.flSignMask.ps()), sx = _mm_and_ps(x, T.flSignMask.ps());
  const __m128 neg = lux::as_ps(_mm_srai_epi32(lux::as_int(x), 31));
  const __m128 kpi = _mm_and_ps(neg, T.flPiHead.ps()), kpl = _mm_and_ps(neg, T.flPiTail.ps());
  const __m128 z = _mm_mul_ps(t, t);
  const __m128 w = _mm_mul_ps(z, z);
  const __m128 p = _mm_add_ps(_mm_mul_ps(_mm_add_ps(_mm_mul_ps(T.p1.ps(), w), T.p2.ps()), w),
                              _mm_mul_ps(_mm_add_ps(_mm_mul_ps(T.p3.ps(), w), T.p4.ps()), z));
  __m128 v = _mm_add_ps(_mm_add_ps(_mm_add_ps(_mm_mul_ps(p, t), _mm_add_ps(kpl, lo)), t), head);
  v = _mm_add_ps(_mm_or_ps(v, sx), kpi);
  return _mm_or_ps(v, sy);
}

}  // namespace

extern "C" void _orksAtan2_HA_Part1(int n, const lux32f* y, const lux32f* x, lux32f* work) {
  float* work_t = work;
  float* work_lo = work + kAtan2Chunk;
  float* work_head = work + 2 * kAtan2Chunk;
  int i = 0;
  for (; i + 4 <= n; i += 4)
    part1_4(lux::load4(y + i), lux::load4(x + i), work_t + i, work_lo + i, work_head + i);
  for (; i < n; ++i) {
    alignas(16) float t[4], lo[4], head[4];
    part1_4(_mm_load_ps1(y + i), _mm_load_ps1(x + i), t, lo, head);
    work_t[i] = t[0];
    work_lo[i] = lo[0];
    work_head[i] = head[0];
  }
}

extern "C" void _orksAtan2_HA_Part2(int n, const lux32f* y, const lux32f* x, lux32f* dst, lux32f* work) {
  const float* work_t = work;
  const float* work_lo = work + kAtan2Chunk;
  const float* work_head = work + 2 * kAtan2Chunk;
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m128 yv = lux::load4(y + i), xv = lux::load4(x + i);
    const int out = to_x87(yv, xv);
    const __m128 r =
        part2_4(yv, xv, lux::load4(work_t + i), lux::load4(work_lo + i), lux::load4(work_head + i));
    if (__builtin_expect(out == 0, 1)) {
      lux::store4(dst + i, r);
      continue;
    }
    alignas(16) float rv[4], yk[4], xk[4];
    _mm_store_ps(rv, r);
    _mm_store_ps(yk, yv);
    _mm_store_ps(xk, xv);
    for (int k = 0; k < 4; ++k) {
      if (out >> k & 1)
        lux::atan2_32::fpatan(yk + k, xk + k, dst + i + k);
      else
        lux::store1(dst + i + k, _mm_load_ss(rv + k));
    }
  }
  for (; i < n; ++i) {
    const __m128 yv = _mm_load_ps1(y + i), xv = _mm_load_ps1(x + i);
    if (__builtin_expect(to_x87(yv, xv) & 1, 0)) {
      lux::atan2_32::fpatan(y + i, x + i, dst + i);
      continue;
    }
    lux::store1(dst + i, part2_4(yv, xv, _mm_load_ps1(work_t + i), _mm_load_ps1(work_lo + i),
                                 _mm_load_ps1(work_head + i)));
  }
}

LUXVM_EXPORT luxStatus luxsAtan2_32f_A24(const lux32f* src1, const lux32f* src2, lux32f* dst, int len) {
  if (const luxStatus e = lux::check_entry(len, src1, src2, dst)) return e;
  lux::RoundNearestGuard guard;
  alignas(16) float work[kAtan2WorkFloats];
  for (int i = 0; i < len; i += kAtan2Chunk) {
    const int n = len - i < kAtan2Chunk ? len - i : kAtan2Chunk;
    _orksAtan2_HA_Part1(n, src1 + i, src2 + i, work);
    _orksAtan2_HA_Part2(n, src1 + i, src2 + i, dst + i, work);
  }
  return luxOk;
}
