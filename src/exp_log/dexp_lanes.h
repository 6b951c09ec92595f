// Mechanics shared by the binary64 Exp units: reading N out of a shifter sum,
// turning it into an exponent field, the block's range test, raw lane stores,
// and the kernel with its call-out for the lanes off the main path.  Numbers
// (bounds, biases, tables) stay in each unit.
#pragma once

#include <emmintrin.h>
#include <stdint.h>

#include "frame/frame.h"
#include "frame/lanes.h"

namespace lux::dexp {

// After t = x*R + 1.5*2^52 the low 32 bits of t's encoding hold N, the
// nearest integer to x*R, as a two's-complement integer.
inline int32_t shifter_low_word(__m128d t, int lane) {
  const __m128i w = as_int(t);
  return _mm_cvtsi128_si32(lane == 0 ? w : _mm_shuffle_epi32(w, _MM_SHUFFLE(3, 2, 3, 2)));
}

// 2^k as an exponent field, from the shifter sum: adding bias = 1023*2^m to
// the low word (a 32-bit add, so no carry reaches the high word) puts k + 1023
// in bits m..m+10; a left shift by 52 - m moves them into the exponent field
// and the mask drops j and everything above.  `n` is the biased sum.
template <int Shift>
inline __m128i exponent_field(__m128i n, __m128i exponent_mask) {
  return _mm_and_si128(_mm_slli_epi64(n, Shift), exponent_mask);
}

// High words of the four lanes of a block, for the one branch per block.
inline __m128i high_words(__m128d a, __m128d b) {
  return as_int(_mm_shuffle_ps(_mm_castpd_ps(a), _mm_castpd_ps(b), _MM_SHUFFLE(3, 1, 3, 1)));
}

// High and low words of one lane (the low lane of v).
inline uint32_t high_word(__m128d v) { return uint32_t(_mm_cvtsi128_si32(_mm_srli_epi64(as_int(v), 32))); }
inline uint32_t low_word(__m128d v) { return uint32_t(_mm_cvtsi128_si32(as_int(v))); }

// Stores a result given as its bit pattern, without passing through a
// floating-point register.
inline void store_bits(double* p, uint64_t bits) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_set_epi64x(0, int64_t(bits)));
}

// The kernel of a binary64 Exp tier.  `Tier` gives
//   State main_path(x)          one vector pair up to its last operations; the
//                               state carries t, the shifter sum (and so N)
//   __m128d result(state)       the main path's finished pair, 2^k * V
//   __m128d scale_free(state)   V = 2^(j/2^m) * e^r without the 2^k
//   kC                          its constants (dbBias, dbExpMask, dbExpOne,
//                               dbTwoP1023, dbTwo are read here)
//   kFieldShift                 52 - m, for exponent_field
//   kMainPathBound and the call-out's thresholds on the encoding of x
//   kEarlyFirstPair             the first pair is stored before the block's
//                               test (the tier runs under run_pipelined)
//   nan(out, x), top_binade(out, v)   the two call-out cases the tiers answer
//                               differently.
// A block of 4 lanes keeps its V and t when it fails its test, and the redo
// takes each lane through the call-out with them.
template <class Tier>
class Kernel {
 public:
  Kernel(const lux64f* src, lux64f* dst, CallState<lux64f>& call) : src_(src), dst_(dst), call_(call) {}

  bool block(int i) {
    const __m128d xa = load2(src_ + i);
    const __m128d xb = load2(src_ + i + 2);
    const auto a = Tier::main_path(xa);
    const auto b = Tier::main_path(xb);
    if constexpr (Tier::kEarlyFirstPair) store2(dst_ + i, Tier::result(a));
    if (__builtin_expect(!all_below(high_words(xa, xb), Tier::kMainPathBound, 4), 0)) {
      _mm_store_pd(kept_v_, Tier::scale_free(a));
      _mm_store_pd(kept_v_ + 2, Tier::scale_free(b));
      _mm_store_pd(kept_t_, a.t);
      _mm_store_pd(kept_t_ + 2, b.t);
      return false;
    }
    if constexpr (!Tier::kEarlyFirstPair) store2(dst_ + i, Tier::result(a));
    store2(dst_ + i + 2, Tier::result(b));
    return true;
  }

