// Rounding to integers (Ceil, Floor, Trunc, Round, Rint, NearbyInt, Modf):
// every lane bit for bit as the C library's function of the same name gives
// it, zero signs included, whatever the caller's MXCSR for the guarded ones
// and in the caller's rounding direction for Rint and NearbyInt; MXCSR as the
// caller left it.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "common/fpenv.h"
#include "luxvm.h"
#include "support/test_options.h"

namespace {

template <class C>
struct Fmt;
template <>
struct Fmt<float> {
  using Bits = uint32_t;
  static constexpr int kMant = 23, kBias = 127;
  static constexpr Bits kSign = 0x80000000u, kExp = 0x7F800000u, kQuiet = 0x00400000u;
};
template <>
struct Fmt<double> {
  using Bits = uint64_t;
  static constexpr int kMant = 52, kBias = 1023;
  static constexpr Bits kSign = 0x8000000000000000ull, kExp = 0x7FF0000000000000ull, kQuiet = 1ull << 51;
};

template <class C>
typename Fmt<C>::Bits bits(C v) {
  typename Fmt<C>::Bits b;
  std::memcpy(&b, &v, sizeof b);
  return b;
}
template <class C>
C value(typename Fmt<C>::Bits b) {
  C v;
  std::memcpy(&v, &b, sizeof v);
  return v;
}
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

// Raw bit patterns, weighted toward what the shifter has to get right:
// magnitudes from 1/8 up to twice M, exact halves, values around M, tiny and
// subnormal values whose result is a signed zero or one, and the specials.
template <class C>
typename Fmt<C>::Bits random_lane(Rng& r) {
  using F = Fmt<C>;
  using B = typename F::Bits;
  const B raw = B(r.next());
  const B mant = raw & ((B(1) << F::kMant) - 1);
  const B sign = raw & F::kSign;
  const B one = B(F::kBias) << F::kMant;
  const B m = B(F::kBias + F::kMant) << F::kMant;  // the shifter, 2^23 or 2^52
  switch (r.below(8)) {
    case 0:
    case 1:
      return raw;
    case 2:
    case 3:
      return sign | (B(F::kBias - 3 + r.below(F::kMant + 5)) << F::kMant) | mant;
    case 4: {  // k + 1/2 with k below 2^(p-1)
      const C k = C(r.next() >> (64 - F::kMant + 1 + r.below(F::kMant - 1)));
      return sign | bits<C>(k + C(0.5));
    }
    case 5:  // a few ulps around M and 2M
      return sign | ((r.below(2) ? m : m + (B(1) << F::kMant)) + B(r.below(5)) - 2);
    case 6:  // below one, down to the subnormals
      return sign | (B(r.below(F::kBias)) << F::kMant) | mant;
    default: {
      const B specials[] = {0,     one >> 1, (one >> 1) - 1,          one,         m,           m - 1,
                            m + 1, F::kExp,  F::kExp | F::kQuiet | 7, F::kExp | 3, F::kExp - 1, 1};
      return sign | specials[r.below(12)];
    }
  }
}

Rng seeded(uint64_t salt) { return Rng{luxtest::g_sweep.seed * 0x2545F4914F6CDD1Dull + salt}; }

template <class C>
using UnaryFn = luxStatus (*)(const C*, C*, int);

struct Family {
  const char* name;
  UnaryFn<float> f32;
  UnaryFn<double> f64;
  float (*c32)(float);
  double (*c64)(double);
  uint32_t guard;  // MXCSR bits 0xE000 during the call; kNoGuard for the caller's
};
constexpr uint32_t kNoGuard = 0xFFFFFFFF;

// The C library's own functions, called through volatile pointers: the
// compiler would otherwise expand rint inline as if the direction were always
// to nearest.
template <class C>
C call_libm(C (*const volatile* fn)(C), C x) {
  return (*fn)(x);
}
#define LIBM(name)                                        \
  float c_##name##f(float x) {                            \
    static float (*const volatile fn)(float) = ::name##f; \
    return call_libm(&fn, x);                             \
  }                                                       \
  double c_##name(double x) {                             \
    static double (*const volatile fn)(double) = ::name;  \
    return call_libm(&fn, x);                             \
  }
LIBM(ceil)
LIBM(floor)
LIBM(trunc)
LIBM(round)
LIBM(rint)
LIBM(nearbyint)
#undef LIBM

