// Mechanism shared by the inverse hyperbolic units (Asinh, Acosh, Atanh):
// lane selection, the masked block kernel of the per-lane tiers, the block
// kernel of the binary32 top tiers that send a whole block to their scalar
// routine, and the pieces of the extended-precision top tier of binary64.
// Every unit keeps its own table, constants and arithmetic; the pieces here
// decide only which lanes get which arithmetic and when a status is latched.
#pragma once

#include <pmmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::invhyp {

using lux::Row32;
using lux::Row64;

inline __m128 select(__m128 mask, __m128 yes, __m128 no) {
  return _mm_or_ps(_mm_and_ps(mask, yes), _mm_andnot_ps(mask, no));
}
inline __m128d select(__m128d mask, __m128d yes, __m128d no) {
  return _mm_or_pd(_mm_and_pd(mask, yes), _mm_andnot_pd(mask, no));
}

// c[0] v^(N-1) + ... + c[N-1] by Horner's rule, highest coefficient first.
template <int N>
inline __m128 horner(const Row32 (&c)[N], __m128 v) {
  __m128 p = c[0].ps();
  for (int k = 1; k < N; ++k) p = _mm_add_ps(_mm_mul_ps(p, v), c[k].ps());
  return p;
}
template <int N>
inline __m128d horner(const Row64 (&c)[N], __m128d v) {
  __m128d p = c[0].pd();
  for (int k = 1; k < N; ++k) p = _mm_add_pd(_mm_mul_pd(p, v), c[k].pd());
  return p;
}

// Unsigned (word - bias) < span on every lane of four 32-bit words, as a
// signed compare after flipping the sign bits.
inline bool all_within(__m128i words, uint32_t bias, uint32_t span) {
  const __m128i flip = _mm_set1_epi32(int32_t(0x80000000));
  const __m128i d = _mm_xor_si128(_mm_sub_epi32(words, _mm_set1_epi32(int32_t(bias))), flip);
  const __m128i ok = _mm_cmplt_epi32(d, _mm_xor_si128(_mm_set1_epi32(int32_t(span)), flip));
  return _mm_movemask_ps(_mm_castsi128_ps(ok)) == 0xF;
}

// Both vectors of a binary32 block: every lane's bits, ANDed with `mask`, in
// [from, from + span).
inline bool block_within(__m128 x0, __m128 x1, uint32_t mask, uint32_t from, uint32_t span) {
  const __m128i m = _mm_set1_epi32(int32_t(mask));
  return all_within(_mm_and_si128(as_int(x0), m), from, span) &&
         all_within(_mm_and_si128(as_int(x1), m), from, span);
}

// The high words of the four binary64 lanes of a block.
inline __m128i high_words4(__m128d x0, __m128d x1) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(x0), _mm_castpd_ps(x1), _MM_SHUFFLE(3, 1, 3, 1)));
}

// One lane in every position of a vector, so that the arithmetic on the
// other positions raises no flag the lane itself would not raise.
inline __m128 broadcast(const float* p) { return _mm_load1_ps(p); }
inline __m128d broadcast(const double* p) { return _mm_loaddup_pd(p); }

template <class Elem>
struct VectorOf;
template <>
struct VectorOf<float> {
  using V = __m128;
  using Bits = uint32_t;
  static V load(const float* p) { return load4(p); }
  static void store(float* p, V v) { store4(p, v); }
};
template <>
struct VectorOf<double> {
  using V = __m128d;
  using Bits = uint64_t;
  static V load(const double* p) { return load2(p); }
  static void store(double* p, V v) { store2(p, v); }
};

// The per-lane tiers (frame kind F5, and F3 for the families without a
// status).  A Unit provides:
//   using Elem, Table;
//   static bool main_range(t, x0, x1)      every lane of the block on the main path
//   template <bool Masked> static V eval(t, x)
//       the kernel's arithmetic; Masked adds the selections for the lanes off
//       the main path.  For a lane on the main path both give the same bits,
//       so a lane's value does not depend on its neighbours.
//   static luxStatus status(Bits x)       the status a lane's input sets
// Statuses come after the block is stored, lowest lane first; they are taken
// from the inputs before the stores, which an in-place call overwrites.
template <class Unit>
struct MaskedKernel {
  using Elem = typename Unit::Elem;
  using Vec = VectorOf<Elem>;
  using V = typename Vec::V;
  using Bits = typename Vec::Bits;
  static constexpr int kWidth = 16 / int(sizeof(Elem));
  static constexpr int kBlock = 2 * kWidth;