  // The redo of a failed block, lane by lane, with the block's V and t.
  void lane(int i) { call_out(i, _mm_load_sd(kept_v_ + (i & 3)), _mm_load_sd(kept_t_ + (i & 3))); }

  // One lane in the low half of a vector, the same operations as a block.
  void tail(int i) {
    const __m128d x = load1(src_ + i);
    const auto s = Tier::main_path(x);
    if (all_below(lux::high_words(x), Tier::kMainPathBound, 1))
      store1(dst_ + i, Tier::result(s));
    else
      call_out(i, Tier::scale_free(s), s.t);
  }

  static luxStatus run(const lux64f* src, lux64f* dst, int len) {
    if (const luxStatus e = check_entry(len, src, dst)) return e;
    RoundNearestGuard guard;
    CallState<lux64f> call(src, src, dst, dst);
    Kernel k(src, dst, call);
    if constexpr (Tier::kEarlyFirstPair)
      run_pipelined<4>(src, dst, len, k);  // puts back in-place inputs of a redone block
    else
      run_block_redo<4>(len, k);
    return call.status();
  }

 private:
  // One lane off the main path: x from src, V and t from the main path.
  __attribute__((noinline)) void call_out(int i, __m128d v, __m128d t) {
    constexpr auto& c = Tier::kC;
    const __m128d x = load1(src_ + i);
    const uint32_t hx = high_word(x);
    const uint32_t lx = low_word(x);
    const uint32_t ax = hx & 0x7FFFFFFF;
    const uint64_t bits = uint64_t(hx) << 32 | lx;
    double* out = dst_ + i;
    if (ax > Tier::kInfHigh || (ax == Tier::kInfHigh && lx != 0)) {
      Tier::nan(out, x);
    } else if (ax == Tier::kInfHigh) {
      store_bits(out, (hx >> 31) ? Tier::kPlusZero : Tier::kPlusInf);
    } else if (bits >= Tier::kZeroBound) {
      store_bits(out, Tier::kPlusZero);
      call_.warn(luxWarnUnderflow, i);
    } else if (bits >= Tier::kDenormalBound) {
      // 2^(k+1022) is normal for k >= -1076: the first product is exact, the
      // second is the only rounding into the denormal range.
      __m128i n = _mm_add_epi32(as_int(t), c.dbBias.pi());
      n = _mm_add_epi32(n, c.dbBias.pi());
      const __m128i scale =
          _mm_sub_epi32(exponent_field<Tier::kFieldShift>(n, c.dbExpMask.pi()), c.dbExpOne.pi());
      store1(out, _mm_mul_sd(_mm_mul_sd(v, as_pd(scale)), c.dbExpOne.pd()));
      call_.warn(luxWarnUnderflow, i);
    } else if (int64_t(bits) >= Tier::kOverflowBound) {
      store_bits(out, Tier::kPlusInf);
      call_.warn(luxWarnOverflow, i);
    } else if (int64_t(bits) >= Tier::kTopBinadeBound) {
      Tier::top_binade(out, v);
    } else {
      // The strips that the high-word test turned away, and the in-range
      // lanes of a redone block: V*2^k is the main path's result, since
      // scaling by 2^k is exact in the normal range.
      const __m128i e =
          exponent_field<Tier::kFieldShift>(_mm_add_epi32(as_int(t), c.dbBias.pi()), c.dbExpMask.pi());
      store1(out, _mm_mul_sd(v, as_pd(e)));
    }
  }

  const lux64f* src_;
  lux64f* dst_;
  CallState<lux64f>& call_;
  alignas(16) double kept_v_[4];
  alignas(16) double kept_t_[4];
};

}  // namespace lux::dexp