const Family kFamilies[] = {
    {"Ceil", luxsCeil_32f, luxsCeil_64f, c_ceilf, c_ceil, luxtk::kRoundUp},
    {"Floor", luxsFloor_32f, luxsFloor_64f, c_floorf, c_floor, luxtk::kRoundDown},
    {"Trunc", luxsTrunc_32f, luxsTrunc_64f, c_truncf, c_trunc, luxtk::kRoundTowardZero},
    {"Round", luxsRound_32f, luxsRound_64f, c_roundf, c_round, 0},
    {"Rint", luxsRint_32f, luxsRint_64f, c_rintf, c_rint, kNoGuard},
    {"NearbyInt", luxsNearbyInt_32f, luxsNearbyInt_64f, c_nearbyintf, c_nearbyint, kNoGuard},
};

template <class C>
UnaryFn<C> export_of(const Family& f) {
  if constexpr (sizeof(C) == 4)
    return f.f32;
  else
    return f.f64;
}

// What the C library gives, in the rounding direction of `mxcsr`; a NaN comes
// back as the same NaN, quiet.
template <class C>
typename Fmt<C>::Bits expected(const Family& f, typename Fmt<C>::Bits x, uint32_t mxcsr) {
  if (is_nan<C>(x)) return x | Fmt<C>::kQuiet;
  const int modes[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};
  // Volatile on both sides: the compiler takes rint for a pure function and
  // would otherwise move it across the change of direction.
  std::fesetround(modes[(mxcsr >> 13) & 3]);
  volatile C arg = value<C>(x);
  volatile C r;
  if constexpr (sizeof(C) == 4)
    r = f.c32(arg);
  else
    r = f.c64(arg);
  std::fesetround(FE_TONEAREST);
  return bits<C>(r);
}

// Caller settings: every direction, with and without flush-to-zero, and
// flags already raised, which the call must leave in place.
const uint32_t kCallerModes[] = {
    luxtk::kDefaultMxcsr,
    luxtk::kDefaultMxcsr | luxtk::kRoundDown | luxtk::kOverflow,
    luxtk::kDefaultMxcsr | luxtk::kRoundUp | luxtk::kFlushToZero,
    luxtk::kDefaultMxcsr | luxtk::kRoundTowardZero | luxtk::kInexact,
    luxtk::kDefaultMxcsr | luxtk::kFlushToZero | luxtk::kRoundDown,
    luxtk::kDefaultMxcsr | luxtk::kRoundUp | luxtk::kInvalid,
};

struct Called {
  luxStatus status;
  uint32_t mxcsr_after;
};

// Calls fn with MXCSR set to `entry` exactly (flags included) and reads MXCSR
// back straight after.
template <class F>
Called call_from(uint32_t entry, F&& fn) {
  const uint32_t saved = luxtk::read_mxcsr();
  luxtk::write_mxcsr(entry);
  const luxStatus s = fn();
  const uint32_t after = luxtk::read_mxcsr();
  luxtk::write_mxcsr(saved);
  return {s, after};
}

// A guard that changed MXCSR reloads the entry value whole; one that did not
// (or no guard) leaves the control bits and adds flags at most.
void expect_mxcsr_back(uint32_t entry, uint32_t after, uint32_t guard, const char* name) {
  if (guard != kNoGuard && (entry & 0xE000) != guard) {
    EXPECT_EQ(after, entry) << name << std::hex << " entry 0x" << entry;
  } else {
    EXPECT_EQ(after & ~luxtk::kFlagMask, entry & ~luxtk::kFlagMask)
        << name << std::hex << " entry 0x" << entry;
    EXPECT_EQ(after & entry & luxtk::kFlagMask, entry & luxtk::kFlagMask) << name << " cleared flags";
  }
}

int lanes_per_family() { return int(std::max(400L, luxtest::g_sweep.points / 4)); }

