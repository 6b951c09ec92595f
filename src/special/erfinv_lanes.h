// The row scheme of the inverse error functions and of the inverse normal
// distribution, written once over the unit's own table and shape.
//
// With y = 1 - |x| (ErfInv) or y = min(X, 2 - X) (ErfcInv with X = x,
// CdfNormInv with X = 2x), F(y) = erfinv(1 - y)/(1 - y) is smooth on each
// quarter, eighth or sixteenth of a binade of y.  The row is read off y's
// leading bits, the polynomial's variable v is y's own fraction with the
// interval's leading bits cleared, minus the centre, and the answer is
// x*F(y) or (X - 1)*G(y), where the ErfcInv rows hold -F and the CdfNormInv
// rows sqrt(2)*F.  No logarithm, root or division on this path.
//
// Lanes that are not regular (outside [2^-53, 1) in |x| and the like) enter
// the arithmetic as the argument that makes y = 1, compute harmlessly in row
// 0 with v = 0, come out as +0 and are finished by the unit's lane routine;
// the lane where y is exactly 1 (ErfcInv at 1, CdfNormInv at 1/2) is +0.
//
// These bodies set no guard: the caller's rounding and flush-to-zero act.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::erfinv {

enum class Func { kErfInv, kErfcInv, kCdfNormInv };
// ha: c0lo, c1lo, c2 ... cd, c0hi, c1hi with a compensated sum; la/ep: plain
// Horner on c0 ... cd.
enum class Layout { kCompensated, kPlain };

// Shape of a unit: function, layout, degree and the row rule of its table
// (row = top - (high word of y >> shift), fraction mask, centre).
template <Func F, Layout L, int Degree, uint32_t Top, int Shift>
struct Shape {
  static constexpr Func kFunc = F;
  static constexpr Layout kLayout = L;
  static constexpr int kDegree = Degree;
  static constexpr int kWidth = L == Layout::kCompensated ? Degree + 3 : Degree + 1;
  static constexpr uint32_t kTop = Top;
  static constexpr int kShift = Shift;
};

// A binary64 unit's table: the rows, then the constants.
template <int Rows, int Width>
struct alignas(16) Table64 {
  alignas(16) uint64_t rows[Rows][Width];
  Row64 dbOne{};        // 1.0
  Row64 dbTwo{};        // 2.0
  Row64 dbCentre{};     // Cn
  Row64 dbFracMask{};   // fraction bits below the interval's
  Row64 dbClearMask{};  // 0xFFFFFFFFF8000000: products of two cleared values are exact
  Row64 dbAbsMask{};    // 0x7FFFFFFFFFFFFFFF
  Row64 dbExpMask{};    // 0x3FF0000000000000: y's exponent field (y < 1)
  Row64 dbInvBinade{};  // 0x7FE0000000000000: minus y's exponent field gives 2^-k
  Row64 dbHalf{};       // 0.5
};

// A binary32 unit's table.
template <int Rows, int Width>
struct alignas(16) Table32 {
  alignas(16) uint32_t rows[Rows][Width];
  Row32 flOne{}, flTwo{}, flCentre{}, flFracMask{}, flClearMask{}, flAbsMask{}, flExpMask{}, flInvBinade{},
      flHalf{};
};

// The ErfcInv rows are the ErfInv rows negated: one flip of the sign bit.
template <class T, int Rows, int Width>
constexpr void negate_rows(const T (&from)[Rows][Width], T (&to)[Rows][Width]) {
  constexpr T sign = T(1) << (sizeof(T) * 8 - 1);
  for (int r = 0; r < Rows; ++r)
    for (int k = 0; k < Width; ++k) to[r][k] = from[r][k] ^ sign;
}

// ---------------------------------------------------------------------------
// Lane tests on the integer words (high word for binary64): one signed
// comparison after an addition that wraps both bounds into one.