  const Elem* src;
  Elem* dst;
  CallState<Elem>& call;
  const typename Unit::Table& t;
  luxStatus status_[kBlock] = {};

  unsigned block(int i) {
    const V x0 = Vec::load(src + i), x1 = Vec::load(src + i + kWidth);
    if (__builtin_expect(Unit::main_range(t, x0, x1), 1)) {
      Vec::store(dst + i, Unit::template eval<false>(t, x0));
      Vec::store(dst + i + kWidth, Unit::template eval<false>(t, x1));
      return 0;
    }
    return masked_block(i, x0, x1);
  }

  __attribute__((noinline)) unsigned masked_block(int i, V x0, V x1) {
    alignas(16) Bits in[kBlock];
    _mm_store_si128(reinterpret_cast<__m128i*>(in), as_int(x0));
    _mm_store_si128(reinterpret_cast<__m128i*>(in) + 1, as_int(x1));
    Vec::store(dst + i, Unit::template eval<true>(t, x0));
    Vec::store(dst + i + kWidth, Unit::template eval<true>(t, x1));
    unsigned mask = 0;
    for (int b = 0; b < kBlock; ++b) {
      status_[b] = Unit::status(in[b]);
      if (status_[b] != luxOk) mask |= 1u << b;
    }
    return mask;
  }

  unsigned tail(int i) {
    const V x = broadcast(src + i);
    Bits in;
    __builtin_memcpy(&in, src + i, sizeof in);
    store1(dst + i, Unit::template eval<true>(t, x));
    status_[i & (kBlock - 1)] = Unit::status(in);
    return status_[i & (kBlock - 1)] != luxOk;
  }

  void offend(int i) { call.warn(status_[i & (kBlock - 1)], i); }

  static luxStatus run(const typename Unit::Table& t, const Elem* src, Elem* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    CallState<Elem> call(src, src, dst, dst);
    MaskedKernel k{src, dst, call, t};
    run_masked<kBlock>(len, k);
    return call.status();
  }
};

// The binary32 top tiers of Asinh and Acosh (frame kind F4): a block of 8
// stays on the vector path when every lane passes the unit's test; otherwise
// all 8 lanes, and every tail lane, go to the unit's scalar routine.
//   static bool vector_range(t, x0, x1);  static __m128 quad(t, x);
//   static void scalar(t, const float* x, float* out, CallState&, int i);
template <class Unit>
struct ScalarFallbackKernel {
  const float* src;
  float* dst;
  CallState<lux32f>& call;
  const typename Unit::Table& t;

  bool block(int i) {
    const __m128 x0 = load4(src + i), x1 = load4(src + i + 4);
    if (!Unit::vector_range(t, x0, x1)) return false;
    store4(dst + i, Unit::quad(t, x0));
    store4(dst + i + 4, Unit::quad(t, x1));
    return true;
  }
  void lane(int i) { Unit::scalar(t, src + i, dst + i, call, i); }
  void tail(int i) { lane(i); }

  static luxStatus run(const typename Unit::Table& t, const lux32f* src, lux32f* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    CallState<lux32f> call(src, src, dst, dst);
    ScalarFallbackKernel k{src, dst, call, t};
    run_block_redo<8>(len, k);
    return call.status();
  }
};

// ---------------------------------------------------------------------------
// Binary32 argument split: w = 2^e * m with m in [1, 2) for a positive normal
// w; e as a float (exact).
struct SplitF {
  __m128 e, m;
};
inline SplitF split_unit(__m128 w) {
  const __m128i b = as_int(w);
  const __m128i ei = _mm_sub_epi32(_mm_srli_epi32(b, 23), _mm_set1_epi32(127));
  const __m128 m =
      as_ps(_mm_or_si128(_mm_and_si128(b, _mm_set1_epi32(0x007FFFFF)), _mm_set1_epi32(0x3F800000)));
  return {_mm_cvtepi32_ps(ei), m};
}

