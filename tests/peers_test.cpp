// The peer-data check itself: the line formats it reads, which files serve
// an export, and the error bound it derives from a rounded value and the
// side of the exact one.  The check against the data is the peer_data test.
#include "common/peers.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "support/testing.h"

namespace {

using luxtest::bits;

TEST(Peers, ReadsEveryLineFormat) {
  const std::string path = ::testing::TempDir() + "peers_formats.txt";
  {
    std::ofstream f(path);
    f << "# header\n"
         "exp 32f 3f800000 402df854 + glibc:math/auto-libm-test-out-exp\n"
         "exp 64f 3ff0000000000000 4005bf0a8b145769 + core-math:src/binary64/exp/exp.wc\n"
         "pow 32f 40000000 40400000 41000000 0 glibc:x\n"
         "sincos 32f 3f800000 3f576aa4 + 3f0a5140 - glibc:x\n"
         "cabs 32fc 3f400000 41464000 41469ce3 + glibc:x\n"
         "cexp 32fc 00000000 7f800000 7fc00000 0 7fc00000 0 glibc:x nosign\n"
         "cpow 32fc 40000000 00000000 41200000 00000000 44800000 0 00000000 - glibc:x nosign\n";
  }
  const auto one = [&](const char* type, size_t index) {
    return luxtk::read_peer_file(path, type).at(index);
  };
  EXPECT_EQ(luxtk::read_peer_file(path, "32f").size(), 3u);
  const luxtk::PeerRow e = one("64f", 0);
  EXPECT_EQ(e.inputs, 1);
  EXPECT_EQ(e.outputs, 1);
  EXPECT_EQ(e.out[0].rn, 0x4005bf0a8b145769u);
  EXPECT_EQ(e.out[0].dir, 1);
  const luxtk::PeerRow p = one("32f", 1);
  EXPECT_EQ(p.inputs, 2);
  EXPECT_EQ(p.in[1], 0x40400000u);
  EXPECT_EQ(p.out[0].dir, 0);
  const luxtk::PeerRow sc = one("32f", 2);
  EXPECT_EQ(sc.inputs, 1);
  EXPECT_EQ(sc.outputs, 2);
  EXPECT_EQ(sc.out[1].rn, 0x3f0a5140u);
  EXPECT_EQ(sc.out[1].dir, -1);
  const luxtk::PeerRow ca = one("32fc", 0);
  EXPECT_EQ(ca.inputs, 2);
  EXPECT_EQ(ca.outputs, 1);
  const luxtk::PeerRow ce = one("32fc", 1);
  EXPECT_TRUE(ce.nosign);
  EXPECT_EQ(ce.outputs, 2);
  const luxtk::PeerRow cp = one("32fc", 2);
  EXPECT_EQ(cp.inputs, 4);
  EXPECT_EQ(cp.in[2], 0x41200000u);
  EXPECT_EQ(cp.out[1].dir, -1);
  std::remove(path.c_str());
}

TEST(Peers, FilesFollowFamilyAndType) {
  struct Case {
    const char* family;
    const char* type;
    const char* file;
    const char* row_type;
  } const cases[] = {
      {"Exp", "64f", "exp", "64f"},         {"Ln", "32f", "log", "32f"},
      {"Ln", "64fc", "clog", "64fc"},       {"InvSqrt", "32f", "rsqrt", "32f"},
      {"Powx", "64f", "pow", "64f"},        {"Powx", "32fc", "cpow", "32fc"},
      {"SinCos", "64f", "sincos", "64f"},   {"CIS", "32fc", "sincos", "32f"},
      {"Abs", "64fc", "cabs", "64fc"},      {"Atan2", "32f", "atan2", "32f"},
      {"ErfcInv", "64f", "erfcinv", "64f"},
  };
  for (const Case& c : cases) {
    luxtk::CensusEntry e{};
    e.family = c.family;
    e.type = c.type;
    const auto s = luxtk::peer_sources(e);
    ASSERT_EQ(s.size(), 1u) << c.family;
    EXPECT_EQ(s[0].file, c.file) << c.family << " " << c.type;
    EXPECT_EQ(s[0].type, c.row_type) << c.family << " " << c.type;
  }
}

TEST(Peers, ComplexLanesReachTheExportAsTheRowsGiveThem) {
  // conj(1.5 - 2i) = 1.5 + 2i; (1 + 2i) + (0.5 - 4i) = 1.5 - 2i, one row of
  // each right and, for Add, one off by two ulps in the imaginary part.
  const std::string dir = ::testing::TempDir();
  {
    std::ofstream c(dir + "/cconj.txt");
    c << "cconj 64fc 3ff8000000000000 c000000000000000 3ff8000000000000 0 4000000000000000 0 x:y\n";
    std::ofstream a(dir + "/cadd.txt");
    a << "cadd 64fc 3ff0000000000000 4000000000000000 3fe0000000000000 c010000000000000 "
         "3ff8000000000000 0 c000000000000000 0 x:y\n"
         "cadd 64fc 3ff0000000000000 4000000000000000 3fe0000000000000 c010000000000000 "
         "3ff8000000000000 0 c000000000000002 0 x:y\n";
  }
  const luxtk::CensusEntry* conj = luxtk::find_export("luxsConj_64fc_A53");
  const luxtk::CensusEntry* add = luxtk::find_export("luxsAdd_64fc_A53");
  ASSERT_TRUE(conj && add);
  const luxtk::PeerResult rc = luxtk::peer_check(*conj, dir);
  EXPECT_EQ(rc.rows, 1);
  EXPECT_EQ(rc.worst.ulps, 0.0);
  const luxtk::PeerResult ra = luxtk::peer_check(*add, dir);
  EXPECT_EQ(ra.rows, 2);
  EXPECT_EQ(ra.worst.ulps, 2.0);
  EXPECT_EQ(ra.worst.row.line, 2);
  std::remove((dir + "/cconj.txt").c_str());
  std::remove((dir + "/cadd.txt").c_str());
}

TEST(Peers, ErrorBoundTakesTheFartherEndOfTheExactInterval) {
  const auto d = [](double v) { return bits(v); };
  const auto f = [](float v) { return uint64_t(bits(v)); };
  const double up = std::nextafter(1.5, 2.0), down = std::nextafter(1.5, 0.0);
  struct Case {
    uint64_t got;
    luxtk::PeerValue want;
    int bits;
    double err;
  } const cases[] = {
      {d(1.5), {d(1.5), 0}, 64, 0.0},   // exact
      {d(1.5), {d(1.5), 1}, 64, 0.5},   // correctly rounded: at most half an ulp
      {d(up), {d(1.5), 1}, 64, 1.0},    // beyond RN on the exact side
      {d(down), {d(1.5), 1}, 64, 1.5},  // on the other side: half an ulp more
      {d(down), {d(1.5), -1}, 64, 1.0},
      {f(0.0f), {f(0.0f), 1}, 32, 0.5},  // an underflow to zero, on the denormal grid
      {f(0x1p-149f), {f(0.0f), 1}, 32, 1.0},
      {d(0x1.fffffffffffffp1023), {d(0x1.fffffffffffffp1023), 1}, 64, 0.5},  // above the largest finite
      {d(INFINITY), {d(0x1.fffffffffffffp1023), 1}, 64, INFINITY},
      {d(INFINITY), {d(INFINITY), 0}, 64, 0.0},
      {d(-INFINITY), {d(INFINITY), 0}, 64, INFINITY},
      {d(NAN), {d(NAN), 0}, 64, 0.0},
      {d(1.0), {d(NAN), 0}, 64, INFINITY},
      {f(1.0f), {f(1.0f + 0x1p-23f), 0}, 32, 1.0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(luxtk::peer_error(c.got, c.want, c.bits, false), c.err)
        << std::hex << c.got << " against " << c.want.rn << " dir " << c.want.dir;
  // Infinities of either sign where the peers leave it open.
  EXPECT_EQ(luxtk::peer_error(d(-INFINITY), {d(INFINITY), 0}, 64, true), 0.0);
  // The sign of a zero is reported apart.
  EXPECT_EQ(luxtk::peer_error(d(0.0), {d(-0.0), 0}, 64, false), 0.0);
  EXPECT_TRUE(luxtk::zero_sign_differs(d(0.0), {d(-0.0), 0}, 64, false));
  EXPECT_FALSE(luxtk::zero_sign_differs(d(0.0), {d(-0.0), 0}, 64, true));
  EXPECT_FALSE(luxtk::zero_sign_differs(d(-0.0), {d(-0.0), 0}, 64, false));
}

}  // namespace
