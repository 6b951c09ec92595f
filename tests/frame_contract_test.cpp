// The frame's contract, checked on every export the library implements, as
// listed by the census: a new export is covered without new test code.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "common/census.h"
#include "common/fpenv.h"
#include "common/invoke.h"
#include "luxvm.h"

namespace {

using luxtk::CensusEntry;

constexpr unsigned char kCanary = 0xA5;
constexpr int kSlack = 64;  // bytes of canary before and after each array

// One argument array with canaries around it, at a chosen misalignment.
class Buffer {
 public:
  Buffer(size_t elem, int len, size_t offset = 0)
      : elem_(elem), len_(len), offset_(offset), raw_(kSlack * 2 + elem * len + 32, kCanary) {}
  unsigned char* data() { return base() + offset_; }
  size_t bytes() const { return elem_ * size_t(len_); }
  void fill(const std::vector<unsigned char>& pattern) {
    for (size_t i = 0; i < bytes(); ++i) data()[i] = pattern[i % pattern.size()];
  }
  bool canaries_intact() {
    const unsigned char* b = data();
    for (int i = 1; i <= kSlack; ++i)
      if (b[-i] != kCanary || b[bytes() + i - 1] != kCanary) return false;
    return true;
  }
  std::vector<unsigned char> contents() { return {data(), data() + bytes()}; }