// ln w of the binary32 per-lane tiers: w = 2^e * m, t = m - 1 in [0, 1),
// t L(t) + e c (c = ln 2, or ln(2)/2 for the half logarithm); `extra` adds
// to e (1 in the lanes where w stands for 2|x|, else 0).
template <int N>
inline __m128 log_t_poly(__m128 w, __m128 extra, const Row32 (&l)[N], __m128 c) {
  const SplitF sp = split_unit(w);
  const __m128 t = _mm_sub_ps(sp.m, _mm_set1_ps(1.0f));
  return _mm_add_ps(_mm_mul_ps(t, horner(l, t)), _mm_mul_ps(_mm_add_ps(sp.e, extra), c));
}

// The binary32 lanes whose bits, as signed integers, lie above `above`:
// there the square of the argument would overflow, and the kernels take
// ln|x| + ln 2 (extra = 1 for the exponent).  `arg` is v with those lanes
// replaced by 2.0, so that the arithmetic of the main formula on them
// raises no flag.  Without Masked no lane is huge.
struct HugeLanes {
  __m128 mask, arg, extra;
};
template <bool Masked>
inline HugeLanes huge_lanes(__m128 v, uint32_t above) {
  if constexpr (!Masked) return {_mm_setzero_ps(), v, _mm_setzero_ps()};
  const __m128 mask = as_ps(_mm_cmpgt_epi32(as_int(v), _mm_set1_epi32(int32_t(above))));
  return {mask, select(mask, _mm_set1_ps(2.0f), v), _mm_and_ps(mask, _mm_set1_ps(1.0f))};
}

// The same split with m in [sqrt(2)/2, sqrt(2)): where the fraction f of w
// makes f + carry reach 2^23 (1.f at or above the square root of 2, with the
// unit's carry constant), m = 1.f / 2 and e counts one more.
inline SplitF split_sqrt2(__m128 w, uint32_t carry) {
  const __m128i b = as_int(w);
  const __m128i f = _mm_and_si128(b, _mm_set1_epi32(0x007FFFFF));
  const __m128i sft =
      _mm_and_si128(_mm_add_epi32(f, _mm_set1_epi32(int32_t(carry))), _mm_set1_epi32(0x00800000));
  const __m128i ei =
      _mm_add_epi32(_mm_sub_epi32(_mm_srli_epi32(b, 23), _mm_set1_epi32(127)), _mm_srli_epi32(sft, 23));
  const __m128 m = as_ps(_mm_or_si128(f, _mm_xor_si128(sft, _mm_set1_epi32(0x3F800000))));
  return {_mm_cvtepi32_ps(ei), m};
}

// Binary64: the plain exponent of two positive normal lanes, as doubles,
// with `bias` (1023, or 1022 to add one), from the high words.
inline __m128d exponent_pd(__m128d w, __m128i bias) {
  const __m128i hi = high_words(w);
  return _mm_cvtepi32_pd(_mm_sub_epi32(_mm_srli_epi32(hi, 20), bias));
}
// A table word as the low lane of a vector, without a floating-point move.
inline __m128d as_sd(const uint64_t& bits) {
  return as_pd(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&bits)));
}
inline __m128d mantissa_pd(__m128d w) {
  const __m128i frac = _mm_set1_epi64x(0x000FFFFFFFFFFFFFll);
  return _mm_or_pd(_mm_and_pd(w, as_pd(frac)), _mm_set1_pd(1.0));
}

// ---------------------------------------------------------------------------
// Extended precision (the binary64 top tier): the x87 at 64-bit precision.

using ld = long double;

// The 80-bit image of an extended value.
struct ExtBits {
  uint64_t mant;  // with its explicit integer bit
  uint16_t se;    // sign and biased exponent
};
inline ExtBits ext_bits(ld v) {
  ExtBits b;
  __builtin_memcpy(&b.mant, &v, 8);
  __builtin_memcpy(&b.se, reinterpret_cast<const char*>(&v) + 8, 2);
  return b;
}
inline ld ext_from(uint64_t mant, uint16_t se) {
  ld v = 0;
  __builtin_memcpy(&v, &mant, 8);
  __builtin_memcpy(reinterpret_cast<char*>(&v) + 8, &se, 2);
  return v;
}

