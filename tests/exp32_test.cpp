// Exp on binary32: directed special values per tier, statuses and flags, lane
// independence across the vector path and the lane routine, in-place calls,
// tails, and accuracy against MPFR (plus, natively, every float of
// [-104, 89]).  Its tables are checked in exp_tables_test.cpp.
#include <mpfr.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "luxvm.h"
#include "support/testing.h"

namespace {

using luxtk::kInexact;
using luxtk::kInvalid;
using luxtk::kOverflow;
using luxtk::kUnderflow;

// ---------------------------------------------------------------------------
// Calls on raw encodings (a float copied through the x87 stack would lose a
// signalling NaN on i386).

struct Lanes {
  std::vector<uint32_t> out;
  int status;
  uint32_t flags;
};

Lanes run(const char* name, const std::vector<uint32_t>& in) {
  std::vector<float> f(in.size());
  std::memcpy(f.data(), in.data(), in.size() * 4);
  const luxtest::Result<float> r = luxtest::call_unary<float>(name, f);
  Lanes o{std::vector<uint32_t>(in.size()), r.status, r.flags};
  if (!r.out.empty()) std::memcpy(o.out.data(), r.out.data(), in.size() * 4);
  return o;
}

// Runs in place: src == dst.
Lanes run_in_place(const char* name, std::vector<uint32_t> io) {
  void* fn = luxtk::export_address(name);
  using Fn = int (*)(const float*, float*, int);
  float* p = reinterpret_cast<float*>(io.data());
  const luxtk::Outcome o = luxtk::run_clean([&] { return reinterpret_cast<Fn>(fn)(p, p, int(io.size())); });
  return {io, o.status, o.flags};
}

enum Tier : unsigned { kA24 = 1, kA21 = 2, kA11 = 4, kAll = 7 };
const char* const kNames[] = {"luxsExp_32f_A24", "luxsExp_32f_A21", "luxsExp_32f_A11"};

constexpr uint32_t kOF = kOverflow | kInexact;
constexpr uint32_t kUF = kUnderflow | kInexact;
constexpr uint32_t kOne = 0x3F800000, kPlusInf = 0x7F800000;

// input -> expected result, status, flags that must be raised, flags that
// must not be.
struct Row {
  unsigned tiers;
  uint32_t in, out;
  int status;
  uint32_t raises, never;
  const char* what;
};

const Row kRows[] = {
    // NaNs: A24/A21 store x + x (quiet, sign and payload kept), A11 stores x.
    {kA24 | kA21, 0x7FC00000, 0x7FC00000, 0, 0, kInvalid | kOF | kUF, "quiet NaN"},
    {kA24 | kA21, 0xFFC12345, 0xFFC12345, 0, 0, kOF | kUF, "negative NaN with payload"},
    {kA24 | kA21, 0x7FA00000, 0x7FE00000, 0, kInvalid, kOF | kUF, "signalling NaN is quieted"},
    {kA24 | kA21, 0xFF800001, 0xFFC00001, 0, kInvalid, kOF | kUF, "negative signalling NaN"},
    {kA11, 0x7FC00000, 0x7FC00000, 0, 0, kOF | kUF, "quiet NaN unchanged"},
    {kA11, 0xFFC12345, 0xFFC12345, 0, 0, kOF | kUF, "negative NaN unchanged"},
    {kA11, 0x7FA00000, 0x7FA00000, 0, 0, kOF | kUF, "signalling NaN stays signalling"},
    {kA11, 0xFF800001, 0xFF800001, 0, 0, kOF | kUF, "negative signalling NaN stays"},
    // Infinities and zeros.
    {kAll, 0x7F800000, kPlusInf, 0, 0, kOF | kUF, "+Inf"},
    {kAll, 0xFF800000, 0x00000000, 0, 0, kOF | kUF, "-Inf gives +0"},
    {kAll, 0x00000000, kOne, 0, 0, kOF | kUF, "+0 exactly 1"},
    {kAll, 0x80000000, kOne, 0, 0, kOF | kUF, "-0 exactly 1"},
    {kAll, 0x00000001, kOne, 0, 0, kOF, "smallest denormal gives 1"},
    {kAll, 0x807FFFFF, kOne, 0, 0, kOF, "largest negative denormal gives 1"},
    // Overflow edge: 88.72283935546875 and the float below it.
    {kAll, 0x42B17218, kPlusInf, luxWarnOverflow, kOF, kUF, "first overflowing float"},
    {kAll, 0x42B17217, 0x7F7FFF84, 0, 0, kOF | kUF, "last finite float"},
    {kAll, 0x42C80000, kPlusInf, luxWarnOverflow, kOF, kUF, "100"},
    {kAll, 0x7149F2CA, kPlusInf, luxWarnOverflow, kOF, kUF, "1e30"},
    // k = 128: x·128/ln2 reaches 16383.5 and rounds up; the product is split.
    {kAll, 0x42B170B4, 0x7F7F4E42, 0, 0, kOF | kUF, "k = 127, j = 127"},
    {kAll, 0x42B170B5, 0x7F7F4EC2, 0, 0, kOF | kUF, "k = 128, j = 0"},
    // Main-path bound 87.3365478515625, both signs.
    {kA24 | kA21, 0x42AEAC4F, 0x7E7FFFB4, 0, 0, kOF | kUF, "below the main-path bound"},
    {kA24 | kA21, 0x42AEAC50, 0x7E80001A, 0, 0, kOF | kUF, "the main-path bound"},
    {kAll, 0xC2AEAC4F, 0x00800026, 0, 0, kOF | kUF, "-87.33654: still normal"},
    {kAll, 0xC2AEAC50, 0x007FFFE6, luxWarnUnderflow, kUF, kOF, "-87.33655: denormal"},
    // The denormal strip: wide path, one rounding.
    {kAll, 0xC2C80000, 0x0000001B, luxWarnUnderflow, kUF, kOF, "-100"},
    {kAll, 0xC2CE8ED0, 0x00000001, luxWarnUnderflow, kUF, kOF, "last float above ln 2^-149"},
    // From -103.27893829345703 A24/A21 give +0; A11 rounds to the smallest
    // denormal down to ln 2^-150.
    {kA24 | kA21, 0xC2CE8ED1, 0x00000000, luxWarnUnderflow, kUF, kOF, "-103.27893829345703"},
    {kA24 | kA21, 0xC2CFF1B4, 0x00000000, luxWarnUnderflow, kUF, kOF, "just above ln 2^-150"},
    {kA11, 0xC2CE8ED1, 0x00000001, luxWarnUnderflow, kUF, kOF, "-103.27893829345703"},
    {kA11, 0xC2CFF1B4, 0x00000001, luxWarnUnderflow, kUF, kOF, "just above ln 2^-150"},
    {kA11, 0xC2CFF1B5, 0x00000000, luxWarnUnderflow, kUF, kOF, "just below ln 2^-150"},
    {kA24 | kA21, 0xF149F2CA, 0x00000000, luxWarnUnderflow, kUF, kOF, "-1e30"},
    // The wide formula's discarded value for a clamped lane may raise overflow.
    {kA11, 0xF149F2CA, 0x00000000, luxWarnUnderflow, kUF, 0, "-1e30"},
    // A11's edges: narrow path at 87.25, clamps at +-160.
    {kA11, 0x42AE7FFF, 0x7E6AC780, 0, 0, kOF | kUF, "last narrow-path float"},
    {kA11, 0x42AE8000, 0x7E6AC6B5, 0, 0, kOF | kUF, "87.25: wide path, no status"},
    {kA11, 0x42AE999A, 0x7E76D06E, 0, 0, kOF | kUF, "87.3: wide path, no status"},
    {kA11, 0xC2AE8000, 0x008B923C, 0, 0, kOF | kUF, "-87.25: wide path, no status"},
    {kA11, 0x431FFFFF, kPlusInf, luxWarnOverflow, kOF, kUF, "below 160: converted to +Inf"},
    {kA11, 0x43200000, kPlusInf, luxWarnOverflow, kOF, kUF, "160: clamped"},
    {kA11, 0xC3200000, 0x00000000, luxWarnUnderflow, kUF, kOF, "-160: rounded to 0"},
    {kA11, 0xC3200001, 0x00000000, luxWarnUnderflow, kUF, kOF, "below -160: clamped"},
};

void check_row(const Row& row, const char* name, const Lanes& r, size_t lane, const char* how) {
  SCOPED_TRACE(testing::Message() << name << " " << row.what << " (0x" << std::hex << row.in << ") " << how);
  EXPECT_EQ(r.out[lane], row.out) << std::hex << "got 0x" << r.out[lane];
  EXPECT_EQ(r.status, row.status);
  EXPECT_EQ(r.flags & row.raises, row.raises) << luxtk::flag_names(r.flags);
  // Inexact comes with any ordinary lane; only the other flags are checked absent.
  EXPECT_EQ(r.flags & row.never & ~kInexact, 0u) << luxtk::flag_names(r.flags);
}

TEST(Exp32, DirectedCases) {
  const uint32_t kHalf = 0x3F000000;
  for (const Row& row : kRows)
    for (int t = 0; t < 3; ++t) {
      if (!(row.tiers & (1u << t))) continue;
      check_row(row, kNames[t], run(kNames[t], {row.in}), 0, "alone (tail)");
      // In a block of ordinary lanes: the call-out (A24, A21) or masks (A11).
      std::vector<uint32_t> block(8, kHalf);
      block[5] = row.in;
      check_row(row, kNames[t], run(kNames[t], block), 5, "in a block");
    }
}

// ---------------------------------------------------------------------------
// Statuses: the last offending lane in array order wins; later ordinary lanes
// leave it; the reporter's flags reach the caller.

TEST(Exp32, LastOffendingLaneWins) {
  const uint32_t kOver = 0x42C80000, kUnder = 0xC2C80000, kHalf = 0x3F000000, kNaN = 0x7FC00000;
  for (const char* name : kNames) {
    SCOPED_TRACE(name);
    for (int len : {8, 11, 20}) {
      for (int a = 0; a < len; a += 3)
        for (int b = a + 1; b < len; b += 4) {
          std::vector<uint32_t> in(len, kHalf);
          in[a] = kOver;
          in[b] = kUnder;
          if (b + 1 < len) in[b + 1] = kNaN;  // no status, does not clear it
          Lanes r = run(name, in);
          EXPECT_EQ(r.status, luxWarnUnderflow) << "len " << len << " over at " << a << ", under at " << b;
          EXPECT_EQ(r.flags & (kOF | kUF), kOF | kUF);
          std::swap(in[a], in[b]);
          r = run(name, in);
          EXPECT_EQ(r.status, luxWarnOverflow) << "len " << len << " under at " << a << ", over at " << b;
        }
    }
  }
}

// ---------------------------------------------------------------------------
// Lane independence: a lane's bits are the same alone (tail, lane routine),
// in a block of ordinary lanes (vector path) and beside a lane that sends the
// block to the lane routine or the masks.

std::vector<uint32_t> ordinary_lanes(int count, uint64_t seed) {
  luxtk::Rng rng(seed);
  std::vector<uint32_t> v;
  const float fixed[] = {87.0f, -87.0f, 87.2f, -87.3f, 0.0f, 1.0f, -1.0f, 1e-3f, 0x1p-30f, 88.0f / 3};
  for (float f : fixed) v.push_back(luxtest::bits(f));
  while (int(v.size()) < count) v.push_back(luxtest::bits(float(rng.uniform(-87.33, 87.33))));
  return v;
}

TEST(Exp32, LaneIndependence) {
  const std::vector<uint32_t> lanes = ordinary_lanes(64, 7);
  const uint32_t kDisturbers[] = {0x7FC00000, 0x7FA00000, 0xFF800000, 0x42C80000, 0xC2C80000, 0x42AE8000};
  for (const char* name : kNames) {
    SCOPED_TRACE(name);
    const Lanes clean = run(name, lanes);
    EXPECT_EQ(clean.status, 0);
    for (size_t i = 0; i < lanes.size(); ++i) {
      const Lanes alone = run(name, {lanes[i]});
      ASSERT_EQ(alone.out[0], clean.out[i]) << std::hex << "lane 0x" << lanes[i] << " alone vs vector path";
      for (uint32_t d : kDisturbers) {
        std::vector<uint32_t> block(lanes.begin() + (i & ~size_t(7)), lanes.begin() + (i & ~size_t(7)) + 8);
        block[(i + 3) & 7] = d;
        const Lanes mixed = run(name, block);
        EXPECT_EQ(mixed.out[i & 7], clean.out[i]) << std::hex << "lane 0x" << lanes[i] << " beside 0x" << d;
      }
    }
  }
}

// In place, with a failing lane late in the block and in the tail.
TEST(Exp32, InPlaceEqualsSeparateArrays) {
  std::vector<uint32_t> in = ordinary_lanes(21, 11);
  in[6] = 0xC2C80000;
  in[7] = 0x7FA00000;
  in[19] = 0x42C80000;
  for (const char* name : kNames) {
    const Lanes ref = run(name, in);
    const Lanes io = run_in_place(name, in);
    EXPECT_EQ(io.out, ref.out) << name;
    EXPECT_EQ(io.status, ref.status) << name;
    EXPECT_EQ(io.status, luxWarnOverflow) << name;
  }
}

// Every tail length: each lane as computed alone, the status from the tail.
TEST(Exp32, TailsOfEveryLength) {
  const std::vector<uint32_t> lanes = ordinary_lanes(17, 3);
  for (const char* name : kNames) {
    std::vector<uint32_t> alone;
    for (uint32_t x : lanes) alone.push_back(run(name, {x}).out[0]);
    for (int len = 1; len <= 17; ++len) {
      std::vector<uint32_t> in(lanes.begin(), lanes.begin() + len);
      const Lanes r = run(name, in);
      EXPECT_EQ(r.out, std::vector<uint32_t>(alone.begin(), alone.begin() + len)) << name << " len " << len;
      EXPECT_EQ(r.status, 0) << name << " len " << len;
      in.back() = 0xC2C80000;  // the last lane underflows, in the tail or the block
      EXPECT_EQ(run(name, in).status, luxWarnUnderflow) << name << " len " << len;
    }
  }
}

// ---------------------------------------------------------------------------
// Accuracy.

TEST(Exp32, AccuracyAgainstMpfr) { luxtest::expect_family_accuracy("Exp", 32); }

// Every float of [-104, 89], natively only (far too slow under emulation).
// glibc's exp in double is the reference: its error, below 1e-8 of a float
// ulp, cannot move a result across the bounds; the worst input of each export
// is then measured again against MPFR.
TEST(Exp32, EveryFloatInTheFiniteRange) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "native build only";
  const auto start = std::chrono::steady_clock::now();
  struct Export {
    const char* name;
    double bound;
    double worst = 0;
    float worst_x = 0;
  } exports[] = {{"luxsExp_32f_A24", 1.0}, {"luxsExp_32f_A21", 8.0}, {"luxsExp_32f_A11", 8192.0}};
  using Fn = int (*)(const float*, float*, int);
  constexpr int kChunk = 1 << 16;
  std::vector<float> x(kChunk), y(kChunk);
  std::vector<double> ref(kChunk);
  const double kOverflowAt = 0x1.ffffffp127;  // reaches +Inf when rounded to float
  // Both signs, from the encoding of 0 up to that of 89 or -104.
  const uint32_t ranges[2][2] = {{0x00000000u, luxtest::bits(89.0f)}, {0x80000000u, luxtest::bits(-104.0f)}};
  for (const auto& range : ranges)
    for (uint64_t b = range[0]; b <= range[1]; b += kChunk) {
      const int n = int(std::min<uint64_t>(kChunk, range[1] - b + 1));
      for (int k = 0; k < n; ++k) {
        const uint32_t bits = uint32_t(b + k);
        std::memcpy(&x[k], &bits, 4);
        ref[k] = std::exp(double(x[k]));
      }
      for (Export& e : exports) {
        reinterpret_cast<Fn>(luxtk::export_address(e.name))(x.data(), y.data(), n);
        for (int k = 0; k < n; ++k) {
          double err;
          if (ref[k] >= kOverflowAt) {
            err = std::isinf(y[k]) ? 0.0 : INFINITY;
          } else {
            // One float ulp at ref: 2^(e - 23), never below 2^-149.
            const int e = int(luxtk::double_bits(ref[k]) >> 52) - 1023;
            const int ulp = std::max(e - 23, -149);
            err = std::fabs(double(y[k]) - ref[k]) * luxtk::bits_to_double(uint64_t(1023 - ulp) << 52);
          }
          if (!(err <= e.worst)) {
            e.worst = err;
            e.worst_x = x[k];
          }
        }
      }
    }
  mpfr_t m;
  mpfr_init2(m, luxtk::kOraclePrecision);
  for (Export& e : exports) {
    float got;
    reinterpret_cast<Fn>(luxtk::export_address(e.name))(&e.worst_x, &got, 1);
    mpfr_set_flt(m, e.worst_x, MPFR_RNDN);
    mpfr_exp(m, m, MPFR_RNDN);
    const double exact = luxtk::ulp_error(got, m, 32);
    std::printf("%-16s every float of [-104, 89]: max error %.4g ulp at x = %a (MPFR: %.6g)\n", e.name,
                e.worst, double(e.worst_x), exact);
    EXPECT_LE(exact, e.bound) << e.name;
  }
  mpfr_clear(m);
  std::printf("exhaustive sweep took %.1f s\n",
              std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
}

}  // namespace