// ErfInv: 2^-53 <= |x| < 1 (64f), 2^-24 <= |x| < 1 (32f), on the magnitude.
// ErfcInv: 2^-53 <= x < 2, 2^-24 <= x < 2; CdfNormInv: 2^-54 <= x < 1,
// 2^-25 <= x < 1, on the signed word, so that negative x fails.
template <Func F, int Bits>
struct RegularTest;
template <>
struct RegularTest<Func::kErfInv, 64> {
  static constexpr bool kAbs = true;
  static constexpr uint32_t kAdd = 0x43600000, kBound = 0x83500000;
};
template <>
struct RegularTest<Func::kErfcInv, 64> {
  static constexpr bool kAbs = false;
  static constexpr uint32_t kAdd = 0x43600000, kBound = 0x83600000;
};
template <>
struct RegularTest<Func::kCdfNormInv, 64> {
  static constexpr bool kAbs = false;
  static constexpr uint32_t kAdd = 0x43700000, kBound = 0x83600000;
};
template <>
struct RegularTest<Func::kErfInv, 32> {
  static constexpr bool kAbs = true;
  static constexpr uint32_t kAdd = 0x4C800000, kBound = 0x8C000000;
};
template <>
struct RegularTest<Func::kErfcInv, 32> {
  static constexpr bool kAbs = false;
  static constexpr uint32_t kAdd = 0x4C800000, kBound = 0x8C800000;
};
template <>
struct RegularTest<Func::kCdfNormInv, 32> {
  static constexpr bool kAbs = false;
  static constexpr uint32_t kAdd = 0x4D000000, kBound = 0x8C800000;
};

// All-ones in the int32 lanes whose word passes.
template <Func F, int Bits>
inline __m128i regular_words(__m128i words) {
  using R = RegularTest<F, Bits>;
  if constexpr (R::kAbs) words = _mm_and_si128(words, _mm_set1_epi32(0x7FFFFFFF));
  return _mm_cmplt_epi32(_mm_add_epi32(words, _mm_set1_epi32(int32_t(R::kAdd))),
                         _mm_set1_epi32(int32_t(R::kBound)));
}

inline __m128d select(__m128d m, __m128d yes, __m128d no) {
  return _mm_or_pd(_mm_and_pd(m, yes), _mm_andnot_pd(m, no));
}
inline __m128 select(__m128 m, __m128 yes, __m128 no) {
  return _mm_or_ps(_mm_and_ps(m, yes), _mm_andnot_ps(m, no));
}

// ---------------------------------------------------------------------------
// binary64, two lanes.

template <int Width>
inline __m128d gather(const uint64_t (*rows)[Width], int r0, int r1, int k) {
  return _mm_loadh_pd(_mm_load_sd(reinterpret_cast<const double*>(&rows[r0][k])),
                      reinterpret_cast<const double*>(&rows[r1][k]));
}