 private:
  unsigned char* base() {
    uintptr_t p = reinterpret_cast<uintptr_t>(raw_.data()) + kSlack;
    return reinterpret_cast<unsigned char*>((p + 15) & ~uintptr_t(15));
  }
  size_t elem_;
  int len_;
  size_t offset_;
  std::vector<unsigned char> raw_;
};

// Ordinary arguments that are inside every family's usual range and give no
// subnormal anywhere, so a caller's flush-to-zero or DAZ cannot matter.
std::vector<unsigned char> typical_lanes(const CensusEntry& e, int salt) {
  static const double kValues[] = {0.5,  -0.75, 1.25, 0.1,   2.5,  -1.5, 0.3,  3.0,  -0.2, 0.9,
                                   1.75, -2.25, 0.05, 0.625, -0.4, 1.1,  2.05, -0.9, 0.7,  1.6};
  constexpr int kCount = sizeof(kValues) / sizeof(kValues[0]);
  std::vector<unsigned char> out;
  const bool cplx = e.complex_src();
  for (int i = 0; i < kCount; ++i) {
    const double v = kValues[(i + salt) % kCount];
    const double w = kValues[(i * 7 + 3 + salt) % kCount];
    for (int c = 0; c < (cplx ? 2 : 1); ++c) {
      const double x = c == 0 ? v : w;
      if (e.component_bits() == 32) {
        const float f = float(x);
        out.insert(out.end(), reinterpret_cast<const unsigned char*>(&f),
                   reinterpret_cast<const unsigned char*>(&f) + 4);
      } else {
        out.insert(out.end(), reinterpret_cast<const unsigned char*>(&x),
                   reinterpret_cast<const unsigned char*>(&x) + 8);
      }
    }
  }
  return out;
}

// A call's arrays: sources filled with typical lanes, results with canaries.
struct Call {
  const CensusEntry& e;
  int len;
  Buffer s1, s2, d1, d2;
  std::vector<unsigned char> x;
  Call(const CensusEntry& entry, int n, size_t offset = 0)
      : e(entry),
        len(n),
        s1(entry.src_size(), n, offset),
        s2(entry.src_size(), n, offset),
        d1(entry.dst_size(), n, offset),
        d2(entry.dst_size(), n, offset),
        x(typical_lanes(entry, 5)) {
    s1.fill(typical_lanes(entry, 0));
    s2.fill(typical_lanes(entry, 11));
  }
  int run(uint32_t mxcsr = luxtk::kDefaultMxcsr, uint32_t* flags = nullptr) {
    void* fn = luxtk::export_address(e.name);
    const luxtk::Outcome o = luxtk::run_clean(
        [&] { return luxtk::invoke(e, fn, s1.data(), s2.data(), x.data(), d1.data(), d2.data(), len); },
        mxcsr);
    if (flags) *flags = o.flags;
    return o.status;
  }
};

// Argument list of a shape as (is_pointer) in order, with len last.
int pointer_count(const CensusEntry& e) {
  const std::string shape = e.shape;
  if (shape == "B" || shape == "D") return 3;
  return 2;  // U, X (x is by value), CR, RC
}

// Invokes with some pointers replaced by null: `nulls` bit k = k-th pointer.
int invoke_with_nulls(const CensusEntry& e, Call& c, unsigned nulls, int len) {
  void* fn = luxtk::export_address(e.name);
  const std::string shape = e.shape;
  void* p[3];
  if (shape == "B") {
    p[0] = c.s1.data(), p[1] = c.s2.data(), p[2] = c.d1.data();
  } else if (shape == "D") {
    p[0] = c.s1.data(), p[1] = c.d1.data(), p[2] = c.d2.data();
  } else {
    p[0] = c.s1.data(), p[1] = c.d1.data(), p[2] = nullptr;
  }
  for (int k = 0; k < 3; ++k)
    if (nulls & (1u << k)) p[k] = nullptr;
  if (shape == "B") return luxtk::invoke(e, fn, p[0], p[1], nullptr, p[2], nullptr, len);
  if (shape == "D") return luxtk::invoke(e, fn, p[0], nullptr, nullptr, p[1], p[2], len);
  return luxtk::invoke(e, fn, p[0], nullptr, c.x.data(), p[1], nullptr, len);
}

class FrameContract : public testing::TestWithParam<const CensusEntry*> {};

TEST_P(FrameContract, EntryChecksInOrderAndWriteNothing) {
  const CensusEntry& e = *GetParam();
  Call c(e, 4);
  const auto d1 = c.d1.contents(), d2 = c.d2.contents(), s1 = c.s1.contents();
  const int np = pointer_count(e);
  const unsigned all = (1u << np) - 1;
  const uint32_t mxcsr_before = luxtk::read_mxcsr();
  // len below 1 wins over any null pointer.
  for (int len : {0, -1, -2147483647 - 1}) {
    EXPECT_EQ(invoke_with_nulls(e, c, all, len), luxErrSize) << e.name << " len " << len;
    EXPECT_EQ(invoke_with_nulls(e, c, 0, len), luxErrSize) << e.name << " len " << len;
  }
  // Any null pointer, alone or with others, gives -8.
  for (unsigned nulls = 1; nulls <= all; ++nulls)
    EXPECT_EQ(invoke_with_nulls(e, c, nulls, 4), luxErrNullPtr) << e.name << " null mask " << nulls;
  EXPECT_EQ(luxtk::read_mxcsr(), mxcsr_before);
  EXPECT_EQ(c.d1.contents(), d1) << e.name << " wrote on an error return";
  EXPECT_EQ(c.d2.contents(), d2);
  EXPECT_EQ(c.s1.contents(), s1);
}

TEST_P(FrameContract, RestoresControlRegistersAndKeepsFlags) {
  const CensusEntry& e = *GetParam();
  const uint32_t all_flags = luxtk::kFlagMask & ~luxtk::kDenormal;
  struct Case {
    uint32_t mxcsr;
    uint16_t x87;
  };
  const Case cases[] = {
      {luxtk::kDefaultMxcsr, 0x037F},
      {luxtk::kDefaultMxcsr | luxtk::kRoundUp | luxtk::kFlushToZero | luxtk::kDenormalsAreZero, 0x027F},
      {luxtk::kDefaultMxcsr | luxtk::kRoundDown, 0x0F7F},
      {luxtk::kDefaultMxcsr | luxtk::kRoundTowardZero, 0x007F},
      {luxtk::kDefaultMxcsr | all_flags, 0x037F},
      {luxtk::kDefaultMxcsr | luxtk::kRoundUp | all_flags, 0x037F},
  };
  for (const Case& k : cases) {
    Call c(e, 9);
    void* fn = luxtk::export_address(e.name);
    const uint32_t saved = luxtk::read_mxcsr();
    const uint16_t saved_cw = luxtk::read_x87_cw();
    luxtk::write_x87_cw(k.x87);
    luxtk::write_mxcsr(k.mxcsr);
    luxtk::invoke(e, fn, c.s1.data(), c.s2.data(), c.x.data(), c.d1.data(), c.d2.data(), c.len);
    const uint32_t after = luxtk::read_mxcsr();
    const uint16_t after_cw = luxtk::read_x87_cw();
    luxtk::write_mxcsr(saved);
    luxtk::write_x87_cw(saved_cw);
    SCOPED_TRACE(testing::Message() << e.name << " entry MXCSR 0x" << std::hex << k.mxcsr << " CW 0x"
                                    << k.x87);
    EXPECT_EQ(after_cw, k.x87) << "x87 control word not restored";
    EXPECT_EQ(after & ~luxtk::kFlagMask, k.mxcsr & ~luxtk::kFlagMask) << "MXCSR control not restored";
    // Flags are never cleared; when a guard had to change MXCSR, the exit
    // reloads the entry value whole.
    EXPECT_EQ(after & k.mxcsr & luxtk::kFlagMask, k.mxcsr & luxtk::kFlagMask) << "entry flags cleared";
    const uint32_t want = std::string(e.guard)[0] != 'S'  ? 0xFFFFFFFF
                          : std::string(e.guard) == "Sup" ? luxtk::kRoundUp
                          : std::string(e.guard) == "Sdn" ? luxtk::kRoundDown
                          : std::string(e.guard) == "Stz" ? luxtk::kRoundTowardZero
                                                          : 0u;
    if (want != 0xFFFFFFFF && (k.mxcsr & 0xE000) != want) {
      EXPECT_EQ(after, k.mxcsr) << "a changed guard must reload the entry MXCSR whole";
    }
  }
}

TEST_P(FrameContract, GuardedResultsIgnoreCallerRoundingAndFlush) {
  const CensusEntry& e = *GetParam();
  if (!e.any_sse_guard()) GTEST_SKIP() << e.name << " runs under the caller's MXCSR";
  for (int len : {1, 8, 9, 20}) {
    Call plain(e, len), odd(e, len);
    const int s0 = plain.run();
    const int s1 =
        odd.run(luxtk::kDefaultMxcsr | luxtk::kRoundUp | luxtk::kFlushToZero | luxtk::kDenormalsAreZero);
    EXPECT_EQ(s0, s1) << e.name;
    EXPECT_EQ(plain.d1.contents(), odd.d1.contents()) << e.name << " len " << len;
    EXPECT_EQ(plain.d2.contents(), odd.d2.contents()) << e.name << " len " << len;
  }
}

TEST_P(FrameContract, WritesExactlyLenLanesWhateverTheAlignment) {
  const CensusEntry& e = *GetParam();
  for (int len : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 33}) {
    Call aligned(e, len);
    const int st = aligned.run();
    EXPECT_TRUE(st == 0 || (st > 0 && e.may_return(st))) << e.name << " returned " << st;
    if (e.complex_src() || e.complex_dst()) {
      EXPECT_EQ(st, 0) << e.name;
    }
    const auto src_before = Call(e, len).s1.contents();
    EXPECT_EQ(aligned.s1.contents(), src_before) << e.name << " changed its source";
    EXPECT_TRUE(aligned.d1.canaries_intact()) << e.name << " wrote outside dst, len " << len;
    EXPECT_TRUE(aligned.d2.canaries_intact()) << e.name << " wrote outside dst2, len " << len;
    // Off the 16-byte grid (and, for 64-bit components, off the 8-byte one).
    for (size_t off : {size_t(4), size_t(8)}) {
      Call shifted(e, len, off);
      EXPECT_EQ(shifted.run(), st) << e.name;
      EXPECT_EQ(shifted.d1.contents(), aligned.d1.contents())
          << e.name << " offset " << off << " len " << len;
      EXPECT_EQ(shifted.d2.contents(), aligned.d2.contents())
          << e.name << " offset " << off << " len " << len;
      EXPECT_TRUE(shifted.d1.canaries_intact()) << e.name << " offset " << off;
    }
  }
}