template <class C>
void sweep_family(const Family& f, Rng& rng) {
  using B = typename Fmt<C>::Bits;
  const UnaryFn<C> fn = export_of<C>(f);
  const char* name = f.name;
  int done = 0;
  for (int call = 0; done < lanes_per_family(); ++call) {
    const uint32_t entry = kCallerModes[call % 6];
    const int len = 1 + int(rng.below(70));
    const int shift = int(rng.below(4));  // result array off the source's grid
    const bool in_place = rng.below(4) == 0;
    std::vector<B> src(len + 4), dst(len + 4, B(0x5A5A5A5A));
    for (auto& x : src) x = random_lane<C>(rng);
    const std::vector<B> in(src);
    C* d = in_place ? reinterpret_cast<C*>(src.data()) : reinterpret_cast<C*>(dst.data() + shift);
    const Called c = call_from(entry, [&] { return fn(reinterpret_cast<const C*>(src.data()), d, len); });
    EXPECT_EQ(c.status, luxOk);
    expect_mxcsr_back(entry, c.mxcsr_after, f.guard, name);
    // The guarded families round the same whatever the caller's direction.
    const uint32_t direction = f.guard == kNoGuard ? entry : luxtk::kDefaultMxcsr;
    for (int i = 0; i < len; ++i) {
      B got;
      std::memcpy(&got, d + i, sizeof got);
      const B want = expected<C>(f, in[i], direction);
      ASSERT_EQ(got, want) << name << (sizeof(C) == 4 ? "_32f" : "_64f") << " of 0x" << std::hex << in[i]
                           << " MXCSR 0x" << entry << std::dec << " lane " << i << " len " << len;
    }
    if (!in_place) {
      for (int i = 0; i < shift; ++i) EXPECT_EQ(dst[i], B(0x5A5A5A5A)) << "written below dst";
      for (int i = shift + len; i < len + 4; ++i) EXPECT_EQ(dst[i], B(0x5A5A5A5A)) << "written above dst";
    }
    done += len;
  }
}

TEST(Rounding, EveryLaneAsTheCLibraryGivesIt) {
  Rng rng = seeded(1);
  for (const Family& f : kFamilies) {
    sweep_family<float>(f, rng);
    sweep_family<double>(f, rng);
  }
}

// Rint and NearbyInt are one code: the same bits and the same flags, inexact
// included, in every direction the caller may set.
template <class C>
void check_rint_is_nearbyint(Rng& rng) {
  using B = typename Fmt<C>::Bits;
  const UnaryFn<C> rint = export_of<C>(kFamilies[4]), nearby = export_of<C>(kFamilies[5]);
  for (int call = 0; call < lanes_per_family() / 16; ++call) {
    const uint32_t mxcsr =
        luxtk::kDefaultMxcsr | (uint32_t(call & 3) << 13) | (call & 4 ? uint32_t(luxtk::kFlushToZero) : 0u);
    const int len = 1 + int(rng.below(40));
    std::vector<B> src(len), a(len), b(len);
    for (auto& x : src) x = random_lane<C>(rng);
    const auto ra = luxtk::run_clean(
        [&] { return rint(reinterpret_cast<const C*>(src.data()), reinterpret_cast<C*>(a.data()), len); },
        mxcsr);
    const auto rb = luxtk::run_clean(
        [&] { return nearby(reinterpret_cast<const C*>(src.data()), reinterpret_cast<C*>(b.data()), len); },
        mxcsr);
    EXPECT_EQ(a, b) << "MXCSR 0x" << std::hex << mxcsr;
    EXPECT_EQ(ra.flags, rb.flags) << luxtk::flag_names(ra.flags) << " vs " << luxtk::flag_names(rb.flags);
  }
}

TEST(Rounding, RintAndNearbyIntAreTheSameCode) {
  Rng rng = seeded(2);
  check_rint_is_nearbyint<float>(rng);
  check_rint_is_nearbyint<double>(rng);
}

template <class C>
void sweep_modf(luxStatus (*fn)(const C*, C*, C*, int), Rng& rng) {
  using B = typename Fmt<C>::Bits;
  int done = 0;
  for (int call = 0; done < lanes_per_family(); ++call) {
    const uint32_t entry = kCallerModes[call % 6];
    const int len = 1 + int(rng.below(70));
    const int where = int(rng.below(3));  // 0 separate, 1 integer part in place, 2 fraction in place
    std::vector<B> src(len), whole(len), frac(len);
    for (auto& x : src) x = random_lane<C>(rng);
    const std::vector<B> in(src);
    C* w = reinterpret_cast<C*>(where == 1 ? src.data() : whole.data());
    C* f = reinterpret_cast<C*>(where == 2 ? src.data() : frac.data());
    const Called c = call_from(entry, [&] { return fn(reinterpret_cast<const C*>(src.data()), w, f, len); });
    EXPECT_EQ(c.status, luxOk);
    expect_mxcsr_back(entry, c.mxcsr_after, luxtk::kRoundTowardZero, "Modf");
    for (int i = 0; i < len; ++i) {
      B got_w, got_f;
      std::memcpy(&got_w, w + i, sizeof got_w);
      std::memcpy(&got_f, f + i, sizeof got_f);
      B want_w, want_f;
      if (is_nan<C>(in[i])) {
        want_w = want_f = in[i] | Fmt<C>::kQuiet;
      } else {
        C ip;
        want_f = bits<C>(std::modf(value<C>(in[i]), &ip));
        want_w = bits<C>(ip);
      }
      ASSERT_EQ(got_w, want_w) << "integer part of 0x" << std::hex << in[i] << std::dec << " lane " << i;
      ASSERT_EQ(got_f, want_f) << "fraction of 0x" << std::hex << in[i] << std::dec << " lane " << i;
    }
    done += len;
  }
}