// Two lanes of the unit; `regular` gets the int32 mask of the lanes' test
// (low two words).  Irregular lanes come out as +0.
template <class S, int Rows>
inline __m128d pair64(const Table64<Rows, S::kWidth>& T, __m128d x, __m128i& regular) {
  constexpr int W = S::kWidth;
  const __m128i reg32 = regular_words<S::kFunc, 64>(high_words(x));
  regular = reg32;
  const __m128d reg = _mm_castsi128_pd(_mm_shuffle_epi32(reg32, _MM_SHUFFLE(1, 1, 0, 0)));
  __m128d xs, ax, X, y;
  if constexpr (S::kFunc == Func::kErfInv) {
    xs = _mm_and_pd(reg, x);  // irregular: 0, so y = 1
    ax = _mm_and_pd(xs, T.dbAbsMask.pd());
    y = _mm_sub_pd(T.dbOne.pd(), ax);
  } else {
    // irregular: X = 1 (x = 1, or x = 1/2 for CdfNormInv), so y = 1
    const __m128d neutral = S::kFunc == Func::kErfcInv ? T.dbOne.pd() : T.dbHalf.pd();
    xs = select(reg, x, neutral);
    X = S::kFunc == Func::kErfcInv ? xs : _mm_add_pd(xs, xs);
    // y = X below 1 (below 1/2 for x of CdfNormInv), else 2 - X; both exact.
    const __m128i below = _mm_cmplt_epi32(high_words(X), _mm_set1_epi32(0x3FF00000));
    y = select(_mm_castsi128_pd(_mm_shuffle_epi32(below, _MM_SHUFFLE(1, 1, 0, 0))), X,
               _mm_sub_pd(T.dbTwo.pd(), X));
  }
  // Rows: y < 1 takes top - (hi(y) >> shift), y = 1 row 0 and v = 0.
  const __m128i yw = high_words(y);
  const __m128i inrow = _mm_cmplt_epi32(yw, _mm_set1_epi32(0x3FF00000));
  const __m128i idx =
      _mm_and_si128(inrow, _mm_sub_epi32(_mm_set1_epi32(int32_t(S::kTop)), _mm_srli_epi32(yw, S::kShift)));
  const int r0 = _mm_cvtsi128_si32(idx);
  const int r1 = _mm_cvtsi128_si32(_mm_shuffle_epi32(idx, _MM_SHUFFLE(1, 1, 1, 1)));
  const __m128d ok = _mm_castsi128_pd(_mm_shuffle_epi32(inrow, _MM_SHUFFLE(1, 1, 0, 0)));
  const __m128d m = _mm_or_pd(_mm_and_pd(y, T.dbFracMask.pd()), T.dbOne.pd());
  const __m128d v = _mm_and_pd(ok, _mm_sub_pd(m, T.dbCentre.pd()));
  const uint64_t(*rows)[W] = T.rows;

  __m128d result;
  if constexpr (S::kLayout == Layout::kPlain) {
    __m128d f = gather<W>(rows, r0, r1, S::kDegree);
    for (int k = S::kDegree - 1; k >= 0; --k) f = _mm_add_pd(_mm_mul_pd(f, v), gather<W>(rows, r0, r1, k));
    if constexpr (S::kFunc == Func::kErfInv)
      result = _mm_mul_pd(xs, f);
    else
      result = _mm_mul_pd(_mm_sub_pd(X, T.dbOne.pd()), f);
  } else {
    const __m128d clear = T.dbClearMask.pd();
    __m128d w = v;
    if constexpr (S::kFunc == Func::kErfInv) {
      // 1 - |x| = y + e exactly; e carried at the row's scale: e * 2^-k.
      const __m128d e = _mm_sub_pd(_mm_sub_pd(T.dbOne.pd(), y), ax);
      const __m128d p = _mm_castsi128_pd(
          _mm_sub_epi64(T.dbInvBinade.pi(), _mm_and_si128(_mm_castpd_si128(y), T.dbExpMask.pi())));
      w = _mm_add_pd(v, _mm_mul_pd(e, p));
    }
    const __m128d vh = _mm_and_pd(v, clear);
    const __m128d wl = _mm_sub_pd(w, vh);
    const __m128d c0hi = gather<W>(rows, r0, r1, W - 2);
    const __m128d c1hi = gather<W>(rows, r0, r1, W - 1);
    const __m128d p1 = _mm_mul_pd(vh, c1hi);  // exact
    const __m128d p2 = _mm_mul_pd(wl, c1hi);
    __m128d q = gather<W>(rows, r0, r1, S::kDegree);
    for (int k = S::kDegree - 1; k >= 0; --k) q = _mm_add_pd(_mm_mul_pd(q, w), gather<W>(rows, r0, r1, k));
    const __m128d r = _mm_and_pd(_mm_add_pd(c0hi, p1), clear);
    const __m128d rr = _mm_add_pd(_mm_add_pd(_mm_add_pd(_mm_sub_pd(c0hi, r), p1), p2), q);
    __m128d a, ah, al;
    if constexpr (S::kFunc == Func::kErfInv) {
      a = xs;
      ah = _mm_and_pd(xs, clear);
      al = _mm_sub_pd(xs, ah);
    } else {
      a = _mm_sub_pd(X, T.dbOne.pd());
      ah = _mm_and_pd(a, clear);
      al = _mm_sub_pd(X, _mm_add_pd(ah, T.dbOne.pd()));
    }
    result = _mm_add_pd(_mm_mul_pd(ah, r), _mm_add_pd(_mm_mul_pd(r, al), _mm_mul_pd(rr, a)));
  }
  return _mm_and_pd(ok, result);
}

// ---------------------------------------------------------------------------
// binary32, four lanes.

