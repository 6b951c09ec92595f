// Element-wise arithmetic (Add, Sub, Mul, Sqr, Abs, Conj): every lane must be
// the IEEE operation on the same bits under the caller's MXCSR, flags
// included, whatever the length, the alignment of each array, or the overlap
// of result and source.  The reference runs the scalar instruction (addss,
// mulsd...) on each lane, in the same MXCSR, here in the test.
#include <gtest/gtest.h>
#include <pmmintrin.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

#include "common/fpenv.h"
#include "luxvm.h"
#include "support/test_options.h"

namespace {

// ---------------------------------------------------------------------------
// Formats, random lanes, and the reference operations on bit patterns (bits
// in, bits out: a signalling NaN never passes through the x87 unit).

template <class C>
struct Fmt;
template <>
struct Fmt<float> {
  using Bits = uint32_t;
  static constexpr int kMant = 23, kExpMax = 0xFF;
  static constexpr Bits kSign = 0x80000000u, kExp = 0x7F800000u, kQuiet = 0x00400000u;
};
template <>
struct Fmt<double> {
  using Bits = uint64_t;
  static constexpr int kMant = 52, kExpMax = 0x7FF;
  static constexpr Bits kSign = 0x8000000000000000ull, kExp = 0x7FF0000000000000ull, kQuiet = 1ull << 51;
};

template <class C>
bool is_nan(typename Fmt<C>::Bits b) {
  return (b & ~Fmt<C>::kSign) > Fmt<C>::kExp;
}

struct Rng {
  uint64_t s;
  uint64_t next() {
    uint64_t z = (s += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  unsigned below(unsigned n) { return unsigned(next() % n); }
};

// Raw bit patterns, with extra weight on the classes where arithmetic is
// delicate: subnormals and the smallest normals (flush-to-zero, underflow),
// the largest exponents (overflow), and the special values.
template <class C>
typename Fmt<C>::Bits random_lane(Rng& r) {
  using F = Fmt<C>;
  using B = typename F::Bits;
  const B raw = B(r.next());
  const B mant = raw & ((B(1) << F::kMant) - 1);
  const B sign = raw & F::kSign;
  switch (r.below(8)) {
    case 0:
    case 1:
    case 2:
      return raw;
    case 3:  // subnormal or barely normal
      return sign | (B(r.below(3)) << F::kMant) | mant;
    case 4:  // near one: products and sums stay ordinary
      return sign | (B((F::kExpMax >> 1) - 8 + r.below(16)) << F::kMant) | mant;
    case 5:  // near overflow
      return sign | (B(F::kExpMax - 1 - r.below(3)) << F::kMant) | mant;
    case 6: {  // half of the exponent range from the bottom: tiny products
      return sign | (B(1 + r.below(F::kExpMax / 2)) << F::kMant) | mant;
    }
    default: {
      const B specials[] = {0, F::kExp,     F::kExp | F::kQuiet,    F::kExp | 1,
                            1, F::kExp - 1, F::kExp | F::kQuiet | 5};
      return sign | specials[r.below(7)];
    }
  }
}

// Keeps a value in its register and orders it among the volatile asm of the
// MXCSR reads and writes, so the reference runs under the MXCSR it is meant to.
template <class V>
inline V pin(V v) {
  asm volatile("" : "+x"(v));
  return v;
}

enum class Op { Add, Sub, Mul, Sqr, Abs };

inline __m128 lane_ps(uint32_t b) { return _mm_castsi128_ps(_mm_cvtsi32_si128(int(b))); }
inline __m128d lane_pd(uint64_t b) { return _mm_castsi128_pd(_mm_loadu_si64(&b)); }
inline uint32_t bits_of(__m128 v) { return uint32_t(_mm_cvtsi128_si32(_mm_castps_si128(v))); }
inline uint64_t bits_of(__m128d v) {
  uint64_t b;
  _mm_storeu_si64(&b, _mm_castpd_si128(v));
  return b;
}

// The IEEE operation on one lane, as a scalar instruction.  Abs is x times
// +-1.0 with the sign of x.
inline uint32_t ieee(Op op, uint32_t a, uint32_t b) {
  const __m128 x = pin(lane_ps(a)), y = pin(lane_ps(b));
  const __m128 one_signed = pin(lane_ps((a & 0x80000000u) | 0x3F800000u));
  __m128 r;
  switch (op) {
    case Op::Add:
      r = _mm_add_ss(x, y);
      break;
    case Op::Sub:
      r = _mm_sub_ss(x, y);
      break;
    case Op::Mul:
      r = _mm_mul_ss(x, y);
      break;
    case Op::Sqr:
      r = _mm_mul_ss(x, x);
      break;
    default:
      r = _mm_mul_ss(x, one_signed);
      break;
  }
  return bits_of(pin(r));
}
inline uint64_t ieee(Op op, uint64_t a, uint64_t b) {
  const __m128d x = pin(lane_pd(a)), y = pin(lane_pd(b));
  const __m128d one_signed = pin(lane_pd((a & 0x8000000000000000ull) | 0x3FF0000000000000ull));
  __m128d r;
  switch (op) {
    case Op::Add:
      r = _mm_add_sd(x, y);
      break;
    case Op::Sub:
      r = _mm_sub_sd(x, y);
      break;
    case Op::Mul:
      r = _mm_mul_sd(x, y);
      break;
    case Op::Sqr:
      r = _mm_mul_sd(x, x);
      break;
    default:
      r = _mm_mul_sd(x, one_signed);
      break;
  }
  return bits_of(pin(r));
}

// Caller MXCSR settings the exports must follow: every rounding direction,
// flush-to-zero, denormals-are-zero.
const uint32_t kCallerModes[] = {
    luxtk::kDefaultMxcsr,
    luxtk::kDefaultMxcsr | luxtk::kRoundDown,
    luxtk::kDefaultMxcsr | luxtk::kRoundUp,
    luxtk::kDefaultMxcsr | luxtk::kRoundTowardZero,
    luxtk::kDefaultMxcsr | luxtk::kFlushToZero,
    luxtk::kDefaultMxcsr | luxtk::kFlushToZero | luxtk::kRoundUp,
    luxtk::kDefaultMxcsr | luxtk::kFlushToZero | luxtk::kDenormalsAreZero | luxtk::kRoundDown,
};

// ---------------------------------------------------------------------------
// The exports under test, with their reference operation.

template <class C>
struct Binary {
  const char* name;
  Op op;
  luxStatus (*fn)(const C*, const C*, C*, int);
};
const Binary<float> kBinary32[] = {{"luxsAdd_32f_A24", Op::Add, luxsAdd_32f_A24},
                                   {"luxsSub_32f_A24", Op::Sub, luxsSub_32f_A24},
                                   {"luxsMul_32f_A24", Op::Mul, luxsMul_32f_A24}};
const Binary<double> kBinary64[] = {{"luxsAdd_64f_A53", Op::Add, luxsAdd_64f_A53},
                                    {"luxsSub_64f_A53", Op::Sub, luxsSub_64f_A53},
                                    {"luxsMul_64f_A53", Op::Mul, luxsMul_64f_A53}};

// Complex Add and Sub seen as functions of the component arrays.
luxStatus add32fc(const float* a, const float* b, float* d, int n) {
  return luxsAdd_32fc_A24(reinterpret_cast<const lux32fc*>(a), reinterpret_cast<const lux32fc*>(b),
                          reinterpret_cast<lux32fc*>(d), n);
}
luxStatus sub32fc(const float* a, const float* b, float* d, int n) {
  return luxsSub_32fc_A24(reinterpret_cast<const lux32fc*>(a), reinterpret_cast<const lux32fc*>(b),
                          reinterpret_cast<lux32fc*>(d), n);
}
luxStatus add64fc(const double* a, const double* b, double* d, int n) {
  return luxsAdd_64fc_A53(reinterpret_cast<const lux64fc*>(a), reinterpret_cast<const lux64fc*>(b),
                          reinterpret_cast<lux64fc*>(d), n);
}
luxStatus sub64fc(const double* a, const double* b, double* d, int n) {
  return luxsSub_64fc_A53(reinterpret_cast<const lux64fc*>(a), reinterpret_cast<const lux64fc*>(b),
                          reinterpret_cast<lux64fc*>(d), n);
}
const Binary<float> kComplex32[] = {{"luxsAdd_32fc_A24", Op::Add, add32fc},
                                    {"luxsSub_32fc_A24", Op::Sub, sub32fc}};
const Binary<double> kComplex64[] = {{"luxsAdd_64fc_A53", Op::Add, add64fc},
                                     {"luxsSub_64fc_A53", Op::Sub, sub64fc}};

template <class C>
struct Unary {
  const char* name;
  Op op;
  luxStatus (*fn)(const C*, C*, int);
};
const Unary<float> kUnary32[] = {{"luxsSqr_32f_A24", Op::Sqr, luxsSqr_32f_A24},
                                 {"luxsAbs_32f_A24", Op::Abs, luxsAbs_32f_A24}};
const Unary<double> kUnary64[] = {{"luxsSqr_64f_A53", Op::Sqr, luxsSqr_64f_A53},
                                  {"luxsAbs_64f_A53", Op::Abs, luxsAbs_64f_A53}};

// ---------------------------------------------------------------------------
// Arrays at chosen byte offsets inside one buffer, so tests can place result
// and sources anywhere relative to the 16-byte grid and to each other.

struct Arena {
  explicit Arena(size_t bytes) : raw(bytes + 32, 0xA5), size(bytes) {}
  std::vector<unsigned char> raw;
  size_t size;
  unsigned char* at(size_t off) {
    const uintptr_t p = (reinterpret_cast<uintptr_t>(raw.data()) + 15) & ~uintptr_t(15);
    return reinterpret_cast<unsigned char*>(p) + off;
  }
};

// An arena holding arrays of `bytes` bytes at the given offsets, filled with
// random lanes.
template <class C>
Arena random_arena(Rng& rng, size_t bytes, std::initializer_list<size_t> offsets) {
  size_t end = 0;
  for (size_t o : offsets) end = std::max(end, o + bytes);
  Arena a((end + 16) & ~size_t(7));
  using B = typename Fmt<C>::Bits;
  for (size_t k = 0; k + sizeof(B) <= a.size; k += sizeof(B)) {
    const B v = random_lane<C>(rng);
    std::memcpy(a.at(k), &v, sizeof v);
  }
  return a;
}

// Every byte outside [off, off + bytes) is as in the reference.
inline void expect_untouched_outside(Arena& got, Arena& want, size_t off, size_t bytes) {
  EXPECT_EQ(std::memcmp(got.at(0), want.at(0), off), 0) << "bytes below the result array changed";
  EXPECT_EQ(std::memcmp(got.at(off + bytes), want.at(off + bytes), got.size - off - bytes), 0)
      << "bytes above the result array changed";
}

template <class B>
B get(const unsigned char* p, int i) {
  B b;
  std::memcpy(&b, p + size_t(i) * sizeof(B), sizeof b);
  return b;
}
template <class B>
void put(unsigned char* p, int i, B b) {
  std::memcpy(p + size_t(i) * sizeof(B), &b, sizeof b);
}

// Compares results bit for bit.  Where two NaNs meet the processor (or the
// emulator) picks one; then only NaN-ness is checked.
template <class C>
void expect_lane(const char* name, int i, typename Fmt<C>::Bits got, typename Fmt<C>::Bits want,
                 bool two_nans, uint32_t mxcsr) {
  if (two_nans && is_nan<C>(want)) {
    EXPECT_TRUE(is_nan<C>(got)) << name << " lane " << i;
    return;
  }
  EXPECT_EQ(got, want) << name << " lane " << i << " MXCSR 0x" << std::hex << mxcsr;
}

// Runs a binary export on arrays at the given offsets (result possibly on top
// of a source) and checks every lane, the flags and the status against lanes
// computed one by one in ascending order on a copy of the same memory, which
// is what an overlapping call must give.
template <class C>
void check_binary(const Binary<C>& e, Rng& rng, int len, size_t off_a, size_t off_b, size_t off_d,
                  uint32_t mxcsr, bool components = false) {
  using B = typename Fmt<C>::Bits;
  const int n = components ? 2 * len : len;
  Arena mem = random_arena<C>(rng, size_t(n) * sizeof(B), {off_a, off_b, off_d});
  // Now and then an exact cancellation, whose zero sign depends on the mode.
  for (int k = 0; k < n; k += 5)
    put<B>(mem.at(off_b), k, get<B>(mem.at(off_a), k) ^ (e.op == Op::Add ? Fmt<C>::kSign : 0));
  Arena ref = mem;
  std::vector<char> two_nans(n);
  const luxtk::Outcome want = luxtk::run_clean(
      [&] {
        for (int i = 0; i < n; ++i) {
          const B a = get<B>(ref.at(off_a), i), b = get<B>(ref.at(off_b), i);
          two_nans[i] = is_nan<C>(a) && is_nan<C>(b);
          put<B>(ref.at(off_d), i, ieee(e.op, a, b));
        }
        return 0;
      },
      mxcsr);
  const luxtk::Outcome got = luxtk::run_clean(
      [&] {
        return e.fn(reinterpret_cast<const C*>(mem.at(off_a)), reinterpret_cast<const C*>(mem.at(off_b)),
                    reinterpret_cast<C*>(mem.at(off_d)), len);
      },
      mxcsr);
  SCOPED_TRACE(testing::Message() << e.name << " len " << len << " offsets a " << off_a << " b " << off_b
                                  << " d " << off_d);
  EXPECT_EQ(got.status, luxOk);
  EXPECT_EQ(got.flags, want.flags) << luxtk::flag_names(got.flags) << " vs " << luxtk::flag_names(want.flags);
  for (int i = 0; i < n; ++i)
    expect_lane<C>(e.name, i, get<B>(mem.at(off_d), i), get<B>(ref.at(off_d), i), two_nans[i], mxcsr);
  // Nothing outside the result array changed (sources may be the result).
  expect_untouched_outside(mem, ref, off_d, size_t(n) * sizeof(B));
}

template <class C>
void check_unary(const Unary<C>& e, Rng& rng, int len, size_t off_s, size_t off_d, uint32_t mxcsr) {
  using B = typename Fmt<C>::Bits;
  Arena mem = random_arena<C>(rng, size_t(len) * sizeof(B), {off_s, off_d});
  Arena ref = mem;
  const luxtk::Outcome want = luxtk::run_clean(
      [&] {
        for (int i = 0; i < len; ++i) put<B>(ref.at(off_d), i, ieee(e.op, get<B>(ref.at(off_s), i), B(0)));
        return 0;
      },
      mxcsr);
  const luxtk::Outcome got = luxtk::run_clean(
      [&] {
        return e.fn(reinterpret_cast<const C*>(mem.at(off_s)), reinterpret_cast<C*>(mem.at(off_d)), len);
      },
      mxcsr);
  SCOPED_TRACE(testing::Message() << e.name << " len " << len << " offsets s " << off_s << " d " << off_d);
  EXPECT_EQ(got.status, luxOk);
  EXPECT_EQ(got.flags, want.flags) << luxtk::flag_names(got.flags) << " vs " << luxtk::flag_names(want.flags);
  for (int i = 0; i < len; ++i)
    expect_lane<C>(e.name, i, get<B>(mem.at(off_d), i), get<B>(ref.at(off_d), i), false, mxcsr);
  expect_untouched_outside(mem, ref, off_d, size_t(len) * sizeof(B));
}

Rng seeded(uint64_t salt) { return Rng{luxtest::g_sweep.seed * 0x2545F4914F6CDD1Dull + salt}; }

// Random arrays of random length in every caller mode; the number of lanes
// follows --points.
int sweep_calls() { return int(std::max(40L, luxtest::g_sweep.points / 40)); }

// ---------------------------------------------------------------------------

TEST(Arith, RealBinaryIsIeeeInEveryCallerMode) {
  Rng rng = seeded(1);
  for (uint32_t mode : kCallerModes)
    for (int c = 0; c < sweep_calls() / 8; ++c) {
      const int len = 1 + int(rng.below(120));
      for (const auto& e : kBinary32) check_binary(e, rng, len, 0, 512, 1024 + 4 * rng.below(4), mode);
      for (const auto& e : kBinary64) check_binary(e, rng, len, 0, 1024, 2048 + 8 * rng.below(2), mode);
    }
}

// Every start of the result on the byte grid (element-aligned or not), and
// sources aligned or not relative to it, over lengths around the short-array
// limit, the peel and one or two passes.
TEST(Arith, RealBinaryEveryAlignment) {
  Rng rng = seeded(2);
  const int lens[] = {1, 6, 7, 8, 10, 11, 12, 15, 16, 19, 24, 33};
  for (size_t d = 0; d < 16; ++d)
    for (size_t a = 0; a < 16; a += 4)
      for (size_t b = 0; b < 16; b += 4)
        for (int len : lens) {
          for (const auto& e : kBinary32)
            check_binary(e, rng, len, a, 512 + b, 1024 + d, luxtk::kDefaultMxcsr);
          for (const auto& e : kBinary64)
            check_binary(e, rng, len, a, 512 + b, 1024 + d, luxtk::kDefaultMxcsr);
        }
}

// Result on a source, or shifted one lane against it either way: the lanes
// must be what the ascending lane-by-lane order gives.
TEST(Arith, RealBinaryOverlapRunsInAscendingOrder) {
  Rng rng = seeded(3);
  for (int len : {2, 7, 8, 9, 20, 37, 64}) {
    for (size_t base : {size_t(0), size_t(4), size_t(8)}) {
      for (const auto& e : kBinary32) {
        check_binary(e, rng, len, base, 1024, base, luxtk::kDefaultMxcsr);  // dst == src1
        check_binary(e, rng, len, 1024, base, base, luxtk::kDefaultMxcsr);  // dst == src2
        check_binary(e, rng, len, base, base, base, luxtk::kDefaultMxcsr);  // all three
        check_binary(e, rng, len, base, 1024, base + 4,
                     luxtk::kDefaultMxcsr | luxtk::kRoundUp);                   // dst one lane above src1
        check_binary(e, rng, len, base + 4, 1024, base, luxtk::kDefaultMxcsr);  // dst one lane below src1
        check_binary(e, rng, len, 1024, base + 16, base + 20,
                     luxtk::kDefaultMxcsr);  // dst one lane above src2
      }
      for (const auto& e : kBinary64) {
        check_binary(e, rng, len, base, 1024, base, luxtk::kDefaultMxcsr);
        check_binary(e, rng, len, 1024, base, base, luxtk::kDefaultMxcsr);
        check_binary(e, rng, len, base, base, base, luxtk::kDefaultMxcsr);
        check_binary(e, rng, len, base, 1024, base + 8, luxtk::kDefaultMxcsr | luxtk::kRoundDown);
        check_binary(e, rng, len, base + 8, 1024, base, luxtk::kDefaultMxcsr);
        check_binary(e, rng, len, 1024, base + 16, base + 24, luxtk::kDefaultMxcsr);
      }
    }
  }
}

TEST(Arith, ComplexAddSubArePartByPart) {
  Rng rng = seeded(4);
  for (uint32_t mode : kCallerModes)
    for (int c = 0; c < sweep_calls() / 16; ++c) {
      const int len = 1 + int(rng.below(60));
      for (const auto& e : kComplex32) check_binary(e, rng, len, 0, 512, 1024 + 4 * rng.below(4), mode, true);
      for (const auto& e : kComplex64)
        check_binary(e, rng, len, 0, 1024, 2048 + 8 * rng.below(2), mode, true);
    }
  for (size_t d = 0; d < 16; d += 4)
    for (int len : {1, 3, 4, 5, 6, 9, 17}) {
      for (const auto& e : kComplex32) {
        check_binary(e, rng, len, 8, 520, 1032 + d, luxtk::kDefaultMxcsr, true);
        check_binary(e, rng, len, 1032 + d, 520, 1032 + d, luxtk::kDefaultMxcsr, true);  // in place
        check_binary(e, rng, len, 8, 8, 8, luxtk::kDefaultMxcsr, true);
      }
      for (const auto& e : kComplex64) {
        check_binary(e, rng, len, 8, 520, 1032 + d, luxtk::kDefaultMxcsr, true);
        check_binary(e, rng, len, 8, 1032 + d, 1032 + d, luxtk::kDefaultMxcsr, true);
      }
    }
}

TEST(Arith, SqrAndAbsAreIeeeProducts) {
  Rng rng = seeded(5);
  for (uint32_t mode : kCallerModes)
    for (int c = 0; c < sweep_calls() / 8; ++c) {
      const int len = 1 + int(rng.below(120));
      for (const auto& e : kUnary32)
        check_unary(e, rng, len, 4 * rng.below(4), 1024 + 4 * rng.below(4), mode);
      for (const auto& e : kUnary64)
        check_unary(e, rng, len, 8 * rng.below(2), 2048 + 8 * rng.below(2), mode);
    }
  // Every alignment of source and result, and the result on top of the
  // source or one lane off it.
  for (size_t s = 0; s < 16; ++s)
    for (size_t d = 0; d < 16; d += 4)
      for (int len : {1, 5, 6, 7, 8, 9, 11, 13, 16, 17, 31}) {
        for (const auto& e : kUnary32) check_unary(e, rng, len, s, 1024 + d, luxtk::kDefaultMxcsr);
        for (const auto& e : kUnary64) check_unary(e, rng, len, s, 1024 + d, luxtk::kDefaultMxcsr);
      }
  // In place; Sqr also with the result one lane off the source (Abs has no
  // overlap test: only the in-place call is part of its contract).
  for (int len : {3, 8, 9, 20, 41}) {
    for (const auto& e : kUnary32) {
      check_unary(e, rng, len, 16, 16, luxtk::kDefaultMxcsr);
      if (e.op != Op::Sqr) continue;
      check_unary(e, rng, len, 16, 20, luxtk::kDefaultMxcsr);
      check_unary(e, rng, len, 20, 16, luxtk::kDefaultMxcsr);
    }
    for (const auto& e : kUnary64) {
      check_unary(e, rng, len, 16, 16, luxtk::kDefaultMxcsr);
      if (e.op != Op::Sqr) continue;
      check_unary(e, rng, len, 16, 24, luxtk::kDefaultMxcsr);
      check_unary(e, rng, len, 24, 16, luxtk::kDefaultMxcsr);
    }
  }
}

// What the product form of Abs means, lane class by lane class, at every
// position of a block and of the rest.
TEST(Arith, AbsKeepsNaNSignQuietsAndFlushes) {
  struct Row {
    uint64_t in, out;
    uint32_t mxcsr, flags;
  };
  const Row rows64[] = {
      {0x8000000000000000ull, 0, luxtk::kDefaultMxcsr, 0},                      // -0 -> +0
      {0xFFF0000000000000ull, 0x7FF0000000000000ull, luxtk::kDefaultMxcsr, 0},  // -Inf
      {0xFFF8000000000123ull, 0xFFF8000000000123ull, luxtk::kDefaultMxcsr, 0},  // -qNaN keeps sign
      {0xFFF0000000000123ull, 0xFFF8000000000123ull, luxtk::kDefaultMxcsr, luxtk::kInvalid},  // -sNaN quieted
      {0x7FF4000000000000ull, 0x7FFC000000000000ull, luxtk::kDefaultMxcsr, luxtk::kInvalid},  // +sNaN quieted
      {0x800FFFFFFFFFFFFFull, 0x000FFFFFFFFFFFFFull, luxtk::kDefaultMxcsr, luxtk::kDenormal},  // -subnormal
      {0x800FFFFFFFFFFFFFull, 0, luxtk::kDefaultMxcsr | luxtk::kFlushToZero,                   // flushed
       luxtk::kDenormal | luxtk::kUnderflow | luxtk::kInexact},
      {0xC09F400000000000ull, 0x409F400000000000ull, luxtk::kDefaultMxcsr | luxtk::kRoundDown, 0},  // -2000
  };
  for (const Row& r : rows64)
    for (int len = 1; len <= 9; ++len)
      for (int pos = 0; pos < len; ++pos) {
        std::vector<double> in(len, 1.5), out(len, 0.0);
        std::memcpy(&in[pos], &r.in, 8);
        const auto o = luxtk::run_clean([&] { return luxsAbs_64f_A53(in.data(), out.data(), len); }, r.mxcsr);
        uint64_t got;
        std::memcpy(&got, &out[pos], 8);
        EXPECT_EQ(got, r.out) << std::hex << "in 0x" << r.in << " len " << std::dec << len << " lane " << pos;
        // The denormal-operand flag is left out: not every emulator raises it.
        EXPECT_EQ(o.flags & ~luxtk::kDenormal, r.flags & ~luxtk::kDenormal)
            << luxtk::flag_names(o.flags) << " for 0x" << std::hex << r.in;
      }
  const struct {
    uint32_t in, out, flags;
  } rows32[] = {{0x80000000u, 0, 0},
                {0xFF800000u, 0x7F800000u, 0},
                {0xFFC01234u, 0xFFC01234u, 0},
                {0xFF801234u, 0xFFC01234u, luxtk::kInvalid},
                {0x7FA00000u, 0x7FE00000u, luxtk::kInvalid}};
  for (const auto& r : rows32)
    for (int len = 1; len <= 17; ++len) {
      const int pos = len - 1;
      std::vector<float> in(len, -1.25f), out(len, 0.0f);
      std::memcpy(&in[pos], &r.in, 4);
      const auto o = luxtk::run_clean([&] { return luxsAbs_32f_A24(in.data(), out.data(), len); });
      uint32_t got;
      std::memcpy(&got, &out[pos], 4);
      EXPECT_EQ(got, r.out) << std::hex << "in 0x" << r.in << " len " << std::dec << len;
      EXPECT_EQ(o.flags, r.flags) << luxtk::flag_names(o.flags);
      if (pos > 0) {
        EXPECT_EQ(out[0], 1.25f);
      }
    }
}

// Conj is a bit operation: the imaginary sign flipped, nothing else, not
// even a signalling NaN quieted; no flag; no byte beyond len touched.
template <class Cx, class B>
void check_conj(luxStatus (*fn)(const Cx*, Cx*, int), const char* name, Rng& rng, uint32_t mxcsr) {
  constexpr int kParts = int(sizeof(Cx) / sizeof(B));
  for (int len = 1; len <= 19; ++len)
    for (size_t off : {size_t(0), size_t(4), size_t(8), size_t(12)}) {
      for (bool in_place : {false, true}) {
        using C = std::conditional_t<sizeof(B) == 4, float, double>;
        Arena mem = random_arena<C>(rng, sizeof(Cx) * size_t(len), {off, 1024 + off});
        Arena ref = mem;
        unsigned char* s = mem.at(off);
        unsigned char* d = in_place ? s : mem.at(1024 + off);
        const size_t d_off = in_place ? off : 1024 + off;
        const B sign = B(1) << (8 * sizeof(B) - 1);
        for (int i = 0; i < len * kParts; ++i)
          put<B>(ref.at(d_off), i, get<B>(ref.at(off), i) ^ (i % 2 ? sign : 0));
        const auto o = luxtk::run_clean(
            [&] { return fn(reinterpret_cast<const Cx*>(s), reinterpret_cast<Cx*>(d), len); }, mxcsr);
        EXPECT_EQ(o.status, luxOk);
        EXPECT_EQ(o.flags, 0u) << name << " " << luxtk::flag_names(o.flags);
        EXPECT_EQ(mem.raw, ref.raw) << name << " len " << len << " offset " << off
                                    << (in_place ? " in place" : "");
      }
    }
}

TEST(Arith, ConjFlipsOnlyTheImaginarySign) {
  Rng rng = seeded(6);
  const uint32_t modes[] = {luxtk::kDefaultMxcsr,
                            luxtk::kDefaultMxcsr | luxtk::kFlushToZero | luxtk::kDenormalsAreZero};
  for (uint32_t mode : modes) {
    check_conj<lux32fc, uint32_t>(luxsConj_32fc_A24, "luxsConj_32fc_A24", rng, mode);
    check_conj<lux64fc, uint64_t>(luxsConj_64fc_A53, "luxsConj_64fc_A53", rng, mode);
  }
}

// Arrays that end where an inaccessible page begins: a read or write of any
// byte beyond len faults.  The rest passes of Abs and Conj read their live
// lanes one by one for this.
class PageEnd {
 public:
  PageEnd() : page_(size_t(sysconf(_SC_PAGESIZE))) {
    base_ = static_cast<unsigned char*>(
        mmap(nullptr, 2 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(base_ + page_, page_, PROT_NONE);
  }
  ~PageEnd() { munmap(base_, 2 * page_); }
  template <class T>
  T* array(int len) {
    unsigned char* p = base_ + page_ - size_t(len) * sizeof(T);
    for (size_t k = 0; k < size_t(len) * sizeof(T); ++k) p[k] = static_cast<unsigned char>(k * 37 + 1);
    return reinterpret_cast<T*>(p);
  }

 private:
  size_t page_;
  unsigned char* base_;
};

TEST(Arith, NothingBeyondLenIsTouched) {
  PageEnd a, b, d;
  for (int len = 1; len <= 20; ++len) {
    EXPECT_EQ(luxsAbs_32f_A24(a.array<float>(len), d.array<float>(len), len), luxOk);
    EXPECT_EQ(luxsAbs_64f_A53(a.array<double>(len), d.array<double>(len), len), luxOk);
    EXPECT_EQ(luxsConj_32fc_A24(a.array<lux32fc>(len), d.array<lux32fc>(len), len), luxOk);
    EXPECT_EQ(luxsConj_64fc_A53(a.array<lux64fc>(len), d.array<lux64fc>(len), len), luxOk);
    EXPECT_EQ(luxsSqr_32f_A24(a.array<float>(len), d.array<float>(len), len), luxOk);
    EXPECT_EQ(luxsSqr_64f_A53(a.array<double>(len), d.array<double>(len), len), luxOk);
    for (const auto& e : kBinary32)
      EXPECT_EQ(e.fn(a.array<float>(len), b.array<float>(len), d.array<float>(len), len), luxOk);
    for (const auto& e : kBinary64)
      EXPECT_EQ(e.fn(a.array<double>(len), b.array<double>(len), d.array<double>(len), len), luxOk);
    for (const auto& e : kComplex32)
      EXPECT_EQ(e.fn(a.array<float>(2 * len), b.array<float>(2 * len), d.array<float>(2 * len), len), luxOk);
    for (const auto& e : kComplex64)
      EXPECT_EQ(e.fn(a.array<double>(2 * len), b.array<double>(2 * len), d.array<double>(2 * len), len),
                luxOk);
  }
}

}  // namespace
