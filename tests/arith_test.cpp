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
  static constexpr Bits kSign = 0x80000000u, kExp = 0x7F800000u, kQuiet = 0x00400000u, kOne = 0x3F800000u;
};
template <>
struct Fmt<double> {
  using Bits = uint64_t;
  static constexpr int kMant = 52, kExpMax = 0x7FF;
  static constexpr Bits kSign = 1ull << 63, kExp = 0x7FFull << 52, kQuiet = 1ull << 51, kOne = 0x3FFull << 52;
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
Rng seeded(uint64_t salt) { return Rng{luxtest::g_sweep.seed * 0x2545F4914F6CDD1Dull + salt}; }

// Raw bit patterns, with extra weight where arithmetic is delicate:
// subnormals and the smallest normals (flush-to-zero, underflow), values
// near one, the largest exponents (overflow), and the special values.
template <class C>
typename Fmt<C>::Bits random_lane(Rng& r) {
  using F = Fmt<C>;
  using B = typename F::Bits;
  const B raw = B(r.next());
  const B mant = raw & ((B(1) << F::kMant) - 1), sign = raw & F::kSign;
  const B specials[] = {0, F::kExp,     F::kExp | F::kQuiet,    F::kExp | 1,
                        1, F::kExp - 1, F::kExp | F::kQuiet | 5};
  switch (r.below(8)) {
    case 3:
      return sign | (B(r.below(3)) << F::kMant) | mant;
    case 4:
      return sign | (B((F::kExpMax >> 1) - 8 + r.below(16)) << F::kMant) | mant;
    case 5:
      return sign | (B(F::kExpMax - 1 - r.below(3)) << F::kMant) | mant;
    case 6:
      return sign | (B(1 + r.below(F::kExpMax / 2)) << F::kMant) | mant;
    case 7:
      return sign | specials[r.below(7)];
    default:
      return raw;
  }
}

// Keeps a value in its register and orders it among the volatile asm of the
// MXCSR reads and writes, so the reference runs under the MXCSR it is meant to.
template <class V>
inline V pin(V v) {
  asm volatile("" : "+x"(v));
  return v;
}

enum class Op { Add, Sub, Mul, Sqr, Abs, Conj };

inline __m128 lane_v(uint32_t b) { return _mm_castsi128_ps(_mm_cvtsi32_si128(int(b))); }
inline __m128d lane_v(uint64_t b) { return _mm_castsi128_pd(_mm_loadu_si64(&b)); }
inline uint32_t bits_of(__m128 v) { return uint32_t(_mm_cvtsi128_si32(_mm_castps_si128(v))); }
inline uint64_t bits_of(__m128d v) {
  uint64_t b;
  _mm_storeu_si64(&b, _mm_castpd_si128(v));
  return b;
}
inline __m128 add(__m128 x, __m128 y) { return _mm_add_ss(x, y); }
inline __m128 sub(__m128 x, __m128 y) { return _mm_sub_ss(x, y); }
inline __m128 mul(__m128 x, __m128 y) { return _mm_mul_ss(x, y); }
inline __m128d add(__m128d x, __m128d y) { return _mm_add_sd(x, y); }
inline __m128d sub(__m128d x, __m128d y) { return _mm_sub_sd(x, y); }
inline __m128d mul(__m128d x, __m128d y) { return _mm_mul_sd(x, y); }

// The operation on component `k` of a lane, as one scalar instruction.  Abs
// is x times +-1.0 with the sign of x; Conj flips the sign of odd components.
template <class B>
B ieee(Op op, B a, B b, int k) {
  using F = Fmt<std::conditional_t<sizeof(B) == 4, float, double>>;
  if (op == Op::Conj) return k % 2 ? a ^ F::kSign : a;
  const auto x = pin(lane_v(a));
  const auto y = pin(op == Op::Sqr ? x : op == Op::Abs ? lane_v(B((a & F::kSign) | F::kOne)) : lane_v(b));
  return bits_of(pin(op == Op::Add ? add(x, y) : op == Op::Sub ? sub(x, y) : mul(x, y)));
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
// Every export as a function of component arrays (complex lanes are `parts`
// components); one-source exports ignore b.

template <class C>
using PartsFn = luxStatus (*)(const C* a, const C* b, C* d, int len);

template <class T, class C, luxStatus (*F)(const T*, const T*, T*, int)>
luxStatus binary(const C* a, const C* b, C* d, int n) {
  return F(reinterpret_cast<const T*>(a), reinterpret_cast<const T*>(b), reinterpret_cast<T*>(d), n);
}
template <class T, class C, luxStatus (*F)(const T*, T*, int)>
luxStatus unary(const C* a, const C*, C* d, int n) {
  return F(reinterpret_cast<const T*>(a), reinterpret_cast<T*>(d), n);
}

template <class C>
struct Export {
  const char* name;
  Op op;
  int parts;
  bool two_sources;
  bool overlap_test;  // a shifted result array gives the ascending order
  PartsFn<C> fn;
};
const Export<float> kExports32[] = {
    {"luxsAdd_32f_A24", Op::Add, 1, true, true, binary<float, float, luxsAdd_32f_A24>},
    {"luxsSub_32f_A24", Op::Sub, 1, true, true, binary<float, float, luxsSub_32f_A24>},
    {"luxsMul_32f_A24", Op::Mul, 1, true, true, binary<float, float, luxsMul_32f_A24>},
    {"luxsSqr_32f_A24", Op::Sqr, 1, false, true, unary<float, float, luxsSqr_32f_A24>},
    {"luxsAbs_32f_A24", Op::Abs, 1, false, false, unary<float, float, luxsAbs_32f_A24>},
    {"luxsAdd_32fc_A24", Op::Add, 2, true, false, binary<lux32fc, float, luxsAdd_32fc_A24>},
    {"luxsSub_32fc_A24", Op::Sub, 2, true, false, binary<lux32fc, float, luxsSub_32fc_A24>},
    {"luxsConj_32fc_A24", Op::Conj, 2, false, false, unary<lux32fc, float, luxsConj_32fc_A24>},
};
const Export<double> kExports64[] = {
    {"luxsAdd_64f_A53", Op::Add, 1, true, true, binary<double, double, luxsAdd_64f_A53>},
    {"luxsSub_64f_A53", Op::Sub, 1, true, true, binary<double, double, luxsSub_64f_A53>},
    {"luxsMul_64f_A53", Op::Mul, 1, true, true, binary<double, double, luxsMul_64f_A53>},
    {"luxsSqr_64f_A53", Op::Sqr, 1, false, true, unary<double, double, luxsSqr_64f_A53>},
    {"luxsAbs_64f_A53", Op::Abs, 1, false, false, unary<double, double, luxsAbs_64f_A53>},
    {"luxsAdd_64fc_A53", Op::Add, 2, true, false, binary<lux64fc, double, luxsAdd_64fc_A53>},
    {"luxsSub_64fc_A53", Op::Sub, 2, true, false, binary<lux64fc, double, luxsSub_64fc_A53>},
    {"luxsConj_64fc_A53", Op::Conj, 2, false, false, unary<lux64fc, double, luxsConj_64fc_A53>},
};

// ---------------------------------------------------------------------------
// One call on arrays placed at byte offsets inside one random buffer, so a
// result may sit anywhere on the 16-byte grid and on top of a source or one
// lane off it.  The reference runs the lanes one by one in ascending order on
// a copy of the same buffer: what an overlapping call must give.

template <class C>
void check(const Export<C>& e, Rng& rng, int len, size_t off_a, size_t off_b, size_t off_d, uint32_t mxcsr) {
  using B = typename Fmt<C>::Bits;
  const int n = e.parts * len;
  const size_t bytes = size_t(n) * sizeof(B), size = std::max({off_a, off_b, off_d}) + bytes + 16;
  std::vector<unsigned char> raw(size + 16);
  unsigned char* mem = raw.data() + ((16 - reinterpret_cast<uintptr_t>(raw.data()) % 16) % 16);
  for (size_t k = 0; k + sizeof(B) <= size; k += sizeof(B)) {
    const B v = random_lane<C>(rng);
    std::memcpy(mem + k, &v, sizeof v);
  }
  auto at = [](unsigned char* base, size_t off, int i) { return base + off + size_t(i) * sizeof(B); };
  // Now and then an exact cancellation, whose zero sign depends on the mode.
  if (e.op == Op::Add || e.op == Op::Sub)
    for (int i = 0; i < n; i += 5) {
      B a;
      std::memcpy(&a, at(mem, off_a, i), sizeof a);
      a ^= e.op == Op::Add ? Fmt<C>::kSign : 0;
      std::memcpy(at(mem, off_b, i), &a, sizeof a);
    }
  std::vector<unsigned char> ref_raw(mem, mem + size);
  unsigned char* ref = ref_raw.data();
  std::vector<char> two_nans(n);
  const luxtk::Outcome want = luxtk::run_clean(
      [&] {
        for (int i = 0; i < n; ++i) {
          B a, b, r;
          std::memcpy(&a, at(ref, off_a, i), sizeof a);
          std::memcpy(&b, at(ref, off_b, i), sizeof b);
          two_nans[i] = e.two_sources && is_nan<C>(a) && is_nan<C>(b);
          r = ieee(e.op, a, b, i);
          std::memcpy(at(ref, off_d, i), &r, sizeof r);
        }
        return 0;
      },
      mxcsr);
  const luxtk::Outcome got = luxtk::run_clean(
      [&] {
        return e.fn(reinterpret_cast<const C*>(mem + off_a), reinterpret_cast<const C*>(mem + off_b),
                    reinterpret_cast<C*>(mem + off_d), len);
      },
      mxcsr);
  SCOPED_TRACE(testing::Message() << e.name << " len " << len << " offsets a " << off_a << " b " << off_b
                                  << " d " << off_d << " MXCSR 0x" << std::hex << mxcsr);
  EXPECT_EQ(got.status, luxOk);
  EXPECT_EQ(got.flags, want.flags) << luxtk::flag_names(got.flags) << " vs " << luxtk::flag_names(want.flags);
  for (int i = 0; i < n; ++i) {
    B g, w;
    std::memcpy(&g, at(mem, off_d, i), sizeof g);
    std::memcpy(&w, at(ref, off_d, i), sizeof w);
    // Where two NaNs meet, the processor (or the emulator) picks one.
    if (two_nans[i] && is_nan<C>(w))
      EXPECT_TRUE(is_nan<C>(g)) << "component " << i;
    else
      ASSERT_EQ(g, w) << "component " << i;
  }
  // Nothing outside the result array changed (sources may be the result).
  EXPECT_EQ(std::memcmp(mem, ref, off_d), 0) << "written below the result array";
  EXPECT_EQ(std::memcmp(mem + off_d + bytes, ref + off_d + bytes, size - off_d - bytes), 0)
      << "written above the result array";
}

int sweep_calls() { return int(std::max(40L, luxtest::g_sweep.points / 320)); }

template <class C, size_t N>
void sweep_modes(const Export<C> (&exports)[N], Rng& rng) {
  for (uint32_t mode : kCallerModes)
    for (int c = 0; c < sweep_calls(); ++c)
      for (const auto& e : exports) {
        const int len = 1 + int(rng.below(120));
        check(e, rng, len, 0, 2048, 4096 + sizeof(C) * rng.below(4), mode);
      }
}

TEST(Arith, IeeeInEveryCallerMode) {
  Rng rng = seeded(1);
  sweep_modes(kExports32, rng);
  sweep_modes(kExports64, rng);
}

// Every start of the result on the byte grid (element-aligned or not), and
// sources aligned or not relative to it, over lengths around the short-array
// limit, the peel, one or two passes and the rests.
template <class C, size_t N>
void sweep_alignments(const Export<C> (&exports)[N], Rng& rng) {
  for (const auto& e : exports)
    for (size_t d = 0; d < 16; ++d)
      for (size_t a = 0; a < 16; a += 4)
        for (size_t b = 0; b < (e.two_sources ? 16 : 4); b += 4)
          for (int len : {1, 3, 6, 7, 8, 10, 11, 12, 15, 16, 19, 33})
            check(e, rng, len, a, 640 + b, 1280 + d, luxtk::kDefaultMxcsr);
}

TEST(Arith, EveryAlignment) {
  Rng rng = seeded(2);
  sweep_alignments(kExports32, rng);
  sweep_alignments(kExports64, rng);
}

// The result on a source (every export), or one lane above or below it (the
// exports with an overlap test): the lanes are what the ascending order gives.
template <class C, size_t N>
void sweep_overlaps(const Export<C> (&exports)[N], Rng& rng) {
  struct Place {
    int a, b, d;  // in lanes from a common base
    bool shifted;
  };
  const Place places[] = {{0, 80, 0, false}, {80, 0, 0, false}, {0, 0, 0, false},
                          {0, 80, 1, true},  {1, 80, 0, true},  {80, 0, 1, true}};
  for (const auto& e : exports)
    for (const Place& p : places) {
      if (p.shifted && !e.overlap_test) continue;
      if (!e.two_sources && p.a == 80) continue;
      const size_t lane = sizeof(C) * e.parts;
      for (int len : {2, 7, 8, 9, 20, 37, 64})
        for (size_t base : {size_t(0), size_t(4), size_t(8)})
          check(e, rng, len, base + lane * p.a, base + lane * p.b, base + lane * p.d,
                len % 2 ? luxtk::kDefaultMxcsr : luxtk::kDefaultMxcsr | luxtk::kRoundUp);
    }
}

TEST(Arith, OverlapRunsInAscendingOrder) {
  Rng rng = seeded(3);
  sweep_overlaps(kExports32, rng);
  sweep_overlaps(kExports64, rng);
}

// What the product form of Abs means, lane class by lane class, at every
// position of a block and of the rest.
TEST(Arith, AbsKeepsNaNSignQuietsAndFlushes) {
  const uint32_t kFtz = luxtk::kDefaultMxcsr | luxtk::kFlushToZero, kUf = luxtk::kUnderflow | luxtk::kInexact;
  struct Row {
    uint64_t in, out;
    uint32_t in32, out32, mxcsr, flags;
  };
  const Row rows[] = {
      {0x8000000000000000, 0, 0x80000000, 0, luxtk::kDefaultMxcsr, 0},                            // -0
      {0xFFF0000000000000, 0x7FF0000000000000, 0xFF800000, 0x7F800000, luxtk::kDefaultMxcsr, 0},  // -Inf
      {0xFFF8000000000123, 0xFFF8000000000123, 0xFFC01234, 0xFFC01234, luxtk::kDefaultMxcsr, 0},  // -qNaN
      {0xFFF0000000000123, 0xFFF8000000000123, 0xFF801234, 0xFFC01234, luxtk::kDefaultMxcsr,      // -sNaN
       luxtk::kInvalid},
      {0x7FF4000000000000, 0x7FFC000000000000, 0x7FA00000, 0x7FE00000, luxtk::kDefaultMxcsr,  // +sNaN
       luxtk::kInvalid},
      {0x800FFFFFFFFFFFFF, 0x000FFFFFFFFFFFFF, 0x807FFFFF, 0x007FFFFF, luxtk::kDefaultMxcsr, 0},  // subnormal
      {0x800FFFFFFFFFFFFF, 0, 0x807FFFFF, 0, kFtz, kUf},                                          // flushed
      {0xC09F400000000000, 0x409F400000000000, 0xC4FA0000, 0x44FA0000, kFtz | luxtk::kRoundDown, 0},  // -2000
  };
  for (const Row& r : rows)
    for (int len = 1; len <= 9; ++len)
      for (int pos = 0; pos < len; ++pos) {
        std::vector<double> in(len, -1.5), out(len);
        std::vector<float> in32(len, -1.5f), out32(len);
        std::memcpy(&in[pos], &r.in, 8);
        std::memcpy(&in32[pos], &r.in32, 4);
        const auto o = luxtk::run_clean([&] { return luxsAbs_64f_A53(in.data(), out.data(), len); }, r.mxcsr);
        const auto o32 =
            luxtk::run_clean([&] { return luxsAbs_32f_A24(in32.data(), out32.data(), len); }, r.mxcsr);
        uint64_t got;
        uint32_t got32;
        std::memcpy(&got, &out[pos], 8);
        std::memcpy(&got32, &out32[pos], 4);
        SCOPED_TRACE(testing::Message()
                     << std::hex << "in 0x" << r.in << std::dec << " len " << len << " lane " << pos);
        EXPECT_EQ(got, r.out);
        EXPECT_EQ(got32, r.out32);
        // The denormal-operand flag is left out: not every emulator raises it.
        EXPECT_EQ(o.flags & ~luxtk::kDenormal, r.flags) << luxtk::flag_names(o.flags);
        EXPECT_EQ(o32.flags & ~luxtk::kDenormal, r.flags) << luxtk::flag_names(o32.flags);
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
  template <class C>
  C* array(size_t count) {
    unsigned char* p = base_ + page_ - count * sizeof(C);
    for (size_t k = 0; k < count * sizeof(C); ++k) p[k] = static_cast<unsigned char>(k * 37 + 1);
    return reinterpret_cast<C*>(p);
  }

 private:
  size_t page_;
  unsigned char* base_;
};

template <class C, size_t N>
void run_at_page_end(const Export<C> (&exports)[N]) {
  PageEnd a, b, d;
  for (const auto& e : exports)
    for (int len = 1; len <= 20; ++len) {
      const size_t n = size_t(len * e.parts);
      EXPECT_EQ(e.fn(a.array<C>(n), b.array<C>(n), d.array<C>(n), len), luxOk) << e.name;
    }
}

TEST(Arith, NothingBeyondLenIsTouched) {
  run_at_page_end(kExports32);
  run_at_page_end(kExports64);
}

}  // namespace