template <class S, int Rows>
inline __m128 quad32(const Table32<Rows, S::kWidth>& T, __m128 x, __m128i& regular) {
  constexpr int W = S::kWidth;
  const __m128i reg = regular_words<S::kFunc, 32>(_mm_castps_si128(x));
  regular = reg;
  const __m128 regm = _mm_castsi128_ps(reg);
  __m128 xs, ax, X, y;
  if constexpr (S::kFunc == Func::kErfInv) {
    xs = _mm_and_ps(regm, x);
    ax = _mm_and_ps(xs, T.flAbsMask.ps());
    y = _mm_sub_ps(T.flOne.ps(), ax);
  } else {
    const __m128 neutral = S::kFunc == Func::kErfcInv ? T.flOne.ps() : T.flHalf.ps();
    xs = select(regm, x, neutral);
    X = S::kFunc == Func::kErfcInv ? xs : _mm_add_ps(xs, xs);
    const __m128i below = _mm_cmplt_epi32(_mm_castps_si128(X), _mm_set1_epi32(0x3F800000));
    y = select(_mm_castsi128_ps(below), X, _mm_sub_ps(T.flTwo.ps(), X));
  }
  const __m128i yw = _mm_castps_si128(y);
  const __m128i inrow = _mm_cmplt_epi32(yw, _mm_set1_epi32(0x3F800000));
  const __m128i idx =
      _mm_and_si128(inrow, _mm_sub_epi32(_mm_set1_epi32(int32_t(S::kTop)), _mm_srli_epi32(yw, S::kShift)));
  alignas(16) int32_t r[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(r), idx);
  const __m128 ok = _mm_castsi128_ps(inrow);
  const __m128 m = _mm_or_ps(_mm_and_ps(y, T.flFracMask.ps()), T.flOne.ps());
  const __m128 v = _mm_and_ps(ok, _mm_sub_ps(m, T.flCentre.ps()));
  const float* base = reinterpret_cast<const float*>(T.rows);

  // Rows are loaded whole and transposed across the lanes: c[k] holds
  // coefficient k of the four lanes.
  __m128 c[8];
  if constexpr (W == 2) {
    const __m128 a =
        _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(base + r[0] * W)),
                     reinterpret_cast<const __m64*>(base + r[1] * W));
    const __m128 b =
        _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(base + r[2] * W)),
                     reinterpret_cast<const __m64*>(base + r[3] * W));
    c[0] = _mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0));
    c[1] = _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1));
  } else {
    for (int h = 0; h < W; h += 4) {
      __m128 r0 = _mm_load_ps(base + r[0] * W + h), r1 = _mm_load_ps(base + r[1] * W + h);
      __m128 r2 = _mm_load_ps(base + r[2] * W + h), r3 = _mm_load_ps(base + r[3] * W + h);
      _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
      c[h] = r0;
      c[h + 1] = r1;
      c[h + 2] = r2;
      c[h + 3] = r3;
    }
  }

  __m128 result;
  if constexpr (S::kLayout == Layout::kPlain) {
    __m128 f = c[S::kDegree];
    for (int k = S::kDegree - 1; k >= 0; --k) f = _mm_add_ps(_mm_mul_ps(f, v), c[k]);
    if constexpr (S::kFunc == Func::kErfInv)
      result = _mm_mul_ps(xs, f);
    else
      result = _mm_mul_ps(_mm_sub_ps(X, T.flOne.ps()), f);
  } else {
    const __m128 clear = T.flClearMask.ps();
    __m128 w = v;
    if constexpr (S::kFunc == Func::kErfInv) {
      const __m128 e = _mm_sub_ps(_mm_sub_ps(T.flOne.ps(), y), ax);
      const __m128 p = _mm_castsi128_ps(
          _mm_sub_epi32(T.flInvBinade.pi(), _mm_and_si128(_mm_castps_si128(y), T.flExpMask.pi())));
      w = _mm_add_ps(v, _mm_mul_ps(e, p));
    }
    const __m128 vh = _mm_and_ps(v, clear);
    const __m128 wl = _mm_sub_ps(w, vh);
    const __m128 c0hi = c[W - 2], c1hi = c[W - 1];
    const __m128 p1 = _mm_mul_ps(vh, c1hi);
    const __m128 p2 = _mm_mul_ps(wl, c1hi);
    __m128 q = c[S::kDegree];
    for (int k = S::kDegree - 1; k >= 0; --k) q = _mm_add_ps(_mm_mul_ps(q, w), c[k]);
    const __m128 rh = _mm_and_ps(_mm_add_ps(c0hi, p1), clear);
    const __m128 rr = _mm_add_ps(_mm_add_ps(_mm_add_ps(_mm_sub_ps(c0hi, rh), p1), p2), q);
    __m128 a, ah, al;
    if constexpr (S::kFunc == Func::kErfInv) {
      a = xs;
      ah = _mm_and_ps(xs, clear);
      al = _mm_sub_ps(xs, ah);
    } else {
      a = _mm_sub_ps(X, T.flOne.ps());
      ah = _mm_and_ps(a, clear);
      al = _mm_sub_ps(X, _mm_add_ps(ah, T.flOne.ps()));
    }
    result = _mm_add_ps(_mm_mul_ps(ah, rh), _mm_add_ps(_mm_mul_ps(rh, al), _mm_mul_ps(rr, a)));
  }
  return _mm_and_ps(ok, result);
}

}  // namespace lux::erfinv

namespace lux::erfinv {

// The masked frame of these units: a block computes and stores every lane,
// and its irregular lanes (the mask) are then finished one by one by the
// lane routine, in rising order.  The block's inputs are kept first, as an
// in-place call overwrites them with the stores.  Lane values move only
// through SSE loads and stores (a signalling NaN stays as it is).  A tail lane runs the same
// vector arithmetic on its own value, broadcast.
template <class S, int Block, class Tab, int (*Lane)(const double*, double*)>
struct Kernel64 {
  const double* src;
  double* dst;
  CallState<lux64f>& call;
  const Tab& T;
  alignas(16) double in[Block];