TEST(Rounding, ModfGivesIntegerPartAndFraction) {
  Rng rng = seeded(3);
  sweep_modf<float>(luxsModf_32f, rng);
  sweep_modf<double>(luxsModf_64f, rng);
}

// The cases where a shifter rounds the wrong way unless its sign handling is
// right, each at every position of a block and of the tail, among neighbours
// that are on the vector path (1.25) or off it (2^60).
TEST(Rounding, ZeroSignsHalvesAndTheShifterBound) {
  struct Row {
    int family;  // index into kFamilies
    double in, out;
    uint32_t mxcsr;
  };
  const double below_half = 0.49999999999999994;
  const Row rows[] = {
      {0, -0.5, -0.0, luxtk::kDefaultMxcsr},
      {0, -0.0, -0.0, luxtk::kDefaultMxcsr},
      {1, 0.5, 0.0, luxtk::kDefaultMxcsr},
      {1, 0.0, 0.0, luxtk::kDefaultMxcsr | luxtk::kRoundUp},
      {1, -1e-300, -1.0, luxtk::kDefaultMxcsr},
      {1, 0x1p52, 0x1p52, luxtk::kDefaultMxcsr},
      {1, 0x1p52 - 0.5, 0x1p52 - 1, luxtk::kDefaultMxcsr},
      {1, -(0x1p52 - 0.5), -0x1p52, luxtk::kDefaultMxcsr},
      {2, -0.9, -0.0, luxtk::kDefaultMxcsr},
      {3, 0.5, 1.0, luxtk::kDefaultMxcsr | luxtk::kRoundDown},
      {3, 1.5, 2.0, luxtk::kDefaultMxcsr},
      {3, 2.5, 3.0, luxtk::kDefaultMxcsr},
      {3, -2.5, -3.0, luxtk::kDefaultMxcsr},
      {3, below_half, 0.0, luxtk::kDefaultMxcsr},
      {3, -0.3, -0.0, luxtk::kDefaultMxcsr},
      {3, 0x1p52 - 0.5, 0x1p52, luxtk::kDefaultMxcsr},
      {4, 2.5, 2.0, luxtk::kDefaultMxcsr},
      {4, 2.5, 3.0, luxtk::kDefaultMxcsr | luxtk::kRoundUp},
      {4, -0.3, -0.0, luxtk::kDefaultMxcsr | luxtk::kRoundUp},
      {4, 0.3, 0.0, luxtk::kDefaultMxcsr | luxtk::kRoundDown},  // +0: the sign of x, not that of M - M
      {4, 0.0, 0.0, luxtk::kDefaultMxcsr | luxtk::kRoundDown},
      {5, 0.7, 0.0, luxtk::kDefaultMxcsr | luxtk::kRoundDown},
      {5, -0.7, -0.0, luxtk::kDefaultMxcsr | luxtk::kRoundTowardZero},
  };
  for (const Row& r : rows) {
    const Family& f = kFamilies[r.family];
    for (int len = 1; len <= 9; ++len)
      for (int pos = 0; pos < len; ++pos)
        for (double neighbour : {1.25, 0x1p60}) {
          std::vector<double> in(len, neighbour), out(len);
          in[pos] = r.in;
          const auto o = luxtk::run_clean([&] { return f.f64(in.data(), out.data(), len); }, r.mxcsr);
          EXPECT_EQ(o.status, luxOk);
          EXPECT_EQ(bits<double>(out[pos]), bits<double>(r.out))
              << f.name << "_64f(" << r.in << ") = " << out[pos] << " len " << len << " lane " << pos;
          // The same case in binary32 where it is representable there.
          if (double(float(r.in)) != r.in || std::fabs(r.in) > 0x1p23) continue;
          std::vector<float> in32(len, float(neighbour)), out32(len);
          in32[pos] = float(r.in);
          luxtk::run_clean([&] { return f.f32(in32.data(), out32.data(), len); }, r.mxcsr);
          EXPECT_EQ(bits<float>(out32[pos]), bits<float>(float(r.out)))
              << f.name << "_32f(" << r.in << ") = " << out32[pos] << " len " << len << " lane " << pos;
        }
  }
}

}  // namespace