TEST_P(FrameContract, InPlaceEqualsOutOfPlace) {
  const CensusEntry& e = *GetParam();
  if (e.src_size() != e.dst_size()) GTEST_SKIP() << "source and result types differ";
  void* fn = luxtk::export_address(e.name);
  const std::string shape = e.shape;
  for (int len : {1, 5, 8, 13, 24}) {
    Call ref(e, len);
    const int want = ref.run();
    for (int which = 0; which < (shape == "B" ? 2 : 1); ++which) {
      Call c(e, len);
      unsigned char* io = which == 0 ? c.s1.data() : c.s2.data();
      const int got = luxtk::run_clean([&] {
                        if (shape == "B")
                          return luxtk::invoke(e, fn, c.s1.data(), c.s2.data(), nullptr, io, nullptr, len);
                        return luxtk::invoke(e, fn, io, nullptr, c.x.data(), io,
                                             shape == "D" ? c.d2.data() : nullptr, len);
                      }).status;
      EXPECT_EQ(got, want) << e.name << " len " << len;
      const auto result = which == 0 ? c.s1.contents() : c.s2.contents();
      EXPECT_EQ(result, ref.d1.contents()) << e.name << " in place (source " << which + 1 << "), len " << len;
    }
  }
}

TEST_P(FrameContract, ComplexFunctionsNeverWarn) {
  const CensusEntry& e = *GetParam();
  if (!e.complex_src() && !e.complex_dst()) GTEST_SKIP();
  Call c(e, 12);
  // NaN, +-Inf and +-0 in every component, in both sources.
  const bool is32 = e.component_bits() == 32;
  const uint64_t specials64[] = {0x7FF8000000000000ull, 0x7FF0000000000000ull, 0xFFF0000000000000ull, 0,
                                 0x8000000000000000ull, 0x7FF4000000000000ull};
  const uint32_t specials32[] = {0x7FC00000u, 0x7F800000u, 0xFF800000u, 0, 0x80000000u, 0x7FA00000u};
  std::vector<unsigned char> pattern;
  for (int i = 0; i < 6; ++i)
    for (int j = 0; j < 6; ++j)
      for (int k : {i, j}) {
        if (is32)
          pattern.insert(pattern.end(), reinterpret_cast<const unsigned char*>(&specials32[k]),
                         reinterpret_cast<const unsigned char*>(&specials32[k]) + 4);
        else
          pattern.insert(pattern.end(), reinterpret_cast<const unsigned char*>(&specials64[k]),
                         reinterpret_cast<const unsigned char*>(&specials64[k]) + 8);
      }
  c.s1.fill(pattern);
  c.s2.fill(pattern);
  EXPECT_EQ(c.run(), 0) << e.name;
}

std::vector<const CensusEntry*> implemented_exports() {
  auto span = luxtk::implemented();
  return {span.begin(), span.end()};
}

std::string export_name(const testing::TestParamInfo<const CensusEntry*>& info) { return info.param->name; }

INSTANTIATE_TEST_SUITE_P(Census, FrameContract, testing::ValuesIn(implemented_exports()), export_name);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FrameContract);

}  // namespace