  unsigned block(int i) {
    for (int p = 0; p < Block; p += 2) _mm_store_pd(in + p, load2(src + i + p));
    unsigned mask = 0;
    for (int p = 0; p < Block; p += 2) {
      __m128i reg;
      store2(dst + i + p, pair64<S>(T, _mm_load_pd(in + p), reg));
      mask |= unsigned(~_mm_movemask_ps(_mm_castsi128_ps(reg)) & 3) << p;
    }
    return mask;
  }
  unsigned tail(int i) {
    double* x = in + (i & (Block - 1));
    _mm_store_sd(x, load1(src + i));
    __m128i reg;
    store1(dst + i, pair64<S>(T, _mm_load1_pd(x), reg));
    return unsigned(~_mm_movemask_ps(_mm_castsi128_ps(reg)) & 1);
  }
  void offend(int i) {
    const int status = Lane(in + (i & (Block - 1)), dst + i);
    if (status != luxOk) call.warn(luxStatus(status), i);
  }
};

template <class S, int Block, class Tab, int (*Lane)(const float*, float*)>
struct Kernel32 {
  const float* src;
  float* dst;
  CallState<lux32f>& call;
  const Tab& T;
  alignas(16) float in[Block];

  unsigned block(int i) {
    for (int p = 0; p < Block; p += 4) _mm_store_ps(in + p, load4(src + i + p));
    unsigned mask = 0;
    for (int p = 0; p < Block; p += 4) {
      __m128i reg;
      store4(dst + i + p, quad32<S>(T, _mm_load_ps(in + p), reg));
      mask |= unsigned(~_mm_movemask_ps(_mm_castsi128_ps(reg)) & 15) << p;
    }
    return mask;
  }
  unsigned tail(int i) {
    float* x = in + (i & (Block - 1));
    _mm_store_ss(x, load1(src + i));
    __m128i reg;
    store1(dst + i, quad32<S>(T, _mm_load1_ps(x), reg));
    return unsigned(~_mm_movemask_ps(_mm_castsi128_ps(reg)) & 1);
  }
  void offend(int i) {
    const int status = Lane(in + (i & (Block - 1)), dst + i);
    if (status != luxOk) call.warn(luxStatus(status), i);
  }
};

// The whole export: entry checks, no guard, the masked driver, the latch.
template <class S, int Block, int (*Lane)(const double*, double*), class Tab>
inline luxStatus run64(const Tab& T, const double* src, double* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  CallState<lux64f> call(src, src, dst, dst);
  Kernel64<S, Block, Tab, Lane> k{src, dst, call, T, {}};
  run_masked<Block>(len, k);
  return call.status();
}
template <class S, int Block, int (*Lane)(const float*, float*), class Tab>
inline luxStatus run32(const Tab& T, const float* src, float* dst, int len) {
  if (const luxStatus e = check_entry(len, src, dst)) return e;
  CallState<lux32f> call(src, src, dst, dst);
  Kernel32<S, Block, Tab, Lane> k{src, dst, call, T, {}};
  run_masked<Block>(len, k);
  return call.status();
}

// The constants behind the rows.
template <int Rows, int Width>
constexpr void set_constants(Table64<Rows, Width>& t, uint64_t centre, uint64_t frac_mask) {
  t.dbOne = row64(0x3FF0000000000000);  // 1.0
  t.dbTwo = row64(0x4000000000000000);  // 2.0
  t.dbCentre = row64(centre);
  t.dbFracMask = row64(frac_mask);
  t.dbClearMask = row64(0xFFFFFFFFF8000000);
  t.dbAbsMask = row64(0x7FFFFFFFFFFFFFFF);
  t.dbExpMask = row64(0x3FF0000000000000);
  t.dbInvBinade = row64(0x7FE0000000000000);
  t.dbHalf = row64(0x3FE0000000000000);  // 0.5
}
template <int Rows, int Width>
constexpr void set_constants(Table32<Rows, Width>& t, uint32_t centre, uint32_t frac_mask) {
  t.flOne = row32(0x3F800000);
  t.flTwo = row32(0x40000000);
  t.flCentre = row32(centre);
  t.flFracMask = row32(frac_mask);
  t.flClearMask = row32(0xFFFFF000);
  t.flAbsMask = row32(0x7FFFFFFF);
  t.flExpMask = row32(0x3F800000);
  t.flInvBinade = row32(0x7F000000);
  t.flHalf = row32(0x3F000000);
}

}  // namespace lux::erfinv
