// Atan and Atan2 on binary32: the special values (Atan2's whole table) in
// blocks and tails, quadrants at the axes and at extreme ratios, lane
// independence (also for an infinity in the A21 block, which takes the x87
// unit) and in-place calls, the chunked A24 routines at chunk edges, the A24
// angle table against its rule, and accuracy against MPFR.  The A11 tiers
// and A21 Atan rest on the reciprocal estimate: checked by bound and property.
#include <mpfr.h>

#include "atan_cases.h"
#include "frame/frame.h"
#include "trig/atan2_kernels.h"

namespace {

const char* const kAtan[] = {"luxsAtan_32f_A11", "luxsAtan_32f_A21", "luxsAtan_32f_A24"};
const char* const kAtan2[] = {"luxsAtan2_32f_A11", "luxsAtan2_32f_A21", "luxsAtan2_32f_A24"};

TEST(Atan32, SpecialValuesInBlocksAndTails) {
  for (int t = 0; t < 3; ++t) invtrig::run_atan_rows<float>(kAtan[t], t == 2);
}

TEST(Atan32, OddAndLanesIndependentAcrossTheClassLimits) {
  for (const char* name : kAtan)
    invtrig::expect_atan_odd_and_independent<float>(name, {0.4375f, 0.72f, 2.29f, 1.0f});
}

TEST(Atan32, InfinityInAnA21BlockLeavesTheOtherLanesAlone) {
  luxtk::Rng rng(3);
  std::vector<float> x(16);
  for (float& v : x) v = float(rng.log_uniform(0.01, 100.0, true));
  const auto ref = luxtest::call_unary("luxsAtan_32f_A21", x);
  x[4] = -std::numeric_limits<float>::infinity();
  const auto r = luxtest::call_unary("luxsAtan_32f_A21", x);
  for (int i = 0; i < 16; ++i) {
    if (i != 4) {
      EXPECT_EQ(invtrig::to_bits(r.out[i]), invtrig::to_bits(ref.out[i])) << i;
    }
  }
  EXPECT_EQ(invtrig::to_bits(r.out[4]), 0xBFC90FDBu);
  EXPECT_EQ(r.flags & luxtk::kInvalid, 0u);
}

TEST(Atan2_32, SpecialValueTableQuadrantsAndExtremeRatios) {
  for (int t = 0; t < 3; ++t) invtrig::run_atan2_rows<float>(kAtan2[t], t == 2);
}

TEST(Atan2_32, LanesIndependentOfBlocksAndInPlace) {
  for (const char* name : kAtan2) invtrig::expect_atan2_lanes_independent<float>(name);
}

TEST(Atan2_32, ChunksOf128GiveTheSameLanes) {
  // 300 lanes run as chunks of 128, 128 and 44: each lane equals the lane
  // alone and the internal routines called on one chunk.
  luxtk::Rng rng(31);
  std::vector<float> y(300), x(300);
  for (int i = 0; i < 300; ++i) {
    y[i] = float(rng.log_uniform(0x1p-40, 0x1p40, true));
    x[i] = float(rng.log_uniform(0x1p-40, 0x1p40, true));
  }
  y[127] = 0.0f;
  x[128] = -std::numeric_limits<float>::infinity();
  const auto all = invtrig::call_binary("luxsAtan2_32f_A24", y, x);
  for (int i : {0, 126, 127, 128, 129, 255, 256, 299}) {
    const auto one =
        invtrig::call_binary("luxsAtan2_32f_A24", std::vector<float>{y[i]}, std::vector<float>{x[i]});
    EXPECT_EQ(invtrig::to_bits(all.out[i]), invtrig::to_bits(one.out[0])) << i;
  }
  lux::RoundNearestGuard sse;
  alignas(16) float work[kAtan2WorkFloats];
  float out[44];
  _orksAtan2_HA_Part1(44, y.data() + 256, x.data() + 256, work);
  _orksAtan2_HA_Part2(44, y.data() + 256, x.data() + 256, out, work);
  for (int i = 0; i < 44; ++i) EXPECT_EQ(invtrig::to_bits(out[i]), invtrig::to_bits(all.out[256 + i])) << i;
}

TEST(Atan2_32, A24AnglesFollowTheirRuleAndTheQuotedRows) {
  // head = atan b and tail = atan b - head, each rounded to 21 bits.
  constexpr uint32_t kAngles[5][2] = {
#include "trig/atan2_s24_angles.inc"
  };
  const double b[5] = {0.0, 0.5, 1.0, 2.0, -1};
  mpfr_t a, h, d;
  mpfr_inits2(256, a, d, (mpfr_ptr)0);
  mpfr_init2(h, 21);
  for (int i = 0; i < 5; ++i) {
    if (b[i] < 0) {
      mpfr_const_pi(a, MPFR_RNDN);
      mpfr_div_2ui(a, a, 1, MPFR_RNDN);
    } else {
      mpfr_set_d(a, b[i], MPFR_RNDN);
      mpfr_atan(a, a, MPFR_RNDN);
    }
    mpfr_set(h, a, MPFR_RNDN);
    mpfr_sub(d, a, h, MPFR_RNDN);
    mpfr_prec_round(d, 21, MPFR_RNDN);
    EXPECT_EQ(kAngles[i][0], invtrig::to_bits(mpfr_get_flt(h, MPFR_RNDN))) << i;
    EXPECT_EQ(kAngles[i][1], invtrig::to_bits(mpfr_get_flt(d, MPFR_RNDN))) << i;
  }
  mpfr_clears(a, h, d, (mpfr_ptr)0);
  EXPECT_EQ(kAngles[1][0], 0x3EED6338u);  // atan 0.5, as quoted
  EXPECT_EQ(kAngles[3][1], 0xB4DA2880u);  // the tail of atan 2
}

TEST(Atan32, Accuracy) { luxtest::expect_family_accuracy("Atan", 32); }
TEST(Atan2_32, Accuracy) { luxtest::expect_family_accuracy("Atan2", 32); }

}  // namespace