// ln 2 as the x87 holds it (FLDLN2).
inline ld x87_ln2() {
  ld v;
  asm("fldln2" : "=t"(v));
  return v;
}

// A binary64 lane through the x87 and back: a signalling NaN comes out
// quieted, everything else unchanged.  out may be x.
inline void x87_pass(const double* x, double* out) {
  asm volatile("fldl %1\n\tfstpl %0" : "=m"(*out) : "m"(*x) : "st", "memory");
}

// Lane words without a floating-point move.
inline uint64_t bits_of(const double* p) {
  uint64_t b;
  __builtin_memcpy(&b, p, 8);
  return b;
}
inline void store_bits(double* p, uint64_t b) { __builtin_memcpy(p, &b, 8); }

// An extended value rounded once to binary64 (the x87 store), then the given
// sign bit ORed in, stored to `out`.
inline void store_rounded(double* out, ld v, uint64_t sign) {
  const double d = double(v);
  store_bits(out, __builtin_bit_cast(uint64_t, d) | sign);
}

inline ld ext(uint64_t bits) { return ld(__builtin_bit_cast(double, bits)); }

// The logarithm tail of the top tier: ln w for a finite positive extended w,
// every step at 64-bit precision.  w = 2^e * m; row i from the top 8
// fraction bits, c = 1 + i/256; m' is m with those bits cleared under the
// exponent of 1.0, so m' - 1 = m - c exactly, and r = (m - c) * rcp.
// ln w = ((e ln 2 + logHi) + logLo) + r * q(r), q(r) = 1 - r/2 + ... of
// degree 5 (|r| < 2^-8).  Row fields: log_hi, log_lo, rcp; q: q6..q2.
template <class Row>
inline ld ln_tail(const Row* rows, const uint64_t (&q)[5], ld ln2, ld w) {
  const ExtBits b = ext_bits(w);
  const int e = int(b.se & 0x7FFF) - 16383;
  const unsigned i = unsigned(b.mant >> 55) & 0xFF;
  const ld mp = ext_from(b.mant & ~(uint64_t(0xFF) << 55), 0x3FFF);
  const Row& row = rows[i];
  const ld r = (mp - 1.0L) * ext(row.rcp);
  const ld h = (ld(e) * ln2 + ext(row.log_hi)) + ext(row.log_lo);
  ld p = ext(q[0]) * r + ext(q[1]);
  p = p * r + ext(q[2]);
  p = p * r + ext(q[3]);
  p = p * r + ext(q[4]);
  p = p * r + 1.0L;
  return h + r * p;
}

// The two passes of the top tier, over batches of 128 lanes.  The first pass
// takes the lanes in pairs (an odd last lane alone): for a lane on its
// front's path it leaves w, in extended precision, and the sign to OR in, in
// the scratch area and marks the slot; any other lane it finishes at once,
// storing its result and status.  The second pass takes the logarithm of the
// marked slots.  Between the two the extended values rest in memory, so their
// bit splits never wait on the stores that made them.
//   K: lux64f* dst; CallState<lux64f>& call;
//      void front(int i, Slot* s0, Slot* s1)  lanes i and i+1 (s1 null: lane i alone)
//      ld finish(ld w)                          the result from w
struct Slot {
  ld w;
  uint64_t sign;
  bool marked;
};

template <class K>
inline luxStatus run_batches(K& k, int len) {
  constexpr int kBatch = 128;
  Slot slots[kBatch];
  for (int base = 0; base < len; base += kBatch) {
    const int n = len - base < kBatch ? len - base : kBatch;
    int j = 0;
    for (; j + 1 < n; j += 2) k.front(base + j, &slots[j], &slots[j + 1]);
    if (j < n) k.front(base + j, &slots[j], nullptr);
    for (j = 0; j < n; ++j)
      if (slots[j].marked) store_rounded(k.dst + base + j, k.finish(slots[j].w), slots[j].sign);
  }
  return k.call.status();
}

}  // namespace lux::invhyp
