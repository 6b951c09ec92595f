// The frame's mechanisms on their own: guards, reporter, latch and drivers.
#include "frame/frame.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "common/fpenv.h"

namespace {

using luxtk::kDefaultMxcsr;

TEST(Reporter, RaisesExactlyTheFlagOfEachCode) {
  struct Case {
    int code;
    uint32_t flags;
  };
  const Case cases[] = {{19, luxtk::kInvalid},
                        {18, luxtk::kDivByZero},
                        {12, luxtk::kOverflow | luxtk::kInexact},
                        {17, luxtk::kUnderflow | luxtk::kInexact},
                        {0, 0},
                        {13, 0},
                        {-6, 0}};
  for (const Case& c : cases) {
    const auto d = luxtk::run_clean([&] {
      orkdError(c.code, 3, nullptr, nullptr, nullptr, nullptr, "");
      return 0;
    });
    const auto s = luxtk::run_clean([&] {
      orksError(c.code, 3, nullptr, nullptr, nullptr, nullptr, "");
      return 0;
    });
    EXPECT_EQ(d.flags, c.flags) << "orkdError code " << c.code;
    EXPECT_EQ(s.flags, c.flags) << "orksError code " << c.code;
  }
}

TEST(Guards, ChangeOnlyWhatDiffersAndRestoreWhole) {
  const uint32_t saved = luxtk::read_mxcsr();
  // Entry already round-to-nearest: nothing is written, flags raised inside survive.
  luxtk::write_mxcsr(kDefaultMxcsr);
  {
    lux::RoundNearestGuard g;
    orkdError(19, 0, nullptr, nullptr, nullptr, nullptr, "");
  }
  EXPECT_EQ(luxtk::read_mxcsr(), kDefaultMxcsr | luxtk::kInvalid);
  // Entry round-up with FTZ and DAZ: inside, nearest without FTZ but DAZ and
  // masks untouched; at exit the entry value, flags included, comes back.
  const uint32_t entry =
      kDefaultMxcsr | luxtk::kRoundUp | luxtk::kFlushToZero | luxtk::kDenormalsAreZero | 0x1;
  luxtk::write_mxcsr(entry);
  uint32_t inside = 0;
  {
    lux::RoundNearestGuard g;
    inside = luxtk::read_mxcsr();
    orkdError(18, 0, nullptr, nullptr, nullptr, nullptr, "");
  }
  EXPECT_EQ(inside, (entry & ~0xE000u));
  EXPECT_EQ(luxtk::read_mxcsr(), entry);
  {
    lux::RoundTowardZeroGuard g;
    EXPECT_EQ(luxtk::read_mxcsr() & 0xE000u, 0x6000u);
  }
  luxtk::write_mxcsr(saved);

  const uint16_t cw = luxtk::read_x87_cw();
  luxtk::write_x87_cw(0x0C7F);  // toward zero, 24-bit precision
  {
    lux::X87Guard64 g;
    EXPECT_EQ(luxtk::read_x87_cw(), 0x037F);
    {
      lux::X87Guard53 h;
      EXPECT_EQ(luxtk::read_x87_cw(), 0x027F);
    }
    EXPECT_EQ(luxtk::read_x87_cw(), 0x037F);
  }
  EXPECT_EQ(luxtk::read_x87_cw(), 0x0C7F);
  luxtk::write_x87_cw(cw);
}

TEST(EntryChecks, SizeBeforePointers) {
  int a = 0;
  EXPECT_EQ(lux::check_entry(0, &a, static_cast<int*>(nullptr)), luxErrSize);
  EXPECT_EQ(lux::check_entry(1, &a, static_cast<int*>(nullptr)), luxErrNullPtr);
  EXPECT_EQ(lux::check_entry(1, static_cast<int*>(nullptr), &a), luxErrNullPtr);
  EXPECT_EQ(lux::check_entry(1, &a, &a, &a), luxOk);
}

TEST(Latch, LastOffendingLaneWins) {
  lux::CallState<double> call(nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(call.status(), luxOk);
  call.warn(luxWarnSingularity, 5);
  call.warn(luxWarnDomain, 9);
  EXPECT_EQ(call.status(), luxWarnDomain);
  call.warn(luxWarnUnderflow, 11);
  EXPECT_EQ(call.status(), luxWarnUnderflow);
}

// A kernel of block 4 that fails a block holding a negative lane; it records
// what ran where, so the drivers' order of events can be checked.
struct RecordingKernel {
  const double* src;
  double* dst;
  std::vector<int> lanes, tails;
  bool block(int i) {
    for (int j = i; j < i + 4; ++j)
      if (src[j] < 0) return false;
    for (int j = i; j < i + 4; ++j) dst[j] = src[j] * 2;
    return true;
  }
  void lane(int i) {
    lanes.push_back(i);
    dst[i] = src[i] * 2;
  }
  void tail(int i) {
    tails.push_back(i);
    dst[i] = src[i] * 2;
  }
};

TEST(Drivers, BlockRedoRunsEveryLaneOfAFailedBlockInOrder) {
  std::vector<double> src = {1, 2, 3, 4, 5, -6, 7, 8, 9, 10, 11};
  std::vector<double> dst(src.size());
  RecordingKernel k{src.data(), dst.data(), {}, {}};
  lux::run_block_redo<4>(int(src.size()), k);
  EXPECT_EQ(k.lanes, (std::vector<int>{4, 5, 6, 7}));
  EXPECT_EQ(k.tails, (std::vector<int>{8, 9, 10}));
  for (size_t i = 0; i < src.size(); ++i) EXPECT_EQ(dst[i], src[i] * 2);
}

// Stores the first half before testing, as a pipelined kernel does.
struct EagerKernel : RecordingKernel {
  bool block(int i) {
    const double a = src[i], b = src[i + 1];
    dst[i] = a * 2;
    dst[i + 1] = b * 2;
    for (int j = i; j < i + 4; ++j)
      if (src[j] < 0) return false;
    dst[i + 2] = src[i + 2] * 2;
    dst[i + 3] = src[i + 3] * 2;
    return true;
  }
};

TEST(Drivers, PipelinedBlockPutsBackOverwrittenInputsInPlace) {
  std::vector<double> data = {1, 2, 3, 4, 5, 6, -7, 8, 9};
  const std::vector<double> want = {2, 4, 6, 8, 10, 12, -14, 16, 18};
  EagerKernel k;
  k.src = data.data();
  k.dst = data.data();
  lux::run_pipelined<4>(k.src, k.dst, int(data.size()), k);
  EXPECT_EQ(data, want);
  EXPECT_EQ(k.lanes, (std::vector<int>{4, 5, 6, 7}));
}

TEST(Drivers, ResumeMovesTheGridAfterAFailedBlock) {
  // len 13, block 4: lanes 0-3 pass; 4-7 fail, so lanes 4..4 go one by one
  // until 8 are left (4 is enough: 13-5 = 8), then blocks at 5 and 9.
  std::vector<double> src = {1, 2, 3, 4, -5, 6, 7, 8, 9, 10, 11, 12, 13};
  std::vector<double> dst(src.size());
  RecordingKernel k{src.data(), dst.data(), {}, {}};
  lux::run_block_resume<4>(int(src.size()), k);
  EXPECT_EQ(k.lanes, (std::vector<int>{4}));
  for (size_t i = 0; i < src.size(); ++i) EXPECT_EQ(dst[i], src[i] * 2);
  // Fewer than a block left: every lane through the lane routine, no tail.
  RecordingKernel short_k{src.data(), dst.data(), {}, {}};
  lux::run_block_resume<4>(3, short_k);
  EXPECT_EQ(short_k.lanes, (std::vector<int>{0, 1, 2}));
  EXPECT_TRUE(short_k.tails.empty());
}

// Two sources, stores the first half of a + b before testing b.
struct EagerSumKernel {
  const double* a;
  const double* b;
  double* dst;
  std::vector<int> lanes;
  bool block(int i) {
    const double s0 = a[i] + b[i], s1 = a[i + 1] + b[i + 1];
    dst[i] = s0;
    dst[i + 1] = s1;
    for (int j = i; j < i + 4; ++j)
      if (b[j] < 0) return false;
    dst[i + 2] = a[i + 2] + b[i + 2];
    dst[i + 3] = a[i + 3] + b[i + 3];
    return true;
  }
  void lane(int i) {
    lanes.push_back(i);
    dst[i] = a[i] + b[i];
  }
};

TEST(Drivers, PipelinedResumePutsBackWhicheverSourceIsTheResult) {
  const std::vector<double> a0 = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  const std::vector<double> b0 = {10, 20, 30, -40, 50, 60, 70, 80, 90};
  for (int in_place = 0; in_place < 3; ++in_place) {  // separate, dst == a, dst == b
    std::vector<double> a = a0, b = b0, sep(a0.size());
    double* dst = in_place == 0 ? sep.data() : in_place == 1 ? a.data() : b.data();
    EagerSumKernel k{a.data(), b.data(), dst, {}};
    lux::run_pipelined_resume<4>(a.data(), b.data(), dst, int(a0.size()), k);
    for (size_t i = 0; i < a0.size(); ++i)
      EXPECT_EQ(dst[i], a0[i] + b0[i]) << "case " << in_place << " lane " << i;
    // The block at 0 fails (lane 3), one lane goes alone, the block at 1
    // fails on the same lane, and lanes go alone until four are left.
    EXPECT_EQ(k.lanes, (std::vector<int>{0, 1, 2, 3, 4})) << "case " << in_place;
    if (in_place != 1) {
      EXPECT_EQ(a, a0) << "a source that is not the result is never stored to";
    }
  }
}

struct MaskKernel {
  std::vector<int> offended;
  unsigned block(int i) { return i == 0 ? 0b1010u : 0u; }
  unsigned tail(int i) { return i == 9 ? 1u : 0u; }
  void offend(int i) { offended.push_back(i); }
};

TEST(Drivers, MaskedLanesReportLowestFirst) {
  MaskKernel k;
  lux::run_masked<4>(10, k);
  EXPECT_EQ(k.offended, (std::vector<int>{1, 3, 9}));
}

TEST(Version, OneConstantRecord) {
  const LuxLibraryVersion* v = luxvmGetLibVersion();
  ASSERT_EQ(v, luxvmGetLibVersion());
  EXPECT_EQ(v->major, 6);
  EXPECT_EQ(v->minor, 1);
  EXPECT_EQ(v->buildMajor, 137);
  EXPECT_EQ(v->buildMinor, 781);
  EXPECT_STREQ(v->version, "6.1 build 137.56");
  EXPECT_STREQ(v->buildDate, "Mar 17 2010");
  const std::string tag(v->targetTag, strnlen(v->targetTag, 4));
  EXPECT_EQ(v->targetTag[3], '\0');
  EXPECT_EQ(std::string(v->name), "libluxvm" + tag + ".so.6.1");
  EXPECT_EQ(tag, sizeof(void*) == 4 ? "s8" : "x64");
}

}  // namespace
